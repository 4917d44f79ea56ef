#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstring>
#include <future>
#include <thread>

#include "database/connection.h"
#include "database/drivers/mariadb_dialect.h"
#include "database/drivers/odbc_driver.h"
#include "database/drivers/sqlserver_dialect.h"
#include "database/recordset.h"
#include "failure.h"
#include "runtime/text.h"
#include "support/private_server.h"

namespace ktl::test {
namespace {

std::string Text(const ResultSet& result) {
  std::string text;
  for (const auto& row : result.rows) {
    if (!text.empty()) text += '\n';
    for (const auto& value : row)
      text += (&value == &row.front() ? "" : "|") + (value.IsNull() ? "NULL" : value.ToText());
  }
  return text;
}

// A database with one table, and two workstations on it.
class Server : public testing::Test {
 protected:
  void SetUp() override {
    KTL_NEEDS_SERVER();
    database_.emplace();
    database_->Run(
        "CREATE TABLE MAS_EMPLOYEE (EMPID INT NOT NULL PRIMARY KEY, EMPNAME VARCHAR(255), BASIC DOUBLE,"
        " DOJ DATETIME, REMARKS TEXT)");
    database_->Run("CREATE VIEW KTL_SCHEMA AS SELECT 1 AS VERSION");
    Open(cn_, 5);
    Open(other_, 1);
  }

  void Open(Connection& cn, int seconds, const std::string& more = "") {
    cn.SetClient({"PC1", "ADMIN", {}});
    cn.SetConnectionTimeout(2);
    cn.SetCommandTimeout(seconds);
    cn.Open(database_->ConnectionString() + more);
  }
  void Employee(int employee) {
    cn_.Execute("INSERT INTO MAS_EMPLOYEE (EMPID, EMPNAME, BASIC) VALUES (" + std::to_string(employee) +
                ", 'Asha', 100.50)");
  }
  std::string Rows(std::string_view sql) { return Text(cn_.Query(sql)); }
  static std::string Failure(const std::function<void()>& work) { return FailureOf(work).description(); }
  // As the server's administrator would.
  void CutConnection(Connection& cn) {
    const auto id = cn.Query("SELECT ID FROM KTL_ME").rows.at(0).at(0);
    PrivateServer::Shared()->Run("KILL " + id.ToText());
    while (other_.HasRows("SELECT ID FROM KTL_THERE WHERE ID = " + id.ToText()))
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }

