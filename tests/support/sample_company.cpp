#include "support/sample_company.h"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <optional>
#include <stdexcept>
#include <thread>
#include <vector>

#include "company/company.h"
#include "company/server_rows.h"
#include "company/table_catalogue.h"
#include "database/drivers/sqlite_file.h"
#include "support/company_store.h"
#include "support/private_server.h"

namespace ktl::test {

namespace {

namespace fs = std::filesystem;

// Every table is kept a second time, and the checksums of all tell which of them differ by now.
class SampleOnServer {
 public:
  SampleOnServer() {
    CompanyOptions options;
    options.server = database_.ConnectionString();
    CreateOnServer(options);
    server_.emplace(AddressOf(options.server), Server::Holds::Company);
    std::vector<std::string> keeping;
    for (const auto& table : TableCatalogue())
      keeping.push_back(fmt::format("CREATE TABLE KEPT_{} AS SELECT * FROM {}", table.name,
                                    ServerName(ServerKind::MariaDb, table.name)));
    database_.Run(keeping);
    whole_ = Sums();
  }

  void AwaitQuiet() {
    while (
        server_->database().Number("SELECT COUNT(*) FROM INFORMATION_SCHEMA.PROCESSLIST WHERE DB = DATABASE()"
                                   " AND ID <> CONNECTION_ID()") > 0)
      std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }

  void Reset() {
    AwaitQuiet();
    std::vector<std::string> statements{"START TRANSACTION"};
    for (const auto& [table, sum] : Sums()) {
      if (sum == whole_.at(table)) continue;
      const std::string name = ServerName(ServerKind::MariaDb, table);
      statements.push_back("DELETE FROM " + name);
      statements.push_back("INSERT INTO " + name + " SELECT * FROM KEPT_" + table);
    }
    statements.emplace_back("COMMIT");
    for (const auto& view : server_->Texts(Made("VIEWS", "VW_MAS_EMPLOYEE")))
      statements.push_back("DROP VIEW `" + view + "`");
    for (const auto& table : server_->Texts(Made("TABLES", "TMPFILTER")))
      statements.push_back("DROP TABLE `" + table + "`");
    for (const auto& statement : statements) server_->database().Run(statement);
  }

  std::map<std::string, std::string> Sums() {
    std::string sql;
    for (const auto& table : TableCatalogue())
      sql += (sql.empty() ? "CHECKSUM TABLE " : ", ") + ServerName(ServerKind::MariaDb, table.name);
    std::map<std::string, std::string> sums;
    OdbcDatabase::Lease read(server_->database(), sql);
    for (const auto& table : TableCatalogue()) {
      if (!read->Fetch()) break;
      sums[table.name] = read->Column(1).ToText();
    }
    return sums;
  }

  std::string ConnectionString() const { return database_.ConnectionString(); }

 private:
  // What programs have made for their workstation.
  static std::string Made(const std::string& kind, const std::string& prefix) {
    return "SELECT TABLE_NAME FROM INFORMATION_SCHEMA." + kind +
           " WHERE TABLE_SCHEMA = DATABASE() AND TABLE_NAME LIKE '" + prefix + "%'";
  }

  ServerDatabase database_;
  std::optional<Server> server_;
  std::map<std::string, std::string> whole_;
};

// It goes with its server, not before.
SampleOnServer& OnServer() {
  if (PrivateServer::Shared() == nullptr) throw std::runtime_error(PrivateServer::WhyNot());
  static auto* const sample = new SampleOnServer;
  return *sample;
}

}  // namespace

SampleCompany::SampleCompany() {
  fs::create_directory(folder_);
  const fs::path settings = folder_ / "settings.ini";
  if (CompaniesAreOnServer()) {
    WriteSettings(settings, AddressOf(OnServer().ConnectionString()));
    CreateLocalStore(folder_);
  } else {
    CompanyOptions options;
    options.file = folder_ / "company.kldb";
    options.settingsFile = settings;
    CreateCompany(options);
  }
  fs::copy(folder_, temporary_.path() / "whole");
  Reset();
}

void SampleCompany::Reset() const {
  fs::remove_all(folder_);
  fs::copy(temporary_.path() / "whole", folder_);
  if (CompaniesAreOnServer()) OnServer().Reset();
}

void SampleCompany::AwaitQuiet() const {
  if (CompaniesAreOnServer()) OnServer().AwaitQuiet();
}

std::string SampleCompany::ConnectionString() const {
  if (CompaniesAreOnServer()) return OnServer().ConnectionString();
  return AddressOf((folder_ / "company.kldb").string()).connectionString;
}

void SampleCompany::Remember() {
  if (CompaniesAreOnServer()) {
    sums_ = OnServer().Sums();
  } else {
    fs::copy(folder_ / "company.kldb", folder_ / "before", fs::copy_options::overwrite_existing);
  }
}

std::set<std::string> SampleCompany::Changed() const {
  std::set<std::string> changed;
  if (CompaniesAreOnServer()) {
    for (const auto& [table, sum] : OnServer().Sums())
      if (sums_.at(table) != sum) changed.insert(table);
    return changed;
  }
  SqliteDatabase database = OpenSqliteFile(folder_ / "company.kldb", FileKind::Company, 1);
  database.RunScript("ATTACH '" + (folder_ / "before").string() + "' AS old");
  for (const auto& table : TableCatalogue()) {
    const auto differ = fmt::format(
        "SELECT COUNT(*) FROM (SELECT * FROM (SELECT * FROM main.[{0}] EXCEPT SELECT * FROM old.[{0}]) "
        "UNION ALL SELECT * FROM (SELECT * FROM old.[{0}] EXCEPT SELECT * FROM main.[{0}]))",
        table.name);
    if (database.Number(differ) != 0) changed.insert(table.name);
  }
  return changed;
}

}  // namespace ktl::test
