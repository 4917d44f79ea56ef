#include "desktop/grid_copy.h"

#include <QStringList>
#include <QTableView>
#include <algorithm>

#include "desktop/binding.h"
#include "desktop/grid_model.h"

namespace ktl {

QString CellText(const GridModel& model, const QModelIndex& index) {
  if (model.TypeOf(index) == CellType::Tick) {
    return index.data(Qt::CheckStateRole).toInt() == Qt::Checked ? QStringLiteral("Yes")
                                                                 : QStringLiteral("No");
  }
  return index.data(Qt::EditRole).toString().simplified();
}

QString CopiedText(const QTableView& view, const GridModel& model, CopyRange range) {
  std::vector<int> columns;
  QStringList headings;
  for (int column = 0; column < model.columnCount(); ++column) {
    if (model.Column(column).hidden) continue;
    columns.push_back(column);
    headings << ToQt(model.Column(column).caption);
  }
  QString text = headings.join('\t') + '\n';
  for (int row = 0; row < model.rowCount(); ++row) {
    const bool wanted = range == CopyRange::AllRows || view.selectionModel()->rowIntersectsSelection(row);
    if (!wanted || model.Row(row).hidden) continue;
    QStringList cells;
    for (const int column : columns) cells << CellText(model, model.index(row, column));
    text += cells.join('\t') + '\n';
  }
  return text;
}

namespace {

QString CopiedBlock(const GridModel& model, const GridRange& range) {
  QStringList lines;
  for (std::size_t row = range.firstRow; row <= range.lastRow; ++row) {
    QStringList cells;
    for (std::size_t column = range.firstColumn; column <= range.lastColumn; ++column) {
      if (model.Column(int(column)).hidden) continue;
      cells << CellText(model, model.index(int(row), int(column)));
    }
    if (!model.Row(int(row)).hidden) lines << cells.join('\t');
  }
  return lines.join('\n');
}

}  // namespace

GridRange SelectedRange(const QTableView& view) {
  QModelIndexList marked = view.selectionModel()->selectedIndexes();
  if (marked.isEmpty()) marked << view.currentIndex();
  const auto at = [](int place) { return static_cast<std::size_t>(place); };
  GridRange range{at(marked[0].row()), at(marked[0].column()), at(marked[0].row()), at(marked[0].column())};
  for (const QModelIndex& cell : marked) {
    range.firstRow = std::min(range.firstRow, at(cell.row()));
    range.lastRow = std::max(range.lastRow, at(cell.row()));
    range.firstColumn = std::min(range.firstColumn, at(cell.column()));
    range.lastColumn = std::max(range.lastColumn, at(cell.column()));
  }
  return range;
}

QString CopiedSelection(const QTableView& view, const GridModel& model) {
  const bool marked = view.selectionModel()->hasSelection();
  if (view.selectionBehavior() == QAbstractItemView::SelectItems && marked) {
    return CopiedBlock(model, SelectedRange(view));
  }
  const bool oneRow = view.selectionModel()->selectedRows().size() == 1;
  if (model.HasEditedColumn() && oneRow) return CellText(model, view.currentIndex());
  return CopiedText(view, model, marked ? CopyRange::SelectedRows : CopyRange::AllRows);
}

}  // namespace ktl
