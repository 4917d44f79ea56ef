#pragma once

#include <cstdint>

#include "company/row_writer.h"
#include "company/sample_model.h"

namespace ktl {

// Attendance heads, kinds of leave, weekly and general holidays.
void WriteAttendanceMasters(SqliteDatabase& database);

// Leave by days; whoever is on the monthly head has his entered by months.
std::vector<SampleLeave> MakeLeave(std::uint64_t seed, const SamplePerson& person);
// Days of leave of a month, by days or entered as a whole.
double LeaveDays(const SampleBook& book, int month);

class AttendanceWriter final {
 public:
  AttendanceWriter(SqliteDatabase& database, int salaryTo);
  void Write(const SampleBook& book);

 private:
  void WriteLeave(const SampleBook& book);
  void WriteMonths(const SamplePerson& person);

  int salaryTo_;
  int nextMonthly_ = 1;
  RowWriter leave_;
  RowWriter advancedLeave_;
  RowWriter monthly_;
  RowWriter monthlyLeave_;
  RowWriter hours_;
  RowWriter carried_;
};

}  // namespace ktl
