#include "Tools/pvxdump/TextTable.h"

#include <algorithm>

namespace {

constexpr size_t s_Gap = 2; // blanks between columns
constexpr uint32_t s_SectionIndent = 2;

// Letters outside of ASCII take several bytes and one place.
size_t CountPlaces(const std::string& text) {
    return static_cast<size_t>(std::ranges::count_if(text, [](char c) { return (c & 0xC0) != 0x80; }));
}

} // namespace

std::vector<size_t> TextTable::GetWidths() const {
    std::vector<size_t> widths;
    for (const Column& column : m_Columns)
        widths.push_back(CountPlaces(column.title));
    for (const std::vector<std::string>& row : m_Rows)
        for (size_t i = 0; i < std::min(row.size(), widths.size()); ++i)
            widths[i] = std::max(widths[i], CountPlaces(row[i]));
    return widths;
}

void TextTable::PrintLine(std::string& out, uint32_t indent, const std::vector<std::string>& cells,
                          const std::vector<size_t>& widths) const {
    out.append(indent, ' ');
    for (size_t i = 0; i < std::min(cells.size(), widths.size()); ++i) {
        const size_t padding = widths[i] - CountPlaces(cells[i]);
        if (m_Columns[i].align == Align::Right)
            out.append(padding, ' ');
        out += cells[i];
        if (m_Columns[i].align == Align::Left)
            out.append(padding, ' ');
        out.append(s_Gap, ' ');
    }
    out.erase(out.find_last_not_of(' ') + 1);
    out += '\n';
}

void TextTable::Print(std::string& out, uint32_t indent) const {
    if (m_Rows.empty())
        return;
    const std::vector<size_t> widths = GetWidths();
    std::vector<std::string> titles;
    for (const Column& column : m_Columns)
        titles.push_back(column.title);
    PrintLine(out, indent, titles, widths);
    for (const std::vector<std::string>& row : m_Rows)
        PrintLine(out, indent, row, widths);
}

void TextTable::PrintSection(std::string& out, const std::string& heading) const {
    if (m_Rows.empty())
        return;
    out += '\n' + heading + '\n';
    Print(out, s_SectionIndent);
}
