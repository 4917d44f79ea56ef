#include "desktop/typing_watch.h"

#include <QAbstractButton>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTableView>

#include "desktop/form_binder.h"

namespace ktl {

TypingWatch::TypingWatch(QWidget& form, const FormBinder& binder) {
  for (QWidget* widget : form.findChildren<QWidget*>()) {
    const Binding* binding = binder.BindingOf(widget);
    if (binding && !widget->property(kEnterPasses).toBool()) Watch(*widget);
  }
}

// A choice in a list is looked up again at once; what was typed is lost.
void TypingWatch::Watch(QWidget& widget) {
  const auto note = [this] { typed_ = true; };
  if (auto* edit = qobject_cast<QLineEdit*>(&widget)) connect(edit, &QLineEdit::textEdited, this, note);
  if (auto* page = qobject_cast<QPlainTextEdit*>(&widget)) {
    connect(page, &QPlainTextEdit::textChanged, this, [this, page] { typed_ = typed_ || page->hasFocus(); });
  }
  auto* button = qobject_cast<QAbstractButton*>(&widget);
  if (button && button->isCheckable()) connect(button, &QAbstractButton::clicked, this, note);
  if (auto* view = qobject_cast<QTableView*>(&widget)) {
    connect(view, &QTableView::clicked, this, [this, view] {
      if (view->selectionMode() == QAbstractItemView::SingleSelection) Forget();
    });
  }
}

}  // namespace ktl
