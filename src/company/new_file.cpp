#include "company/new_file.h"

#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <optional>
#include <system_error>

#include "database/drivers/sqlite_file.h"

namespace ktl {
namespace {

namespace fs = std::filesystem;

constexpr const char* kMaking = ".ktl-making";

[[noreturn]] void Fail(const fs::path& path) {
  throw CompanyError(fmt::format("{}: {}", path.string(), std::strerror(errno)));
}

// To the disk, a file or a folder's entries.
void Flush(const fs::path& path) {
  const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
  if (!file.valid() || ::fsync(file.get()) != 0) Fail(path);
}

// Logs of one file must not be taken for another's.
void RemoveLogs(const fs::path& database) {
  for (const char* ending : {"-wal", "-shm", "-journal"}) fs::remove(database.string() + ending);
}

void RemoveWithLogs(const fs::path& database) noexcept {
  try {
    RemoveLogs(database);
    fs::remove(database);
  } catch (const std::exception&) {
    // The next one that is made here removes it.
  }
}

fs::path FolderOf(const fs::path& file) { return fs::absolute(file).parent_path(); }

void Sweep(const fs::path& folder) {
  for (const auto& entry : fs::directory_iterator(folder)) {
    if (!entry.path().native().ends_with(kMaking)) continue;
    const FileDescriptor left(::open(entry.path().c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW));
    if (left.valid() && ::flock(left.get(), LOCK_EX | LOCK_NB) == 0) RemoveWithLogs(entry.path());
  }
}

void CheckPlace(const fs::path& wanted, bool replace) {
  const std::string name = wanted.string();
  if (name.find(';') != std::string::npos)
    throw CompanyError(name + ": a company's name cannot hold a semicolon");
  if (fs::is_directory(wanted)) throw CompanyError(name + ": is a directory");
  const fs::path folder = FolderOf(wanted);
  if (!fs::is_directory(folder)) throw CompanyError(folder.string() + ": no such directory");
  if (!fs::exists(wanted)) return;
  if (!replace) throw CompanyError(name + ": exists already, --force replaces it");
  TakeSqliteFile(name);
}

}  // namespace

NewFile::NewFile(const fs::path& wanted, bool replace)
    : wanted_((CheckPlace(wanted, replace), BehindLinks(wanted))),
      replace_(replace),
      making_((Sweep(FolderOf(wanted_)), fmt::format("{}.{}{}", wanted_.string(), ::getpid(), kMaking))),
      held_(::open(making_.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600)) {
  if (!held_.valid()) Fail(making_);
  ::flock(held_.get(), LOCK_EX | LOCK_NB);
}

NewFile::~NewFile() { RemoveWithLogs(making_); }

// Never over a file that has appeared meanwhile, where the file system can tell.
void NewFile::Put() const {
  if (!replace_) {
    if (::renameat2(AT_FDCWD, making_.c_str(), AT_FDCWD, wanted_.c_str(), RENAME_NOREPLACE) == 0) return;
    if (errno != EINVAL) Fail(wanted_);
  }
  fs::rename(making_, wanted_);
}

// The old file is whole by itself before its log goes, and its log is gone before the new one comes. A
// program that waits for the old one finds the new one.
void NewFile::Keep() {
  Flush(making_);
  std::optional<SqliteDatabase> old;
  if (replace_ && fs::exists(wanted_)) old.emplace(TakeSqliteFile(wanted_));
  if (!fs::exists(wanted_) || old) RemoveLogs(wanted_);
  Put();
  Flush(FolderOf(wanted_));
}

}  // namespace ktl
