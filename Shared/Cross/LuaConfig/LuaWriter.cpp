#include "Shared/Cross/LuaConfig/LuaWriter.h"

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/LuaConfig/LuaConfig.h"
#include "Shared/Cross/LuaConfig/LuaExtension.h"
#include "Shared/Cross/LuaConfig/LuaFunctions.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>

using LuaExtension::StackScope;

namespace {

constexpr int s_MaxTabs = 255;
constexpr size_t s_MaxWrittenKey = 256;
// A table that holds itself has no end, and one that holds another twice over many levels none in sight.
constexpr int s_MaxDepth = 200;
constexpr size_t s_MaxText = 4u << 20;

bool StartsWithDigit(const std::string& key) { return !key.empty() && key[0] >= '0' && key[0] <= '9'; }

bool IsSavedType(LuaConfig::ValueType type) {
    return type == LuaConfig::Type_Boolean || type == LuaConfig::Type_Number || type == LuaConfig::Type_String ||
           type == LuaConfig::Type_Table;
}

// The numbers that the keys begin with, in order and each once.
std::vector<long> ReadNumbers(const std::vector<std::string>& keys) {
    std::vector<long> numbers;
    numbers.reserve(keys.size());
    for (const std::string& key : keys)
        numbers.push_back(std::strtol(key.c_str(), nullptr, 10));
    std::ranges::sort(numbers);
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    return numbers;
}

} // namespace

std::string LuaWriter::EncodeString(std::string_view text) {
    std::string encoded;
    for (const char c : text.substr(0, text.find('\0'))) {
        if (encoded.size() >= s_MaxString)
            break;
        if (c == '\n')
            encoded += "\\n";
        else
            encoded += c;
    }
    return encoded.substr(0, s_MaxString);
}

bool LuaWriter::NeedsBrackets(std::string_view encoded) { return encoded.find_first_of("\\\"") != std::string::npos; }

std::string LuaWriter::GetIndent(int depth) const {
    return std::string(m_Indent ? static_cast<size_t>(std::min(depth, s_MaxTabs)) : 0, '\t');
}

// What stands among the globals by itself is no setting; under the same name in a table it is one.
bool LuaWriter::IsLeftOut(const std::string& key, int depth) const {
    return !key.empty() && (!IsSavedType(LuaExtension::GetType(m_Config.GetState(), -1)) ||
                            (depth == 0 && LuaFunctions::IsStandardGlobal(key.c_str())));
}

bool LuaWriter::WriteEntry(const std::string& key, int depth, bool forceBrackets) {
    if (IsLeftOut(key, depth))
        return true;
    if (depth > s_MaxDepth || m_Text.size() > s_MaxText || !lua_checkstack(m_Config.GetState(), LUA_MINSTACK)) {
        m_Config.Report("[%s] '%s' is too deep or too large to be saved", m_Config.GetName(), key.c_str());
        return false;
    }
    if (!key.empty())
        WriteKey(key, depth, forceBrackets);
    if (!WriteValue(key, depth))
        return false;
    if (!key.empty())
        m_Text += depth != 0 ? ",\n" : "\n";
    return true;
}

void LuaWriter::WriteKey(const std::string& key, int depth, bool forceBrackets) {
    m_Text += GetIndent(depth);
    long number = 0;
    const bool isNegative = LuaExtension::IsNumberKey(key.c_str(), number) && number < 0;
    if (!StartsWithDigit(key) && !isNegative)
        m_Text += key + " = ";
    else if (forceBrackets || isNegative)
        m_Text += "[" + key + "] = ";
}

bool LuaWriter::WriteValue(const std::string& key, int depth) {
    lua_State* pState = m_Config.GetState();
    switch (lua_type(pState, -1)) {
    case LUA_TBOOLEAN:
        m_Text += lua_toboolean(pState, -1) ? "true" : "false";
        return true;
    case LUA_TNUMBER:
        WriteNumber(lua_tonumber(pState, -1));
        return true;
    case LUA_TSTRING:
        return WriteString();
    default:
        return WriteTable(key, depth);
    }
}

void LuaWriter::WriteNumber(double number) {
    char text[400]; // the largest number has 309 digits
    std::snprintf(text, sizeof text, std::floor(number) == number ? "%0.0f" : "%0.5f", number);
    m_Text += text;
}

