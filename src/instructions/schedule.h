#pragma once

#include <optional>
#include <string>
#include <vector>

#include "instructions/instruction_parent.h"

namespace ktl {

struct Session;

enum class InstalmentRounding { NearOneRupee, NearTenRupee, NearFiftyRupee, None };

// Months past December 9999 cannot be written as dates; no schedule runs beyond it.
inline constexpr long kLastMonthYear = 9999L * 12 + 12;

// A longer schedule is asked about.
inline constexpr double kLongestTenure = 360;  // months
inline constexpr const char* kTenureQuestion =
    "Re-payment tenure exceeds 30 years.\r\nDo you want to continue?";

// How an amount is to be recovered. Either a fixed instalment, or a count that only serves to reach one.
struct ScheduleTerms {
  double total = 0;     // amount plus interest, rupees
  long firstMonth = 0;  // month-year
  std::optional<double> instalment;
  double count = 0;
  InstalmentRounding rounding = InstalmentRounding::NearOneRupee;
  // Percent per instalment month on the falling balance, undivided; 0 for a flat schedule.
  double reducingRate = 0;
};

struct ScheduleRow {
  long counter = 0;
  long monthYear = 0;
  double emiAmount = 0;
  std::optional<double> interest;  // of a reducing schedule
};

// The instalment of the terms, rounded when it comes from a count. A count of 0 raises "Division by zero"; a
// raw instalment below 0.5 with NearOneRupee formats to an empty text and raises "Type mismatch".
double InstalmentOf(const ScheduleTerms& terms);

// Consecutive months from the first one; the last row alone takes what is left, so a count of 3 can give four
// rows. An instalment of 0 or below, which would never end, raises error 5; months past kLastMonthYear raise
// "Overflow".
std::vector<ScheduleRow> GenerateSchedule(const ScheduleTerms& terms);

// Told before anything is written. Terms that come to no instalment fail when the schedule is made.
bool RunsPastLastMonth(const ScheduleTerms& terms);

// Writes the schedule of an instruction that has none: one row, one statement. False when rows are there
// already. The batch form (many employees at once) leaves the principal columns unwritten.
enum class ScheduleForm { Screen, Batch };
bool WriteSchedule(Session& session, const InstructionKey& key, const ScheduleTerms& terms, long institution,
                   ScheduleForm form);

// One month that instalments taken away are spread over.
struct OpenMonth {
  long monthYear = 0;
  double modifiedAmount = 0;
};
// The new amounts: each month takes a share of the total, rounded up to a whole rupee, the last ones what is
// left.
std::vector<OpenMonth> SpreadOver(std::vector<OpenMonth> months, double total);

}  // namespace ktl
