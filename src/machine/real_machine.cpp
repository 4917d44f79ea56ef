#include "machine/real_machine.h"

#include <fmt/format.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <optional>

#include "machine/files.h"
#include "machine/settings_store.h"
#include "machine/siblings.h"
#include "runtime/errors.h"

namespace ktl {

namespace {

std::string EnvironmentText(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string() : std::string(value);
}

class LocalFolder final : public ProgramFolder {
 public:
  explicit LocalFolder(std::filesystem::path path) : path_(std::move(path)) {}
  std::string Path() const override { return path_.string(); }
  bool HasFile(std::string_view name) const override {
    return !name.empty() && FnBlnFileExists(path_ / name);
  }

 private:
  std::filesystem::path path_;
};

class SystemClock final : public Clock {
 public:
  explicit SystemClock(std::optional<Date> fixedDay) : fixedDay_(fixedDay) {}
  Date Now() const override {
    if (fixedDay_) return *fixedDay_;
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    ::localtime_r(&now, &local);
    const int second = local.tm_sec > 59 ? 59 : local.tm_sec;  // a leap second
    return *Date::FromYmd(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min,
                          second);
  }

 private:
  std::optional<Date> fixedDay_;
};

// Reaching into another program's window is not possible on this platform: the host's status line stays as it
// is.
class NoStatusBox final : public StatusBox {
 public:
  void ReplaceText(long, std::string_view) override {}
};

volatile std::sig_atomic_t endAsked = 0;
int endNotice = -1;  // for the life of the program

void NoteEnd(int) {
  const int reason = errno;
  endAsked = 1;
  ::eventfd_write(endNotice, 1);
  errno = reason;
}

class LocalEnvironment final : public Environment {
 public:
  explicit LocalEnvironment(const char* argv0)
      : executableName_(std::filesystem::path(argv0).stem().string()) {}

  std::string HostName() const override {
    char name[HOST_NAME_MAX + 1] = {};
    return ::gethostname(name, sizeof name - 1) == 0 ? name : "";
  }
  std::string Variable(std::string_view name) const override {
    const std::string value = EnvironmentText(std::string(name).c_str());
    // What is called USERNAME elsewhere is called USER here.
    return value.empty() && name == "USERNAME" ? EnvironmentText("USER") : value;
  }
  std::string ExecutableName() const override { return executableName_; }
  long ProcessId() const override { return ::getpid(); }
  bool MustEnd() const override { return endAsked != 0; }

 private:
  std::string executableName_;
};

std::filesystem::path FolderOfProgram(const char* argv0) {
  if (const std::string chosen = EnvironmentText("KTL_FOLDER"); !chosen.empty()) return chosen;
  std::error_code failed;
  const auto executable = std::filesystem::canonical("/proc/self/exe", failed);
  return failed ? std::filesystem::absolute(argv0).parent_path() : executable.parent_path();
}

std::optional<Date> FixedDay() {
  const std::string text = EnvironmentText("KTL_TODAY");
  if (text.empty()) return std::nullopt;
  const std::optional<Date> day = ParseDate(text);
  if (!day || FormatDate(*day, "yyyy-mm-dd") != text) {
    throw RuntimeError(5, fmt::format("KTL_TODAY is \"{}\", which is no date as yyyy-mm-dd.", text));
  }
  return day;
}

}  // namespace

struct RealMachine::Parts {
  explicit Parts(const char* argv0)
      : settings(DefaultSettingsPath()),
        folder(FolderOfProgram(argv0)),
        clock(FixedDay()),
        environment(argv0),
        siblings(folder) {}

  SettingsFile settings;
  LocalFolder folder;
  SystemClock clock;
  NoStatusBox statusBox;
  LocalEnvironment environment;
  LocalSiblings siblings;
};

int EndOnSignals() {
  if (endNotice < 0) endNotice = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
  struct sigaction action {};
  action.sa_handler = NoteEnd;  // without SA_RESTART: a wait for the next line ends too
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) ::sigaction(signal, &action, nullptr);
  return endNotice;
}

RealMachine::RealMachine(const char* argv0) : parts_(std::make_unique<Parts>(argv0)) {}
RealMachine::~RealMachine() = default;

Machine RealMachine::machine() {
  return {parts_->settings,  parts_->folder,      parts_->clock,
          parts_->statusBox, parts_->environment, parts_->siblings};
}

}  // namespace ktl