  std::optional<ServerDatabase> database_;
  Connection cn_, other_;
};

TEST_F(Server, ValuesComeBackAsTheyWere) {
  const std::string longText(20000, 'x');
  Recordset rows(cn_, "Select * from mas_employee where empid = 0", OpenMode::AddOnly);
  rows.AddNew();
  rows.Set("EMPID", 17);
  rows.Set("empname", "Zoë Ōtake {d '?'} 'x\\");
  rows.Set("BASIC", 1234.565);
  rows.Set("DOJ", "26/Apr/2010 08:15:30");
  rows.Set("REMARKS", longText);
  rows.Update();
  cn_.Execute("INSERT INTO MAS_EMPLOYEE (EMPID, DOJ) VALUES (18, '01/May/2010 09:30:00')");
  EXPECT_EQ(Rows("SELECT * FROM MAS_EMPLOYEE ORDER BY EMPID"),
            "17|Zoë Ōtake {d '?'} 'x\\|1234.565|26/04/2010 08:15:30|" + longText +
                "\n18|NULL|NULL|01/05/2010 09:30:00|NULL");
  // Said once, prepared, and prepared before.
  for (int i = 0; i < 3; ++i)
    EXPECT_EQ(cn_.FirstValue("SELECT EMPNAME FROM MAS_EMPLOYEE WHERE EMPNAME = 'ZOË ōtake {d ''?''} ''X\\ '"),
              Value("Zoë Ōtake {d '?'} 'x\\"));
  EXPECT_TRUE(cn_.FirstValue("SELECT SUM(EMPID) FROM MAS_EMPLOYEE")->IsInteger());
  EXPECT_EQ(cn_.FirstValue("SELECT MAX(DOJ) FROM MAS_EMPLOYEE"), Value(*Date::FromYmd(2010, 5, 1, 9, 30)));
  EXPECT_EQ(cn_.Execute("UPDATE MAS_EMPLOYEE SET EMPNAME = EMPNAME"), 2);
}

TEST_F(Server, RowsAreKnownAgainByTheirKey) {
  Employee(17);
  Employee(18);
  Recordset rows(cn_, "SELECT * FROM MAS_EMPLOYEE WHERE EMPID < 100 ORDER BY EMPID", OpenMode::Update);
  rows.Set("BASIC", 17.5);
  rows.Set("EMPID", 27);
  rows.Update();
  rows.Set("EMPNAME", "Bilal");
  rows.Update();
  rows.AddNew();
  rows.Set("EMPID", 19);
  rows.Update();
  rows.Set("BASIC", "12.25");
  rows.Update();
  EXPECT_EQ(Rows("SELECT EMPID, EMPNAME, BASIC FROM MAS_EMPLOYEE ORDER BY EMPID"),
            "18|Asha|100.5\n19|NULL|12.25\n27|Bilal|17.5");
  rows.MoveFirst();
  rows.MoveNext();
  other_.Execute("DELETE FROM MAS_EMPLOYEE WHERE EMPID = 18");
  rows.Set("BASIC", 1);
  EXPECT_EQ(FailureOf([&] { rows.Update(); }).number(), kRowGoneError);
  rows.Set("BASIC", "much");
  EXPECT_EQ(FailureOf([&] { rows.Update(); }).number(), kWrongTypeError);
  // Without a key, by all that is in it.
  database_->Run("CREATE TABLE BARE (A INT, B INT, C INT)");
  cn_.Execute("INSERT INTO BARE (A, C) VALUES (1, 5), (2, NULL)");
  Recordset bare(cn_, "SELECT * FROM BARE WHERE C IS NULL", OpenMode::Update);
  bare.Set("B", 7);
  bare.Update();
  EXPECT_EQ(Rows("SELECT * FROM BARE ORDER BY A"), "1|NULL|5\n2|7|NULL");
}

TEST_F(Server, ADistinctListStepsOverItsIndexEachTime) {
  database_->Run("CREATE INDEX IX_BASIC ON MAS_EMPLOYEE (BASIC)");
  database_->Run("INSERT INTO MAS_EMPLOYEE (EMPID, BASIC) SELECT seq, seq DIV 1000 FROM seq_1_to_4000");
  database_->Run("ANALYZE TABLE MAS_EMPLOYEE");
  database_->Run(
      "CREATE VIEW KTL_STEPS AS SELECT VARIABLE_VALUE AS STEPS FROM INFORMATION_SCHEMA.SESSION_STATUS WHERE "
      "VARIABLE_NAME = 'HANDLER_READ_NEXT'");
  const auto steps = [&] { return cn_.FirstValue("SELECT STEPS FROM KTL_STEPS")->ToLong(); };
  for (int i = 0; i < 4; ++i) {
    const long before = steps();
    EXPECT_EQ(Rows("SELECT DISTINCT BASIC, BASIC + 1 FROM MAS_EMPLOYEE"), "0|1\n1|2\n2|3\n3|4\n4|5");
    EXPECT_LT(steps() - before, 1000);
    Rows("SELECT EMPNAME FROM MAS_EMPLOYEE WHERE EMPID < 4");
  }
}

TEST_F(Server, FailuresKeepTheirNumbersAndTheConnection) {
  Employee(17);
  const struct {
    const char* sql;
    long number;
  } cases[] = {{"SELECT * FROM NOWHERE", kNoSuchTableError},
               {"SELECT NOTHING FROM MAS_EMPLOYEE", kStatementError},
               {"SELECT FROM", kStatementError},
               {"INSERT INTO MAS_EMPLOYEE (EMPID) VALUES (17)", kIntegrityError},
               {"INSERT INTO MAS_EMPLOYEE (EMPNAME) VALUES ('x')", kIntegrityError},
               {"NoSuchProcedure 1", kStatementError}};
  for (const auto& c : cases)
    for (int i = 0; i < 3; ++i) EXPECT_EQ(FailureOf([&] { cn_.Execute(c.sql); }).number(), c.number) << c.sql;
  EXPECT_EQ(Failure([&] { cn_.Execute("NoSuchProcedure 1"); }),
            "Could not find stored procedure 'NoSuchProcedure'.");
  EXPECT_EQ(Rows("SELECT EMPID FROM MAS_EMPLOYEE"), "17");
}

TEST_F(Server, OneWorkstationWritesAtATime) {
  std::vector<bool> asked;
  Connection waiting;
  waiting.SetOnWait([&](const WriteWait& wait) {
    asked.push_back(wait.mayGiveUp);
    return asked.size() < 3;
  });
  Open(waiting, 5);
  Transaction writes(cn_);
  Employee(17);
  EXPECT_EQ(Failure([&] { waiting.BeginTrans(); }), kLockedText);
  EXPECT_EQ(asked, std::vector<bool>(3, true));
  EXPECT_FALSE(waiting.InTransaction());
  EXPECT_EQ(Failure([&] { other_.BeginTrans(); }), kLockedText);
  EXPECT_FALSE(other_.HasRows("SELECT * FROM MAS_EMPLOYEE"));
  writes.Commit();
  waiting.Execute("DELETE FROM MAS_EMPLOYEE WHERE EMPID = 1");
  other_.BeginTrans();
  asked.clear();
  EXPECT_EQ(Failure([&] { waiting.BeginTrans(); }), kLockedText);
  EXPECT_EQ(asked, std::vector<bool>(3, false));
  other_.Execute("DELETE FROM MAS_EMPLOYEE");
  other_.RollbackTrans();
  waiting.BeginTrans();
  EXPECT_EQ(Rows("SELECT EMPID FROM MAS_EMPLOYEE"), "17");
}

TEST_F(Server, AStatementThatWaitsTooLongTellsWhatToDo) {
  Employee(17);
  Transaction writes(cn_);
  cn_.Execute("UPDATE MAS_EMPLOYEE SET BASIC = 1 WHERE EMPID = 17");
  const std::string told = Failure([&] { other_.Execute("UPDATE MAS_EMPLOYEE SET BASIC = 2"); });
  EXPECT_TRUE(told == kLockedText || told.starts_with("The database server did not answer within 1 seconds."))
      << told;
  writes.Commit();
  EXPECT_EQ(other_.Execute("UPDATE MAS_EMPLOYEE SET BASIC = 2"), 1);
}

TEST_F(Server, OfTwoInADeadLockOneIsUndoneAsAWhole) {
  Employee(17);
  Employee(18);
  const auto raise = [](Connection& cn, int employee) {
    cn.Execute("UPDATE MAS_EMPLOYEE SET BASIC = BASIC + 1 WHERE EMPID = " + std::to_string(employee));
  };
  // Not through Begin, which lets one write alone.
  Connection first, second;
  Open(first, 5);
  Open(second, 5);
  first.BeginTrans();
  raise(first, 17);
  auto done = std::async(std::launch::async, [&] {
    database_->Run(
        "BEGIN NOT ATOMIC START TRANSACTION; UPDATE MAS_EMPLOYEE SET BASIC = 50 WHERE EMPID = 18;"
        " UPDATE MAS_EMPLOYEE SET REMARKS = REPEAT('x', 1000) WHERE EMPID = 18;"
        " DO SLEEP(0.5); UPDATE MAS_EMPLOYEE SET BASIC = 50 WHERE EMPID = 17; COMMIT; END");
  });
  std::this_thread::sleep_for(std::chrono::milliseconds(250));
  const std::string told = Failure([&] { raise(first, 18); });
  if (told == "done") {
    EXPECT_THROW(done.get(), DatabaseError);
    return;
  }
  done.get();
  EXPECT_EQ(told, "Another workstation was writing the same rows: nothing is saved. Please do it again.");
  EXPECT_EQ(Failure([&] { raise(first, 17); }),
            "The transaction was undone by the database server: nothing of it is saved. Please do it again.");
  EXPECT_THROW(first.CommitTrans(), DatabaseError);
  EXPECT_FALSE(first.InTransaction());
  EXPECT_EQ(Rows("SELECT BASIC FROM MAS_EMPLOYEE"), "50\n50");
  raise(first, 17);
}

TEST_F(Server, ACutConnectionIsToldAndMadeAnew) {
  database_->Run("CREATE VIEW KTL_ME AS SELECT CONNECTION_ID() AS ID");
  database_->Run("CREATE VIEW KTL_THERE AS SELECT ID FROM INFORMATION_SCHEMA.PROCESSLIST");
  CutConnection(cn_);
  EXPECT_EQ(
      Failure([&] { Employee(17); }),
      "The connection to the database server was lost. If something was being saved, look whether it is there before doing it again.");
  Employee(17);
  {
    Transaction writes(cn_);
    Employee(18);
    CutConnection(cn_);
    EXPECT_TRUE(Failure([&] {
                  Employee(19);
                }).starts_with("The connection to the database server was lost: nothing of what was begun"));
    EXPECT_TRUE(Failure([&] { Employee(19); }).starts_with("The transaction was undone"));
    EXPECT_TRUE(Failure([&] { writes.Commit(); }).starts_with("The transaction was undone"));
  }
  EXPECT_EQ(Rows("SELECT EMPID FROM MAS_EMPLOYEE"), "17");
  cn_.BeginTrans();
  CutConnection(cn_);
  EXPECT_TRUE(Failure([&] { cn_.CommitTrans(); }).find("while saving") != std::string::npos);
  EXPECT_FALSE(cn_.InTransaction());
  Transaction writes(cn_);
  Employee(18);
  writes.Commit();
}

TEST_F(Server, TheConnectionsOwnTablesComeBackWithANewOne) {
  database_->Run("CREATE VIEW KTL_ME AS SELECT CONNECTION_ID() AS ID");
  database_->Run("CREATE VIEW KTL_THERE AS SELECT ID FROM INFORMATION_SCHEMA.PROCESSLIST");
  database_->Run(
      "CREATE PROCEDURE ClassSecurity(A INT, B INT, C INT) CREATE TEMPORARY TABLE TMPPC1 AS SELECT B AS EMPID");
  cn_.Execute("dbo.ClassSecurity 1,17,1");
  CutConnection(cn_);
  EXPECT_THROW(Rows("SELECT EMPID FROM [TMPPC1]"), DatabaseError);
  EXPECT_EQ(Rows("SELECT EMPID FROM [TMPPC1]"), "17");
}

// What a server does whose texts go out whole, shown by one that is there.
class WholeTexts final : public MariaDbDialect {
  bool SpeaksTheLanguage() const override { return true; }
};

TEST_F(Server, ABatchThatGoesOutWholeIsReadPastItsCounts) {
  Employee(17);
  Employee(18);
  ConnectionSettings settings;
  settings.connectionString = database_->ConnectionString();
  OdbcDriver driver(std::make_unique<WholeTexts>(), settings);
  const char* batch =
      "BEGIN NOT ATOMIC UPDATE MAS_EMPLOYEE SET BASIC = 1; SELECT EMPID, BASIC FROM MAS_EMPLOYEE; SELECT 5; END";
  EXPECT_EQ(Text(driver.Query(batch, Fetch::AllRows, false)), "17|1\n18|1");
  EXPECT_EQ(Text(driver.Query(batch, Fetch::FirstRow, false)), "17|1");
  EXPECT_GE(driver.Execute(batch), 3);
  EXPECT_EQ(driver.Explain(batch), batch);
  const auto rows = driver.Query("SELECT * FROM MAS_EMPLOYEE WHERE EMPID = 18", Fetch::AllRows, true);
  EXPECT_EQ(rows.baseTable, "MAS_EMPLOYEE");
  driver.UpdateRow(rows.baseTable, rows.keys.at(0), {{"BASIC", 2}});
  EXPECT_EQ(Rows("SELECT BASIC FROM MAS_EMPLOYEE"), "1\n2");
  EXPECT_THROW(driver.Query("SELECT EMPID FROM MAS_EMPLOYEE, T", Fetch::AllRows, true), DatabaseError);
}

TEST(ServerConnection, TheStringsOfSettingsAndFilesReachTheDriver) {
  const auto odbc = [](const ServerDialect& dialect, const std::string& connectionString,
                       const char* driver) {
    ConnectionSettings settings;
    settings.connectionString = connectionString;
    settings.client.hostName = "PC1";
    settings.connectionTimeout = 7;
    settings.commandTimeout = 30;
    return dialect.OdbcString(settings, driver);
  };
  const SqlServerDialect sqlServer;
  const std::string same = "APP=KTLStIns;WSID=PC1;", end = same + "ConnectRetryCount=0;",
                    encrypted = "Encrypt=yes;TrustServerCertificate=yes;",
                    tds = "TDS_Version=7.4;ClientCharset=UTF-8;";
  const struct {
    const char *settings, *driver;
    std::string told;
  } cases[] = {
      {"Server=HO;Database=PAY;Trusted_Connection=yes;", "X",
       "SERVER=HO;DATABASE=PAY;Trusted_Connection=yes;" + encrypted + end},
      {"Server=HO;Port=1500;Integrated Security=SSPI;Encrypt=True", "X",
       "SERVER=HO,1500;Trusted_Connection=yes;Encrypt=yes;" + end},
      {"Server=HO,1501;Port=1500;Encrypt=strict;TrustServerCertificate=no", "X",
       "SERVER=HO,1501;Encrypt=strict;" + end},
      {"Server=HO;Use Encryption for Data=False;Trusted_Connection=no", "X", "SERVER=HO;Encrypt=no;" + end},
      {"Persist Security Info=True;User ID=sa;PWD={a}b;Initial Catalog=PAY;Data Source=HO\\PAYROLL",
       "FreeTDS", "SERVER=HO\\PAYROLL;DATABASE=PAY;UID=sa;PWD={{a}}b};Encryption=require;" + same + tds},
      {"Server=HO;Encrypt=no", "FreeTDS", "SERVER=HO;Encryption=request;" + same + "PORT=1433;" + tds},
      {"Server=HO;Port=1500;Encrypt=strict", "FreeTDS",
       "SERVER=HO;Encryption=require;" + same + "PORT=1500;" + tds},
  };
  for (const auto& c : cases)
    EXPECT_EQ(odbc(sqlServer, std::string("Provider=SQLNCLI;") + c.settings, c.driver),
              "DRIVER={" + std::string(c.driver) + "};" + c.told);
  EXPECT_EQ(
      odbc(MariaDbDialect(),
           "Provider=MariaDB;Server=ho;Port=3307;Database=PAY;User ID=u;PWD=p;SSL CA=/ca;SSL Verify=yes;",
           "M"),
      "DRIVER={M};SERVER=ho;DATABASE=PAY;PORT=3307;UID=u;PWD=p;SSLCA=/ca;FORCETLS=1;SSLVERIFY=1;"
      "CONN_TIMEOUT=7;READ_TIMEOUT=40;WRITE_TIMEOUT=40;CHARSET=utf8mb4;OPTION=3145730;");
}

// A listener that takes connections and never says a word.
class SilentServer {
 public:
  SilentServer() {
    bind(socket_, reinterpret_cast<sockaddr*>(&address_), sizeof address_);
    socklen_t size = sizeof address_;
    getsockname(socket_, reinterpret_cast<sockaddr*>(&address_), &size);
    listen(socket_, 5);
  }
  ~SilentServer() { close(socket_); }
  std::string Port() const { return std::to_string(ntohs(address_.sin_port)); }

