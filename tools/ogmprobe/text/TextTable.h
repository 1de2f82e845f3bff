// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <set>
#include <string>
#include <vector>

namespace ogmprobe {

/** Rows of text under headings, each column as wide as its widest cell. */
class TextTable {
  public:
    enum class Align { kLeft, kRight };
    struct Column {
        std::string heading;
        Align align = Align::kLeft;
    };

    explicit TextTable(std::vector<Column> columns);

    /** One cell for each column. */
    void add(std::vector<std::string> row);
    /** Adds a row that is grey with `color`. */
    void addDimmed(std::vector<std::string> row);

    /** Returns all lines, the headings first (in bold with `color`); no line ends in a blank. */
    std::string text(const std::string& indent, bool color) const;

  private:
    std::string line(const std::vector<std::string>& cells, const std::string& indent) const;
    std::vector<std::string> headings() const;

    std::vector<Column> mColumns;
    std::vector<size_t> mWidths;
    std::vector<std::vector<std::string>> mRows;
    /** Numbers of rows. */
    std::set<size_t> mDimmed;
};

}  // namespace ogmprobe
