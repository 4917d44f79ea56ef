// Twenty workstations on one company, each a console process of its own: loans entered, edited, received
// against and deleted, months locked, some programs killed. Afterwards a checker looks whether everything
// that a person was told is there, once:
//
//   KTLCompany create soak.kldb --settings soak.ini
//   workstations_bench CONSOLE soak.ini "Provider=SQLite;Data Source=soak.kldb;" [SECONDS [WORKSTATIONS
//   [KILLS]]]
//
// KILLS: of how many deeds one ends with the killing of its program; 0, as usual, for none.
#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <mutex>
#include <random>
#include <thread>

#include "console_process.h"
#include "database/connection.h"

namespace ktl {
namespace {

using Clock = std::chrono::steady_clock;
using Lines = std::vector<std::string>;

constexpr double kAmount = 6000;

// What a person knows of a thing that he asked for: told is certain, asked alone is either.
struct Known {
  bool told = false;
  bool deleteAsked = false;
  bool deleteTold = false;
  bool restGivenUp = false;  // by whoever had a month made zero that could not give its share
};

// What all persons know together.
struct Ledger {
  // What the account numbers of this run begin with.
  const std::string run = fmt::format("W{:x}-", std::chrono::system_clock::now().time_since_epoch().count());
  std::mutex mutex;
  std::map<std::string, Known> loans;     // by account number
  std::map<std::string, Known> receipts;  // by "LOAN/REMARK"
  std::map<int, std::string> locks;       // of a month as the list has it: "0", "1", "?"
  std::vector<double> waits;              // of saves, seconds
  long refused = 0, killed = 0;
  Lines crashes;
};

bool Told(const Lines& lines, std::string_view text) {
  return std::ranges::any_of(lines,
                             [&](const std::string& line) { return line.find(text) != std::string::npos; });
}

bool Refused(const Lines& lines) {
  return Told(lines, "| Exclamation |") || Told(lines, "| Critical |") || Told(lines, "| Information |");
}

// A screen that did not open, since its loan was deleted by somebody else meanwhile.
bool IsGone(const Lines& lines) { return Told(lines, " has no control ") || Told(lines, " has no row "); }

class Person {
 public:
  Person(std::string itsProgram, Ledger& ledger, int number, int kills)
      : console_(std::move(itsProgram)),
        ledger_(ledger),
        number_(number),
        kills_(kills),
        dice_(static_cast<unsigned>(number)) {}

  void WorkUntil(Clock::time_point end) {
    while (Clock::now() < end) {
      if (Roll(25) == 0)
        ToggleLock();
      else
        WorkOnLoans(end);
    }
  }

 private:
  int Roll(int sides) { return static_cast<int>(dice_() % static_cast<unsigned>(sides)); }
  std::string NextTag() { return fmt::format("{}{}-{}", ledger_.run, number_, ++tags_); }

  // Some deeds in one run of the program.
  void WorkOnLoans(Clock::time_point end) {
    program_ = std::make_unique<ConsoleProcess>(console_, "1502#False#0#0");
    alive_ = true;
    for (int deed = 0; alive_ && deed < 12 && Clock::now() < end; ++deed) {
      if (!Ask(fmt::format("text cmbEmpName {}\n", kEmployees[static_cast<std::size_t>(Roll(8))]),
               "txtSerialNo"))
        break;
      switch (Roll(4)) {
        case 0:
          Enter();
          break;
        case 1:
          Receive();
          break;
        case 2:
          Edit();
          break;
        default:
          if (Roll(3) == 0) Delete();
      }
    }
    Leave();
  }

  // The transcript; counts a save's wait, and now and then kills the program in its midst.
  std::optional<Lines> Ask(const std::string& script, const std::string& mark, bool saves = false) {
    std::thread killer;
    if (saves && kills_ > 0 && Roll(kills_) == 0) {
      killer = std::thread([this, after = Roll(60)] {
        std::this_thread::sleep_for(std::chrono::milliseconds(after));
        program_->Kill();
      });
    }
    const auto begin = Clock::now();
    auto lines = program_->Ask(script, mark);
    const double wait = std::chrono::duration<double>(Clock::now() - begin).count();
    const bool mayBeKilled = killer.joinable();
    if (mayBeKilled) killer.join();
    const std::scoped_lock lock(ledger_.mutex);
    if (mayBeKilled) {
      ++ledger_.killed;
      wasKilled_ = true;
    }
    if (!lines || mayBeKilled) alive_ = false;
    if (!lines) return lines;
    if (saves) ledger_.waits.push_back(wait);
    if (Told(*lines, "Row cannot be located")) ++ledger_.refused;
    return lines;
  }

