#include "database/drivers/program_driver.h"

#include "database/database_error.h"

namespace ktl {

namespace {

constexpr std::size_t kMostPrograms = 256;
constexpr std::size_t kLongestKeptText = 8192;

}  // namespace

ProgramDriver::ProgramDriver() : programs_(kMostPrograms) {}

ProgramDriver::ProgramPtr ProgramDriver::SharedProgram(bool updatable) {
  std::string marked;
  if (updatable) marked = shared_.sql + '\n';
  const std::string& key = updatable ? marked : shared_.sql;
  if (const auto* kept = programs_.Find(key)) return *kept;
  ProgramPtr program;
  try {
    program = std::make_shared<const tsql::Program>(
        Translate(shared_.sql, updatable, static_cast<int>(shared_.numbers.size())));
    const auto kind = program->front().kind;
    const bool plain = kind == tsql::StepKind::Rows || kind == tsql::StepKind::Change;
    if (program->size() > 1 || !plain) program = nullptr;
  } catch (const DatabaseError&) {
    // Read with its numbers in place, the text tells why it cannot be.
  }
  if (key.size() <= kLongestKeptText) programs_.Keep(key, program);
  return program;
}

ProgramDriver::ProgramPtr ProgramDriver::ProgramOf(std::string_view sql, bool updatable) {
  std::string key(sql);
  if (updatable) key += '\n';
  if (const auto* kept = programs_.Find(key)) return *kept;
  auto program = std::make_shared<const tsql::Program>(Translate(sql, updatable, 0));
  if (key.size() <= kLongestKeptText) programs_.Keep(key, program);
  return program;
}

void ProgramDriver::RunText(std::string_view sql, bool updatable, Run& run) {
  BeforeText();
  ShareNumbers(sql, shared_);
  ProgramPtr program;
  if (!shared_.numbers.empty()) program = SharedProgram(updatable);
  if (program)
    run.numbers = shared_.numbers;
  else
    program = ProgramOf(sql, updatable);
  RunProgram(*program, run);
}

ResultSet ProgramDriver::Query(std::string_view sql, Fetch fetch, bool updatable) {
  Run run{.fetch = fetch, .keepRows = true};
  RunText(sql, updatable, run);
  return std::move(run.result);
}

std::int64_t ProgramDriver::Execute(std::string_view sql) {
  Run run;
  RunText(sql, false, run);
  return run.rows;
}

void ProgramDriver::RunProgram(const tsql::Program& program, Run& run) {
  for (const auto& step : program) RunStep(step, run);
}

// The first query of a batch gives its rows.
void ProgramDriver::RunStep(const tsql::Step& step, Run& run) {
  switch (step.kind) {
    case tsql::StepKind::Rows:
      if (run.keepRows && !run.answered) {
        run.result = ReadRows(step, run);
        run.answered = true;
      } else {
        run.rows += CountRows(step, run.numbers);
      }
      break;
    case tsql::StepKind::Change:
      run.rows += CountChanges(step, run.numbers);
      break;
    case tsql::StepKind::Assign:
      CountRows(step, run.numbers);
      break;
    case tsql::StepKind::Branch:
      RunProgram(Decide(step) ? step.then : step.otherwise, run);
      break;
    case tsql::StepKind::Call:
      Call(step);
      break;
  }
}

std::string ProgramDriver::Explain(std::string_view sql) {
  std::string text;
  const auto tell = [&text](const tsql::Program& program, const std::string& indent,
                            const auto& self) -> void {
    for (const auto& step : program) {
      if (!text.empty()) text += '\n';
      text += indent + (step.sql.empty() ? "call " + step.name : step.sql);
      self(step.then, indent + "  ", self);
      self(step.otherwise, indent + "  else: ", self);
    }
  };
  tell(*ProgramOf(sql, false), "", tell);
  return text;
}

}  // namespace ktl
