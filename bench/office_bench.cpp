// An office on a server, as a person clicks: start to open loans, choosing an employee, saving a loan of 360
// months beside the same statements said by MariaDB's own client library in the same run, the memory that
// reading all employees takes, and how many messages the deeds need for their statements.
//
//   KTLCompany create --server 'Provider=MariaDB;Socket=..;User ID=root;Database=office;' --employees 10000
//       --loans 24000 --emi-target 600000
//   office_bench 'Provider=MariaDB;Socket=..;User ID=root;Database=office;'
//
// The user must be allowed to keep the server's general log for a moment. What is saved is taken away again.
#include <fmt/format.h>
#include <mysql.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "bench_session.h"
#include "database/connection_string.h"
#include "frame/rights.h"
#include "peak_memory.h"
#include "recovery/modEMIDet.h"
#include "recovery/modReceipts.h"

namespace ktl {
namespace {

using Clock = std::chrono::steady_clock;
constexpr int kTimes = 15;

class Library {
 public:
  explicit Library(const std::string& connection) {
    const auto part = [&](const char* key) { return ConnectionSetting(connection, key); };
    const std::string host = part("Server"), user = part("User ID"), password = part("PWD"),
                      database = part("Database"), socket = part("Socket");
    mysql_options(connection_, MYSQL_SET_CHARSET_NAME, "utf8mb4");
    if (mysql_real_connect(connection_, host.c_str(), user.c_str(), password.c_str(), database.c_str(), 0,
                           socket.c_str(), CLIENT_FOUND_ROWS | CLIENT_MULTI_RESULTS) == nullptr)
      throw std::runtime_error(mysql_error(connection_));
  }
  ~Library() { mysql_close(connection_); }
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;

  std::vector<std::vector<std::string>> Say(const std::string& sql) {
    if (mysql_real_query(connection_, sql.data(), sql.size()) != 0)
      throw std::runtime_error(fmt::format("{}: {}", mysql_error(connection_), sql));
    std::vector<std::vector<std::string>> rows;
    do {
      MYSQL_RES* result = mysql_use_result(connection_);
      if (result == nullptr) continue;
      while (const MYSQL_ROW row = mysql_fetch_row(result)) {
        const unsigned long* lengths = mysql_fetch_lengths(result);
        auto& kept = rows.emplace_back();
        for (unsigned i = 0; i < mysql_num_fields(result); ++i)
          kept.emplace_back(row[i] != nullptr ? std::string(row[i], lengths[i]) : "");
      }
      mysql_free_result(result);
    } while (mysql_next_result(connection_) == 0);
    return rows;
  }
  long Number(const std::string& sql) { return std::stol(Say(sql).at(0).at(0)); }

 private:
  MYSQL* connection_ = mysql_init(nullptr);
};

double Milliseconds(const std::function<void()>& work) {
  const auto since = Clock::now();
  work();
  return std::chrono::duration<double, std::milli>(Clock::now() - since).count();
}

struct Times {
  explicit Times(std::vector<double> times) : all(std::move(times)) { std::ranges::sort(all); }
  double Median() const { return all[all.size() / 2]; }
  std::vector<double> all;
};

void Tell(const char* what, const Times& times) {
  fmt::print("{:<40} {:>8.1f} ms, {:>8.1f} ms at most\n", what, times.Median(), times.all.back());
}

// What the program's connection says to the server while it works.
struct Said {
  std::vector<std::string> texts;  // with their values
  long prepared = 0;
};

// The log is on from before the connection is made: it tells whose connection one is, and what was prepared
// without it is written without values.
class GeneralLog {
 public:
  explicit GeneralLog(Library& library) : library_(library) {
    library_.Say("SET GLOBAL log_output = 'TABLE'");
    library_.Say("TRUNCATE mysql.general_log");
    library_.Say("SET GLOBAL general_log = 1");
  }
  ~GeneralLog() { library_.Say("SET GLOBAL general_log = 0"); }
  GeneralLog(const GeneralLog&) = delete;
  GeneralLog& operator=(const GeneralLog&) = delete;

  // Of whoever has connected to the company since; in the order of the table, which is that of the saying.
  Said Hear(const std::function<void()>& work) {
    const long before = library_.Number("SELECT COUNT(*) FROM mysql.general_log");
    work();
    Said said;
    for (const auto& row : library_.Say(fmt::format(
             "SELECT command_type, argument FROM (SELECT * FROM mysql.general_log LIMIT {}, 1000000) said "
             "WHERE thread_id IN (SELECT thread_id FROM mysql.general_log WHERE command_type = 'Connect' AND "
             "INSTR(argument, CONCAT(' on ', DATABASE(), ' ')))",
             before))) {
      if (row[0] == "Prepare") ++said.prepared;
      if (row[0] == "Query" || row[0] == "Execute") said.texts.push_back(row[1]);
    }
    return said;
  }