  void Leave() {
    const int status = program_->End();
    const std::scoped_lock lock(ledger_.mutex);
    if (IsGone(program_->Left()))
      ++ledger_.refused;
    else if (status != 0 && !wasKilled_)
      ledger_.crashes.push_back(fmt::format("workstation {}: exit {}: {}", number_, status,
                                            program_->Left().empty() ? "" : program_->Left().back()));
    wasKilled_ = false;
  }

  void Enter() {
    const std::string tag = NextTag();
    {
      const std::scoped_lock lock(ledger_.mutex);
      ledger_.loans[tag];
    }
    const auto lines =
        Ask(fmt::format(
                "click cmdNew\npick cmbALName Consumer Loan\npick cmbInstitution Deccan Co-operative Bank\n"
                "text txtLoanAccNo {}\ntext txtAdvDate 15.10.2026\ntext txtAdvAmount {}\n"
                "tick optInstlCount on\ntext txtNoOfInstlmnts 6\ntext txtRecvrFrom 11/2026\nclick cmdSave\n",
                tag, kAmount),
            "txtSerialNo", true);
    const std::scoped_lock lock(ledger_.mutex);
    ledger_.loans[tag].told = lines && Told(*lines, "| Updated |");
  }

  // Clicks a loan that somebody here has entered: its account number; "" when the employee has none.
  std::string Choose() {
    const auto lines = Ask("grid fpgAdvLoan\n", "txtSerialNo");
    if (!lines) return "";
    std::vector<std::pair<std::size_t, std::string>> rows;
    for (std::size_t row = 1; row + 1 < lines->size(); ++row) {
      const std::string& text = (*lines)[row];
      const auto tag = text.find("\t" + ledger_.run);
      if (tag == text.npos) continue;
      rows.emplace_back(row, text.substr(tag + 1, text.find('\t', tag + 1) - tag - 1));
    }
    if (rows.empty()) return "";
    const auto& [row, tag] = rows[static_cast<std::size_t>(Roll(static_cast<int>(rows.size())))];
    return Ask(fmt::format("row fpgAdvLoan {}\n", row), "txtSerialNo") ? tag : "";
  }

  void Receive() {
    const std::string loan = Choose();
    if (loan.empty()) return;
    const std::string key = loan + '/' + NextTag();
    {
      const std::scoped_lock lock(ledger_.mutex);
      ledger_.receipts[key];
    }
    if (!Ask("click cmdReceipts\n", "txtAmount")) return;
    const auto lines = Ask(fmt::format("click cmdNew\ntext txtAmount {}\ntext txtRemarks {}\nanswers clear\n"
                                       "answer No\nclick cmdSave\nanswers clear\n",
                                       100 + Roll(10), key.substr(key.find('/') + 1)),
                           "txtAmount", true);
    {
      const std::scoped_lock lock(ledger_.mutex);
      ledger_.receipts[key].told = lines && Told(*lines, "| Updated |");
    }
    if (alive_) Ask("answer No\nclose\nanswers clear\n", "txtSerialNo");
  }

  void Edit() {
    const std::string loan = Choose();
    if (loan.empty()) return;
    const auto months = Ask("click cmdEmi\ngrid fpgEMIDetail\n", "txtAmount");
    if (!months) return;
    if (months->size() > 3) {
      const auto lines = Ask(fmt::format("row fpgEMIDetail 1\ntext txtAmount {}\nanswers clear\nanswer Yes\n"
                                         "answer Yes\nclick cmdSave\nanswers clear\n",
                                         900 + Roll(200)),
                             "txtAmount", true);
      const std::scoped_lock lock(ledger_.mutex);
      if (!lines || Told(*lines, "| Adjust value |")) ledger_.loans[loan].restGivenUp = true;
    }
    if (alive_) Ask("answer No\nclose\nanswers clear\n", "txtSerialNo");
  }

