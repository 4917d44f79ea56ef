#include "instructions/instruction_master_dialect.h"

#include <fmt/format.h>

#include "runtime/errors.h"
#include "runtime/numbers.h"

namespace ktl {

namespace {

template <typename Number>
std::string NumberOrNull(const std::optional<Number>& number) {
  return number ? NumberText(static_cast<double>(*number)) : "Null";
}

std::string PreferenceOrNull(long siPref) { return siPref == 0 ? "Null" : std::to_string(siPref); }

int Flag(bool on) { return on ? 1 : 0; }

// The values by position, as the columns of INS_MASTER stand.
std::string InsertStatement(const clsSPChar& literals, const InstructionMaster& master) {
  const std::string code = literals.FnStrSpSQL(master.accCode);
  return fmt::format(
      "INSERT INTO INS_MASTER VALUES ({}, '{}', {}, {}, {}, {}, Null, Null, Null, Null, 0, {}, {})",
      master.siType, literals.FnStrSpSQL(master.siName), code.empty() ? "Null" : "'" + code + "'",
      Flag(master.tdsYn), PreferenceOrNull(master.siPref), NumberOrNull(master.tdsRefNo),
      Flag(master.sepPiYn), Flag(master.sbiIfbYn));
}

// Leaves SEPPIYN and SBIIFBYN of a kept name as they are.
std::string UpdateStatement(const clsSPChar& literals, const InstructionMaster& master) {
  const std::string code = literals.FnStrSpSQL(master.accCode);
  return fmt::format(
      "UPDATE INS_MASTER SET ACCCODE = {}, TDSYN = {}, SIPREF = {}, TDSREFNO = {} Where SINAME = '{}' AND "
      "SITYPE={}",
      code.empty() ? "Null" : "'" + code + "'", Flag(master.tdsYn), PreferenceOrNull(master.siPref),
      NumberOrNull(master.tdsRefNo), literals.FnStrSpSQL(master.siName), master.siType);
}

std::string AdvancedStatement(const clsSPChar& literals, const InstructionMaster& master) {
  return fmt::format(
      "Update INS_MASTER Set AMTLIMIT = {}, ALLOWLIMIT = {}, EMIRECCNT = {}, INTRRATE = {}, REDUCINGBALYN = "
      "{}"
      " Where SINAME = '{}' AND SITYPE={}",
      NumberOrNull(master.amtLimit), NumberOrNull(master.allowLimit), NumberOrNull(master.emiRecCnt),
      NumberOrNull(master.intrRate), Flag(master.reducingBalYn), literals.FnStrSpSQL(master.siName),
      master.siType);
}

}  // namespace

std::string EmployeeSerialPair(std::string_view dbType) {
  if (dbType == "SQL") return "CAST(EMPID AS VARCHAR) + '/' + CAST(SERIALNO AS VARCHAR)";
  if (dbType == "ACC97") return "EMPID & '/' & SERIALNO";
  if (dbType == "ORA") return "EMPID || '/' || SERIALNO";
  if (dbType == "MYSQL") return "CONCAT(CAST(EMPID As CHAR), '/', CAST(SERIALNO As CHAR))";
  throw RuntimeError::InvalidProcedureCall();
}

std::vector<std::string> RenameStatements(const clsSPChar& literals, const InstructionMaster& master,
                                          const std::string& oldName) {
  const std::string from = literals.FnStrSpSQL(oldName);
  const std::string to = literals.FnStrSpSQL(master.siName);
  return {
      fmt::format("Update INS_ADVLOAN Set SINAME = '{}' Where SINAME = '{}' AND SITYPE={}", to, from,
                  master.siType),
      fmt::format("Update INS_OTHER Set OTHNAME = '{}' Where OTHNAME = '{}' AND SITYPE={}", to, from,
                  master.siType),
  };
}

std::vector<std::string> OraSaveStatements(const clsSPChar& literals, const InstructionMaster& master,
                                           const std::string& oldName, bool advanced) {
  const bool renamed = master.siName != oldName;
  std::vector<std::string> statements;
  statements.push_back(renamed ? InsertStatement(literals, master) : UpdateStatement(literals, master));
  if (renamed) {
    for (std::string& statement : RenameStatements(literals, master, oldName))
      statements.push_back(std::move(statement));
  }
  if (advanced) statements.push_back(AdvancedStatement(literals, master));
  if (renamed) {
    statements.push_back(fmt::format("Delete From INS_MASTER Where SINAME = '{}' AND SITYPE={}",
                                     literals.FnStrSpSQL(oldName), master.siType));
  }
  return statements;
}

}  // namespace ktl
