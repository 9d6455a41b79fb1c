#include "Shared/Cross/LuaConfig/LuaLibMan.h"
#include "Tests/Shared/Cross/LuaConfig/LuaFixture.h"

namespace {

using LuaLanguage = LuaFixture;

TEST_F(LuaLanguage, LoopsOverTables) {
    Run("r = '' for k, v in { 'a', 'b' } do r = r .. k .. v end");
    EXPECT_EQ(Evaluate("r"), "1a2b");
    Run("r = '' for k in { x = 1 } -- do\n do r = r .. k end for i = 1, 2 do r = r .. i end");
    EXPECT_EQ(Evaluate("r"), "x12");
    Run("r = 0 for _, f in { function() for k in { 5 } do if k then r = r + k end end end } do f() end "
        "while true do repeat r = r + 1 until true break end for i, v in ipairs({ 7 }) do r = r + v end");
    EXPECT_EQ(Evaluate("r"), "9");
    Run("for k, v in next, { 3 } do r = v end s = 'for k in t do' --[[ for k in t do ]]");
    EXPECT_EQ(Evaluate("r, s"), "3\tfor k in t do");
}

TEST_F(LuaLanguage, NestedLongBrackets) {
    Run("s = [[a [[b]] ]=] c]] --[[ out [[ in ]] out ]] t = [==[ ]] ]==] u = '[['");
    EXPECT_EQ(Evaluate("s, t, u"), "a [[b]] ]=] c\t ]] \t[[");
}

TEST_F(LuaLanguage, WhatElseWasAndIsNoMore) {
    Run("function f(...) return arg.n, arg[1] end");
    EXPECT_EQ(Evaluate("f('x', 'y')"), "2\tx");
    EXPECT_EQ(Evaluate("unpack({ 1, 2, n = 1 })"), "1");
    EXPECT_EQ(Evaluate("loadstring('for k in { 1 } do return k end')()"), "1");
    EXPECT_EQ(Evaluate("xpcall(function() return 1, 2 end, print)"), "true\t1\t2");
    EXPECT_EQ(Evaluate("xpcall(function() error('x', 0) end, function(text) return text .. '!' end)"), "false\tx!");
    EXPECT_EQ(Evaluate("xpcall(error, error)"), "false\tnil");
    Run("collectgarbage() collectgarbage(0) collectgarbage(1000)");
}

// A complaint is about what was written, not about what it was made into.
TEST_F(LuaLanguage, SyntaxErrorsAreLuasOwn) {
    EXPECT_FALSE(LoadText(m_Config, "x = 1\nfor k in t\n print(k)\nend", "bad.burn"));
    ExpectReport("[test] error loading (LUA_ERRSYNTAX): bad.burn:3: 'do' expected near 'print'");
    EXPECT_FALSE(LoadText(m_Config, "\n\nx = [[never closed", "bad.burn"));
    ExpectReportWith("bad.burn:3: unfinished long string");
}

TEST_F(LuaLanguage, LibrariesComeByName) {
    struct Counter : LuaLib {
        void Open(LuaConfig&) override { ++opened; }
        void Close(LuaConfig&) override { --opened; }
        int opened = 0;
    } lib, other;
    LuaLibMan libraries;
    libraries.AddStandard();
    EXPECT_TRUE(libraries.AddLibrary("counter", lib));
    EXPECT_TRUE(libraries.AddLibrary("counter", lib));
    EXPECT_THROW(libraries.AddLibrary("counter", other), std::runtime_error);
    EXPECT_TRUE(m_Reports.HasWarning("found->lib == lib"));
    EXPECT_FALSE(libraries.Bind(m_Config, "unknown"));
    EXPECT_TRUE(libraries.Bind(m_Config, "counter"));
    EXPECT_TRUE(libraries.Bind(m_Config, "counter"));
    EXPECT_EQ(lib.opened, 1);
    EXPECT_TRUE(libraries.Bind(m_Config, "table"));
    EXPECT_TRUE(libraries.Bind(m_Config, "math"));
    Run("t = { 1, 2, 3 } before = table.getn(t) table.setn(t, 2)");
    EXPECT_EQ(Evaluate("before, table.getn(t), table.getn({ n = 7 }), math.mod(7, 4)"), "3\t2\t7\t3");
    EXPECT_EQ(Evaluate("unpack(t)"), "1\t2");
    libraries.Unbind(m_Config);
    EXPECT_EQ(lib.opened, 0);
    EXPECT_EQ(m_Config.GetType("table"), LuaConfig::Type_Nil);
}

TEST_F(LuaLanguage, ALibraryThatIsStillOpenIsAMistake) {
    {
        LuaLibMan libraries;
        libraries.AddStandard();
        libraries.Bind(m_Config, "math");
    }
    EXPECT_TRUE(m_Reports.HasWarning("Assertion of (m_lcBindList.empty()) failed"));
}

} // namespace
