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

// What a statement of ObjectStatements makes: its kind and its name.
struct MadeObject {
  std::string kind, name;
};

MadeObject MadeBy(const std::string& statement) {
  std::istringstream words(statement);
  MadeObject made;
  for (std::string word; words >> word && word != "DROP";) {
    if (word != "VIEW" && word != "FUNCTION" && word != "PROCEDURE" && word != "TRIGGER") continue;
    words >> made.name;
    return {word, made.name.substr(0, made.name.find('('))};
  }
  return {};
}

std::string QuotedList(const std::vector<std::string>& names) {
  return fmt::format("('{}')", fmt::join(names, "', '"));
}

// MariaDB commits at each statement that makes a table. A company is made under other names and takes its
// place by one RENAME, which the server does as a whole or not at all. A table of its own tells that a
// company is being made; by its name, whether there was one before. What was cut off before the RENAME is
// taken away at the next try; behind it, it is brought to its end, since people may be at work in it by then.
class MariaDbStage final : public ServerStage {
 public:
  MariaDbStage(Server& server, bool replace) : server_(server) {
    // The server may take a moment to see that a program was killed.
    if (database().Number(fmt::format("SELECT GET_LOCK(CONCAT('ktlmake.', MD5(DATABASE())), {})", kTurn)) ==
        0)
      throw CompanyError(fmt::format(kBusy, server_.shown()));
    // To take a table's name, everybody must be out of it; meanwhile nobody else gets in.
    database().Run(fmt::format("SET SESSION lock_wait_timeout = {}, foreign_key_checks = 0", kRenameTurn));
    CleanUp();
    before_ = Present("");
    if (!before_.empty() && !replace)
      throw CompanyError(cleaned_ + (cleaned_.empty() ? "" : " ") + fmt::format(kInTheWay, server_.shown()));
    RefuseStrangers();
    database().Run(fmt::format("CREATE TABLE `{}` (ID INT)", before_.empty() ? kFirst : kAgain));
    making_ = true;
  }

  ~MariaDbStage() override {
    if (!making_) return;
    try {
      TakeBack();
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
    try {
      Drop(WithPrefix(kOld, before_));
    } catch (const DatabaseError&) {
      // The company is whole; the next one that is made here throws them away.
    }
  }

 private:
  using Names = std::vector<std::string>;
  static constexpr const char *kNew = "KTL_NEW_", *kOld = "KTL_OLD_";
  static constexpr const char *kFirst = "KTL_MAKING_FIRST", *kAgain = "KTL_MAKING_AGAIN";
  static constexpr int kTurn = 3, kRenameTurn = 20;  // seconds

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
    if (!tables.empty()) database().Run(fmt::format("DROP TABLE IF EXISTS `{}`", fmt::join(tables, "`, `")));
  }

  void Rename(const std::vector<std::pair<std::string, std::string>>& names) {
    std::string text;
    for (const auto& [from, to] : names)
      text += fmt::format("{}`{}` TO `{}`", text.empty() ? "RENAME TABLE " : ", ", from, to);
    if (!text.empty()) database().Run(text);
  }

  void MakeObject(const std::string& statement) {
    // A trigger goes with its table when that is renamed.
    if (const auto [kind, name] = MadeBy(statement); kind == "TRIGGER")
      database().Run("DROP TRIGGER IF EXISTS " + name);
    // A statement with others inside answers once; the driver must not be asked for more.
    OdbcDatabase::Lease(database(), statement);
  }

  void MakeObjects() {
    for (const auto& statement : ObjectStatements(ServerKind::MariaDb)) MakeObject(statement);
  }

  void DropObjects() {
    for (const auto& statement : ObjectStatements(ServerKind::MariaDb))
      if (const auto [kind, name] = MadeBy(statement); !kind.empty())
        database().Run(fmt::format("DROP {} IF EXISTS {}", kind, name));
  }

  // What others have made and a company cannot stand beside, or what would be lost with the tables before.
  void RefuseStrangers() {
    Names tables, views;
    for (const auto& table : TableCatalogue()) tables.push_back(table.name);
    for (const auto& statement : ObjectStatements(ServerKind::MariaDb))
      if (const auto [kind, name] = MadeBy(statement); kind == "VIEW") views.push_back(name);
    const Names strangers = server_.Texts(fmt::format(
        "SELECT CONCAT(IF(TABLE_TYPE = 'VIEW', 'view ', 'table '), TABLE_NAME) FROM INFORMATION_SCHEMA.TABLES "
        "WHERE TABLE_SCHEMA = DATABASE() AND TABLE_NAME IN {1} AND TABLE_TYPE <> 'VIEW' OR TABLE_SCHEMA = "
        "DATABASE() AND TABLE_NAME IN {0} AND TABLE_TYPE = 'VIEW' "
        "UNION ALL SELECT CONCAT('foreign key ', CONSTRAINT_NAME, ' of ', TABLE_NAME) "
        "FROM INFORMATION_SCHEMA.REFERENTIAL_CONSTRAINTS WHERE CONSTRAINT_SCHEMA = DATABASE() AND "
        "(TABLE_NAME IN {0} OR REFERENCED_TABLE_NAME IN {0}) "
        "UNION ALL SELECT CONCAT('trigger ', TRIGGER_NAME, ' of ', EVENT_OBJECT_TABLE) "
        "FROM INFORMATION_SCHEMA.TRIGGERS WHERE EVENT_OBJECT_SCHEMA = DATABASE() AND EVENT_OBJECT_TABLE IN {0} "
        "AND TRIGGER_NAME <> 'KTL_MONTHLOCK'",
        QuotedList(tables), QuotedList(views)));
    if (!strangers.empty())
      throw CompanyError(fmt::format("{}: in the way of a company there: {}. Drop that first.",
                                     server_.shown(), fmt::join(strangers, ", ")));
  }

  // The new company gives way to the one before.
  void TakeBack() {
    if (const Names old = Present(kOld); !before_.empty() && !old.empty()) {
      std::vector<std::pair<std::string, std::string>> names;
      for (const auto& table : Present("")) names.emplace_back(table, kNew + table);
      for (const auto& table : old) names.emplace_back(kOld + table, table);
      Rename(names);
      for (const auto& statement : ObjectStatements(ServerKind::MariaDb)) try {
          MakeObject(statement);
        } catch (const DatabaseError&) {
          // What could not be made was not replaced.
        }
    }
    CleanUp();
  }

  void CleanUp() {
    const Names there = server_.Tables();
    const auto has = [&](const char* name) { return std::ranges::find(there, name) != there.end(); };
    const bool first = has(kFirst), again = has(kAgain), replaced = again && !Present(kOld).empty();
    // The last of the objects is there.
    const bool whole = first && !server_
                                     .Texts(
                                         "SELECT TABLE_NAME FROM INFORMATION_SCHEMA.VIEWS WHERE TABLE_SCHEMA "
                                         "= DATABASE() AND TABLE_NAME = 'KTL_SCHEMA'")
                                     .empty();
    if (replaced) MakeObjects();
    if (first && !whole) {
      Drop(Present(""));
      DropObjects();
    }
    Drop(WithPrefix(kNew, Present(kNew)));
    Drop({kFirst, kAgain});
    Drop(WithPrefix(kOld, Present(kOld)));
    if (first || again)
      cleaned_ = replaced || whole ? "An earlier attempt that was cut off there at its end has been finished."
                                   : "An earlier attempt that was cut off there has been cleaned away.";
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
