#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ktl {

class Screen;

// 0xBBGGRR; bit 31 marks one of the system's colours.
using Colour = std::uint32_t;
inline constexpr Colour kNoColour = 0x7FFFFFFF;  // as the look has it
inline constexpr Colour kWhite = 0xFFFFFF;
inline constexpr Colour kWindowColour = 0x80000005;
inline constexpr Colour kButtonFaceColour = 0x8000000F;
inline constexpr Colour kToolTipColour = 0x80000018;

using Handler = std::function<void()>;
using CellHandler = std::function<void(std::size_t row, std::size_t column)>;

enum class ControlKind {
  TextBox,
  ComboBox,
  ListBox,
  CheckBox,
  OptionButton,
  Button,
  Label,
  Frame,
  Grid,
  Tabs,
  Menu,
  Timer,
  ProgressBar,
};

// A control registers itself with its screen under its name. It holds what the control holds and nothing of a
// window. An event is raised by calling its handler, when there is one.
class Control {
 public:
  Control(Screen& screen, ControlKind kind, std::string name);
  virtual ~Control() = default;
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;

  ControlKind kind() const { return kind_; }
  const std::string& name() const { return name_; }
  Screen& screen() const { return screen_; }

  bool enabled = true;
  bool visible = true;
  Colour backColour = kNoColour;
  Colour foreColour = kNoColour;
  std::string tag;
  std::string toolTip;
  std::string whyDisabled;  // the tool tip while it is disabled
  // The frame (or tab page) that holds it: a control in a hidden or disabled frame is hidden or disabled with
  // it.
  Control* container = nullptr;

  // With the containers counted.
  bool IsShown() const;
  bool IsUsable() const;
  // Becomes the container of each.
  void Hold(std::initializer_list<std::reference_wrapper<Control>> controls);

 private:
  Screen& screen_;
  ControlKind kind_;
  std::string name_;
};

class TextBox final : public Control {
 public:
  TextBox(Screen& screen, std::string name) : Control(screen, ControlKind::TextBox, std::move(name)) {}

  const std::string& Text() const { return text_; }
  // Raises onChange when the text differs, whoever sets it.
  void SetText(std::string text);
  // Empties the field and types: each character passes onKeyPress, which sees the text typed so far, and
  // those beyond maxLength are dropped. onChange is raised once, at the end.
  void TypeOver(std::string_view typed);

  bool locked = false;
  bool multiLine = false;
  bool rightAligned = false;
  std::size_t maxLength = 0;                     // characters; 0 for no limit
  std::function<int(int character)> onKeyPress;  // the character, another in its place, or 0 to drop it
  Handler onChange;
  Handler onLeave;
  Handler onDblClick;  // F2 does the same

 private:
  std::string text_;
};

struct ListRow {
  std::string text;
  std::string value;  // the bound value; often an id
  bool operator==(const ListRow&) const = default;
};

// An editable text with a list under it. While the text equals a row's text (letter case ignored) the control
// is bound to that row.
class ComboBox final : public Control {
 public:
  ComboBox(Screen& screen, std::string name) : Control(screen, ControlKind::ComboBox, std::move(name)) {}

  const std::vector<ListRow>& Rows() const { return rows_; }
  // Keeps the text; raises nothing.
  void SetRows(std::vector<ListRow> rows);
  // Another number for every list of rows that was set: who copies them need not compare them.
  std::size_t RowsVersion() const { return rowsVersion_; }

  const std::string& Text() const { return text_; }
  void SetText(std::string text);  // raises onChange when the text differs
  // The value of the row that the text matches, "" for none. Of rows with the same text the one that was
  // chosen counts, else the first. An empty text matches nothing; a row without a text is bound only while it
  // is the one that was chosen.
  std::string BoundText() const;
  // Shows the row with that value, nothing when there is none; raises onChange when the text or the row
  // differs. Called while this control's own change is under way it leaves a text that no row shows yet: a
  // control that follows another must not take away what is being typed.
  void SetBoundText(std::string_view value);
  // What a choice in the open list does.
  void ChooseRow(std::size_t row);
  bool MatchesList() const { return FindRow(text_) != kNoRow; }
  static constexpr std::size_t kNoRow = static_cast<std::size_t>(-1);
  std::size_t FindRow(std::string_view text) const;

