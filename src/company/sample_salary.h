#pragma once

#include <cstdint>

#include "company/row_writer.h"
#include "company/sample_model.h"

namespace ktl {

struct GivenSalary;

// The rates and the calculated salaries of the employees, with the attendance rows that go with them.
class SalaryWriter final {
 public:
  SalaryWriter(SqliteDatabase& database, std::uint64_t seed, int salaryTo);
  void Write(const SampleBook& book);

 private:
  struct Pay;
  struct Taken;

  static double LeaveWithoutPay(const SamplePerson& person, int month, const Taken& taken);
  static Pay Calculate(const SamplePerson& person, const SampleDetail* detail, int month, double lossOfPay);
  static Pay Given(const GivenSalary& given, const Pay& calculated);
  static Pay SecondPay();
  void WriteRates(const SamplePerson& person);
  void WriteMonth(const SampleBook& book, int month);
  void WriteSalary(int employee, int month, std::optional<int> detail, const Pay& pay, const Taken& taken);

  std::uint64_t seed_;
  int salaryTo_;
  int nextSalary_ = 1;
  int nextRate_ = 1;
  RowWriter earnings_;
  RowWriter deductions_;
  RowWriter rateEarnings_;
  RowWriter rateDeductions_;
  RowWriter units_;
  RowWriter attendance_;
};

}  // namespace ktl
