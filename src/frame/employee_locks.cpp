#include "frame/rights.h"
#include "frame/session.h"

namespace ktl {

long ReadEmpLockStatus(Session& session, long employee) {
  session.EmpLockStatus =
      session.data.Guarding(session.Sql("SELECT ISNULL(lockyn,0) FROM mas_employee WHERE empid={}", employee))
          .ToLong();
  return session.EmpLockStatus;
}

bool IsEmployeeLocked(Session& session, long employee, long firstMonth, const std::string& lastMonth) {
  return session.data
      .Guarding(
          session.Sql("SELECT dbo.udf_getEmpLock({},{},{})", employee, firstMonth, Statement(lastMonth)))
      .ToBoolean();
}

}  // namespace ktl
