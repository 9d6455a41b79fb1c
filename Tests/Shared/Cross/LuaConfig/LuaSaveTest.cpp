#include "Shared/Cross/LuaConfig/LuaConfigSave.h"

#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/LuaConfig/LuaBinding.h"
#include "Tests/Shared/Cross/LuaConfig/LuaFixture.h"
#include "Tests/Shared/PC/FileSystem/TempFolder.h"

namespace {

class LuaSave : public LuaFixture {
protected:
    static std::string TextOf(RamStream& stream) {
        return stream.GetLength() == 0
                   ? ""
                   : std::string(reinterpret_cast<const char*>(stream.GetBuffer()), stream.GetLength());
    }
    std::string Save(LuaConfig& config, bool indent = true, bool sorted = true) {
        RamStream stream;
        stream.Create(4096, ByteStream::Mode_Write);
        EXPECT_TRUE(LuaConfigSave::SaveToStream(config, indent, sorted, stream));
        return TextOf(stream);
    }
    void ExpectSaved(const char* pScript, const std::string& text, bool indent = true, bool sorted = true) {
        LuaConfig config("saved");
        Listen(config);
        EXPECT_TRUE(config.RunCommand(pScript)) << pScript;
        EXPECT_EQ(Save(config, indent, sorted), text) << pScript;
        EXPECT_THAT(m_Texts, testing::IsEmpty()) << pScript;
    }
};

TEST_F(LuaSave, ValuesByTheirTypes) {
    ExpectSaved("x = true", "x = true\n");
    ExpectSaved("x = -3", "x = -3\n");
    ExpectSaved("x = 1.5", "x = 1.50000\n");
    ExpectSaved("x = 0.123456789", "x = 0.12346\n");
    ExpectSaved("x = 1e300 / 1e280", "x = 100000000000000000000\n");
    ExpectSaved("x = 'text'", "x = \"text\"\n");
    ExpectSaved("x = 'a\\\\b'", "x = [[a\\b]]\n");
    ExpectSaved("x = 'say \"hi\"'", "x = [[say \"hi\"]]\n");
    ExpectSaved("x = 'two\\nlines'", "x = [[two\\nlines]]\n");
    ExpectSaved("function f() end g = print", "");
}

TEST_F(LuaSave, TablesInAllTheirRules) {
    ExpectSaved("t = { 'a', { b = 1 } }", "t =  \n{\n\t\"a\",\n\t \n\t{\n\t\tb = 1,\n\t},\n}\n");
    ExpectSaved("t = { 'a', { b = 1 } }", "t =  \n{\n\"a\",\n \n{\nb = 1,\n},\n}\n", false);
    ExpectSaved("t = { 'a', nil, 'c' }", "t =  \n{\n\t[1] = \"a\",\n\t[3] = \"c\",\n}\n");
    ExpectSaved("t = { [12] = 1, [2] = 1 }", "t =  \n{\n\t[2] = 1,\n\t[12] = 1,\n}\n");
    ExpectSaved("t = { z = 1, a = 2, [false] = 3, B = 4 }", "t =  \n{\n\tB = 4,\n\ta = 2,\n\tz = 1,\n}\n");
    ExpectSaved("t = { [0] = 'x', 'y' }", "t =  \n{\n\t[0] = \"x\",\n\t[1] = \"y\",\n}\n");
    ExpectSaved("t = { [-1] = 'x' }", "t =  \n{\n\t[-1] = \"x\",\n}\n");
    ExpectSaved("t = {}", "t =  \n{\n}\n");
    // A key that starts with a digit follows the rule of digits, and leads nowhere by its number.
    ExpectSaved("t = { ['10a'] = 1 }", "t =  \n{\n}\n");
    ExpectSaved("t = { a = 1, ['9x'] = 2, b = 3 } t.a = 1", "t =  \n{\n\t[9x] = 2,\n\ta = 1,\n\tb = 3,\n}\n");
}

TEST_F(LuaSave, TheLanguagesOwnIsLeftOutAmongTheGlobalsAlone) {
    ExpectSaved("debug = { 1 } string = 'x' t = { string = 'kept' } print = 3", "t =  \n{\n\tstring = \"kept\",\n}\n");
}

TEST_F(LuaSave, StringsAreCutAndLongBracketsInThemAreAMistake) {
    m_Config.SetString("x", std::string(2000, 'y').c_str());
    EXPECT_EQ(Save(m_Config), "x = \"" + std::string(1023, 'y') + "\"\n");
    RamStream stream;
    stream.Create(64, ByteStream::Mode_Write);
    m_Config.SetString("x", "a\\[[b");
    EXPECT_THROW(LuaConfigSave::SaveToStream(m_Config, true, true, stream), std::runtime_error);
    EXPECT_TRUE(m_Reports.HasWarning("Assertion of (strstr( textbuffer, \"[[\" ) == NULL) failed"));
    m_Config.SetString("x", "a\\]]b");
    EXPECT_THROW(LuaConfigSave::SaveToStream(m_Config, true, true, stream), std::runtime_error);
    EXPECT_TRUE(m_Reports.HasWarning("strstr( textbuffer, \"]]\" ) == NULL"));
    // Where an assertion only reports, nothing is saved all the same.
    for (const char* pText : {"a\\[[b", "a\\]]b"}) {
        const dbNoThrowScope scope;
        m_Config.SetString("x", pText);
        EXPECT_FALSE(LuaConfigSave::SaveToStream(m_Config, true, true, stream)) << pText;
    }
    EXPECT_EQ(stream.GetLength(), 0u);
    m_Config.SetString("x", "a[[b]]"); // in double quotes
    EXPECT_EQ(Save(m_Config), "x = \"a[[b]]\"\n");
    for (const char* pText : {"a\nb", "\"]]", "\"]", "a\rb"})
        EXPECT_FALSE(LuaConfigSave::SurvivesSave(pText)) << pText;
    EXPECT_FALSE(LuaConfigSave::SurvivesSave(std::string(1024, 'x')));
    for (const char* pText : {"", "a]]", ".*\\.pvx", "\"[x] \""})
        EXPECT_TRUE(LuaConfigSave::SurvivesSave(pText)) << pText;
}

TEST_F(LuaSave, WhatIsLoadedAgainIsTheSame) {
    Run("t = { 1, 2.25, 'a', '\\\\', { deep = { deeper = false } } } u = { [3] = 'x', [5] = { {}, {} } } v = "
        "'q'");
    const std::string text = Save(m_Config);
    LuaConfig again("again");
    EXPECT_TRUE(LoadText(again, text));
    EXPECT_EQ(Save(again), text);
    LuaConfig flat("flat");
    EXPECT_TRUE(LoadText(flat, Save(m_Config, false, false)));
    EXPECT_EQ(Save(flat), text);
}

TEST_F(LuaSave, OneEntryAndOneTable) {
    Run("t = { x = 1 } n = 5");
    RamStream stream;
    stream.Create(64, ByteStream::Mode_Write);
    EXPECT_TRUE(LuaConfigSave::SaveTableToStream(m_Config, "n", true, true, stream));
    EXPECT_TRUE(LuaConfigSave::WriteTable(m_Config, "t", true, true, stream));
    EXPECT_EQ(TextOf(stream), "n = 5\nt =  \n{\n\tx = 1,\n}\n");
    EXPECT_FALSE(LuaConfigSave::WriteTable(m_Config, "n", true, true, stream));
    ExpectReport("Failed to write lua table.  n is not a table.");
    struct : RamStream {
        uint32_t Write(const void*, uint32_t) override { return 0; }
    } full;
    EXPECT_FALSE(LuaConfigSave::WriteTable(m_Config, "t", true, true, full));
    ExpectReport("Failed to write lua table to ram stream");
}

TEST_F(LuaSave, ATableThatHoldsItselfIsRefused) {
    RamStream stream;
    stream.Create(64, ByteStream::Mode_Write);
    Run("t = {} t.t = t");
    EXPECT_FALSE(LuaConfigSave::SaveToStream(m_Config, true, true, stream));
    ExpectReportWith("too deep or too large to be saved");
    m_Config.SetString("s", std::string(1000, 's').c_str());
    Run("t = { s, s, s, s } for i = 1, 150 do t = { t, t } end");
    EXPECT_FALSE(LuaConfigSave::SaveToStream(m_Config, false, false, stream));
    ExpectReportWith("too deep or too large to be saved");
    EXPECT_EQ(stream.GetLength(), 0u);
}

TEST_F(LuaSave, ATableMayWriteItself) {
    LuaBinding::Bind(m_Config, "as_text", {LuaConfig::Type_Table},
                     [](LuaBinding::Call& call) { call.AddString("vec(1)"); });
    LuaBinding::Bind(m_Config, "as_nothing", {LuaConfig::Type_Table}, [](LuaBinding::Call&) {});
    Run("t = setmetatable({ 1 }, { _metasave_override = as_text })");
    EXPECT_EQ(Save(m_Config), "t = vec(1)\n");
    Run("t = setmetatable({ 1 }, { _metasave_override = function() return 'a script' end })");
    EXPECT_EQ(Save(m_Config), "t =  \n{\n\t1,\n}\n");
    Run("t = setmetatable({ 1 }, { _metasave_override = as_nothing })");
    RamStream stream;
    stream.Create(64, ByteStream::Mode_Write);
    EXPECT_THROW(LuaConfigSave::SaveToStream(m_Config, true, true, stream), std::runtime_error);
    EXPECT_TRUE(m_Reports.HasWarning("Assertion of (r == 1) failed"));
}

TEST_F(LuaSave, ReadOnlyTablesAreSavedAsWhatIsBehindThem) {
    Run("t = { 1, 2 }");
    m_Config.SetReadOnly("t");
    EXPECT_EQ(Save(m_Config), "t =  \n{\n\t1,\n\t2,\n}\n");
}

TEST_F(LuaSave, Files) {
    const TempFolder folder;
    Run("x = 1");
    EXPECT_TRUE(LuaConfigSave::SaveToFile(m_Config, true, true, folder.Path("a.lua").c_str()));
    EXPECT_EQ(folder.Read("a.lua"), "x = 1\n");
    LuaConfig loaded("");
    Listen(loaded);
    EXPECT_TRUE(LuaConfigSave::LoadFromFile(loaded, folder.Path("a.lua").c_str()));
    EXPECT_EQ(loaded.GetName(), folder.Path("a.lua")); // it had none
    EXPECT_FALSE(LuaConfigSave::LoadFromFile(loaded, folder.Path("b.lua").c_str()));
    ExpectReport("Failed to load lua file '" + folder.Path("b.lua") + "'");
    EXPECT_FALSE(LuaConfigSave::SaveToFile(m_Config, true, true, folder.Path("none/b.lua").c_str()));
}

TEST_F(LuaSave, Chunks) {
    Run("t = { x = 'text' }");
    RamStream stream;
    stream.Create(64, ByteStream::Mode_Write);
    {
        Chunky writer{ByteStreamAdapter(&stream)};
        EXPECT_TRUE(LuaConfigSave::SaveToChunky(m_Config, writer));
        Run("t.t = t");
        EXPECT_FALSE(LuaConfigSave::SaveToChunky(m_Config, writer));
        EXPECT_EQ(m_Texts.back(), "Failed to save lua file to chunky");
        m_Texts.clear();
    }
    RamStream file;
    file.Attach(stream.GetBuffer(), stream.GetLength(), false, ByteStream::Mode_Read);
    Chunky reader{ByteStreamAdapter(&file)};
    ChunkInfo info;
    ASSERT_TRUE(reader.NextChunk(info));
    EXPECT_EQ(info.id, FourCC("LCFG"));
    EXPECT_EQ(info.version, 1u);
    EXPECT_STREQ(info.name.GetText(), "LuaConfig Chunky");
    LuaConfig loaded("loaded");
    EXPECT_TRUE(LuaConfigSave::LoadFromChunky(loaded, reader));
    EXPECT_EQ(Save(loaded), "t =  \n{\n\tx = \"text\",\n}\n");
    EXPECT_THROW(LuaConfigSave::LoadFromChunky(loaded, reader), Chunky::Exception);
}

} // namespace
