#include <array>
#include <cstdio>
#include <sstream>

#include "company/sql_command.h"
#include "database/connection.h"
#include "sample_company.h"

namespace ktl {
namespace {

TEST(SqlCommand, RowsComeTabSeparatedUnderTheirNames) {
  const Folder folder;
  CreateCompany(Options(folder / "a.kldb"));
  Connection connection;
  OpenCompany(connection, folder / "a.kldb");
  const std::pair<const char*, std::string> cases[] = {
      {"SELECT TOP 2 EMPID, EMPNAME, DOL FROM MAS_EMPLOYEE WHERE EMPID IN (1, 6, 30) ORDER BY EMPID DESC",
       "EMPID\tEMPNAME\tDOL\n30\tMelvyn D'Souza\tNULL\n6\t"},
      {"SELECT SIDATE, ACTAMT FROM INS_ADVLOAN WHERE EMPID = 12", "SIDATE\tACTAMT\n10/04/2025\t600000\n"},
      {"SELECT EMPID FROM MAS_EMPLOYEE WHERE EMPID = 0", "EMPID\n"},
      {"UPDATE MAS_EMPLOYEE SET lockyn = 1 WHERE EMPID = 2", ""},
      {"SELECT ISNULL(lockyn, 0) AS L FROM MAS_EMPLOYEE WHERE EMPID = 2", "L\n1\n"},
  };
  for (const auto& [statement, output] : cases) {
    std::ostringstream out;
    RunStatement(connection, statement, out);
    EXPECT_EQ(out.str().substr(0, output.size()), output) << statement;
  }
}

struct Ended {
  int status = 0;
  std::string output;  // of both kinds
};

Ended RunCompany(const std::string& arguments) {
  const std::string command = KTL_BUILD_DIR "/KTLCompany " + arguments +
                              (arguments.find('<') == arguments.npos ? " 2>&1 </dev/null" : " 2>&1");
  Ended ended;
  FILE* pipe = ::popen(command.c_str(), "r");
  std::array<char, 4096> part;
  for (std::size_t read; (read = ::fread(part.data(), 1, part.size(), pipe)) > 0;)
    ended.output.append(part.data(), read);
  ended.status = WEXITSTATUS(::pclose(pipe));
  return ended;
}

TEST(CommandLine, FailuresAreOneLineAndAStatus) {
  const Folder folder;
  CreateCompany(Options(folder / "good.kldb"));
  std::ofstream(folder / "text.kldb")
      << "This is a letter and no company at all, long enough to be looked at.\n";
  const std::string in = folder.path().string() + "/";
  const struct {
    std::string arguments;
    int status;
    std::string mentions;
  } cases[] = {
      {"sql " + in + "none.kldb 'SELECT 1'", 1, "none.kldb"},
      {"sql " + in + "text.kldb 'SELECT 1'", 1, "text.kldb"},
      {"sql " + in + "good.kldb 'SELECT NOTHING FROM MAS_EMPLOYEE'", 1, "NOTHING"},
      {"sql " + in + "good.kldb 'FETCH IT'", 1, "FETCH"},
      {"create " + in + "good.kldb", 1, "--force"},
      {"create " + in + "new.kldb --asof 2026", 2, "--asof"},
      {"creat " + in + "new.kldb", 2, "\"creat\"; the commands are create, use, backup, restore, sql"},
  };
  for (const auto& c : cases) {
    const Ended ended = RunCompany(c.arguments);
    EXPECT_EQ(ended.status, c.status) << c.arguments;
    EXPECT_NE(ended.output.find(c.mentions), std::string::npos) << c.arguments << ": " << ended.output;
    EXPECT_EQ(std::count(ended.output.begin(), ended.output.end(), '\n'), 1) << ended.output;
  }
  EXPECT_FALSE(std::filesystem::exists(folder / "none.kldb"));
  EXPECT_EQ(RunCompany("create").status, 2);
  EXPECT_EQ(RunCompany("create " + in + "new.kldb --variant nowhere").status, 2);
  const std::string count = "sql " + in + "good.kldb 'SELECT COUNT(*) AS N FROM MAS_EMPLOYEE'";
  EXPECT_EQ(RunCompany(count).output, "N\n60\n");
  EXPECT_EQ(RunCompany(count + " >/dev/full").status, 1);
  std::ofstream(folder / "pipe.sql") << "SELECT 1 AS A\n\nSELECT NOTHING FROM MAS_EMPLOYEE\nSELECT 2 AS B\n";
  const Ended piped = RunCompany("sql " + in + "good.kldb <" + in + "pipe.sql");
  EXPECT_EQ(piped.status, 1);
  EXPECT_NE(piped.output.find("A\n1\nline 3: "), std::string::npos) << piped.output;
  EXPECT_EQ(piped.output.find("B\n2"), std::string::npos) << piped.output;
}

TEST(CommandLine, CreateSaysWhatItMade) {
  const Folder folder;
  const std::string file = (folder / "made.kldb").string();
  const std::string told =
      RunCompany("create " + file + " --employees 100 --loans 70 --emi-target 1000").output;
  EXPECT_EQ(told, "Made " + file + ": a sample of 100 employees, 70 advances and loans, 1000 instalments.\n");
  EXPECT_EQ(RunCompany("create " + file + " --empty --force").output,
            "Made " + file + ": an empty company.\n");
  const std::string sums = RunCompany("create " + file + " --force --sums").output;
  EXPECT_NE(sums.find("\nINS_EMIDETAIL "), std::string::npos);
}

}  // namespace
}  // namespace ktl
