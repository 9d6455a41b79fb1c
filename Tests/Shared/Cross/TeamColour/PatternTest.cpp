#include <gmock/gmock.h>

#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/FileSystem/Paths/FilePath.h"
#include "Shared/Cross/FileSystem/Paths/FilePathHD.h"
#include "Shared/Cross/TeamColour/Pattern.h"
#include "Shared/Cross/TeamColour/PatternLoad.h"
#include "Tests/Shared/Cross/FileSystem/ChunkBytes.h"
#include "Tests/Shared/Cross/RenderAnim/Chunks/PayloadBytes.h"
#include "Tests/Shared/Cross/RenderAnim/Image/ImageTesting.h"
#include "Tests/Shared/PC/FileSystem/TempFolder.h"

namespace {

constexpr Pattern::Rect s_Badge{.x = 1, .y = 2, .width = 64, .height = 64};
constexpr Pattern::Rect s_Banner{.x = 3, .y = 4, .width = 64, .height = 96};

Pattern MakePattern() {
    Pattern pattern;
    pattern.SetSchemeName("desert");
    pattern.SetSize(2, 3);
    pattern.SetLayer(Pattern::LAYER_PRIMARY, {1, 2, 3, 4, 5, 6});
    pattern.SetLayer(Pattern::LAYER_DIRT, {7, 8, 9, 10, 11, 12});
    pattern.SetDirtImage(MakeRandomImage(IMAGETYPE_RGBA32, 2, 3));
    pattern.SetBadge(s_Badge);
    pattern.SetBanner(s_Banner);
    return pattern;
}

std::string Write(const Pattern& pattern) {
    const std::unique_ptr<RamStream> pStream = MakeWriteStream();
    PatternLoad::Write(*pStream, pattern);
    return BytesOf(*pStream);
}

Pattern Read(std::string_view bytes) {
    Pattern pattern;
    PatternLoad::Read(*MakeReadStream(bytes), pattern);
    return pattern;
}

Pattern ReadChildren(const std::string& children, uint32_t version = 3) {
    return Read(ChunkBytes::FileHeader() + NamedFolder("TPAT", "old", children, version));
}

std::string MakeInfo(uint32_t width, uint32_t height) {
    return ChunkBytes::Data("INFO", PayloadBytes().U32(width).U32(height).Get());
}

std::string MakeImage(uint32_t type, uint32_t width, uint32_t height, const std::string& pixels) {
    return ChunkBytes::Folder(
        "IMAG", ChunkBytes::Data("ATTR", PayloadBytes().U32(type).U32(width).U32(height).U32(1).Get(), 2) +
                    ChunkBytes::Data("DATA", pixels, 2));
}

// A layer as an image, whose index is followed by a word that nobody wants in version 1.
std::string MakeOldLayer(uint32_t layer, const std::string& image, uint32_t version = 2) {
    PayloadBytes info;
    info.U32(layer);
    if (version == 1)
        info.U32(99);
    return ChunkBytes::Folder("PTLR", ChunkBytes::Data("PTIN", info.Get(), version) + image);
}

TEST(Pattern, BytesOfAFile) {
    Pattern pattern;
    pattern.SetSize(2, 1);
    pattern.SetLayer(Pattern::LAYER_SECONDARY, {1, 2});
    pattern.SetLayer(Pattern::LAYER_EYES, {3, 4});
    pattern.SetBanner({.x = 1, .y = 2, .width = 3, .height = 4});
    const std::string layers = PayloadBytes().U32(1).U32(2).U8(1).U8(2).U32(4).U32(2).U8(3).U8(4).Get();
    EXPECT_EQ(Write(pattern), ChunkBytes::FileHeader() +
                                  NamedFolder("TPAT", "default",
                                              MakeInfo(2, 1) + ChunkBytes::Data("PTLD", layers) +
                                                  ChunkBytes::Data("PTBN", PayloadBytes().F32({1, 2, 3, 4}).Get()),
                                              3));
}

TEST(Pattern, WhatIsWrittenIsReadAndWrittenAgain) {
    const std::string bytes = Write(MakePattern());
    const Pattern pattern = Read(bytes);
    EXPECT_STREQ(pattern.GetSchemeName(), "desert");
    EXPECT_EQ(pattern.GetWidth(), 2u);
    EXPECT_EQ(pattern.GetHeight(), 3u);
    EXPECT_THAT(pattern.GetLayer(Pattern::LAYER_PRIMARY), testing::ElementsAre(1, 2, 3, 4, 5, 6));
    EXPECT_FALSE(pattern.HasLayer(Pattern::LAYER_TRIM));
    ASSERT_TRUE(pattern.GetDirtImage());
    EXPECT_TRUE(HaveSameData(*pattern.GetDirtImage(), *MakeRandomImage(IMAGETYPE_RGBA32, 2, 3)));
    EXPECT_EQ(pattern.GetBadge(), s_Badge);
    EXPECT_EQ(pattern.GetBanner(), s_Banner);
    EXPECT_EQ(Write(pattern), bytes);

    const Pattern bare = Read(Write(Pattern()));
    EXPECT_STREQ(bare.GetSchemeName(), "default");
    EXPECT_FALSE(bare.GetBadge().IsPresent() || bare.GetDirtImage());
}

TEST(Pattern, LayersMayHaveAChunkEach) {
    const Pattern pattern = ReadChildren(
        MakeInfo(1, 2) + ChunkBytes::Data("PTLD", PayloadBytes().U32(3).U32(2).U8(1).U8(2).Get()) +
        ChunkBytes::Data("what", "ever") + ChunkBytes::Data("PTLD", PayloadBytes().U32(0).U32(2).U8(3).U8(4).Get()));
    EXPECT_THAT(pattern.GetLayer(Pattern::LAYER_WEAPONS), testing::ElementsAre(1, 2));
    EXPECT_THAT(pattern.GetLayer(Pattern::LAYER_PRIMARY), testing::ElementsAre(3, 4));
}

TEST(Pattern, LayersOfOldAreImages) {
    const std::string pixels = "bgr1BGR2";
    for (const uint32_t version : {1u, 2u}) {
        const Pattern pattern =
            ReadChildren(MakeOldLayer(0, MakeImage(0, 2, 1, pixels), version) +
                             MakeOldLayer(5, MakeImage(0, 2, 1, pixels), version) + MakeOldLayer(2, "", version),
                         version);
        EXPECT_EQ(pattern.GetWidth(), 2u);
        EXPECT_EQ(pattern.GetHeight(), 1u);
        EXPECT_THAT(pattern.GetLayer(Pattern::LAYER_PRIMARY), testing::ElementsAre('1', '2'));
        EXPECT_THAT(pattern.GetLayer(Pattern::LAYER_DIRT), testing::ElementsAre('1', '2'));
        EXPECT_FALSE(pattern.HasLayer(Pattern::LAYER_TRIM));
        ASSERT_TRUE(pattern.GetDirtImage());
        EXPECT_THAT(pattern.GetDirtImage()->GetData(), testing::ElementsAre('b', 'g', 'r', 255, 'B', 'G', 'R', 255));
    }
}

TEST(Pattern, AnOldLayerOfAnotherSizeFailsAnAssertion) {
    const std::string children = MakeInfo(2, 1) + MakeOldLayer(0, MakeImage(0, 1, 1, "bgra"));
    ReportCapture capture;
    EXPECT_THROW(ReadChildren(children), std::runtime_error);
    EXPECT_TRUE(ReportCapture::HasWarning(
        "pImage->GetWidth() == pattern.GetWidth() && pImage->GetHeight() == pattern.GetHeight()"));
    const dbNoThrowScope stepOver;
    EXPECT_FALSE(ReadChildren(children).HasLayer(Pattern::LAYER_PRIMARY));
}

TEST(Pattern, DamagedFilesAreRefused) {
    const std::string info = MakeInfo(1, 1);
    const std::pair<std::string, const char*> files[] = {
        {ChunkBytes::Data("INFO", ChunkBytes::Number(1)), "height is missing"},
        {info + ChunkBytes::Data("PTLD", ChunkBytes::Number(0)), "byte count is missing"},
        {info + ChunkBytes::Data("PTLD", PayloadBytes().U32(6).U32(1).U8(0).Get()), "there is no layer 6"},
        {info + ChunkBytes::Data("PTLD", PayloadBytes().U32(0).U32(2).U8(0).U8(0).Get()),
         "layer 0 has 2 bytes where 1x1 pixels have one each"},
        {MakeInfo(0x10000, 0x1000) + ChunkBytes::Data("PTLD", PayloadBytes().U32(0).U32(0x10000000).Get()),
         "layer 0 goes beyond its chunk"},
        {ChunkBytes::Data("PTBD", PayloadBytes().F32({1, 2, 3}).Get()), "height is missing"},
        {MakeOldLayer(0xFFFFFFFF, ""), "there is no layer 4294967295"},
        {ChunkBytes::Folder("PTLR", ChunkBytes::Data("PTIN", ChunkBytes::Number(0), 1)), "second word is missing"},
        {MakeImage(8, 4, 4, "8 bytes."), "an image of type 8 has no pixels of 32 bits"},
    };
    for (const auto& [children, text] : files) {
        try {
            ReadChildren(children);
            ADD_FAILURE() << text;
        } catch (const Chunky::Exception& exception) {
            EXPECT_EQ(std::string("Pattern: ") + text, exception.what());
        }
    }
    EXPECT_THROW(ReadChildren("", 4), Chunky::Exception);
    EXPECT_THROW(ReadChildren(ChunkBytes::Data("PTLD", "", 2)), Chunky::Exception);
}

TEST(Pattern, EveryTruncationIsRefused) {
    const std::string bytes = Write(MakePattern());
    for (size_t size = 1; size < bytes.size(); ++size)
        EXPECT_THROW(Read(std::string_view(bytes).substr(0, size)), std::runtime_error) << "cut to " << size;
}

TEST(Pattern, MistakesAreAssertions) {
    ReportCapture capture;
    const dbNoThrowScope stepOver;
    Pattern pattern = MakePattern();
    EXPECT_FALSE(pattern.HasLayer(-1));
    EXPECT_TRUE(ReportCapture::HasWarning("layer >= 0"));
    pattern.SetLayer(Pattern::LAYER_PATTERN_COUNT, {1, 2, 3, 4, 5, 6});
    EXPECT_TRUE(ReportCapture::HasWarning("layer < Pattern::LAYER_PATTERN_COUNT"));
    pattern.SetSchemeName("a scheme's name of 31 letters, x");
    EXPECT_TRUE(ReportCapture::HasWarning("strlen( schemeName ) < num"));
    EXPECT_STREQ(pattern.GetSchemeName(), "a scheme's name of 31 letters, ");
    pattern.SetLayer(Pattern::LAYER_PRIMARY, {1, 2});
    EXPECT_EQ(pattern.GetLayer(Pattern::LAYER_PRIMARY).size(), 6u);
    pattern.SetSize(3, 3);
    EXPECT_FALSE(pattern.HasLayer(Pattern::LAYER_PRIMARY));
}

class PatternFile : public testing::Test {
protected:
    PatternFile() {
        FilePath::AddSource("DATA", "HD", 0, FilePathHD::Create(m_Folder.Path().c_str(), ByteStream::Mode_Both));
    }
    ~PatternFile() override { FilePath::RemoveSource("DATA", "HD"); }

