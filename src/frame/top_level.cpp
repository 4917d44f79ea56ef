#include "frame/top_level.h"

#include "frame/session.h"
#include "machine/files.h"
#include "runtime/errors.h"
#include "runtime/numbers.h"
#include "screen/screen.h"

namespace ktl {

namespace {

constexpr long kOutOfMemory = 521;

void StoreWindowHandle(Session& session, long handle) {
  const std::string key = "HWND" + session.machine.environment.ExecutableName();
  session.machine.settings.Set("ExeTalk", key, std::to_string(handle));
}

}  // namespace

void EnterTopLevel(Session& session, Screen& screen) {
  session.ActiveForm = &screen;
  const std::string helpFile = session.machine.settings.Get("ExeTalk", "HelpFile");
  session.helpFile = FnBlnFileExists(helpFile) ? helpFile : "";
  const Value company = session.data.FnVarGetDbValue("SELECT CMPNAME FROM MAS_COMPANY", "");
  session.desk.NotePlace({company.TextOrEmpty(), session.CurrentUser(), session.helpFile});
  RegisterWindow(session);
}

void RegisterWindow(Session& session) { StoreWindowHandle(session, session.machine.environment.ProcessId()); }

void LeaveTopLevel(Session& session) {
  StoreWindowHandle(session, 0);
  StatusClose(session);
  session.ActiveForm = nullptr;
}

void StatusClose(Session& session) {
  try {
    const std::string key = std::string("StatusHWND") + kVendorTitle;
    const long handle = Value(Val(session.machine.settings.Get("ExeTalk", key, "0"))).ToLong();
    session.machine.statusBox.ReplaceText(handle, "  ");
  } catch (const RuntimeError& failure) {
    const bool outOfMemory = failure.number() == kOutOfMemory;
    session.desk.ShowError(
        outOfMemory ? "Your system is running 'Out of Memory'.\r\n\r\nClose the appliations currently "
                      "running or restart the computer to resolve the problem."
                    : failure.description(),
        kVendorTitle);
  }
}

}  // namespace ktl
