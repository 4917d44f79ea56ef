#include "frame/ported_stat.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <memory>
#include <optional>

#include "common/month_year.h"
#include "database/recordset.h"
#include "frame/local_store.h"
#include "frame/session.h"
#include "runtime/errors.h"

namespace ktl {

namespace {

constexpr long kOpenEnd = 36066;  // stands for the last month that the company has

constexpr std::array kAllColumns = {"MONTH01YN", "MONTH02YN", "MONTH03YN",   "MONTH04YN", "MONTH05YN",
                                    "MONTH06YN", "MONTH07YN", "MONTH08YN",   "MONTH09YN", "MONTH10YN",
                                    "MONTH11YN", "MONTH12YN", "ARREARYN",    "BONEXGYN",  "ATTENCASHYN",
                                    "RMBYN",     "ADDPAYYN",  "INSURANCEYN", "INSOTHERYN"};
constexpr std::string_view kAll = "ALL";

struct Months {
  long first = 0;
  long last = 0;
};

struct Years {
  long first = 0;
  long last = 0;
};

// The flags that one change marks, and how it finds the years.
class Marker final {
 public:
  explicit Marker(Session& session)
      : session_(session),
        tdsMar2Feb_(session.data.FnVarGetDbValue("SELECT TDSMAR2FEB FROM MAS_OPTSET", 0).ToBoolean()) {}

  long YearOf(long monthYear) const {
    const long month = CalendarMonth(monthYear);
    const long year = (monthYear - month) / 12;
    return month <= (tdsMar2Feb_ ? 2 : 3) ? year - 1 : year;
  }

  std::string MonthColumn(long monthYear) const {
    const long shift = tdsMar2Feb_ ? 9 : 8;
    return fmt::format("MONTH{:02}YN", (CalendarMonth(monthYear) + shift) % 12 + 1);
  }

  Months AllMonths() const {
    return {Number("Select MIN(MONTHYEAR) From MAS_MONTHYEAR"),
            Number("Select MAX(MONTHYEAR) From MAS_MONTHYEAR")};
  }

  // The years of the months that the local store has tax settings for; nothing when it has none of them.
  std::optional<Years> YearsOf(const Months& months) const {
    Years years{YearOf(months.first), YearOf(months.last)};
    const std::unique_ptr<Connection> local = OpenLocalStore(session_);
    DataAccess store(*local, session_.desk);
    const long lowest = store.FnVarGetDbValue("Select MIN(ASSYEAR) From ITSETTING", 0).ToLong() - 1;
    const long highest = store.FnVarGetDbValue("Select MAX(ASSYEAR) From ITSETTING", 0).ToLong() - 1;
    if (years.last < lowest) return std::nullopt;
    return Years{std::max(years.first, lowest), std::min(years.last, highest)};
  }

  void MarkPorted(long employee, long year, std::string_view column) {
    Recordset row(
        session_.Cn,
        fmt::format("Select * From INC_PORTEDSTAT Where EMPID = {} And FINYEAR = {}", employee, year),
        OpenMode::Update);
    if (row.Eof()) {
      row.AddNew();
      row.Set("EMPID", employee);
      row.Set("FINYEAR", year);
    }
    if (column == kAll) {
      for (const char* each : kAllColumns) row.Set(each, 1);
    } else {
      row.Set(column, 1);
    }
    row.Update();
  }

  void MarkYears(long employee, const Months& months, std::string_view column) {
    if (const auto years = YearsOf(months)) MarkYears(employee, *years, column);
  }

  void MarkEmployees(std::string_view condition, const Months& months, std::string_view column) {
    const auto years = YearsOf(months);
    if (!years) return;
    Recordset employees(session_.Cn,
                        fmt::format("Select * From MAS_EMPLOYEE Where TDSYN = 1 And {}", condition));
    for (; !employees.Eof(); employees.MoveNext()) MarkYears(employees["EMPID"].ToLong(), *years, column);
  }

 private:
  static long CalendarMonth(long monthYear) {
    const long month = monthYear % 12;
    return month == 0 ? 12 : month;
  }

  long Number(std::string_view sql) const { return session_.data.FnVarGetDbValue(sql, 0).ToLong(); }

  void MarkYears(long employee, const Years& years, std::string_view column) {
    for (long year = years.first; year <= years.last; ++year) MarkPorted(employee, year, column);
  }

  Session& session_;
  bool tdsMar2Feb_;
};

struct Change {
  int code = 0;
  long employee = 0;
  long fromMonth = 0;
  std::string_view dateText;
  long toMonth = 0;
  std::string_view condition;
};

long MonthOfDate(const Change& change) {
  const std::string text =
      change.dateText.empty() ? FnStrFormatMonthYear(change.fromMonth) : std::string(change.dateText);
  const std::optional<Date> date = ParseDate(text);
  if (!date) throw RuntimeError::TypeMismatch();
  return MonthYearOf(*date);
}

void MarkOneDate(Marker& marker, const Change& change, std::string_view column) {
  marker.MarkPorted(change.employee, marker.YearOf(MonthOfDate(change)), column);
}

void MarkManyEmployees(Marker& marker, const Change& change, std::string_view column) {
  const Months months = change.fromMonth == 0 ? marker.AllMonths() : Months{change.fromMonth, change.toMonth};
  marker.MarkEmployees(change.condition, months, column);
}

Months FromGivenMonth(const Marker& marker, const Change& change) {
  return {change.fromMonth, change.toMonth == kOpenEnd ? marker.AllMonths().last : change.toMonth};
}

void Mark(Session& session, const Change& change) {
  Marker marker(session);
  switch (change.code) {
    case 0:
      return marker.MarkYears(0, marker.AllMonths(), kAll);
    case 1:
    case 7:
      return MarkOneDate(marker, change, marker.MonthColumn(MonthOfDate(change)));
    case 2:
      return marker.MarkYears(change.employee, marker.AllMonths(), kAll);
    case 3:
      session.Cn.Execute(fmt::format("Delete From INC_PORTEDSTAT Where EMPID = {}", change.employee));
      return;
    case 4:
      return marker.MarkEmployees(change.condition, FromGivenMonth(marker, change), kAll);
    case 5:
      return marker.MarkEmployees(change.condition, marker.AllMonths(), kAll);
    case 6:
      return MarkManyEmployees(marker, change, "RMBYN");
    case 8:
      return MarkOneDate(marker, change, "ARREARYN");
    case 9:
      return MarkOneDate(marker, change, "ADDPAYYN");
    case 10:
      return MarkOneDate(marker, change, "BONEXGYN");
    case 11:
      return MarkOneDate(marker, change, "ATTENCASHYN");
    case 12:
      return MarkManyEmployees(marker, change, "INSOTHERYN");
    case 13:
      return MarkManyEmployees(marker, change, "INSURANCEYN");
    case 14:
      return MarkOneDate(marker, change, "INSOTHERYN");
    case 15:
      MarkOneDate(marker, change, marker.MonthColumn(MonthOfDate(change)));
      return MarkOneDate(marker, change, "RMBYN");
    default:
      return;
  }
}

}  // namespace

void UpdateIncPortedStat(Session& session, int code, long employee, long fromMonth, std::string_view dateText,
                         long toMonth, std::string_view condition) {
  // Many rows at once are written at one go, unless the caller has begun a transaction already.
  std::optional<Transaction> transaction;
  if (!session.Cn.InTransaction()) transaction.emplace(session.Cn);
  Mark(session, {code, employee, fromMonth, dateText, toMonth, condition});
  if (transaction) transaction->Commit();
}

}  // namespace ktl
