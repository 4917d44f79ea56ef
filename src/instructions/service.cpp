#include "instructions/service.h"

#include "database/recordset.h"
#include "frame/session.h"

namespace ktl {

Service ReadService(Session& session, long employee) {
  const Recordset rs(session.Cn, session.Sql("Select DOJ, DOL From MAS_EMPLOYEE Where EMPID = {}", employee));
  if (rs.Eof()) return {};
  return {DateIfAny(rs["DOJ"]), DateIfAny(rs["DOL"])};
}

}  // namespace ktl
