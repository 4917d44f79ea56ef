#pragma once

#include <QLabel>

class QAbstractItemView;

namespace ktl {

// What an empty list says in the middle of its place: the form's own words (the property "whenEmpty" of the
// view), or that there is nothing to show.
class EmptyWords final : public QLabel {
 public:
  explicit EmptyWords(QAbstractItemView& view);

  void Show(bool empty);

 private:
  QAbstractItemView& view_;
};

}  // namespace ktl
