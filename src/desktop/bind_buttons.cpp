#include <QButtonGroup>
#include <QCheckBox>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QShortcutEvent>
#include <QStyle>

#include "desktop/binding.h"
#include "desktop/dispatcher.h"
#include "desktop/icons.h"
#include "desktop/letters.h"

namespace ktl {
namespace {

void MirrorCaption(const std::string& caption, QAbstractButton& button) {
  const QString text = ToQt(caption);
  if (TakesCaption(button, text)) button.setText(text);
}

class CheckBoxBinding final : public Binding {
 public:
  CheckBoxBinding(CheckBox& control, QCheckBox& box, Dispatcher& dispatcher) : control_(control), box_(box) {
    QObject::connect(&box, &QCheckBox::toggled, &box, [this, &dispatcher](bool on) {
      if (!dispatcher.IsMirroring()) dispatcher.Run([this, on] { control_.SetValue(on); });
    });
  }

  void Mirror() override {
    MirrorState(control_, box_);
    colours_.Mirror(control_, box_);
    MirrorCaption(control_.caption, box_);
    if (box_.isChecked() != control_.Value()) box_.setChecked(control_.Value());
  }
  bool IsField() const override { return true; }

 private:
  CheckBox& control_;
  QCheckBox& box_;
  ColourMirror colours_;
};

// Tab and Enter come to a group at its chosen button, or at the first one while none is chosen; the arrow
// keys choose within it.
bool IsEntranceOfGroup(const OptionButton& button) {
  const OptionButton* entrance = nullptr;
  for (const Control* control : button.screen().Controls()) {
    if (control->kind() != ControlKind::OptionButton || !control->IsUsable()) continue;
    const auto* option = static_cast<const OptionButton*>(control);
    if (option->group() != button.group()) continue;
    if (!entrance || option->Value()) entrance = option;
  }
  return entrance == &button;
}

class OptionButtonBinding final : public Binding {
 public:
  OptionButtonBinding(OptionButton& control, QRadioButton& radio, QButtonGroup& group, Dispatcher& dispatcher)
      : control_(control), radio_(radio), group_(group) {
    group.addButton(&radio);
    QObject::connect(&radio, &QRadioButton::toggled, &radio, [this, &dispatcher](bool on) {
      if (on && !dispatcher.IsMirroring()) dispatcher.Run([this] { control_.SetValue(true); });
    });
  }

  void Mirror() override {
    MirrorState(control_, radio_);
    colours_.Mirror(control_, radio_);
    MirrorCaption(control_.caption, radio_);
    if (radio_.isChecked() != control_.Value()) {
      group_.setExclusive(false);  // else the chosen one of a group cannot be cleared
      radio_.setChecked(control_.Value());
      group_.setExclusive(true);
    }
    radio_.setFocusPolicy(IsEntranceOfGroup(control_) ? Qt::StrongFocus : Qt::ClickFocus);
  }
  bool IsField() const override { return true; }

 private:
  OptionButton& control_;
  QRadioButton& radio_;
  QButtonGroup& group_;
  ColourMirror colours_;
};

void Decorate(QPushButton& button) {
  button.setAutoDefault(false);  // Enter belongs to the fields
  const bool primary = button.property("primary").toBool();
  button.setIcon(
      LineIcon(button.property("lineIcon").toString(), primary ? QColor(Qt::white) : QColor("#2f6fb3")));
}

// A shortcut letter would animate the button for a tenth of a second before it clicks.
bool Presses(QEvent& event) {
  if (event.type() == QEvent::Shortcut) return !static_cast<QShortcutEvent&>(event).isAmbiguous();
  if (event.type() != QEvent::KeyPress) return false;
  const int key = static_cast<QKeyEvent&>(event).key();
  return key == Qt::Key_Return || key == Qt::Key_Enter;
}

// A push button that is clicked by a shortcut letter or Enter as well.
class PushBinding : public Binding {
 public:
  bool Filter(QEvent& event) final {
    if (!Presses(event)) return false;
    button_.click();
    return true;
  }

 protected:
  PushBinding(QPushButton& button, std::function<void()> clicked) : button_(button) {
    Decorate(button);
    QObject::connect(&button, &QPushButton::clicked, &button, std::move(clicked));
  }

  QPushButton& button_;
};

class ButtonBinding final : public PushBinding {
 public:
  ButtonBinding(Button& control, QPushButton& button, Dispatcher& dispatcher)
      : PushBinding(button,
                    [&control, &button, &dispatcher] {
                      // Alt and a letter leave the focus in the field.
                      button.setFocus(Qt::ShortcutFocusReason);
                      if (!dispatcher.Settle() || !control.IsUsable()) return;
                      dispatcher.Run(control.onClick);
                    }),
        control_(control) {}

