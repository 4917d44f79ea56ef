#pragma once

#include <memory>
#include <span>

#include "database/driver.h"
#include "database/drivers/recently_used.h"
#include "database/drivers/shared_text.h"
#include "database/tsql/program.h"

namespace ktl {

// Runs texts as programs in its database's dialect: batches, conditions and calls step by step. A text is
// read once for all that differ from it in their numbers only.
class ProgramDriver : public Driver {
 public:
  ProgramDriver();

  ResultSet Query(std::string_view sql, Fetch fetch, bool updatable) override;
  std::int64_t Execute(std::string_view sql) override;
  std::string Explain(std::string_view sql) override;

 protected:
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

  // Throws DatabaseError when the text cannot be read.
  virtual tsql::Program Translate(std::string_view sql, bool updatable, int parameters) const = 0;
  virtual void BeforeText() {}  // variables live as long as one text

  virtual ResultSet ReadRows(const tsql::Step& step, const Run& run) = 0;
  virtual std::int64_t CountRows(const tsql::Step& step, Numbers numbers) = 0;  // read and thrown away
  virtual std::int64_t CountChanges(const tsql::Step& step, Numbers numbers) = 0;
  virtual bool Decide(const tsql::Step& branch) = 0;
  virtual void Call(const tsql::Step& step) = 0;

 private:
  using ProgramPtr = std::shared_ptr<const tsql::Program>;

  void RunText(std::string_view sql, bool updatable, Run& run);
  // The program of all texts that differ from this one in their numbers only; null when there is none.
  ProgramPtr SharedProgram(bool updatable);
  ProgramPtr ProgramOf(std::string_view sql, bool updatable);
  void RunProgram(const tsql::Program& program, Run& run);
  void RunStep(const tsql::Step& step, Run& run);

  SharedText shared_;  // of the text being run
  // By their texts, those of updatable ones with a line break behind. Null for a shared text whose texts must
  // be read each on its own.
  RecentlyUsed<ProgramPtr> programs_;
};

}  // namespace ktl
