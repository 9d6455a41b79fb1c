#include "Host/Sdk/Value.h"

#include "Host/Sdk/Primitive.h"
#include "Tests/Host/Sdk/TestHost.h"

#include <gtest/gtest.h>

#include <limits>
#include <thread>

namespace {

std::string ErrorOf(const auto& call) {
    try {
        call();
    } catch (const ScriptError& error) {
        return error.GetText();
    }
    return "no error";
}

TEST(ScriptValue, PrintsInTheLanguagesNotation) {
    const Value nested(Value::Array{Value("a"), Value(Value::Array{}), Value()});
    const std::pair<Value, const char*> cases[] = {
        {Value(), "undefined"},
        {Value(true), "true"},
        {Value(-3), "-3"},
        {Value(2.5f), "2.5"},
        {Value(4.0f), "4.0"},
        {Value(0.1f), "0.1"},
        {Value(1e20f), "1e+20"},
        {Value("a\"b\\c\n"), "\"a\\\"b\\\\c\\n\""},
        {nested, "#(\"a\", #(), undefined)"},
    };
    for (const auto& [value, text] : cases)
        EXPECT_EQ(value.Print(), text);
}

TEST(ScriptValue, ConvertsNumbersAndNothingElse) {
    EXPECT_EQ(Value(2.9f).ToInt(), 2);
    EXPECT_EQ(Value(-2.9f).ToInt(), -2);
    EXPECT_EQ(Value(7).ToFloat(), 7.0f);
    EXPECT_EQ(ErrorOf([] { Value(1).ToBool(); }), "Unable to convert: 1 to type: Boolean");
    EXPECT_EQ(ErrorOf([] { Value(true).ToText(); }), "Unable to convert: true to type: String");
    EXPECT_EQ(ErrorOf([] { Value().ToArray(); }), "Unable to convert: undefined to type: Array");
    EXPECT_EQ(ErrorOf([] { Value("1").ToInt(); }), "Unable to convert: \"1\" to type: Integer");
    for (const float outside : {2147483648.0f, -3e9f, std::numeric_limits<float>::quiet_NaN()})
        EXPECT_THROW(Value(outside).ToInt(), ScriptError) << outside;
    EXPECT_EQ(Value(-2147483648.0f).ToInt(), std::numeric_limits<int32_t>::min());
}

TEST(ScriptValue, EqualityKeepsTypesApart) {
    EXPECT_EQ(Value(Value::Array{Value(1), Value("x")}), Value(Value::Array{Value(1), Value("x")}));
    EXPECT_FALSE(Value(1) == Value(1.0f));
    EXPECT_FALSE(Value(Value::Array{Value(1)}) == Value(Value::Array{Value(true)}));
    EXPECT_EQ(Value(), Value());
    for (const Value& other : {Value(false), Value(0), Value(0.0f), Value(""), Value(Value::Array{})})
        EXPECT_FALSE(Value() == other || other == Value()) << other.Print();
}

TEST(ScriptErrors, NameTheCommand) {
    EXPECT_NO_THROW(CheckArgCount("cmd", 1, 1));
    EXPECT_EQ(ErrorOf([] { CheckArgCount("cmd", 1, 3); }), "Argument count error: cmd wanted 1, got 3");
    EXPECT_NO_THROW(CheckArgIsString(Value("x"), "cmd file"));
    EXPECT_EQ(ErrorOf([] { CheckArgIsString(Value(3), "cmd file"); }), "Type error: cmd file requires String, got: 3");
}

Value CountArguments(const Value*, int count) { return Value(count); }
Value FirstArgument(const Value* pArguments, int count) { return count > 0 ? pArguments[0] : Value(); }

TEST(ScriptCommand, IsFoundWithoutRegardToCaseWhileItLives) {
    EXPECT_EQ(Primitive::Find("test_count"), nullptr);
    {
        const Primitive count("test_count", CountArguments);
        const Value arguments[] = {Value(1), Value(2)};
        ASSERT_NE(Primitive::Find("TEST_Count"), nullptr);
        EXPECT_EQ(Primitive::Find("TEST_Count")->Apply(arguments), Value(2));
        EXPECT_EQ(Primitive::Find("test_coun"), nullptr);
        EXPECT_EQ(count.Apply({}), Value(0));
    }
    EXPECT_EQ(Primitive::Find("test_count"), nullptr);
}

TEST(ScriptCommand, TheLatestOfANameCountsAndAnyMayGoFirst) {
    auto pFirst = std::make_unique<Primitive>("test_b", CountArguments);
    auto pSecond = std::make_unique<Primitive>("test_B", FirstArgument);
    auto pThird = std::make_unique<Primitive>("test_a", CountArguments);
    EXPECT_EQ(Primitive::Find("test_b"), pSecond.get());
    // Capitals come first.
    EXPECT_EQ(Primitive::GetAll(), (std::vector<const Primitive*>{pSecond.get(), pThird.get(), pFirst.get()}));
    pSecond.reset();
    EXPECT_EQ(Primitive::Find("TEST_B"), pFirst.get());
    pFirst.reset();
    EXPECT_EQ(Primitive::GetAll(), std::vector<const Primitive*>{pThird.get()});
}

TEST(Listener, BelongsToItsThreadAndMayBeMissing) {
    PutListenerText("dropped");
    ListenerCapture listener;
    PutListenerText("one\n");
    std::thread([] { PutListenerText("elsewhere"); }).join();
    PutListenerText("two\n");
    EXPECT_EQ(listener.GetText(), "one\ntwo\n");
}

} // namespace
