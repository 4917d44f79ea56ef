#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "screen/controls.h"
#include "screen/grid.h"

namespace ktl {

// Whom and what a screen is about. Empty where it is about nobody in particular.
struct Subject {
  std::string employee;     // "Meera Kulkarni (K90908)"
  std::string instruction;  // "Consumer Loan 2"
  std::string amounts;      // "10,000.00, due 6,660.00"
};

// A screen without a window. Its constructor connects the handlers; a desk loads it, mirrors it until it is
// unloaded and passes on what a person does.
class Screen {
 public:
  explicit Screen(std::string name) : name_(std::move(name)) {}
  virtual ~Screen() = default;
  Screen(const Screen&) = delete;
  Screen& operator=(const Screen&) = delete;

  const std::string& name() const { return name_; }
  std::string caption;
  const Control* under = nullptr;  // of another screen: this one is a picker and opens below it
  virtual ktl::Subject Subject() const { return {}; }

  virtual void Form_Load() {}
  virtual void Form_Activate() {}                   // once, right after the load
  virtual bool Form_QueryUnload() { return true; }  // false keeps the screen open
  virtual void Form_Unload() {}

  // Asks Form_QueryUnload, then runs Form_Unload once. Any handler may call it; the desk takes the screen
  // away when the handler is over.
  void Unload();
  // Without asking: for a desk that has nobody left to answer.
  void ForceUnload();
  bool IsUnloaded() const { return unloaded_; }

  // Form_Load and then Form_Activate, unless the load has unloaded the screen. The desk calls it at opening;
  // a screen that was unloaded can be loaded again.
  void Load();

  Control* Find(std::string_view name) const;  // null when there is none; letter case counts
  const std::vector<Control*>& Controls() const { return controls_; }

  // Asks for the focus; the desk moves it (and shows the tab page) when the handler is over or a box opens.
  void SetFocus(Control& control, bool selectText = true);
  Control* Focus() const { return focus_; }
  // The desk's word that the focus went somewhere by the person's doing.
  void NoteFocus(Control* control) {
    focus_ = control;
    focusAsked_ = false;
  }
  bool TakeFocusRequest();  // true once after a SetFocus
  bool SelectsText() const { return selectText_; }

 private:
  friend class Control;
  void Register(Control& control);

  std::string name_;
  std::vector<Control*> controls_;
  std::map<std::string, Control*, std::less<>> byName_;
  Control* focus_ = nullptr;
  bool focusAsked_ = false;
  bool selectText_ = true;
  bool loaded_ = false;
  bool unloaded_ = false;
  bool unloading_ = false;
};

}  // namespace ktl
