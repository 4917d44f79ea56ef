#include "recovery/change_audit.h"

#include <fmt/format.h>

#include "frame/rights.h"
#include "frame/session.h"
#include "instructions/instruction_statements.h"
#include "runtime/numbers.h"

namespace ktl {

namespace {

std::string ReadInstructionName(Session& session, const InstructionKey& key) {
  const char* text = IsAdvanceOrLoan(key.type) ? "Select SINAME From INS_ADVLOAN Where {}"
                                               : "Select OTHNAME From INS_OTHER Where {}";
  return session.data.Text(session.Sql(text, WhereInstruction(key)));
}

}  // namespace

void AuditChange(Session& session, const InstructionKey& key, const std::string& caption,
                 std::string_view deed, std::string_view detail) {
  if (!FnBlnAuditOn(session)) return;
  AuditInstruction(
      session, key.employee, fmt::format("{}{}", caption, deed),
      fmt::format(":::SI Type = {}:SI Name = {}{}", caption, ReadInstructionName(session, key), detail));
}

std::string AuditedComponents(std::string_view principal, std::string_view interest, std::string_view total) {
  return fmt::format("::Principle Amount = {}:Interest Amount = {}:EMI Amount = {}", principal, interest,
                     total);
}

std::string AuditedSum(double amount) { return FormatNumber(amount, "#,##,###.00"); }

}  // namespace ktl
