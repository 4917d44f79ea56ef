#pragma once

#include <optional>
#include <string>

#include "common/fetch.h"
#include "common/statement.h"
#include "common/titles.h"
#include "database/connection.h"
#include "frame/doors.h"
#include "frame/durable_desk.h"
#include "frame/employee_detail.h"
#include "frame/options.h"
#include "frame/screen_registry.h"
#include "machine/machine.h"
#include "screen/desk.h"

namespace ktl {

class Screen;

// What one run of the program knows, from the command line to the end. Passed by reference; there are no
// globals.
struct Session {
  Session(Machine ofMachine, Desk& ofDesk) : machine(ofMachine), desk(ofDesk, Cn), data(Cn, desk) {}
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  Machine machine;
  DurableDesk desk;
  DataAccess data;
  Connection Cn;  // gone before the desk, whom a close that waits still asks

  std::string title = kApplicationTitle;  // what message boxes show
  long FormCode = 0;
  int SIType = 0;
  long FormEmpId = 0;
  std::string FormArgText;
  bool ReportFlag = false;
  int ReportNumber = 0;
  long TrailingNumber = 0;
  bool OpenedFromFile = false;
  std::string ExeTalkFileName;
  std::string DataPath;
  bool MultiLoginYN = false;
  bool ExtendedYN = false;
  std::string WinUserID;
  bool ReadOnlyUser = false;
  bool TdsMar2Feb = false;
  std::string hostName;          // what the server says that this client is called
  std::string EmployeeViewName;  // in brackets
  std::string FilterTableName;   // in brackets
  bool FilterYN = false;
  Screen* ActiveForm = nullptr;
  std::string helpFile;  // the host's help file, when it is there

  OptionSet options;
  FeatureSet features;
  CaptionSet captions;
  EmployeeDetail employeeDetail;  // of the employee whose formula is evaluated
  bool AdvanceMgmtYN = false;     // ADVMGALYN as the entry screen copied it
  bool SepPiYN = false;         // SEPPIYN of the name last chosen on the entry screen; other screens read it
  long EmpLockStatus = 0;       // lockyn of the employee last chosen
  std::optional<bool> auditOn;  // asked once

  ScreenRegistry screens;
  Doors doors{*this};

  // The text with its holes filled in, typed texts doubled for the settings' DBType.
  template <typename... Values>
  Statement Sql(std::string_view text, const Values&... values) const {
    return FillIn(text, {StatementHole(values)...});
  }
  // "Settings", "User".
  std::string CurrentUser() const { return machine.settings.Get("Settings", "User", ""); }
  // The suffix of per-workstation names: WinUserID when ExtendedYN is on.
  std::string FilterSuffix() const { return ExtendedYN ? WinUserID : std::string(); }
  // A box in the application's title.
  void Inform(const std::string& text) { desk.Inform(text, title); }

 private:
  Statement FillIn(std::string_view text, std::initializer_list<StatementHole> holes) const;
};

}  // namespace ktl
