#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "common/fetch.h"
#include "formula/employee_reads.h"
#include "screen/desk.h"

namespace ktl {

// One of the people of a run, with the detail row that the run goes by.
struct RunPerson {
  long empId = 0;
  long empDetId = 0;
};

// Reads for many employees in the order in which they come. What is the same for everybody is read once; what
// depends on the employee is read for a block of them by one statement, which holds the employee's own.
// Whatever fails throws and is told to nobody: that employee can then be asked for alone.
class RunReads final : public EmployeeReads {
 public:
  RunReads(DataAccess& data, std::vector<RunPerson> people);

  // Whom the statements are about from here on; false when he is none of the people.
  bool TurnTo(const RunPerson& person);
  // Whether anything was, so far, that may depend on what is written meanwhile.
  bool HasAskedAnew() const { return askedAnew_; }

  std::string Employee(long empId) const override;
  std::string DetailRow(long empDetId) const override;
  std::string Head(long attHeadId) const override;
  std::string Structure(long structId) const override;

  Value Read(const std::string& sql, Value ifNone) override;
  Value Fetch(const std::string& sql, Value ifNone) override { return Read(sql, std::move(ifNone)); }
  bool Exists(const std::string& sql) override;
  Recordset Rows(const std::string& sql) override;
  DataAccess& data() override { return silent_; }
  DataAccess& AskingAnew() override {
    askedAnew_ = true;
    return silent_;
  }

 protected:
  std::shared_ptr<const void>* Kept(const std::string& key) override { return &kept_[key]; }

 private:
  // A box is a failure here.
  class NoDesk final : public Desk {
   public:
    Answer MsgBox(const MessageBox& box) override;
    void ShowModal(Screen&) override {}
  };

  // What a detail row says of its place in the company.
  struct Standing {
    RunPerson person;
    long attHeadId = 0;
    long structId = 0;
  };

  // The rows of a statement, by place in the block.
  struct Shared {
    std::vector<std::string> columns;
    std::vector<std::vector<ResultRow>> rows;
  };

  // The people that are read together, and what was read for them so far, by statement.
  struct Block {
    std::size_t first = 0;
    std::string people;  // as a table of a statement
    std::vector<std::optional<Standing>> standings;
    std::unordered_map<std::string, std::vector<Value>> values;
    std::unordered_map<std::string, Shared> rows;
    std::unordered_set<std::string> failures;
  };

  void LoadBlock(std::size_t first);
  std::optional<std::size_t> PlaceIn(const Block& block, long empDetId) const;
  const Value& ValueOf(const std::string& sql);
  std::vector<Value> ReadValues(const std::string& sql);
  Shared ReadRows(const std::string& sql);
  // Calls with the place in the block and the row behind the two columns that tell whose it is.
  void EachRow(ResultSet result, const std::function<void(std::size_t place, ResultRow row)>& take);
  template <typename Result>
  const Result& Asked(std::unordered_map<std::string, Result>& known, const std::string& sql,
                      const std::function<Result()>& ask);

  NoDesk noDesk_;
  DataAccess silent_;
  std::vector<RunPerson> people_;
  std::unordered_map<long, std::size_t> places_;  // by detail row
  std::optional<Block> block_;
  std::size_t place_ = 0;  // in the block
  const Standing* current_ = nullptr;
  bool askedAnew_ = false;
  std::unordered_map<std::string, Value> commonValues_;
  std::unordered_map<std::string, ResultSet> commonRows_;
  std::unordered_map<std::string, std::shared_ptr<const void>> kept_;
};

}  // namespace ktl
