#include "host/text/table.h"

#include <algorithm>
#include <numeric>

#include "host/text/display_width.h"

namespace host {
namespace {

constexpr std::size_t kBetween = 2;    // columns between two cells
constexpr std::size_t kNarrowest = 8;  // of the first column

std::size_t MissingTo(std::size_t width, std::size_t has) { return width > has ? width - has : 0; }

}  // namespace

void Table::Decorate(std::size_t column, std::string decoration, std::size_t width) {
    m_rows.back().decoration = {column, width, std::move(decoration)};
}

std::size_t Table::CellWidth(const Row& row, std::size_t column) const {
    const bool isDecorated = !row.decoration.text.empty() && row.decoration.column == column;
    return DisplayWidth(row.cells[column]) + (isDecorated ? row.decoration.width : 0);
}

std::vector<std::size_t> Table::Widths(std::size_t limit) const {
    std::vector<std::size_t> widths;
    for (std::size_t i = 0; i < m_columns.size(); ++i) {
        std::size_t width = DisplayWidth(m_columns[i].title);
        for (const Row& row : m_rows) width = std::max(width, CellWidth(row, i));
        widths.push_back(width);
    }
    const std::size_t total =
        std::accumulate(widths.begin(), widths.end(), std::size_t{0}) + kBetween * (widths.size() - 1);
    if (limit != 0 && total > limit)
        widths[0] = std::max(MissingTo(widths[0], total - limit), std::min(kNarrowest, widths[0]));
    return widths;
}

void Table::AddRow(const std::vector<std::string>& cells) {
    Row row;
    for (const std::string& cell : cells) row.cells.push_back(Printable(cell));
    m_rows.push_back(std::move(row));
}

void Table::PrintRow(std::ostream& out, const Row& row, const std::vector<std::size_t>& widths) const {
    std::string line;
    for (std::size_t i = 0; i < widths.size(); ++i) {
        const std::string cell = FitWidth(row.cells[i], widths[i]);
        const bool isDecorated = !row.decoration.text.empty() && row.decoration.column == i;
        const std::size_t has = DisplayWidth(cell) + (isDecorated ? row.decoration.width : 0);
        const std::string padding(MissingTo(widths[i], has), ' ');
        if (i != 0) line += std::string(kBetween, ' ');
        if (isDecorated) line += row.decoration.text;
        line += m_columns[i].align == Column::Align::Right ? padding + cell : cell + padding;
    }
    line.erase(line.find_last_not_of(' ') + 1);
    out << line << '\n';
}

void Table::Print(std::ostream& out, std::size_t width) const {
    const std::vector<std::size_t> widths = Widths(width);
    Row titles;
    for (const Column& column : m_columns) titles.cells.push_back(column.title);
    PrintRow(out, titles, widths);
    for (const Row& row : m_rows) PrintRow(out, row, widths);
}

}  // namespace host
