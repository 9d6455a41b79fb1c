#include "Host/App/ScriptText.h"

#include "Host/App/TextUtil.h"
#include "Shared/Cross/Util/Hash.h"

#include <charconv>
#include <cmath>

namespace {

// As deep as arrays may stand in each other; a line of brackets can't exhaust the stack.
constexpr int s_MaxDepth = 100;

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }
bool IsNameStart(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_'; }
bool IsNamePart(char c) { return IsNameStart(c) || IsDigit(c); }

class Reader {
public:
    explicit Reader(std::string_view text) : m_Text(text) {}

    void SkipBlanks() {
        while (m_Pos < m_Text.size() && IsBlank(m_Text[m_Pos]))
            ++m_Pos;
        if (m_Text.substr(m_Pos, 2) == "--")
            m_Pos = m_Text.size();
    }

    bool AtEnd() const { return m_Pos == m_Text.size(); }

    std::string ReadCommand() {
        if (AtEnd() || !IsNameStart(m_Text[m_Pos]))
            Fail("a command's name is wanted here");
        return std::string(ReadName());
    }

    Value ReadValue(int depth = 0) {
        if (AtEnd())
            Fail("a value is missing");
        const char c = m_Text[m_Pos];
        Value value;
        if (c == '"')
            value = ReadString();
        else if (c == '#')
            value = ReadArray(depth);
        else if (IsDigit(c) || c == '-' || c == '+' || c == '.')
            value = ReadNumber();
        else
            value = ReadWord();
        return value;
    }

    // What follows a value has to be set off from it.
    void EndWord() const {
        if (!AtEnd() && !IsBlank(m_Text[m_Pos]) && m_Text[m_Pos] != ',' && m_Text[m_Pos] != ')' &&
            m_Text.substr(m_Pos, 2) != "--")
            Fail("a blank is missing here");
    }

    [[noreturn]] void Fail(std::string_view what) const {
        throw ScriptSyntaxError("column " + std::to_string(m_Pos + 1) + ": " + std::string(what));
    }

private:
    std::string_view ReadName() {
        const size_t start = m_Pos;
        while (m_Pos < m_Text.size() && IsNamePart(m_Text[m_Pos]))
            ++m_Pos;
        return m_Text.substr(start, m_Pos - start);
    }

    Value ReadWord() {
        const size_t start = m_Pos;
        const std::string_view name = ReadName();
        if (EqualNoCase(name, "true"))
            return Value(true);
        if (EqualNoCase(name, "false"))
            return Value(false);
        if (EqualNoCase(name, "undefined"))
            return {};
        m_Pos = start;
        Fail(name.empty() ? "a value is wanted here" : "this word is no value; a text stands in quotes");
    }

    Value ReadString() {
        const size_t start = m_Pos++;
        std::string text;
        while (m_Pos < m_Text.size() && m_Text[m_Pos] != '"') {
            if (m_Text[m_Pos] == '\\' && m_Pos + 1 < m_Text.size())
                ReadEscape(text);
            else
                text += m_Text[m_Pos++];
        }
        if (AtEnd()) {
            m_Pos = start;
            Fail("this text has no closing quote");
        }
        ++m_Pos;
        return Value(std::move(text));
    }

    // A backslash before any other character stands for itself, so that most paths can be written plainly.
    void ReadEscape(std::string& text) {
        const char c = m_Text[m_Pos + 1];
        switch (c) {
        case '"':
        case '\\':
            text += c;
            break;
        case 'n':
            text += '\n';
            break;
        case 'r':
            text += '\r';
            break;
        case 't':
            text += '\t';
            break;
        default:
            text += '\\';
            --m_Pos;
        }
        m_Pos += 2;
    }

    Value ReadArray(int depth) {
        const size_t start = m_Pos;
        if (m_Text.substr(m_Pos, 2) != "#(")
            Fail("an array begins with #(");
        if (depth == s_MaxDepth)
            Fail("arrays stand too deep in each other");
        m_Pos += 2;
        Value::Array items;
        SkipBlanks();
        while (AtEnd() || m_Text[m_Pos] != ')') {
            if (AtEnd()) {
                m_Pos = start;
                Fail("this array has no closing bracket");
            }
            items.push_back(ReadValue(depth + 1));
            SkipBlanks();
            if (AtEnd() || m_Text[m_Pos] == ')')
                continue;
            if (m_Text[m_Pos] != ',')
                Fail("a comma is missing between an array's items");
            ++m_Pos;
            SkipBlanks();
            if (!AtEnd() && m_Text[m_Pos] == ')')
                Fail("an item is missing behind the comma");
        }
        ++m_Pos;
        return Value(std::move(items));
    }

    Value ReadNumber() {
        size_t end = m_Pos;
        while (end < m_Text.size() &&
               (IsNamePart(m_Text[end]) || m_Text[end] == '.' || m_Text[end] == '+' || m_Text[end] == '-'))
            ++end;
        std::string_view word = m_Text.substr(m_Pos, end - m_Pos);
        // A comment may follow at once.
        word = word.substr(0, word.find("--"));
        end = m_Pos + word.size();
        if (word.starts_with('+'))
            word.remove_prefix(1);
        Value value;
        if (!ToInteger(word, value) && !ToFloat(word, value))
            Fail("this is no number that a value can hold");
        m_Pos = end;
        return value;
    }

    static bool ToInteger(std::string_view word, Value& value) {
        int32_t number = 0;
        const auto [pEnd, error] = std::from_chars(word.data(), word.data() + word.size(), number);
        if (error != std::errc() || pEnd != word.data() + word.size())
            return false;
        value = Value(number);
        return true;
    }

    // Only a word that shows it, by a point or an exponent, is a float: an integer too big for its type isn't.
    static bool ToFloat(std::string_view word, Value& value) {
        if (word.find_first_of(".eE") == std::string_view::npos)
            return false;
        float number = 0;
        const auto [pEnd, error] = std::from_chars(word.data(), word.data() + word.size(), number);
        if (error != std::errc() || pEnd != word.data() + word.size() || !std::isfinite(number))
            return false;
        value = Value(number);
        return true;
    }

    std::string_view m_Text;
    size_t m_Pos = 0;
};

} // namespace

std::optional<ScriptCall> ParseScriptLine(std::string_view line) {
    Reader reader(line);
    reader.SkipBlanks();
    if (reader.AtEnd())
        return std::nullopt;
    ScriptCall call{.command = reader.ReadCommand(), .arguments = {}};
    reader.EndWord();
    reader.SkipBlanks();
    while (!reader.AtEnd()) {
        call.arguments.push_back(reader.ReadValue());
        if (!reader.AtEnd())
            reader.EndWord();
        reader.SkipBlanks();
    }
    return call;
}

std::optional<Value> ParseScriptValue(std::string_view text) {
    try {
        Reader reader(text);
        Value value = reader.ReadValue();
        if (reader.AtEnd())
            return value;
    } catch (const ScriptSyntaxError&) {
        // The caller wants to know whether, not why.
    }
    return std::nullopt;
}
