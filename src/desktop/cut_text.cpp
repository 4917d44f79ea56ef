#include "desktop/cut_text.h"

#include <QComboBox>
#include <QHelpEvent>
#include <QLineEdit>
#include <QToolTip>

namespace ktl {
namespace {

constexpr int kPadding = 14;  // of the style sheet, both sides, and the cursor

QString TextOf(const QWidget& widget) {
  if (const auto* edit = qobject_cast<const QLineEdit*>(&widget)) return edit->text();
  if (const auto* combo = qobject_cast<const QComboBox*>(&widget)) return combo->currentText();
  return {};
}

}  // namespace

bool ShowCutText(QObject& target, QEvent& event) {
  if (event.type() != QEvent::ToolTip || !target.isWidgetType()) return false;
  auto& widget = static_cast<QWidget&>(target);
  const QString text = TextOf(widget);
  const bool fits = widget.fontMetrics().horizontalAdvance(text) + kPadding <= widget.width();
  if (fits || !widget.toolTip().isEmpty()) return false;
  QToolTip::showText(static_cast<QHelpEvent&>(event).globalPos(), text, &widget);
  return true;
}

}  // namespace ktl
