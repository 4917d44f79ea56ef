#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <mutex>
#include <thread>
#include <variant>

#include "database/connection.h"
#include "database/drivers/odbc_database.h"
#include "database/drivers/odbc_text.h"
#include "database/drivers/sqlserver_dialect.h"
#include "database/recordset.h"
#include "failure.h"
#include "runtime/text.h"

namespace ktl::test {
namespace {

// What an SQL Server writes on the wire, as far as its answers here go.
std::string Le(std::uint64_t number, int bytes) {
  std::string text;
  for (int i = 0; i < bytes; ++i) text += static_cast<char>(number >> (8 * i) & 0xFF);
  return text;
}
std::string Wide(std::string_view text) {
  std::string wide;
  for (const char c : text) wide += {c, '\0'};
  return wide;
}
std::string Short(std::string_view text) { return Le(text.size(), 1) + Wide(text); }
std::string Sized(int token, const std::string& body) {
  return Le(static_cast<unsigned>(token), 1) + Le(body.size(), 2) + body;
}
std::string Done(int rows = 0, int status = 0x10) {
  return Le(0xFD, 1) + Le(static_cast<unsigned>(status), 2) + Le(0xC1, 2) +
         Le(static_cast<unsigned>(rows), 8);
}
std::string Error(int number, std::string_view message = "It fails.") {
  return Sized(0xAA, Le(static_cast<unsigned>(number), 4) + Le(0x1001, 2) + Le(message.size(), 2) +
                         Wide(message) + Short("") + Short("") + Le(1, 4));
}
const std::string kFailed = Done(0, 2);
const std::string kCollation = "\x09\x04\xD0" + std::string(1, '\0') + "\x34";

using Cell = std::variant<int, const char*>;
std::string Rows(const std::vector<const char*>& names, const std::vector<std::vector<Cell>>& rows) {
  std::string text = Le(0x81, 1) + Le(names.size(), 2);
  for (std::size_t i = 0; i < names.size(); ++i) {
    const bool isText = !rows.empty() && rows[0][i].index() == 1;
    text += Le(0, 4) + Le(9, 2) + (isText ? "\xE7" + Le(510, 2) + kCollation : "\x26\x04") + Short(names[i]);
  }
  for (const auto& row : rows) {
    text += Le(0xD1, 1);
    for (const Cell& cell : row) {
      const auto* number = std::get_if<int>(&cell);
      const std::string wide = number == nullptr ? Wide(std::get<const char*>(cell)) : "";
      text +=
          number != nullptr ? Le(4, 1) + Le(static_cast<unsigned>(*number), 4) : Le(wide.size(), 2) + wide;
    }
  }
  return text + Done(static_cast<int>(rows.size()));
}

// Answers each text that a driver sends by what a test has laid down for a part of it; keeps the texts.
class StandIn {
 public:
  StandIn() {
    bind(socket_, reinterpret_cast<sockaddr*>(&address_), sizeof address_);
    socklen_t size = sizeof address_;
    getsockname(socket_, reinterpret_cast<sockaddr*>(&address_), &size);
    listen(socket_, 5);
    thread_ = std::jthread([this] {
      for (int caller = 0; (caller = accept(socket_, nullptr, nullptr)) >= 0; close(caller)) Serve(caller);
    });
  }
  ~StandIn() { shutdown(socket_, SHUT_RDWR), thread_.join(), close(socket_); }

  std::string ConnectionString() const {
    return "Provider=SQLOLEDB.1;User ID=ravi;PWD=Secret;Initial Catalog=PAY;Encrypt=no;Data Source=127.0.0.1," +
           std::to_string(ntohs(address_.sin_port));
  }
  void Answer(std::string part, std::string answer) {
    const std::scoped_lock lock(mutex_);
    answers_.insert(answers_.begin(), {std::move(part), std::move(answer)});
  }
  std::vector<std::string> TakeSaid() {
    const std::scoped_lock lock(mutex_);
    return std::exchange(said_, {});
  }

