#include "Shared/Cross/RevControlAPI/P4Answers.h"

#include <algorithm>
#include <array>
#include <optional>

namespace {

// Of a line and of a message. Descriptions are the longest there is; what has no end mustn't take all memory.
constexpr size_t s_MostTextBytes = size_t{1} << 20;

constexpr std::array<std::string_view, 5> s_LostPhrases = {
    "Connect to server failed", "Perforce client error:", "Partner exited unexpectedly",
    "TCP receive failed",       "TCP send failed",
};

// What the server puts before fields and lines of detail where it isn't asked for marks.
constexpr std::string_view s_Dots = "... ";

struct Mark {
    std::string_view word;
    char level = '0';
    std::string_view text; // behind it
};

std::optional<Mark> FindMark(std::string_view line) {
    const size_t colon = line.find(':');
    if (colon == std::string_view::npos || colon > std::string_view("warning").size())
        return std::nullopt;
    Mark mark{.word = line.substr(0, colon), .text = line.substr(colon + 1)};
    if (mark.text.starts_with(' '))
        mark.text.remove_prefix(1);
    if (mark.word.starts_with("info") && mark.word.size() == 5 && mark.word[4] >= '0' && mark.word[4] <= '9') {
        mark.level = mark.word[4];
        mark.word.remove_suffix(1);
    }
    return mark;
}

bool IsContinuation(std::string_view text) { return text.empty() || text.starts_with('\t'); }

void AppendBounded(std::string& target, std::string_view text) {
    target.append(text.substr(0, s_MostTextBytes - std::min(target.size(), s_MostTextBytes)));
}

void CutLineEnds(std::string& text) { text.resize(text.find_last_not_of("\r\n") + 1); }

} // namespace

template <typename Function>
void P4Answers::Line::Add(std::string_view piece, Function function) {
    for (;;) {
        const size_t end = piece.find('\n');
        AppendBounded(text, piece.substr(0, end));
        if (end == std::string_view::npos)
            return;
        piece.remove_prefix(end + 1);
        CutLineEnds(text);
        function(text);
        text.clear();
    }
}

void P4Answers::AddOutput(std::string_view piece) {
    m_Output.Add(piece, [this](std::string_view line) { TakeLine(line); });
}

void P4Answers::AddError(std::string_view piece) {
    m_Error.Add(piece, [this](std::string_view line) { TakeErrorLine(line); });
}

void P4Answers::Finish() {
    if (!m_Output.text.empty())
        AddOutput("\n");
    if (!m_Error.text.empty())
        AddError("\n");
    HandOver();
    HandOverError(m_ErrorMessage);
    m_ErrorMessage.clear();
}

void P4Answers::TakeLine(std::string_view line) {
    const std::optional<Mark> mark = FindMark(line);
    if (mark && mark->word == "exit") {
        HandOver();
        m_HasExit = true;
        return;
    }
    if (mark && mark->word == "info")
        Start(Kind::Info, mark->level, mark->text);
    else if (mark && (mark->word == "error" || mark->word == "warning"))
        Start(Kind::Error, '0', mark->text);
    else if (mark && mark->word == "text")
        Start(Kind::Text, '0', mark->text);
    else if (m_Kind != Kind::None)
        Continue(line);
    else
        Start(Kind::Text, '0', line);
}

void P4Answers::TakeErrorLine(std::string_view line) {
    if (!IsContinuation(line) && !m_ErrorMessage.empty()) {
        HandOverError(m_ErrorMessage);
        m_ErrorMessage.clear();
    }
    if (!m_ErrorMessage.empty())
        AppendBounded(m_ErrorMessage, "\n");
    AppendBounded(m_ErrorMessage, line);
}

void P4Answers::Start(Kind kind, char level, std::string_view text) {
    if (kind == m_Kind && level == m_Level && kind != Kind::Text && IsContinuation(text)) {
        Continue(text);
        return;
    }
    HandOver();
    m_Kind = kind;
    m_Level = level;
    if (kind == Kind::Info)
        for (; text.starts_with(s_Dots); text.remove_prefix(s_Dots.size()))
            m_Level = static_cast<char>(std::min(m_Level + 1, '0' + 9));
    m_Message = text;
}

void P4Answers::Continue(std::string_view text) {
    AppendBounded(m_Message, "\n");
    AppendBounded(m_Message, text);
}

void P4Answers::HandOver() {
    CutLineEnds(m_Message);
    switch (m_Kind) {
    case Kind::None:
        break;
    case Kind::Info:
        m_User.OutputInfo(m_Level, m_Message.c_str());
        break;
    case Kind::Error:
        HandOverError(m_Message);
        break;
    case Kind::Text:
        m_User.OutputText(m_Message.data(), static_cast<int>(m_Message.size()));
        break;
    }
    m_Kind = Kind::None;
    m_Message.clear();
}

void P4Answers::HandOverError(const std::string& text) {
    if (text.empty())
        return;
    m_ConnectionLost |=
        std::ranges::any_of(s_LostPhrases, [&](std::string_view phrase) { return text.find(phrase) != text.npos; });
    m_User.OutputError(text.c_str());
}
