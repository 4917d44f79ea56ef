#pragma once

#include <optional>
#include <string>

#include "common/statement.h"
#include "database/statement_twin.h"
#include "instructions/instruction_type.h"

namespace ktl {

struct Session;

// What is listed of the advances or loans of many employees.
struct BulkFilter {
  InstructionType type = InstructionType::None;
  long fromMonth =
      0;  // of the instruction's date, and of the instalments that count as completed; 0 for none
  long toMonth = 0;
  long employee = 0;   // 0 for all
  std::string search;  // in number, reference and name of the employee
};

// The list with its equivalent for the embedded store, which reads of each schedule the months within bounds
// and those marked by hand, in place of all.
struct BulkListStatement {
  Statement said;
  Statement embedded;

  operator StatementTwin() const;
};
// `who` is a further condition on EMP and IA.
BulkListStatement WriteBulkList(Session& session, const BulkFilter& filter, const Statement& who);

}  // namespace ktl
