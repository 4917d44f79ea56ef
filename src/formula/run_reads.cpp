#include "formula/run_reads.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "common/sql_text.h"
#include "runtime/errors.h"
#include "runtime/text.h"

namespace ktl {
namespace {

constexpr std::size_t kBlock = 500;
// In front of every column that stands for a number.
constexpr std::string_view kWho = "WHO.";

bool AsksThePeople(const std::string& sql) { return sql.find(kWho) != sql.npos; }

// "Select A From T Where C" for all people: theirs are joined first, so that none is looked for twice.
std::string ForPeople(const std::string& sql, const std::string& people) {
  constexpr std::string_view kSelect = "SELECT ";
  constexpr std::string_view kFrom = " FROM ";
  const std::size_t from = UpperCase(sql).find(kFrom);
  return fmt::format("Select RUNEMPID, RUNDETID, {} From {} CROSS JOIN {}",
                     sql.substr(kSelect.size(), from - kSelect.size()), people,
                     sql.substr(from + kFrom.size()));
}

}  // namespace

Answer RunReads::NoDesk::MsgBox(const MessageBox& box) { throw RuntimeError(0, box.text); }

RunReads::RunReads(DataAccess& data, std::vector<RunPerson> people)
    : EmployeeReads(data), silent_(data.Cn(), noDesk_), people_(std::move(people)) {
  for (std::size_t i = 0; i < people_.size(); ++i) places_.try_emplace(people_[i].empDetId, i);
}

bool RunReads::TurnTo(const RunPerson& person) {
  current_ = nullptr;
  const auto found = places_.find(person.empDetId);
  if (found == places_.end()) return false;
  const std::size_t first = found->second / kBlock * kBlock;
  if (!block_ || block_->first != first) LoadBlock(first);
  place_ = found->second - first;
  const std::optional<Standing>& standing = block_->standings[place_];
  if (!standing || standing->person.empId != person.empId) return false;
  current_ = &*standing;
  return true;
}

void RunReads::LoadBlock(std::size_t first) {
  block_.reset();
  const std::size_t last = std::min(people_.size(), first + kBlock);
  std::vector<long> detailRows;
  for (std::size_t i = first; i < last; ++i) detailRows.push_back(people_[i].empDetId);
  const std::string ofPeople = AmongNumbers("EMPDETID", detailRows);
  Block block{
      .first = first,
      .people = fmt::format("(Select EMPID As RUNEMPID, EMPDETID As RUNDETID, ATTHEADID As RUNHEADID, "
                            "STRUCTID As RUNSTRUCTID From MAS_EMPLOYEEDET Where {}) WHO",
                            ofPeople)};
  block.standings.resize(last - first);
  Recordset rows(silent_.Cn(), fmt::format("Select EMPID, EMPDETID, ATTHEADID, STRUCTID From MAS_EMPLOYEEDET "
                                           "Where {}",
                                           ofPeople));
  for (; !rows.Eof(); rows.MoveNext()) {
    const long detail = rows[1].ToLong();
    const auto place = PlaceIn(block, detail);
    if (!place) continue;
    block.standings[*place] = Standing{.person = {rows[0].ToLong(), detail},
                                       .attHeadId = static_cast<long>(rows[2].NumberOr0()),
                                       .structId = static_cast<long>(rows[3].NumberOr0())};
  }
  block_ = std::move(block);
}

// Nothing for those who merely stand between the people of the block.
std::optional<std::size_t> RunReads::PlaceIn(const Block& block, long empDetId) const {
  const auto found = places_.find(empDetId);
  if (found == places_.end() || found->second < block.first) return std::nullopt;
  const std::size_t place = found->second - block.first;
  return place < block.standings.size() ? std::optional(place) : std::nullopt;
}

std::string RunReads::Employee(long empId) const {
  return current_ != nullptr && current_->person.empId == empId ? "WHO.RUNEMPID"
                                                                : EmployeeReads::Employee(empId);
}

std::string RunReads::DetailRow(long empDetId) const {
  return current_ != nullptr && current_->person.empDetId == empDetId ? "WHO.RUNDETID"
                                                                      : EmployeeReads::DetailRow(empDetId);
}

std::string RunReads::Head(long attHeadId) const {
  return current_ != nullptr && current_->attHeadId == attHeadId ? "WHO.RUNHEADID"
                                                                 : EmployeeReads::Head(attHeadId);
}

std::string RunReads::Structure(long structId) const {
  return current_ != nullptr && current_->structId == structId ? "WHO.RUNSTRUCTID"
                                                               : EmployeeReads::Structure(structId);
}

// Of statements that failed for the block none is tried again in it.
template <typename Result>
const Result& RunReads::Asked(std::unordered_map<std::string, Result>& known, const std::string& sql,
                              const std::function<Result()>& ask) {
  if (const auto found = known.find(sql); found != known.end()) return found->second;
  if (block_ && block_->failures.contains(sql)) throw RuntimeError(0, "failed before");
  try {
    return known.emplace(sql, ask()).first->second;
  } catch (const RuntimeError&) {
    if (block_) block_->failures.insert(sql);
    throw;
  }
}

Value RunReads::Read(const std::string& sql, Value ifNone) {
  const Value& value = ValueOf(sql);
  return value.IsNull() ? std::move(ifNone) : value;
}

bool RunReads::Exists(const std::string& sql) {
  return Read(fmt::format("Select Case When Exists ({}) Then 1 Else 0 End", sql), 0).ToLong() != 0;
}

Recordset RunReads::Rows(const std::string& sql) {
  if (!AsksThePeople(sql))
    return Recordset(Asked<ResultSet>(commonRows_, sql, [&] { return silent_.Cn().Query(sql); }));
  const Shared& shared = Asked<Shared>(block_->rows, sql, [&] { return ReadRows(sql); });
  return Recordset({.columns = shared.columns, .rows = shared.rows[place_], .baseTable = {}});
}

const Value& RunReads::ValueOf(const std::string& sql) {
  if (AsksThePeople(sql))
    return Asked<std::vector<Value>>(block_->values, sql, [&] { return ReadValues(sql); })[place_];
  return Asked<Value>(commonValues_, sql,
                      [&] { return silent_.Cn().FirstValue(sql).value_or(Value(Null{})); });
}

std::vector<Value> RunReads::ReadValues(const std::string& sql) {
  std::vector<Value> values(block_->standings.size(), Null{});
  EachRow(silent_.Cn().Query(fmt::format("Select RUNEMPID, RUNDETID, ({}) From {}", sql, block_->people)),
          [&](std::size_t place, ResultRow row) { values[place] = std::move(row.front()); });
  return values;
}

RunReads::Shared RunReads::ReadRows(const std::string& sql) {
  ResultSet result = silent_.Cn().Query(ForPeople(sql, block_->people));
  Shared shared{{result.columns.begin() + 2, result.columns.end()}, {}};
  shared.rows.resize(block_->standings.size());
  EachRow(std::move(result),
          [&](std::size_t place, ResultRow row) { shared.rows[place].push_back(std::move(row)); });
  return shared;
}

void RunReads::EachRow(ResultSet result, const std::function<void(std::size_t place, ResultRow row)>& take) {
  for (ResultRow& row : result.rows) {
    const auto place = PlaceIn(*block_, row[1].ToLong());
    if (!place) continue;
    row.erase(row.begin(), row.begin() + 2);
    take(*place, std::move(row));
  }
}

}  // namespace ktl
