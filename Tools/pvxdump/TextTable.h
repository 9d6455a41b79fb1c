#pragma once

#include <cstdint>
#include <string>
#include <vector>

// Rows of text in aligned columns.
class TextTable {
public:
    enum class Align : uint8_t { Left, Right };
    struct Column {
        std::string title;
        Align align = Align::Left;
    };

    explicit TextTable(std::vector<Column> columns) : m_Columns(std::move(columns)) {}
    // Ahead of the first row.
    void AddColumn(Column column) { m_Columns.push_back(std::move(column)); }
    bool IsEmpty() const { return m_Rows.empty(); }
    size_t GetRowCount() const { return m_Rows.size(); }
    // As many cells as columns; missing ones are empty.
    void AddRow(std::vector<std::string> cells) { m_Rows.push_back(std::move(cells)); }
    // Appends title and rows, each line indented by that many blanks. Nothing for a table without rows.
    void Print(std::string& out, uint32_t indent) const;
    // The same under a heading and an empty line.
    void PrintSection(std::string& out, const std::string& heading) const;

private:
    std::vector<size_t> GetWidths() const;
    void PrintLine(std::string& out, uint32_t indent, const std::vector<std::string>& cells,
                   const std::vector<size_t>& widths) const;

    std::vector<Column> m_Columns;
    std::vector<std::vector<std::string>> m_Rows;
};
