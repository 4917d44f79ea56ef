#include "frame/modExternal.h"

#include <fmt/format.h>

#include <chrono>
#include <exception>
#include <thread>

#include "common/titles.h"
#include "frame/session.h"
#include "frame/top_level.h"
#include "runtime/numbers.h"

namespace ktl {

namespace {

constexpr std::chrono::milliseconds kTick{50};
constexpr const char* kTalk = "ExeTalk";

std::string StatusKey() { return std::string("StatusHWND") + kVendorTitle; }

}  // namespace

modExternal::modExternal(Session& session) : Screen("modExternal"), session_(session) {
  txtStatus.onChange = [this] { txtStatus_Change(); };
}

void modExternal::Form_Load() {
  caption = kVendorTitle;
  if (AppName.empty() && (MODE < 1 || MODE > 4)) {
    session_.Inform("Properties of external application is not set properly");
    Unload();
  }
}

void modExternal::Form_Activate() {
  if (MODE == 2) {
    WaitForRunning();
  } else {
    StartAndWait();
  }
  Unload();
}

// The status box of the caller is the one in use again when the other program has gone.
void modExternal::StartAndWait() {
  SettingsStore& settings = session_.machine.settings;
  const std::string handleKey = "HWND" + AppName;
  callersStatus_ = static_cast<long>(Val(settings.Get(kTalk, StatusKey(), "0")));
  settings.Set(kTalk, StatusKey(), std::to_string(session_.machine.environment.ProcessId()));
  const Sibling sibling{AppName, AppTitle, AppParameter, AppSearchDir};
  const std::string path = session_.machine.siblings.Find(sibling);
  std::unique_ptr<SiblingProcess> process;
  if (!path.empty()) {
    settings.Set(kTalk, handleKey, "0");
    process = session_.machine.siblings.Launch(path, sibling);
  }
  if (!process) session_.desk.ShowError("Required External Application not found", session_.title);
  std::exception_ptr failure;
  try {
    if (process) WaitForEnd(*process);
  } catch (...) {
    failure = std::current_exception();
  }
  session_.desk.NoteStatus("");
  // However the wait ended: nobody shall write to a window that has gone.
  if (process) settings.Set(kTalk, handleKey, "0");
  settings.Set(kTalk, StatusKey(), std::to_string(callersStatus_));
  if (failure) std::rethrow_exception(failure);
}

long modExternal::Handle() {
  return static_cast<long>(Val(session_.machine.settings.Get(kTalk, "HWND" + AppName, "0")));
}

// Without a time-out, and whether its window has come up or not.
void modExternal::WaitForEnd(SiblingProcess& process) {
  while (process.IsRunning()) PassTime(&process);
  PassStatus(process);
}

void modExternal::WaitForRunning() {
  while (session_.machine.siblings.IsAlive(Handle())) PassTime(nullptr);
}

void modExternal::PassTime(SiblingProcess* process) {
  if (process != nullptr) PassStatus(*process);
  session_.desk.Refresh();
  if (session_.machine.environment.MustEnd()) throw ProgramFailure(kEndedBySignal);
  std::this_thread::sleep_for(kTick);
}

// Nothing new leaves the last text standing.
void modExternal::PassStatus(SiblingProcess& process) {
  if (const std::string status = process.TakeStatus(); !status.empty()) txtStatus.SetText(status);
}

void modExternal::txtStatus_Change() {
  session_.machine.statusBox.ReplaceText(callersStatus_, txtStatus.Text());
  session_.desk.NoteStatus(txtStatus.Text());
}

void StartExternal(Session& session, const Sibling& sibling) {
  modExternal launcher(session);
  launcher.AppName = sibling.program;
  launcher.AppTitle = sibling.title;
  launcher.AppParameter = sibling.arguments;
  launcher.AppSearchDir = sibling.searchFolder;
  launcher.MODE = 3;
  launcher.Load();
  RegisterWindow(session);
}

void OpenFilter(Session& session, Screen& caller) {
  session.ActiveForm = &caller;
  StartExternal(session, {"KTLFilter", "KestrelLedger - Filter",
                          fmt::format("1500,{}", Value(session.MultiLoginYN).ToText())});
  session.FilterYN = Val(session.machine.settings.Get("Settings", "Filter", "0")) != 0;
}

void OpenInstitutionMaster(Session& session) {
  const char* title = "KestrelLedger - Institution";
  StartExternal(session,
                {"KTLFilter", title,
                 fmt::format("{},{}${}", session.FormCode, Value(session.MultiLoginYN).ToText(), title)});
}

}  // namespace ktl
