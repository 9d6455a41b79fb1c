#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include "Shared/Cross/TeamColour/Pattern.h"
#include "Shared/Cross/TeamColour/PatternLoad.h"
#include "Tests/Shared/Cross/FileSystem/ChunkBytes.h"
#include "Tests/Shared/Cross/RenderAnim/Image/ImageTesting.h"
#include "Tests/Shared/PC/FileSystem/TempFolder.h"
#include "Tools/pvxdump/Dump.h"

using nlohmann::json;
using testing::HasSubstr;

namespace {

std::string MakePatternFile() {
    Pattern pattern;
    pattern.SetSize(2, 2);
    pattern.SetLayer(Pattern::LAYER_PRIMARY, {0, 255, 255, 0});
    pattern.SetLayer(Pattern::LAYER_DIRT, {51, 51, 51, 51});
    pattern.SetDirtImage(MakeRandomImage(IMAGETYPE_RGBA32, 2, 2));
    pattern.SetBadge({.x = 5, .y = 7, .width = 64, .height = 64});
    const std::unique_ptr<RamStream> pStream = MakeWriteStream();
    PatternLoad::Write(*pStream, pattern);
    return BytesOf(*pStream);
}

std::string Dump(const std::string& bytes, bool asJson, const std::string& folder = {}) {
    return DumpFile(*MakeReadStream(bytes), "art/tank_default.otp", {.json = asJson, .texturesFolder = folder});
}

TEST(DumpPattern, LayersAndPlacesAreTold) {
    const std::string text = Dump(MakePatternFile(), false);
    EXPECT_THAT(text, HasSubstr("pattern default, 2x2 pixels, 2 layers"));
    EXPECT_THAT(text, HasSubstr("badge: 64x64 at "));
    EXPECT_THAT(text, testing::Not(HasSubstr("banner")));
    EXPECT_THAT(text, testing::ContainsRegex("primary +2 +0.5"));
    EXPECT_THAT(text, testing::ContainsRegex("dirt +4 +0.2"));
    const json out = json::parse(Dump(MakePatternFile(), true));
    EXPECT_EQ(out["layers"][0], json({{"name", "primary"}, {"coveredPixels", 2}, {"mean", 0.5}}));
    EXPECT_EQ(out["dirtImage"], json({{"width", 2}, {"height", 2}}));
    EXPECT_EQ(out["badge"]["y"], 7);
    EXPECT_EQ(out["kind"], "pattern");
    EXPECT_EQ(out["size"], MakePatternFile().size());
}

TEST(DumpPattern, WhoBurnedTheFileIsTold) {
    const std::string info = ChunkBytes::Number(1) + "a" + ChunkBytes::Number(7) + ChunkBytes::Number(2) + "me" +
                             ChunkBytes::Number(3) + "now";
    const std::string bytes = ChunkBytes::FileHeader() + ChunkBytes::Data("FBIF", info) + MakePatternFile().substr(24);
    EXPECT_THAT(Dump(bytes, false), HasSubstr(" layers\nburned from \"a\" by me, now, burner version 7\ndirt image"));
    EXPECT_EQ(json::parse(Dump(bytes, true))["burnInfo"]["user"], "me");
}

TEST(DumpPattern, LayersBecomePictures) {
    const TempFolder folder;
    const json out = json::parse(Dump(MakePatternFile(), true, folder.Native()));
    EXPECT_EQ(out["layers"][0]["file"], "tank_default_primary.tga");
    EXPECT_EQ(out["dirtImage"]["file"], "tank_default_dirt_image.tga");
    const std::string picture = folder.Read("tank_default_primary.tga");
    ASSERT_EQ(picture.size(), 18u + 2 * 2 * 3);
    EXPECT_EQ(picture.substr(18), std::string(3, '\0') + std::string(6, '\xFF') + std::string(3, '\0'));
    EXPECT_EQ(folder.Read("tank_default_dirt_image.tga").size(), 18u + 2 * 2 * 4);
}

TEST(DumpPattern, FaultsAreNamed) {
    const std::string bytes = MakePatternFile();
    EXPECT_THROW(Dump(bytes.substr(0, bytes.size() - 1), false), std::runtime_error);
    EXPECT_THROW(Dump(ChunkBytes::FileHeader() + ChunkBytes::Folder("TPAT", "", 4), false), std::runtime_error);
}

} // namespace