bool LuaWriter::WriteString() {
    size_t size = 0;
    const char* pText = lua_tolstring(m_Config.GetState(), -1, &size);
    const std::string encoded = EncodeString({pText, size});
    if (!NeedsBrackets(encoded)) {
        m_Text += "\"" + encoded + "\"";
        return true;
    }
    const char* textbuffer = encoded.c_str();
    dbAssertText(std::strstr(textbuffer, "[[") == nullptr, "strstr( textbuffer, \"[[\" ) == NULL");
    dbAssertText(std::strstr(textbuffer, "]]") == nullptr, "strstr( textbuffer, \"]]\" ) == NULL");
    m_Text += "[[" + encoded + "]]";
    return encoded.find("[[") == std::string::npos && encoded.find("]]") == std::string::npos;
}

bool LuaWriter::WriteTable(const std::string& key, int depth) {
    bool written = false;
    if (!WriteOverride(written))
        return false;
    if (written)
        return true;
    if (key.empty())
        return WriteEntries(depth);
    m_Text += " \n" + GetIndent(depth) + "{\n";
    if (!WriteEntries(depth + 1))
        return false;
    m_Text += GetIndent(depth) + "}";
    return true;
}

// A table of a program's own kind may know better what stands for it.
bool LuaWriter::WriteOverride(bool& written) {
    lua_State* pState = m_Config.GetState();
    const StackScope scope(pState);
    if (!lua_getmetatable(pState, -1))
        return true;
    lua_pushliteral(pState, "_metasave_override");
    lua_rawget(pState, -2);
    if (!lua_iscfunction(pState, -1))
        return true;
    written = true;
    lua_pushvalue(pState, -3);
    const int before = lua_gettop(pState) - 2;
    if (!m_Config.Call(1, LUA_MULTRET, "saving"))
        return false;
    const int r = lua_gettop(pState) - before;
    dbAssert(r == 1);
    size_t size = 0;
    const char* pText = r == 1 ? lua_tolstring(pState, -1, &size) : nullptr;
    if (pText)
        m_Text.append(pText, size);
    return pText != nullptr;
}

// The first key decides for all of them.
bool LuaWriter::WriteEntries(int depth) {
    lua_State* pState = m_Config.GetState();
    const StackScope scope(pState);
    LuaExtension::PushWalked(pState, lua_gettop(pState));
    std::vector<std::string> keys;
    LuaExtension::ForEach(pState, -1, [&] {
        if (const std::string key = LuaExtension::GetKeyText(pState, -2); !key.empty())
            keys.push_back(key.substr(0, s_MaxWrittenKey));
    });
    if (keys.empty())
        return true;
    if (StartsWithDigit(keys.front()))
        return WriteNumbered(keys, depth);
    return m_Sorted ? WriteSorted(std::move(keys), depth) : WriteUnsorted(depth);
}

bool LuaWriter::WriteNumbered(const std::vector<std::string>& keys, int depth) {
    const std::vector<long> numbers = ReadNumbers(keys);
    const bool isList =
        numbers.front() == 1 && numbers.back() == static_cast<long>(keys.size()) && numbers.size() == keys.size();
    return std::ranges::all_of(numbers,
                               [&](long number) { return WriteField(std::to_string(number), depth, !isList); });
}

bool LuaWriter::WriteSorted(std::vector<std::string> keys, int depth) {
    std::ranges::sort(keys);
    return std::ranges::all_of(keys, [&](const std::string& key) { return WriteField(key, depth, true); });
}

bool LuaWriter::WriteUnsorted(int depth) {
    lua_State* pState = m_Config.GetState();
    bool written = true;
    LuaExtension::ForEach(pState, -1, [&] {
        if (const std::string key = LuaExtension::GetKeyText(pState, -2); written && !key.empty())
            written = WriteEntry(key, depth, false);
    });
    return written;
}

// The entry of the table on top of the stack that the key leads to.
bool LuaWriter::WriteField(const std::string& key, int depth, bool forceBrackets) {
    lua_State* pState = m_Config.GetState();
    const StackScope scope(pState);
    // A number below 1 too, which no caller's key is.
    if (long number = 0; LuaExtension::IsNumberKey(key.c_str(), number))
        lua_pushnumber(pState, static_cast<lua_Number>(number));
    else
        lua_pushstring(pState, key.c_str());
    lua_rawget(pState, -2);
    return WriteEntry(key, depth, forceBrackets);
}
