#include "desktop/message_box.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QStyle>
#include <QTimer>
#include <algorithm>

#include "desktop/binding.h"
#include "desktop/dispatcher.h"
#include "desktop/icons.h"
#include "runtime/text.h"

namespace ktl {
namespace {

constexpr int kNarrowestText = 220;
constexpr int kWidestText = 560;
constexpr const char* kTextLabel = "qt_msgbox_label";

QMessageBox::StandardButton ButtonOf(Answer answer) {
  switch (answer) {
    case Answer::OK:
      return QMessageBox::Ok;
    case Answer::Cancel:
      return QMessageBox::Cancel;
    case Answer::Yes:
      return QMessageBox::Yes;
    case Answer::No:
      return QMessageBox::No;
  }
  return QMessageBox::Ok;
}

void MarkPrimary(QAbstractButton& button) {
  button.setProperty("primary", true);
  button.style()->polish(&button);
}

// A short text in a narrow box is easily overlooked; a long line is not broken before it must be.
void Widen(QMessageBox& window) {
  auto* label = window.findChild<QLabel*>(kTextLabel);
  if (label) label->setMinimumWidth(std::clamp(label->sizeHint().width(), kNarrowestText, kWidestText));
}

// Ctrl+C copies what the box says. In a box that closes itself what is typed closes it and is meant for the
// field behind it.
class BoxKeys final : public QObject {
 public:
  BoxKeys(QMessageBox& box, bool passesTyping, Dispatcher& dispatcher)
      : box_(box), passesTyping_(passesTyping), dispatcher_(dispatcher) {
    for (QWidget* widget : box.findChildren<QWidget*>()) widget->installEventFilter(this);
    box.installEventFilter(this);
  }

  bool eventFilter(QObject* target, QEvent* event) override {
    if (event->type() != QEvent::KeyPress) return QObject::eventFilter(target, event);
    const auto& key = static_cast<const QKeyEvent&>(*event);
    if (key.matches(QKeySequence::Copy) && !HasMarkedText()) {
      QGuiApplication::clipboard()->setText(box_.text());
      return true;
    }
    if (!passesTyping_ || !IsTyping(key)) return QObject::eventFilter(target, event);
    dispatcher_.TypeAfterwards(key);
    box_.done(box_.standardButton(box_.defaultButton()));
    return true;
  }

 private:
  bool HasMarkedText() const {
    const auto* label = box_.findChild<QLabel*>(kTextLabel);
    return label && label->hasSelectedText();
  }
  static bool IsTyping(const QKeyEvent& key) {
    const QString text = key.text();
    return !text.isEmpty() && text.at(0).isPrint() && !text.at(0).isSpace() &&
           !(key.modifiers() & (Qt::ControlModifier | Qt::AltModifier));
  }

  QMessageBox& box_;
  const bool passesTyping_;
  Dispatcher& dispatcher_;
};

void AddButtons(QMessageBox& window, const MessageBox& box) {
  const std::vector<Answer> answers = AnswersOf(box.buttons);
  for (std::size_t i = 0; i < answers.size(); ++i) {
    QPushButton* button = window.addButton(ButtonOf(answers[i]));
    if (i < box.words.size()) button->setText(ToQt(box.words[i]));
  }
  window.setEscapeButton(ButtonOf(answers.back()));
  window.setDefaultButton(ButtonOf(DefaultAnswerOf(box)));
  MarkPrimary(*window.defaultButton());
}

}  // namespace

Answer ShowMessageBox(const MessageBox& box, QWidget* parent, Dispatcher& dispatcher) {
  QMessageBox window(parent);
  window.setWindowTitle(ToQt(box.title));
  window.setTextFormat(Qt::PlainText);
  window.setTextInteractionFlags(Qt::TextSelectableByMouse);
  window.setText(ToQt(ReplaceAll(box.text, "\r\n", "\n")));
  window.setIconPixmap(BoxPicture(box.icon));
  AddButtons(window, box);
  Widen(window);
  const BoxKeys keys(window, box.closesItselfMs > 0, dispatcher);
  if (box.closesItselfMs > 0) {
    QTimer::singleShot(box.closesItselfMs, &window,
                       [&window] { window.done(window.standardButton(window.defaultButton())); });
  }
  const int pressed = dispatcher.Exec(window);
  const std::vector<Answer> answers = AnswersOf(box.buttons);
  const auto answer = std::find_if(answers.begin(), answers.end(),
                                   [pressed](Answer given) { return pressed == ButtonOf(given); });
  return answer == answers.end() ? answers.back() : *answer;
}

}  // namespace ktl