 private:
  int socket_ = socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in address_{.sin_family = AF_INET, .sin_addr = {htonl(INADDR_LOOPBACK)}};
};

std::string OpenError(const std::string& connectionString) {
  Connection cn;
  cn.SetConnectionTimeout(1);
  cn.SetCommandTimeout(1);
  const auto since = std::chrono::steady_clock::now();
  const std::string told = FailureOf([&] { cn.Open(connectionString); }).description();
  EXPECT_LT(std::chrono::steady_clock::now() - since, std::chrono::seconds(10)) << connectionString;
  EXPECT_FALSE(cn.IsOpen());
  EXPECT_EQ(told.find("Secret"), told.npos) << told;
  EXPECT_EQ(told.find('\n'), told.npos) << told;
  return told;
}

class NoDriver final : public MariaDbDialect {
  std::span<const std::string_view> DriverNames() const override { return {}; }
};

TEST(ServerConnection, WhatCannotBeReachedIsToldInOneLineAndInTime) {
  const SilentServer silent;
  const std::string user = "User ID=ravi;PWD=Secret}{;";
  const struct {
    std::string connectionString;
    const char* told;  // how it begins
  } cases[] = {
      {"Provider=MariaDB;Server=127.0.0.1;Port=1;Database=PAY;" + user,
       "The server 127.0.0.1 (MariaDB) cannot be reached: Can't connect to server on '127.0.0.1'"},
      {"Provider=MariaDB;Server=127.0.0.1;Port=" + silent.Port() + ";Database=PAY;" + user,
       "The server 127.0.0.1 (MariaDB) cannot be reached: "},
      {"Provider=MariaDB;Socket=/nowhere;Database=PAY;" + user,
       "The server localhost (MariaDB) cannot be reached: Can't connect to local server through socket "
       "'/nowhere'"},
      {"Provider=MariaDB;Driver=None;Server=127.0.0.1;Database=PAY;" + user,
       "The server 127.0.0.1 (MariaDB) cannot be reached: Can't open lib 'None'"},
      {"Provider=MariaDB;;=;Server==;Database=P;{}};DRIVER=;" + user,
       "The server = (MariaDB) cannot be reached: "},
      {"Provider=MariaDB;Server=127.0.0.1;" + user, "The connection string names no database."},
      {"Provider=MariaDB;Database=PAY;Port=33O6;" + user,
       "Port=33O6 in the connection string is no number from 1 to 65535."},
      {"Provider=MariaDB;Database=PAY;Port=65536;" + user, "Port=65536 in the connection string"},
      {"Provider=MariaDB;Database=PAY;SSL CA=/nowhere;" + user,
       "SSL CA=/nowhere in the connection string: there is no such file to read."},
      {"Provider=SQLOLEDB.1;Persist Security Info=True;User ID=ravi;PWD=Secret;Initial Catalog=PAY;"
       "Data Source=127.0.0.1,1",
       "The server 127.0.0.1,1 (SQL Server) cannot be reached: Unable to connect: Adaptive Server is "
       "unavailable or does not exist (08S01)."},
      {"Provider=SQLNCLI;Server=127.0.0.1;Port=" + silent.Port() + ";Database=PAY;" + user,
       "The server 127.0.0.1 (SQL Server) cannot be reached: Timeout expired (HYT00)."},
  };
  for (const auto& c : cases) EXPECT_EQ(OpenError(c.connectionString).substr(0, std::strlen(c.told)), c.told);
  ConnectionSettings settings;
  settings.connectionString = "Provider=MariaDB;Server=ho;Database=PAY;" + user;
  EXPECT_EQ(FailureOf([&] { OdbcDriver(std::make_unique<NoDriver>(), settings); }).description(),
            "The server ho (MariaDB) cannot be reached: no ODBC driver for MariaDB is installed (package "
            "odbc-mariadb).");
}

TEST_F(Server, AnyOtherRefusalOfAConnectionIsToldInOneLine) {
  const std::string name = database_->Name(), user = "k" + name;
  database_->Run("CREATE USER " + user + " IDENTIFIED BY 'Secret}{'");
  database_->Run("GRANT SELECT ON " + name + ".* TO " + user);
  const auto as = [&](const std::string& id, const std::string& password, const std::string& database) {
    return ReplaceAll(PrivateServer::Shared()->ConnectionString(database), "User ID=root;",
                      "User ID=" + id + ";PWD=" + password + ";");
  };
  const std::string server = " on the server localhost (MariaDB)";
  const std::pair<std::string, std::string> cases[] = {
      {as(user, "Secret!", name), "The server localhost (MariaDB) refused the user or his password."},
      {as("root", "", name + "x"), "There is no database " + name + "x" + server + "."},
      {as(user, "Secret}{", "mysql"), "The user may not open the database mysql" + server + "."},
      {as("root", "", "mysql"), "The database mysql" + server + " is no company."}};
  for (const auto& [connectionString, told] : cases) EXPECT_EQ(OpenError(connectionString), told);
  Connection readOnly;
  readOnly.Open(as(user, "Secret}{", name));
  EXPECT_FALSE(readOnly.HasRows("SELECT * FROM MAS_EMPLOYEE"));
  EXPECT_TRUE(Failure([&] {
                readOnly.Execute("DELETE FROM MAS_EMPLOYEE");
              }).starts_with("The user of the database may not do this: "));
  database_->Run("CREATE OR REPLACE VIEW KTL_SCHEMA AS SELECT 2 AS VERSION");
  EXPECT_EQ(OpenError(database_->ConnectionString()),
            "The database " + name + server + " has schema version 2; this program works with version 1.");
  database_->Run("DROP USER " + user);
}

TEST(ServerConnection, AServerThatFailsIsToldAndFoundAgain) {
  KTL_NEEDS_SERVER();
  PrivateServer server;
  server.Run("CREATE DATABASE PAY");
  server.Run("CREATE TABLE PAY.T (A INT PRIMARY KEY)");
  server.Run("CREATE VIEW PAY.KTL_SCHEMA AS SELECT 1 AS VERSION");
  Connection cn;
  cn.SetConnectionTimeout(1);
  cn.SetCommandTimeout(1);
  cn.Open(server.ConnectionString("PAY"));
  const auto told = [&] { return FailureOf([&] { cn.HasRows("SELECT * FROM T"); }).description(); };
  server.Hang();
  EXPECT_EQ(
      told(),
      "The database server did not answer within 1 seconds, and the connection was given up. If something was "
      "being saved, look whether it is there before doing it again.");
  EXPECT_TRUE(told().starts_with("The server localhost (MariaDB) cannot be reached: "));
  server.Awake();
  {
    Transaction writes(cn);
    cn.Execute("INSERT INTO T (A) VALUES (1)");
    server.Kill();
    EXPECT_THROW(cn.Execute("INSERT INTO T (A) VALUES (2)"), DatabaseError);
  }
  EXPECT_TRUE(told().starts_with("The server localhost (MariaDB) cannot be reached: "));
  server.Start();
  EXPECT_FALSE(cn.HasRows("SELECT * FROM T"));
}

}  // namespace
}  // namespace ktl::test
