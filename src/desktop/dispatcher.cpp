#include "desktop/dispatcher.h"

#include <QApplication>
#include <QDialog>
#include <QKeyEvent>
#include <QMessageBox>
#include <QTimer>
#include <algorithm>
#include <utility>

#include "runtime/errors.h"

namespace ktl {

Dispatcher::Dispatcher(Handler bringUpToDate) : bringUpToDate_(std::move(bringUpToDate)) {
  qApp->installEventFilter(this);
}

Dispatcher::~Dispatcher() = default;

void Dispatcher::Run(const Handler& handler) {
  if (failure_ || waits_) return;
  const Handler keep = handler;  // it may replace itself while it runs
  try {
    RunWaiting();
    if (keep) keep();
    RunWaiting();
    bringUpToDate_();
    if (!typed_.empty()) QTimer::singleShot(0, this, [this] { PassTyping(); });
  } catch (const RuntimeError& error) {
    Fail(std::make_exception_ptr(ProgramFailure(error.description())));
  } catch (...) {
    Fail(std::current_exception());
  }
}

// Nothing may be thrown through Qt's event loop: Exec throws it again.
void Dispatcher::Fail(std::exception_ptr failure) {
  failure_ = std::move(failure);
  if (!dialogs_.empty()) dialogs_.back()->done(QDialog::Rejected);
}

void Dispatcher::Later(const Screen& screen, Handler handler) {
  if (!handler) return;
  waiting_.push_back({&screen, dialogs_.size(), std::move(handler)});
  QTimer::singleShot(0, this, [this] { Settle(); });
}

bool Dispatcher::Settle() {
  if (waits_) return true;
  const bool due = std::any_of(waiting_.begin(), waiting_.end(),
                               [this](const Waiting& waiting) { return waiting.depth >= dialogs_.size(); });
  if (!due) return true;
  const int before = dialogsShown_;
  Run({});
  return dialogsShown_ == before;
}

void Dispatcher::Forget(const Screen& screen) {
  std::erase_if(waiting_, [&screen](const Waiting& waiting) { return waiting.screen == &screen; });
}

void Dispatcher::TypeAfterwards(const QKeyEvent& key) { typed_.emplace_back(key.clone()); }

// Not into a box that came up meanwhile: it was not there when the keys were pressed.
void Dispatcher::PassTyping() {
  if (waits_) return;
  const QWidget* top = QApplication::activeModalWidget();
  if (qobject_cast<const QMessageBox*>(top)) return;
  for (const auto& key : std::exchange(typed_, {})) {
    QWidget* field = QApplication::focusWidget();
    if (!field && top) field = top->focusWidget();
    if (field) QApplication::sendEvent(field, key.get());
  }
}

int Dispatcher::Exec(QDialog& dialog) {
  RethrowFailure();
  dialogs_.push_back(&dialog);
  ++dialogsShown_;
  const int result = dialog.exec();
  dialogs_.pop_back();
  RethrowFailure();
  return result;
}

void Dispatcher::RethrowFailure() {
  if (failure_) std::rethrow_exception(std::exchange(failure_, nullptr));
}

// A field is left before what the person does next takes effect; when that brought up a box, the person has
// not seen it coming and the input is dropped.
bool Dispatcher::eventFilter(QObject* target, QEvent* event) {
  switch (event->type()) {
    case QEvent::KeyPress:
      if (target->isWindowType()) PassTyping();  // what was typed first comes first
      [[fallthrough]];
    case QEvent::Shortcut:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::Close:
      return waits_ ? !IsForBox(*target) : !Settle();
    default:
      return QObject::eventFilter(target, event);
  }
}

// The window system sends to windows, not to widgets, and knows itself that the box is modal.
bool Dispatcher::IsForBox(const QObject& target) const {
  return !target.isWidgetType() || static_cast<const QWidget&>(target).window() == box_;
}

Handler Dispatcher::TakeWaiting() {
  const auto due = std::find_if(waiting_.begin(), waiting_.end(),
                                [this](const Waiting& waiting) { return waiting.depth >= dialogs_.size(); });
  if (due == waiting_.end()) return {};
  Handler handler = std::move(due->handler);
  waiting_.erase(due);
  return handler;
}

void Dispatcher::RunWaiting() {
  while (const Handler handler = TakeWaiting()) handler();
}

}  // namespace ktl
