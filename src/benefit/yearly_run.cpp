#include "benefit/yearly_run.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <utility>

#include "common/amounts.h"
#include "database/recordset.h"
#include "frame/rights.h"
#include "frame/session.h"
#include "frame/writing_turn.h"
#include "runtime/numbers.h"
#include "screen/progress.h"

namespace ktl {

namespace {

constexpr long kMenu = 19;
constexpr long kNeverYet = 2099;
constexpr const char* kDeed = "Automated Interest Free Loan Calculation Updated";
constexpr const char* kCalculating = "Calculating the benefit";

void UndoWithoutBenefit(Session& session, const BenefitYear& year) {
  Recordset rs(session.Cn,
               session.Sql(" SELECT EMPID from MAS_LOANINTUPDATE WHERE isnull(ORIGINALINT,0)=0 AND "
                           "FINANCIALYEAR = {}",
                           year.firstYear));
  for (; !rs.Eof(); rs.MoveNext()) PortBenefit(session, year, rs["EMPID"].ToLong(), 0);
  session.Cn.Execute(
      session.Sql(" DELETE FROM MAS_LOANINTUPDATE  WHERE isnull(ORIGINALINT,0)=0  AND FINANCIALYEAR = {}",
                  year.firstYear));
}

// The number of the year's oldest rate.
long RateIdOf(Session& session, const BenefitYear& year) {
  return session.data
      .Guarding(session.Sql("SELECT INTID FROM MAS_LOANINT WHERE FINANCIALYEAR = {}", year.firstYear))
      .ToLong();
}

// The figures of an employee as they go into his row.
struct Benefit {
  Benefit(const Recordset& main, long rateId)
      : employee(main["EMPID"].IsNull() ? 0 : main["EMPID"].ToLong()),
        figures{{{"INTID", static_cast<double>(rateId)},
                 {"MDFYPRNAMT", main["MOD PRNC"].NumberOr0()},
                 {"MDFYINTAMT", main["INTEREST"].NumberOr0()},
                 {"OPBAL", main["OPBAL"].NumberOr0()},
                 {"SBIINT", main["SBI INT"].NumberOr0()},
                 {"ORIGINALINT", std::max(main["TOTAL"].NumberOr0(), 0.0)}}} {}

  double amount() const { return figures.back().second; }
  bool IsStoredIn(const Recordset& row) const {
    return !row.Eof() && !row["EDITEDINT"].IsNull() && std::ranges::all_of(figures, [&](const auto& figure) {
      return !row[figure.first].IsNull() && row[figure.first].NumberOr0() == figure.second;
    });
  }

