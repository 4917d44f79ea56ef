#pragma once

#include <memory>
#include <set>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

#include "database/driver.h"
#include "database/drivers/recently_used.h"
#include "database/drivers/shared_text.h"
#include "database/drivers/sqlite_database.h"
#include "database/drivers/sqlite_file.h"
#include "database/drivers/sqlite_functions.h"
#include "database/tsql/program.h"
#include "database/tsql/words.h"

namespace ktl {

// The embedded database. Texts are read and written in its dialect by tsql; batches, conditions, variables
// and the host's procedures are run here.
class SqliteDriver final : public Driver {
 public:
  SqliteDriver(SqliteDatabase database, FileKind kind, const ConnectionSettings& settings);
  ~SqliteDriver() override;

  ResultSet Query(std::string_view sql, Fetch fetch, bool updatable) override;
  std::int64_t Execute(std::string_view sql) override;
  std::string Explain(std::string_view sql) override;
  std::string_view Choose(const StatementTwin& twin) override;
  RowKey InsertRow(const std::string& table, const std::vector<Assignment>& values) override;
  void UpdateRow(const std::string& table, const RowKey& key, const std::vector<Assignment>& values) override;
  void Begin() override;
  void Commit() override;
  void Rollback() override;
  bool InTransaction() const override { return database_.InTransaction(); }
  void MakeDurable() override;

 private:
  enum class FieldKind { Text, Integer, Real, Date };
  using Fields = std::unordered_map<std::string, FieldKind, tsql::WordHash, tsql::WordEqual>;
  using ProgramPtr = std::shared_ptr<const tsql::Program>;
  // The numbers that a program's statements take.
  using Numbers = std::span<const Value>;

  // One run of a text: how its rows are wanted, and what it came to.
  struct Run {
    Fetch fetch = Fetch::AllRows;
    bool keepRows = false;
    Numbers numbers;
    std::int64_t rows = 0;
    ResultSet result;
    bool answered = false;  // the result is there
  };

  void RunText(std::string_view sql, bool updatable, Run& run);
  // The program of all texts that differ from this one in their numbers only; null when there is none.
  ProgramPtr SharedProgram(bool updatable);
  ProgramPtr ProgramOf(std::string_view sql, bool updatable);
  void RunProgram(const tsql::Program& program, Run& run);
  void RunStep(const tsql::Step& step, Run& run);
  ResultSet ReadRows(const tsql::Step& step, const Run& run);
  std::int64_t CountRows(const std::string& sql, Numbers numbers);

  bool MakeReady(const StatementTwin& twin);

  void Call(const tsql::Step& step);
  void FillClassTable(const std::string& table, const std::string& user);
  void WriteAuditTrail(const tsql::Step& call);

  const Fields& FieldsOf(const std::string& table);
  Value Fitted(const Assignment& assignment, const Fields& fields) const;
  void KeepStatistics() noexcept;
  void EndCommits();

  SqliteDatabase database_;
  ClientIdentity client_;
  FunctionHost host_;
  std::int64_t durableChanges_ = 0;  // made by this connection when its log was last flushed
  int commits_ = 0;                  // of transactions since then
  SharedText shared_;                // of the text being run
  // By their texts, those of updatable ones with a line break behind. Null for a shared text whose texts must
  // be read each on its own.
  RecentlyUsed<ProgramPtr> programs_;
  std::set<std::string, std::less<>> twinTables_;  // those known to be there
  std::unordered_map<std::string, Fields, tsql::WordHash, tsql::WordEqual> fields_;
};

}  // namespace ktl
