#pragma once

#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "screen/desk.h"
#include "screen/person.h"
#include "screen/screen.h"

namespace ktl {

struct ShownBox {
  std::string text;
  std::string title;
  Icon icon = Icon::Information;
  Buttons buttons = Buttons::OK;
  Answer answer = Answer::OK;
};

// A person with a plan: answers are queued, boxes recorded, and each modal screen is worked on by a function.
// The acts on a screen are those of screen/person.h.
class ScriptedDesk : public Desk {
 public:
  using ScreenScript = std::function<void(Screen&)>;

  // For the next boxes that offer a choice, in order. With none queued a box takes its default answer; a box
  // with one button and one that closes by itself take none. An answer that the box does not offer fails the
  // test.
  void WillAnswer(std::vector<Answer> answers);
  std::size_t AnswersLeft() const { return answers_.size(); }

  // Works on the next modal screen, which is unloaded afterwards if it still stands. Without a script a
  // screen is loaded and unloaded.
  void WillWorkOn(ScreenScript script);
  // The same for a screen of that class.
  template <typename ScreenType>
  void WillWorkOn(std::function<void(ScreenType&)> script) {
    WillWorkOn(ScreenScript([script](Screen& screen) { script(dynamic_cast<ScreenType&>(screen)); }));
  }

  std::function<void(const MessageBox&)> whileItStands;  // sees every box

  const std::vector<ShownBox>& Boxes() const { return boxes_; }
  const ShownBox& LastBox() const;       // throws when there is none
  std::vector<ShownBox> TakeBoxes();     // and forgets them
  std::vector<std::string> TakeTexts();  // of the boxes; forgets them
  std::string TakeLines();               // "ICON | TITLE | TEXT" of the boxes, a line each; forgets them
  // Names, in order of opening.
  const std::vector<std::string>& ShownScreens() const { return shownScreens_; }

  std::function<bool(bool mayGiveUp)> keepsWaiting;  // none: goes on
  Workplace place;
  std::vector<std::string> statusTexts;

  void NotePlace(const Workplace& noted) override { place = noted; }
  void NoteStatus(const std::string& text) override { statusTexts.push_back(text); }
  bool KeepWaiting(std::chrono::milliseconds, bool mayGiveUp) override {
    return !keepsWaiting || keepsWaiting(mayGiveUp);
  }
  Answer MsgBox(const MessageBox& box) override;
  void ShowModal(Screen& screen) override;

 private:
  Answer AnswerTo(const MessageBox& box);

  std::deque<Answer> answers_;
  std::deque<ScreenScript> scripts_;
  std::vector<ShownBox> boxes_;
  std::vector<std::string> shownScreens_;
};

}  // namespace ktl
