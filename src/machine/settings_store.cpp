#include "machine/settings_store.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <thread>

#include "machine/files.h"
#include "machine/settings_text.h"

namespace ktl {

namespace {

[[noreturn]] void Fail(const std::filesystem::path& path, std::string_view what) {
  throw SettingsError(
      fmt::format("The settings file {} cannot be {}: {}.", path.string(), what, std::strerror(errno)));
}

constexpr std::chrono::milliseconds kLockStep{20};

// Held while one program reads, changes and replaces the file. The lock file stays: removing it would let a
// third program lock another file than the second.
class WriteLock final {
 public:
  WriteLock(const std::filesystem::path& path, std::chrono::milliseconds patience)
      : file_(::open((path.string() + ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600)) {
    if (!file_.valid()) Fail(path, "locked");
    const auto deadline = std::chrono::steady_clock::now() + patience;
    while (::flock(file_.get(), LOCK_EX | LOCK_NB) != 0) {
      if (errno != EINTR && errno != EWOULDBLOCK) Fail(path, "locked");
      if (std::chrono::steady_clock::now() >= deadline) {
        throw SettingsError(
            fmt::format("The settings file {} is being written by another program.", path.string()));
      }
      std::this_thread::sleep_for(kLockStep);
    }
  }

 private:
  FileDescriptor file_;
};

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

std::string ReadAll(const std::filesystem::path& path) {
  const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
  if (!file.valid()) {
    if (errno == ENOENT) return {};
    Fail(path, "read");
  }
  std::string text;
  char buffer[4096];
  for (;;) {
    const ssize_t count = ::read(file.get(), buffer, sizeof buffer);
    if (count == 0) return text.starts_with(kByteOrderMark) ? text.substr(kByteOrderMark.size()) : text;
    if (count > 0) {
      text.append(buffer, static_cast<std::size_t>(count));
    } else if (errno != EINTR) {
      Fail(path, "read");
    }
  }
}

bool WriteAll(int fd, std::string_view text) {
  while (!text.empty()) {
    const ssize_t count = ::write(fd, text.data(), text.size());
    if (count < 0 && errno != EINTR) return false;
    if (count > 0) text.remove_prefix(static_cast<std::size_t>(count));
  }
  return ::fsync(fd) == 0;
}

// The file is there with its old or its new text, never with half of one. The lock is held, so that one name
// serves every writer, and what a killed one has left is written over.
void Replace(const std::filesystem::path& path, std::string_view text) {
  const std::string temporary = path.string() + ".new";
  ::unlink(temporary.c_str());
  const FileDescriptor file(::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
  if (!file.valid()) Fail(path, "written");
  if (!WriteAll(file.get(), text) || ::rename(temporary.c_str(), path.c_str()) != 0) {
    const int reason = errno;
    ::unlink(temporary.c_str());
    errno = reason;
    Fail(path, "written");
  }
}

void MakeFolder(const std::filesystem::path& folder, const std::filesystem::path& file) {
  if (folder.empty() || std::filesystem::exists(folder)) return;
  MakeFolder(folder.parent_path(), file);
  if (::mkdir(folder.c_str(), 0700) != 0 && errno != EEXIST) Fail(file, "written");
}

template <typename Function>
auto Understanding(const std::filesystem::path& path, Function&& function) {
  try {
    return function();
  } catch (const std::invalid_argument& why) {
    throw SettingsError(
        fmt::format("The settings file {} cannot be understood: {}.", path.string(), why.what()));
  }
}

}  // namespace

std::optional<SettingsFile::Stamp> SettingsFile::StampOf() const {
  struct stat status {};
  if (::stat(path_.c_str(), &status) != 0) {
    if (errno == ENOENT) return std::nullopt;
    Fail(path_, "read");
  }
  return Stamp{status.st_ino, status.st_size, status.st_mtim.tv_sec * 1'000'000'000 + status.st_mtim.tv_nsec};
}

void SettingsFile::ReadWhenChanged() {
  const std::optional<Stamp> stamp = StampOf();
  if (stamp == readAt_) return;
  entries_ = Understanding(path_, [&] { return ParseSettings(ReadAll(path_)); });
  readAt_ = stamp;
}

std::string SettingsFile::Get(std::string_view section, std::string_view key, std::string_view defaultValue) {
  ReadWhenChanged();
  const auto found = entries_.find(SettingName(section, key));
  return found == entries_.end() ? std::string(defaultValue) : found->second;
}

void SettingsFile::Set(std::string_view section, std::string_view key, std::string_view value) {
  const std::filesystem::path file = BehindLinks(path_);
  MakeFolder(file.parent_path(), file);
  const WriteLock lock(file, patience_);
  const std::string text =
      Understanding(path_, [&] { return WithSetting(ReadAll(file), section, key, value); });
  Replace(file, text);
}

std::filesystem::path DefaultSettingsPath() {
  const auto variable = [](const char* name) -> std::string {
    const char* value = std::getenv(name);
    return value == nullptr ? "" : value;
  };
  if (const std::string own = variable("KTL_SETTINGS"); !own.empty()) return own;
  const std::string config = variable("XDG_CONFIG_HOME");
  const std::filesystem::path folder =
      config.empty() ? std::filesystem::path(variable("HOME")) / ".config" : std::filesystem::path(config);
  return folder / "kestrel-ledger" / "settings.ini";
}

}  // namespace ktl