  void Delete() {
    const std::string loan = Choose();
    if (loan.empty()) return;
    {
      const std::scoped_lock lock(ledger_.mutex);
      ledger_.loans[loan].deleteAsked = true;
    }
    const auto lines =
        Ask("answers clear\nanswer Yes\nanswer Yes\nclick cmdDelete\nanswers clear\n", "txtSerialNo", true);
    const std::scoped_lock lock(ledger_.mutex);
    if (lines && !Refused(*lines)) ledger_.loans[loan].deleteTold = true;
  }

  // Each person has a month of his own, in the years before the loans.
  void ToggleLock() {
    program_ = std::make_unique<ConsoleProcess>(console_, "1511#False#0#0");
    alive_ = true;
    const int row = 8 + number_ % 20;
    const std::string wanted = Roll(2) == 0 ? "on" : "off";
    const auto lines =
        Ask(fmt::format("tickcell fpgLockMonth {} 3 {}\nclick cmdSave\n", row, wanted), "fpgLockMonth", true);
    {
      const std::scoped_lock lock(ledger_.mutex);
      if (!lines)
        ledger_.locks[row] = "?";
      else if (Told(*lines, "| Updated |"))
        ledger_.locks[row] = wanted == "on" ? "1" : "0";
    }
    Leave();
  }

  static constexpr const char* kEmployees[] = {"Lokesh Sharma", "Meera Kulkarni", "Hema Varma",
                                               "Rajesh Shinde", "Madhuri Kumar",  "Uma Das",
                                               "Suresh Patel",  "Vidya Pandey"};

  std::string console_;
  Ledger& ledger_;
  int number_;
  int kills_;
  std::minstd_rand dice_;
  int tags_ = 0;
  bool alive_ = false;
  bool wasKilled_ = false;
  std::unique_ptr<ConsoleProcess> program_;
};

class Checker {
 public:
  Checker(const std::string& connectionString, const Ledger& ledger) : ledger_(ledger) {
    cn_.Open(connectionString);
  }

  // The faults; none when everything is as it was told.
  Lines Faults() {
    CheckLoans();
    CheckReceipts();
    CheckLocks();
    None(
        "instalments without an instruction",
        "SELECT COUNT(*) FROM INS_EMIDETAIL E WHERE E.SITYPE = 2 AND NOT EXISTS (SELECT EMPID FROM INS_ADVLOAN A "
        "WHERE A.EMPID = E.EMPID AND A.SITYPE = E.SITYPE AND A.SERIALNO = E.SERIALNO)");
    None(
        "receipts without an instruction",
        "SELECT COUNT(*) FROM INS_RECEIPTS R WHERE R.SITYPE = 2 AND NOT EXISTS (SELECT EMPID FROM INS_ADVLOAN A "
        "WHERE A.EMPID = R.EMPID AND A.SITYPE = R.SITYPE AND A.SERIALNO = R.SERIALNO)");
    None("instructions of one number",
         "SELECT COUNT(*) FROM (SELECT EMPID, SITYPE, SERIALNO, COUNT(*) CNT FROM INS_ADVLOAN "
         "GROUP BY EMPID, SITYPE, SERIALNO) T WHERE CNT > 1");
    return faults_;
  }

 private:
  long Count(const std::string& sql) { return cn_.FirstValue(sql)->ToLong(); }
  void None(const char* what, const std::string& sql) {
    if (const long count = Count(sql); count != 0) faults_.push_back(fmt::format("{} {}", count, what));
  }

  void CheckLoans() {
    for (const auto& [tag, known] : ledger_.loans) {
      const auto rows = cn_.Query(fmt::format(
          "SELECT A.EMPID, A.SERIALNO, (SELECT SUM(MDFYAMT) FROM INS_EMIDETAIL E WHERE E.EMPID = A.EMPID AND "
          "E.SITYPE = 2 AND E.SERIALNO = A.SERIALNO) DUE, (SELECT SUM(RCPTAMT) FROM INS_RECEIPTS R WHERE R.EMPID "
          "= A.EMPID AND R.SITYPE = 2 AND R.SERIALNO = A.SERIALNO) PAID FROM INS_ADVLOAN A WHERE A.SITYPE = 2 "
          "AND A.LOANACNO = '{}'",
          tag));
      const auto there = rows.rows.size();
      if (there > 1 || (known.told && !known.deleteAsked && there != 1) || (known.deleteTold && there != 0))
        faults_.push_back(fmt::format("loan {}: told {}, delete asked {}, told {}, there {} times", tag,
                                      known.told, known.deleteAsked, known.deleteTold, there));
      for (const auto& row : rows.rows) {
        const double sum = row[2].NumberOr0() + row[3].NumberOr0();
        if (!known.restGivenUp && std::abs(sum - kAmount) > 0.005)
          faults_.push_back(fmt::format("loan {}: due and paid are {:.2f}", tag, sum));
      }
    }
  }

