#include "screen/screen.h"

#include <stdexcept>
#include <utility>

namespace ktl {

void Screen::Load() {
  if (std::exchange(loaded_, true)) return;
  unloaded_ = false;
  Form_Load();
  if (!unloaded_) Form_Activate();
}

void Screen::Unload() {
  if (unloaded_ || unloading_) return;
  unloading_ = true;
  bool closes = false;
  try {
    closes = Form_QueryUnload();
  } catch (...) {
    unloading_ = false;
    throw;
  }
  unloading_ = false;
  if (closes) ForceUnload();
}

void Screen::ForceUnload() {
  if (std::exchange(unloaded_, true)) return;
  loaded_ = false;
  Form_Unload();
}

Control* Screen::Find(std::string_view name) const {
  const auto found = byName_.find(name);
  return found == byName_.end() ? nullptr : found->second;
}

void Screen::SetFocus(Control& control, bool selectText) {
  focus_ = &control;
  focusAsked_ = true;
  selectText_ = selectText;
}

bool Screen::TakeFocusRequest() { return std::exchange(focusAsked_, false); }

void Screen::Register(Control& control) {
  if (!byName_.emplace(control.name(), &control).second) {
    throw std::logic_error("Screen " + name_ + " has two controls " + control.name());
  }
  controls_.push_back(&control);
}

}  // namespace ktl
