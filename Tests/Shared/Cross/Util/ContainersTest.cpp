#include "Shared/Cross/Util/StlExSmallVector.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using Texts = StlExSmallVector<std::string, 3>;

Texts MakeTexts(int count) {
    Texts texts;
    for (int i = 0; i < count; ++i)
        texts.push_back("a text too long to lie inside its string " + std::to_string(i));
    return texts;
}

void ExpectTexts(const Texts& texts, int count) {
    ASSERT_EQ(texts.size(), static_cast<size_t>(count));
    for (int i = 0; i < count; ++i)
        EXPECT_TRUE(texts[static_cast<size_t>(i)].ends_with(" " + std::to_string(i)));
}

bool LiesInside(const Texts& texts) {
    const auto* pStart = reinterpret_cast<const char*>(&texts);
    const auto* pData = reinterpret_cast<const char*>(texts.data());
    return pData >= pStart && pData < pStart + sizeof texts;
}

} // namespace

TEST(StlExSmallVector, LeavesItsObjectOnlyWhenItOutgrowsIt) {
    EXPECT_TRUE(LiesInside(MakeTexts(3)));
    EXPECT_FALSE(LiesInside(MakeTexts(4)));
    for (int count : {0, 3, 4, 50})
        ExpectTexts(MakeTexts(count), count);
}

TEST(StlExSmallVector, CopiesAndMovesInBothStates) {
    for (int count : {0, 2, 3, 4, 20}) {
        Texts source = MakeTexts(count);
        Texts copy = source;
        ExpectTexts(copy, count);
        Texts moved = std::move(source);
        ExpectTexts(moved, count);
        EXPECT_TRUE(source.empty()) << "what was moved from can be used again";
        source.push_back("again 0");
        ExpectTexts(source, 1);
        for (int other : {0, 1, 9}) {
            Texts target = MakeTexts(other);
            target = copy;
            ExpectTexts(target, count);
            target = MakeTexts(other);
            ExpectTexts(target, other);
        }
    }
}

TEST(StlExSmallVector, AddsItsOwnElements) {
    Texts texts = MakeTexts(3);
    texts.push_back(texts[0]);
    EXPECT_EQ(texts.back(), texts[0]);
}
