#include "recovery/reducing_interest.h"

#include "common/amounts.h"
#include "common/month_year.h"
#include "frame/session.h"

namespace ktl {

namespace {

constexpr int kNearestRupee = 1;
constexpr double kDaysOfYear = 365;

// Interest of the whole month, before rounding.
double WholeMonth(double balance, const InterestTerms& terms, double daysOfMonth) {
  return terms.daysBasis ? balance * terms.rate * daysOfMonth / kDaysOfYear : balance * terms.rate / 12;
}

double PartOfMonth(double balance, const InterestTerms& terms, double days, double daysOfMonth) {
  const double interest = terms.daysBasis ? balance * terms.rate * days / kDaysOfYear
                                          : balance * terms.rate / 12 * days / daysOfMonth;
  return FnDblRoundByType(kNearestRupee, interest);
}

double MonthInterest(long monthYear, bool first, double balance, const InterestTerms& terms) {
  const Date firstDay = FirstDayOf(monthYear);
  const Date lastDay = firstDay.AddMonths(1).AddDays(-1);
  const double daysOfMonth = lastDay.day();
  const long leavingMonth = MonthYearOf(terms.leaving);
  if (!terms.exactDates || !(first || monthYear >= leavingMonth)) {
    return FnDblRoundByType(kNearestRupee, WholeMonth(balance, terms, daysOfMonth)) *
           (first ? terms.firstMonths : 1);
  }
  if (monthYear > leavingMonth) return 0;
  if (monthYear == leavingMonth) return PartOfMonth(balance, terms, terms.leaving.day(), daysOfMonth);
  const Date start = terms.start.value_or(firstDay);
  return PartOfMonth(balance, terms, static_cast<double>(DaysBetween(start, lastDay) + 1), daysOfMonth);
}

}  // namespace

std::vector<double> ReducingInterest(const std::vector<ScheduleMonth>& months, const InterestTerms& terms) {
  std::vector<double> interests;
  interests.reserve(months.size());
  double balance = terms.balance;
  for (const ScheduleMonth& month : months) {
    interests.push_back(MonthInterest(month.monthYear, interests.empty(), balance, terms));
    balance -= month.MDFPRNAMT.value_or(0);
  }
  return interests;
}

InterestTerms ReadInterestTerms(Session& session, const InstructionKey& key, InterestTerms chosen) {
  const auto read = [&session, &key](const char* column) {
    return session.data.Guarding(session.Sql(
        "SELECT ILA.{} FROM INS_ADVLOAN ILA WHERE ILA.EMPID = {} AND ILA.SERIALNO = {} AND ILA.SITYPE = {}",
        Statement(column), key.employee, key.serial, key.type));
  };
  const Date never = *Date::FromYmd(2099, 12, 31);
  chosen.balance = read("ACTAMT").NumberOr0();
  if (const Value start = read("SIDATE"); start.IsDate()) chosen.start = start.date().DayOnly();
  const Value leaving = session.data.Guarding(
      session.Sql("SELECT DOL FROM MAS_employee WHERE EMPID = {}", key.employee), never);
  chosen.leaving = leaving.IsDate() ? leaving.date() : never;
  return chosen;
}

}  // namespace ktl
