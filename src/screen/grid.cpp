#include "screen/grid.h"

#include "runtime/errors.h"

namespace ktl {

std::size_t Grid::AddRow() {
  rows.push_back({std::vector<GridCell>(columns.size())});
  return rows.size() - 1;
}

void Grid::Clear() {
  rows.clear();
  activeRow = kNoRow;
}

GridCell& Grid::At(std::size_t row, std::size_t column) {
  return const_cast<GridCell&>(static_cast<const Grid&>(*this).At(row, column));
}

const GridCell& Grid::At(std::size_t row, std::size_t column) const {
  if (row >= rows.size() || column >= rows[row].cells.size()) throw RuntimeError::SubscriptOutOfRange();
  return rows[row].cells[column];
}

bool Grid::IsLocked(std::size_t row, std::size_t column) const {
  return At(row, column).locked.value_or(columns.at(column).locked);
}

CellType Grid::TypeOf(std::size_t row, std::size_t column) const {
  return At(row, column).type.value_or(columns.at(column).type);
}

void Grid::PaintRow(std::size_t row, Colour back) {
  if (row >= rows.size()) throw RuntimeError::SubscriptOutOfRange();
  for (GridCell& cell : rows[row].cells) cell.backColour = back;
}

}  // namespace ktl
