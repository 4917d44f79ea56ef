#include "frame/rights.h"

#include <fmt/format.h>

#include "common/sql_text.h"
#include "database/recordset.h"
#include "frame/session.h"
#include "runtime/numbers.h"
#include "runtime/text.h"
#include "screen/controls.h"
#include "screen/screen.h"

namespace ktl {

namespace {

constexpr const char* kRefused = "NA";

// The asterisks are plain characters to the database: only a BUTNAME that holds them is found.
std::string ButtonIdQuery(long formId, const std::string& caption) {
  return fmt::format("SELECT BUTID FROM SEC_BUTDET WHERE FORMID = {} AND UPPER(BUTNAME) LIKE '*{}*' ", formId,
                     clsSPChar::FnStrSpLikeSQL(ReplaceAll(caption, "&", "")));
}

std::string PermissionQuery(const std::string& buttonId, const std::string& quotedUser) {
  return fmt::format(
      "SELECT BUTALLOWYN FROM SEC_BUTPER WHERE BUTID = {} AND GROUPID = "
      "(SELECT GROUPID from SEC_USERLIST WHERE UPPER(USERNAME)= '{}') ",
      buttonId, quotedUser);
}

void ApplyRight(Connection& cn, Button& button, long formId, const std::string& quotedUser) {
  if (Val(button.tag) == 0) {
    const Recordset found(cn, ButtonIdQuery(formId, button.caption));
    if (!found.Eof()) button.tag = CNull(found[0], 0).ToText();
  }
  if (Val(button.tag) <= 0) return;
  // A tag that was refused before is "218NA"; its number is what counts.
  const Recordset right(cn, PermissionQuery(NumberText(Val(button.tag)), quotedUser));
  const bool allowed = right.Eof() || right[0].IsNull() || right[0].ToDouble() == 1;
  if (!allowed) button.tag += kRefused;
}

}  // namespace

void ApplyButtonRights(Session& session, Screen& screen, long formId) {
  if (!session.MultiLoginYN || UpperCase(session.CurrentUser()) == "ADMIN") return;
  const clsSPChar literals(session.machine.settings.Get("Settings", "DBType", "ACC97"));
  const std::string user = literals.FnStrSpSQL(session.CurrentUser());
  for (Control* control : screen.Controls()) {
    if (control->kind() == ControlKind::Button) {
      ApplyRight(session.Cn, static_cast<Button&>(*control), formId, user);
    }
  }
}

bool FnBlnPermitted(Session& session, const Button& button) {
  if (!session.MultiLoginYN || button.tag.find(kRefused) == std::string::npos) return false;
  session.desk.Warn("Permission denied.", session.title);
  return true;
}

}  // namespace ktl
