#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ktl::tsql {

enum class StepKind {
  Rows,    // sql answers rows
  Change,  // sql changes rows or objects
  Assign,  // sql sets variables, row by row
  Branch,  // sql answers one number; then or otherwise
  Call,    // name is the procedure; sql calls it where the database has procedures of its own
};

// One thing for a driver to do, in its database's dialect. Steps are prepared only when they are reached: a
// batch may speak of objects that an earlier step makes.
struct Step {
  StepKind kind = StepKind::Rows;
  std::string sql;
  std::string name;                                   // of Call
  std::vector<std::optional<std::string>> arguments;  // of Call; nothing for NULL
  std::vector<Step> then;                             // of Branch
  std::vector<Step> otherwise;
  // Of Rows: which columns are dates for certain, told from the front up to the first "*" and from the back
  // down to the last one. A column between both is judged by its declaration alone.
  std::vector<bool> datesFromFront;
  std::vector<bool> datesFromBack;
  // Where sql asks for shared numbers by bare marks: which, in the order of the marks.
  std::vector<int> parameters;
  bool limited = false;   // of Rows: sql ends with its own limit
  bool planAnew = false;  // never run by a plan of an earlier time
  std::string baseTable;  // of Rows that can be updated: what the dialect has for a key stands in front

  // Of one column of a result of so many.
  bool TellsDate(std::size_t column, std::size_t count) const {
    const std::size_t fromBack = count - 1 - column;
    return (column < datesFromFront.size() && datesFromFront[column]) ||
           (fromBack < datesFromBack.size() && datesFromBack[fromBack]);
  }
};

using Program = std::vector<Step>;

}  // namespace ktl::tsql
