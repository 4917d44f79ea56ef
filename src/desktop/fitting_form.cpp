#include "desktop/fitting_form.h"

#include <QBoxLayout>
#include <QComboBox>
#include <QScrollArea>
#include <QTableView>

#include "desktop/wrapping_row.h"

namespace ktl {
namespace {

constexpr int kLeastListHeight = 100;  // its heading and two rows
constexpr int kSightMargin = 24;

bool IsPartOfAnother(const QWidget& view) {
  for (const QWidget* holder = view.parentWidget(); holder; holder = holder->parentWidget()) {
    if (qobject_cast<const QComboBox*>(holder) || qobject_cast<const QAbstractItemView*>(holder)) return true;
  }
  return false;
}

std::vector<QAbstractItemView*> ListsIn(const QWidget& part) {
  std::vector<QAbstractItemView*> lists;
  for (auto* list : part.findChildren<QAbstractItemView*>()) {
    if (!IsPartOfAnother(*list)) lists.push_back(list);
  }
  return lists;
}

// As a widget, so that it can be given a width.
QWidget* RowOf(QLayoutItem* item) {
  if (QWidget* widget = item->widget()) {
    delete item;
    return widget;
  }
  auto* row = new QWidget;  // its layout owns it
  item->layout()->setContentsMargins(0, 0, 0, 0);
  row->setLayout(item->layout());
  return row;
}

void AddRow(QBoxLayout& body, QLayoutItem* item, int stretch, int widest) {
  if (item->spacerItem()) return body.addItem(item);
  QWidget* row = RowOf(item);
  if (qobject_cast<QAbstractItemView*>(row) || !ListsIn(*row).empty()) return body.addWidget(row, stretch);
  row->setMaximumWidth(widest);
  auto* place = new QHBoxLayout;
  place->addWidget(row, 1000);
  place->addStretch(1);
  body.addLayout(place, stretch);
}

QBoxLayout* CommandsOf(const QBoxLayout& rows) {
  if (rows.count() == 0) return nullptr;
  auto* last = qobject_cast<QBoxLayout*>(rows.itemAt(rows.count() - 1)->layout());
  return last && last->objectName() == QLatin1String(kCommandRow) ? last : nullptr;
}

void LetWrap(QBoxLayout& rows, QBoxLayout& commands) {
  auto* wrapping = new WrappingRow;
  wrapping->setSpacing(commands.spacing());
  while (QLayoutItem* item = commands.takeAt(0)) wrapping->addItem(item);
  delete rows.takeAt(rows.count() - 1);
  rows.addLayout(wrapping);
}

}  // namespace

void MakeFit(QWidget& form) {
  auto* rows = qobject_cast<QBoxLayout*>(form.layout());
  if (!rows) return;
  const QMargins margins = rows->contentsMargins();
  const int widest = form.width() - margins.left() - margins.right();
  for (QAbstractItemView* list : ListsIn(form)) {
    if (list->minimumHeight() == 0) list->setMinimumHeight(kLeastListHeight);
  }
  QBoxLayout* commands = CommandsOf(*rows);
  auto* area = new QScrollArea(&form);
  auto* body = new QWidget(area);
  auto* bodyRows = new QVBoxLayout(body);
  bodyRows->setContentsMargins(0, 0, 0, 0);
  bodyRows->setSpacing(rows->spacing());
  for (int left = rows->count() - (commands ? 1 : 0); left > 0; --left) {
    const int stretch = rows->stretch(0);
    AddRow(*bodyRows, rows->takeAt(0), stretch, widest);
  }
  area->setObjectName(QStringLiteral("formBody"));
  area->setWidget(body);
  area->setWidgetResizable(true);
  area->setFrameShape(QFrame::NoFrame);
  area->setFocusPolicy(Qt::NoFocus);
  rows->insertWidget(0, area, 1);
  if (commands) LetWrap(*rows, *commands);
}

void BringIntoSight(QWidget& widget) {
  for (QWidget* holder = widget.parentWidget(); holder; holder = holder->parentWidget()) {
    if (auto* area = qobject_cast<QScrollArea*>(holder)) {
      area->ensureWidgetVisible(&widget, kSightMargin, kSightMargin);
    }
  }
}

}  // namespace ktl
