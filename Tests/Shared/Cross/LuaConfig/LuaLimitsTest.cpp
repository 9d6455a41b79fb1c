#include "Shared/Cross/LuaConfig/LuaConfig.h"

#include "Tests/Shared/Cross/LuaConfig/LuaFixture.h"

namespace {

// What a script from a working tree may do, and what ends it.
class LuaLimits : public LuaFixture {
protected:
    LuaLimits() { Listen(m_Small); }
    void ExpectEnd(const std::string& text, const std::string& report) {
        EXPECT_FALSE(LoadText(m_Small, text, "loop.burn")) << text;
        ExpectReportWith(report);
        double number = 0;
        EXPECT_TRUE(m_Small.RunCommand("after = 1") && m_Small.GetNumber("after", number)); // as good as before
    }
    LuaConfig m_Small{"small", {.instructions = 200'000, .memory = 1u << 20, .milliseconds = 2'000}};
};

TEST_F(LuaLimits, ALoopIsAnErrorWithItsNameAndLine) {
    ExpectEnd("x = 1\nwhile true do\n x = x + 1\nend",
              "[small] error running (LUA_ERRRUN): loop.burn:3: the script takes too many instructions");
}

TEST_F(LuaLimits, NoCatchingOfErrorsGetsAroundThem) {
    for (const char* pText :
         {"while true do pcall(function() while true do end end) end", "function f() pcall(f) f() end f()",
          "xpcall(function() while true do end end, function() while true do end end)",
          "while true do coroutine.resume(coroutine.create(function() while true do end end)) end",
          "while true do coroutine.wrap(function() end)() end", "while true do loadstring('return 1')() end",
          "local t = setmetatable({}, { __index = function(t, k) return t[k .. 'x'] end }) local x = t.a"}) {
        EXPECT_FALSE(LoadText(m_Small, pText)) << pText;
        m_Texts.clear();
    }
}

TEST_F(LuaLimits, GrowthIsAnErrorWithItsNameAndLine) {
    ExpectEnd("s = 'xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx'\nfor i = 1, 100 do\n s = s .. s\nend",
              "loop.burn:3: the script takes more than 1048576 bytes of memory");
    ExpectEnd("t = {}\nfor i = 1, 1e9 do t[i] = i end", "loop.burn:2: the script takes more than 1048576 bytes");
}

TEST_F(LuaLimits, GarbageIsNoGrowth) {
    EXPECT_TRUE(LoadText(m_Small, "for i = 1, 20000 do local t = { i, i, i, i } end"));
    EXPECT_THAT(m_Texts, testing::IsEmpty());
}

TEST_F(LuaLimits, TimeAndInterruption) {
    LuaConfig config("slow", {.instructions = ~uint64_t{0}, .memory = 1u << 20, .milliseconds = 20});
    Listen(config);
    EXPECT_FALSE(config.RunCommand("while true do end"));
    ExpectReportWith("the script takes too long");
    m_Config.GetCallbacks().interrupt = [] { return true; };
    EXPECT_FALSE(m_Config.RunCommand("while true do end"));
    ExpectReportWith("the script was interrupted");
}

// What is read through a metatable takes from the same budget, however often it is asked.
TEST_F(LuaLimits, FunctionsOfMetatablesHaveNoBudgetOfTheirOwn) {
    ASSERT_TRUE(m_Small.RunCommand("t = setmetatable({}, { __index = function() while true do end end })"));
    ASSERT_TRUE(m_Small.BeginTable("t"));
    for (int i = 0; i < 1000; ++i)
        EXPECT_EQ(m_Small.GetType("key"), LuaConfig::Type_Nil);
    EXPECT_EQ(m_Texts.size(), 1000u);
    m_Small.EndTable();
}

TEST_F(LuaLimits, ThereIsNoWayOut) {
    for (const char* pName : {"io", "os", "package", "debug", "require", "module", "dofile", "loadfile", "load",
                              "loadlib", "newproxy", "string", "table"})
        EXPECT_EQ(m_Config.GetType(pName), LuaConfig::Type_Nil) << pName;
    EXPECT_EQ(Evaluate("loadstring('\\27Lua')"), "nil\ta compiled script isn't taken");
    EXPECT_FALSE(LoadText(m_Config, "\x1BLuaQ"));
    ExpectReportWith("a compiled script isn't taken");
    EXPECT_FALSE(m_Config.RunCommand("import('file')"));
    ExpectReportWith("import not set for this state");
}

} // namespace
