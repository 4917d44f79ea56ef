#include "company/company.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <functional>
#include <system_error>

#include "common/amounts.h"
#include "company/company_error.h"
#include "company/sample_masters.h"
#include "company/schema_texts.h"
#include "instructions/month_list.h"
#include "instructions/total_interest.h"
#include "machine/settings_store.h"

namespace ktl {
namespace {

namespace fs = std::filesystem;

std::string Reason() { return std::strerror(errno); }

// To the disk, a file or a folder's entries.
void Flush(const fs::path& path) {
  const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (descriptor < 0) throw CompanyError(fmt::format("{}: {}", path.string(), Reason()));
  const int result = ::fsync(descriptor);
  ::close(descriptor);
  if (result != 0) throw CompanyError(fmt::format("{}: {}", path.string(), Reason()));
}

void RemoveWithLogs(const fs::path& database) {
  std::error_code ignored;
  for (const char* ending : {"", "-wal", "-shm", "-journal"}) fs::remove(database.string() + ending, ignored);
}

// A file in the making: gone again unless it was kept.
class NewFile final {
 public:
  explicit NewFile(const fs::path& wanted)
      : wanted_(wanted), making_(fmt::format("{}.{}.new", wanted.string(), ::getpid())) {
    RemoveWithLogs(making_);
  }
  ~NewFile() { RemoveWithLogs(making_); }
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;

  const fs::path& path() const { return making_; }

  // In the place of the wanted file, whose own logs must not be taken for this one's.
  void Keep() {
    Flush(making_);
    for (const char* ending : {"-wal", "-shm", "-journal"}) fs::remove(wanted_.string() + ending);
    fs::rename(making_, wanted_);
    Flush(Folder());
  }

 private:
  fs::path Folder() const { return fs::absolute(wanted_).parent_path(); }

  fs::path wanted_;
  fs::path making_;
};

void CheckPlace(const CompanyOptions& options) {
  const std::string name = options.file.string();
  if (name.find(';') != std::string::npos)
    throw CompanyError(name + ": a company's name cannot hold a semicolon");
  if (fs::is_directory(options.file)) throw CompanyError(name + ": is a directory");
  if (fs::exists(options.file) && !options.force)
    throw CompanyError(name + ": exists already, --force replaces it");
  const fs::path folder = fs::absolute(options.file).parent_path();
  if (!fs::is_directory(folder)) throw CompanyError(folder.string() + ": no such directory");
}

std::vector<TableSum> Fill(const fs::path& file, const CompanyOptions& options) {
  SqliteDatabase database = MakeUnjournaled(file);
  database.RunScript(kSchemaText);
  database.RunScript(kSeedText);
  database.RunScript("BEGIN");
  WriteMonths(database);
  database.RunScript("COMMIT");
  if (!options.empty) FillSample(database, options.sample);
  database.RunScript(kTotalInterest.setup);  // behind the rows, which it need not watch being made
  database.RunScript(kMonthList.setup);
  database.RunScript("ANALYZE");
  auto sums = TableSums(database);
  // As the program keeps it, so that the first workstations to open it need not change it.
  database.RunScript("PRAGMA journal_mode = WAL");
  return sums;
}

// The local store belongs to the program's folder and may hold years of its own: one that is there stays.
void CreateLocalStore(const fs::path& file) {
  if (fs::exists(file)) return;
  NewFile store(file);
  MakeUnjournaled(store.path()).RunScript(kLocalText);
  store.Keep();
}

}  // namespace

std::vector<TableSum> CreateCompany(const CompanyOptions& options) {
  try {
    CheckPlace(options);
    NewFile company(options.file);
    auto sums = Fill(company.path(), options);
    CreateLocalStore(fs::absolute(options.file).parent_path() / "klgen.MDB");
    company.Keep();
    if (options.settingsFile) WriteSettings(*options.settingsFile, options.file);
    return sums;
  } catch (const fs::filesystem_error& error) {
    throw CompanyError(fmt::format("{}: {}", error.path1().string(), error.code().message()));
  } catch (const RuntimeError& error) {
    throw CompanyError(error.description());
  }
}

void WriteSettings(const fs::path& settingsFile, const fs::path& company) {
  SettingsFile settings(settingsFile);
  const std::string connection =
      fmt::format("Provider=SQLite;Data Source={};", fs::absolute(company).lexically_normal().string());
  settings.Set("Settings", "DefLnk", clsGenCmn::FnStrEncryptWord(connection));
  settings.Set("Settings", "USER", "ADMIN");
  settings.Set("Settings", "DBType", "SQL");
}

}  // namespace ktl
