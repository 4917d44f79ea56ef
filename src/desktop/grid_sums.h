#pragma once

#include <QString>

#include "screen/grid.h"

class QTableView;

namespace ktl {

class GridModel;

// The sum of what is shown in a column, as amounts are read. Hidden rows and texts that are no number do not
// count.
QString SumOfColumn(const GridModel& model, int column);
// How many rows there are and are marked, and what the marked amounts come to: of the marked cells, where
// whole rows are marked of the column that was clicked, else of the last one that has a sum.
QString SelectionWords(const QTableView& view, const GridModel& model, const Grid& grid);

}  // namespace ktl
