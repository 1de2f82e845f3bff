// SPDX-License-Identifier: Apache-2.0
#include "text/TextTable.h"

#include <algorithm>
#include <utility>

#include "console/Console.h"
#include "text/VisibleText.h"

namespace ogmprobe {
namespace {

constexpr const char* kGap = "  ";

}  // namespace

TextTable::TextTable(std::vector<Column> columns) : mColumns(std::move(columns)) {
    for (const Column& column : mColumns) {
        mWidths.push_back(columnsOf(column.heading));
    }
}

void TextTable::add(std::vector<std::string> row) {
    row.resize(mColumns.size());
    for (size_t i = 0; i < row.size(); ++i) {
        mWidths[i] = std::max(mWidths[i], columnsOf(row[i]));
    }
    mRows.push_back(std::move(row));
}

void TextTable::addDimmed(std::vector<std::string> row) {
    mDimmed.insert(mRows.size());
    add(std::move(row));
}

std::string TextTable::text(const std::string& indent, bool color) const {
    std::string lines = emphasised(line(headings(), indent), color) + "\n";
    for (size_t i = 0; i < mRows.size(); ++i) {
        lines += dimmed(line(mRows[i], indent), color && mDimmed.contains(i)) + "\n";
    }
    return lines;
}

std::string TextTable::line(const std::vector<std::string>& cells,
                            const std::string& indent) const {
    std::string line = indent;
    for (size_t i = 0; i < cells.size(); ++i) {
        const bool left = mColumns[i].align == Align::kLeft;
        const std::string space(mWidths[i] - columnsOf(cells[i]), ' ');
        line += left ? cells[i] + space : space + cells[i];
        line += kGap;
    }
    line.erase(line.find_last_not_of(' ') + 1);
    return line;
}

std::vector<std::string> TextTable::headings() const {
    std::vector<std::string> headings;
    for (const Column& column : mColumns) {
        headings.push_back(column.heading);
    }
    return headings;
}

}  // namespace ogmprobe
