#include "company/sample_attendance.h"

#include <algorithm>

#include "company/random.h"

namespace ktl {
namespace {

using namespace std::chrono_literals;

constexpr int kMonthlyHead = 3;
constexpr int kFixedHead = 26;
constexpr int kCasualLeave = 4;
constexpr int kAdvancedLeaveFrom = MonthNo(2025, 10);  // months before it count by days, from it on by period

constexpr const char* kLists = R"sql(
INSERT INTO MAS_ATTHEAD (ATTHEADID, ATTHEADNAME, ATTMENUNAME, ATTDESC, ATTNTIGHTYN, ATTNTYPE, NODFORCALC, OT1YN, OT2YN) VALUES
  (1, 'General', 'General', 'General shift', 1, 2, 2, 0, 0), (2, 'Factory', 'Factory', 'Factory floor', 1, 2, 4, 1, 0),
  (3, 'Monthly', 'Monthly', 'Monthly entry', 1, 4, 1, 0, 0), (4, 'Fixed 26', 'Fixed 26', '26 days', 1, 2, 3, 0, 0),
  (5, 'Office', 'Office', 'Office', 1, 2, 5, 0, 0), (6, 'Shift', 'Shift', 'Rotating shifts', 0, 3, 6, 0, 1);
INSERT INTO ATT_OPTSETTINGS (ATTHEADID, HOLPRIORITY, COCWYN) VALUES
  (1, 0, 0), (2, 0, 0), (3, 0, 0), (4, 0, 0), (5, 1, 0), (6, 0, 1);
INSERT INTO ATT_DEFINITION (LEVID, LEVSHORT, LEAVEYN, AFFECTSALARYYN) VALUES
  (1, 'LOP', 1, 1), (2, 'TR', 0, 0), (3, 'OD', 0, 0), (4, 'CL', 1, 0), (5, 'SL', 1, 0), (6, 'PL', 1, 0), (7, 'ML', 1, 1),
  (8, 'WFH', 0, 0);
INSERT INTO ATT_WEEKLY (ATTHEADID, WEEKID, FIRSTHALF, SECONDHALF) VALUES
  (1, 1, 1, 1), (2, 1, 1, 1), (2, 7, 0, 1), (3, 1, 1, 1), (4, 1, 1, 1), (5, 1, 1, 1), (6, 1, 1, 1);
INSERT INTO LEV_WEEKLYHLD (ATTHEADID, WEEKID, EFFFROM, FH1YN, SH1YN, FH2YN, SH2YN, FH3YN, SH3YN, FH4YN, SH4YN, FH5YN, SH5YN) VALUES
  (1, 1, 24292, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1), (1, 7, 24292, 0, 0, 1, 1, 0, 0, 1, 1, 0, 0),
  (2, 1, 24292, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1), (3, 1, 24292, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1),
  (4, 1, 24292, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1), (5, 1, 24292, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1),
  (5, 7, 24316, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1), (6, 1, 24292, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1);
INSERT INTO LEV_WEEKLYHLDBRANCH (WHID, BRANCHID, WEEKID, EFFFROM, FH1YN, SH1YN, FH2YN, SH2YN, FH3YN, SH3YN, FH4YN, SH4YN, FH5YN, SH5YN)
VALUES (1, 3, 6, 24292, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1), (2, 3, 7, 24292, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1);
INSERT INTO ATT_WKLYROT (EMPID, ATTHEADID, WEEKDATE, FIRSTHALFYN, SECONDHALFYN) VALUES
  (21, 0, '2026-09-03', 1, 1), (21, 0, '2026-09-10', 1, 1), (21, 0, '2026-09-17', 1, 0), (21, 0, '2026-09-24', 1, 1),
  (0, 6, '2026-08-04', 1, 1), (0, 6, '2026-08-11', 1, 1), (0, 6, '2026-08-18', 1, 1), (0, 6, '2026-08-25', 1, 1),
  (0, 0, '2026-07-06', 1, 1), (0, 0, '2026-07-07', 0, 1);
INSERT INTO ATT_HOLIDAY (HOLIDAYID, HOLIDAYDATE, ATTHEADID, BRANCHID) VALUES
  (1, '2026-09-14', NULL, NULL), (2, '2026-03-04', 0, NULL), (3, '2026-08-26', 2, NULL), (4, '2026-11-01', NULL, 3);
)sql";

// The five fixed days of every year. The first of May is no holiday of head 5, Christmas none of branch 4.
void WriteFixedHolidays(SqliteDatabase& database) {
  constexpr std::chrono::month_day kDays[] = {std::chrono::January / 26, std::chrono::May / 1,
                                              std::chrono::August / 15, std::chrono::October / 2,
                                              std::chrono::December / 25};
  RowWriter holiday(database, "ATT_HOLIDAY (HOLIDAYID, HOLIDAYDATE)");
  RowWriter exception(database, "ATT_HOLEX (HOLIDAYID, ATTHEADID, BRANCHID)");
  int id = 10;
  for (int year = 2024; year <= 2027; ++year) {
    for (const auto& day : kDays) {
      const Day date = std::chrono::year(year) / day.month() / day.day();
      holiday(++id, date);
      if (day.month() == std::chrono::May) exception(id, 5, nullptr);
      if (day.month() == std::chrono::December) exception(id, nullptr, 4);
    }
  }
}

bool IsMonthly(const SamplePerson& person) { return person.details.front().head == kMonthlyHead; }

double MonthlyLeave(const SamplePerson& person, int month) { return (person.id + month) % 3 == 0 ? 1.5 : 1; }

// One financial year's leave, never two days on one date.
void AddYear(std::vector<SampleLeave>& leave, const SamplePerson& person, int year, Random& random) {
  const Day asOf = LastDay(kSalaryTo);
  const int days = random.Between(6, 14);
  const int gap = 365 / days;
  for (int i = 0; i < days; ++i) {
    const Day day = AddDays(FirstDay(MonthNo(year, 4)), i * gap + random.Between(0, gap - 1));
    const int kind = random.Between(kCasualLeave, kCasualLeave + 2);
    const bool half = random.Percent(25);
    if (day < person.salaryFrom || day > asOf || (person.left && day > *person.left)) continue;
    leave.push_back({day, kind, half});
  }
}

}  // namespace

