#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>

#include "desktop/amount_text.h"
#include "desktop/binding.h"
#include "desktop/dispatcher.h"

namespace ktl {
namespace {

// What a one-line and a many-line field have in common.
class TextBoxBinding : public Binding {
 public:
  TextBoxBinding(TextBox& control, QWidget& widget, Dispatcher& dispatcher)
      : control_(control), widget_(widget), dispatcher_(dispatcher) {}

  bool Filter(QEvent& event) override {
    if (event.type() == QEvent::KeyPress) {
      auto& key = static_cast<QKeyEvent&>(event);
      return key.key() == Qt::Key_F2 ? RaiseDblClick() : FilterCharacter(key);
    }
    return event.type() == QEvent::MouseButtonDblClick && RaiseDblClick();
  }
  Handler LeaveHandler() const override { return control_.onLeave; }
  bool IsField() const override { return !control_.locked; }

 protected:
  virtual void Insert(QChar character) = 0;

  void Typed(const QString& text) {
    if (dispatcher_.IsMirroring()) return;
    dispatcher_.Run([this, typed = text.toStdString()] { control_.SetText(typed); });
  }
  void MirrorCommon() {
    MirrorState(control_, widget_);
    colours_.Mirror(control_, widget_);
  }

  TextBox& control_;
  QWidget& widget_;
  Dispatcher& dispatcher_;

 private:
  bool RaiseDblClick() {
    if (!control_.onDblClick || !control_.IsUsable()) return false;
    dispatcher_.Run(control_.onDblClick);
    return true;
  }

  // Only what can be seen goes through the control's filter: Tab, Backspace and shortcuts have texts as well.
  bool FilterCharacter(const QKeyEvent& key) {
    if (!control_.onKeyPress || control_.locked || key.text().size() != 1) return false;
    if (key.modifiers() & (Qt::ControlModifier | Qt::AltModifier)) return false;
    const int typed = key.text().at(0).unicode();
    if (typed < 32 || typed == 127) return false;
    int kept = typed;
    dispatcher_.Run([this, typed, &kept] { kept = control_.onKeyPress(typed); });
    if (kept == typed) return false;
    if (kept != 0) Insert(QChar(kept));
    return true;
  }

  ColourMirror colours_;
};

class LineBinding final : public TextBoxBinding {
 public:
  LineBinding(TextBox& control, QLineEdit& edit, Dispatcher& dispatcher)
      : TextBoxBinding(control, edit, dispatcher), edit_(edit) {
    QObject::connect(&edit, &QLineEdit::textChanged, &edit, [this](const QString& text) { Typed(text); });
  }

  void Mirror() override {
    MirrorCommon();
    const int limit = control_.maxLength ? int(control_.maxLength) : 32767;
    if (edit_.maxLength() != limit) edit_.setMaxLength(limit);
    MirrorText();
    if (edit_.isReadOnly() != control_.locked) edit_.setReadOnly(control_.locked);
    const auto alignment = (control_.rightAligned ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter;
    if (edit_.alignment() != alignment) edit_.setAlignment(alignment);
  }
  bool Filter(QEvent& event) override {
    if (event.type() == QEvent::FocusIn || event.type() == QEvent::FocusOut) {
      ShowAs(event.type() == QEvent::FocusIn, static_cast<QFocusEvent&>(event).reason());
      return false;
    }
    if (IsGrouped() && event.type() == QEvent::KeyPress &&
        static_cast<QKeyEvent&>(event).matches(QKeySequence::Copy)) {
      if (edit_.hasSelectedText()) QGuiApplication::clipboard()->setText(edit_.selectedText().remove(','));
      return true;
    }
    return TextBoxBinding::Filter(event);
  }
  bool IsAtStart() const override { return edit_.cursorPosition() == 0 && !edit_.hasSelectedText(); }
  void SelectText() override { edit_.selectAll(); }

 private:
  void Insert(QChar character) override { edit_.insert(character); }

  // An amount that is read, not typed into.
  bool IsGrouped() const { return control_.rightAligned && (control_.locked || !typing_); }

  // Plain while it is typed into. A menu or a box over it does not end that.
  void ShowAs(bool typing, Qt::FocusReason reason) {
    if (!typing && (reason == Qt::PopupFocusReason || reason == Qt::ActiveWindowFocusReason)) return;
    typing_ = typing;
    const Dispatcher::Mirroring mirroring(dispatcher_);
    MirrorText();
  }

  // A handler that writes a long text shows its beginning; one that tidies while a person types leaves the
  // cursor.
  void MirrorText() {
    const QString text = IsGrouped() ? ReadableAmount(control_.Text()) : ToQt(control_.Text());
    if (edit_.text() == text) return;
    const int cursor = edit_.cursorPosition();
    edit_.setText(text);
    edit_.setCursorPosition(edit_.hasFocus() ? std::min(cursor, int(text.size())) : 0);
  }

  QLineEdit& edit_;
  bool typing_ = false;
};

class PageBinding final : public TextBoxBinding {
 public:
  PageBinding(TextBox& control, QPlainTextEdit& edit, Dispatcher& dispatcher)
      : TextBoxBinding(control, edit, dispatcher), edit_(edit) {
    edit.setTabChangesFocus(true);
    QObject::connect(&edit, &QPlainTextEdit::textChanged, &edit, [this] { Typed(edit_.toPlainText()); });
  }

  void Mirror() override {
    MirrorCommon();
    const QString text = ToQt(control_.Text()).replace("\r\n", "\n");
    if (edit_.toPlainText() != text) edit_.setPlainText(text);
    if (edit_.isReadOnly() != control_.locked) edit_.setReadOnly(control_.locked);
  }
  bool EnterMovesOn() const override { return false; }
  void SelectText() override { edit_.selectAll(); }

 private:
  void Insert(QChar character) override { edit_.insertPlainText(character); }

  QPlainTextEdit& edit_;
};

}  // namespace

std::unique_ptr<Binding> BindTextBox(TextBox& control, QWidget& widget, Dispatcher& dispatcher) {
  if (auto* line = qobject_cast<QLineEdit*>(&widget)) {
    return std::make_unique<LineBinding>(control, *line, dispatcher);
  }
  if (auto* page = qobject_cast<QPlainTextEdit*>(&widget)) {
    return std::make_unique<PageBinding>(control, *page, dispatcher);
  }
  return nullptr;
}

}  // namespace ktl
