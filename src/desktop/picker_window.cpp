#include "desktop/picker_window.h"

#include <QComboBox>
#include <QListView>
#include <QRect>
#include <QWidget>
#include <algorithm>
#include <limits>

namespace ktl {
namespace {

constexpr int kSidewaysWeight = 4;  // a widget straight ahead is nearer than one aside

// How far the widget lies in the direction; nothing when it does not.
int DistanceTo(const QPoint& from, const QPoint& to, int key) {
  const QPoint way = to - from;
  const bool vertical = key == Qt::Key_Up || key == Qt::Key_Down;
  const int ahead = (vertical ? way.y() : way.x()) * (key == Qt::Key_Up || key == Qt::Key_Left ? -1 : 1);
  const int aside = std::abs(vertical ? way.x() : way.y());
  return ahead > 0 && aside <= ahead * kSidewaysWeight ? ahead + aside * kSidewaysWeight
                                                       : std::numeric_limits<int>::max();
}

// Up and down choose within a list.
bool KeepsKey(const QWidget& from, int key) {
  const bool list = qobject_cast<const QComboBox*>(&from) || qobject_cast<const QListView*>(&from);
  return list && (key == Qt::Key_Up || key == Qt::Key_Down);
}

QPoint CentreOf(const QWidget& widget) { return widget.mapTo(widget.window(), widget.rect().center()); }

}  // namespace

void PlaceUnder(QWidget& window, const QWidget& field, const QRect& desk) {
  const QPoint corner = field.mapToGlobal(QPoint(0, 0));
  const QSize size = window.frameSize();
  int top = corner.y() + field.height();
  if (top + size.height() > desk.bottom() + 1) top = corner.y() - size.height();
  const int left = std::min(corner.x(), desk.right() + 1 - size.width());
  window.move(std::max(left, desk.left()), std::max(top, desk.top()));
}

bool MoveByArrow(const QWidget& from, int key) {
  const bool arrow = key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_Left || key == Qt::Key_Right;
  if (!arrow || KeepsKey(from, key)) return false;
  QWidget* nearest = nullptr;
  int least = std::numeric_limits<int>::max();
  for (QWidget* widget : from.window()->findChildren<QWidget*>()) {
    if (widget == &from || !widget->isVisible() || !widget->isEnabled()) continue;
    if (!(widget->focusPolicy() & Qt::TabFocus)) continue;
    const int distance = DistanceTo(CentreOf(from), CentreOf(*widget), key);
    if (distance < least) {
      least = distance;
      nearest = widget;
    }
  }
  if (nearest) nearest->setFocus(Qt::OtherFocusReason);
  return true;
}

}  // namespace ktl