void WriteAttendanceMasters(SqliteDatabase& database) {
  database.RunScript(kLists);
  WriteFixedHolidays(database);
  RowWriter days(database, "SLC_ATTHEADNOD (ATTHEADID, MONTHYEAR, NOD)");
  for (int month = kFirstMonth; month <= kLastMonth; ++month) days(4, month, double(kFixedHead));
}

std::vector<SampleLeave> MakeLeave(std::uint64_t seed, const SamplePerson& person) {
  std::vector<SampleLeave> leave;
  if (person.id == 1) return {{2026y / 9 / 8, kCasualLeave, false}, {2026y / 9 / 10, kCasualLeave, true}};
  if (person.id <= kAnchors || IsMonthly(person)) return leave;
  Random random(seed, static_cast<std::uint64_t>(person.id), Topic::Leave);
  for (int year = 2024; year <= 2026; ++year) AddYear(leave, person, year, random);
  return leave;
}

double LeaveDays(const SampleBook& book, int month) {
  if (IsMonthly(book.person)) return MonthlyLeave(book.person, month);
  double days = 0;
  for (const auto& leave : book.leave) {
    if (MonthNo(leave.day) == month) days += leave.half ? 0.5 : 1;
  }
  return days;
}

AttendanceWriter::AttendanceWriter(SqliteDatabase& database, int salaryTo)
    : salaryTo_(salaryTo),
      leave_(database, "ATT_DETAIL (EMPID, LEVDATE, LEVID, FIRSTHALFYN, SECONDHALFYN)"),
      advancedLeave_(
          database,
          "LEV_DETAILS (EMPID, EMPDETID, LEVID, LEAVEDATE, FIRSTHALFYN, SECONDHALFYN, LEVMONTHLY, TAKEN)"),
      monthly_(database, "ATT_MONTH (ATTSLNO, EMPID, EMPDETID, MONTHYEAR)"),
      monthlyLeave_(database, "ATT_MONTHLEV (ATTSLNO, LEVID, LEVVALUE)"),
      hours_(database, "LEV_MONTHDET (EMPID, EMPDETID, MONTHYEAR, ADJHRS)"),
      carried_(database, "LEV_ADJUSTMENT (EMPID, LEVID, ATTHEADID, ASONDATE, TAKEN)") {}

void AttendanceWriter::Write(const SampleBook& book) {
  WriteLeave(book);
  WriteMonths(book.person);
  const SamplePerson& person = book.person;
  if (person.id > kAnchors && person.id % 100 == 17) {
    carried_(person.id, kCasualLeave, person.details.front().head, 2025y / 10 / 1, 2.0);
  }
}

void AttendanceWriter::WriteLeave(const SampleBook& book) {
  for (const auto& leave : book.leave) {
    const bool advanced = MonthNo(leave.day) >= kAdvancedLeaveFrom;
    // The first anchor's leave stands on both sides.
    if (!advanced || book.person.id == 1) leave_(book.person.id, leave.day, leave.kind, 1, !leave.half);
    if (!advanced) continue;
    const auto* detail = DetailOn(book.person, leave.day);
    advancedLeave_(book.person.id, detail ? std::optional(detail->id) : std::nullopt, leave.kind, leave.day,
                   1, !leave.half, 0.0, leave.half ? 0.5 : 1.0);
  }
}

void AttendanceWriter::WriteMonths(const SamplePerson& person) {
  const int last = person.left ? std::min(salaryTo_, MonthNo(*person.left)) : salaryTo_;
  for (int month = std::max(kFirstMonth, MonthNo(person.salaryFrom)); month <= last; ++month) {
    const auto* detail = DetailOn(person, LastDay(month));
    if (!detail) continue;
    if (IsMonthly(person)) {
      monthly_(nextMonthly_, person.id, detail->id, month);
      monthlyLeave_(nextMonthly_++, kCasualLeave, MonthlyLeave(person, month));
    }
    if (person.id == 1 || detail->structure == 3) hours_(person.id, detail->id, month, 4.0);
  }
}

}  // namespace ktl
