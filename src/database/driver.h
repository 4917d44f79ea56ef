#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "runtime/value.h"

namespace ktl {

// The row that an updatable recordset stands on, as its driver knows it again.
using RowKey = std::int64_t;

struct ResultRow {
  std::vector<Value> values;
  RowKey key = 0;
};

struct ResultSet {
  std::vector<std::string> columns;  // in the spelling of the query
  std::vector<ResultRow> rows;
  std::string baseTable;  // of an updatable result, else empty
};

struct Assignment {
  std::string column;
  Value value;
};

enum class Fetch { AllRows, FirstRow, NoRows };

struct StatementTwin;

// One database behind a connection. Texts are Transact-SQL. Every failure is a DatabaseError.
class Driver {
 public:
  virtual ~Driver() = default;

  // updatable: a SELECT * over one table, whose rows carry keys for UpdateRow.
  virtual ResultSet Query(std::string_view sql, Fetch fetch, bool updatable) = 0;
  virtual std::int64_t Execute(std::string_view sql) = 0;
  virtual std::string Explain(std::string_view sql) = 0;
  // The text of the twin that this database is to get.
  virtual std::string_view Choose(const StatementTwin& twin) = 0;

  // Texts assigned to date columns are read day first and stored as dates. Columns not named stay null.
  virtual RowKey InsertRow(const std::string& table, const std::vector<Assignment>& values) = 0;
  virtual void UpdateRow(const std::string& table, RowKey key, const std::vector<Assignment>& values) = 0;

  virtual void Begin() = 0;
  virtual void Commit() = 0;
  virtual void Rollback() = 0;
  virtual bool InTransaction() const = 0;
};

}  // namespace ktl
