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
  Call,    // name is the procedure
};

// One thing for the driver to do, in the embedded dialect. Steps are prepared only when they are reached: a
// batch may speak of objects that an earlier step makes.
struct Step {
  StepKind kind = StepKind::Rows;
  std::string sql;
  std::string name;                                   // of Call
  std::vector<std::optional<std::string>> arguments;  // of Call; nothing for NULL
  std::vector<Step> then;                             // of Branch
  std::vector<Step> otherwise;
  // Of Rows: which columns are dates for certain, told from the front up to the first "*" and from the back
  // down to the last one. A column behind both is judged by its declaration alone.
  std::vector<bool> datesFromFront;
  std::vector<bool> datesFromBack;
  std::string baseTable;  // of Rows that can be updated: the first column is the row's key
};

using Program = std::vector<Step>;

// Throws DatabaseError when the text cannot be read. updatable: the text must be a SELECT * over one table,
// which then answers the row's key in front. parameters: how many numbers of the text are ?1, ?2, ...
Program Translate(std::string_view text, bool updatable = false, int parameters = 0);

}  // namespace ktl::tsql
