#include "instructions/instruction_master_dialect.h"

#include <fmt/format.h>

#include "instructions/instruction_statements.h"
#include "runtime/errors.h"

namespace ktl {

namespace {

template <typename Number>
std::string NumberOrNull(const std::optional<Number>& number) {
  return number ? SqlAmount(static_cast<double>(*number)) : "Null";
}

std::string TextOrNull(Session& session, const std::string& text) {
  return text.empty() ? "Null" : "'" + SqlText(session, text) + "'";
}

std::string PreferenceOrNull(long siPref) { return siPref == 0 ? "Null" : std::to_string(siPref); }

int Flag(bool on) { return on ? 1 : 0; }

// The values by position, as the columns of INS_MASTER stand.
std::string InsertStatement(Session& session, const InstructionMaster& master) {
  return fmt::format(
      "INSERT INTO INS_MASTER VALUES ({}, '{}', {}, {}, {}, {}, Null, Null, Null, Null, 0, {}, {})",
      master.type, SqlText(session, master.siName), TextOrNull(session, master.accCode), Flag(master.tdsYn),
      PreferenceOrNull(master.siPref), NumberOrNull(master.tdsRefNo), Flag(master.sepPiYn),
      Flag(master.sbiIfbYn));
}

// Leaves SEPPIYN and SBIIFBYN of a kept name as they are.
std::string UpdateStatement(Session& session, const InstructionMaster& master) {
  return fmt::format(
      "UPDATE INS_MASTER SET ACCCODE = {}, TDSYN = {}, SIPREF = {}, TDSREFNO = {}"
      " Where SINAME = '{}' AND SITYPE={}",
      TextOrNull(session, master.accCode), Flag(master.tdsYn), PreferenceOrNull(master.siPref),
      NumberOrNull(master.tdsRefNo), SqlText(session, master.siName), master.type);
}

std::string AdvancedStatement(Session& session, const InstructionMaster& master) {
  return fmt::format(
      "Update INS_MASTER Set AMTLIMIT = {}, ALLOWLIMIT = {}, EMIRECCNT = {}, INTRRATE = {},"
      " REDUCINGBALYN = {} Where SINAME = '{}' AND SITYPE={}",
      NumberOrNull(master.amtLimit), NumberOrNull(master.allowLimit), NumberOrNull(master.emiRecCnt),
      NumberOrNull(master.intrRate), Flag(master.reducingBalYn), SqlText(session, master.siName),
      master.type);
}

}  // namespace

std::string EmployeeSerialPair(std::string_view dbType) {
  if (dbType == "SQL") return "CAST(EMPID AS VARCHAR) + '/' + CAST(SERIALNO AS VARCHAR)";
  if (dbType == "ACC97") return "EMPID & '/' & SERIALNO";
  if (dbType == "ORA") return "EMPID || '/' || SERIALNO";
  if (dbType == "MYSQL") return "CONCAT(CAST(EMPID As CHAR), '/', CAST(SERIALNO As CHAR))";
  throw RuntimeError::InvalidProcedureCall();
}

std::vector<std::string> RenameStatements(Session& session, const InstructionMaster& master,
                                          const std::string& oldName) {
  const std::string from = SqlText(session, oldName);
  const std::string to = SqlText(session, master.siName);
  return {
      fmt::format("Update INS_ADVLOAN Set SINAME = '{}' Where SINAME = '{}' AND SITYPE={}", to, from,
                  master.type),
      fmt::format("Update INS_OTHER Set OTHNAME = '{}' Where OTHNAME = '{}' AND SITYPE={}", to, from,
                  master.type),
  };
}

std::vector<std::string> OraSaveStatements(Session& session, const InstructionMaster& master,
                                           const std::string& oldName, bool advanced) {
  const bool renamed = master.siName != oldName;
  std::vector<std::string> statements;
  statements.push_back(renamed ? InsertStatement(session, master) : UpdateStatement(session, master));
  if (renamed) {
    for (std::string& statement : RenameStatements(session, master, oldName))
      statements.push_back(std::move(statement));
  }
  if (advanced) statements.push_back(AdvancedStatement(session, master));
  if (renamed) {
    statements.push_back(fmt::format("Delete From INS_MASTER Where SINAME = '{}' AND SITYPE={}",
                                     SqlText(session, oldName), master.type));
  }
  return statements;
}

}  // namespace ktl
