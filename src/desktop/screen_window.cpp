#include "desktop/screen_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QContextMenuEvent>
#include <QDesktopServices>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QTabWidget>
#include <QTableView>
#include <QUrl>
#include <algorithm>

#include "desktop/cut_text.h"
#include "desktop/dispatcher.h"
#include "desktop/fitting_form.h"
#include "desktop/form_help.h"
#include "desktop/message_box.h"
#include "desktop/picker_window.h"
#include "desktop/window_memory.h"

namespace ktl {
namespace {

// Properties that the forms give to their widgets.
constexpr const char* kPrimary = "primary";  // a button that its part of the form is filled in for

// What the widget is filled in for: the primary button of the nearest part of the form that has one.
QPushButton* PrimaryButtonOf(const QWidget& widget) {
  for (const QWidget* part = widget.parentWidget(); part; part = part->parentWidget()) {
    for (auto* button : part->findChildren<QPushButton*>(Qt::FindDirectChildrenOnly)) {
      if (button->property(kPrimary).toBool()) return button;
    }
  }
  return nullptr;
}

bool TakesTab(const QWidget& widget) {
  return widget.isVisible() && widget.isEnabled() && (widget.focusPolicy() & Qt::TabFocus);
}

}  // namespace

ScreenWindow::ScreenWindow(Screen& screen, std::unique_ptr<QWidget> form, Dispatcher& dispatcher,
                           QWidget* parent)
    : QDialog(parent), screen_(screen), dispatcher_(dispatcher), form_(std::move(form)), letters_(*form_) {
  const bool picks = screen.under != nullptr;
  // The first one stands in the task bar and can be put away; those over it stay with it.
  setWindowFlags(picks ? Qt::Dialog | Qt::FramelessWindowHint
                       : (parent ? Qt::Dialog : Qt::Window) | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                             Qt::WindowCloseButtonHint | Qt::WindowMinMaxButtonsHint);
  SetUpBand();
  const QSize size = form_->size();
  if (!picks) MakeFit(*form_);
  layout_.setContentsMargins(0, 0, 0, 0);
  layout_.setSpacing(0);
  layout_.addWidget(&band_);
  layout_.addWidget(form_.get(), 1);
  layout_.addWidget(&status_);
  status_.setHidden(picks);
  resize(size + QSize(0, picks ? 0 : status_.sizeHint().height()));
  if (!picks) RestorePlace(*this, ToQt(screen.name()));
  FitOnDesk();
  binder_ = std::make_unique<FormBinder>(screen, *form_, dispatcher);
  for (QWidget* widget : form_->findChildren<QWidget*>()) widget->installEventFilter(this);
  AddShortcuts(*this, *form_);
  typing_ = std::make_unique<TypingWatch>(*form_, *binder_);
  SetUpStatus();
}

ScreenWindow::~ScreenWindow() {
  // The widgets go while the bindings that they signal to are still there.
  const Dispatcher::Mirroring mirroring(dispatcher_);
  if (!screen_.under) KeepPlace(*this, ToQt(screen_.name()));
  form_.reset();
  dispatcher_.Forget(screen_);
}

void ScreenWindow::SetUpBand() {
  band_.setObjectName("titleBand");
  title_.setObjectName("titleText");
  title_.setTextFormat(Qt::PlainText);
  bandLayout_.setContentsMargins(14, 6, 14, 7);
  bandLayout_.setSpacing(1);
  bandLayout_.addWidget(&title_);
  subject_.setObjectName("subjectText");
  subject_.setTextFormat(Qt::PlainText);
  if (parentWidget()) bandLayout_.addWidget(&subject_);
}

void ScreenWindow::SetUpStatus() {
  for (QTableView* view : form_->findChildren<QTableView*>()) {
    connect(view->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this] { ShowSelection(); });
    connect(view->selectionModel(), &QItemSelectionModel::currentChanged, this, [this] { ShowSelection(); });
  }
  connect(new QShortcut(Qt::Key_F1, this), &QShortcut::activated, this, [this] { OpenHelp(); });
}

// Of the grid that is worked in, else of the one that is seen.
void ScreenWindow::ShowSelection() {
  QString words;
  for (const Control* control : screen_.Controls()) {
    if (control->kind() != ControlKind::Grid) continue;
    const QWidget* widget = binder_->WidgetOf(*control);
    if (!widget || !widget->isVisibleTo(this)) continue;
    const bool workedIn = widget->isAncestorOf(QApplication::focusWidget()) || widget->hasFocus();
    if (words.isEmpty() || workedIn) words = binder_->BindingOf(widget)->SelectionWords();
    if (workedIn) break;
  }
  status_.ShowSelection(words);
}

void ScreenWindow::OpenHelp() const {
  if (!helpFile_.empty()) QDesktopServices::openUrl(QUrl::fromLocalFile(ToQt(helpFile_)));
}

void ScreenWindow::FitOnDesk() {
  if (QGuiApplication::platformName() == "offscreen") return;  // its desk has no size that means anything
  if (const QScreen* desk = QWidget::screen()) resize(size().boundedTo(desk->availableSize()));
}

