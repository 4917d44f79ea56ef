#pragma once

#include <string>

#include "machine/machine.h"
#include "screen/controls.h"
#include "screen/screen.h"

namespace ktl {

struct Session;

// Starts one of the product's other programs and waits for it. It has no window: it is loaded, stays while
// the other program runs, lets events run meanwhile, and is unloaded by itself. Programs talk through the
// settings store's section "ExeTalk"; a window's handle is the process's number here.
class modExternal final : public Screen {
 public:
  explicit modExternal(Session& session);

  std::string AppName;       // the executable's name
  std::string AppSearchDir;  // a further folder to search
  std::string AppTitle;
  std::string AppParameter;
  // 2: wait for one that runs already. Any other: start it and wait until it has ended; with what screen
  // behind it makes no difference here.
  int MODE = 0;

  TextBox txtStatus{*this, "txtStatus"};  // the other program's status text

  void Form_Load() override;
  void Form_Activate() override;

  void txtStatus_Change();

 private:
  void StartAndWait();
  void WaitForEnd(SiblingProcess& process);
  void WaitForRunning();
  void PassStatus(SiblingProcess& process);
  void PassTime(SiblingProcess* process);
  long Handle();

  Session& session_;
  long callersStatus_ = 0;  // the handle of the status box in use before
};

// Runs the program as its callers do: in mode 3, modal to the screen that asks. The caller's own handle is
// put back afterwards.
void StartExternal(Session& session, const Sibling& sibling);
// The employee filter; FilterYN says afterwards whether one is set.
void OpenFilter(Session& session, Screen& caller);
// The master of lenders; the list of the caller is to be read again afterwards.
void OpenInstitutionMaster(Session& session);

}  // namespace ktl