 private:
  std::string AnswerTo(int kind, const std::string& body) {
    const std::scoped_lock lock(mutex_);
    constexpr int kText = 1, kCall = 3, kPrelogin = 0x12, kLogin = 0x10;
    if (kind == kPrelogin) return std::string("\0\0\x0B\0\6\1\0\x11\0\1\xFF\x0E\0\3\xE8\0\0\2", 18);
    std::string text = kind == kLogin ? "login" : kind == kText || kind == kCall ? body.substr(22) : "cancel";
    std::erase(text, '\0');
    said_.push_back((kind == kCall ? "call " : "") + text);
    for (const auto& [part, answer] : answers_)
      if (text.find(part) != text.npos) return answer;
    return kind == kLogin
               ? Sized(0xAD, "\1" + std::string("\x74\0\0\4", 4) + Short("Server") + Le(0x0E, 4)) + Done(0, 0)
               : Done(1, text == "cancel" ? 0x20 : 0x10);
  }
  void Serve(int caller) {
    std::string body;
    for (std::array<unsigned char, 8> head{}; recv(caller, head.data(), 8, MSG_WAITALL) == 8;) {
      std::string part(static_cast<std::size_t>(head[2] << 8 | head[3]) - 8, '\0');
      if (!part.empty()) recv(caller, part.data(), part.size(), MSG_WAITALL);
      body += part;
      if ((head[1] & 1) == 0) continue;
      const std::string answer = AnswerTo(head[0], std::exchange(body, ""));
      if (answer == "cut") return;
      if (answer.empty()) continue;
      const std::size_t size = answer.size() + 8;
      const std::string sent = Le(0x0104, 2) + Le(size >> 8, 1) + Le(size, 1) + Le(0x0100, 4) + answer;
      send(caller, sent.data(), sent.size(), MSG_NOSIGNAL);
    }
  }

  int socket_ = socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in address_{.sin_family = AF_INET, .sin_addr = {htonl(INADDR_LOOPBACK)}};
  std::mutex mutex_;
  std::vector<std::pair<std::string, std::string>> answers_;
  std::vector<std::string> said_;
  std::jthread thread_;
};

class SqlServer : public testing::Test {
 protected:
  SqlServer() {
    server_.Answer("KTL_SCHEMA", Rows({"VERSION"}, {{1}}));
    server_.Answer("sp_getapplock", Rows({""}, {{1}}));
    server_.Answer("@@TRANCOUNT", Rows({""}, {{1}}));
    cn_.SetClient({"PC1", "O'Brien", {}});
    cn_.SetConnectionTimeout(20);
  }
  void Open(int seconds = 20) {
    cn_.SetCommandTimeout(seconds);
    cn_.Open(server_.ConnectionString());
    server_.TakeSaid();
  }
  std::string Failure(std::string_view sql) {
    return FailureOf([&] { cn_.Execute(sql); }).description();
  }

