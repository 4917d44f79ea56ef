#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "database/connection.h"
#include "database/recordset.h"
#include "support/company_store.h"

namespace ktl::test {

// One row being put into a company. The row is written when the builder ends.
class RowBuilder {
 public:
  RowBuilder(Connection& cn, std::string table) : cn_(&cn), table_(std::move(table)) {}
  RowBuilder(RowBuilder&& other) noexcept;
  RowBuilder(const RowBuilder&) = delete;
  RowBuilder& operator=(const RowBuilder&) = delete;
  ~RowBuilder() noexcept(false);

  RowBuilder& With(std::string column, Value value);

 private:
  Connection* cn_;
  std::string table_;
  std::vector<Assignment> values_;
};

class EmployeeBuilder : public RowBuilder {
 public:
  using RowBuilder::RowBuilder;
  EmployeeBuilder& Named(const char* name) { return Set("EMPNAME", name); }
  EmployeeBuilder& Ref(const char* refNo) { return Set("REFNO", refNo); }
  EmployeeBuilder& Joined(const char* date) { return Set("DOJ", date); }
  EmployeeBuilder& Left(const char* date) { return Set("DOL", date); }
  EmployeeBuilder& Taxed(bool on = true) { return Set("TDSYN", on); }

 private:
  EmployeeBuilder& Set(const char* column, Value value) {
    With(column, std::move(value));
    return *this;
  }
};

class NameBuilder : public RowBuilder {
 public:
  using RowBuilder::RowBuilder;
  NameBuilder& Reducing(double rate = 0);
  NameBuilder& SeparateInterest() { return Set("SEPPIYN", true); }
  NameBuilder& Benefit() { return Set("SBIIFBYN", true); }

 private:
  NameBuilder& Set(const char* column, Value value) {
    With(column, std::move(value));
    return *this;
  }
};

// A company of its own for one test, made from a template; it goes with the test.
class TestCompany {
 public:
  TestCompany();
  TestCompany(const TestCompany&) = delete;
  TestCompany& operator=(const TestCompany&) = delete;

  Connection& Cn() { return cn_; }
  std::filesystem::path File() const { return store_->File(); }
  std::string ConnectionString() const { return store_->ConnectionString(); }

  // What a statement about a table that is not there tells.
  std::string NoSuchTable(const char* table) const;

  std::int64_t Execute(std::string_view sql) { return cn_.Execute(sql); }
  // A statement that the language of the program does not have, in words that every store takes.
  void Alter(const std::string& sql) { store_->Alter(sql); }
  // From now on what is "INSERT", "UPDATE" or "DELETE" of these rows fails: "NEW.EMPID = 18".
  void FailOn(const char* what, const char* table, const std::string& rows);
  Value One(std::string_view sql);
  // Fields with "|" between them, rows with line breaks; a null is "NULL".
  std::string Rows(std::string_view sql);

  // "01/Apr/2010" as days are written; amounts as numbers. A month is year * 12 + month.
  EmployeeBuilder Employee(int employee);
  // An instruction name of a type: 1 advance, 2 loan, 3 insurance, 4 SSS, 5 group insurance, 7 incentive.
  NameBuilder Name(int type, const char* name);
  RowBuilder Row(std::string table) { return {cn_, std::move(table)}; }
  void Months(int first, int last);
  void Lock(int month);
  void Institution(int id, const char* name, int type);
  // The instruction alone; Emi adds its instalments.
  RowBuilder Advance(int employee, int serial, const char* name, double amount,
                     const char* date = "01/Apr/2024");
  RowBuilder Loan(int employee, int serial, const char* name, double amount,
                  const char* date = "01/Apr/2024");
  RowBuilder Emi(int employee, int type, int serial, int counter, int month, double amount);
  RowBuilder Receipt(int employee, int type, int serial, int counter, const char* date, double amount);
  // A calculated salary of a month, with its deductions row.
  void Salary(int employee, int month, double total, double net, double loan = 0, double advance = 0);

 private:
  RowBuilder Instruction(int type, int employee, int serial, const char* name, double amount,
                         const char* date);

  std::unique_ptr<CompanyStore> store_;
  Connection cn_;  // goes before the store
};

}  // namespace ktl::test
