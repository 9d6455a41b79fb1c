#include "Shared_Tools/PVXExport/Merge/OmbrelTeamPattern.h"

#include "Shared/Cross/FileSystem/Paths/FilePathHDRaw.h"
#include "Shared/Cross/TeamColour/Pattern.h"
#include "Tests/Shared_Tools/PVXExport/Merge/MergeFixture.h"

namespace {

// Pictures are painted beside a texture of 80 by 100 pixels, so that a badge and a banner have a little room.
class TeamPattern : public MergeFixture {
protected:
    static constexpr uint16_t s_Width = 80;
    static constexpr uint16_t s_Height = 100;

    TeamPattern() {
        Pipeline::Initialize(At("int/ref.pvx").c_str());
        FilePath::AddSource("TOOL", "HD", 99, std::make_shared<FilePathHDRaw>(false));
        Paint("", 11);
    }

    // A picture of one alpha. The pixels of the marks are of full red and blue, or one of them.
    void Paint(const std::string& suffix, uint8_t alpha, const std::vector<std::pair<int, int>>& marks = {},
               uint16_t width = s_Width, const std::vector<size_t>& channels = {0, 2}) {
        Bytes bytes = MakeTga(width, s_Height, 32);
        for (size_t i = 18; i < bytes.size(); i += 4) {
            bytes[i] = static_cast<uint8_t>(i % 200);
            bytes[i + 2] = 7;
            bytes[i + 3] = alpha;
        }
        for (const auto& [x, y] : marks)
            for (const size_t channel : channels)
                bytes[18 + (static_cast<size_t>(y) * width + static_cast<size_t>(x)) * 4 + channel] = 255;
        m_Server.Write("src/art/tank" + suffix + ".tga", {bytes.begin(), bytes.end()});
    }
    static std::unique_ptr<Pattern> Make(const char* pScheme = "default") {
        return OmbrelTeamPattern::MakeTeamPattern("game", pScheme, "art\\tank");
    }
    std::string GetSource() const { return "TOOL:" + At("src/art/tank.tga"); }
    static std::string GetFault() {
        try {
            Make();
        } catch (const std::runtime_error& error) {
            return error.what();
        }
        return "none";
    }
};

TEST_F(TeamPattern, LayersAreTheAlphaOfTheirPictures) {
    const char* const suffixes[] = {"primary", "secondary", "trim", "weapons", "eyes", "dirt"};
    for (uint8_t i = 0; i < 6; ++i)
        Paint(std::string("_desert_") + suffixes[i], static_cast<uint8_t>(100 + i));
    ReportCapture reports;
    const std::unique_ptr<Pattern> pPattern = Make("desert");
    ASSERT_TRUE(pPattern);
    EXPECT_STREQ(pPattern->GetSchemeName(), "desert");
    EXPECT_EQ(pPattern->GetWidth(), s_Width);
    EXPECT_EQ(pPattern->GetHeight(), s_Height);
    for (int32_t i = 0; i < 6; ++i) {
        ASSERT_EQ(pPattern->GetLayer(i).size(), size_t{s_Width} * s_Height);
        EXPECT_EQ(pPattern->GetLayer(i)[5], 100 + i);
    }
    ASSERT_TRUE(pPattern->GetDirtImage());
    const std::span<const uint8_t> dirt = pPattern->GetDirtImage()->GetData();
    EXPECT_EQ(dirt[0], 18) << "the colours are the dirt's";
    EXPECT_EQ(dirt[3], 11) << "the alpha is the texture's";
    EXPECT_FALSE(pPattern->GetBadge().IsPresent() || pPattern->GetBanner().IsPresent());
    EXPECT_THAT(reports.GetWarnings(), testing::IsEmpty());
    EXPECT_FALSE(Make("default")) << "none of these is of that scheme";
}

TEST_F(TeamPattern, WithoutATextureOrALayerThereIsNone) {
    ReportCapture reports;
    EXPECT_FALSE(Make());
    Paint("_default_badge", 0, {{3, 4}});
    EXPECT_FALSE(Make()) << "a badge is no layer";
    Paint("_default_primary", 1);
    EXPECT_TRUE(Make());
    reports.Clear();
    OSFile::Delete(At("src/art/tank.tga").c_str());
    EXPECT_FALSE(Make());
    EXPECT_THAT(reports.GetWarnings(), testing::IsEmpty());
    EXPECT_TRUE(OmbrelTeamPattern::ExportTeamPattern("game", "art\\tank"));
    EXPECT_FALSE(m_Server.Has("gen/art/tank_default.otp"));
}

TEST_F(TeamPattern, MissingPartsAreReported) {
    Paint("_default_eyes", 1);
    ReportCapture reports;
    EXPECT_TRUE(Make());
    for (const char* pPart : {"primary team colour layer", "dirt team colour layer", "dirt team colour image"})
        EXPECT_TRUE(ReportCapture::HasWarning(std::string("Team Pattern Export -- Unable to find 'default' ") + pPart +
                                              " for '" + GetSource() + "'!"));
    Paint("_default_dirt", 1);
    reports.Clear();
    EXPECT_TRUE(Make());
    EXPECT_EQ(reports.GetWarnings().size(), 1u);
}

TEST_F(TeamPattern, BadgeAndBannerLieAtTheFirstMark) {
    Paint("_default_primary", 1);
    Paint("_default_badge", 0, {{9, 40}, {16, 36}, {17, 36}});
    Paint("_default_banner", 0, {{0, 4}});
    const std::unique_ptr<Pattern> pPattern = Make();
    EXPECT_EQ(pPattern->GetBadge(), (Pattern::Rect{.x = 16, .y = 36, .width = 64, .height = 64}));
    EXPECT_EQ(pPattern->GetBanner(), (Pattern::Rect{.x = 0, .y = 4, .width = 64, .height = 96}));

    for (const size_t channel : {0u, 2u}) {
        Paint("_default_badge", 0, {{0, 0}}, s_Width, {channel});
        EXPECT_FALSE(Make()->GetBadge().IsPresent()) << "full red or full blue alone is no mark";
    }
}

TEST_F(TeamPattern, PlacesHaveToFit) {
    Paint("_default_primary", 1);
    const auto fault = [&](const std::string& place) {
        return "Merge: Invalid Badge or Banner Coordinates for 'TOOL:" + At("src/art/tank_default_" + place + ".tga") +
               "'!  The area must fit completely inside the image!\n";
    };
    for (const std::pair<int, int>& mark : {std::pair(17, 0), std::pair(0, 37)}) {
        Paint("_default_badge", 0, {mark});
        EXPECT_EQ(GetFault(), fault("badge"));
    }
    OSFile::Delete(At("src/art/tank_default_badge.tga").c_str());
    Paint("_default_banner", 0, {{0, 5}});
    EXPECT_EQ(GetFault(), fault("banner"));
    Paint("_default_banner", 0, {{0, 0}}, 20);
    EXPECT_EQ(GetFault(), fault("banner")) << "the picture itself is too small";
}

TEST_F(TeamPattern, LayersOfAnotherSizeAreRefused) {
    for (const std::string layer : {"primary", "dirt"}) {
        Paint("_default_" + layer, 1, {}, s_Width / 2);
        EXPECT_EQ(GetFault(), "Merge: Layer '" + layer + "' does not match texture '" + GetSource() + "' dimensions!");
        Paint("_default_" + layer, 1);
    }
}

TEST_F(TeamPattern, APatternThatCannotBeBurntIsSavedAndABareText) {
    Paint("_default_primary", 1);
    const std::string file = "gen/art/tank_default.otp";
    try {
        OmbrelTeamPattern::ExportTeamPattern("game", "art\\tank");
        ADD_FAILURE() << "there is no burner";
    } catch (const char* pText) {
        EXPECT_EQ(pText, TellUnable("burn team colour pattern", file, " pattern"));
    }
    EXPECT_EQ(m_Server.GetOpened(file), "add 1");
    Pattern pattern;
    EXPECT_TRUE(Pattern::Load(("TOOL:" + At(file)).c_str(), pattern));
    EXPECT_TRUE(pattern.HasLayer(Pattern::LAYER_PRIMARY));
}

} // namespace
