#pragma once

#include <QStyledItemDelegate>
#include <functional>

namespace ktl {

// Paints ticks in the middle of their cell and keeps the meaning of a coloured row under the selection. A
// click anywhere in a tick cell and the space bar toggle it.
class GridDelegate final : public QStyledItemDelegate {
 public:
  bool framesCurrentCell = false;  // where cells are edited it must be seen which one
  std::function<void()> entered;   // Enter ended an edit; its text is committed by then

  GridDelegate();
  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                        const QModelIndex& index) const override;
  // The whole text of a cell that has no room for it, and what its colour stands for.
  bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                 const QModelIndex& index) override;
  bool editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override;

 protected:
  bool eventFilter(QObject* editor, QEvent* event) override;

 private:
  bool enterPressed_ = false;
};

}  // namespace ktl
