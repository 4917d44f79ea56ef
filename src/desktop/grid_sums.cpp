#include "desktop/grid_sums.h"

#include <QTableView>
#include <cmath>
#include <cstdint>
#include <optional>
#include <set>

#include "desktop/amount_text.h"
#include "desktop/binding.h"
#include "desktop/grid_model.h"
#include "runtime/numbers.h"

namespace ktl {
namespace {

// In hundredths, so that a long column adds up to what its rows show.
class Sum {
 public:
  void Add(const GridModel& model, const QModelIndex& cell) {
    if (model.TypeOf(cell) != CellType::Number || model.Row(cell.row()).hidden) return;
    const auto amount = ParseNumber(cell.data(Qt::EditRole).toString().toStdString());
    if (amount) hundredths_ += std::llround(*amount * 100);
  }
  QString Words() const {
    return ReadableAmount(QString::number(double(hundredths_) / 100, 'f', 2).toStdString());
  }

 private:
  std::int64_t hundredths_ = 0;
};

// -1 for none.
int ClickedAmountColumn(const QTableView& view, const GridModel& model, const Grid& grid) {
  const auto isAmount = [&](int column) {
    return column >= 0 && !model.Column(column).hidden && model.Column(column).type == CellType::Number;
  };
  if (const int clicked = view.currentIndex().column(); isAmount(clicked)) return clicked;
  for (auto summed = grid.summed.rbegin(); summed != grid.summed.rend(); ++summed) {
    if (int(*summed) < model.columnCount() && isAmount(int(*summed))) return int(*summed);
  }
  return -1;
}

QString SumOfMarked(const QTableView& view, const GridModel& model, const Grid& grid,
                    const QModelIndexList& marked) {
  Sum sum;
  if (view.selectionBehavior() == QAbstractItemView::SelectItems) {
    for (const QModelIndex& cell : marked) {
      if (!model.Column(cell.column()).hidden) sum.Add(model, cell);
    }
    return QStringLiteral("sum ") + sum.Words();
  }
  const int column = ClickedAmountColumn(view, model, grid);
  if (column < 0) return {};
  for (const QModelIndex& cell : marked) {
    if (cell.column() == column) sum.Add(model, cell);
  }
  return ToQt(model.Column(column).caption) + ' ' + sum.Words();
}

}  // namespace

QString SumOfColumn(const GridModel& model, int column) {
  Sum sum;
  for (int row = 0; row < model.rowCount(); ++row) sum.Add(model, model.index(row, column));
  return sum.Words();
}

QString SelectionWords(const QTableView& view, const GridModel& model, const Grid& grid) {
  int shown = 0;
  for (int row = 0; row < model.rowCount(); ++row) shown += model.Row(row).hidden ? 0 : 1;
  if (shown == 0) return {};
  const QModelIndexList marked = view.selectionModel()->selectedIndexes();
  std::set<int> rows;
  for (const QModelIndex& cell : marked) {
    if (!model.Row(cell.row()).hidden) rows.insert(cell.row());
  }
  const QString count = shown == 1 ? QStringLiteral("1 row") : QStringLiteral("%1 rows").arg(shown);
  if (rows.empty()) return count;
  const QString words = QStringLiteral("%1 of %2 selected").arg(rows.size()).arg(count);
  const bool several =
      rows.size() > 1 || (marked.size() > 1 && view.selectionBehavior() == QAbstractItemView::SelectItems);
  const QString sum = several ? SumOfMarked(view, model, grid, marked) : QString();
  return sum.isEmpty() ? words : words + QStringLiteral(", ") + sum;
}

}  // namespace ktl
