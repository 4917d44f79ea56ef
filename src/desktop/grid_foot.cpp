#include "desktop/grid_foot.h"

#include <QHeaderView>
#include <QHelpEvent>
#include <QLayout>
#include <QPainter>
#include <QScrollBar>
#include <QTableView>
#include <QToolTip>
#include <QVBoxLayout>
#include <algorithm>

#include "desktop/grid_model.h"
#include "desktop/grid_sums.h"

namespace ktl {
namespace {

constexpr int kMargin = 4;  // of the text in a cell

}  // namespace

void GridFoot::Under(QTableView& view, const GridModel& model, const Grid& grid) {
  QWidget* const parent = view.parentWidget();
  QLayout* const layout = parent ? parent->layout() : nullptr;
  if (!layout) return;
  auto* holder = new QWidget(parent);  // the form owns it
  holder->setSizePolicy(view.sizePolicy());
  delete layout->replaceWidget(&view, holder);
  auto* column = new QVBoxLayout(holder);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(&view, 1);
  column->addWidget(new GridFoot(view, model, grid, holder));
}

GridFoot::GridFoot(QTableView& view, const GridModel& model, const Grid& grid, QWidget* holder)
    : QWidget(holder), view_(view), model_(model), grid_(grid) {
  setObjectName("gridFoot");
  QFont bold = font();
  bold.setBold(true);
  setFont(bold);
  setFixedHeight(fontMetrics().height() + 9);
  view.installEventFilter(this);
  const auto repaint = [this] { update(); };
  connect(view.horizontalHeader(), &QHeaderView::sectionResized, this, repaint);
  connect(view.horizontalScrollBar(), &QScrollBar::valueChanged, this, repaint);
  connect(&model, &QAbstractItemModel::dataChanged, this, repaint);
  connect(&model, &QAbstractItemModel::rowsInserted, this, repaint);
  connect(&model, &QAbstractItemModel::rowsRemoved, this, repaint);
  connect(&model, &QAbstractItemModel::modelReset, this, repaint);
}

bool GridFoot::IsSummed(int column) const {
  return std::find(grid_.summed.begin(), grid_.summed.end(), std::size_t(column)) != grid_.summed.end();
}

// The first shown column that has room for a word.
int GridFoot::WordColumn() const {
  const int needed = fontMetrics().horizontalAdvance(QStringLiteral("Total")) + 2 * kMargin;
  for (int column = 0; column < model_.columnCount(); ++column) {
    if (view_.isColumnHidden(column) || IsSummed(column)) continue;
    if (model_.Column(column).type != CellType::Tick && view_.columnWidth(column) >= needed) return column;
  }
  return -1;
}

QString GridFoot::TextOf(int column) const {
  if (model_.rowCount() == 0) return {};
  if (IsSummed(column)) return SumOfColumn(model_, column);
  return column == WordColumn() ? QStringLiteral("Total") : QString();
}

void GridFoot::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), QColor("#eef2f7"));
  painter.setPen(QColor("#c3ccd8"));
  painter.drawRect(rect().adjusted(0, -1, -1, -1));
  painter.setPen(QColor("#24456b"));
  const int left = view_.viewport()->x();
  painter.setClipRect(left, 0, view_.viewport()->width(), height());
  for (int column = 0; column < model_.columnCount(); ++column) {
    if (view_.isColumnHidden(column)) continue;
    const QString text = TextOf(column);
    if (text.isEmpty()) continue;
    const QRect cell(left + view_.columnViewportPosition(column) + kMargin, 0,
                     view_.columnWidth(column) - 2 * kMargin, height());
    const auto side = IsSummed(column) ? Qt::AlignRight : Qt::AlignLeft;
    painter.drawText(cell, int(side | Qt::AlignVCenter),
                     fontMetrics().elidedText(text, Qt::ElideLeft, cell.width()));
  }
}

bool GridFoot::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QWidget::event(event);
  const auto& help = static_cast<QHelpEvent&>(*event);
  const int column = view_.columnAt(help.pos().x() - view_.viewport()->x());
  QToolTip::showText(help.globalPos(), column < 0 ? QString() : TextOf(column), this);
  return true;
}

bool GridFoot::eventFilter(QObject*, QEvent* event) {
  if (event->type() == QEvent::HideToParent || event->type() == QEvent::ShowToParent)
    parentWidget()->setVisible(event->type() == QEvent::ShowToParent);
  return false;
}

}  // namespace ktl
