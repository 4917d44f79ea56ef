#include "support/company_store.h"

#include <fmt/format.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <vector>

#include "company/schema_texts.h"
#include "company/server_schema.h"
#include "company/table_catalogue.h"
#include "database/connection.h"
#include "database/drivers/sqlite_file.h"
#include "instructions/month_list.h"
#include "instructions/total_interest.h"
#include "support/private_server.h"

namespace ktl::test {

namespace {

namespace fs = std::filesystem;

class CompanyFile final : public CompanyStore {
 public:
  CompanyFile() { std::ofstream(file_, std::ios::binary) << Template(); }
  ~CompanyFile() override {
    for (const char* suffix : {"", "-wal", "-shm"}) {
      std::error_code ignored;
      fs::remove(file_.string() + suffix, ignored);
    }
  }
  std::string ConnectionString() const override {
    return "Provider=SQLite;Data Source=" + file_.string() + ";";
  }
  fs::path File() const override { return file_; }
  void Alter(const std::string& sql) override {
    OpenSqliteFile(file_, FileKind::Company, 1).Run(sql.c_str());
  }

 private:
  // Made once a process, and copied.
  static const std::string& Template() {
    static const std::string bytes = [] {
      const auto file = UnusedPath(".ktl");
      CreateSqliteFile(file, {kSchemaText, kSeedText, kTotalInterest.setup, kMonthList.setup,
                              "PRAGMA journal_mode = WAL"});
      std::ifstream stream(file, std::ios::binary);
      std::string content{std::istreambuf_iterator<char>(stream), {}};
      fs::remove(file);
      return content;
    }();
    return bytes;
  }

  fs::path file_ = UnusedPath(".ktl");
};

// Tables, objects and required rows; a procedure brings all of it back to that state in one call.
class CompanyDatabase {
 public:
  CompanyDatabase() {
    std::vector<std::string> statements;
    for (const auto& table : TableCatalogue())
      for (auto& statement : TableStatements(ServerKind::MariaDb, table))
        statements.push_back(std::move(statement));
    for (auto& statement : ObjectStatements(ServerKind::MariaDb)) statements.push_back(std::move(statement));
    const auto seeded = SeedRows();
    database_.Run(statements);
    WriteRows(seeded);
    database_.Run(ResetProcedure(seeded));
  }
  // False for one whose tables a test has changed.
  bool Reset() const {
    try {
      database_.Run("CALL KTL_TEST_RESET()");
      return true;
    } catch (const DatabaseError&) {
      return false;
    }
  }
  std::string ConnectionString() const { return database_.ConnectionString(); }
  void Alter(const std::string& sql) {
    altered_ = true;
    database_.Run(sql);
  }
  bool IsAltered() const { return altered_; }

 private:
  using Seed = std::vector<std::pair<std::string, ResultSet>>;

  static Seed SeedRows() {
    const CompanyFile embedded;
    Connection cn;
    cn.Open(embedded.ConnectionString());
    Seed seed;
    for (const auto& table : TableCatalogue()) {
      ResultSet rows = cn.Query("SELECT * FROM " + table.name);
      if (!rows.rows.empty()) seed.emplace_back(table.name, std::move(rows));
    }
    return seed;
  }
  void WriteRows(const Seed& seed) const {
    Connection cn;
    cn.Open(ConnectionString());
    for (const auto& [table, rows] : seed)
      for (const auto& row : rows.rows) {
        std::vector<Assignment> values;
        for (std::size_t column = 0; column < row.size(); ++column)
          values.push_back({rows.columns[column], row[column]});
        cn.driver().InsertRow(table, values);
      }
  }
  std::string ResetProcedure(const Seed& seed) const {
    std::string body;
    for (const auto& table : TableCatalogue()) {
      const std::string name = ServerName(ServerKind::MariaDb, table.name);
      body += fmt::format("DELETE FROM {};\n", name);
    }
    for (const auto& [table, rows] : seed) {
      database_.Run(fmt::format("CREATE TABLE `SEED_{0}` AS SELECT * FROM {0}", table));
      body += fmt::format("INSERT INTO {0} SELECT * FROM `SEED_{0}`;\n", table);
    }
    return "CREATE PROCEDURE KTL_TEST_RESET() BEGIN START TRANSACTION;\n" + body + "COMMIT; END";
  }

  ServerDatabase database_;
  bool altered_ = false;
};

// Databases that no test uses now; making one takes a second. They go with their server, not before: at the
// end of the program nobody can be connected any more.
std::vector<std::unique_ptr<CompanyDatabase>>& Unused() {
  static auto* const unused = new std::vector<std::unique_ptr<CompanyDatabase>>;
  return *unused;
}

class CompanyOnServer final : public CompanyStore {
 public:
  CompanyOnServer() {
    if (PrivateServer::Shared() == nullptr) throw std::runtime_error(PrivateServer::WhyNot());
    while (!Unused().empty() && !database_) {
      database_ = std::move(Unused().back());
      Unused().pop_back();
      if (!database_->Reset()) database_.reset();
    }
    if (!database_) database_ = std::make_unique<CompanyDatabase>();
  }
  ~CompanyOnServer() override {
    if (!database_->IsAltered()) Unused().push_back(std::move(database_));
  }
  std::string ConnectionString() const override { return database_->ConnectionString(); }
  fs::path File() const override { return {}; }
  void Alter(const std::string& sql) override { database_->Alter(sql); }

 private:
  std::unique_ptr<CompanyDatabase> database_;
};

}  // namespace

bool CompaniesAreOnServer() {
  static const char* const store = std::getenv("KTL_TEST_STORE");
  return store != nullptr && std::string_view(store) == "MariaDB";
}

std::unique_ptr<CompanyStore> NewCompanyStore() {
  if (CompaniesAreOnServer()) return std::make_unique<CompanyOnServer>();
  return std::make_unique<CompanyFile>();
}

fs::path UnusedPath(const char* ending) {
  static int number = 0;
  // Memory, where the system has a folder of it: no test waits for a disk.
  const fs::path memory = "/dev/shm";
  const auto folder = fs::exists(memory) ? memory : fs::temp_directory_path();
  return folder / fmt::format("ktl-test-{}-{}{}", getpid(), ++number, ending);
}

}  // namespace ktl::test
