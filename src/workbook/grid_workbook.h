#pragma once

#include <string>

#include "screen/grid.h"

namespace ktl {

struct Session;

inline constexpr const char* kWorkbookFolder = "Reports/ExcelFiles";

// Column letters, from 1: "A", "Z", "AA". A whole multiple of 26 above 26 comes out as "BZ" for 52.
std::string ExlFnStrGetCol(int column);
std::string FnStrGetExcelCell(int column, int row);

// Writes what the grid shows into a workbook of one sheet: the company's name and the title, its address,
// captions, rows. Hidden rows and columns, and ticks that only pick rows, are left out. The file goes to the
// workbook folder of the program's own, is named after the title, the employee and the instruction, and never
// takes the place of another; its path is the answer, "" when it could not be written and the message has
// been shown.
std::string ExportGridToWorkbook(Session& session, const Grid& grid, const std::string& title);

}  // namespace ktl
