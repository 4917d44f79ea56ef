#include "desktop/grid_copy.h"

#include <QStringList>
#include <QTableView>

#include "desktop/binding.h"
#include "desktop/grid_model.h"

namespace ktl {
namespace {

QString CellText(const GridModel& model, const QModelIndex& index) {
  if (model.TypeOf(index) == CellType::Tick) {
    return index.data(Qt::CheckStateRole).toInt() == Qt::Checked ? QStringLiteral("Yes")
                                                                 : QStringLiteral("No");
  }
  return index.data(Qt::EditRole).toString().simplified();
}

}  // namespace

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
    const bool wanted = range == CopyRange::AllRows || view.selectionModel()->isRowSelected(row, {});
    if (!wanted || model.Row(row).hidden) continue;
    QStringList cells;
    for (const int column : columns) cells << CellText(model, model.index(row, column));
    text += cells.join('\t') + '\n';
  }
  return text;
}

}  // namespace ktl
