#pragma once

#include <array>
#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace ktl {

using Day = std::chrono::year_month_day;

// Month-years: year * 12 + month.
constexpr int MonthNo(int year, int month) { return year * 12 + month; }
constexpr int MonthNo(const Day& day) { return int(day.year()) * 12 + int(unsigned(day.month())); }
constexpr Day FirstDay(int month) {
  return Day{std::chrono::year((month - 1) / 12), std::chrono::month(unsigned((month - 1) % 12 + 1)),
             std::chrono::day(1)};
}
constexpr int DaysIn(int month) {
  const Day first = FirstDay(month);
  return int(
      unsigned(std::chrono::year_month_day_last(first.year(), first.month() / std::chrono::last).day()));
}
constexpr Day LastDay(int month) { return FirstDay(month).year() / FirstDay(month).month() / DaysIn(month); }
inline Day AddDays(const Day& day, int days) { return std::chrono::sys_days(day) + std::chrono::days(days); }

// The salary months of the sample company.
inline constexpr int kFirstMonth = MonthNo(2024, 4);
inline constexpr int kLastLockedMonth = MonthNo(2025, 3);
inline constexpr int kLastAttendanceLock = MonthNo(2025, 6);
inline constexpr int kSalaryTo =
    MonthNo(2026, 9);  // the last month with a calculated salary, unless asked otherwise
inline constexpr int kLastMonth = MonthNo(2027, 3);

// Employees with figures worked out by hand; the same in every company.
inline constexpr int kAnchors = 60;

enum class SampleType { Advance = 1, Loan, Insurance, Sss, GroupInsurance, Incentive = 7 };

struct SampleDetail {
  int id = 0;  // EMPDETID
  Day from{};
  std::optional<Day> to;
  int branch = 1;
  int head = 1;
  int structure = 1;
  const char* designation = "";
  const char* occupation = "";
  const char* department = "";
  const char* division = "";
  const char* grade = "";
};

struct SamplePerson {
  int id = 0;
  std::string refNo;
  std::string name;
  const char* sex = "M";
  Day joined{};
  std::optional<Day> left;
  Day born{};
  Day salaryFrom{};
  std::optional<Day> resigned;
  std::optional<Day> confirmed;
  bool pf = true;
  bool pfRestricted = false;
  bool esi = false;
  bool ptZero = false;
  bool tds = true;
  bool locked = false;
  std::vector<SampleDetail> details;  // in the order of their ids
  double basic = 20000;               // at joining, or in Apr/2024
  double special = 9150;
  bool rises = false;  // 5 % each April
};

// Nothing where a column stays null.
struct SampleInstalment {
  int month = 0;
  int counter = 0;
  double amount = 0;
  double modified = 0;
  std::optional<double> actualPrincipal;
  std::optional<double> actualInterest;
  std::optional<double> modifiedPrincipal;
  std::optional<double> modifiedInterest;
  std::optional<double> interest;
  int institution = 0;
  bool recovered = false;
  std::optional<std::string> remarks;
};

struct SampleReceipt {
  Day date{};
  double amount = 0;
};

struct SampleInstruction {
  SampleType type = SampleType::Advance;
  int serial = 1;
  const char* name = "";
  std::optional<std::string> accountNo;
  Day date{};
  double amount = 0;
  std::optional<double> interest;
  std::optional<std::string> remarks;
  std::vector<SampleInstalment> rows;
  std::vector<SampleReceipt> receipts;
  // Of a premium or an incentive.
  int firstMonth = 0;
  int lastMonth = 0;
  double fundPercent = 0;  // of an incentive that counts for the provident fund
  bool professionTax = false;
};

struct SampleLeave {
  Day day{};
  int kind = 0;       // of ATT_DEFINITION
  bool half = false;  // the first half of the day
};

// All that is known of one employee while his rows are written.
struct SampleBook {
  SamplePerson person;
  std::vector<SampleInstruction> instructions;  // in the order of type and serial number
  std::vector<SampleLeave> leave;
};

// The detail row that holds on a day: the latest one not after it.
const SampleDetail* DetailOn(const SamplePerson& person, const Day& day);

}  // namespace ktl
