#pragma once

#include <optional>

#include "screen/controls.h"

namespace ktl {

enum class CellType { Text, Number, Date, Tick, Button };

struct GridColumn {
  std::string caption;
  CellType type = CellType::Text;
  int width = 90;  // pixels at 96 dpi
  bool hidden = false;
  bool locked = true;
};

struct GridCell {
  std::string text;  // as shown; a tick cell holds "1" or "0"
  Colour backColour = kNoColour;
  Colour foreColour = kNoColour;
  std::optional<bool> locked;    // overrides the column's
  std::optional<CellType> type;  // overrides the column's
  std::string tag;
  bool operator==(const GridCell&) const = default;
};

struct GridRow {
  std::vector<GridCell> cells;
  bool hidden = false;
  std::string tag;
  bool operator==(const GridRow&) const = default;
};

// A block of selected cells, both ends counted in.
struct GridRange {
  std::size_t firstRow = 0;
  std::size_t firstColumn = 0;
  std::size_t lastRow = 0;
  std::size_t lastColumn = 0;

  std::size_t Rows() const { return lastRow - firstRow + 1; }
  std::size_t Columns() const { return lastColumn - firstColumn + 1; }
};

inline constexpr std::size_t kNoRow = static_cast<std::size_t>(-1);

// Rows and columns count from 0; a screen names its columns in an enum.
class Grid final : public Control {
 public:
  Grid(Screen& screen, std::string name) : Control(screen, ControlKind::Grid, std::move(name)) {}

  std::vector<GridColumn> columns;
  std::vector<GridRow> rows;
  std::size_t activeRow = kNoRow;
  std::size_t activeColumn = 0;
  std::vector<std::size_t> summed;  // columns of amounts whose sums stand under the rows

  // Adds a row of empty cells, one a column; its index.
  std::size_t AddRow();
  void Clear();                                       // takes the rows away, keeps the columns
  GridCell& At(std::size_t row, std::size_t column);  // throws RuntimeError 9 outside the grid
  const GridCell& At(std::size_t row, std::size_t column) const;
  const std::string& Text(std::size_t row, std::size_t column) const { return At(row, column).text; }
  bool IsTicked(std::size_t row, std::size_t column) const { return At(row, column).text == "1"; }
  bool IsLocked(std::size_t row, std::size_t column) const;
  CellType TypeOf(std::size_t row, std::size_t column) const;
  void PaintRow(std::size_t row, Colour back);

  CellHandler onRowClick;    // the row is the active one by then
  CellHandler onCellChange;  // after a typed or ticked cell holds its new text
  CellHandler onDblClick;
  // Ctrl+V on the selection: the clipboard's text, rows by line breaks and cells by tabs.
  std::function<void(const GridRange& selection, const std::string& block)> onPaste;
  std::vector<Menu*> popup;          // the menu of the right button
  std::string title;                 // what its rows are; "" where the screen's caption says it
  const Menu* exportMenu = nullptr;  // the one of the popup that writes what is shown into a file
  Handler onExport;                  // does it where there is no such menu
};

}  // namespace ktl
