#include "desktop/wrapping_row.h"

#include <algorithm>

namespace ktl {

QLayoutItem* WrappingRow::itemAt(int index) const {
  return index >= 0 && index < count() ? items_[std::size_t(index)].get() : nullptr;
}

QLayoutItem* WrappingRow::takeAt(int index) {
  if (!itemAt(index)) return nullptr;
  QLayoutItem* taken = items_[std::size_t(index)].release();
  items_.erase(items_.begin() + index);
  return taken;
}

QSize WrappingRow::sizeHint() const {
  QSize size(0, 0);
  for (const auto& item : items_) {
    if (item->isEmpty()) continue;
    const QSize hint = item->sizeHint();
    size = {size.width() + hint.width() + (size.isEmpty() ? 0 : spacing()),
            std::max(size.height(), hint.height())};
  }
  return size;
}

QSize WrappingRow::minimumSize() const {
  QSize size(0, 0);
  for (const auto& item : items_) {
    if (!item->isEmpty()) size = size.expandedTo(item->minimumSize());
  }
  return size;
}

void WrappingRow::setGeometry(const QRect& place) {
  QLayout::setGeometry(place);
  Arrange(place, true);
}

int WrappingRow::Arrange(const QRect& place, bool moves) const {
  int y = place.top();
  for (const Line& line : Broken(place.width())) {
    int x = place.left() + (line.toTheRight ? place.width() - line.width : 0);
    int height = 0;
    for (QLayoutItem* item : line.items) {
      const QSize size = item->sizeHint();
      if (moves) item->setGeometry(QRect(QPoint(x, y), size));
      x += size.width() + spacing();
      height = std::max(height, size.height());
    }
    y += line.items.empty() || line.sharesPlace ? 0 : height + spacing();
  }
  return std::max(0, y - place.top() - spacing());
}

// What stands behind a spacer stands to the right, in the same line where there is room for both.
std::vector<WrappingRow::Line> WrappingRow::Broken(int width) const {
  std::vector<Line> lines(1);
  const bool inOne = sizeHint().width() <= width;
  for (const auto& item : items_) {
    if (item->spacerItem()) {
      lines.back().sharesPlace = inOne;
      lines.push_back({.toTheRight = true});
    }
    if (item->isEmpty()) continue;
    const int wanted = item->sizeHint().width();
    const int before = lines.back().width + (lines.back().items.empty() ? 0 : spacing());
    if (before > 0 && before + wanted > width) {
      lines.push_back({.items = {item.get()}, .width = wanted, .toTheRight = lines.back().toTheRight});
    } else {
      lines.back().items.push_back(item.get());
      lines.back().width = before + wanted;
    }
  }
  return lines;
}

}  // namespace ktl
