#include "instructions/instruction_master_dialect.h"

#include "frame/session.h"
#include "runtime/errors.h"

namespace ktl {

namespace {

template <typename Number>
Statement NumberOrNull(const std::optional<Number>& number) {
  return Statement(number ? SqlAmount(static_cast<double>(*number)) : "Null");
}

Statement TextOrNull(const Session& session, const std::string& text) {
  return text.empty() ? Statement("Null") : session.Sql("'{}'", text);
}

Statement PreferenceOrNull(double siPref) {
  return NumberOrNull(siPref == 0 ? std::nullopt : std::optional(siPref));
}

int Flag(bool on) { return on ? 1 : 0; }

// The values by position, as the columns of INS_MASTER stand.
Statement InsertStatement(const Session& session, const InstructionMaster& master) {
  return session.Sql(
      "INSERT INTO INS_MASTER VALUES ({}, '{}', {}, {}, {}, {}, Null, Null, Null, Null, 0, {}, {})",
      master.type, master.siName, TextOrNull(session, master.accCode), Flag(master.tdsYn),
      PreferenceOrNull(master.siPref), NumberOrNull(master.tdsRefNo), Flag(master.sepPiYn),
      Flag(master.sbiIfbYn));
}

// Leaves SEPPIYN and SBIIFBYN of a kept name as they are.
Statement UpdateStatement(const Session& session, const InstructionMaster& master) {
  return session.Sql(
      "UPDATE INS_MASTER SET ACCCODE = {}, TDSYN = {}, SIPREF = {}, TDSREFNO = {}"
      " Where SINAME = '{}' AND SITYPE={}",
      TextOrNull(session, master.accCode), Flag(master.tdsYn), PreferenceOrNull(master.siPref),
      NumberOrNull(master.tdsRefNo), master.siName, master.type);
}

Statement AdvancedStatement(const Session& session, const InstructionMaster& master) {
  return session.Sql(
      "Update INS_MASTER Set AMTLIMIT = {}, ALLOWLIMIT = {}, EMIRECCNT = {}, INTRRATE = {},"
      " REDUCINGBALYN = {} Where SINAME = '{}' AND SITYPE={}",
      NumberOrNull(master.amtLimit), NumberOrNull(master.allowLimit), NumberOrNull(master.emiRecCnt),
      NumberOrNull(master.intrRate), Flag(master.reducingBalYn), master.siName, master.type);
}

}  // namespace

Statement EmployeeSerialPair(std::string_view dbType) {
  if (dbType == "SQL") return Statement("CAST(EMPID AS VARCHAR) + '/' + CAST(SERIALNO AS VARCHAR)");
  if (dbType == "ACC97") return Statement("EMPID & '/' & SERIALNO");
  if (dbType == "ORA") return Statement("EMPID || '/' || SERIALNO");
  if (dbType == "MYSQL") return Statement("CONCAT(CAST(EMPID As CHAR), '/', CAST(SERIALNO As CHAR))");
  throw RuntimeError::InvalidProcedureCall();
}

std::vector<Statement> RenameStatements(const Session& session, const InstructionMaster& master,
                                        const std::string& oldName) {
  return {session.Sql("Update INS_ADVLOAN Set SINAME = '{}' Where SINAME = '{}' AND SITYPE={}", master.siName,
                      oldName, master.type),
          session.Sql("Update INS_OTHER Set OTHNAME = '{}' Where OTHNAME = '{}' AND SITYPE={}", master.siName,
                      oldName, master.type)};
}

std::vector<Statement> OraSaveStatements(const Session& session, const InstructionMaster& master,
                                         const std::string& oldName, bool advanced) {
  if (master.siName == oldName) {
    std::vector<Statement> statements{UpdateStatement(session, master)};
    if (advanced) statements.push_back(AdvancedStatement(session, master));
    return statements;
  }
  std::vector<Statement> statements = RenameStatements(session, master, oldName);
  statements.insert(statements.begin(), InsertStatement(session, master));
  if (advanced) statements.push_back(AdvancedStatement(session, master));
  statements.push_back(
      session.Sql("Delete From INS_MASTER Where SINAME = '{}' AND SITYPE={}", oldName, master.type));
  return statements;
}

}  // namespace ktl
