#pragma once

#include "Shared/Cross/LuaConfig/LuaBridge.h"

#include <string>
#include <string_view>
#include <vector>

class LuaConfig;

// Values as the text of a script:
//
//   name = value                  at the outermost level
//   name =  \n{\n ... },          entries of a table, one level deeper, and a comma behind each
//   value,                        of a list without holes, from 1
//   [3] = value,                  of any other table with keys that start with a digit
//
// A boolean is true or false; a number has no decimals or five; a string stands in double quotes, or in long brackets
// when it holds a double quote or a backslash. Line feeds are the two characters \n in either.
class LuaWriter {
public:
    LuaWriter(LuaConfig& config, bool indent, bool sorted) : m_Config(config), m_Indent(indent), m_Sorted(sorted) {}

    // The value on top of the stack, under the key; the stack stays as it is. Without a key a table's entries alone.
    // False, and a report, for what can't be written; the text is of no use then.
    bool WriteEntry(const std::string& key, int depth, bool forceBrackets);

    const std::string& GetText() const { return m_Text; }

    // The longest text of a string, and its characters as they are written between quotes or brackets.
    static constexpr size_t s_MaxString = 1023;
    static std::string EncodeString(std::string_view text);
    static bool NeedsBrackets(std::string_view encoded);

private:
    bool IsLeftOut(const std::string& key, int depth) const;
    void WriteKey(const std::string& key, int depth, bool forceBrackets);
    bool WriteValue(const std::string& key, int depth);
    void WriteNumber(double number);
    bool WriteString();
    bool WriteTable(const std::string& key, int depth);
    bool WriteOverride(bool& written);
    bool WriteEntries(int depth);
    bool WriteNumbered(const std::vector<std::string>& keys, int depth);
    bool WriteSorted(std::vector<std::string> keys, int depth);
    bool WriteUnsorted(int depth);
    bool WriteField(const std::string& key, int depth, bool forceBrackets);
    std::string GetIndent(int depth) const;

    LuaConfig& m_Config;
    bool m_Indent;
    bool m_Sorted;
    std::string m_Text;
};
