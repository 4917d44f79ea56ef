#include "database/drivers/odbc_driver.h"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>

#include "database/drivers/server_company.h"
#include "database/statement_twin.h"
#include "database/stored_date.h"
#include "database/tsql/parser.h"
#include "runtime/text.h"

namespace ktl {

namespace {

// Of the wait for a turn, between two questions.
constexpr std::chrono::milliseconds kShortestSlice{50}, kLongestSlice{800};

constexpr std::string_view kFilling = "ClassSecurity";  // and ClassSecurityCloud

constexpr const char* kUndone =
    "The transaction was undone by the database server: nothing of it is saved. Please do it again.";

// The values that the marks of a statement ask for, in their order.
std::vector<Value> InOrder(const tsql::Step& step, std::span<const Value> numbers) {
  std::vector<Value> values;
  values.reserve(step.parameters.size());
  for (const int number : step.parameters) values.push_back(numbers[static_cast<std::size_t>(number - 1)]);
  return values;
}

// A null stands in the text: as a value it would have a type, and not every column takes one of every type.
void AddMark(std::string& text, std::vector<Value>& values, Value value) {
  const bool isNull = value.IsNull() || value.IsEmpty();
  text += isNull ? "NULL" : "?";
  if (!isNull) values.push_back(std::move(value));
}

// The table of a SELECT * over one table.
std::string BaseTable(std::string_view sql) {
  const tsql::Block block = tsql::Parse(sql);
  const auto* query = std::get_if<tsql::QueryPtr>(&block.front());
  if (query == nullptr || block.size() != 1 || (*query)->cores.front().from.size() != 1)
    throw DatabaseError("Only a SELECT * over one table can be updated.", kStatementError);
  return std::string((*query)->cores.front().from.front().name);
}

FieldKind FieldKindOf(OdbcStatement::Kind kind) {
  switch (kind) {
    case OdbcStatement::Kind::Integer:
      return FieldKind::Integer;
    case OdbcStatement::Kind::Real:
      return FieldKind::Real;
    case OdbcStatement::Kind::Date:
      return FieldKind::Date;
    default:
      return FieldKind::Text;
  }
}

}  // namespace

OdbcDriver::OdbcDriver(std::unique_ptr<const ServerDialect> dialect, const ConnectionSettings& settings)
    : dialect_(std::move(dialect)), settings_(settings), database_(*dialect_) {
  Connect();
}

OdbcDriver::~OdbcDriver() {
  try {
    if (InTransaction()) Rollback();
  } catch (const std::exception&) {
    // The server undoes what a connection leaves behind.
  }
}

void OdbcDriver::Connect() {
  OpenServerCompany(database_, settings_);
  try {
    for (const auto& filling : fillings_) database_.Run(filling.second);
  } catch (const ServerError& error) {
    database_.Close();
    throw NotReached(*dialect_, settings_, error);
  }
}

template <typename Work>
auto OdbcDriver::Say(Work work) {
  if (state_ == State::Undone) throw DatabaseError(kUndone);
  if (!database_.IsOpen()) Connect();
  const auto since = Clock::now();
  try {
    return work();
  } catch (const ServerError& error) {
    Learn(error, since);
  }
}

// What made a statement fail may have made the server undo the whole transaction; whatever is said after that
// would stand alone and be kept.
bool OdbcDriver::TransactionLives() {
  try {
    return database_.Number(dialect_->InTransactionText()) != 0;
  } catch (const ServerError&) {
    return false;
  }
}

std::string OdbcDriver::NoAnswer() const {
  return fmt::format("The database server did not answer within {} seconds", settings_.commandTimeout);
}

// A server that hangs does not even say that the time is over.
std::string OdbcDriver::HowLost(Clock::time_point since) const {
  const bool hung =
      settings_.commandTimeout > 0 && Clock::now() - since >= std::chrono::seconds(settings_.commandTimeout);
  return hung ? NoAnswer() + ", and the connection was given up"
              : "The connection to the database server was lost";
}

void OdbcDriver::Learn(const ServerError& error, Clock::time_point since) {
  const bool inTransaction = state_ != State::Free;
  const bool isOver =
      error.failure() == ServerFailure::ConnectionLost || error.failure() == ServerFailure::DeadLock;
  if (inTransaction && (isOver || !TransactionLives())) state_ = State::Undone;
  switch (error.failure()) {
    case ServerFailure::ConnectionLost:
      database_.Close();
      throw DatabaseError(HowLost(since) +
                          (inTransaction
                               ? ": nothing of what was begun is saved. Please do it again."
                               : ". If something was being saved, look whether it is there before doing it "
                                 "again."));
    case ServerFailure::DeadLock:
      throw DatabaseError(
          "Another workstation was writing the same rows: nothing is saved. Please do it again.");
    case ServerFailure::LockWait:
      throw DatabaseError(kLockedText);
    case ServerFailure::TimeOut:
      throw DatabaseError(NoAnswer() + ". Try again, or raise the setting COMDTIME.");
    case ServerFailure::Denied:
      throw DatabaseError(
          fmt::format("The user of the database may not do this: {}. Ask whoever looks after the server.",
                      WithoutStop(error.description())));
    default:
      throw DatabaseError(error.description(), error.number());
  }
}

tsql::Program OdbcDriver::Translate(std::string_view sql, bool updatable, int parameters) const {
  return dialect_->Translate(sql, updatable, parameters);
}

ResultSet OdbcDriver::Query(std::string_view sql, Fetch fetch, bool updatable) {
  return Say([&] {
    if (dialect_->SpeaksTheLanguage()) return QueryWhole(sql, fetch, updatable);
    return ProgramDriver::Query(sql, fetch, updatable);
  });
}

std::int64_t OdbcDriver::Execute(std::string_view sql) {
  return Say([&] {
    if (dialect_->SpeaksTheLanguage()) return ExecuteWhole(sql);
    return ProgramDriver::Execute(sql);
  });
}

std::string OdbcDriver::Explain(std::string_view sql) {
  return dialect_->SpeaksTheLanguage() ? std::string(sql) : ProgramDriver::Explain(sql);
}

std::string_view OdbcDriver::Choose(const StatementTwin& twin) { return twin.said; }

ResultSet OdbcDriver::QueryWhole(std::string_view sql, Fetch fetch, bool updatable) {
  tsql::Step step;
  if (updatable) step.baseTable = BaseTable(sql);
  if (fetch == Fetch::NoRows && updatable) return EmptyResult(step.baseTable);
  if (updatable) TableOf(step.baseTable);  // a connection reads one result at a time
  changed_ = true;
  OdbcDatabase::Lease statement(database_, std::string(sql));
  // Counts of changed rows come in front.
  while (!statement->HasRows())
    if (!statement->NextResult()) return {};
  ResultSet result = ReadResult(*statement, step, fetch);
  // What fails behind the first query fails as a whole.
  if (fetch != Fetch::NoRows) statement->ReadOut();
  return result;
}

std::int64_t OdbcDriver::ExecuteWhole(std::string_view sql) {
  changed_ = true;
  OdbcDatabase::Lease statement(database_, std::string(sql));
  std::int64_t rows = 0;
  do {
    if (!statement->HasRows()) rows += statement->RowsChanged();
    while (statement->Fetch()) ++rows;
  } while (statement->NextResult());
  return rows;
}

ResultSet OdbcDriver::ReadRows(const tsql::Step& step, const Run& run) {
  if (run.fetch == Fetch::NoRows && !step.baseTable.empty()) return EmptyResult(step.baseTable);
  // Asked for before the rows, since a connection reads one result at a time.
  if (!step.baseTable.empty()) TableOf(step.baseTable);
  const bool one = run.fetch == Fetch::FirstRow && !step.limited;
  OdbcDatabase::Lease statement(database_, one ? step.sql + std::string(dialect_->FirstRowOnly()) : step.sql,
                                InOrder(step, run.numbers), step.planAnew);
  return ReadResult(*statement, step, run.fetch);
}

ResultSet OdbcDriver::EmptyResult(const std::string& table) {
  ResultSet result;
  result.columns = TableOf(table).columns;
  result.baseTable = table;
  return result;
}

ResultSet OdbcDriver::ReadResult(OdbcStatement& statement, const tsql::Step& step, Fetch fetch) {
  const std::size_t count = statement.ColumnCount();
  ResultSet result;
  std::vector<bool> dates(count);
  for (std::size_t column = 0; column < count; ++column) {
    dates[column] = step.TellsDate(column, count);
    result.columns.push_back(statement.ColumnName(column));
  }
  std::vector<std::size_t> key;
  if (!step.baseTable.empty()) {
    result.baseTable = step.baseTable;
    for (const auto& name : TableOf(step.baseTable).key)
      key.push_back(static_cast<std::size_t>(
          std::ranges::find_if(result.columns,
                               [&](const auto& column) { return tsql::SameWord(column, name); }) -
          result.columns.begin()));
  }
  bool more = fetch != Fetch::NoRows && statement.Fetch();
  for (; more; more = fetch == Fetch::AllRows && statement.Fetch()) {
    auto& row = result.rows.emplace_back();
    row.reserve(count);
    for (std::size_t column = 0; column < count; ++column) {
      Value& value = row.emplace_back(statement.Column(column));
      if (!dates[column] || !value.IsText()) continue;
      if (const auto date = FromStoredDate(value.text())) value = *date;
    }
    if (result.baseTable.empty()) continue;
    auto values = std::make_shared<std::vector<Value>>();
    for (const std::size_t column : key) values->push_back(row[column]);
    result.keys.emplace_back(std::move(values));
  }
  return result;
}

std::int64_t OdbcDriver::CountRows(const tsql::Step& step, Numbers numbers) {
  OdbcDatabase::Lease statement(database_, step.sql, InOrder(step, numbers));
  std::int64_t rows = 0;
  while (statement->Fetch()) ++rows;
  return rows;
}

std::int64_t OdbcDriver::CountChanges(const tsql::Step& step, Numbers numbers) {
  changed_ = true;
  OdbcDatabase::Lease statement(database_, step.sql, InOrder(step, numbers));
  return statement->RowsChanged();
}

bool OdbcDriver::Decide(const tsql::Step& branch) { return database_.Number(branch.sql) != 0; }

void OdbcDriver::Call(const tsql::Step& step) {
  changed_ = true;
  try {
    database_.Run(step.sql);
    const bool fills = tsql::SameWord(std::string_view(step.name).substr(0, kFilling.size()), kFilling);
    if (fills) fillings_[UpperCase(step.name)] = step.sql;
  } catch (const ServerError& error) {
    if (error.failure() != ServerFailure::NoSuchProcedure) throw;
    throw DatabaseError(fmt::format("Could not find stored procedure '{}'.", step.name), kStatementError);
  }
}

const OdbcDriver::Table& OdbcDriver::TableOf(const std::string& name) {
  if (const auto found = tables_.find(name); found != tables_.end()) return found->second;
  Table table;
  {
    OdbcDatabase::Lease statement(database_, "SELECT * FROM " + dialect_->QuotedTable(name) + " WHERE 1 = 0");
    for (std::size_t column = 0; column < statement->ColumnCount(); ++column) {
      table.columns.push_back(statement->ColumnName(column));
      table.kinds[table.columns.back()] = FieldKindOf(statement->ColumnKind(column));
    }
  }
  table.key = database_.KeyOf(dialect_->TableName(name));
  if (table.key.empty()) table.key = table.columns;
  return tables_[name] = std::move(table);
}

RowKey OdbcDriver::InsertRow(const std::string& name, const std::vector<Assignment>& values) {
  return Say([&] {
    const Table& table = TableOf(name);
    const std::string quoted = dialect_->QuotedTable(name);
    std::string columns, marks;
    std::vector<Value> fitted;
    auto key = std::make_shared<std::vector<Value>>(table.key.size(), Null{});
    for (const auto& assignment : values) {
      columns += (columns.empty() ? "" : ", ") + dialect_->Quoted(assignment.column);
      Value value = FittedValue(assignment, table.kinds);
      for (std::size_t i = 0; i < table.key.size(); ++i)
        if (tsql::SameWord(table.key[i], assignment.column)) (*key)[i] = value;
      marks += marks.empty() ? "" : ", ";
      AddMark(marks, fitted, std::move(value));
    }
    changed_ = true;
    OdbcDatabase::Lease insert(database_,
                               values.empty()
                                   ? dialect_->InsertOfDefaults(quoted)
                                   : "INSERT INTO " + quoted + " (" + columns + ") VALUES (" + marks + ")",
                               fitted);
    return RowKey(std::move(key));
  });
}

void OdbcDriver::UpdateRow(const std::string& name, const RowKey& rowKey,
                           const std::vector<Assignment>& values) {
  if (values.empty()) return;
  Say([&] {
    const Table& table = TableOf(name);
    const Key& key = std::any_cast<const Key&>(rowKey);
    std::vector<Value> newKey = *key, sent;
    std::string columns, condition;
    for (const auto& assignment : values) {
      Value value = FittedValue(assignment, table.kinds);
      for (std::size_t i = 0; i < newKey.size(); ++i)
        if (tsql::SameWord(table.key[i], assignment.column)) newKey[i] = value;
      columns += (columns.empty() ? "" : ", ") + dialect_->Quoted(assignment.column) + " = ";
      AddMark(columns, sent, std::move(value));
    }
    for (std::size_t i = 0; i < key->size(); ++i) {
      condition += (condition.empty() ? "" : " AND ") + dialect_->Quoted(table.key[i]);
      condition += (*key)[i].IsNull() ? " IS NULL" : " = ?";
      if (!(*key)[i].IsNull()) sent.push_back((*key)[i]);
    }
    changed_ = true;
    OdbcDatabase::Lease update(
        database_, "UPDATE " + dialect_->QuotedTable(name) + " SET " + columns + " WHERE " + condition, sent);
    if (update->RowsChanged() == 0) throw DatabaseError(kRowGoneText, kRowGoneError);
    *key = std::move(newKey);
  });
}

// Waits for whoever writes in slices, so that the person can be asked in between. Each slice stands at the
// end of the server's queue anew, so the slices of who has waited long are long, or new ones would overtake
// him.
void OdbcDriver::Begin() {
  if (InTransaction()) throw DatabaseError("A transaction is under way already.");
  Say([&] {
    const auto since = Clock::now();
    std::chrono::milliseconds waited{0};
    const auto slice = [&] { return std::clamp(waited, kShortestSlice, kLongestSlice); };
    while (database_.Number(dialect_->BeginText(static_cast<int>(slice().count()))) == 0) {
      waited = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - since);
      const bool over =
          settings_.commandTimeout > 0 && waited >= std::chrono::seconds(settings_.commandTimeout);
      if (over || (settings_.onWait && !settings_.onWait({waited, !changed_})))
        throw DatabaseError(kLockedText);
    }
  });
  state_ = State::InTransaction;
}

void OdbcDriver::Commit() {
  if (!InTransaction()) throw DatabaseError("No transaction is active.");
  if (state_ == State::Undone) {
    Rollback();
    throw DatabaseError(kUndone);
  }
  const auto since = Clock::now();
  try {
    database_.Run(dialect_->CommitText());
    state_ = State::Free;
  } catch (const ServerError& error) {
    if (error.failure() == ServerFailure::ConnectionLost) {
      database_.Close();
      state_ = State::Free;
      throw DatabaseError(HowLost(since) + " while saving. Look whether it is there before doing it again.");
    }
    state_ = State::Undone;
    Rollback();
    throw DatabaseError(error.description(), error.number());
  }
}

// Whatever happens to the connection, the server undoes what was begun.
void OdbcDriver::Rollback() {
  if (!InTransaction()) throw DatabaseError("No transaction is active.");
  state_ = State::Free;
  if (!database_.IsOpen()) return;
  try {
    database_.Run(dialect_->RollbackText());
  } catch (const ServerError&) {
    database_.Close();
  }
}

void OdbcDriver::MakeDurable() {
  if (!InTransaction()) changed_ = false;
}

}  // namespace ktl
