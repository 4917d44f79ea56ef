#include "common/fetch.h"

#include <utility>

#include "database/recordset.h"
#include "runtime/numbers.h"
#include "screen/desk.h"

namespace ktl {
namespace {

// The positive twin of kGenericDatabaseError: no driver reports it, so generic failures are shown like any
// other.
constexpr long kUnshownNumber = 2147467259;
constexpr std::string_view kUnshownDescription = "Not a valid bookmark.";

bool IsShown(const RuntimeError& error) {
  return error.number() != kUnshownNumber && error.description() != kUnshownDescription;
}

// A text that reads as a number counts as one; a date does not.
bool IsNumericZero(const Value& value) {
  if (value.IsText()) return ParseNumber(value.text()) == 0.0;
  return !value.IsDate() && value.ToDouble() == 0;
}

}  // namespace

Value DataAccess::Guarding(std::string_view sql, Value defaultValue) {
  const Recordset rows(cn_, sql);
  if (rows.Eof() || rows[std::size_t{0}].IsNull()) return defaultValue;
  return rows[std::size_t{0}];
}

Value DataAccess::FnVarGetDbValue(std::string_view sql, Value defaultValue, bool noMessage) {
  try {
    return Guarding(sql, std::move(defaultValue));
  } catch (const RuntimeError& error) {
    if (!noMessage && IsShown(error))
      desk_.ShowError(error.description() + " : " + std::to_string(error.number()), title_);
    return {};
  }
}

bool DataAccess::FnBlnRecExists(std::string_view sql) {
  const Recordset rows(cn_, sql);
  return !(rows.Eof() && rows.Bof());
}

bool DataAccess::ExecuteSql(std::string_view sql) {
  try {
    cn_.Execute(sql);
    return true;
  } catch (const RuntimeError&) {
    return false;
  }
}

Value CNull(Value value, Value alternative, bool zeroToo) {
  if (value.IsNull()) return alternative;
  return zeroToo && IsNumericZero(value) ? alternative : value;
}

}  // namespace ktl
