#pragma once

#include <memory>
#include <optional>

#include "formula/employee_reads.h"

namespace ktl {

// Rows of the tables that give a token family one token a row; counted at the first question, then kept.
class FamilyCounts final {
 public:
  explicit FamilyCounts(std::shared_ptr<EmployeeReads> reads) : reads_(std::move(reads)) {}

  bool HasUnits() { return Counted().unitHeads > 0; }
  bool HasReimbursements() { return Counted().reimbursements > 0; }
  bool HasExtendedFields() { return Counted().extendedFields > 0; }
  bool HasCustomFields() { return Counted().customFields > 0; }
  bool HasCustomQueries() { return Counted().customQueries > 0; }

 private:
  struct Counts {
    double unitHeads, reimbursements, extendedFields, customFields, customQueries;
  };
  const Counts& Counted();

  std::shared_ptr<EmployeeReads> reads_;
  std::optional<Counts> counts_;
};

}  // namespace ktl
