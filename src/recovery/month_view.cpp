#include "recovery/month_view.h"

#include <fmt/format.h>

#include "common/amounts.h"
#include "common/month_year.h"
#include "common/titles.h"
#include "database/recordset.h"
#include "frame/rights.h"
#include "frame/session.h"
#include "frame/writing_turn.h"
#include "instructions/components.h"
#include "instructions/instruction_statements.h"
#include "recovery/emi_months.h"
#include "runtime/numbers.h"
#include "runtime/text.h"

namespace ktl {

namespace {

constexpr std::size_t kRemarksLength = 100;

// INS_ADVLOAN and INS_OTHER each have their part.
constexpr const char* kAdvLoanRows =
    "Select PD.PDLISTDESC As INSTYPE, AL.SINAME As INSNAME, AL.SITYPE, E.SERIALNO, E.COUNTER, E.EMIAMT, "
    "E.MDFYAMT, E.REMARKS, ISM.SEPPIYN From INS_ADVLOAN AL, INS_EMIDETAIL E, MAS_PULLDOWNVALUES PD, "
    "INS_MASTER ISM Where PD.REFID = 5 And PD.PDID = AL.SITYPE And AL.EMPID = E.EMPID And AL.SITYPE = "
    "E.SITYPE And AL.SERIALNO = E.SERIALNO And ISM.SITYPE = AL.SITYPE And ISM.SINAME = AL.SINAME And "
    "E.MONTHYEAR = {} And E.EMPID = {}";
constexpr const char* kOtherRows =
    "Select PD.PDLISTDESC As INSTYPE, SI.OTHNAME As INSNAME, SI.SITYPE, E.SERIALNO, E.COUNTER, E.EMIAMT, "
    "E.MDFYAMT, E.REMARKS, 0 As SEPPIYN From INS_OTHER SI, INS_EMIDETAIL E, MAS_PULLDOWNVALUES PD Where "
    "PD.REFID = 5 And PD.PDID = SI.SITYPE And SI.EMPID = E.EMPID And SI.SITYPE = E.SITYPE And SI.SERIALNO = "
    "E.SERIALNO And E.MONTHYEAR = {} And E.EMPID = {}";

Statement RowsStatement(const Session& session, const MonthViewScope& scope, long monthYear) {
  const auto part = [&](const char* text) { return session.Sql(text, monthYear, scope.employee); };
  const Statement order(" Order By INSTYPE, INSNAME, SITYPE, SERIALNO");
  if (scope.type == InstructionType::None)
    return part(kAdvLoanRows) + Statement(" Union ") + part(kOtherRows) + order;
  const bool advLoan = IsAdvanceOrLoan(scope.type);
  return part(advLoan ? kAdvLoanRows : kOtherRows) +
         session.Sql(advLoan ? " AND E.SITYPE = {}" : " And E.SITYPE = {}", scope.type) + order;
}

// "EMPID = 17 And SITYPE = 2 And SERIALNO = 3"
Statement WhereRow(const Session& session, const InstructionKey& key) {
  return session.Sql("EMPID = {} And SITYPE = {} And SERIALNO = {}", key.employee, key.type, key.serial);
}

void WriteRow(Session& session, const MonthViewRow& row) {
  const bool apart =
      row.amount != row.MDFYAMT && IsAdvanceOrLoan(row.key.type) && KeepsComponentsApart(session, row.key);
  if (apart) StoreComponents(session, row.key);
  const Statement where = session.Sql("{} And COUNTER = {}", WhereRow(session, row.key), row.counter);
  Recordset stored(session.Cn, session.Sql("Select * From INS_EMIDETAIL Where {}", where), OpenMode::Update);
  stored.Set("MDFYAMT", row.amount ? Value(*row.amount) : Value(Null{}));
  stored.Set("REMARKS", row.remarks);
  if (apart) {
    const ChangedComponents now =
        ComponentsOfChangedAmount(row.amount.value_or(0), stored["MDFINTAMT"].NumberOr0());
    stored.Set("MDFPRNAMT", now.principal);
    stored.Set("MDFINTAMT", now.interest);
  }
  stored.Update();
}

void AuditRow(Session& session, long monthYear, const MonthViewRow& row) {
  std::string detail =
      fmt::format("::SI Type = {}:SI Name = {}:Month/Year = {}:Amount = {} ({})", row.type, row.name,
                  FnStrFormatMonthYear(monthYear), ShownAmount(row.amount), ShownAmount(row.MDFYAMT));
  if (row.remarks != row.REMARKS) detail += fmt::format(":Remarks = {} ({})", row.remarks, row.REMARKS);
  AuditInstruction(session, row.key.employee, row.type + " Updated", detail);
}

}  // namespace

long NewestMonth(Session& session, const MonthViewScope& scope, const std::vector<ListRow>& months) {
  if (months.empty()) return 0;
  Statement type;
  if (scope.type != InstructionType::None) type = session.Sql(" And SITYPE = {}", scope.type);
  return session.data.Long(
      session.Sql("Select Max(MONTHYEAR) From INS_EMIDETAIL Where EMPID = {}{}", scope.employee, type),
      static_cast<long>(Val(months.front().value)));
}

std::string MonthRowsText(Session& session, const MonthViewScope& scope, long monthYear) {
  return RowsAsText(session, RowsStatement(session, scope, monthYear));
}

std::vector<MonthViewRow> ReadMonthRows(Session& session, const MonthViewScope& scope, long monthYear) {
  std::vector<MonthViewRow> rows;
  for (Recordset rs(session.Cn, RowsStatement(session, scope, monthYear)); !rs.Eof(); rs.MoveNext()) {
    MonthViewRow& row = rows.emplace_back();
    row.key = {scope.employee, static_cast<InstructionType>(rs["SITYPE"].ToLong()), rs["SERIALNO"].ToLong()};
    row.counter = rs["COUNTER"].ToLong();
    row.type = rs["INSTYPE"].TextOrEmpty();
    row.name = rs["INSNAME"].TextOrEmpty();
    row.EMIAMT = NumberIfAny(rs["EMIAMT"]);
    row.MDFYAMT = row.amount = NumberIfAny(rs["MDFYAMT"]);
    row.REMARKS = row.remarks = rs["REMARKS"].TextOrEmpty();
    row.ownedElsewhere = IsSet(rs["SEPPIYN"]);
  }
  return rows;
}

void TakeAmount(MonthViewRow& row, std::string_view typed) {
  row.amount = RoundByPattern(clsGenCmn::FnDblTrimVal(typed), "0.00");
  row.changed = true;
}

void TakeRemarks(MonthViewRow& row, std::string_view typed) {
  row.remarks = Left(Trim(typed), kRemarksLength);
  row.changed = true;
}

bool RecoversTooMuch(Session& session, const MonthViewRow& row) {
  if (!IsAdvanceOrLoan(row.key.type)) return false;
  const Statement where = WhereRow(session, row.key);
  const Recordset given(session.Cn, session.Sql("Select ACTAMT, INTAMT From INS_ADVLOAN Where {}", where));
  if (given.Eof()) return false;
  const double receipts =
      session.data.Number(session.Sql("Select Sum(RCPTAMT) From INS_RECEIPTS Where {}", where));
  const double others = session.data.Number(
      session.Sql("Select Sum(MDFYAMT) From INS_EMIDETAIL Where {} And COUNTER <> {}", where, row.counter));
  return others + receipts + row.amount.value_or(0) > given[0].NumberOr0() + given[1].NumberOr0();
}

void RestoreAmount(Session& session, MonthViewRow& row) {
  row.amount = NumberIfAny(
      session.data.FnVarGetDbValue(session.Sql("Select MDFYAMT From INS_EMIDETAIL Where {} And COUNTER = {}",
                                               WhereRow(session, row.key), row.counter),
                                   Null{}));
}

std::optional<Refusal<NoField>> CheckMonthRows(Session& session, const MonthViewScope& scope, long monthYear,
                                               const std::vector<MonthViewRow>& rows) {
  using Refused = Refusal<NoField>;
  if (rows.empty()) return Refused{"No records to update."};
  if (IsMonthLocked(session, monthYear)) return Refused{"Month is locked.  Cannot update."};
  if (!IsEmployeeLocked(session, scope.employee, monthYear, std::to_string(monthYear))) return std::nullopt;
  return Refused{"Employee has been locked. Cannot Update.", NoField{}, Icon::Information, kDeniedTitle};
}

void WriteMonthRows(Session& session, long monthYear, const std::vector<MonthViewRow>& rows) {
  for (const MonthViewRow& row : rows) {
    if (!row.changed) continue;
    WriteRow(session, row);
    RaiseFlags(session, row.key, monthYear);
    AuditRow(session, monthYear, row);
  }
}

}  // namespace ktl
