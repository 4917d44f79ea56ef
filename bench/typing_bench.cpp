// Typing a name into the list of employees at the window of the entry of loans, in companies of 10,000 and
// 50,000 people: from the key to the painted window, suggestions included.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QTimer>
#include <algorithm>
#include <string>
#include <vector>

#include "bench_session.h"
#include "desktop/look.h"
#include "desktop/qt_desk.h"
#include "instructions/modAdvLoan.h"
#include "runtime/text.h"

namespace ktl {
namespace {

// People with few instructions: it is their number that typing feels.
std::filesystem::path CompanyOfPeople(int employees) {
  const std::string name = "ktl-bench-people-" + std::to_string(employees) + ".kldb";
  CompanyOptions options;
  options.file = std::filesystem::temp_directory_path() / name;
  options.sample.employees = employees;
  options.sample.targets.loans = 1000;
  options.sample.targets.instalments = 20'000;
  if (!std::filesystem::exists(options.file)) CreateCompany(options);
  return options.file;
}

void Press(QComboBox& combo, char letter) {
  const int key = letter == ' ' ? Qt::Key_Space : Qt::Key_A + (letter - 'a');
  QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, QString(QLatin1Char(letter)));
  QApplication::sendEvent(&combo, &press);
  QApplication::processEvents();
}

void TakeFocus(QComboBox& combo) {
  combo.window()->activateWindow();
  while (!combo.hasFocus()) {
    QApplication::processEvents();
    combo.setFocus();
  }
}

// The list as if it were read just now: nothing that was found in it before is remembered.
void ListAnew(Desk& desk, ComboBox& names) {
  std::vector<ListRow> rows = names.Rows();
  std::reverse(rows.begin(), rows.end());
  names.SetRows(std::move(rows));
  desk.Refresh();
}

void TypeAtTheWindow(benchmark::State& state, std::string_view letters, bool eachAlone) {
  const auto company = CompanyOfPeople(static_cast<int>(state.range(0)));
  const Bench bench(company);
  QtDesk desk;
  Session session(bench.real->machine(), desk);
  OpenConnection(session, ConnectionStringOf(company));
  LoadOptionSet(session);
  modAdvLoan entry(session, InstructionType::Loan);
  QTimer::singleShot(0, qApp, [&] {
    QWidget* window = QApplication::activeModalWidget();
    auto& combo = *window->findChild<QComboBox*>("cmbEmpName");
    TakeFocus(combo);
    std::size_t at = 0;
    for (auto _ : state) {
      if (at == 0 || eachAlone) {
        state.PauseTiming();
        ListAnew(desk, entry.employee.cmbEmpName);
        combo.lineEdit()->selectAll();
        state.ResumeTiming();
      }
      Press(combo, letters[at]);
      at = (at + 1) % letters.size();
    }
    entry.ForceUnload();
    window->close();
  });
  desk.ShowModal(entry);
}

void TypeALetterOfMostNames(benchmark::State& state) { TypeAtTheWindow(state, "aei", true); }
BENCHMARK(TypeALetterOfMostNames)->Arg(10'000)->Arg(50'000)->Unit(benchmark::kMillisecond);

void TypeALetterOfAName(benchmark::State& state) { TypeAtTheWindow(state, "meera kulk", false); }
BENCHMARK(TypeALetterOfAName)->Arg(10'000)->Arg(50'000)->Unit(benchmark::kMillisecond);

// The floor: the letter searched in all names, which are in memory in small letters.
void TypeALetterFloor(benchmark::State& state) {
  const auto company = CompanyOfPeople(static_cast<int>(state.range(0)));
  Bench bench(company);
  bench.Connect(company);
  modAdvLoan entry(*bench.session, InstructionType::Loan);
  entry.Load();
  std::vector<std::string> names;
  for (const ListRow& row : entry.employee.cmbEmpName.Rows()) names.push_back(LowerCase(row.text));
  std::size_t at = 0;
  for (auto _ : state) {
    const std::string letter(1, "aei"[at++ % 3]);
    std::size_t found = 0;
    for (const std::string& name : names) found += name.find(letter) != std::string::npos;
    benchmark::DoNotOptimize(found);
  }
}
BENCHMARK(TypeALetterFloor)->Arg(10'000)->Arg(50'000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace ktl

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  ktl::ApplyLook(application);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
