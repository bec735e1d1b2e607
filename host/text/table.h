// A table for the terminal: columns aligned by their displayed width.
#pragma once

#include <cstddef>
#include <ostream>
#include <string>
#include <vector>

namespace host {

struct Column {
    enum class Align { Left, Right };
    std::string title;
    Align align = Align::Left;
};

// The first column gives way where the lines would be wider than the terminal.
class Table {
 public:
    explicit Table(std::vector<Column> columns) : m_columns(std::move(columns)) {}

    // As many cells as there are columns. They are shown as Printable (host/text/display_width.h) has them.
    void AddRow(const std::vector<std::string>& cells);
    // Puts something that is `width` columns wide and may hold escape sequences in front of a cell of the row
    // added last.
    void Decorate(std::size_t column, std::string decoration, std::size_t width);

    // `width`: that of the terminal; 0 for as wide as it is.
    void Print(std::ostream& out, std::size_t width) const;

 private:
    struct Decoration {
        std::size_t column = 0, width = 0;
        std::string text;
    };
    struct Row {
        std::vector<std::string> cells;
        Decoration decoration;
    };

    std::size_t CellWidth(const Row& row, std::size_t column) const;
    std::vector<std::size_t> Widths(std::size_t limit) const;
    void PrintRow(std::ostream& out, const Row& row, const std::vector<std::size_t>& widths) const;

    std::vector<Column> m_columns;
    std::vector<Row> m_rows;
};

}  // namespace host
