#include "support/scripted_desk.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace ktl {

void ScriptedDesk::WillAnswer(std::vector<Answer> answers) {
  answers_.insert(answers_.end(), answers.begin(), answers.end());
}

void ScriptedDesk::WillWorkOn(ScreenScript script) { scripts_.push_back(std::move(script)); }

const ShownBox& ScriptedDesk::LastBox() const {
  if (boxes_.empty()) throw std::logic_error("No box was shown");
  return boxes_.back();
}

std::vector<ShownBox> ScriptedDesk::TakeBoxes() { return std::exchange(boxes_, {}); }

std::vector<std::string> ScriptedDesk::TakeTexts() {
  std::vector<std::string> texts;
  for (ShownBox& box : TakeBoxes()) texts.push_back(std::move(box.text));
  return texts;
}

std::string ScriptedDesk::TakeLines() {
  std::string lines;
  for (const ShownBox& box : TakeBoxes()) {
    if (!lines.empty()) lines += '\n';
    lines += fmt::format("{} | {} | {}", NameOf(box.icon), box.title, box.text);
  }
  return lines;
}

Answer ScriptedDesk::AnswerTo(const MessageBox& box) {
  const std::vector<Answer> offered = AnswersOf(box.buttons);
  if (offered.size() == 1 || box.closesItselfMs > 0 || answers_.empty()) return DefaultAnswerOf(box);
  const Answer answer = answers_.front();
  answers_.pop_front();
  if (std::find(offered.begin(), offered.end(), answer) != offered.end()) return answer;
  ADD_FAILURE() << "The box \"" << box.text << "\" does not offer " << NameOf(answer);
  return DefaultAnswerOf(box);
}

Answer ScriptedDesk::MsgBox(const MessageBox& box) {
  if (whileItStands) whileItStands(box);
  const Answer answer = AnswerTo(box);
  boxes_.push_back({box.text, box.title, box.icon, box.buttons, answer});
  return answer;
}

void ScriptedDesk::ShowModal(Screen& screen) {
  shownScreens_.push_back(screen.name());
  ScreenScript script;
  if (!scripts_.empty()) {
    script = std::move(scripts_.front());
    scripts_.pop_front();
  }
  RunAndGrantFocus(screen, [&] { screen.Load(); });
  if (script && !screen.IsUnloaded()) script(screen);
  screen.Unload();
  screen.ForceUnload();
}

}  // namespace ktl
