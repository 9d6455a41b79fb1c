#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

// A value of the script language. It never changes, so copies may share what is in an array.
class Value {
public:
    using Array = std::vector<Value>;

    Value() = default; // undefined
    explicit Value(bool value) : m_Data(value) {}
    explicit Value(int32_t value) : m_Data(value) {}
    explicit Value(float value) : m_Data(value) {}
    explicit Value(std::string value) : m_Data(std::move(value)) {}
    explicit Value(const char* pValue) : m_Data(std::string(pValue)) {}
    explicit Value(Array items) : m_Data(std::make_shared<const Array>(std::move(items))) {}

    bool IsUndefined() const { return std::holds_alternative<std::monostate>(m_Data); }
    bool IsBoolean() const { return std::holds_alternative<bool>(m_Data); }
    bool IsInteger() const { return std::holds_alternative<int32_t>(m_Data); }
    bool IsFloat() const { return std::holds_alternative<float>(m_Data); }
    bool IsString() const { return std::holds_alternative<std::string>(m_Data); }
    bool IsArray() const { return std::holds_alternative<std::shared_ptr<const Array>>(m_Data); }

    // The language's own conversions: a boolean is only itself, so is a string; integer and float turn into each other,
    // a fraction being cut. Anything else throws ScriptError.
    bool ToBool() const;
    int32_t ToInt() const;
    float ToFloat() const;
    const std::string& ToText() const;
    const Array& ToArray() const;

    // "Undefined", "Boolean", "Integer", "Float", "String" or "Array".
    const char* GetTypeName() const;

    // As the language writes it: "text", true, 3, 2.5, #("a", "b"), undefined.
    std::string Print() const;

    // Arrays are equal when their items are.
    friend bool operator==(const Value& a, const Value& b);

private:
    std::variant<std::monostate, bool, int32_t, float, std::string, std::shared_ptr<const Array>> m_Data;
};

// An error of the script language itself: wrong arguments, a value of the wrong type. It is deliberately no standard
// exception, so that a command's guard for its own failures lets it through to the host.
class ScriptError {
public:
    explicit ScriptError(std::string text) : m_Text(std::move(text)) {}
    const std::string& GetText() const { return m_Text; }

private:
    std::string m_Text;
};

// Throws the argument count error, which names the command and the number it wants, unless both are equal.
void CheckArgCount(const char* pCommand, int wanted, int count);

// Throws the type error, which begins with `pWhat`, unless the value is a string.
void CheckArgIsString(const Value& value, const char* pWhat);
