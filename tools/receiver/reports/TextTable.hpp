// Lines up columns of text. Used by the text reports.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace mireth::receiver {

/// Cells are made printable when they are added, so that nothing stored can break the lines.
class TextTable {
  public:
    using Row = std::vector<std::string>;

    /// The first row. A heading that ends in ">" stands without it and has its column flushed right.
    explicit TextTable(Row headings);

    /// As many cells as there are headings.
    void add(const Row& row);
    void write(std::ostream& out) const;

  private:
    std::vector<bool> right_;
    std::vector<Row> rows_;
};

}  // namespace mireth::receiver
