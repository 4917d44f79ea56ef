#include "screen/desk.h"

#include <algorithm>

namespace ktl {

std::vector<Answer> AnswersOf(Buttons buttons) {
  switch (buttons) {
    case Buttons::OK:
      return {Answer::OK};
    case Buttons::OKCancel:
      return {Answer::OK, Answer::Cancel};
    case Buttons::YesNo:
      return {Answer::Yes, Answer::No};
    case Buttons::YesNoCancel:
      return {Answer::Yes, Answer::No, Answer::Cancel};
  }
  return {};
}

Answer DefaultAnswerOf(const MessageBox& box) {
  const auto answers = AnswersOf(box.buttons);
  const auto found = std::find(answers.begin(), answers.end(), box.defaultAnswer);
  return found == answers.end() ? answers.front() : *found;
}

std::string_view NameOf(Answer answer) {
  switch (answer) {
    case Answer::OK:
      return "OK";
    case Answer::Cancel:
      return "Cancel";
    case Answer::Yes:
      return "Yes";
    case Answer::No:
      return "No";
  }
  return {};
}

std::string_view NameOf(Icon icon) {
  switch (icon) {
    case Icon::None:
      return "None";
    case Icon::Information:
      return "Information";
    case Icon::Question:
      return "Question";
    case Icon::Exclamation:
      return "Exclamation";
    case Icon::Critical:
      return "Critical";
  }
  return {};
}

void Desk::Inform(std::string text, std::string title) {
  MsgBox({.text = std::move(text), .icon = Icon::Information, .title = std::move(title)});
}

void Desk::Warn(std::string text, std::string title) {
  MsgBox({.text = std::move(text), .icon = Icon::Exclamation, .title = std::move(title)});
}

void Desk::ShowError(std::string text, std::string title) {
  MsgBox({.text = std::move(text), .icon = Icon::Critical, .title = std::move(title)});
}

bool Desk::Confirm(std::string text, std::string title, Answer preset, Icon icon) {
  const MessageBox box{std::move(text), Buttons::YesNo, icon, preset, std::move(title)};
  return MsgBox(box) == Answer::Yes;
}

}  // namespace ktl