 private:
  Library& library_;
};

// The statements that the program's own log of them has got.
class StatementCount {
 public:
  StatementCount() {
    std::ofstream(file_).flush();
    setenv("KTL_SQL_LOG", file_.c_str(), 1);
  }
  ~StatementCount() { unsetenv("KTL_SQL_LOG"); }
  StatementCount(const StatementCount&) = delete;
  StatementCount& operator=(const StatementCount&) = delete;

  long Taken() {
    const long before = std::exchange(lines_, 0);
    std::ifstream lines(file_);
    for (std::string line; std::getline(lines, line);) ++lines_;
    return lines_ - before;
  }

 private:
  std::filesystem::path file_ = std::filesystem::temp_directory_path() / "ktl-office-statements.log";
  long lines_ = 0;
};

// The list of employees with class security on, and the screen that is filled with it.
void TellMemory(const CompanyAddress& company, Library& library) {
  library.Say("UPDATE MAS_OPTSET SET CLASSSECURITYN = 1");
  Bench bench(company, "office");
  bench.Connect(company);
  Session& session = *bench.session;
  session.hostName = session.data.FnVarGetDbValue("SELECT HOST_NAME()").ToText();
  const Statement list = session.Sql("Select EMPID, EMPNAME, REFNO From MAS_EMPLOYEE {} Order By EMPNAME",
                                     ClassSecurityCondition(session, "Where EMPID"));
  library.Say("UPDATE MAS_OPTSET SET CLASSSECURITYN = 0");
  const double before = HeapMegabytes();
  const PeakMemory peak;
  {
    const ResultSet rows = session.Cn.Query(list);
    const double kept = HeapMegabytes() - before, risen = peak.Risen();
    fmt::print("{} employees of class security: {:.1f} MB kept, {:.1f} MB at most\n", rows.rows.size(), kept,
               risen);
    if (!IsHeldOnce(kept, risen)) throw std::runtime_error("rows are held twice");
  }
  modAdvLoan entry(session, InstructionType::Loan);
  entry.Load();
  fmt::print("the loans with everybody in their list: {:.1f} MB more at most\n", peak.Risen());
}

void Start(const CompanyAddress& company) {
  Bench bench(company, "office");
  if (RunProgram(*bench.session, "1502#False#0#0") != 0) throw std::runtime_error("not opened");
}

std::vector<std::string> Borrowers(Session& session) {
  std::vector<std::string> borrowers;
  for (Recordset rs(session.Cn,
                    "SELECT EMPID FROM INS_ADVLOAN WHERE SITYPE = 2 AND SERIALNO = 1 AND EMPID < 500");
       !rs.Eof(); rs.MoveNext())
    borrowers.push_back(rs[0].ToText());
  return borrowers;
}

void Choose(LoanClerk& clerk, const std::string& employee, const std::string& serial = "1") {
  clerk.entry().employee.cmbEmpName.SetBoundText(employee);
  clerk.entry().txtSerialNo.SetText(serial);
}

// A person who gives one employee the same loan of 360 months again and again.
class Lender {
 public:
  Lender(LoanClerk& clerk, Library& library)
      : clerk_(clerk),
        library_(library),
        employee_(clerk.Employees().front()),
        before_(library.Number(
            "SELECT IFNULL(MAX(SERIALNO), 0) FROM INS_ADVLOAN WHERE SITYPE = 2 AND EMPID = " + employee_)) {}

  void Type() { clerk_.Type(employee_, kInstalments); }
  void Save() {
    if (!clerk_.Save()) throw std::runtime_error("not saved");
  }
  // What he has been given since; the audit lines stay.
  void TakeAway() {
    for (const char* table : {"INS_RECEIPTS", "INS_EMIDETAIL", "INS_ADVLOAN"})
      library_.Say(fmt::format("DELETE FROM {} WHERE EMPID = {} AND SITYPE = 2 AND SERIALNO > {}", table,
                               employee_, before_));
  }
  // The last one, as it stands in the tables.
  void Show() {
    clerk_.entry().employee.cmbEmpName.SetBoundText(clerk_.Employees().back());
    Choose(clerk_, employee_,
           library_.Say("SELECT MAX(SERIALNO) FROM INS_ADVLOAN WHERE SITYPE = 2 AND EMPID = " + employee_)
               .at(0)
               .at(0));
  }
  // A rupee of the first month for each of the months behind it, and back again.
  void Spread(modEMIDet& editor) {
    lowered_ = !lowered_;
    editor.fpgEMIDetail.activeRow = 0;
    editor.ShowEmiRow(0);
    editor.txtAmount.SetText(lowered_ ? "641" : "1000");
    editor.cmdSave_Click();
  }
  // Taken off all months.
  static void Receive(modReceipts& receipts) {
    receipts.cmdNew_Click();
    receipts.txtRcptDate.SetText("15/11/2026");
    receipts.txtAmount.SetText("360");
    receipts.cmdSave_Click();
  }

