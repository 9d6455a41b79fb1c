#include "Shared/Cross/Memory/MMOverrides.h"

#include "Shared/Cross/Memory/MMSystem.h"

#include <algorithm>

namespace {

constexpr std::string_view s_Blanks = " \t\r\n";
constexpr std::string_view s_All = "ALL";

char ToUpper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

bool IsSame(std::string_view a, std::string_view b) {
    return std::ranges::equal(a, b, [](char x, char y) { return ToUpper(x) == ToUpper(y); });
}

std::string_view Trim(std::string_view text) {
    const size_t first = text.find_first_not_of(s_Blanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(s_Blanks) - first + 1);
}

// The first line of the text, trimmed; the text loses it.
std::string_view CutLine(std::string_view& text) {
    const size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return Trim(line);
}

} // namespace

void MMOverrides::LineList::Add(const Line& line) {
    if (m_Count < MaxLines)
        m_Lines[m_Count++] = line;
}

const MMOverrides::Line* MMOverrides::LineList::Find(std::string_view name) const {
    for (size_t i = 0; i < m_Count; ++i)
        if (IsSame(m_Lines[i].name, name))
            return &m_Lines[i];
    return nullptr;
}

void MMOverrides::CopySection(std::string_view file) {
    m_Length = 0;
    bool inside = false;
    while (!file.empty()) {
        const std::string_view line = CutLine(file);
        if (line.starts_with('[')) {
            if (inside)
                return; // only the first section of the name counts
            inside = IsSame(line, "[overrides]");
        } else if (inside && !line.empty()) {
            if (m_Length + line.size() + 1 > MaxSection)
                return;
            std::ranges::copy(line, m_Section.data() + m_Length);
            m_Length += line.size();
            m_Section[m_Length++] = '\n';
        }
    }
}

void MMOverrides::ReadLine(std::string_view line) {
    const size_t equals = line.find('=');
    if (line.find(';') < equals)
        return;
    const std::string_view name = Trim(line.substr(0, equals));
    const std::string_view command = equals < line.size() ? Trim(line.substr(equals + 1)) : std::string_view();
    if (IsSame(command, "EXCLUDE"))
        m_Exclusions.Add({name, MMOverride::None});
    else if (IsSame(command, "VMOVER"))
        m_Overrides.Add({name, MMOverride::OverWrite});
    else if (IsSame(command, "VMUNDER"))
        m_Overrides.Add({name, MMOverride::UnderWrite});
    else if (IsSame(command, "INFO"))
        m_Overrides.Add({name, MMOverride::Info});
    else
        MMPrintf("MemoryLib: (INFO) : memory.ini, line '%.*s' is none of EXCLUDE, VMOVER, VMUNDER and INFO\n",
                 static_cast<int>(std::min<size_t>(line.size(), 128)), line.data());
}

void MMOverrides::Read(std::string_view file) {
    m_Overrides.Clear();
    m_Exclusions.Clear();
    CopySection(file);
    std::string_view section(m_Section.data(), m_Length);
    while (!section.empty())
        ReadLine(CutLine(section));
}

MMOverride MMOverrides::Get(std::string_view pool) const {
    if (m_Exclusions.Find(pool))
        return MMOverride::None;
    const Line* pLine = m_Overrides.Find(pool);
    if (!pLine && !m_Exclusions.Find(s_All))
        pLine = m_Overrides.Find(s_All);
    return pLine ? pLine->command : MMOverride::None;
}
