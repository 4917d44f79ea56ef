#pragma once

#include <QListView>
#include <QStyledItemDelegate>
#include <functional>
#include <memory>
#include <vector>

class QComboBox;

namespace ktl {

class ListRows;

// Paints a row of a list with the text that stands beside it at the right end.
class BesideDelegate final : public QStyledItemDelegate {
 public:
  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

// The rows of a list that hold what was typed, laid over the window under the field. The keys stay with the
// field, which passes on those that move about here.
class Suggestions final : public QListView {
 public:
  Suggestions(QComboBox& combo, const ListRows& rows);
  ~Suggestions() override;

  std::function<void(int row)> chosen;  // of the list, by the mouse

  void Offer(std::vector<int> rows);  // none hides
  int MarkedRow() const;              // of the list; -1 for none
  bool PassKey(int key);              // false for a key that means nothing here

 protected:
  bool eventFilter(QObject* target, QEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  class Offered;

  void PlaceUnderField();

  QComboBox& combo_;
  std::unique_ptr<Offered> offered_;
  BesideDelegate delegate_;
};

}  // namespace ktl
