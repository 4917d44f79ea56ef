#include <fmt/format.h>

#include <algorithm>
#include <set>
#include <sstream>

#include "company/company_error.h"
#include "company/server_rows.h"
#include "runtime/text.h"

namespace ktl {

namespace {

constexpr const char* kInTheWay = "{}: holds a company already, --force replaces it.";
constexpr const char* kBusy = "{}: another program is making a company there.";

// MariaDB commits at each statement that makes a table. A company is made under other names and takes its
// place by one RENAME, which the server does as a whole or not at all. A table of its own tells that a
// company is being made; by its name, whether there was one before. While it is there, what came before comes
// back at the next try; once it is gone, the old tables are only left to be thrown away.
class MariaDbStage final : public ServerStage {
 public:
  MariaDbStage(Server& server, bool replace) : server_(server) {
    if (database().Number("SELECT GET_LOCK(CONCAT('ktlmake.', MD5(DATABASE())), 0)") == 0)
      throw CompanyError(fmt::format(kBusy, server_.shown()));
    if (Undo()) cleaned_ = "An earlier attempt that was cut off there has been cleaned away.";
    before_ = Present("");
    if (!before_.empty() && !replace)
      throw CompanyError(cleaned_ + (cleaned_.empty() ? "" : " ") + fmt::format(kInTheWay, server_.shown()));
    database().Run(fmt::format("CREATE TABLE `{}` (ID INT)", before_.empty() ? kFirst : kAgain));
    making_ = true;
  }

  ~MariaDbStage() override {
    if (!making_) return;
    try {
      Undo();
    } catch (const std::exception&) {
      // The next try does it.
    }
  }

  std::string NameOf(const TableDescription& table) const override { return kNew + table.name; }
  void BeforeRows(const TableDescription&) override { database().Run("START TRANSACTION"); }
  void AfterRows(const TableDescription&) override { database().Run("COMMIT"); }
  std::string Cleaned() const override { return cleaned_; }

  void Put(const std::vector<TableDescription>& made) override {
    std::vector<std::pair<std::string, std::string>> names;
    for (const auto& table : before_) names.emplace_back(table, kOld + table);
    for (const auto& table : made) names.emplace_back(kNew + table.name, table.name);
    Rename(names);
    MakeObjects();
    Drop({before_.empty() ? kFirst : kAgain});
    making_ = false;
    Drop(WithPrefix(kOld, before_));
  }

 private:
  using Names = std::vector<std::string>;
  static constexpr const char *kNew = "KTL_NEW_", *kOld = "KTL_OLD_";
  static constexpr const char *kFirst = "KTL_MAKING_FIRST", *kAgain = "KTL_MAKING_AGAIN";

  OdbcDatabase& database() const { return server_.database(); }

  static Names WithPrefix(const std::string& prefix, const Names& names) {
    Names prefixed;
    for (const auto& name : names) prefixed.push_back(prefix + name);
    return prefixed;
  }

  // The tables of a company that are there under a prefix, without it.
  Names Present(const std::string& prefix) {
    const Names there = server_.Tables();
    Names present;
    for (const auto& table : TableCatalogue())
      if (std::ranges::find(there, prefix + table.name) != there.end()) present.push_back(table.name);
    return present;
  }

  void Drop(const Names& tables) {
    for (const auto& table : tables) database().Run(fmt::format("DROP TABLE IF EXISTS `{}`", table));
  }

  void Rename(const std::vector<std::pair<std::string, std::string>>& names) {
    std::string text;
    for (const auto& [from, to] : names)
      text += fmt::format("{}`{}` TO `{}`", text.empty() ? "RENAME TABLE " : ", ", from, to);
    if (!text.empty()) database().Run(text);
  }

  // A trigger goes with its table when that is renamed.
  void MakeObjects() {
    database().Run("DROP TRIGGER IF EXISTS KTL_MONTHLOCK");
    // A statement with others inside answers once; the driver must not be asked for more.
    for (const auto& statement : ObjectStatements(ServerKind::MariaDb))
      OdbcDatabase::Lease(database(), statement);
  }

