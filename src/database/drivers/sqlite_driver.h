#pragma once

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "database/driver.h"
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
  SqliteDriver(SqliteDatabase database, FileKind kind, ClientIdentity client);
  ~SqliteDriver() override;

  ResultSet Query(std::string_view sql, Fetch fetch, bool updatable) override;
  std::int64_t Execute(std::string_view sql) override;
  std::string Explain(std::string_view sql) override;
  RowKey InsertRow(const std::string& table, const std::vector<Assignment>& values) override;
  void UpdateRow(const std::string& table, const RowKey& key, const std::vector<Assignment>& values) override;
  void Begin() override;
  void Commit() override;
  void Rollback() override;
  bool InTransaction() const override { return database_.InTransaction(); }

 private:
  enum class FieldKind { Text, Integer, Real, Date };
  using Fields = std::unordered_map<std::string, FieldKind, tsql::WordHash, tsql::WordEqual>;
  using Programs = std::unordered_map<std::string, std::shared_ptr<const tsql::Program>>;

  // What one run of a program came to.
  struct Outcome {
    std::int64_t rows = 0;
    ResultSet result;
    bool answered = false;  // the result is there
  };

  std::shared_ptr<const tsql::Program> ProgramOf(std::string_view sql, bool updatable);
  void RunProgram(const tsql::Program& program, Fetch fetch, bool keepRows, Outcome& outcome);
  void RunStep(const tsql::Step& step, Fetch fetch, bool keepRows, Outcome& outcome);
  ResultSet ReadRows(const tsql::Step& step, Fetch fetch);
  std::int64_t CountRows(const std::string& sql);

  void Call(const tsql::Step& step);
  void FillClassTable(const std::string& table, const std::string& user);
  void WriteAuditTrail(const tsql::Step& call);

  const Fields& FieldsOf(const std::string& table);
  Value Fitted(const Assignment& assignment, const Fields& fields) const;
  void KeepStatistics() noexcept;

  SqliteDatabase database_;
  ClientIdentity client_;
  FunctionHost host_;
  Programs programs_;
  std::unordered_map<std::string, Fields, tsql::WordHash, tsql::WordEqual> fields_;
};

}  // namespace ktl
