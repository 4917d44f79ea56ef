// Statements to a MariaDB server through the program's connection, beside the same texts said by the server's
// own client library, one after the other so that both meet the same machine. The server is the one on the
// socket in KTL_TEST_MARIADB_SOCKET (tests/private_mariadb.sh starts a private one).
#include <fmt/format.h>
#include <mysql.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "database/connection.h"
#include "peak_memory.h"

namespace ktl {
namespace {

using Clock = std::chrono::steady_clock;
constexpr int kEmployees = 10000, kMonths = 12;

class Library {
 public:
  explicit Library(const std::string& socket) {
    if (mysql_real_connect(connection_, nullptr, "root", nullptr, nullptr, 0, socket.c_str(), 0) == nullptr)
      throw std::runtime_error(mysql_error(connection_));
  }
  ~Library() { mysql_close(connection_); }

  // The rows are read as they come, and kept, as a program needs them.
  std::vector<std::vector<std::string>> Say(const std::string& sql) {
    if (mysql_real_query(connection_, sql.data(), sql.size()) != 0)
      throw std::runtime_error(mysql_error(connection_));
    std::vector<std::vector<std::string>> rows;
    MYSQL_RES* result = mysql_use_result(connection_);
    if (result == nullptr) return rows;
    while (const MYSQL_ROW row = mysql_fetch_row(result)) {
      const unsigned long* lengths = mysql_fetch_lengths(result);
      auto& kept = rows.emplace_back();
      kept.reserve(mysql_num_fields(result));
      for (unsigned i = 0; i < mysql_num_fields(result); ++i)
        kept.emplace_back(row[i] != nullptr ? std::string(row[i], lengths[i]) : "");
    }
    mysql_free_result(result);
    return rows;
  }
  double Number(const std::string& sql) {
    mysql_real_query(connection_, sql.data(), sql.size());
    MYSQL_RES* result = mysql_store_result(connection_);
    const double number = std::atof(mysql_fetch_row(result)[0]);
    mysql_free_result(result);
    return number;
  }

