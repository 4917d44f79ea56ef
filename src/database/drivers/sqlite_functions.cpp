#include "database/drivers/sqlite_functions.h"

#include <fmt/format.h>
#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstring>

#include "database/drivers/text_rules.h"
#include "database/stored_date.h"
#include "runtime/numbers.h"
#include "runtime/text.h"

namespace ktl {

namespace {

using Arguments = sqlite3_value**;

bool IsNull(sqlite3_value* value) { return sqlite3_value_type(value) == SQLITE_NULL; }

// Numbers become texts.
std::string_view TextOf(sqlite3_value* value) {
  const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(value));
  return {text == nullptr ? "" : text, static_cast<std::size_t>(sqlite3_value_bytes(value))};
}

void Answer(sqlite3_context* context, std::string_view text) {
  sqlite3_result_text(context, text.data(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
}

std::size_t CountOf(sqlite3_value* value) {
  return static_cast<std::size_t>(std::max<sqlite3_int64>(sqlite3_value_int64(value), 0));
}

FunctionHost& HostOf(sqlite3_context* context) {
  return *static_cast<FunctionHost*>(sqlite3_user_data(context));
}

// No exception may cross the library: it becomes the statement's error.
template <typename Body>
void Guarded(sqlite3_context* context, Body&& body) {
  try {
    body();
  } catch (const std::exception& error) {
    sqlite3_result_error(context, error.what(), -1);
  }
}

// Most functions answer null when an argument is null.
template <void (*Body)(sqlite3_context*, Arguments)>
void Strict(sqlite3_context* context, int count, Arguments arguments) {
  if (std::any_of(arguments, arguments + count, IsNull)) return sqlite3_result_null(context);
  Guarded(context, [&] { Body(context, arguments); });
}

void Add(sqlite3_context* context, Arguments a) {
  if (sqlite3_value_type(a[0]) == SQLITE_TEXT && sqlite3_value_type(a[1]) == SQLITE_TEXT)
    return Answer(context, std::string(TextOf(a[0])).append(TextOf(a[1])));
  const bool whole = sqlite3_value_numeric_type(a[0]) == SQLITE_INTEGER &&
                     sqlite3_value_numeric_type(a[1]) == SQLITE_INTEGER;
  sqlite3_int64 sum = 0;
  if (whole && !__builtin_add_overflow(sqlite3_value_int64(a[0]), sqlite3_value_int64(a[1]), &sum))
    return sqlite3_result_int64(context, sum);
  sqlite3_result_double(context, sqlite3_value_double(a[0]) + sqlite3_value_double(a[1]));
}

void Text(sqlite3_context* context, Arguments a) {
  if (sqlite3_value_type(a[0]) == SQLITE_FLOAT)
    return Answer(context, NumberText(sqlite3_value_double(a[0])));
  Answer(context, TextOf(a[0]));
}

void LeftText(sqlite3_context* context, Arguments a) {
  Answer(context, Characters(TextOf(a[0]), 0, CountOf(a[1])));
}

void RightText(sqlite3_context* context, Arguments a) {
  const std::string_view text = TextOf(a[0]);
  const std::size_t length = CountCharacters(text), count = std::min(length, CountOf(a[1]));
  Answer(context, Characters(text, length - count, count));
}

// A start before the first character takes its missing characters from the count.
void Substring(sqlite3_context* context, Arguments a) {
  const sqlite3_int64 start = sqlite3_value_int64(a[1]) - 1;
  const sqlite3_int64 count = sqlite3_value_int64(a[2]) + std::min<sqlite3_int64>(start, 0);
  if (count <= 0) return Answer(context, "");
  Answer(context, Characters(TextOf(a[0]), static_cast<std::size_t>(std::max<sqlite3_int64>(start, 0)),
                             static_cast<std::size_t>(count)));
}

void Len(sqlite3_context* context, Arguments a) {
  std::string_view text = TextOf(a[0]);
  while (text.ends_with(' ')) text.remove_suffix(1);
  sqlite3_result_int64(context, static_cast<sqlite3_int64>(CountCharacters(text)));
}

void Upper(sqlite3_context* context, Arguments a) { Answer(context, UpperCase(TextOf(a[0]))); }

void Lower(sqlite3_context* context, Arguments a) { Answer(context, FoldCase(TextOf(a[0]))); }

// Right-aligned in ten places: it never equals a shorter number as a text. What is added takes the sign off
// 0.
void Str(sqlite3_context* context, Arguments a) {
  Answer(context, fmt::format("{:>10.0f}", RoundHalfAway(sqlite3_value_double(a[0]), 0) + 0.0));
}

template <bool kWithStart>
void CharIndex(sqlite3_context* context, Arguments a) {
  const std::size_t start = kWithStart ? CountOf(a[2]) : 1;
  sqlite3_result_int64(context, static_cast<sqlite3_int64>(FindText(TextOf(a[0]), TextOf(a[1]), start)));
}

template <double (*Round)(double)>
void WholeNumber(sqlite3_context* context, Arguments a) {
  if (sqlite3_value_numeric_type(a[0]) == SQLITE_INTEGER) return sqlite3_result_value(context, a[0]);
  sqlite3_result_double(context, Round(sqlite3_value_double(a[0])));
}

double Floor(double value) { return std::floor(value); }
double Ceiling(double value) { return std::ceil(value); }

void Round(sqlite3_context* context, Arguments a) {
  const int places = sqlite3_value_int(a[1]);
  if (places >= 0 && sqlite3_value_numeric_type(a[0]) == SQLITE_INTEGER)
    return sqlite3_result_value(context, a[0]);
  sqlite3_result_double(context, RoundHalfAway(sqlite3_value_double(a[0]), places));
}

enum class Part { Year, Month, Day };

template <Part kPart>
void DatePart(sqlite3_context* context, Arguments a) {
  const auto date = FromStoredDate(TextOf(a[0]));
  if (!date)
    return sqlite3_result_error(context, "Conversion failed when converting a date from a text.", -1);
  sqlite3_result_int(context, kPart == Part::Year    ? date->year()
                              : kPart == Part::Month ? date->month()
                                                     : date->day());
}

void DateDiff(sqlite3_context* context, Arguments a) {
  const auto first = FromStoredDate(TextOf(a[1])), last = FromStoredDate(TextOf(a[2]));
  if (!first || !last)
    return sqlite3_result_error(context, "Conversion failed when converting a date from a text.", -1);
  const std::string_view part = TextOf(a[0]);
  const int years = last->year() - first->year();
  if (part == "DAY") return sqlite3_result_int64(context, DaysBetween(*first, *last));
  sqlite3_result_int(context, part == "YEAR" ? years : years * 12 + last->month() - first->month());
}

// A remainder of 0 is December of the year before.
void MonthName(sqlite3_context* context, Arguments a) {
  constexpr std::string_view kNames = "DecJanFebMarAprMayJunJulAugSepOctNov";
  const sqlite3_int64 monthYear = sqlite3_value_int64(a[0]);
  if (monthYear < 0) return sqlite3_result_null(context);
  const auto month = static_cast<std::size_t>(monthYear % 12);
  Answer(context, fmt::format("{}/{}", kNames.substr(month * 3, 3), monthYear / 12 - (month == 0 ? 1 : 0)));
}

void Like(sqlite3_context* context, Arguments a) {
  sqlite3_result_int(context, MatchesPattern(TextOf(a[1]), TextOf(a[0])) ? 1 : 0);
}

void LikeWithEscape(sqlite3_context* context, Arguments a) {
  const std::string_view escape = TextOf(a[2]);
  if (CountCharacters(escape) != 1) return sqlite3_result_error(context, "ESCAPE takes one character.", -1);
  sqlite3_result_int(context,
                     MatchesPattern(TextOf(a[1]), TextOf(a[0]), FirstCharacter(FoldCase(escape))) ? 1 : 0);
}

void HostName(sqlite3_context* context, int, Arguments) { Answer(context, HostOf(context).client.hostName); }

void UserName(sqlite3_context* context, int, Arguments) { Answer(context, HostOf(context).client.userName); }

void CurrentTime(sqlite3_context* context, int, Arguments) {
  Guarded(context, [&] { Answer(context, StoredDate(Now(HostOf(context).client))); });
}

void SetVariable(sqlite3_context* context, int, Arguments a) {
  Guarded(context, [&] {
    auto& variable = HostOf(context).variables[FoldCase(TextOf(a[0]))];
    switch (sqlite3_value_type(a[1])) {
      case SQLITE_INTEGER:
        variable = static_cast<long long>(sqlite3_value_int64(a[1]));
        break;
      case SQLITE_FLOAT:
        variable = sqlite3_value_double(a[1]);
        break;
      case SQLITE_NULL:
        variable = Null{};
        break;
      default:
        variable = TextOf(a[1]);
    }
  });
}

void GetVariable(sqlite3_context* context, int, Arguments a) {
  Guarded(context, [&] {
    const auto& variables = HostOf(context).variables;
    const auto found = variables.find(FoldCase(TextOf(a[0])));
    if (found == variables.end())
      throw DatabaseError(fmt::format("Must declare the scalar variable \"{}\".", TextOf(a[0])),
                          kStatementError);
    const Value& value = found->second;
    if (value.IsInteger())
      sqlite3_result_int64(context, value.integer());
    else if (value.IsDouble())
      sqlite3_result_double(context, value.real());
    else if (value.IsText())
      Answer(context, value.text());
  });
}

// No month at all (0) is never locked; a null end is no end.
void EmployeeLock(sqlite3_context* context, int, Arguments a) {
  Guarded(context, [&] {
    const bool noEnd = IsNull(a[2]);
    const sqlite3_int64 first = sqlite3_value_int64(a[1]), last = sqlite3_value_int64(a[2]);
    if (first == 0 || (!noEnd && last == 0)) return sqlite3_result_int(context, 0);
    SqliteDatabase::Lease lock(
        HostOf(context).database,
        "SELECT EXISTS (SELECT 1 FROM MAS_OPTSETFEATURE WHERE EMPLOCKYN = 1) AND EXISTS (SELECT "
        "1 FROM SEC_EMPLOCK WHERE EMPID = ?1 AND LOCKYN = 1 AND MONTHYEAR BETWEEN ?2 AND ?3)");
    lock->BindInteger(0, sqlite3_value_int64(a[0]));
    lock->BindInteger(1, first);
    lock->BindInteger(2, noEnd ? std::int64_t{1} << 40 : last);
    sqlite3_result_int(context, lock->Step() && lock->Integer(0) != 0 ? 1 : 0);
  });
}

// The sums of what stands in each of twelve months and behind, as KL_LATERSUMS keeps them for KL_LATERSUM.
// Each is added up by itself, in the order of the rows, as SUM over that month and those behind it would: the
// same to the last bit.
struct LaterSums {
  static constexpr sqlite3_int64 kMonths = 12;
  std::array<double, kMonths> sum;
  std::array<bool, kMonths> any;
};

// KL_LATERSUMS(MONTHYEAR, AMOUNT, FIRSTMONTH)
void AddToLaterSums(sqlite3_context* context, int, Arguments a) {
  auto* const sums = static_cast<LaterSums*>(sqlite3_aggregate_context(context, sizeof(LaterSums)));
  if (sums == nullptr) return sqlite3_result_error_nomem(context);
  if (IsNull(a[1])) return;
  const double amount = sqlite3_value_double(a[1]);
  const auto last = std::min(sqlite3_value_int64(a[0]) - sqlite3_value_int64(a[2]), LaterSums::kMonths - 1);
  for (sqlite3_int64 month = 0; month <= last; ++month) {
    sums->sum[static_cast<std::size_t>(month)] += amount;
    sums->any[static_cast<std::size_t>(month)] = true;
  }
}

void EndLaterSums(sqlite3_context* context) {
  const void* const sums = sqlite3_aggregate_context(context, 0);
  if (sums != nullptr) sqlite3_result_blob(context, sums, sizeof(LaterSums), SQLITE_TRANSIENT);
}

// KL_LATERSUM(SUMS, MONTHYEAR, FIRSTMONTH), null where SUM would be.
void LaterSum(sqlite3_context* context, Arguments a) {
  const sqlite3_int64 month = sqlite3_value_int64(a[1]) - sqlite3_value_int64(a[2]);
  if (month < 0 || month >= LaterSums::kMonths || sqlite3_value_bytes(a[0]) != sizeof(LaterSums)) return;
  LaterSums sums;
  std::memcpy(&sums, sqlite3_value_blob(a[0]), sizeof(LaterSums));
  const auto at = static_cast<std::size_t>(month);
  if (sums.any[at]) sqlite3_result_double(context, sums.sum[at]);
}

int Compare(void*, int sizeA, const void* a, int sizeB, const void* b) {
  return CompareTexts({static_cast<const char*>(a), static_cast<std::size_t>(sizeA)},
                      {static_cast<const char*>(b), static_cast<std::size_t>(sizeB)});
}

using Body = void (*)(sqlite3_context*, int, Arguments);

struct Registered {
  const char* name;
  int arguments;
  Body body;
};

constexpr Registered kPure[] = {
    {"like", 2, Strict<Like>},
    {"like", 3, Strict<LikeWithEscape>},
    {"KL_ADD", 2, Strict<Add>},
    {"KL_TEXT", 1, Strict<Text>},
    {"KL_LATERSUM", 3, Strict<LaterSum>},
    {"KL_LEFT", 2, Strict<LeftText>},
    {"KL_RIGHT", 2, Strict<RightText>},
    {"KL_SUBSTRING", 3, Strict<Substring>},
    {"KL_LEN", 1, Strict<Len>},
    {"KL_UPPER", 1, Strict<Upper>},
    {"KL_LOWER", 1, Strict<Lower>},
    {"KL_STR", 1, Strict<Str>},
    {"KL_CHARINDEX", 2, Strict<CharIndex<false>>},
    {"KL_CHARINDEX", 3, Strict<CharIndex<true>>},
    {"KL_FLOOR", 1, Strict<WholeNumber<Floor>>},
    {"KL_CEILING", 1, Strict<WholeNumber<Ceiling>>},
    {"KL_ROUND", 2, Strict<Round>},
    {"KL_YEAR", 1, Strict<DatePart<Part::Year>>},
    {"KL_MONTH", 1, Strict<DatePart<Part::Month>>},
    {"KL_DAY", 1, Strict<DatePart<Part::Day>>},
    {"KL_DATEDIFF", 3, Strict<DateDiff>},
    {"KL_MONTHNAME", 1, Strict<MonthName>},
};

constexpr Registered kOfHost[] = {
    {"KL_HOST_NAME", 0, HostName}, {"KL_USER_NAME", 0, UserName}, {"KL_NOW", 0, CurrentTime},
    {"KL_SET", 2, SetVariable},    {"KL_GET", 1, GetVariable},    {"KL_EMPLOCK", 3, EmployeeLock},
};

void Register(sqlite3* database, const Registered& function, int flags, void* host) {
  CheckSqlite(sqlite3_create_function_v2(database, function.name, function.arguments, SQLITE_UTF8 | flags,
                                         host, function.body, nullptr, nullptr, nullptr),
              database);
}

}  // namespace

Date Now(const ClientIdentity& client) {
  if (client.now) return client.now();
  const std::time_t time = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
  std::tm local{};
  localtime_r(&time, &local);
  return *Date::FromYmd(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min,
                        std::min(local.tm_sec, 59));
}

void RegisterTextRules(SqliteDatabase& database) {
  for (const char* name : {"NOCASE", "SQL_Latin1_General_CP1_CI_AS"})
    CheckSqlite(sqlite3_create_collation_v2(database.handle(), name, SQLITE_UTF8, nullptr, Compare, nullptr),
                database.handle());
  for (const auto& function : kPure) Register(database.handle(), function, SQLITE_DETERMINISTIC, nullptr);
  CheckSqlite(sqlite3_create_function_v2(database.handle(), "KL_LATERSUMS", 3, SQLITE_UTF8, nullptr, nullptr,
                                         AddToLaterSums, EndLaterSums, nullptr),
              database.handle());
}

void RegisterFunctions(FunctionHost& host) {
  RegisterTextRules(host.database);
  for (const auto& function : kOfHost) Register(host.database.handle(), function, 0, &host);
}

}  // namespace ktl
