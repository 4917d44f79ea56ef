#include <fmt/format.h>

#include "frame/rights.h"
#include "frame/session.h"

namespace ktl {

long ReadEmpLockStatus(Session& session, long employee) {
  const std::string sql = fmt::format("SELECT ISNULL(lockyn,0) FROM mas_employee WHERE empid={}", employee);
  session.EmpLockStatus = session.data.FnVarGetDbValue(sql, 0).ToLong();
  return session.EmpLockStatus;
}

std::string WhyReadOnly(const Session& session) {
  if (session.ReadOnlyUser) return "The user " + session.CurrentUser() + " may only read.";
  return session.EmpLockStatus == 1 ? "The employee is locked." : "";
}

bool IsEmployeeLocked(Session& session, long employee, long firstMonth, const std::string& lastMonth) {
  const std::string sql = fmt::format("SELECT dbo.udf_getEmpLock({},{},{})", employee, firstMonth, lastMonth);
  return session.data.FnVarGetDbValue(sql, 0).ToBoolean();
}

}  // namespace ktl
