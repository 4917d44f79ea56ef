#include "desktop/form_binder.h"

#include <QAbstractScrollArea>
#include <QWidget>
#include <algorithm>

namespace ktl {

FormBinder::FormBinder(Screen& screen, QWidget& form, Dispatcher& dispatcher) : dispatcher_(dispatcher) {
  for (Control* control : screen.Controls()) BindControl(*control, form);
  BindMenus(screen, form);
}

void FormBinder::BindControl(Control& control, QWidget& form) {
  if (control.kind() == ControlKind::Menu) return;
  if (control.kind() == ControlKind::Timer) {
    bindings_.push_back(BindTimer(static_cast<Timer&>(control), dispatcher_));
    return;
  }
  auto* widget = form.findChild<QWidget*>(ToQt(control.name()));
  auto binding = widget ? Bind(control, *widget) : nullptr;
  if (binding) {
    Add(&control, *widget, std::move(binding));
  } else {
    unbound_.push_back(control.name());
  }
}

std::unique_ptr<Binding> FormBinder::Bind(Control& control, QWidget& widget) {
  switch (control.kind()) {
    case ControlKind::TextBox:
      return BindTextBox(static_cast<TextBox&>(control), widget, dispatcher_);
    case ControlKind::ComboBox:
      return BindComboBox(static_cast<ComboBox&>(control), widget, dispatcher_);
    case ControlKind::ListBox:
      return BindListBox(static_cast<ListBox&>(control), widget, dispatcher_);
    case ControlKind::CheckBox:
      return BindCheckBox(static_cast<CheckBox&>(control), widget, dispatcher_);
    case ControlKind::OptionButton: {
      auto& option = static_cast<OptionButton&>(control);
      return BindOptionButton(option, widget, optionGroups_[option.group()], dispatcher_);
    }
    case ControlKind::Button:
      return BindButton(static_cast<Button&>(control), widget, dispatcher_);
    case ControlKind::Label:
      return BindLabel(static_cast<Label&>(control), widget, dispatcher_);
    case ControlKind::Frame:
      return BindFrame(static_cast<Frame&>(control), widget);
    case ControlKind::Grid:
      return BindGrid(static_cast<Grid&>(control), widget, dispatcher_);
    case ControlKind::Tabs:
      return BindTabs(static_cast<Tabs&>(control), widget, dispatcher_);
    case ControlKind::ProgressBar:
      return BindProgressBar(static_cast<ProgressBar&>(control), widget);
    case ControlKind::Menu:
    case ControlKind::Timer:
      break;
  }
  return nullptr;
}

void FormBinder::Add(Control* control, QWidget& widget, std::unique_ptr<Binding> binding) {
  const Bound bound{control, binding.get(), &widget};
  byWidget_[&widget] = bound;
  if (auto* area = qobject_cast<QAbstractScrollArea*>(&widget)) byWidget_[area->viewport()] = bound;
  bindings_.push_back(std::move(binding));
}

void FormBinder::BindMenus(Screen& screen, QWidget& form) {
  std::vector<const Control*> popped;
  for (const Control* control : screen.Controls()) {
    if (control->kind() != ControlKind::Grid) continue;
    const auto& popup = static_cast<const Grid*>(control)->popup;
    popped.insert(popped.end(), popup.begin(), popup.end());
  }
  std::vector<Menu*> menus;
  for (Control* control : screen.Controls()) {
    if (control->kind() != ControlKind::Menu) continue;
    menus.push_back(static_cast<Menu*>(control));
    if (std::find(popped.begin(), popped.end(), control) == popped.end()) looseMenus_.push_back(menus.back());
  }
  if (auto* button = form.findChild<QWidget*>(kMenuButtonName)) {
    if (auto binding = BindMenuButton(menus, *button, dispatcher_)) Add(nullptr, *button, std::move(binding));
  }
}

// What goes, goes before anything comes: the window would grow to hold both and stay that wide.
void FormBinder::Mirror() {
  for (const auto& [object, bound] : byWidget_) {
    if (bound.control && !IsToShow(*bound.control, *bound.widget)) bound.widget->hide();
  }
  for (const auto& binding : bindings_) binding->Mirror();
}

Control* FormBinder::ControlOf(const QObject* object) const {
  for (; object; object = object->parent()) {
    const auto found = byWidget_.find(object);
    if (found != byWidget_.end()) return found->second.control;
  }
  return nullptr;
}

Binding* FormBinder::BindingOf(const QObject* object) const {
  const auto found = byWidget_.find(object);
  return found == byWidget_.end() ? nullptr : found->second.binding;
}

QWidget* FormBinder::WidgetOf(const Control& control) const {
  for (const auto& [object, bound] : byWidget_) {
    if (bound.control == &control) return bound.widget;
  }
  return nullptr;
}

}  // namespace ktl
