#include "Host/App/Messages.h"

#include "Host/App/TextUtil.h"

namespace {

constexpr size_t s_LongestRun = 20;
constexpr size_t s_ShownOfRun = 3;

constexpr const char* s_ColourWarning = "\033[33m";
constexpr const char* s_ColourError = "\033[31m";
constexpr const char* s_ColourOff = "\033[0m";

// The line with each number replaced by one mark, so that lines that differ in numbers alone become equal. A sign and a
// fraction belong to a number, a digit within a name counts as one.
std::string WithoutNumbers(std::string_view line) {
    std::string key;
    key.reserve(line.size());
    for (size_t i = 0; i < line.size();) {
        const bool sign = line[i] == '-' && i + 1 < line.size() && IsDigit(line[i + 1]);
        if (!sign && !IsDigit(line[i])) {
            key += line[i++];
            continue;
        }
        i += sign ? 1 : 0;
        while (i < line.size() && (IsDigit(line[i]) || (line[i] == '.' && i + 1 < line.size() && IsDigit(line[i + 1]))))
            ++i;
        key += '\0';
    }
    return key;
}

// Lists mark their lines themselves.
MessageKind KindOfLine(std::string_view line) {
    if (line.starts_with("Error"))
        return MessageKind::Error;
    return line.starts_with("Warning") ? MessageKind::Warning : MessageKind::Note;
}

} // namespace

std::vector<std::string> FoldLines(const std::vector<std::string>& lines) {
    std::vector<std::string> folded;
    for (size_t start = 0; start < lines.size();) {
        const std::string key = WithoutNumbers(lines[start]);
        size_t end = start + 1;
        while (end < lines.size() && WithoutNumbers(lines[end]) == key)
            ++end;
        const size_t shown = end - start > s_LongestRun ? start + s_ShownOfRun : end;
        folded.insert(folded.end(), lines.begin() + static_cast<ptrdiff_t>(start),
                      lines.begin() + static_cast<ptrdiff_t>(shown));
        if (shown < end)
            folded.push_back("          ... and " + std::to_string(end - shown) +
                             " more that differ only in their numbers (--all-messages shows them)");
        start = end;
    }
    return folded;
}

void Messages::Print(MessageKind kind, std::string_view text) const {
    if (kind != MessageKind::Note || !m_Settings.quiet)
        PrintLine(text, kind);
}

void Messages::PrintDetail(std::string_view text) const {
    if (m_Settings.verbose)
        PrintLine(text, MessageKind::Note);
}

void Messages::PrintList(const std::vector<std::string>& lines) const {
    const bool fold = m_Settings.terminal && !m_Settings.all;
    for (const std::string& line : fold ? FoldLines(lines) : lines)
        PrintLine(line, KindOfLine(line));
}

void Messages::PrintLine(std::string_view text, MessageKind kind) const {
    const bool colour = m_Settings.colour && kind != MessageKind::Note;
    std::string line;
    line.reserve(text.size() + 16);
    if (colour)
        line += kind == MessageKind::Error ? s_ColourError : s_ColourWarning;
    line += text;
    if (colour)
        line += s_ColourOff;
    line += '\n';
    // Standard error has no buffer: in one piece, a line costs one call and isn't torn by another program's.
    std::fwrite(line.data(), 1, line.size(), m_pOut);
}
