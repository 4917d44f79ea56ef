#include "desktop/binding.h"

#include <QMenu>
#include <QWidget>

#include "desktop/dispatcher.h"
#include "desktop/look.h"

namespace ktl {

bool IsToShow(const Control& control, const QWidget& widget) {
  const auto liesIn = [&widget](const QString& name) {
    const QWidget* holder = widget.parentWidget();
    while (holder && holder->objectName() != name) holder = holder->parentWidget();
    return holder != nullptr;
  };
  if (!control.visible) return false;
  for (const Control* holder = control.container; holder; holder = holder->container) {
    if (!holder->visible && !liesIn(ToQt(holder->name()))) return false;
  }
  return true;
}

void MirrorState(const Control& control, QWidget& widget) {
  const bool shown = IsToShow(control, widget);
  const bool usable = control.IsUsable();
  if (widget.isEnabledTo(widget.parentWidget()) != usable) widget.setEnabled(usable);
  if (widget.isHidden() == shown) widget.setVisible(shown);
  const QString toolTip = ToQt(usable || control.whyDisabled.empty() ? control.toolTip : control.whyDisabled);
  if (widget.toolTip() != toolTip) widget.setToolTip(toolTip);
}

void ColourMirror::Mirror(const Control& control, QWidget& widget) {
  // White is what a field has anyway, and then its disabled and locked looks stay.
  const bool plain = control.backColour == kWhite || control.backColour == kWindowColour;
  const Colour back = plain ? kNoColour : control.backColour;
  if (back == back_ && control.foreColour == fore_) return;
  back_ = back;
  fore_ = control.foreColour;
  QString sheet;
  if (back_ != kNoColour) sheet += QStringLiteral("background:%1;").arg(ColourOf(back_).name());
  if (fore_ != kNoColour) sheet += QStringLiteral("color:%1;").arg(ColourOf(fore_).name());
  if (!sheet.isEmpty()) sheet = QStringLiteral("%1{%2}").arg(widget.metaObject()->className(), sheet);
  widget.setStyleSheet(sheet);
}

void FillMenu(QMenu& menu, const std::vector<Menu*>& entries, Dispatcher& dispatcher) {
  for (Menu* entry : entries) {
    if (!entry->IsShown()) continue;
    QAction* action = menu.addAction(ToQt(entry->caption));
    action->setEnabled(entry->IsUsable());
    QObject::connect(action, &QAction::triggered, &menu,
                     [entry, &dispatcher] { dispatcher.Run(entry->onClick); });
  }
}

}  // namespace ktl