 private:
  MYSQL* connection_ = mysql_init(nullptr);
};

double Microseconds(const std::function<void()>& work) {
  const auto since = Clock::now();
  work();
  return std::chrono::duration<double, std::micro>(Clock::now() - since).count();
}

double Median(std::vector<double> values) {
  std::ranges::nth_element(values, values.begin() + std::ssize(values) / 2);
  return values[values.size() / 2];
}

void Compare(const std::string& name, int times, const std::function<void()>& ours,
             const std::function<void()>& library) {
  ours();
  ours();
  library();
  std::vector<double> a, b;
  for (int i = 0; i < times; ++i) {
    a.push_back(Microseconds(ours));
    b.push_back(Microseconds(library));
  }
  fmt::print("{:<28} {:>10.1f} us {:>10.1f} us {:>6.2f}\n", name, Median(a), Median(b),
             Median(a) / Median(b));
}

void Furnish(Library& library) {
  for (
      const char* sql :
      {"DROP DATABASE IF EXISTS KTL_BENCH",
       "CREATE DATABASE KTL_BENCH CHARACTER SET utf8mb4 COLLATE utf8mb4_uca1400_as_ci", "USE KTL_BENCH",
       "CREATE VIEW KTL_SCHEMA AS SELECT 1 AS VERSION",
       "CREATE TABLE MAS_EMPLOYEE (EMPID INT PRIMARY KEY, EMPNAME VARCHAR(255), REFNO VARCHAR(255), DOJ DATETIME)",
       "CREATE TABLE INS_EMIDETAIL (EMPID INT, SITYPE INT, SERIALNO INT, COUNTER INT, MONTHYEAR INT,"
       " EMIAMT DOUBLE, MDFYAMT DOUBLE, REMARKS VARCHAR(255), PRIMARY KEY (EMPID, SITYPE, SERIALNO, COUNTER))"})
    library.Say(sql);
  library.Say(
      fmt::format("INSERT INTO MAS_EMPLOYEE SELECT seq, CONCAT('Employee ', seq), CONCAT('R', seq), "
                  "'2010-04-01' FROM seq_1_to_{}",
                  kEmployees));
  library.Say(
      fmt::format("INSERT INTO INS_EMIDETAIL SELECT e.seq, 2, 1, m.seq, 24120 + m.seq, 1000.5, 1000.5, "
                  "'' FROM seq_1_to_{} e, seq_1_to_{} m",
                  kEmployees, kMonths));
}

void CompareStatements(Connection& cn, Library& library) {
  const struct {
    const char* name;
    int times;
    const char* sql;
  } cases[] = {
      {"one value", 2000, "Select Sum(MDFYAMT) From INS_EMIDETAIL Where EMPID = 70 And SITYPE = 2"},
      {"twelve rows", 2000,
       "Select * From INS_EMIDETAIL Where EMPID = 70 And SITYPE = 2 And SERIALNO = 1 Order By COUNTER"},
      {"a row changed", 1000,
       "Update INS_EMIDETAIL Set MDFYAMT = MDFYAMT + 1 Where EMPID = 70 And SITYPE = 2 And COUNTER = 3"},
      {"10,000 rows", 30, "Select EMPID, EMPNAME, REFNO, DOJ From MAS_EMPLOYEE Order By EMPID"},
      {"120,000 rows", 5, "Select * From INS_EMIDETAIL"},
  };
  for (const auto& c : cases) {
    const std::string same = cn.Explain(c.sql);
    Compare(
        c.name, c.times, [&] { cn.Query(c.sql); }, [&] { library.Say(same); });
  }
  // A text that nobody has said before: nothing is prepared for it.
  int ours = 0, theirs = 0;
  const auto sql = [](const char* who, int n) {
    return fmt::format("SELECT EMPID FROM MAS_EMPLOYEE WHERE EMPNAME = '{} {}' AND EMPID = 17", who, n);
  };
  Compare(
      "a text never said before", 1000, [&] { cn.Query(sql("A", ++ours)); },
      [&] { library.Say(sql("B", ++theirs)); });
}

void CompareSaving(Connection& cn, Library& library) {
  constexpr int kSaved = 360;
  const std::string insert =
      "INSERT INTO INS_EMIDETAIL (EMPID, SITYPE, SERIALNO, COUNTER, MONTHYEAR, EMIAMT, MDFYAMT) VALUES ({}, 2, 9, "
      "{}, {}, 1000.5, 1000.5)";
  const auto save = [&](int employee, const auto& say) {
    for (int i = 1; i <= kSaved; ++i) say(fmt::format(fmt::runtime(insert), employee, i, 24120 + i));
    say(fmt::format("DELETE FROM INS_EMIDETAIL WHERE EMPID = {} AND SERIALNO = 9", employee));
  };
  Compare(
      "360 rows and a delete", 15,
      [&] {
        Transaction transaction(cn);
        save(20001, [&](const std::string& sql) { cn.Execute(sql); });
        transaction.Commit();
      },
      [&] {
        library.Say("START TRANSACTION");
        save(20002, [&](const std::string& sql) { library.Say(sql); });
        library.Say("COMMIT");
      });
}

void CountRoundTrips(Connection& cn, Library& library) {
  // Whatever a connection sends but what asks for no answer.
  const char* sent =
      "SELECT SUM(VARIABLE_VALUE) FROM INFORMATION_SCHEMA.GLOBAL_STATUS WHERE VARIABLE_NAME IN "
      "('COM_STMT_PREPARE', 'QUESTIONS')";
  const double before = library.Number(sent);
  for (int i = 0; i < 1000; ++i)
    cn.Query(
        fmt::format("Select MDFYAMT From INS_EMIDETAIL Where EMPID = {} And COUNTER = 1 And SITYPE = 2", i));
  // The question itself is one.
  fmt::print("messages for 1000 statements: {}\n", library.Number(sent) - before - 1);
}

void TellMemory(Connection& cn) {
  const double before = HeapMegabytes();
  const PeakMemory peak;
  const ResultSet rows = cn.Query("Select * From INS_EMIDETAIL");
  const double kept = HeapMegabytes() - before, risen = peak.Risen();
  fmt::print("120,000 rows: {:.1f} MB kept, {:.1f} MB at most\n", kept, risen);
  if (!IsHeldOnce(kept, risen)) throw std::runtime_error("rows are held twice");
}

int Main() {
  const char* socket = std::getenv("KTL_TEST_MARIADB_SOCKET");
  if (socket == nullptr) throw std::runtime_error("KTL_TEST_MARIADB_SOCKET is not set");
  Library library(socket);
  Furnish(library);
  Connection cn;
  cn.Open(fmt::format("Provider=MariaDB;Socket={};Database=KTL_BENCH;User ID=root;", socket));
  TellMemory(cn);
  fmt::print("{:<28} {:>13} {:>13} {:>6}\n", "median", "ours", "library", "ratio");
  CompareStatements(cn, library);
  CompareSaving(cn, library);
  CountRoundTrips(cn, library);
  cn.Close();
  library.Say("DROP DATABASE KTL_BENCH");
  return 0;
}

}  // namespace
}  // namespace ktl

int main() {
  try {
    return ktl::Main();
  } catch (const std::exception& error) {
    fmt::print(stderr, "{}\n", error.what());
    return 1;
  }
}