  long employee;
  std::array<std::pair<const char*, double>, 6> figures;
};

Recordset StoredBenefit(Session& session, const BenefitYear& year, long employee, OpenMode mode) {
  return Recordset(session.Cn,
                   session.Sql("SELECT * FROM MAS_LOANINTUPDATE WHERE FINANCIALYEAR = {} AND EMPID = {}",
                               year.firstYear, employee),
                   mode);
}

// Between the look at what is stored and the writing nobody else writes. Where all of it is stored already
// nothing is written.
void StoreBenefit(Session& session, const BenefitYear& year, const Benefit& benefit) {
  if (benefit.IsStoredIn(StoredBenefit(session, year, benefit.employee, OpenMode::ReadOnly))) return;
  WritingTurn turn(
      session, [] { return std::string(); }, std::nullopt);
  Recordset row = StoredBenefit(session, year, benefit.employee, OpenMode::Update);
  const bool isNew = row.Eof();
  if (isNew && benefit.employee == 0) return;
  const bool edited = !isNew && row["EDITEDINT"].NumberOr0() != row["ORIGINALINT"].NumberOr0();
  if (isNew) {
    row.AddNew();
    row.Set("FINANCIALYEAR", year.key);
    row.Set("EMPID", benefit.employee);
  }
  for (const auto& [field, figure] : benefit.figures) row.Set(field, figure);
  if (!edited) row.Set("EDITEDINT", benefit.amount());
  row.Update();
  turn.End();
}

void StoreBenefits(Session& session, Progress& progress, const BenefitYear& year, Recordset& benefits) {
  if (benefits.Eof()) return;
  const long rateId = RateIdOf(session, year);
  Progress::Work work(progress, static_cast<int>(benefits.RecordCount()));
  for (int stored = 1; !benefits.Eof(); benefits.MoveNext(), ++stored) {
    StoreBenefit(session, year, Benefit(benefits, rateId));
    work.Advance(fmt::format("Employees calculated: {}", stored));
  }
}

}  // namespace

void RecalculateBenefit(Session& session, Progress& progress, const BenefitYear& year, LoanRule rule) {
  const YearlyStatements statements = WriteYearlyStatements(session, year, rule);
  Recordset benefits;
  {
    Progress::Work work(progress, 3);
    work.Advance(kCalculating);
    session.Cn.Execute(statements.clearWithoutBenefit);
    session.Cn.Execute(statements.clearUnlisted);
    UndoWithoutBenefit(session, year);
    work.Advance(kCalculating);
    benefits.Open(session.Cn, statements.main);
  }
  StoreBenefits(session, progress, year, benefits);
}

void PortBenefit(Session& session, const BenefitYear& year, long employee, double amount) {
  const auto number = [&](const Statement& sql) { return session.data.Guarding(sql).ToLong(); };
  const long assessment = number(session.Sql(
      "SELECT ASSTRANID FROM COM_CLIENTDET WHERE CLIENTID={} AND ASSYEAR={}", employee, year.closingYear));
  number(session.Sql("SELECT SALID FROM INC_SALMAIN WHERE ASSTRANID={}", assessment));
  // A row of everybody's stands for his: no row of his own is made then, and nothing is flagged.
  if (!session.data.FnBlnRecExists(
          session.Sql("SELECT EMPID FROM INC_PORTEDSTAT WHERE (EMPID = 0 OR EMPID = {}) AND FINYEAR = {}",
                      employee, year.firstYear))) {
    session.Cn.Execute(
        session.Sql("INSERT INTO INC_PORTEDSTAT (FINYEAR, EMPID) VALUES ({}, {})", year.firstYear, employee));
  }
  session.Cn.Execute(session.Sql("UPDATE INC_PORTEDSTAT SET MONTH12YN=1 WHERE EMPID={} AND FINYEAR={}",
                                 employee, year.firstYear));
  session.Cn.Execute(session.Sql("UPDATE INC_MAIN SET BENAMT2={} WHERE ASSTRANID={}", amount, assessment));
  session.Cn.Execute(session.Sql("UPDATE INC_MAIN SET DATAPORTED=1 WHERE ASSTRANID={}", assessment));
}

void PortBenefitAudited(Session& session, const BenefitYear& year, long employee, double amount) {
  const bool audited = FnBlnAuditOn(session);
  PortBenefit(session, year, employee, amount);
  if (!audited) return;
  WriteAuditTrail(session, kMenu, employee, kDeed,
                  fmt::format("{}:::Financial Year = {} - {}:Int. Benefit Amount = {}", kDeed, year.firstYear,
                              year.firstYear + 1, FormatNumber(amount, "0.00")));
}

long FirstYearOfRule(Session& session) {
  const bool known = session.data.FnBlnRecExists(
      "SELECT SC.NAME FROM SYS.TABLES ST,SYS.COLUMNS SC WHERE ST.OBJECT_ID = SC.OBJECT_ID AND ST.NAME = "
      "'MAS_OPTSETFEATURE' AND SC.NAME = 'INTFRLNRULE'");
  if (!known) return kNeverYet;
  return session.data.Guarding("SELECT INTFRLNRULE FROM MAS_OPTSETFEATURE", kNeverYet).ToLong();
}

}  // namespace ktl
