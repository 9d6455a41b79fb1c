#include "Shared/Cross/Util/Hash.h"

#include "Shared/Cross/Util/FourCC.h"

#include <gtest/gtest.h>

#include <string>

TEST(Hash, HasThePublishedValues) {
    // Each length of the last block's three words, and more than one block.
    EXPECT_EQ(Hash(""), 0xBD49D10Du);
    EXPECT_EQ(Hash("a"), 0x29EEC818u);
    EXPECT_EQ(Hash("bone01"), 0xB144D780u);
    EXPECT_EQ(Hash("12345678901"), 0x79F32D84u);
    EXPECT_EQ(Hash("123456789012"), 0xF7E45E60u);
    EXPECT_EQ(Hash("1234567890123"), 0x8F57066Au);
    EXPECT_EQ(Hash("The quick brown fox jumps over the lazy dog"), 0xFC1558DEu);
}

TEST(Hash, WithoutCaseItLooksAtTheFirst2047Characters) {
    EXPECT_EQ(HashNoCase("Art/FOO"), Hash("art/foo"));
    const std::string longest(2047, 'x');
    EXPECT_EQ(HashNoCase(longest + "Y"), Hash(longest));
    EXPECT_NE(HashNoCase(longest), HashNoCase(longest.substr(1)));
}

TEST(Hash, ComparesWithoutCase) {
    EXPECT_TRUE(EqualNoCase("Bone_01", "bONE_01"));
    EXPECT_FALSE(EqualNoCase("bone", "bone1"));
    EXPECT_FALSE(EqualNoCase("\xC4", "\xE4")) << "letters beyond ASCII have no case";
}

TEST(FourCC, HasItsFirstCharacterOnTop) { EXPECT_EQ(FourCC("MESH"), 0x4D455348u); }
