#pragma once

#include <QWidget>

#include "screen/grid.h"

class QTableView;

namespace ktl {

class GridModel;

// A line under a grid with the sums of its amounts, each under its column.
class GridFoot final : public QWidget {
 public:
  // Puts the view and its foot into the place that the view has in its form. The foot goes with the view.
  static void Under(QTableView& view, const GridModel& model, const Grid& grid);

  QString TextOf(int column) const;  // what stands under the column

 protected:
  void paintEvent(QPaintEvent* event) override;
  bool event(QEvent* event) override;
  bool eventFilter(QObject* view, QEvent* event) override;

 private:
  GridFoot(QTableView& view, const GridModel& model, const Grid& grid, QWidget* holder);
  bool IsSummed(int column) const;
  int WordColumn() const;

  QTableView& view_;
  const GridModel& model_;
  const Grid& grid_;
};

}  // namespace ktl