 private:
  LoanClerk& clerk_;
  Library& library_;
  std::string employee_;
  long before_;
  bool lowered_ = false;
};

void MeasureStart(const CompanyAddress& company) {
  std::vector<double> times;
  for (int i = 0; i < kTimes; ++i) times.push_back(Milliseconds([&] { Start(company); }));
  Tell("start to open loans", Times(times));
}

void MeasureChoosing(LoanClerk& clerk) {
  std::vector<double> times;
  for (const auto& borrower : Borrowers(clerk.session()))
    times.push_back(Milliseconds([&] { Choose(clerk, borrower); }));
  Tell("choosing an employee", Times(times));
}

// Each deed once more than it is counted, so that nothing is new to the connection.
void CountMessages(const CompanyAddress& company, Library& library) {
  StatementCount statements;
  GeneralLog general(library);
  fmt::print("{:<40} {:>10} {:>10} {:>10}\n", "", "statements", "executed", "prepared");
  const auto count = [&](const char* what, const std::function<void()>& work) {
    statements.Taken();
    const Said said = general.Hear(work);
    fmt::print("{:<40} {:>10} {:>10} {:>10}\n", what, statements.Taken(), said.texts.size(), said.prepared);
  };
  count("start to open loans", [&] { Start(company); });
  LoanClerk clerk(company, "office");
  const auto borrowers = Borrowers(clerk.session());
  for (std::size_t i = 3; i < 6; ++i) Choose(clerk, borrowers[i]);
  count("choosing an employee", [&] { Choose(clerk, borrowers.front()); });
  Lender lender(clerk, library);
  for (int i = 0; i < 2; ++i) {
    lender.Type();
    lender.Save();
    lender.TakeAway();
  }
  lender.Type();
  count("saving 360 months", [&] { lender.Save(); });
  lender.Show();
  clerk.desk().answer = Answer::Yes;
  modEMIDet editor(clerk.session(), clerk.entry());
  editor.Load();
  lender.Spread(editor);
  lender.Spread(editor);
  count("a month spread over 359", [&] { lender.Spread(editor); });
  modReceipts receipts(clerk.session(), clerk.entry());
  receipts.Load();
  lender.Receive(receipts);
  lender.Receive(receipts);
  count("a receipt taken off 360 months", [&] { lender.Receive(receipts); });
  lender.TakeAway();
}

void MeasureSaving(const CompanyAddress& company, Library& library) {
  auto general = std::make_unique<GeneralLog>(library);
  LoanClerk clerk(company, "office");
  Lender lender(clerk, library);
  for (int i = 0; i < 2; ++i) {
    lender.Type();
    lender.Save();
    lender.TakeAway();
  }
  lender.Type();
  const Said said = general->Hear([&] { lender.Save(); });
  general.reset();
  lender.TakeAway();
  std::vector<double> ours, theirs;
  for (int i = 0; i < kTimes; ++i) {
    lender.Type();
    ours.push_back(Milliseconds([&] { lender.Save(); }));
    lender.TakeAway();
    theirs.push_back(Milliseconds([&] {
      for (const auto& text : said.texts) library.Say(text);
    }));
    lender.TakeAway();
  }
  Tell("saving a loan of 360 months", Times(ours));
  Tell("the same texts by the client library", Times(theirs));
  fmt::print("ratio {:.2f}\n", Times(ours).Median() / Times(theirs).Median());
}

int Main(const std::string& connection) {
  const CompanyAddress company = AddressOf(connection);
  Library library(connection);
  TellMemory(company, library);
  MeasureStart(company);
  {
    LoanClerk clerk(company, "office");
    MeasureChoosing(clerk);
  }
  MeasureSaving(company, library);
  CountMessages(company, library);
  return 0;
}

}  // namespace
}  // namespace ktl

int main(int argc, char** argv) {
  if (argc != 2) {
    fmt::print(stderr, "office_bench CONNECTION\n");
    return 2;
  }
  try {
    return ktl::Main(argv[1]);
  } catch (const std::exception& error) {
    fmt::print(stderr, "{}\n", error.what());
    return 1;
  }
}
