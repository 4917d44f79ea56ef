#include "company/company.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "common/amounts.h"
#include "company/company_copy.h"
#include "company/company_error.h"
#include "company/new_file.h"
#include "company/sample_masters.h"
#include "company/schema_texts.h"
#include "instructions/month_list.h"
#include "instructions/total_interest.h"
#include "machine/settings_store.h"

namespace ktl {
namespace {

namespace fs = std::filesystem;

std::vector<TableSum> Fill(SqliteDatabase database, const CompanyOptions& options) {
  database.RunScript(kSchemaText);
  database.RunScript(kSeedText);
  database.RunScript("BEGIN");
  WriteMonths(database);
  database.RunScript("COMMIT");
  if (!options.empty) FillSample(database, options.sample);
  FinishCompany(database);
  return TableSums(database);
}

// Of the temporary ones; gone with what is in it.
class MomentaryFolder final {
 public:
  MomentaryFolder() {
    std::string name = (fs::temp_directory_path() / "ktl-company-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr)
      throw CompanyError(fmt::format("{}: {}", name, std::strerror(errno)));
    path_ = name;
  }
  ~MomentaryFolder() {
    std::error_code failed;
    fs::remove_all(path_, failed);
  }
  MomentaryFolder(const MomentaryFolder&) = delete;
  MomentaryFolder& operator=(const MomentaryFolder&) = delete;
  const fs::path& path() const { return path_; }

 private:
  fs::path path_;
};

std::vector<TableSum> Made(const fs::path& making, const CompanyOptions& options) {
  try {
    return Fill(MakeUnjournaled(making), options);
  } catch (const DatabaseError& error) {
    throw CompanyError(fmt::format("{}: {}", options.file.string(), error.description()));
  }
}

}  // namespace

void FinishCompany(SqliteDatabase& database) {
  database.RunScript(kTotalInterest.setup);  // behind the rows, which it need not watch being made
  database.RunScript(kMonthList.setup);
  database.RunScript("ANALYZE");
  // As the program keeps it, so that the first workstations to open it need not change it.
  database.RunScript("PRAGMA journal_mode = WAL");
}

void CreateLocalStore(const fs::path& folder) {
  const fs::path file = folder / "klgen.MDB";
  if (fs::exists(file)) return;
  NewFile store(file, true);
  MakeUnjournaled(store.path()).RunScript(kLocalText);
  store.Keep();
}

std::vector<TableSum> CreateCompany(const CompanyOptions& options) {
  return TellingFiles([&] {
    NewFile company(options.file, options.force);
    auto sums = Made(company.path(), options);
    CreateLocalStore(fs::absolute(options.file).parent_path());
    company.Keep();
    if (options.settingsFile) WriteSettings(*options.settingsFile, AddressOf(options.file));
    return sums;
  });
}

std::vector<TableSum> CreateOnServer(const CompanyOptions& options) {
  const CompanyAddress server = AddressOf(options.server);
  if (!server.OnServer())
    throw CompanyError(
        "--server wants a connection string (\"Provider=MariaDB;..\") or @FILE that holds one.");
  return TellingFiles([&] {
    const MomentaryFolder folder;
    CompanyOptions made = options;
    made.file = folder.path() / "company.kldb";
    made.settingsFile.reset();
    auto sums = CreateCompany(made);
    CopyCompany({AddressOf(made.file), server, options.force, options.watch});
    if (options.settingsFile) WriteSettings(*options.settingsFile, server);
    return sums;
  });
}

void WriteSettings(const fs::path& settingsFile, const CompanyAddress& company) {
  SettingsFile settings(settingsFile);
  settings.Set("Settings", "DefLnk", clsGenCmn::FnStrEncryptWord(company.connectionString));
  settings.Set("Settings", "USER", "ADMIN");
  settings.Set("Settings", "DBType", "SQL");
}

}  // namespace ktl