    TempFolder m_Folder;
    ReportCapture m_Reports;
};

TEST_F(PatternFile, LiesBesideItsTexture) {
    std::string path;
    for (const auto& [pTexture, pPath] : std::initializer_list<std::pair<const char*, const char*>>{
             {"a\\b.tga", "DATA:a\\b_default.otp"}, {"Generic:a/b", "GENERIC:a\\b_default.otp"}}) {
        EXPECT_TRUE(Pattern::GetPatternFilename(path, pTexture, "default"));
        EXPECT_EQ(path, pPath);
    }
    EXPECT_FALSE(Pattern::GetPatternFilename(path, std::string(250, 'a').c_str(), "default"));

    EXPECT_FALSE(Pattern::Exists("b.tga", "desert"));
    ASSERT_TRUE(Pattern::Save("DATA:b_desert.otp", MakePattern()));
    EXPECT_TRUE(Pattern::Exists("b.tga", "desert"));
    Pattern pattern;
    ASSERT_TRUE(Pattern::Load("DATA:b_desert.otp", pattern));
    EXPECT_EQ(Write(pattern), Write(MakePattern()));
    EXPECT_TRUE(m_Reports.GetWarnings().empty());
}

TEST_F(PatternFile, FailuresAreALineInTheLogAndChangeNothing) {
    Pattern pattern = MakePattern();
    EXPECT_FALSE(Pattern::Load("DATA:missing.otp", pattern));
    EXPECT_TRUE(ReportCapture::HasWarning("TEAM COLOUR -- 'DATA:missing.otp': Unable to open file!"));
    m_Folder.Write("bad.otp", ChunkBytes::FileHeader() +
                                  NamedFolder("TPAT", "bad", MakeInfo(9, 9) + ChunkBytes::Data("PTLD", "????"), 3));
    EXPECT_FALSE(Pattern::Load("DATA:bad.otp", pattern));
    EXPECT_TRUE(ReportCapture::HasWarning("TEAM COLOUR -- 'DATA:bad.otp': Pattern: there is no layer"));
    m_Folder.Write("long.otp", ChunkBytes::FileHeader() + NamedFolder("TPAT", std::string(32, 's'), "", 3));
    EXPECT_FALSE(Pattern::Load("DATA:long.otp", pattern));
    EXPECT_TRUE(ReportCapture::HasWarning("strlen( schemeName ) < num"));
    EXPECT_EQ(Write(pattern), Write(MakePattern()));
    EXPECT_FALSE(Pattern::Save("NOWHERE:x.otp", pattern));
    EXPECT_TRUE(ReportCapture::HasWarning("TEAM COLOUR -- 'NOWHERE:x.otp': Unable to open file!"));
}

} // namespace
