#pragma once

#include <QString>
#include <vector>

class QWidget;

namespace ktl {

// The letters that Alt reaches the parts of a form by. A caption's own wish ("&Save") comes first; of two
// that wish the same the command that every screen has keeps it, and the other one gets the next letter of
// its words that is free. Tabs, groups of options, boxes to tick and fields get one where one is left.
class Letters {
 public:
  explicit Letters(QWidget& form) : form_(form) {}

  // After each mirroring. True when captions or what is shown have changed since the last one.
  bool Share();

 private:
  QWidget& form_;
  QString shared_;  // for what
};

// Whether the caption differs from the one that the widget was given last. The text that it shows may hold
// another letter.
bool TakesCaption(QWidget& widget, const QString& caption, int part = 0);

}  // namespace ktl
