#include "database/drivers/sqlite_sums.h"

#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>

#include "database/drivers/sqlite_database.h"

namespace ktl {

namespace {

using Arguments = sqlite3_value**;

bool IsNull(sqlite3_value* value) { return sqlite3_value_type(value) == SQLITE_NULL; }

template <typename Kept>
Kept* Aggregate(sqlite3_context* context) {
  auto* const kept = static_cast<Kept*>(sqlite3_aggregate_context(context, sizeof(Kept)));
  if (kept == nullptr) sqlite3_result_error_nomem(context);
  return kept;
}

// What was kept of the rows; null when there were none.
template <typename Kept>
void End(sqlite3_context* context) {
  const void* const kept = sqlite3_aggregate_context(context, 0);
  if (kept != nullptr) sqlite3_result_blob(context, kept, sizeof(Kept), SQLITE_TRANSIENT);
}

template <typename Kept>
std::optional<Kept> KeptIn(sqlite3_value* value) {
  if (IsNull(value) || sqlite3_value_bytes(value) != sizeof(Kept)) return std::nullopt;
  Kept kept;
  std::memcpy(&kept, sqlite3_value_blob(value), sizeof(Kept));
  return kept;
}

// The sums of what stands in each of twelve months and behind, as KL_LATERSUMS keeps them for KL_LATERSUM.
// Each is added up by itself, in the order of the rows, as SUM over that month and those behind it would: the
// same to the last bit.
struct LaterSums {
  static constexpr std::size_t kMonths = 12;
  std::array<double, kMonths> sum;
  std::array<bool, kMonths> any;
};

// KL_LATERSUMS(MONTHYEAR, AMOUNT, FIRSTMONTH)
void AddToLaterSums(sqlite3_context* context, int, Arguments a) {
  auto* const sums = Aggregate<LaterSums>(context);
  if (sums == nullptr || IsNull(a[1])) return;
  const double amount = sqlite3_value_double(a[1]);
  const sqlite3_int64 month = sqlite3_value_int64(a[0]) - sqlite3_value_int64(a[2]);
  const auto months = static_cast<std::size_t>(
      std::clamp<sqlite3_int64>(month + 1, 0, static_cast<sqlite3_int64>(LaterSums::kMonths)));
  for (std::size_t at = 0; at < months; ++at) sums->sum[at] += amount;
  if (months > 0) sums->any[months - 1] = true;
}

// KL_LATERSUM(SUMS, MONTHYEAR, FIRSTMONTH), null where SUM would be.
void LaterSum(sqlite3_context* context, int, Arguments a) {
  const auto sums = KeptIn<LaterSums>(a[0]);
  const auto month = static_cast<std::size_t>(sqlite3_value_int64(a[1]) - sqlite3_value_int64(a[2]));
  if (!sums || month >= LaterSums::kMonths) return;
  const bool any = std::any_of(sums->any.begin() + static_cast<std::ptrdiff_t>(month), sums->any.end(),
                               [](bool of) { return of; });
  if (any) sqlite3_result_double(context, sums->sum[month]);
}

// Of all rows and of those picked: how many there are, the sums of their amounts, and the highest one in
// place of the sum of the second.
struct PickedSums {
  static constexpr std::size_t kAmounts = 5, kHighest = 1;
  struct Sums {
    sqlite3_int64 rows;
    std::array<double, kAmounts> amount;
    std::array<bool, kAmounts> any;

    void Add(Arguments amounts) {
      ++rows;
      for (std::size_t at = 0; at < kAmounts; ++at) {
        if (IsNull(amounts[at])) continue;
        const double each = sqlite3_value_double(amounts[at]);
        amount[at] = at != kHighest ? amount[at] + each : any[at] ? std::max(amount[at], each) : each;
        any[at] = true;
      }
    }
  };
  Sums all, picked;
};

// KL_PICKEDSUMS(PICKED, AMOUNT, HIGHEST, AMOUNT, AMOUNT, AMOUNT)
void AddToPickedSums(sqlite3_context* context, int, Arguments a) {
  auto* const sums = Aggregate<PickedSums>(context);
  if (sums == nullptr) return;
  sums->all.Add(a + 1);
  if (sqlite3_value_int(a[0]) != 0) sums->picked.Add(a + 1);
}

// KL_PICKEDSUM(SUMS, PICKED, NUMBER): the rows for number 0, the amount of that number else.
void PickedSum(sqlite3_context* context, int, Arguments a) {
  const auto kept = KeptIn<PickedSums>(a[0]);
  if (!kept) return;
  const PickedSums::Sums& sums = sqlite3_value_int(a[1]) != 0 ? kept->picked : kept->all;
  const auto number = static_cast<std::size_t>(sqlite3_value_int(a[2]));
  if (number == 0) return sqlite3_result_int64(context, sums.rows);
  if (number <= PickedSums::kAmounts && sums.any[number - 1])
    sqlite3_result_double(context, sums.amount[number - 1]);
}

}  // namespace

void RegisterSums(SqliteDatabase& database) {
  struct Registered {
    const char* name;
    int arguments;
    void (*body)(sqlite3_context*, int, Arguments);
    void (*end)(sqlite3_context*);
  };
  for (const Registered& each : {
           Registered{"KL_LATERSUMS", 3, AddToLaterSums, End<LaterSums>},
           Registered{"KL_LATERSUM", 3, LaterSum, nullptr},
           Registered{"KL_PICKEDSUMS", 6, AddToPickedSums, End<PickedSums>},
           Registered{"KL_PICKEDSUM", 3, PickedSum, nullptr},
       }) {
    const bool whole = each.end == nullptr;
    CheckSqlite(sqlite3_create_function_v2(
                    database.handle(), each.name, each.arguments, SQLITE_UTF8 | SQLITE_DETERMINISTIC, nullptr,
                    whole ? each.body : nullptr, whole ? nullptr : each.body, each.end, nullptr),
                database.handle());
  }
}

}  // namespace ktl
