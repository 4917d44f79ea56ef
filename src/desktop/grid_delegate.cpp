#include "desktop/grid_delegate.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>
#include <utility>

namespace ktl {
namespace {

QColor Mixed(const QColor& colour, const QColor& selection) {
  const auto mix = [](int a, int b) { return (a * 3 + b) / 4; };
  return QColor(mix(colour.red(), selection.red()), mix(colour.green(), selection.green()),
                mix(colour.blue(), selection.blue()));
}

QRect TickRect(const QRect& cell, const QStyle& style) {
  QRect box(0, 0, style.pixelMetric(QStyle::PM_IndicatorWidth),
            style.pixelMetric(QStyle::PM_IndicatorHeight));
  box.moveCenter(cell.center());
  return box;
}

void PaintTick(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index,
               QStyle& style) {
  QStyleOptionButton tick;
  tick.rect = TickRect(option.rect, style);
  tick.palette = option.palette;
  tick.state = index.data(Qt::CheckStateRole).toInt() == Qt::Checked ? QStyle::State_On : QStyle::State_Off;
  if (index.flags() & Qt::ItemIsUserCheckable) {
    tick.state |= QStyle::State_Enabled;
  } else {
    tick.palette.setCurrentColorGroup(QPalette::Disabled);
  }
  style.drawPrimitive(QStyle::PE_IndicatorCheckBox, &tick, painter, nullptr);
}

bool Toggles(const QEvent& event, const QRect& cell) {
  if (event.type() == QEvent::MouseButtonRelease) {
    const auto& mouse = static_cast<const QMouseEvent&>(event);
    return mouse.button() == Qt::LeftButton && mouse.modifiers() == Qt::NoModifier &&
           cell.contains(mouse.position().toPoint());
  }
  return event.type() == QEvent::KeyPress && static_cast<const QKeyEvent&>(event).key() == Qt::Key_Space;
}

void PaintFrame(QPainter* painter, const QStyleOptionViewItem& option) {
  painter->save();
  painter->setPen(QPen(option.palette.color(QPalette::Highlight), 2));
  painter->drawRect(option.rect.adjusted(1, 1, -1, -1));
  painter->restore();
}

bool IsEnter(const QEvent& event) {
  if (event.type() != QEvent::KeyPress) return false;
  const int key = static_cast<const QKeyEvent&>(event).key();
  return key == Qt::Key_Return || key == Qt::Key_Enter;
}

}  // namespace

GridDelegate::GridDelegate() {
  connect(this, &QAbstractItemDelegate::closeEditor, this, [this] {
    if (std::exchange(enterPressed_, false)) entered();
  });
}

// The editor is committed and closed a little later, as the delegate's base does it.
bool GridDelegate::eventFilter(QObject* editor, QEvent* event) {
  if (event->type() == QEvent::KeyPress) enterPressed_ = IsEnter(*event);
  return QStyledItemDelegate::eventFilter(editor, event);
}

void GridDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                         const QModelIndex& index) const {
  QStyleOptionViewItem cell(option);
  initStyleOption(&cell, index);
  cell.state &= ~QStyle::State_HasFocus;
  QStyle& style = cell.widget ? *cell.widget->style() : *QApplication::style();
  if (cell.state & QStyle::State_Selected) {
    const QVariant back = index.data(Qt::BackgroundRole);
    const QColor row = back.isValid() ? back.value<QColor>() : QColor(Qt::white);
    cell.palette.setColor(QPalette::Highlight, Mixed(row, cell.palette.color(QPalette::Highlight)));
    cell.palette.setColor(QPalette::HighlightedText, cell.palette.color(QPalette::Text));
  }
  const bool isTick = cell.features & QStyleOptionViewItem::HasCheckIndicator;
  cell.features &= ~QStyleOptionViewItem::HasCheckIndicator;
  style.drawControl(QStyle::CE_ItemViewItem, &cell, painter, cell.widget);
  if (isTick) PaintTick(painter, option, index, style);
  if (framesCurrentCell && (option.state & QStyle::State_HasFocus)) PaintFrame(painter, option);
}

QWidget* GridDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                                    const QModelIndex& index) const {
  QWidget* editor = QStyledItemDelegate::createEditor(parent, option, index);
  if (auto* line = qobject_cast<QLineEdit*>(editor)) {
    line->setAlignment(Qt::Alignment(index.data(Qt::TextAlignmentRole).toInt()));
  }
  return editor;
}

bool GridDelegate::helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                             const QModelIndex& index) {
  if (event->type() != QEvent::ToolTip) return false;
  QStringList words;
  if (sizeHint(option, index).width() > option.rect.width()) words << index.data().toString();
  words << index.data(Qt::ToolTipRole).toString();
  words.removeAll(QString());
  QToolTip::showText(event->globalPos(), words.join('\n'), view);
  return true;
}

bool GridDelegate::editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                               const QModelIndex& index) {
  if (!(index.flags() & Qt::ItemIsUserCheckable)) {
    return QStyledItemDelegate::editorEvent(event, model, option, index);
  }
  if (!Toggles(*event, option.rect)) return false;
  const bool ticked = index.data(Qt::CheckStateRole).toInt() == Qt::Checked;
  return model->setData(index, int(ticked ? Qt::Unchecked : Qt::Checked), Qt::CheckStateRole);
}

}  // namespace ktl