  bool locked = false;
  bool editable = true;
  // Another list of the same values, as names and reference numbers of employees are: its text stands beside
  // the row's own in the open list and is searched as well.
  const ComboBox* beside = nullptr;
  Handler onChange;
  Handler onLeave;
  Handler onDblClick;  // F2 does the same

 private:
  std::vector<ListRow> rows_;
  std::size_t rowsVersion_ = 0;
  std::string text_;
  std::optional<std::string> chosenValue_;
  bool changing_ = false;

  void RaiseChange();
};

struct TickRow {
  std::string text;
  std::string value;
  bool ticked = false;
  bool operator==(const TickRow&) const = default;
};

class ListBox final : public Control {
 public:
  ListBox(Screen& screen, std::string name) : Control(screen, ControlKind::ListBox, std::move(name)) {}

  std::vector<TickRow> rows;
  bool withTicks = false;
  std::size_t activeRow = ComboBox::kNoRow;
  Handler onClick;
  std::function<void(std::size_t row)> onTick;
};

class CheckBox final : public Control {
 public:
  CheckBox(Screen& screen, std::string name, std::string text = {})
      : Control(screen, ControlKind::CheckBox, std::move(name)), caption(std::move(text)) {}

  bool Value() const { return value_; }
  void SetValue(bool value);  // raises onClick when it differs, whoever sets it

  std::string caption;
  Handler onClick;

 private:
  bool value_ = false;
};

// Of the option buttons of one group at most one is set.
class OptionButton final : public Control {
 public:
  OptionButton(Screen& screen, std::string name, std::string group, std::string text = {})
      : Control(screen, ControlKind::OptionButton, std::move(name)),
        caption(std::move(text)),
        group_(std::move(group)) {}

  bool Value() const { return value_; }
  // True clears the others of the group without an event and raises onClick when it was not set.
  void SetValue(bool value);
  const std::string& group() const { return group_; }

  std::string caption;
  Handler onClick;

 private:
  std::string group_;
  bool value_ = false;
};

class Button final : public Control {
 public:
  Button(Screen& screen, std::string name, std::string text = {})
      : Control(screen, ControlKind::Button, std::move(name)), caption(std::move(text)) {}

  std::string caption;  // "&" before the shortcut letter
  Handler onClick;
};

class Label final : public Control {
 public:
  Label(Screen& screen, std::string name, std::string text = {})
      : Control(screen, ControlKind::Label, std::move(name)), caption(std::move(text)) {}

  std::string caption;
  Handler onClick;  // a label with a handler is a link
};

class Frame final : public Control {
 public:
  Frame(Screen& screen, std::string name, std::string text = {})
      : Control(screen, ControlKind::Frame, std::move(name)), caption(std::move(text)) {}

  std::string caption;
};

class Tabs final : public Control {
 public:
  struct Page {
    std::string caption;
    bool visible = true;
    bool enabled = true;
  };

  Tabs(Screen& screen, std::string name) : Control(screen, ControlKind::Tabs, std::move(name)) {}

  std::size_t Current() const { return current_; }
  void SetCurrent(std::size_t page);  // raises onChange when it differs

  std::vector<Page> pages;
  Handler onChange;

 private:
  std::size_t current_ = 0;
};

class Menu final : public Control {
 public:
  Menu(Screen& screen, std::string name, std::string text)
      : Control(screen, ControlKind::Menu, std::move(name)), caption(std::move(text)) {}

  std::string caption;
  Handler onClick;
};

class Timer final : public Control {
 public:
  Timer(Screen& screen, std::string name) : Control(screen, ControlKind::Timer, std::move(name)) {
    enabled = false;
  }

  // Runs, and its time begins anew.
  void Restart() {
    enabled = true;
    ++starts_;
  }
  int Starts() const { return starts_; }

  int intervalMs = 0;
  Handler onTimer;

 private:
  int starts_ = 0;
};

class ProgressBar final : public Control {
 public:
  ProgressBar(Screen& screen, std::string name)
      : Control(screen, ControlKind::ProgressBar, std::move(name)) {}

  int minimum = 0;
  int maximum = 100;
  int value = 0;
};

}  // namespace ktl
