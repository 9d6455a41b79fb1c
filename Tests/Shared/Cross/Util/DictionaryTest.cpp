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

TEST(Dictionary, WithoutCaseLongTextsAreCut) {
    Dictionary dictionary(false);
    EXPECT_STREQ(Intern(dictionary, "BONE01").GetText(), "bone01");
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
    Dictionary other(true);
    EXPECT_THROW(static_cast<void>(Intern(dictionary, "hip") == Intern(other, "hip")), std::runtime_error);
    Dictionary::Key key;
    EXPECT_THROW(dictionary.Intern(key, nullptr), std::runtime_error);
}

TEST(Dictionary, LookingUpNeverAdds) {
    Dictionary dictionary(false);
    Dictionary::Key key;
    EXPECT_FALSE(dictionary.Find("hip", key) || dictionary.FindValue(12, key));
    const Dictionary::Key hip = Intern(dictionary, "hip");
    EXPECT_FALSE(dictionary.Find("knee", key) || dictionary.FindValue(12, key));
    EXPECT_EQ(key, Dictionary::Key());
    EXPECT_TRUE(dictionary.Find("HIP", key) && key == hip);
    EXPECT_TRUE(dictionary.FindValue(hip.GetValue(), key) && key == hip);
    EXPECT_EQ(dictionary.GetCount(), 1u);
    EXPECT_THROW(dictionary.GetString(12), std::runtime_error);
}

TEST(Dictionary, CollidingTextsGetNeighbouringValues) {
    ReportCapture capture;
    const std::vector<TextPair> pairs = FindCollisions(2);
    Dictionary dictionary(true);
    for (const auto& [first, second] : pairs) {
        const Dictionary::Key a = Intern(dictionary, first), b = Intern(dictionary, second);
        EXPECT_EQ(a.GetValue(), Hash(first));
        EXPECT_EQ(b.GetValue(), Hash(second) + 1);
        for (int i = 0; i < 1000; ++i) // through more room made
            Intern(dictionary, first + std::to_string(i));
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
