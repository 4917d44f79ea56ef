#pragma once

#include <set>
#include <string>
#include <unordered_map>
#include <vector>

#include "database/drivers/field_values.h"
#include "database/drivers/program_driver.h"
#include "database/drivers/sqlite_database.h"
#include "database/drivers/sqlite_file.h"
#include "database/drivers/sqlite_functions.h"
#include "database/tsql/words.h"

namespace ktl {

// The embedded database. Texts are read and written in its dialect by tsql; variables and the host's
// procedures are run here.
class SqliteDriver final : public ProgramDriver {
 public:
  SqliteDriver(SqliteDatabase database, FileKind kind, const ConnectionSettings& settings);
  ~SqliteDriver() override;

  std::string_view Choose(const StatementTwin& twin) override;
  RowKey InsertRow(const std::string& table, const std::vector<Assignment>& values) override;
  void UpdateRow(const std::string& table, const RowKey& key, const std::vector<Assignment>& values) override;
  void Begin() override;
  void Commit() override;
  void Rollback() override;
  bool InTransaction() const override { return database_.InTransaction(); }
  void MakeDurable() override;

 protected:
  tsql::Program Translate(std::string_view sql, bool updatable, int parameters) const override;
  void BeforeText() override { host_.variables.clear(); }
  ResultSet ReadRows(const tsql::Step& step, const Run& run) override;
  std::int64_t CountRows(const tsql::Step& step, Numbers numbers) override;
  std::int64_t CountChanges(const tsql::Step& step, Numbers numbers) override;
  bool Decide(const tsql::Step& branch) override;
  void Call(const tsql::Step& step) override;

 private:
  bool MakeReady(const StatementTwin& twin);
  void FillClassTable(const std::string& table, const std::string& user);
  void WriteAuditTrail(const tsql::Step& call);

  const FieldKinds& FieldsOf(const std::string& table);
  void KeepStatistics() noexcept;

  SqliteDatabase database_;
  ClientIdentity client_;
  FunctionHost host_;
  std::int64_t durableChanges_ = 0;                // made by this connection when its log was last flushed
  std::set<std::string, std::less<>> twinTables_;  // those known to be there
  std::unordered_map<std::string, FieldKinds, tsql::WordHash, tsql::WordEqual> fields_;
};

}  // namespace ktl