  StandIn server_;
  Connection cn_;
};

TEST_F(SqlServer, TextsGoOutAsTheyStandAndOneMessageEach) {
  cn_.SetCommandTimeout(20);
  cn_.Open(server_.ConnectionString());
  const auto first = server_.TakeSaid();
  ASSERT_EQ(first.size(), 4U);
  EXPECT_TRUE(first[1].starts_with("SET LANGUAGE us_english; ")) << first[1];
  EXPECT_NE(first[1].find("SET NOCOUNT, IMPLICIT_TRANSACTIONS, XACT_ABORT OFF"), first[1].npos) << first[1];
  EXPECT_TRUE(first[2].starts_with("SET LOCK_TIMEOUT 20000; ")) << first[2];
  EXPECT_NE(first[2].find("CAST(N'O''Brien' AS VARBINARY(128))"), first[2].npos) << first[2];
  server_.Answer("MAX", Rows({""}, {{24132}}));
  server_.Answer("batch", Done(2, 0x11) + Rows({"A"}, {{17}, {18}}));
  std::vector<std::string> wanted;
  for (int i = 0; i < 3; ++i) {
    cn_.BeginTrans();
    EXPECT_EQ(cn_.FirstValue("SELECT MAX(A) '{x} ?'"), Value(24132));
    EXPECT_EQ(cn_.Execute("batch"), 4);
    cn_.CommitTrans();
    const auto said = server_.TakeSaid();
    ASSERT_EQ(said.size(), 4U) << said.back();
    EXPECT_NE(said[0].find("BEGIN TRANSACTION"), said[0].npos);
    EXPECT_EQ(said[1] + "|" + said[2] + "|" + said[3], "SELECT MAX(A) '{x} ?'|batch|COMMIT TRANSACTION");
  }
}

TEST_F(SqlServer, ARowIsWrittenByItsKey) {
  Open();
  server_.Answer("FROM [T]", Rows({"EMPID", "BASIC", "REMARKS"}, {{0, 0, ""}}));
  server_.Answer("sp_pkeys",
                 Rows({"Q", "O", "T", "COLUMN_NAME", "KEY_SEQ", "K"}, {{"", "", "", "EMPID", 1, ""}}));
  server_.Answer("FROM T", Rows({"EMPID", "BASIC", "REMARKS"}, {{17, 1, "a"}, {18, 2, "b"}}));
  Recordset rows(cn_, "SELECT * FROM T", OpenMode::Update);
  rows.MoveNext();
  server_.TakeSaid();
  rows.Set("REMARKS", std::string(5000, 'x'));
  rows.Set("BASIC", Null{});
  rows.Update();
  const std::string said = server_.TakeSaid().at(0);
  EXPECT_NE(said.find("UPDATE [T] SET [REMARKS] = @P1, [BASIC] = NULL WHERE [EMPID] = @P2"), said.npos)
      << said;
  EXPECT_NE(said.find("@P1 NVARCHAR(MAX)"), said.npos) << said;
  server_.Answer("UPDATE", Done(0));
  rows.Set("REMARKS", "c");
  EXPECT_EQ(FailureOf([&] { rows.Update(); }).number(), kRowGoneError);
  // Of several rows in one statement a null must not make numbers of the texts.
  cn_.Close();
  const SqlServerDialect dialect;
  OdbcDatabase database(dialect);
  ConnectionSettings settings;
  settings.connectionString = server_.ConnectionString();
  settings.connectionTimeout = 20;
  database.Open(settings);
  server_.TakeSaid();
  OdbcDatabase::Lease(database, "INSERT INTO T (A) VALUES (?),(?)",
                      std::vector<Value>{Value(Null{}), Value("x")});
  EXPECT_NE(server_.TakeSaid().at(0).find("@P1 NVARCHAR(1),@P2 NVARCHAR(1)"), std::string::npos);
}

TEST(SqlServerTexts, TextsKeepLettersOfTwoUnits) {
  EXPECT_EQ(ToUtf16("a😀é"), u"a😀é");
  EXPECT_EQ(FromUtf16(u"a😀é"), "a😀é");
}

TEST_F(SqlServer, WhatEndsATransactionLetsNothingStandAlone) {
  Open();
  server_.Answer("FAIL", Error(241) + kFailed);
  cn_.BeginTrans();
  EXPECT_EQ(Failure("FAIL"), "It fails.");
  cn_.Execute("UPDATE T");
  server_.Answer("SELECT @@TRANCOUNT", Rows({""}, {{0}}));
  EXPECT_EQ(Failure("FAIL"), "It fails.");
  server_.TakeSaid();
  EXPECT_TRUE(Failure("UPDATE T").starts_with("The transaction was undone"));
  EXPECT_TRUE(server_.TakeSaid().empty());
  EXPECT_THROW(cn_.CommitTrans(), DatabaseError);
  EXPECT_EQ(Failure("UPDATE T"), "done");
}

TEST_F(SqlServer, FailuresAreToldByTheServersNumbers) {
  Open();
  const struct {
    int number;
    long told;
    const char* description;
  } cases[] = {
      {208, kNoSuchTableError, "It fails."},
      {207, kStatementError, "It fails."},
      {2627, kIntegrityError, "It fails."},
      {8152, kGenericDatabaseError, "It fails."},
      {1205, kGenericDatabaseError,
       "Another workstation was writing the same rows: nothing is saved. Please do it again."},
      {1222, kGenericDatabaseError, kLockedText},
      {229, kGenericDatabaseError,
       "The user of the database may not do this: It fails. Ask whoever looks after the server."},
  };
  for (const auto& c : cases) {
    server_.Answer("FAIL", Error(c.number) + Error(3621, "The statement has been terminated.") + kFailed);
    const auto failure = FailureOf([&] { cn_.Execute("FAIL"); });
    EXPECT_EQ(failure.number(), c.told) << c.number;
    EXPECT_EQ(failure.description(), c.description) << c.number;
  }
  Open(1);
  server_.Answer("FAIL", "");
  EXPECT_EQ(Failure("FAIL"),
            "The database server did not answer within 1 seconds. Try again, or raise the setting COMDTIME.");
  Open();
  server_.Answer("FAIL", "cut");
  EXPECT_TRUE(Failure("FAIL").starts_with("The connection to the database server was lost. If"));
  EXPECT_EQ(Failure("UPDATE T"), "done");
  cn_.BeginTrans();
  EXPECT_TRUE(Failure("FAIL").starts_with("The connection to the database server was lost: nothing"));
  EXPECT_TRUE(Failure("UPDATE T").starts_with("The transaction was undone"));
}

TEST_F(SqlServer, RefusedLoginsAreToldByWhatSaysMost) {
  const std::string refused = Error(18456, "Login failed for user 'ravi'.");
  const std::string server = ReplaceAll(server_.ConnectionString(), "127.", "|127.");
  const std::string place = "server " + server.substr(server.find('|') + 1) + " (SQL Server)";
  const std::pair<std::string, std::string> cases[] = {
      {refused, "The " + place + " refused the user or his password."},
      {Error(4060) + refused, "There is no database PAY on the " + place + "."},
      {refused + Error(4060), "There is no database PAY on the " + place + "."},
      {Error(916) + refused, "The user may not open the database PAY on the " + place + "."}};
  for (const auto& [answer, told] : cases) {
    server_.Answer("login", answer + kFailed);
    EXPECT_EQ(FailureOf([&] { cn_.Open(server_.ConnectionString()); }).description(), told);
  }
}

}  // namespace
}  // namespace ktl::test