  void DropObjects() {
    for (const auto& statement : ObjectStatements(ServerKind::MariaDb)) {
      std::istringstream words(statement);
      for (std::string word, name; words >> word && word != "DROP";) {
        if (word != "VIEW" && word != "FUNCTION" && word != "PROCEDURE" && word != "TRIGGER") continue;
        words >> name;
        database().Run(fmt::format("DROP {} IF EXISTS {}", word, name.substr(0, name.find('('))));
        break;
      }
    }
  }

  // What an attempt has left; true when one was cut off.
  bool Undo() {
    const Names there = server_.Tables();
    const auto has = [&](const char* name) { return std::ranges::find(there, name) != there.end(); };
    const bool first = has(kFirst), again = has(kAgain);
    if (first) {
      Drop(Present(""));
      DropObjects();
    }
    if (const Names old = Present(kOld); again && !old.empty()) {
      std::vector<std::pair<std::string, std::string>> names;
      for (const auto& table : Present("")) names.emplace_back(table, kNew + table);
      for (const auto& table : old) names.emplace_back(kOld + table, table);
      Drop(WithPrefix(kNew, Present(kNew)));
      Rename(names);
      MakeObjects();
    }
    Drop(WithPrefix(kNew, Present(kNew)));
    if (!again) Drop(WithPrefix(kOld, Present(kOld)));
    Drop({kFirst, kAgain});
    return first || again;
  }

  Server& server_;
  Names before_;
  std::string cleaned_;
  bool making_ = false;
};

// SQL Server undoes tables with the transaction that made them, also when the program is killed.
class SqlServerStage final : public ServerStage {
 public:
  SqlServerStage(Server& server, bool replace) : server_(server) {
    database().Run("SET XACT_ABORT ON");
    if (database().Number(server_.dialect().BeginText(0)) == 0)
      throw CompanyError(fmt::format(kBusy, server_.shown()));
    const auto there = server_.Tables();
    std::set<std::string> names;
    for (const auto& name : there) names.insert(UpperCase(name));
    for (const auto& table : TableCatalogue())
      if (names.contains(table.name)) before_.push_back(table.name);
    if (!before_.empty() && !replace) throw CompanyError(fmt::format(kInTheWay, server_.shown()));
    for (const auto& table : before_)
      database().Run("DROP TABLE " + ServerName(ServerKind::SqlServer, table));
  }

  ~SqlServerStage() override {
    if (kept_) return;
    try {
      database().Run(server_.dialect().RollbackText());
    } catch (const std::exception&) {
      // The server undoes what a connection leaves behind.
    }
  }

  std::string NameOf(const TableDescription& table) const override { return table.name; }
  void BeforeRows(const TableDescription& table) override { Number(table, "ON"); }
  void AfterRows(const TableDescription& table) override { Number(table, "OFF"); }
  std::string Cleaned() const override { return ""; }

  void Put(const std::vector<TableDescription>&) override {
    for (const auto& statement : ObjectStatements(ServerKind::SqlServer)) database().Run(statement);
    database().Run(server_.dialect().CommitText());
    kept_ = true;
  }

 private:
  OdbcDatabase& database() const { return server_.database(); }

  // Numbers that the server gives itself are taken from the rows here.
  void Number(const TableDescription& table, const char* onOrOff) {
    if (!NumberedColumn(table).empty())
      database().Run(
          fmt::format("SET IDENTITY_INSERT {} {}", ServerName(ServerKind::SqlServer, table.name), onOrOff));
  }

  Server& server_;
  std::vector<std::string> before_;
  bool kept_ = false;
};

}  // namespace

std::unique_ptr<ServerStage> StageOnMariaDb(Server& server, bool replace) {
  return std::make_unique<MariaDbStage>(server, replace);
}

std::unique_ptr<ServerStage> StageOnSqlServer(Server& server, bool replace) {
  return std::make_unique<SqlServerStage>(server, replace);
}

}  // namespace ktl
