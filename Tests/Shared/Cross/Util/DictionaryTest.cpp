#include "Shared/Cross/Util/Dictionary.h"

#include "Shared/Cross/Util/Hash.h"
#include "Tests/Shared/Cross/Debug/ReportCapture.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <unordered_map>
#include <vector>

namespace {

Dictionary::Key Intern(Dictionary& dictionary, const std::string& text) {
    Dictionary::Key key;
    dictionary.Intern(key, text.c_str());
    return key;
}

using TextPair = std::pair<std::string, std::string>;

// Texts of the same hash; a few hundred thousand names hold some.
std::vector<TextPair> FindCollisions(size_t wanted) {
    std::vector<TextPair> pairs;
    std::unordered_map<uint32_t, std::string> known;
    for (int i = 0; pairs.size() < wanted; ++i) {
        const std::string text = "bone" + std::to_string(i);
        const auto [it, isNew] = known.emplace(Hash(text), text);
        if (!isNew)
            pairs.emplace_back(it->second, text);
    }
    return pairs;
}

} // namespace

TEST(Dictionary, InternsEachTextOnce) {
    Dictionary dictionary(true);
    const Dictionary::Key hip = Intern(dictionary, "hip");
    EXPECT_EQ(hip, Intern(dictionary, "hip"));
    EXPECT_EQ(hip.GetText(), Intern(dictionary, "hip").GetText()) << "one stored copy";
    EXPECT_EQ(hip.GetValue(), Hash("hip"));
    EXPECT_NE(hip, Intern(dictionary, "Hip"));
    EXPECT_EQ(dictionary.GetCount(), 2u);
}

TEST(Dictionary, WithoutCaseTheStoredTextIsLower) {
    Dictionary dictionary(false);
    EXPECT_EQ(Intern(dictionary, "Bone01"), Intern(dictionary, "bone01"));
    EXPECT_STREQ(Intern(dictionary, "BONE01").GetText(), "bone01");
}

TEST(Dictionary, WithoutCaseLongTextsAreCut) {
    Dictionary dictionary(false);
    const std::string longest(1023, 'X');
    EXPECT_EQ(Intern(dictionary, longest + "1"), Intern(dictionary, longest + "2"));
    EXPECT_EQ(Intern(dictionary, longest), Intern(dictionary, longest + "2"));
    Dictionary withCase(true);
    EXPECT_NE(Intern(withCase, longest + "1"), Intern(withCase, longest + "2"));
    const std::string huge(100000, 'h');
    EXPECT_EQ(Intern(withCase, huge).GetText(), huge);
}

TEST(Dictionary, FreshKeysAreInvalidAndCompareWithAnything) {
    Dictionary dictionary(true);
    const Dictionary::Key fresh;
    EXPECT_EQ(fresh, Dictionary::Key());
    EXPECT_FALSE(fresh.IsValid());
    EXPECT_STREQ(fresh.GetText(), "<uninitialized>");
    EXPECT_NE(fresh, Intern(dictionary, "hip"));
}

TEST(Dictionary, KeysOfTwoDictionariesDontCompare) {
    Dictionary left(true), right(true);
    const Dictionary::Key a = Intern(left, "hip"), b = Intern(right, "hip");
    EXPECT_THROW(static_cast<void>(a == b), std::runtime_error);
}

TEST(Dictionary, FindNeverAdds) {
    Dictionary dictionary(false);
    Dictionary::Key key;
    EXPECT_FALSE(dictionary.Find("hip", key));
    const Dictionary::Key hip = Intern(dictionary, "hip");
    EXPECT_FALSE(dictionary.Find("knee", key));
    EXPECT_EQ(key, Dictionary::Key());
    EXPECT_EQ(dictionary.GetCount(), 1u);
    EXPECT_TRUE(dictionary.Find("HIP", key));
    EXPECT_EQ(key, hip);
}

TEST(Dictionary, CollidingTextsGetNeighbouringValues) {
    ReportCapture capture;
    const std::vector<TextPair> pairs = FindCollisions(2);
    Dictionary dictionary(true);
    for (const auto& [first, second] : pairs) {
        const Dictionary::Key a = Intern(dictionary, first), b = Intern(dictionary, second);
        EXPECT_EQ(b.GetValue(), a.GetValue() + 1);
        EXPECT_EQ(Intern(dictionary, first), a);
        EXPECT_EQ(Intern(dictionary, second), b);
        Dictionary::Key found;
        EXPECT_TRUE(dictionary.Find(second.c_str(), found));
        EXPECT_EQ(found, b);
        EXPECT_EQ(dictionary.GetString(b.GetValue()), second);
    }
    EXPECT_EQ(ReportCapture::CountWarnings("Dictionary hash collision"), 1u);
    EXPECT_TRUE(ReportCapture::HasWarning("'" + pairs[0].first + "'<->'" + pairs[0].second + "'"));
}

TEST(Dictionary, TheFirstToComeHasTheHash) {
    const TextPair pair = FindCollisions(1)[0];
    Dictionary dictionary(true);
    EXPECT_EQ(Intern(dictionary, pair.second).GetValue(), Hash(pair.second));
    EXPECT_EQ(Intern(dictionary, pair.first).GetValue(), Hash(pair.first) + 1);
}

TEST(Dictionary, ValuesLeadBackToTexts) {
    Dictionary dictionary(true);
    Dictionary::Key key;
    EXPECT_FALSE(dictionary.FindValue(12, key));
    const Dictionary::Key hip = Intern(dictionary, "hip");
    EXPECT_TRUE(dictionary.FindValue(hip.GetValue(), key));
    EXPECT_EQ(key, hip);
    EXPECT_STREQ(dictionary.GetString(hip.GetValue()), "hip");
    EXPECT_THROW(dictionary.GetString(12), std::runtime_error);
}

TEST(Dictionary, ManyTextsKeepTheirPlaces) {
    Dictionary dictionary(true);
    std::vector<Dictionary::Key> keys;
    for (int i = 0; i < 20000; ++i)
        keys.push_back(Intern(dictionary, "name" + std::to_string(i)));
    for (int i = 0; i < 20000; ++i) {
        EXPECT_EQ(keys[static_cast<size_t>(i)].GetText(), "name" + std::to_string(i));
        Dictionary::Key found;
        ASSERT_TRUE(dictionary.Find(keys[static_cast<size_t>(i)].GetText(), found));
        EXPECT_EQ(found, keys[static_cast<size_t>(i)]);
    }
}

TEST(Dictionary, ANullTextIsAMistake) {
    Dictionary dictionary(true);
    Dictionary::Key key;
    EXPECT_THROW(dictionary.Intern(key, nullptr), std::runtime_error);
    EXPECT_THROW(dictionary.Find(nullptr, key), std::runtime_error);
}
