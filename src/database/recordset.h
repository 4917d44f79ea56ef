#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include "database/connection.h"
#include "database/driver.h"

namespace ktl {

enum class OpenMode {
  ReadOnly,
  Update,   // dynamic cursor, optimistic lock: a SELECT * over one table
  AddOnly,  // the same, opened only to add rows: nothing is read
};

// A client cursor: the rows are read whole at open, so that the database may be written while they are
// walked. Fields are found by index or by name without regard to case; of doubled names the first one counts.
// Reading a field with no current row, or an unknown field, throws DatabaseError 3021 or 3265.
class Recordset {
 public:
  Recordset() = default;
  Recordset(Connection& cn, std::string_view sql, OpenMode mode = OpenMode::ReadOnly) { Open(cn, sql, mode); }
  // Rows that were read before.
  explicit Recordset(ResultSet rows) : result_(std::move(rows)) {}

  Recordset(Connection& cn, const StatementTwin& twin) { Open(cn, twin); }

  void Open(Connection& cn, std::string_view sql, OpenMode mode = OpenMode::ReadOnly);
  void Open(Connection& cn, const StatementTwin& twin);
  void Close();
  bool IsOpen() const { return cn_ != nullptr; }

  bool Eof() const { return position_ >= result_.rows.size(); }
  bool Bof() const { return result_.rows.empty(); }
  std::size_t RecordCount() const { return result_.rows.size(); }
  void MoveFirst() { position_ = 0; }
  void MoveNext() { ++position_; }

  const Value& operator[](std::string_view field) const;
  const Value& operator[](std::size_t index) const;
  bool HasField(std::string_view field) const;
  const std::vector<std::string>& Fields() const { return result_.columns; }

  // From the current row on, the first row whose field equals the text (letter case ignored); false and at
  // the end when there is none.
  bool Find(std::string_view field, std::string_view text);

  // AddNew, Set..., Update adds a row; Set..., Update changes the current one. The rows read stay as they are
  // but for the row written.
  void AddNew();
  void Set(std::string_view field, Value value);
  void Update();

 private:
  void RequireWritable() const;
  std::size_t IndexOf(std::string_view field) const;

  Connection* cn_ = nullptr;
  OpenMode mode_ = OpenMode::ReadOnly;
  ResultSet result_;
  std::size_t position_ = 0;
  bool adding_ = false;
  std::vector<Assignment> pending_;
  // Which field was asked for behind each, found by its name.
  mutable std::vector<std::size_t> askedBehind_;
  mutable std::size_t lastAsked_ = 0;
};

}  // namespace ktl
