// Two spaces between columns, none at the end of a line.
#include "reports/TextTable.hpp"

#include <algorithm>
#include <ostream>

#include "base/PrintableText.hpp"

namespace mireth::receiver {

TextTable::TextTable(Row headings) {
    for (auto& heading : headings) {
        right_.push_back(heading.ends_with('>'));
        if (right_.back()) {
            heading.pop_back();
        }
    }
    add(headings);
}

void TextTable::add(const Row& row) {
    Row printable;
    for (const auto& cell : row) {
        printable.push_back(printableText(cell));
    }
    rows_.push_back(std::move(printable));
}

void TextTable::write(std::ostream& out) const {
    std::vector<std::size_t> widths(right_.size());
    for (const auto& row : rows_) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            widths[i] = std::max(widths[i], textWidth(row[i]));
        }
    }
    for (const auto& row : rows_) {
        std::string line;
        for (std::size_t i = 0; i < row.size(); ++i) {
            const std::string fill(widths[i] - textWidth(row[i]), ' ');
            line += (i == 0 ? "" : "  ") + (right_[i] ? fill + row[i] : row[i] + fill);
        }
        line.erase(line.find_last_not_of(' ') + 1);
        out << line << '\n';
    }
}

}  // namespace mireth::receiver
