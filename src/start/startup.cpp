#include "start/startup.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "common/naming.h"
#include "frame/session.h"
#include "frame/top_level.h"
#include "frame/workstation_objects.h"
#include "runtime/errors.h"
#include "runtime/numbers.h"
#include "start/command_line.h"
#include "start/connect.h"
#include "workbook/export_menu.h"

namespace ktl {

namespace {

constexpr int kScreenWasShown = 0;
constexpr int kNoScreen = 1;

enum class Arguments { None, Employee, EmployeeAndMonth, MonthYear };

struct Entry {
  long code;
  const char* screen;
  int siType;
  Arguments arguments;
};

constexpr std::array kEntries = {
    Entry{1500, "modEMIEmp", 0, Arguments::EmployeeAndMonth},
    Entry{1501, "modAdvLoan", 1, Arguments::None},
    Entry{1502, "modAdvLoan", 2, Arguments::None},
    Entry{1503, "modInsGInsSSS", 3, Arguments::None},
    Entry{1504, "modInsGInsSSS", 4, Arguments::None},
    Entry{1505, "modInsGInsSSS", 5, Arguments::None},
    Entry{1507, "modInsGInsSSS", 7, Arguments::None},
    Entry{1508, "modSIDetails", 0, Arguments::Employee},
    Entry{1509, "modSalSIAdj", 0, Arguments::MonthYear},
    Entry{1510, "frmSepInt", 0, Arguments::None},
    Entry{1511, "modLockMonth", 0, Arguments::None},
};

const Entry* FindEntry(long code) {
  for (const Entry& entry : kEntries) {
    if (entry.code == code) return &entry;
  }
  return nullptr;
}

// In place of a bare "Subscript out of range" of the same number.
void RequireArgument(const CommandLine& line, long code, const char* what, const char* example) {
  if (line.arguments.size() > 1) return;
  throw RuntimeError(RuntimeError::SubscriptOutOfRange().number(),
                     fmt::format("{0} needs {1}: '{0},{2}#False#0#0'", code, what, example));
}

void TakeArguments(Session& session, const CommandLine& line, Arguments arguments) {
  switch (arguments) {
    case Arguments::None:
      break;
    case Arguments::Employee:
      RequireArgument(line, session.FormCode, "the number of an employee", "17");
      session.FormEmpId = line.ArgumentNumber(1);
      break;
    case Arguments::EmployeeAndMonth:
      session.FormEmpId = line.ArgumentNumber(1);
      session.FormArgText = line.Argument(2);
      break;
    case Arguments::MonthYear:
      RequireArgument(line, session.FormCode, "a month, year times twelve plus month", "24321");
      session.FormArgText = NumberText(Val(line.Argument(1)));
      break;
  }
}

int Dispatch(Session& session, const CommandLine& line) {
  const Entry* entry = FindEntry(session.FormCode);
  if (entry == nullptr) {
    session.desk.ShowError("Invalid form reference", session.title);
    StatusClose(session);
    return kNoScreen;
  }
  session.SIType = entry->siType;
  TakeArguments(session, line, entry->arguments);
  session.screens.Show(session, entry->screen);
  if (session.screens.Has(entry->screen)) return kScreenWasShown;
  StatusClose(session);
  return kNoScreen;
}

bool ReadReadOnlyFlag(Session& session) {
  const std::string user = session.machine.settings.Get("Settings", "USER", "ADMIN");
  const Value flag = session.data.FnVarGetDbValue(
      session.Sql("SELECT ISNULL(READONLYYN, 0) FROM SEC_USERLIST WHERE USERNAME = '{}'", user), 0);
  return flag.IsEmpty() || flag.ToBoolean();  // what cannot be read means read-only
}

// The number goes into statements as it stands, so that nothing but digits may be in it.
std::string WindowsUserNumber(Session& session) {
  const std::string number = session.machine.settings.Get("Settings", "WinUserID", "");
  const bool digits = std::ranges::all_of(number, [](char c) { return c >= '0' && c <= '9'; });
  return digits ? number : "";
}

// The store must name no window of a program that has gone, however it went.
void ForgetWindow(Session& session) noexcept {
  try {
    LeaveTopLevel(session);
  } catch (...) {
    // What ended the program is told, not that the store could not be written besides.
  }
}

}  // namespace

int RunProgram(Session& session, const std::string& commandLine) {
  RegisterScreens(session);
  session.desk.onShow = [&session](Screen& screen) { OfferExports(session, screen); };
  const CommandLine line = SplitCommandLine(commandLine);
  if (line.title) session.title = *line.title;
  session.data.SetTitle(session.title);
  const Value extended = session.machine.settings.Get("ExeTalk", "KTLExtendedYN", "0");
  session.ExtendedYN = Naming("The setting KTLExtendedYN", [&] { return extended.ToBoolean(); });
  session.WinUserID = WindowsUserNumber(session);
  if (!Connect(session, line)) return kNoScreen;
  LoadCaptions(session);
  session.ReadOnlyUser = ReadReadOnlyFlag(session);
  LoadOptionSet(session);
  session.TdsMar2Feb = session.options.TDSMAR2FEB;
  PrepareWorkstationObjects(session);
  try {
    return Dispatch(session, line);
  } catch (...) {
    ForgetWindow(session);
    throw;
  }
}

}  // namespace ktl
