#include "database/recordset.h"

#include <fmt/format.h>

#include <utility>

#include "database/tsql/words.h"
#include "runtime/text.h"

namespace ktl {

void Recordset::Open(Connection& cn, std::string_view sql, OpenMode mode) {
  Close();
  result_ =
      cn.Query(sql, mode == OpenMode::AddOnly ? Fetch::NoRows : Fetch::AllRows, mode != OpenMode::ReadOnly);
  cn_ = &cn;
  mode_ = mode;
}

void Recordset::Open(Connection& cn, const StatementTwin& twin) {
  Close();
  result_ = cn.Query(twin);
  cn_ = &cn;
}

void Recordset::Close() { *this = Recordset(); }

// Every row is asked for the same fields in the same order.
std::size_t Recordset::IndexOf(std::string_view field) const {
  if (askedBehind_.empty()) askedBehind_.resize(result_.columns.size());
  if (lastAsked_ < askedBehind_.size()) {
    const std::size_t guess = askedBehind_[lastAsked_];
    const std::string& column = result_.columns[guess];
    if (column == field || tsql::SameWord(column, field)) return lastAsked_ = guess;
  }
  for (std::size_t i = 0; i < result_.columns.size(); ++i) {
    if (!tsql::SameWord(result_.columns[i], field)) continue;
    askedBehind_[lastAsked_] = i;
    return lastAsked_ = i;
  }
  throw DatabaseError(fmt::format("Item cannot be found in the collection: {}.", field), kNoSuchFieldError);
}

bool Recordset::HasField(std::string_view field) const {
  for (const auto& column : result_.columns)
    if (tsql::SameWord(column, field)) return true;
  return false;
}

const Value& Recordset::operator[](std::string_view field) const { return (*this)[IndexOf(field)]; }

const Value& Recordset::operator[](std::size_t index) const {
  if (index >= result_.columns.size())
    throw DatabaseError(fmt::format("Item cannot be found in the collection: {}.", index), kNoSuchFieldError);
  if (Eof()) throw DatabaseError("There is no current record.", kNoCurrentRowError);
  return result_.rows[position_][index];
}

bool Recordset::Find(std::string_view field, std::string_view text) {
  const std::size_t index = IndexOf(field);
  for (; !Eof(); MoveNext()) {
    const Value& value = result_.rows[position_][index];
    if (!value.IsNull() && EqualsNoCase(value.ToText(), text)) return true;
  }
  return false;
}

void Recordset::RequireWritable() const {
  if (mode_ == OpenMode::ReadOnly) throw DatabaseError("The recordset was opened for reading only.", 3251);
}

void Recordset::AddNew() {
  RequireWritable();
  pending_.clear();
  adding_ = true;
}

void Recordset::Set(std::string_view field, Value value) {
  RequireWritable();
  const std::size_t index = IndexOf(field);
  if (!adding_ && Eof()) throw DatabaseError("There is no current record.", kNoCurrentRowError);
  const std::string& column = result_.columns[index];
  for (auto& assignment : pending_)
    if (assignment.column == column) {
      assignment.value = std::move(value);
      return;
    }
  pending_.push_back({column, std::move(value)});
}

void Recordset::Update() {
  if (!adding_ && pending_.empty()) return;
  const auto values = std::exchange(pending_, {});
  if (!std::exchange(adding_, false)) {
    cn_->driver().UpdateRow(result_.baseTable, result_.keys[position_], values);
  } else {
    RowKey key = cn_->driver().InsertRow(result_.baseTable, values);
    if (mode_ == OpenMode::AddOnly) return;
    position_ = result_.rows.size();
    result_.rows.emplace_back(result_.columns.size(), Null{});
    result_.keys.push_back(std::move(key));
  }
  for (const auto& assignment : values)
    result_.rows[position_][IndexOf(assignment.column)] = assignment.value;
}

}  // namespace ktl
