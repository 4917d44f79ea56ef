#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "runtime/date.h"

namespace ktl {

// The per-user settings store of the application "Kestrel Ledger": sections and keys without regard to case.
class SettingsStore {
 public:
  virtual ~SettingsStore() = default;
  virtual std::string Get(std::string_view section, std::string_view key,
                          std::string_view defaultValue = "") = 0;
  virtual void Set(std::string_view section, std::string_view key, std::string_view value) = 0;
};

// The program's own folder: marker files, reports, the local store.
class ProgramFolder {
 public:
  virtual ~ProgramFolder() = default;
  virtual std::string Path() const = 0;
  virtual bool HasFile(std::string_view name) const = 0;
};

class Clock {
 public:
  virtual ~Clock() = default;
  virtual Date Now() const = 0;
};

// The host's status line.
class StatusBox {
 public:
  virtual ~StatusBox() = default;
  virtual void ReplaceText(long windowHandle, std::string_view text) = 0;
};

// What the operating system says of the user and the machine.
class Environment {
 public:
  virtual ~Environment() = default;
  virtual std::string HostName() const = 0;
  virtual std::string Variable(std::string_view name) const = 0;
  virtual std::string ExecutableName() const = 0;  // without folder and ending
  virtual long ProcessId() const = 0;              // stands for the window's handle in the settings store
  virtual bool MustEnd() const = 0;                // somebody has asked the program to end, by a signal
};

struct Sibling {
  std::string program;            // "KTLSIRep"
  std::string title;              // of its window
  std::string arguments;          // its command line, one argument
  std::string searchFolder = {};  // a further folder where it may lie, "" for none
};

// A program that has been started. It is ended with its object if it still runs then.
class SiblingProcess {
 public:
  virtual ~SiblingProcess() = default;
  virtual bool IsRunning() = 0;
  // The last line that it has written as its status since the last call, "" for none.
  virtual std::string TakeStatus() = 0;
};

// The other programs of the product.
class SiblingPrograms {
 public:
  virtual ~SiblingPrograms() = default;
  // Where the program lies, "" when it is not there.
  virtual std::string Find(const Sibling& sibling) = 0;
  // Null when it cannot be executed.
  virtual std::unique_ptr<SiblingProcess> Launch(const std::string& path, const Sibling& sibling) = 0;
  // Whether a program with that window handle runs: one that was not launched from here.
  virtual bool IsAlive(long windowHandle) = 0;
};

// All of the above, as one session uses them.
struct Machine {
  SettingsStore& settings;
  ProgramFolder& folder;
  Clock& clock;
  StatusBox& statusBox;
  Environment& environment;
  SiblingPrograms& siblings;
};

}  // namespace ktl
