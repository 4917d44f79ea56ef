#include "instructions/instruction_type.h"

#include "frame/session.h"
#include "runtime/errors.h"

namespace ktl {

namespace {

using enum InstructionType;

constexpr TypeFacts kFacts[] = {
    {Advance, "Advance", "INS_ADVLOAN", "SINAME", "ADVANCE", "SD.ADVANCE", "Receipt", 1521, 0},
    {Loan, "Loan", "INS_ADVLOAN", "SINAME", "LOAN", "SD.LOAN", "Deposit", 1522, 0},
    {Insurance, "Insurance", "INS_OTHER", "OTHNAME", "INSURANCE", "SD.INSURANCE", "Deposit", 1523, 12},
    {Sss, "SSS", "INS_OTHER", "OTHNAME", "SSS", "SD.SSS", "Deposit", 1524, 12},
    {GroupInsurance, "Group Insurance", "INS_OTHER", "OTHNAME", "GRPINSURANCE", "SD.GRPINSURANCE", "Deposit",
     1525, 12},
    {Incentive, "Periodic Incentive", "INS_OTHER", "OTHNAME", "SIEARNING", "SE.SIEARNING", "Deposit", 1527,
     13},
};

}  // namespace

const TypeFacts& FactsOf(InstructionType type) {
  for (const TypeFacts& facts : kFacts)
    if (facts.type == type) return facts;
  throw RuntimeError::InvalidProcedureCall();
}

std::string InstructionCaption(Session& session, InstructionType type) {
  return session.data.Text(
      session.Sql("Select PDLISTDESC From MAS_PULLDOWNVALUES Where REFID = 5 And PDID = {}", type));
}

}  // namespace ktl
