#include "benefit/benefit_rows.h"

#include <fmt/format.h>

#include "benefit/benefit_holders.h"
#include "benefit/yearly_statement.h"
#include "common/amounts.h"
#include "common/typed_amount.h"
#include "database/recordset.h"
#include "frame/session.h"
#include "frame/writing_turn.h"
#include "runtime/numbers.h"
#include "runtime/text.h"

namespace ktl {

namespace {

std::string Shown(double amount) { return FormatNumber(amount, "0.00"); }

Recordset StoredAsShown(Session& session, const BenefitYear& year, const BenefitRow& shown) {
  Recordset row(session.Cn,
                session.Sql("SELECT * FROM MAS_LOANINTUPDATE WHERE FINANCIALYEAR = {} AND EMPID = {}",
                            year.firstYear, shown.employee),
                OpenMode::Update);
  if (row.Eof() || row["EDITEDINT"].NumberOr0() != shown.edited ||
      row["ORIGINALINT"].NumberOr0() != shown.original)
    throw ChangedMeanwhile();
  return row;
}

}  // namespace

bool BenefitRow::IsEdited() const { return Shown(edited) != Shown(original); }

std::vector<BenefitRow> ReadBenefitRows(Session& session, const BenefitYear& year,
                                        const std::string& search) {
  const Statement filter = EmployeeFilter(session, search);
  std::vector<BenefitRow> rows;
  Recordset rs(
      session.Cn,
      session.Sql(
          "SELECT DISTINCT CASE WHEN EXISTS ( SELECT EMPREFNOYN FROM MAS_OPTSET WHERE EMPREFNOYN = 1 ) THEN "
          "E.REFNO ELSE CAST(E.EMPID AS NVARCHAR(10)) END AS EMPID,E.EMPID AS "
          "ID,E.REFNO,E.EMPNAME,CU.MDFYPRNAMT,CU.MDFYINTAMT,CU.OPBAL,CU.SBIINT,CU.EDITEDINT,CU.ORIGINALINT,"
          "ISNULL(CC.ASSTRANID,0) AS ASSTRANID, ISNULL(INM.BENAMT,0) AS BENAMT FROM INS_ADVLOAN IA INNER JOIN "
          "INS_EMIDETAIL IE ON IA.EMPID = IE.EMPID AND IA.SERIALNO = IE.SERIALNO AND IA.SITYPE = IE.SITYPE "
          "INNER JOIN INS_MASTER IM ON IM.SITYPE = IA.SITYPE AND IM.SINAME = IA.SINAME INNER JOIN MAS_EMPLOYEE "
          "E ON E.EMPID = IA.EMPID LEFT JOIN MAS_LOANINTUPDATE CU ON CU.EMPID = E.EMPID LEFT JOIN "
          "COM_CLIENTDET CC ON CC.CLIENTID = E.EMPID AND CC.ASSYEAR = {} LEFT JOIN INC_MAIN INM ON "
          "INM.ASSTRANID = CC.ASSTRANID WHERE IE.MONTHYEAR BETWEEN {} AND {} AND IA.SITYPE<=2 AND E.TDSYN=1 "
          "AND IM.SEPPIYN=1 AND IM.SBIIFBYN=1 AND CU.FINANCIALYEAR = {}{} ORDER BY {}",
          year.closingYear, year.firstMonth, year.lastMonth, year.firstYear, filter,
          Statement(session.options.EMPREFNOYN ? "REFNO" : "ID")));
  rows.reserve(rs.RecordCount());
  for (; !rs.Eof(); rs.MoveNext()) {
    rows.push_back({.employee = rs["ID"].ToLong(),
                    .number = rs["EMPID"].TextOrEmpty(),
                    .name = rs["EMPNAME"].TextOrEmpty(),
                    .opening = rs["OPBAL"].NumberOr0(),
                    .principal = rs["MDFYPRNAMT"].NumberOr0(),
                    .interest = rs["MDFYINTAMT"].NumberOr0(),
                    .benchmark = rs["SBIINT"].NumberOr0(),
                    .edited = rs["EDITEDINT"].NumberOr0(),
                    .original = rs["ORIGINALINT"].NumberOr0(),
                    .fromTax = rs["BENAMT"].NumberOr0()});
  }
  return rows;
}

void RequireAsShown(Session& session, const BenefitYear& year, const std::vector<const BenefitRow*>& shown) {
  for (const BenefitRow* row : shown) StoredAsShown(session, year, *row);
}

std::optional<double> TypedBenefit(std::string typed, std::string& refused) {
  typed = Trim(ReplaceAll(std::move(typed), "-", ""));
  refused = RefusedAmount(typed);
  if (!refused.empty()) return std::nullopt;
  return Val(Shown(ParseNumber(typed).value_or(0)));
}

// The year is no condition: a row of another year with the same number of its rate would change as well.
void StoreEdited(Session& session, const BenefitYear& year, const BenefitRow& shown, double benefit) {
  const Recordset row = StoredAsShown(session, year, shown);
  session.Cn.Execute(session.Sql("UPDATE MAS_LOANINTUPDATE SET EDITEDINT={} WHERE INTID={} AND EMPID={}",
                                 benefit, static_cast<long>(row["INTID"].NumberOr0()), shown.employee));
}

// All of them are looked at before the first one is written.
void StorePrevious(Session& session, const BenefitYear& year, const std::vector<BenefitRow>& shown) {
  std::vector<std::pair<Recordset, double>> rows;
  for (const BenefitRow& row : shown) {
    if (row.IsEdited()) rows.emplace_back(StoredAsShown(session, year, row), row.original);
  }
  for (auto& [row, original] : rows) {
    row.Set("EDITEDINT", original);
    row.Update();
  }
}

std::string BenefitLoan::Title() const {
  return fmt::format("{} ({})", name, date ? FormatDate(*date, "dd/mmm/YY") : "");
}

std::vector<BenefitLoan> ReadLoansOfEmployee(Session& session, const BenefitYear& year, long employee) {
  std::vector<BenefitLoan> loans;
  for (Recordset rs(session.Cn, LoansOfEmployee(session, year, employee)); !rs.Eof(); rs.MoveNext()) {
    loans.push_back({.name = rs["SINAME"].TextOrEmpty(),
                     .date = DateIfAny(rs["SIDATE"]),
                     .opening = rs["OPBAL"].NumberOr0(),
                     .principal = rs["MOD PRNC"].NumberOr0(),
                     .interest = rs["INTEREST"].NumberOr0(),
                     .benchmark = rs["SBI INT"].NumberOr0(),
                     .difference = rs["TOTAL"].NumberOr0()});
  }
  return loans;
}

}  // namespace ktl