void ScreenWindow::Mirror(const DeskFacts& facts) {
  const QString caption = ToQt(screen_.caption);
  if (windowTitle() != caption) setWindowTitle(caption);
  if (title_.text() != caption) title_.setText(caption);
  if (parentWidget()) {
    const QString subject = SubjectLine(screen_.Subject());
    if (subject_.text() != subject) subject_.setText(subject);
    subject_.setVisible(!subject.isEmpty());
  }
  binder_->Mirror();
  helpFile_ = facts.place.helpFile;
  status_.Show(facts, screen_);
  ShowSelection();
  if (letters_.Share()) NameControls(*form_);
}

void ScreenWindow::GrantFocus() {
  if (!screen_.TakeFocusRequest() || !screen_.Focus()) return;
  QWidget* widget = binder_->WidgetOf(*screen_.Focus());
  if (!widget) return;
  for (QWidget* holder = widget->parentWidget(); holder && holder != this; holder = holder->parentWidget()) {
    auto* tabs = qobject_cast<QTabWidget*>(holder);
    for (int i = 0; tabs && i < tabs->count(); ++i) {
      if (tabs->widget(i)->isAncestorOf(widget)) tabs->setCurrentIndex(i);
    }
  }
  widget->setFocus(Qt::OtherFocusReason);
  if (screen_.SelectsText()) binder_->BindingOf(widget)->SelectText();
}

void ScreenWindow::FocusMoved(const QWidget* from, const QWidget* to) {
  ShowSelection();
  const Control* left = binder_->ControlOf(from);
  Control* entered = binder_->ControlOf(to);
  if (entered) screen_.NoteFocus(entered);
  if (entered) BringIntoSight(*binder_->WidgetOf(*entered));
  if (!left || left == entered) return;
  const Binding* binding = binder_->BindingOf(binder_->WidgetOf(*left));
  // Not from inside the change of focus: a box there would leave the focus nowhere.
  if (Handler leave = binding->LeaveHandler()) dispatcher_.Later(screen_, std::move(leave));
}

void ScreenWindow::Close() {
  dispatcher_.Run([this] { screen_.Unload(); });
}

// Escape is pressed in passing: on the first window, which ends the program, it never drops what was typed.
void ScreenWindow::reject() {
  if (parentWidget() || !typing_->HasTyped()) return Close();
  dispatcher_.Run([this] {
    const int before = dispatcher_.DialogsShown();
    if (!screen_.Form_QueryUnload()) return;
    const bool asked = dispatcher_.DialogsShown() != before;
    if (asked || MayDropTyping()) screen_.ForceUnload();
  });
}

bool ScreenWindow::MayDropTyping() {
  return ShowMessageBox({.text = "What was typed is not saved. Close all the same?",
                         .buttons = Buttons::YesNo,
                         .icon = Icon::Question,
                         .defaultAnswer = Answer::No,
                         .title = screen_.caption,
                         .words = {"&Yes, drop it", "&No, go back"}},
                        this, dispatcher_) == Answer::Yes;
}

void ScreenWindow::closeEvent(QCloseEvent* event) {
  event->ignore();
  Close();
}

void ScreenWindow::contextMenuEvent(QContextMenuEvent* event) {
  QMenu menu(this);
  FillMenu(menu, binder_->LooseMenus(), dispatcher_);
  if (!menu.isEmpty()) menu.exec(event->globalPos());
}

bool ScreenWindow::eventFilter(QObject* target, QEvent* event) {
  if (ShowCutText(*target, *event)) return true;
  Binding* binding = binder_->BindingOf(target);
  if (!binding) return QDialog::eventFilter(target, event);
  if (binding->Filter(*event)) return true;
  if (event->type() != QEvent::KeyPress || !target->isWidgetType()) return false;
  return MoveOn(static_cast<QWidget&>(*target), *binding, static_cast<QKeyEvent*>(event)->key());
}

bool ScreenWindow::MoveOn(QWidget& from, const Binding& binding, int key) {
  if (screen_.under && MoveByArrow(from, key)) return true;
  const bool on = (key == Qt::Key_Return || key == Qt::Key_Enter) && binding.EnterMovesOn();
  const bool back = key == Qt::Key_Backspace && binding.IsAtStart();
  if (!on && !back) return false;
  if (QWidget* to = NextField(from, on)) to->setFocus(on ? Qt::TabFocusReason : Qt::BacktabFocusReason);
  return true;
}

// The next field, or the one before, that is filled in with this one; behind the last one the button that
// they are filled in for. Null for nowhere to go.
QWidget* ScreenWindow::NextField(const QWidget& from, bool on) const {
  QPushButton* const primary = PrimaryButtonOf(from);
  const auto step = [on](const QWidget* w) { return on ? w->nextInFocusChain() : w->previousInFocusChain(); };
  for (QWidget* next = step(&from); next != this && next != &from; next = step(next)) {
    const Binding* binding = binder_->BindingOf(next);
    if (!binding || !binding->IsField() || !TakesTab(*next) || next->property(kEnterPasses).toBool())
      continue;
    if (PrimaryButtonOf(*next) == primary) return next;
  }
  return on && primary && TakesTab(*primary) ? primary : nullptr;
}

}  // namespace ktl
