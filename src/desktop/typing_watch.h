#pragma once

#include <QWidget>

namespace ktl {

class FormBinder;

// Whether a person has filled in something on a form since it was opened, saved or shown another row.
class TypingWatch final : public QObject {
 public:
  TypingWatch(QWidget& form, const FormBinder& binder);

  bool HasTyped() const { return typed_; }
  void Forget() { typed_ = false; }

 private:
  void Watch(QWidget& widget);

  bool typed_ = false;
};

}  // namespace ktl
