#pragma once

#include <QStyledItemDelegate>

namespace ktl {

// Paints ticks in the middle of their cell and keeps the meaning of a coloured row under the selection. A
// click anywhere in a tick cell and the space bar toggle it.
class GridDelegate final : public QStyledItemDelegate {
 public:
  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                        const QModelIndex& index) const override;
  bool editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override;
};

}  // namespace ktl
