#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/LuaConfig/LuaConfig.h"
#include "Shared/Cross/LuaConfig/LuaConfigSave.h"
#include "Tests/Shared/Cross/RenderAnim/Chunks/PayloadBytes.h"
#include "Tools/pvxdump/Dump.h"

using nlohmann::json;

namespace {

std::string Dump(const std::string& bytes, bool asJson) {
    return DumpFile(*MakeReadStream(bytes), "burn.cfg", {.json = asJson});
}

std::string MakeFile(const std::string& text) {
    return ChunkBytes::FileHeader() + NamedData("LCFG", "LuaConfig Chunky", text, 1);
}

} // namespace

TEST(DumpScript, TheTextIsShown) {
    const std::string text = "colour =\n{\n\tname = \"r\xC3\xB6t\",\n}\n";
    EXPECT_EQ(Dump(MakeFile(text), false), "burn.cfg: 90 bytes, script \"LuaConfig Chunky\": 4 lines\n\n" + text);
    const json out = json::parse(Dump(MakeFile(text), true));
    EXPECT_EQ(out["kind"], "script");
    EXPECT_EQ(out["text"], text);
    EXPECT_EQ(out["size"], 90);
}

TEST(DumpScript, NothingInItReachesTheTerminal) {
    EXPECT_EQ(Dump(MakeFile("a\x1B[2J\r\nb"), false),
              "burn.cfg: 69 bytes, script \"LuaConfig Chunky\": 2 lines\n\na\\x1B[2J\\x0D\nb\n");
    EXPECT_EQ(Dump(MakeFile(""), false), "burn.cfg: 61 bytes, script \"LuaConfig Chunky\": 0 lines\n");
}

TEST(DumpScript, WhatIsSavedIsShown) {
    LuaConfig config("test");
    ASSERT_TRUE(config.RunText("answer = 42", "test"));
    const auto pStream = MakeWriteStream();
    {
        Chunky chunky{ByteStreamAdapter(pStream.get())};
        ASSERT_TRUE(LuaConfigSave::SaveToChunky(config, chunky));
    }
    EXPECT_THAT(Dump(BytesOf(*pStream), false), testing::HasSubstr("\nanswer = 42\n"));
}
