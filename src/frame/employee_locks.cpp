#include "frame/rights.h"
#include "frame/session.h"

namespace ktl {

long EmpLockStatusOf(Session& session, long employee) {
  return session.data
      .Guarding(session.Sql("SELECT ISNULL(lockyn,0) FROM mas_employee WHERE empid={}", employee))
      .ToLong();
}

long ReadEmpLockStatus(Session& session, long employee) {
  return session.EmpLockStatus = EmpLockStatusOf(session, employee);
}

std::string WhyReadOnly(const Session& session) {
  if (session.ReadOnlyUser) return "The user " + session.CurrentUser() + " may only read.";
  return session.EmpLockStatus == 1 ? "The employee is locked." : "";
}

bool IsEmployeeLocked(Session& session, long employee, long firstMonth, const std::string& lastMonth) {
  return session.data
      .Guarding(
          session.Sql("SELECT dbo.udf_getEmpLock({},{},{})", employee, firstMonth, Statement(lastMonth)))
      .ToBoolean();
}

}  // namespace ktl
