#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "common/titles.h"
#include "database/connection.h"
#include "runtime/value.h"

namespace ktl {

class Desk;

// The fetch helpers that every screen speaks to the database with.
class DataAccess {
 public:
  DataAccess(Connection& cn, Desk& desk) : cn_(cn), desk_(desk) {}

  // Field 0 of the first row; the default when there is no row or it is null. When the statement fails: a
  // critical box with the description, " : " and the number (none when noMessage), and Empty instead of the
  // default.
  Value FnVarGetDbValue(std::string_view sql, Value defaultValue = {}, bool noMessage = false);
  // The same, converted: 0 and "" when the statement fails.
  long Long(std::string_view sql, long defaultValue = 0) {
    return FnVarGetDbValue(sql, defaultValue).ToLong();
  }
  double Number(std::string_view sql, double defaultValue = 0) {
    return FnVarGetDbValue(sql, defaultValue).ToDouble();
  }
  std::string Text(std::string_view sql, std::string_view defaultValue = {}) {
    return FnVarGetDbValue(sql, defaultValue).ToText();
  }
  // Of a lock or a right: as FnVarGetDbValue, but a statement that fails is thrown on, so that what could not
  // be read never counts as free.
  Value Guarding(std::string_view sql, Value defaultValue = 0);
  // Throws when the statement fails.
  bool FnBlnRecExists(std::string_view sql);
  // False on any failure, with no message.
  bool ExecuteSql(std::string_view sql);

  Connection& Cn() { return cn_; }
  Desk& desk() { return desk_; }

  // What the boxes shown from here carry: the application's title.
  void SetTitle(std::string title) { title_ = std::move(title); }
  const std::string& title() const { return title_; }

 private:
  Connection& cn_;
  Desk& desk_;
  std::string title_ = kApplicationTitle;
};

// Whether the flag of a row is on; null is off.
inline bool IsSet(const Value& flag) { return flag.NumberOr0() != 0; }
// What a column holds that may be null, or hold no date.
inline std::optional<double> NumberIfAny(const Value& value) {
  return value.IsNull() ? std::nullopt : std::optional(value.ToDouble());
}
inline std::optional<long> WholeIfAny(const Value& value) {
  return value.IsNull() ? std::nullopt : std::optional<long>(value.ToLong());
}
inline std::optional<Date> DateIfAny(const Value& value) {
  return value.IsDate() ? std::optional(value.date()) : std::nullopt;
}
// Null becomes the alternative; so does a number that is exactly 0 when zeroToo is set.
Value CNull(Value value, Value alternative, bool zeroToo = false);

}  // namespace ktl
