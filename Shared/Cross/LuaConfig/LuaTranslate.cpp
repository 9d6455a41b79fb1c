#include "Shared/Cross/LuaConfig/LuaBridge.h"

#include <vector>

namespace {

bool IsWordStart(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_'; }
bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// Copies a text token by token and rewrites what the library takes otherwise. Words inside of strings and comments are
// none.
class Translator {
public:
    explicit Translator(std::string_view text) : m_Text(text) {}

    std::string Run() {
        m_Out.reserve(m_Text.size() + m_Text.size() / 8);
        while (m_At < m_Text.size())
            TakeToken();
        return std::move(m_Out);
    }

private:
    // What a word has opened and another will close.
    enum class Open { Block, LoopHead, LoopList };

    char Peek(size_t ahead = 0) const { return m_At + ahead < m_Text.size() ? m_Text[m_At + ahead] : '\0'; }
    void Copy(size_t count) {
        m_Out += m_Text.substr(m_At, count);
        m_At += count;
    }

    void TakeToken() {
        const char c = Peek();
        if (c == '-' && Peek(1) == '-')
            TakeComment();
        else if (c == '"' || c == '\'')
            TakeString(c);
        else if (c == '[' && Peek(1) == '[')
            TakeLongBracket();
        else if (c == '[' && Peek(1) == '=')
            TakeLeveledBracket();
        else if (IsWordStart(c))
            TakeWord();
        else if (IsDigit(c))
            Copy(WordLength());
        else
            Copy(1);
    }

    void TakeComment() {
        Copy(2);
        if (Peek() == '[' && Peek(1) == '[')
            TakeLongBracket();
        else if (!(Peek() == '[' && Peek(1) == '=' && TakeLeveledBracket()))
            Copy(std::min(m_Text.find('\n', m_At), m_Text.size()) - m_At);
    }

    void TakeString(char quote) {
        size_t end = m_At + 1;
        while (end < m_Text.size() && m_Text[end] != quote && m_Text[end] != '\n')
            end += m_Text[end] == '\\' ? 2 : 1;
        Copy(end + 1 - m_At);
    }

    // The end of a bracket that may hold others, behind it; npos when it isn't closed.
    size_t FindNestedEnd(bool& nested) const {
        size_t depth = 1;
        for (size_t at = m_At + 2; at + 1 < m_Text.size(); ++at) {
            const std::string_view pair = m_Text.substr(at, 2);
            if (pair != "[[" && pair != "]]")
                continue;
            depth = pair == "[[" ? depth + 1 : depth - 1;
            nested = nested || pair == "[[";
            if (depth == 0)
                return at + 2;
            ++at;
        }
        return std::string_view::npos;
    }

    void TakeLongBracket() {
        bool nested = false;
        const size_t end = FindNestedEnd(nested);
        if (end == std::string_view::npos || !nested) {
            Copy(std::min(end, m_Text.size()) - m_At);
            return;
        }
        const std::string_view inner = m_Text.substr(m_At + 2, end - m_At - 4);
        std::string level = "=";
        while (inner.find("]" + level + "]") != std::string_view::npos)
            level += '=';
        m_Out += "[" + level + "[";
        m_Out += inner;
        m_Out += "]" + level + "]";
        m_At = end;
    }

    // False, with nothing taken in case of a comment, when it is no such bracket.
    bool TakeLeveledBracket() {
        size_t open = m_At + 1;
        while (open < m_Text.size() && m_Text[open] == '=')
            ++open;
        if (open >= m_Text.size() || m_Text[open] != '[') {
            Copy(1);
            return false;
        }
        const std::string closing = "]" + std::string(open - m_At - 1, '=') + "]";
        const size_t end = m_Text.find(closing, open);
        Copy((end == std::string_view::npos ? m_Text.size() : end + closing.size()) - m_At);
        return true;
    }

    size_t WordLength() const {
        size_t end = m_At;
        while (end < m_Text.size() && (IsWordStart(m_Text[end]) || IsDigit(m_Text[end])))
            ++end;
        return end - m_At;
    }

    bool IsInside(Open open) const { return !m_Open.empty() && m_Open.back() == open; }

    void TakeWord() {
        const size_t length = WordLength();
        const std::string_view word = m_Text.substr(m_At, length);
        if (word == "for")
            m_Open.push_back(Open::LoopHead);
        else if (word == "function" || word == "if" || word == "repeat")
            m_Open.push_back(Open::Block);
        else if ((word == "end" || word == "until") && !m_Open.empty())
            m_Open.pop_back();
        else if (word == "do")
            OpenBody();
        Copy(length);
        if (word == "in" && IsInside(Open::LoopHead)) {
            m_Open.back() = Open::LoopList;
            m_Out += std::string(" ") + LuaBridge::s_LoopFunction + "(";
        }
    }

    void OpenBody() {
        if (IsInside(Open::LoopList))
            m_Out += ") ";
        if (IsInside(Open::LoopList) || IsInside(Open::LoopHead))
            m_Open.pop_back();
        m_Open.push_back(Open::Block);
    }

    std::string_view m_Text;
    size_t m_At = 0;
    std::string m_Out;
    std::vector<Open> m_Open;
};

} // namespace

std::string LuaBridge::Translate(std::string_view text) { return Translator(text).Run(); }
