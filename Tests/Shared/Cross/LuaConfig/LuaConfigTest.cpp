#include "Shared/Cross/LuaConfig/LuaConfig.h"

#include "Tests/Shared/Cross/LuaConfig/LuaFixture.h"

namespace {

class LuaAccess : public LuaFixture {
protected:
    LuaAccess() {
        Run("b = true n = 1.5 s = 'text' f = print list = { 'one', 'two' } nested = { inner = { deep = -1 } }");
    }
    double Number(const char* pKey) {
        double number = -99;
        return m_Config.GetNumber(pKey, number) ? number : -99;
    }
    std::string String(const char* pKey) {
        std::string text = "(none)";
        m_Config.GetString(pKey, text);
        return text;
    }
};

TEST_F(LuaAccess, TypesHaveTheirCodes) {
    const std::pair<const char*, int> types[] = {{"nothing", 0}, {"b", 1}, {"n", 2}, {"s", 3}, {"list", 4}, {"f", 5}};
    for (const auto& [pKey, type] : types)
        EXPECT_EQ(m_Config.GetType(pKey), type) << pKey;
    Run("setmetatable(list, { meta = {}, __index = { fallback = 3 } })");
    ASSERT_TRUE(m_Config.BeginTable("list"));
    EXPECT_EQ(m_Config.GetType("meta"), LuaConfig::Type_Meta);
    EXPECT_EQ(m_Config.GetType("fallback"), LuaConfig::Type_Number);
    EXPECT_THROW(m_Config.SetNumber("meta", 1), std::runtime_error);
    m_Config.EndTable();
}

TEST_F(LuaAccess, ValuesComeAsTheirTypeAlone) {
    bool flag = false;
    uint32_t number = 7;
    EXPECT_EQ(String("s"), "text");
    Run("z = 'cut\\0here'");
    EXPECT_EQ(String("z"), "cut");
    EXPECT_EQ(String("n"), "1.5"); // a number is a string too
    EXPECT_EQ(String("b"), "(none)");
    EXPECT_EQ(Number("n"), 1.5);
    EXPECT_EQ(Number("s"), -99);
    EXPECT_TRUE(m_Config.GetBool("b", flag) && flag);
    EXPECT_FALSE(m_Config.GetBool("n", flag));
    EXPECT_TRUE(m_Config.GetUnsigned("n", number));
    EXPECT_EQ(number, 1u);
    m_Config.SetNumber("n", -1);
    EXPECT_FALSE(m_Config.GetUnsigned("n", number));
    m_Config.SetNumber("n", 5e9);
    EXPECT_FALSE(m_Config.GetUnsigned("n", number));
}

TEST_F(LuaAccess, AKeyOfDigitsIsANumber) {
    ASSERT_TRUE(m_Config.BeginTable("list"));
    EXPECT_EQ(String("2"), "two");
    EXPECT_EQ(m_Config.GetType("10a"), LuaConfig::Type_Nil);
    m_Config.SetString("10a", "text key");
    m_Config.SetString("3", "three");
    m_Config.EndTable();
    EXPECT_EQ(Evaluate("list['10a'], list[3], list['3']"), "text key\tthree\tnil");
    for (const char* pKey : {"", "0", "-1"})
        EXPECT_THROW(m_Config.GetType(pKey), std::runtime_error) << pKey;
    EXPECT_TRUE(m_Reports.HasWarning("Assertion of (name && *name) failed"));
    EXPECT_TRUE(m_Reports.HasWarning("Assertion of (index > 0) failed"));
}

TEST_F(LuaAccess, TablesAreEnteredMadeAndReplaced) {
    ASSERT_TRUE(m_Config.BeginTable("nested"));
    ASSERT_TRUE(m_Config.BeginTable("inner"));
    EXPECT_EQ(Number("deep"), -1);
    ASSERT_TRUE(m_Config.BeginTable("deep")); // was a number
    m_Config.SetBool("made", true);
    m_Config.EndTable();
    m_Config.EndTable();
    m_Config.EndTable();
    EXPECT_EQ(Evaluate("nested.inner.deep.made"), "true");
    EXPECT_THROW(m_Config.EndTable(), std::runtime_error);
    EXPECT_EQ(m_Config.GetType("nested"), LuaConfig::Type_Table);
}

TEST_F(LuaAccess, FunctionsArentOverwritten) {
    EXPECT_THROW(m_Config.SetString("print", "text"), std::runtime_error);
    EXPECT_EQ(m_Config.GetType("print"), LuaConfig::Type_Function);
    EXPECT_EQ(Number("n"), 1.5); // the stack is as it was
}

TEST_F(LuaAccess, ReadOnlyTablesRefuseScriptsAndTheirOwner) {
    ASSERT_TRUE(m_Config.SetReadOnly("nested"));
    EXPECT_FALSE(m_Config.SetReadOnly("n"));
    EXPECT_EQ(Evaluate("nested.inner.deep"), "-1");
    EXPECT_FALSE(m_Config.RunCommand("nested.inner = 1"));
    ExpectReport("[test] error running command (LUA_ERRRUN): command:1: attempt to write to `nested' (a read-only "
                 "value)");
    EXPECT_FALSE(m_Config.RunCommand("setmetatable(nested, {})"));
    m_Texts.clear();
    ASSERT_TRUE(m_Config.BeginTable("nested"));
    EXPECT_EQ(m_Config.GetType("inner"), LuaConfig::Type_Table);
    EXPECT_FALSE(m_Config.SetNumber("new", 1));
    ExpectReportWith("a read-only value");
    EXPECT_EQ(m_Config.Begin().Key(), "inner");
    m_Config.EndTable();
}

TEST_F(LuaAccess, WhatAMetatableDoesWrongIsNoneOfTheCallersTrouble) {
    Run("t = setmetatable({}, { __index = function(t, k) error('no ' .. k) end, __newindex = function() local x = nil "
        "+ 1 "
        "end })");
    ASSERT_TRUE(m_Config.BeginTable("t"));
    EXPECT_EQ(m_Config.GetType("key"), LuaConfig::Type_Nil);
    ExpectReportWith("no key");
    EXPECT_FALSE(m_Config.BeginTable("key"));
    m_Texts.clear();
    EXPECT_FALSE(m_Config.SetBool("key", true));
    EXPECT_THAT(m_Texts.back(), testing::HasSubstr("arithmetic"));
    m_Config.EndTable();
    EXPECT_EQ(Number("n"), 1.5);
}

TEST_F(LuaAccess, AWalkShowsTheEntriesOfItsBeginning) {
    Run("walked = { 'first', [7] = true, name = {} }");
    ASSERT_TRUE(m_Config.BeginTable("walked"));
    std::vector<std::string> seen;
    for (LuaConfig::Iterator it = m_Config.Begin(); it != m_Config.End(); it.Next()) {
        seen.push_back(it.Key() + ":" + std::to_string(it.Type()));
        m_Config.SetBool(("new" + it.Key()).c_str(), true);
    }
    EXPECT_THAT(seen, testing::UnorderedElementsAre("1:3", "7:1", "name:4"));
    EXPECT_EQ(seen[0], "1:3");
    m_Config.EndTable();
}

TEST_F(LuaAccess, KeysOfOtherKindsHaveNoText) {
    Run("odd = { [true] = 1 } long = {}");
    ASSERT_TRUE(m_Config.BeginTable("odd"));
    const LuaConfig::Iterator it = m_Config.Begin();
    EXPECT_FALSE(it.HasPlainKey());
    EXPECT_THROW(it.Key(), std::runtime_error);
    EXPECT_TRUE(m_Reports.HasWarning("keytype == LUA_TSTRING || keytype == LUA_TNUMBER"));
    m_Config.EndTable();
    const std::string key(200, 'k');
    m_Config.BeginTable("long");
    m_Config.SetBool(key.c_str(), true);
    EXPECT_EQ(m_Config.Begin().Key(), key.substr(0, 128));
    EXPECT_FALSE(m_Config.Begin().HasPlainKey());
    m_Config.EndTable();
}

TEST_F(LuaAccess, CommandsAndClearing) {
    EXPECT_FALSE(m_Config.RunCommand("x = = 1"));
    ExpectReport("[test] error running command (LUA_ERRSYNTAX): command:1: unexpected symbol near '='");
    Run("function g() end");
    EXPECT_TRUE(m_Config.ClearFunction("g"));
    EXPECT_FALSE(m_Config.ClearFunction("g"));
    ExpectReport("[test] ClearFunction called on NIL function 'g'.");
    EXPECT_FALSE(m_Config.ClearFunction("n"));
    ExpectReport("[test] ClearFunction called on non-function 'n'.");
    EXPECT_TRUE(m_Config.ClearVariable("n"));
    EXPECT_FALSE(m_Config.ClearVariable("n"));
    ExpectReport("[test] ClearVariable called on NIL variable 'n'.");
    EXPECT_TRUE(m_Config.SetNumber("5", 1));
    EXPECT_TRUE(m_Config.ClearVariable("5")) << "a number, as for all access by name";
    EXPECT_EQ(m_Config.GetType("5"), LuaConfig::Type_Nil);
    for (const char* pKey : {"", "0"})
        EXPECT_THROW(m_Config.ClearVariable(pKey), std::runtime_error);
}

TEST_F(LuaAccess, PrintGoesToTheCallback) {
    EXPECT_EQ(Evaluate("1, 'two', nil, true"), "1\ttwo\tnil\ttrue");
    Run("_PRINT('raw')");
    EXPECT_EQ(m_Printed.back(), "raw");
    EXPECT_FALSE(m_Config.RunCommand("print()"));
    ExpectReportWith("Print called without valid parameters");
    LuaConfig quiet("quiet");
    EXPECT_TRUE(quiet.RunCommand("print('to the log') _ALERT('and this')"));
    EXPECT_TRUE(m_Reports.HasError("to the log"));
    EXPECT_TRUE(m_Reports.HasError("and this"));
}

// A callback's exception is the script's error, and what it owns is given back in reverse order at the end.
TEST_F(LuaAccess, CallbacksMayThrowAndAreReleasedInReverse) {
    m_Config.GetCallbacks().print = [](const char*) { throw std::runtime_error("full"); };
    EXPECT_FALSE(m_Config.RunCommand("print('x')"));
    ExpectReportWith("full");
    std::string released;
    const auto make = [&](char c) { return std::shared_ptr<void>(nullptr, [&released, c](void*) { released += c; }); };
    {
        LuaConfig config("released");
        config.GetCallbacks().alert = [p = make('a')](const char*) {};
        config.GetCallbacks().print = [p = make('p')](const char*) {};
        config.GetCallbacks().import = [p = make('i')](const char*) { return nullptr; };
    }
    EXPECT_EQ(released, "ipa");
}

} // namespace
