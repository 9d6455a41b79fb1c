#include "Host/Sdk/Value.h"

#include <array>
#include <charconv>
#include <cmath>
#include <string_view>

namespace {

[[noreturn]] void ThrowConversion(const Value& value, const char* pType) {
    throw ScriptError("Unable to convert: " + value.Print() + " to type: " + pType);
}

void PrintFloat(std::string& out, float value) {
    std::array<char, 32> buffer;
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
    const std::string_view text(buffer.data(), static_cast<size_t>(result.ptr - buffer.data()));
    out += text;
    // What reads like an integer would come back as one.
    if (std::isfinite(value) && text.find_first_of(".e") == std::string_view::npos)
        out += ".0";
}

void PrintText(std::string& out, const std::string& text) {
    out += '"';
    for (const char c : text) {
        switch (c) {
        case '"':
        case '\\':
            out += '\\';
            out += c;
            break;
        case '\n':
            out += "\\n";
            break;
        case '\r':
            out += "\\r";
            break;
        case '\t':
            out += "\\t";
            break;
        default:
            out += c;
        }
    }
    out += '"';
}

void PrintValue(std::string& out, const Value& value) {
    if (value.IsUndefined())
        out += "undefined";
    else if (value.IsBoolean())
        out += value.ToBool() ? "true" : "false";
    else if (value.IsInteger())
        out += std::to_string(value.ToInt());
    else if (value.IsFloat())
        PrintFloat(out, value.ToFloat());
    else if (value.IsString())
        PrintText(out, value.ToText());
    else {
        out += "#(";
        const char* pSeparator = "";
        for (const Value& item : value.ToArray()) {
            out += pSeparator;
            PrintValue(out, item);
            pSeparator = ", ";
        }
        out += ')';
    }
}

} // namespace

bool Value::ToBool() const {
    if (const bool* pValue = std::get_if<bool>(&m_Data))
        return *pValue;
    ThrowConversion(*this, "Boolean");
}

int32_t Value::ToInt() const {
    if (const int32_t* pValue = std::get_if<int32_t>(&m_Data))
        return *pValue;
    // The bounds are powers of two, which a float holds exactly; a NaN is in no bounds.
    constexpr float limit = 2147483648.0f;
    if (const float* pValue = std::get_if<float>(&m_Data); pValue && *pValue >= -limit && *pValue < limit)
        return static_cast<int32_t>(*pValue);
    ThrowConversion(*this, "Integer");
}

float Value::ToFloat() const {
    if (const float* pValue = std::get_if<float>(&m_Data))
        return *pValue;
    if (const int32_t* pValue = std::get_if<int32_t>(&m_Data))
        return static_cast<float>(*pValue);
    ThrowConversion(*this, "Float");
}

const std::string& Value::ToText() const {
    if (const std::string* pValue = std::get_if<std::string>(&m_Data))
        return *pValue;
    ThrowConversion(*this, "String");
}

const Value::Array& Value::ToArray() const {
    if (const auto* pValue = std::get_if<std::shared_ptr<const Array>>(&m_Data))
        return **pValue;
    ThrowConversion(*this, "Array");
}

const char* Value::GetTypeName() const {
    static constexpr std::array<const char*, 6> s_Names = {"Undefined", "Boolean", "Integer",
                                                           "Float",     "String",  "Array"};
    return s_Names[m_Data.index()];
}

std::string Value::Print() const {
    std::string out;
    PrintValue(out, *this);
    return out;
}

bool operator==(const Value& a, const Value& b) {
    if (a.IsArray() && b.IsArray())
        return a.ToArray() == b.ToArray();
    return a.m_Data == b.m_Data;
}

void CheckArgCount(const char* pCommand, int wanted, int count) {
    if (count != wanted)
        throw ScriptError("Argument count error: " + std::string(pCommand) + " wanted " + std::to_string(wanted) +
                          ", got " + std::to_string(count));
}

void CheckArgIsString(const Value& value, const char* pWhat) {
    if (!value.IsString())
        throw ScriptError("Type error: " + std::string(pWhat) + " requires String, got: " + value.Print());
}
