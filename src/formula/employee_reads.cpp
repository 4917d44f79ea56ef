#include "formula/employee_reads.h"

#include <optional>
#include <utility>

namespace ktl {

Value EmployeeReads::Read(const std::string& sql, Value ifNone) {
  std::optional<Value> value = data_.Cn().FirstValue(sql);
  return value && !value->IsNull() ? *std::move(value) : std::move(ifNone);
}

Value EmployeeReads::Fetch(const std::string& sql, Value ifNone) {
  return data_.FnVarGetDbValue(sql, std::move(ifNone));
}

bool EmployeeReads::Exists(const std::string& sql) { return data_.FnBlnRecExists(sql); }

Recordset EmployeeReads::Rows(const std::string& sql) { return {data_.Cn(), sql}; }

}  // namespace ktl
