#include "support/workstation.h"

#include "company/schema_texts.h"
#include "database/drivers/sqlite_file.h"
#include "frame/options.h"
#include "start/connect.h"

namespace ktl {

Workstation::Workstation(test::TestCompany& company) {
  machine.settings.Set("Settings", "DBType", "SQL");
  machine.settings.Set("Settings", "User", "RAVI");
  OpenConnection(session, company.ConnectionString());
  LoadOptionSet(session);
  session.options.STARTMONTHYEAR = 24292;
}

Texts Workstation::Press(Button& button, std::vector<Answer> answers) {
  desk.WillAnswer(std::move(answers));
  Click(button);
  return desk.TakeTexts();
}

void Workstation::MakeLocalStore() {
  machine.folder.path = folder.path().string();
  CreateSqliteFile(folder.path() / "klgen.MDB", {kLocalText});
}

std::string WorkstationTest::LastAudit() {
  return Rows("SELECT TOP 1 MENUNO, EMPID, ACTIONTEXT, DETAILTEXT FROM SEC_AUDITTRAIL ORDER BY AUDITID DESC");
}

}  // namespace ktl
