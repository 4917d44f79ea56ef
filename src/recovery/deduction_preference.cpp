#include "recovery/deduction_preference.h"

#include <algorithm>

#include "common/amounts.h"
#include "database/recordset.h"
#include "frame/rights.h"
#include "frame/session.h"
#include "runtime/numbers.h"

namespace ktl {

namespace {

constexpr const char* kNoEnd = "99999";  // of the months that an employee's lock is asked for

Statement LowNetCondition(Session& session, const PreferenceTerms& terms) {
  if (!terms.percent) return Statement("And NETAMOUNT < 0");
  // As a fraction, so that no dialect divides whole numbers.
  return session.Sql("And NETAMOUNT < (({} / 100) * ETOTAL) ",
                     Statement(FormatNumber(*terms.percent, "0.00")));
}

Statement ListStatement(Session& session, const PreferenceTerms& terms) {
  return session.Sql(
      "Select E.EMPID, E.REFNO, E.EMPNAME, AL.SINAME, EMI.MDFYAMT, SE.NETAMOUNT, SE.ETOTAL, AL.SERIALNO "
      "From MAS_EMPLOYEE E, INS_ADVLOAN AL, INS_EMIDETAIL EMI, INS_MASTER IM, SLC_SALARYCALC_E SE "
      "Where E.EMPID = AL.EMPID And AL.EMPID = EMI.EMPID And AL.SITYPE = EMI.SITYPE And AL.SERIALNO = "
      "EMI.SERIALNO And EMI.SITYPE = {0} And EMI.MONTHYEAR = {1} And EMI.MDFYAMT > 0 And AL.SINAME = "
      "IM.SINAME And AL.SITYPE = IM.SITYPE And E.EMPID = SE.EMPID And SE.MONTHYEAR = EMI.MONTHYEAR And "
      "SE.MONTHYEAR = {1} And {2} = 0 {3} Order by {4}, IM.SIPREF",
      terms.type, terms.monthYear, BracketedForAccess(session, "INDICATOR"), LowNetCondition(session, terms),
      Statement(session.options.EMPREFNOYN ? "E.REFNO" : "E.EMPID"));
}

double FloorOf(const PreferenceTerms& terms, double gross, int roundType) {
  return terms.percent ? FnDblRoundByType(roundType, *terms.percent / 100 * gross) : 0;
}

void Move(PreferenceRow& row, double& net, double amount) {
  row.before = net;
  row.moved = amount;
  net += amount;
  row.after = net;
}

}  // namespace

Statement BracketedForAccess(const Session& session, const std::string& column) {
  const bool access = session.machine.settings.Get("Settings", "DBType", "ACC97") == "ACC97";
  return Statement(access ? "[" + column + "]" : column);
}

std::vector<PreferenceRow> ReadShortRecoveries(Session& session, const PreferenceTerms& terms) {
  std::vector<PreferenceRow> rows;
  Recordset rs(session.Cn, ListStatement(session, terms));
  rows.reserve(rs.RecordCount());
  for (; !rs.Eof(); rs.MoveNext()) {
    rows.push_back({.employee = rs["EMPID"].ToLong(),
                    .reference = rs["REFNO"].TextOrEmpty(),
                    .employeeName = rs["EMPNAME"].TextOrEmpty(),
                    .instruction = rs["SINAME"].TextOrEmpty(),
                    .serial = rs["SERIALNO"].ToLong(),
                    .emi = rs["MDFYAMT"].ToDouble(),
                    .netPay = rs["NETAMOUNT"].ToDouble(),
                    .gross = rs["ETOTAL"].NumberOr0()});
  }
  return rows;
}

void FillPreference(std::vector<PreferenceRow>& rows, const PreferenceTerms& terms, int roundType) {
  double net = 0, floor = 0;
  const PreferenceRow* previous = nullptr;
  for (PreferenceRow& row : rows) {
    if (previous == nullptr || previous->employee != row.employee) {
      net = row.netPay;
      floor = FloorOf(terms, row.gross, roundType);
    }
    const double missing = floor - net;
    Move(row, net, net >= floor ? 0 : terms.partial && missing < row.emi ? missing : row.emi);
    row.floor = floor;
    row.ticked = row.moved > 0;
    previous = &row;
  }
  for (PreferenceRow& row : rows) {
    if (!row.held) continue;
    row.moved = 0;
    row.after = row.before;
    row.ticked = false;
  }
}

std::vector<std::size_t> RecalcEmployee(std::vector<PreferenceRow>& rows, std::size_t line, bool partial) {
  std::vector<std::size_t> lines;
  for (std::size_t each = 0; each < rows.size(); ++each) {
    if (rows[each].employee == rows[line].employee) lines.push_back(each);
  }
  double net = rows[lines.front()].before;
  const double floor = rows[lines.front()].floor;
  for (const std::size_t each : lines) {
    PreferenceRow& row = rows[each];
    const bool moves = row.ticked && net < floor;
    Move(row, net, !moves ? 0 : partial && row.emi + net > floor ? floor - net : row.emi);
  }
  return lines;
}

bool IsHeld(Session& session, long employee, long monthYear) {
  return EmpLockStatusOf(session, employee) == 1 ||
         (session.features.On("EMPLOCKYN") && IsEmployeeLocked(session, employee, monthYear, kNoEnd));
}

}  // namespace ktl
