#include "screen/controls.h"

#include <algorithm>
#include <utility>

#include "runtime/text.h"
#include "screen/screen.h"

namespace ktl {

namespace {

// By value: a handler may put another one in its own place while it runs.
void Raise(Handler handler) {
  if (handler) handler();
}

// A flag that is set for as long as this stands.
class Set {
 public:
  explicit Set(bool& flag) : flag_(flag), before_(std::exchange(flag, true)) {}
  ~Set() { flag_ = before_; }
  Set(const Set&) = delete;
  Set& operator=(const Set&) = delete;

 private:
  bool& flag_;
  bool before_;
};

}  // namespace

Control::Control(Screen& screen, ControlKind kind, std::string name)
    : screen_(screen), kind_(kind), name_(std::move(name)) {
  screen_.Register(*this);
}

bool Control::IsShown() const { return visible && (!container || container->IsShown()); }

bool Control::IsUsable() const { return enabled && visible && (!container || container->IsUsable()); }

void Control::Hold(std::initializer_list<std::reference_wrapper<Control>> controls) {
  for (Control& control : controls) control.container = this;
}

void TextBox::SetText(std::string text) {
  if (text == text_) return;
  text_ = std::move(text);
  Raise(onChange);
}

void TextBox::TypeOver(std::string_view typed) {
  const std::string before = std::exchange(text_, {});
  const auto filter = onKeyPress;
  while (!typed.empty()) {
    const std::string_view from = typed;
    const int code = static_cast<int>(TakeCharacter(typed));
    const int kept = filter ? filter(code) : code;
    if (kept == 0 || (maxLength != 0 && Length(text_) >= maxLength)) continue;
    if (kept == code) {
      text_ += from.substr(0, from.size() - typed.size());  // as it was typed, a stray byte too
    } else {
      AppendCharacter(text_, static_cast<char32_t>(kept));
    }
  }
  if (text_ != before) Raise(onChange);
}

void ComboBox::SetRows(std::vector<ListRow> rows) {
  rows_ = std::move(rows);
  ++rowsVersion_;
}

void ComboBox::SetText(std::string text) {
  if (text == text_) return;
  text_ = std::move(text);
  chosenValue_.reset();
  RaiseChange();
}

void ComboBox::RaiseChange() {
  const Set changing(changing_);
  Raise(onChange);
}

std::string ComboBox::BoundText() const {
  if (chosenValue_) {
    const auto isChosen = [this](const ListRow& row) {
      return row.value == *chosenValue_ && EqualsNoCase(row.text, text_);
    };
    if (std::any_of(rows_.begin(), rows_.end(), isChosen)) return *chosenValue_;
  }
  const std::size_t first = FindRow(text_);
  return first == kNoRow ? std::string() : rows_[first].value;
}

void ComboBox::SetBoundText(std::string_view value) {
  const auto row =
      std::find_if(rows_.begin(), rows_.end(), [&](const ListRow& r) { return r.value == value; });
  if (row == rows_.end()) {
    chosenValue_.reset();
    if (!changing_ || MatchesList()) SetText({});
    return;
  }
  ChooseRow(static_cast<std::size_t>(row - rows_.begin()));
}

void ComboBox::ChooseRow(std::size_t row) {
  const ListRow& chosen = rows_.at(row);
  const bool differs = chosen.text != text_ || chosen.value != BoundText();
  text_ = chosen.text;
  chosenValue_ = chosen.value;
  if (differs) RaiseChange();
}

std::size_t ComboBox::FindRow(std::string_view text) const {
  if (text.empty()) return kNoRow;
  const auto row =
      std::find_if(rows_.begin(), rows_.end(), [&](const ListRow& r) { return EqualsNoCase(r.text, text); });
  return row == rows_.end() ? kNoRow : static_cast<std::size_t>(row - rows_.begin());
}

void CheckBox::SetValue(bool value) {
  if (value == value_) return;
  value_ = value;
  Raise(onClick);
}

void OptionButton::SetValue(bool value) {
  if (value == value_) return;
  value_ = value;
  if (!value) return;
  for (Control* control : screen().Controls()) {
    if (control == this || control->kind() != ControlKind::OptionButton) continue;
    auto& other = static_cast<OptionButton&>(*control);
    if (other.group_ == group_) other.value_ = false;
  }
  Raise(onClick);
}

void Tabs::SetCurrent(std::size_t page) {
  if (page == current_) return;
  current_ = page;
  Raise(onChange);
}

}  // namespace ktl
