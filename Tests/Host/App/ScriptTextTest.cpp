#include "Host/App/ScriptText.h"

#include <gtest/gtest.h>

namespace {

// Texts as they are written, and how the value they stand for prints.
constexpr std::pair<const char*, const char*> s_Values[] = {
    {"true", "true"},
    {"FALSE", "false"},
    {"undefined", "undefined"},
    {"3", "3"},
    {"-17", "-17"},
    {"+5", "5"},
    {"2147483647", "2147483647"},
    {"2.5", "2.5"},
    {"-.5", "-0.5"},
    {"1e3", "1000.0"},
    {"7.", "7.0"},
    {R"("")", R"("")"},
    {R"("two words -- no comment")", R"("two words -- no comment")"},
    {R"("a \"b\" \\ \n")", R"("a \"b\" \\ \n")"},
    {R"("Z:\proj\ref.pvx")", R"("Z:\\proj\ref.pvx")"}, // \r is a line end: such a name needs two backslashes
    {R"("Z:\\proj\\ref.pvx")", R"("Z:\\proj\\ref.pvx")"},
    {"#()", "#()"},
    {"#( )", "#()"},
    {R"(#("a",2 , #(true), undefined))", R"(#("a", 2, #(true), undefined))"},
};

constexpr const char* s_NoValues[] = {
    "",  "word", "truely", "3x",     "2147483648", "1e99", "--3", "-",          ".",   R"("open)", R"("open\")",
    "#", "#(",   "#(1",    "#(1 2)", "#(1,)",      "#(,)", "1 2", R"("a" "b")", "(1)", "# (1)",    "nan",
};

TEST(ScriptText, ReadsEveryKindOfValue) {
    for (const auto& [text, printed] : s_Values) {
        const std::optional<Value> value = ParseScriptValue(text);
        ASSERT_TRUE(value) << text;
        EXPECT_EQ(value->Print(), printed) << text;
        EXPECT_EQ(ParseScriptValue(value->Print()), value) << "read, printed and read: " << text;
    }
}

TEST(ScriptText, RefusesWhatIsNoValue) {
    for (const char* pText : s_NoValues)
        EXPECT_FALSE(ParseScriptValue(pText)) << pText;
}

TEST(ScriptText, IntegersAndFloatsStayApart) {
    EXPECT_TRUE(ParseScriptValue("3")->IsInteger());
    EXPECT_TRUE(ParseScriptValue("3.0")->IsFloat());
}

TEST(ScriptText, ACallIsANameAndItsArguments) {
    const std::optional<ScriptCall> call = ParseScriptLine("\tombl_x \"a b\"  3 #(1, 2)\t-- and a comment\r");
    ASSERT_TRUE(call);
    EXPECT_EQ(call->command, "ombl_x");
    ASSERT_EQ(call->arguments.size(), 3u);
    EXPECT_EQ(call->arguments[0].ToText(), "a b");
    EXPECT_EQ(call->arguments[2].ToArray().size(), 2u);
}

TEST(ScriptText, LinesWithoutACall) {
    for (const char* pLine : {"", "   ", "-- comment", " \t-- comment", "\r"})
        EXPECT_FALSE(ParseScriptLine(pLine)) << pLine;
}

TEST(ScriptText, FaultsNameTheirColumn) {
    const std::pair<const char*, const char*> faults[] = {
        {"3 cmd", "column 1: a command's name is wanted here"},
        {"cmd word", "column 5: this word is no value; a text stands in quotes"},
        {"cmd \"open", "column 5: this text has no closing quote"},
        {"cmd #(1, 2", "column 5: this array has no closing bracket"},
        {"cmd #(1 2)", "column 9: a comma is missing between an array's items"},
        {"cmd 1\"a\"", "column 6: a blank is missing here"},
        {"cmd 99999999999", "column 5: this is no number that a value can hold"},
        {"cmd \"\"3", "column 7: a blank is missing here"},
        {"cmd )", "column 5: a value is wanted here"},
    };
    for (const auto& [line, text] : faults) {
        try {
            ParseScriptLine(line);
            ADD_FAILURE() << line;
        } catch (const ScriptSyntaxError& error) {
            EXPECT_STREQ(error.what(), text) << line;
        }
    }
}

TEST(ScriptText, DepthIsBounded) {
    EXPECT_THROW(ParseScriptLine("cmd " + std::string(1'000'000, '#')), ScriptSyntaxError);
    std::string nested = "cmd ";
    for (int i = 0; i < 100'000; ++i)
        nested += "#(";
    EXPECT_THROW(ParseScriptLine(nested), ScriptSyntaxError);
}

} // namespace
