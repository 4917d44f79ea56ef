#include <fmt/format.h>

#include "common/sql_text.h"
#include "frame/rights.h"
#include "frame/session.h"
#include "runtime/text.h"

namespace ktl {

bool FnBlnAuditOn(Session& session) {
  if (!session.auditOn) {
    LoadFeatureSet(session);
    session.auditOn = session.data.FnBlnRecExists("SELECT * FROM MAS_OPTSETFEATURE WHERE AUDITTRAILYN = 1");
  }
  return *session.auditOn;
}

void WriteAuditTrail(Session& session, long menuNumber, long employee, std::string_view action,
                     std::string_view detail, std::string_view extra) {
  const std::string windowsUser = ReplaceAll(session.machine.environment.Variable("USERNAME"), " ", "");
  // The user's name is not cleaned, only its quotes are doubled.
  session.Cn.Execute(session.Sql("UpdateAuditTrail '{}', {}, {}, '{}', '{}', '{}' , '{}'",
                                 session.CurrentUser(), menuNumber, employee,
                                 clsSPChar::FnStrClearAllSp(action), clsSPChar::FnStrClearAllSp(detail),
                                 clsSPChar::FnStrClearAllSp(extra), clsSPChar::FnStrClearAllSp(windowsUser)));
}

void AuditInstruction(Session& session, long employee, std::string_view deed, const std::string& detail,
                      std::string_view under) {
  if (!FnBlnAuditOn(session)) return;
  WriteAuditTrail(session, kInstructionsMenu, employee, fmt::format("{} - {}", under, deed),
                  fmt::format("{}{}", deed, detail));
}

}  // namespace ktl
