#include "support/company_fixture.h"

#include <fmt/format.h>

#include <exception>

#include "database/connection_string.h"

namespace ktl::test {

RowBuilder::RowBuilder(RowBuilder&& other) noexcept
    : cn_(std::exchange(other.cn_, nullptr)),
      table_(std::move(other.table_)),
      values_(std::move(other.values_)) {}

RowBuilder::~RowBuilder() noexcept(false) {
  if (cn_ != nullptr && std::uncaught_exceptions() == 0) cn_->driver().InsertRow(table_, values_);
}

RowBuilder& RowBuilder::With(std::string column, Value value) {
  for (auto& assignment : values_)
    if (assignment.column == column) {
      assignment.value = std::move(value);
      return *this;
    }
  values_.push_back({std::move(column), std::move(value)});
  return *this;
}

NameBuilder& NameBuilder::Reducing(double rate) {
  Set("REDUCINGBALYN", true);
  return rate == 0 ? *this : Set("INTRRATE", rate);
}

TestCompany::TestCompany() : store_(NewCompanyStore()) {
  cn_.SetClient({"PC1", "ADMIN", [] { return *Date::FromYmd(2025, 1, 15, 10, 30, 0); }});
  cn_.SetConnectionTimeout(1);
  cn_.Open(ConnectionString());
}

void TestCompany::FailOn(const char* what, const char* table, const std::string& rows) {
  const std::string rule = fmt::format("CREATE TRIGGER Fails BEFORE {} ON {} ", what, table);
  Alter(rule + (CompaniesAreOnServer() ? "FOR EACH ROW IF " + rows +
                                             " THEN SIGNAL SQLSTATE '45000' SET MESSAGE_TEXT = 'no'; END IF"
                                       : "WHEN " + rows + " BEGIN SELECT RAISE(ABORT, 'no'); END"));
}

std::string TestCompany::NoSuchTable(const char* table) const {
  if (!CompaniesAreOnServer()) return fmt::format("no such table: {}", table);
  return fmt::format("Table '{}.{}' doesn't exist", ConnectionSetting(ConnectionString(), "Database"), table);
}

Value TestCompany::One(std::string_view sql) {
  const std::optional<Value> value = cn_.FirstValue(sql);
  return value ? *value : Value();
}

std::string TestCompany::Rows(std::string_view sql) {
  std::string text;
  for (const auto& row : cn_.Query(sql).rows) {
    if (!text.empty()) text += '\n';
    for (const auto& value : row) {
      if (&value != &row.front()) text += '|';
      text += value.IsNull() ? "NULL" : value.ToText();
    }
  }
  return text;
}

EmployeeBuilder TestCompany::Employee(int employee) {
  EmployeeBuilder row(cn_, "MAS_EMPLOYEE");
  row.Named(fmt::format("Employee {}", employee).c_str()).Ref(fmt::format("R{}", employee).c_str());
  row.Joined("01/Apr/2010").With("EMPID", employee);
  return row;
}

NameBuilder TestCompany::Name(int type, const char* name) {
  NameBuilder row(cn_, "INS_MASTER");
  row.With("SITYPE", type).With("SINAME", name);
  return row;
}

void TestCompany::Months(int first, int last) {
  for (int month = first; month <= last; ++month) {
    const int year = (month - 1) / 12;
    const Date start = *Date::FromYmd(year, month - year * 12, 1);
    Row("MAS_MONTHYEAR")
        .With("MONTHYEAR", month)
        .With("LOCKEDYN", false)
        .With("ATTLOCKYN", false)
        .With("CALCSTARTDATE", start)
        .With("CALCENDDATE", start.AddMonths(1).AddDays(-1));
  }
}

void TestCompany::Lock(int month) {
  Execute(fmt::format("UPDATE MAS_MONTHYEAR SET LOCKEDYN = 1 WHERE MONTHYEAR = {}", month));
}

void TestCompany::Institution(int id, const char* name, int type) {
  Row("MAS_INSTITUTION").With("INSTID", id).With("INSTNAME", name).With("TYPEID", type);
}

RowBuilder TestCompany::Instruction(int type, int employee, int serial, const char* name, double amount,
                                    const char* date) {
  RowBuilder row(cn_, "INS_ADVLOAN");
  row.With("EMPID", employee).With("SERIALNO", serial).With("SITYPE", type).With("SINAME", name);
  row.With("SIDATE", date).With("ACTAMT", amount).With("INTAMT", 0.0);
  return row;
}

RowBuilder TestCompany::Advance(int employee, int serial, const char* name, double amount, const char* date) {
  return Instruction(1, employee, serial, name, amount, date);
}

RowBuilder TestCompany::Loan(int employee, int serial, const char* name, double amount, const char* date) {
  return Instruction(2, employee, serial, name, amount, date);
}

RowBuilder TestCompany::Emi(int employee, int type, int serial, int counter, int month, double amount) {
  RowBuilder row(cn_, "INS_EMIDETAIL");
  row.With("EMPID", employee).With("SITYPE", type).With("SERIALNO", serial).With("COUNTER", counter);
  row.With("MONTHYEAR", month).With("EMIAMT", amount).With("MDFYAMT", amount);
  return row;
}

RowBuilder TestCompany::Receipt(int employee, int type, int serial, int counter, const char* date,
                                double amount) {
  RowBuilder row(cn_, "INS_RECEIPTS");
  row.With("EMPID", employee).With("SITYPE", type).With("SERIALNO", serial).With("COUNTER", counter);
  row.With("RCPTDATE", date).With("RCPTAMT", amount);
  return row;
}

void TestCompany::Salary(int employee, int month, double total, double net, double loan, double advance) {
  const auto salary = One("SELECT ISNULL(MAX(SALID), 0) + 1 FROM SLC_SALARYCALC_E");
  Row("SLC_SALARYCALC_E")
      .With("SALID", salary)
      .With("EMPID", employee)
      .With("MONTHYEAR", month)
      .With("INDICATOR", 0)
      .With("ETOTAL", total)
      .With("NETAMOUNT", net);
  Row("SLC_SALARYCALC_D").With("SALID", salary).With("LOAN", loan).With("ADVANCE", advance);
}

}  // namespace ktl::test
