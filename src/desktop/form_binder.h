#pragma once

#include <QButtonGroup>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "desktop/binding.h"

class QObject;
class QWidget;

namespace ktl {

// The name of the push button, if the form has one, that opens the menus of the screen.
inline constexpr const char* kMenuButtonName = "moreActions";

// A property that the forms give to a field that is no part of what is entered.
inline constexpr const char* kEnterPasses = "enterPasses";

// Binds each control of a screen to the widget of its name.
class FormBinder {
 public:
  FormBinder(Screen& screen, QWidget& form, Dispatcher& dispatcher);

  void Mirror();
  // The control whose widget it is, or lies in; null for none.
  Control* ControlOf(const QObject* object) const;
  Binding* BindingOf(const QObject* object) const;
  QWidget* WidgetOf(const Control& control) const;
  // Menus that no grid pops up.
  const std::vector<Menu*>& LooseMenus() const { return looseMenus_; }
  // Controls that found no widget or one of another type.
  const std::vector<std::string>& Unbound() const { return unbound_; }

 private:
  struct Bound {
    Control* control;
    Binding* binding;
    QWidget* widget;
  };

  std::unique_ptr<Binding> Bind(Control& control, QWidget& widget);
  void Add(Control* control, QWidget& widget, std::unique_ptr<Binding> binding);
  void BindControl(Control& control, QWidget& form);
  void BindMenus(Screen& screen, QWidget& form);

  Dispatcher& dispatcher_;
  std::map<std::string, QButtonGroup> optionGroups_;
  std::vector<std::unique_ptr<Binding>> bindings_;
  std::map<const QObject*, Bound> byWidget_;
  std::vector<Menu*> looseMenus_;
  std::vector<std::string> unbound_;
};

}  // namespace ktl
