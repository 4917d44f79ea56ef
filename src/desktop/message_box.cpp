#include "desktop/message_box.h"

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
  auto* label = window.findChild<QLabel*>("qt_msgbox_label");
  if (label) label->setMinimumWidth(std::clamp(label->sizeHint().width(), kNarrowestText, kWidestText));
}

}  // namespace

Answer ShowMessageBox(const MessageBox& box, QWidget* parent, Dispatcher& dispatcher) {
  const std::vector<Answer> answers = AnswersOf(box.buttons);
  QMessageBox window(parent);
  window.setWindowTitle(ToQt(box.title));
  window.setTextFormat(Qt::PlainText);
  window.setText(ToQt(ReplaceAll(box.text, "\r\n", "\n")));
  window.setIconPixmap(BoxPicture(box.icon));
  for (const Answer answer : answers) window.addButton(ButtonOf(answer));
  const QMessageBox::StandardButton preset = ButtonOf(DefaultAnswerOf(box));
  window.setDefaultButton(preset);
  window.setEscapeButton(ButtonOf(answers.back()));
  MarkPrimary(*window.button(preset));
  Widen(window);
  if (box.closesItselfMs > 0) QTimer::singleShot(box.closesItselfMs, &window, [&] { window.done(preset); });
  const int pressed = dispatcher.Exec(window);
  for (const Answer answer : answers) {
    if (pressed == ButtonOf(answer)) return answer;
  }
  return answers.back();
}

}  // namespace ktl
