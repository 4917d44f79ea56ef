#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "screen/grid.h"

namespace ktl {

// A grid described once: its columns, the text of each, and the row of data behind every line. What a handler
// wants to know of a line it asks of the row, never of the text or the colour of a cell.
template <typename Row>
class GridList {
 public:
  struct Column {
    GridColumn column;
    std::function<std::string(const Row&)> text;  // none: the cell starts empty
  };

  explicit GridList(Grid& grid) : grid_(grid) {}
  GridList(const GridList&) = delete;
  GridList& operator=(const GridList&) = delete;

  // In the order of the screen's enum of columns; what stood in the grid goes.
  void SetColumns(std::vector<Column> columns) {
    columns_ = std::move(columns);
    grid_.columns.clear();
    for (const Column& each : columns_) grid_.columns.push_back(each.column);
    Show({});
  }
  // Colours, tags and locks of a line, after its texts are there.
  std::function<void(std::size_t line, const Row&)> paint;

  // The lines anew. The active line stays where it was while there are as many lines, else there is none.
  void Show(std::vector<Row> rows) {
    rows_ = std::move(rows);
    const std::size_t active = grid_.activeRow;
    grid_.Clear();
    grid_.rows.reserve(rows_.size());
    for (const Row& row : rows_) {
      const std::size_t line = grid_.AddRow();
      for (std::size_t column = 0; column < columns_.size(); ++column) {
        if (columns_[column].text) grid_.rows[line].cells[column].text = columns_[column].text(row);
      }
      if (paint) paint(line, row);
    }
    grid_.activeRow = active < rows_.size() ? active : kNoRow;
  }

  const std::vector<Row>& Rows() const { return rows_; }
  std::vector<Row>& Rows() { return rows_; }  // a changed row is shown by ShowAgain
  void ShowAgain(std::size_t line) {
    for (std::size_t column = 0; column < columns_.size(); ++column) {
      if (columns_[column].text) grid_.rows[line].cells[column].text = columns_[column].text(rows_[line]);
    }
    if (paint) paint(line, rows_[line]);
  }

  // Null when there is no such line, or no active one.
  const Row* At(std::size_t line) const { return line < rows_.size() ? &rows_[line] : nullptr; }
  const Row* Active() const { return At(grid_.activeRow); }

  // The rows whose cell in that column is ticked, in their order.
  std::vector<const Row*> Ticked(std::size_t column) const {
    std::vector<const Row*> ticked;
    for (std::size_t line = 0; line < rows_.size(); ++line) {
      if (grid_.IsTicked(line, column)) ticked.push_back(&rows_[line]);
    }
    return ticked;
  }

  Grid& grid() { return grid_; }

 private:
  Grid& grid_;
  std::vector<Column> columns_;
  std::vector<Row> rows_;
};

}  // namespace ktl
