#pragma once

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "machine/machine.h"

namespace ktl {

class FakeSettings final : public SettingsStore {
 public:
  std::string Get(std::string_view section, std::string_view key,
                  std::string_view defaultValue = "") override;
  void Set(std::string_view section, std::string_view key, std::string_view value) override;

 private:
  std::map<std::string, std::string, std::less<>> values_;  // by "SECTION\nKEY"
};

class FakeFolder final : public ProgramFolder {
 public:
  std::string Path() const override { return path; }
  bool HasFile(std::string_view name) const override { return markers.contains(std::string(name)); }

  std::string path = "/nowhere";
  std::set<std::string> markers;
};

class FixedClock final : public Clock {
 public:
  Date Now() const override { return now; }

  Date now = *Date::FromYmd(2026, 9, 15, 10, 30);
};

struct StatusText {
  long windowHandle = 0;
  std::string text;
};

class RecordingStatusBox final : public StatusBox {
 public:
  void ReplaceText(long windowHandle, std::string_view text) override;

  std::vector<StatusText> texts;
  long failWith = 0;  // a run-time error of that number instead
};

class FakeEnvironment final : public Environment {
 public:
  std::string HostName() const override { return hostName; }
  std::string Variable(std::string_view name) const override;
  std::string ExecutableName() const override { return executableName; }
  long ProcessId() const override { return processId; }
  bool MustEnd() const override { return mustEnd; }

  std::string hostName = "PC1";
  std::string executableName = "KTLStIns";
  long processId = 4711;
  bool mustEnd = false;
  std::map<std::string, std::string, std::less<>> variables;
};

// Programs that end as soon as they are started.
class RecordingSiblings final : public SiblingPrograms {
 public:
  std::string Find(const Sibling& sibling) override;
  std::unique_ptr<SiblingProcess> Launch(const std::string& path, const Sibling& sibling) override;
  bool IsAlive(long) override { return false; }

  std::vector<Sibling> started;
  std::set<std::string> missing;  // programs that are not there
};

// A machine without files, windows or other programs: 15 September 2026, half past ten, on PC1.
struct FakeMachine {
  FakeSettings settings;
  FakeFolder folder;
  FixedClock clock;
  RecordingStatusBox statusBox;
  FakeEnvironment environment;
  RecordingSiblings siblings;

  Machine machine() { return {settings, folder, clock, statusBox, environment, siblings}; }
};

}  // namespace ktl
