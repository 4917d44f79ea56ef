#pragma once

#include <QAbstractTableModel>
#include <functional>
#include <string>
#include <vector>

#include "screen/grid.h"

namespace ktl {

// The view reads a copy of the grid: it never sees one that a handler is half way through filling.
class GridModel final : public QAbstractTableModel {
 public:
  explicit GridModel(const Grid& grid) : grid_(grid) {}

  // A cell was typed into or ticked; the control does not hold the text yet.
  std::function<void(std::size_t row, std::size_t column, std::string text)> edited;

  // Takes over what differs in the control. True when the columns are new: the view's widths are gone then.
  bool Take();

  const GridColumn& Column(int column) const { return columns_[std::size_t(column)]; }
  const GridRow& Row(int row) const { return rows_[std::size_t(row)]; }
  CellType TypeOf(const QModelIndex& index) const;
  bool IsLocked(const QModelIndex& index) const;
  bool HasEditedColumn() const;  // one that is shown

  int rowCount(const QModelIndex& parent = {}) const override {
    return parent.isValid() ? 0 : int(rows_.size());
  }
  int columnCount(const QModelIndex& parent = {}) const override {
    return parent.isValid() ? 0 : int(columns_.size());
  }
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;

 private:
  const GridCell* CellAt(const QModelIndex& index) const;
  std::string MeaningOf(const GridCell& cell) const;
  void TakeRows();

  const Grid& grid_;
  std::vector<GridColumn> columns_;
  std::vector<GridRow> rows_;
};

}  // namespace ktl
