#include "company/sample.h"

#include <fmt/format.h>

#include <algorithm>

#include "company/company_error.h"
#include "company/sample_attendance.h"
#include "company/sample_masters.h"
#include "company/sample_people.h"
#include "company/sample_premiums.h"
#include "company/sample_salary.h"
#include "company/sample_security.h"
#include "company/sample_tax.h"

namespace ktl {
namespace {

struct Variant {
  const char* name;
  const char* change;
};

constexpr Variant kVariants[] = {
    {"advoff", "UPDATE MAS_OPTSETFEATURE SET ADVANCEYN = 0"},
    {"classsec", "UPDATE MAS_OPTSET SET CLASSSECURITYN = 1"},
    {"loanoff", "UPDATE MAS_OPTSETFEATURE SET LOANYN = 0"},
    // Salary months from the 26th to the 25th; one month has no range.
    {"midmonth", R"sql(
UPDATE MAS_OPTSETFEATURE SET CALCINMIDYN = 1;
UPDATE MAS_MONTHYEAR SET CALCSTARTDATE = date(CALCSTARTDATE, '-1 month', '+25 days'), CALCENDDATE = date(CALCSTARTDATE, '+24 days');
DELETE FROM MAS_MONTHSALDATE;
INSERT INTO MAS_MONTHSALDATE SELECT MONTHYEAR, CALCSTARTDATE, CALCENDDATE FROM MAS_MONTHYEAR WHERE MONTHYEAR <> 24310;
)sql"},
    {"noadv", "UPDATE MAS_OPTSETFEATURE SET ADVMGALYN = 0"},
    {"noaudit", "UPDATE MAS_OPTSETFEATURE SET AUDITTRAILYN = 0"},
    {"nohvn", "DROP TABLE HVN_ATTENDANCE"},
    {"nolock", "UPDATE MAS_OPTSETFEATURE SET EMPLOCKYN = 0"},
    {"norule", "UPDATE MAS_OPTSETFEATURE SET INTFRLNRULE = NULL"},
    {"refno", "UPDATE MAS_OPTSET SET EMPREFNOYN = 1"},
    {"round1", "UPDATE MAS_OPTSET SET ROUNDTYPE = 1"},
    {"round2", "UPDATE MAS_OPTSET SET ROUNDTYPE = 2"},
    {"round3", "UPDATE MAS_OPTSET SET ROUNDTYPE = 3"},
    {"round4", "UPDATE MAS_OPTSET SET ROUNDTYPE = 4"},
    {"round5", "UPDATE MAS_OPTSET SET ROUNDTYPE = 5"},
    {"round6", "UPDATE MAS_OPTSET SET ROUNDTYPE = 6"},
    {"mar2feb", "UPDATE MAS_OPTSET SET TDSMAR2FEB = 1"},
};

void ApplyVariants(SqliteDatabase& database, const std::vector<std::string>& names) {
  for (const auto& name : names) {
    const auto found = std::find_if(std::begin(kVariants), std::end(kVariants),
                                    [&](const auto& variant) { return name == variant.name; });
    if (found == std::end(kVariants)) throw CompanyError(fmt::format("There is no variant \"{}\".", name));
    database.RunScript(found->change);
  }
}

void WriteOptions(SqliteDatabase& database, int salaryTo) {
  database.RunScript(fmt::format(R"sql(
UPDATE MAS_OPTSET SET STARTMONTHYEAR = {}, ENDMONTHYEAR = {}, DEFMONTHYEAR = {}, COMPPFESIPERYN = 1, BRGHEFROM = '2026-01-01';
UPDATE MAS_OPTSETFEATURE SET ADVLEAVEYN = 1, LVSTARTMNYEAR = {}, INTFRLNRULE = 2027;
)sql",
                                 kFirstMonth, kLastMonth, salaryTo + 1, MonthNo(2025, 10)));
}

// Indexes of the large tables are made after their rows: in order, and in one go.
class IndexesAside final {
 public:
  IndexesAside(SqliteDatabase& database, const std::vector<std::string>& tables) : database_(database) {
    for (const auto& table : tables) {
      const std::string ofTable = fmt::format(
          "FROM sqlite_master WHERE type = 'index' AND sql IS NOT NULL AND tbl_name = '{}'", table);
      const auto texts = FirstColumn(database, "SELECT sql " + ofTable);
      for (const auto& name : FirstColumn(database, "SELECT name " + ofTable))
        database.RunScript("DROP INDEX " + name);
      texts_.insert(texts_.end(), texts.begin(), texts.end());
    }
  }
  void Restore() {
    for (const auto& text : texts_) database_.RunScript(text);
  }

 private:
  SqliteDatabase& database_;
  std::vector<std::string> texts_;
};

void WriteEmployees(SqliteDatabase& database, const SampleOptions& options) {
  SamplePeople people(options.seed);
  SampleLoans loans(options.seed, options.employees, options.targets);
  PeopleWriter peopleWriter(database);
  LoanWriter loanWriter(database);
  PremiumWriter premiumWriter(database);
  AttendanceWriter attendanceWriter(database, options.salaryTo);
  SalaryWriter salaryWriter(database, options.seed, options.salaryTo);
  for (int id = 1; id <= options.employees; ++id) {
    SampleBook book{people.Make(id), {}, {}};
    book.instructions = loans.Make(book.person);
    book.leave = MakeLeave(options.seed, book.person);
    peopleWriter.Write(book.person);
    for (const auto& loan : book.instructions) loanWriter.Write(id, loan);
    if (id <= kAnchors || !options.targets.Any()) {
      for (auto& premium : MakePremiums(options.seed, book.person)) {
        premiumWriter.Write(id, premium);
        loanWriter.WriteInstalments(id, premium);
        book.instructions.push_back(std::move(premium));
      }
    }
    attendanceWriter.Write(book);
    salaryWriter.Write(book);
  }
}

}  // namespace

void FillSample(SqliteDatabase& database, const SampleOptions& options) {
  if (options.employees < kAnchors)
    throw CompanyError(fmt::format("A sample company has at least {} employees.", kAnchors));
  IndexesAside indexes(database, {"INS_EMIDETAIL", "SLC_SALARYCALC_E", "SLC_SALARYRATE_E", "HVN_ATTENDANCE"});
  database.RunScript("BEGIN");
  WriteMasters(database);
  WriteAttendanceMasters(database);
  WriteOptions(database, options.salaryTo);
  WriteSecurity(database, options.employees);
  WriteEmployees(database, options);
  WriteHouseLoans(database);
  WriteClassSecurity(database);
  WriteReimbursements(database);
  WriteArrears(database);
  WriteIncomeTax(database);
  indexes.Restore();
  ApplyVariants(database, options.variants);
  database.RunScript("COMMIT");
}

std::vector<std::string> VariantNames() {
  std::vector<std::string> names;
  for (const auto& variant : kVariants) names.emplace_back(variant.name);
  return names;
}

}  // namespace ktl
