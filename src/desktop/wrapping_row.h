#pragma once

#include <QLayout>
#include <memory>
#include <vector>

namespace ktl {

// A row of buttons that goes on in the next line where the window is too narrow for it. Its spacers part the
// buttons as long as they stand in one line.
class WrappingRow final : public QLayout {
 public:
  void addItem(QLayoutItem* item) override { items_.emplace_back(item); }
  int count() const override { return int(items_.size()); }
  QLayoutItem* itemAt(int index) const override;
  QLayoutItem* takeAt(int index) override;

  Qt::Orientations expandingDirections() const override { return {}; }
  bool hasHeightForWidth() const override { return true; }
  int heightForWidth(int width) const override { return Arrange({0, 0, width, 0}, false); }
  QSize sizeHint() const override;
  QSize minimumSize() const override;
  void setGeometry(const QRect& place) override;

 private:
  struct Line {
    std::vector<QLayoutItem*> items;
    int width = 0;
    bool toTheRight = false;
    bool sharesPlace = false;  // with the next one
  };
  std::vector<Line> Broken(int width) const;
  int Arrange(const QRect& place, bool moves) const;  // the height that it takes

  std::vector<std::unique_ptr<QLayoutItem>> items_;
};

}  // namespace ktl