  void CheckReceipts() {
    for (const auto& [key, known] : ledger_.receipts) {
      const Known& loan = ledger_.loans.at(key.substr(0, key.find('/')));
      const long there =
          Count(fmt::format("SELECT COUNT(*) FROM INS_RECEIPTS WHERE SITYPE = 2 AND REMARKS = '{}'",
                            key.substr(key.find('/') + 1)));
      if (there > 1 || (known.told && there == 0 && !loan.deleteAsked) || (loan.deleteTold && there != 0))
        faults_.push_back(fmt::format("receipt {}: told {}, there {} times", key, known.told, there));
    }
  }

  void CheckLocks() {
    const auto months = cn_.Query("SELECT LOCKEDYN FROM MAS_MONTHYEAR ORDER BY MONTHYEAR DESC");
    for (const auto& [row, state] : ledger_.locks) {
      const std::string stands = months.rows.at(static_cast<std::size_t>(row) - 1).front().ToText();
      if (state != "?" && state != stands)
        faults_.push_back(fmt::format("month {}: lock told {}, stands {}", row, state, stands));
    }
  }

  const Ledger& ledger_;
  Connection cn_;
  Lines faults_;
};

int Soak(const std::string& program, const std::string& connectionString, int seconds, int workstations,
         int kills) {
  Ledger ledger;
  const auto end = Clock::now() + std::chrono::seconds(seconds);
  std::vector<std::thread> threads;
  for (int number = 1; number <= workstations; ++number)
    threads.emplace_back([&, number] { Person(program, ledger, number, kills).WorkUntil(end); });
  for (auto& thread : threads) thread.join();

  const Lines faults = Checker(connectionString, ledger).Faults();
  auto& waits = ledger.waits;
  std::ranges::sort(waits);
  const auto count = [](const auto& things, bool Known::*what) {
    return std::ranges::count_if(things, [what](const auto& thing) { return thing.second.*what; });
  };
  fmt::print(
      "{} workstations, {} s: {} deeds; told: {} loans, {} receipts, {} deletes; {} refused, {} programs killed\n",
      workstations, seconds, waits.size(), count(ledger.loans, &Known::told),
      count(ledger.receipts, &Known::told), count(ledger.loans, &Known::deleteTold), ledger.refused,
      ledger.killed);
  if (!waits.empty())
    fmt::print(
        "wait of a deed: {:.3f} s in the middle, {:.2f} s for one of a hundred, {:.2f} s the longest\n",
        waits[waits.size() / 2], waits[waits.size() * 99 / 100], waits.back());
  for (const auto& crash : ledger.crashes) fmt::print("ended: {}\n", crash);
  for (const auto& fault : faults) fmt::print("fault: {}\n", fault);
  fmt::print("{} faults, {} programs ended badly\n", faults.size(), ledger.crashes.size());
  return faults.empty() && ledger.crashes.empty() ? 0 : 1;
}

}  // namespace
}  // namespace ktl

int main(int argc, char** argv) {
  if (argc < 4) {
    fmt::print(stderr, "workstations_bench CONSOLE SETTINGS CONNECTION [SECONDS [WORKSTATIONS [KILLS]]]\n");
    return 2;
  }
  const auto number = [&](int index, int otherwise) {
    return argc > index ? std::atoi(argv[index]) : otherwise;
  };
  signal(SIGPIPE, SIG_IGN);
  setenv("KTL_SETTINGS", argv[2], 1);
  setenv("KTL_TODAY", "2026-10-15", 1);
  return ktl::Soak(argv[1], argv[3], number(4, 600), number(5, 20), number(6, 0));
}