  void Mirror() override {
    MirrorState(control_, button_);
    MirrorCaption(control_.caption, button_);
  }

 private:
  Button& control_;
};

class MenuButtonBinding final : public Binding {
 public:
  MenuButtonBinding(std::vector<Menu*> menus, QPushButton& button, Dispatcher& dispatcher)
      : menus_(std::move(menus)), button_(button) {
    Decorate(button);
    button.setMenu(&popup_);
    QObject::connect(&popup_, &QMenu::aboutToShow, &popup_, [this, &dispatcher] {
      popup_.clear();
      FillMenu(popup_, menus_, dispatcher);
    });
  }

  void Mirror() override {
    bool any = false;
    for (const Menu* menu : menus_) any = any || menu->IsShown();
    if (button_.isHidden() == any) button_.setVisible(any);
  }

 private:
  std::vector<Menu*> menus_;
  QPushButton& button_;
  QMenu popup_;
};

class LabelBinding final : public Binding {
 public:
  LabelBinding(Label& control, QLabel& label, Dispatcher& dispatcher)
      : control_(control), label_(label), dispatcher_(dispatcher) {
    label.setTextFormat(Qt::PlainText);
    if (!control.onClick) return;
    label.setProperty("link", true);
    label.style()->polish(&label);
    label.setCursor(Qt::PointingHandCursor);
  }

  void Mirror() override {
    MirrorState(control_, label_);
    colours_.Mirror(control_, label_);
    const QString text = ToQt(control_.caption);
    if (TakesCaption(label_, text)) label_.setText(text);
  }
  bool Filter(QEvent& event) override {
    if (event.type() != QEvent::MouseButtonRelease || !control_.onClick || !control_.IsUsable()) return false;
    dispatcher_.Run(control_.onClick);
    return true;
  }

 private:
  Label& control_;
  QLabel& label_;
  Dispatcher& dispatcher_;
  ColourMirror colours_;
};

// A label that is one of many to choose from: the keyboard comes to it.
class ChoiceBinding final : public PushBinding {
 public:
  ChoiceBinding(Label& control, QPushButton& button, Dispatcher& dispatcher)
      : PushBinding(button,
                    [&control, &dispatcher] {
                      if (control.IsUsable()) dispatcher.Run(control.onClick);
                    }),
        control_(control) {}

  void Mirror() override {
    MirrorState(control_, button_);
    colours_.Mirror(control_, button_);
    MirrorCaption(control_.caption, button_);
  }

 private:
  Label& control_;
  ColourMirror colours_;
};

template <class BindingType, class WidgetType, class ControlType>
std::unique_ptr<Binding> Bind(ControlType& control, QWidget& widget, Dispatcher& dispatcher) {
  auto* typed = qobject_cast<WidgetType*>(&widget);
  return typed ? std::make_unique<BindingType>(control, *typed, dispatcher) : nullptr;
}

}  // namespace

std::unique_ptr<Binding> BindCheckBox(CheckBox& control, QWidget& widget, Dispatcher& dispatcher) {
  return Bind<CheckBoxBinding, QCheckBox>(control, widget, dispatcher);
}

std::unique_ptr<Binding> BindOptionButton(OptionButton& control, QWidget& widget, QButtonGroup& group,
                                          Dispatcher& dispatcher) {
  auto* radio = qobject_cast<QRadioButton*>(&widget);
  return radio ? std::make_unique<OptionButtonBinding>(control, *radio, group, dispatcher) : nullptr;
}

std::unique_ptr<Binding> BindButton(Button& control, QWidget& widget, Dispatcher& dispatcher) {
  return Bind<ButtonBinding, QPushButton>(control, widget, dispatcher);
}

std::unique_ptr<Binding> BindLabel(Label& control, QWidget& widget, Dispatcher& dispatcher) {
  if (auto choice = Bind<ChoiceBinding, QPushButton>(control, widget, dispatcher)) return choice;
  return Bind<LabelBinding, QLabel>(control, widget, dispatcher);
}

std::unique_ptr<Binding> BindMenuButton(std::vector<Menu*> menus, QWidget& widget, Dispatcher& dispatcher) {
  auto* button = qobject_cast<QPushButton*>(&widget);
  return button ? std::make_unique<MenuButtonBinding>(std::move(menus), *button, dispatcher) : nullptr;
}

}  // namespace ktl
