#include "Shared/Cross/LuaConfig/LuaBinding.h"

#include "Shared/Cross/LuaConfig/LuaImport.h"
#include "Tests/Shared/Cross/LuaConfig/LuaFixture.h"
#include "Tests/Shared/PC/FileSystem/TempFolder.h"

namespace {

class Binding : public LuaFixture {
protected:
    void ExpectError(const char* pCommand, const std::string& text) {
        EXPECT_FALSE(m_Config.RunCommand(pCommand)) << pCommand;
        ExpectReport("[test] error running command (LUA_ERRRUN): command:1: " + text);
    }
};

TEST_F(Binding, ArgumentsAndResults) {
    LuaBinding::Bind(m_Config, "mix", {LuaConfig::Type_Number, LuaConfig::Type_String, LuaConfig::Type_Boolean},
                     [](LuaBinding::Call& call) {
                         call.AddString(call.GetString(2) + "!");
                         call.AddNumber(call.GetNumber(1) * 2);
                         call.AddBool(!call.GetBool(3));
                         double seen = 0;
                         call.GetConfig().GetNumber("seen", seen); // the globals are the current table
                         call.GetConfig().SetNumber("seen", seen + 1);
                     });
    Run("seen = 4");
    EXPECT_EQ(Evaluate("mix(21, 'text', false)"), "text!\t42\ttrue");
    EXPECT_EQ(Evaluate("seen"), "5");
    EXPECT_EQ(Evaluate("coroutine.wrap(function() return mix(1, 'in', true) end)()"), "in!\t2\tfalse");
    ExpectError("mix(1, 2, true)", "Invalid parameter 2 (type=number) in function mix");
    ExpectError("mix(1, 'x')", "invalid number of arguments");
    EXPECT_THROW(LuaBinding::Bind(m_Config, "", {}, {}), std::runtime_error);
}

TEST_F(Binding, FaultsOfTheFunctionAreTheScriptsErrors) {
    LuaBinding::Bind(m_Config, "throws", {}, [](LuaBinding::Call&) { throw LuaBinding::Exception("no such thing"); });
    LuaBinding::Bind(m_Config, "asserts", {}, [](LuaBinding::Call& call) { call.GetConfig().GetType(""); });
    LuaBinding::Bind(m_Config, "stays", {}, [](LuaBinding::Call& call) { call.GetConfig().BeginTable("t"); });
    LuaBinding::Bind(m_Config, "asks", {LuaConfig::Type_Nil}, [](LuaBinding::Call& call) { call.GetNumber(1); });
    ExpectError("throws()", "no such thing");
    ExpectError("stays()", "Invalid stack after function call (stack index before 1, return count 0, stack index after "
                           "2)");
    ExpectError("asks('x')", "argument 1 is no number");
    EXPECT_FALSE(m_Config.RunCommand("asserts()"));
    ExpectReportWith("name && *name");
    Run("ok, text = pcall(throws)");
    EXPECT_EQ(Evaluate("ok"), "false");
}

// A bound function's state is released with the state.
TEST_F(Binding, FunctionsGoWithTheState) {
    const auto pOwned = std::make_shared<int>(1);
    {
        LuaConfig config("owner");
        LuaBinding::Bind(config, "f", {}, [pOwned](LuaBinding::Call&) {});
        EXPECT_EQ(pOwned.use_count(), 2);
    }
    EXPECT_EQ(pOwned.use_count(), 1);
}

TEST_F(Binding, ImportsRunInTheSameState) {
    const TempFolder folder;
    folder.Write("part.lua", "value = (value or 0) + 1\nif value > 5 then error('too often') end");
    LuaImport::SetFileImport(m_Config, folder.Path() + "\\");
    Run("import('part.lua') import('part.lua')");
    EXPECT_EQ(Evaluate("value"), "2");
}

TEST_F(Binding, FailedImportsSayWhy) {
    const TempFolder folder;
    folder.Write("loop.lua", "import('loop.lua')");
    folder.Write("bad.lua", "\nx = = 1");
    ExpectError("import('x')", "import not set for this state");
    LuaImport::SetFileImport(m_Config, folder.Path() + "\\");
    ExpectError("import(1)", "import called without valid parameters");
    EXPECT_FALSE(m_Config.RunCommand("import('bad.lua')"));
    ExpectReportWith("bad.lua:2: unexpected symbol");
    EXPECT_FALSE(m_Config.RunCommand("import('loop.lua')"));
    m_Texts.clear();
    EXPECT_FALSE(m_Config.RunCommand("import('none.lua')"));
    EXPECT_THAT(m_Texts, testing::ElementsAre("Failed to import lua file 'none.lua'",
                                              "[test] error running command (LUA_ERRRUN): command:1: failed to import "
                                              "'none.lua', file failed to open"));
}

} // namespace
