#include "start/connect.h"

#include <fmt/format.h>

#include <fstream>
#include <optional>
#include <vector>

#include "common/amounts.h"
#include "common/naming.h"
#include "frame/session.h"
#include "runtime/errors.h"
#include "runtime/numbers.h"
#include "runtime/text.h"
#include "start/command_line.h"

namespace ktl {

namespace {

std::string TrustedConnection(const std::string& server, const std::string& database) {
  return fmt::format("Provider=SQLNCLI;Server={};Database={};Trusted_Connection=yes;", server, database);
}

std::string FirstLine(const std::string& path) {
  std::ifstream file(path);
  if (!file) throw RuntimeError(53, "File not found");
  std::string line;
  if (!std::getline(file, line)) throw RuntimeError(62, "Input past end of file");
  if (line.ends_with('\r')) line.pop_back();
  return line;
}

// Taken from the ADMIN row, whoever the user is.
bool ReadMultiLogin(Session& session) {
  const Value flag =
      session.data.Guarding("SELECT MULTILOGIN FROM SEC_USERLIST WHERE UPPER(USERNAME) = 'ADMIN'");
  return flag.IsText() ? Val(flag.text()) != 0 : flag.NumberOr0() != 0;
}

}  // namespace

std::optional<std::string> ConnectionOfHost(Session& session) {
  SettingsStore& settings = session.machine.settings;
  session.ExeTalkFileName = settings.Get("ExeTalk", "FileName", "");
  session.DataPath = settings.Get("Settings", "Path", session.machine.folder.Path());
  const std::string defLnk = settings.Get("Settings", "DefLnk", "");
  if (Trim(defLnk).empty()) return std::nullopt;
  if (UpperCase(settings.Get("SETTINGS", "CONNECTION", "A")) == "TRUST") {
    return TrustedConnection(UpperCase(settings.Get("SETTINGS", "DBService", "A")),
                             UpperCase(settings.Get("SETTINGS", "DBName", "A")));
  }
  return clsGenCmn::FnStrEncryptWord(defLnk);
}

std::optional<std::string> ConnectionOfFile(const std::string& path) {
  const std::string line = Naming(path, [&] { return FirstLine(path); });
  if (line.empty()) return std::nullopt;
  std::vector<std::string> elements = Split(line, ":");
  if (elements.size() == 3) elements.resize(5);
  Naming(path, [&] {
    if (elements.size() < 5) throw RuntimeError::SubscriptOutOfRange();
  });
  const std::string user = clsGenCmn::FnStrEncryptWord(elements[3]);
  const std::string password = clsGenCmn::FnStrEncryptWord(elements[4]);
  if (user.empty() && password.empty()) return TrustedConnection(elements[1], elements[2]);
  return fmt::format(
      "Provider=SQLOLEDB.1;Persist Security Info=True;User ID={};PWD={};Initial Catalog={};Data Source={}",
      user, password, elements[2], elements[1]);
}

void OpenConnection(Session& session, const std::string& connectionString) {
  Machine& machine = session.machine;
  Connection& cn = session.Cn;
  if (cn.IsOpen()) cn.Close();
  const auto seconds = [&](const char* key) {
    const std::string text = machine.settings.Get("Settings", key, "600");
    return Naming(fmt::format("The setting {}", key), [&] { return Value(Val(text)).ToLong(); });
  };
  cn.SetConnectionTimeout(seconds("CONNTIME"));
  cn.SetCommandTimeout(seconds("COMDTIME"));
  cn.SetClient({machine.environment.HostName(), session.CurrentUser(),
                [&clock = machine.clock] { return clock.Now(); }});
  // A program that is to end does so where nothing is half written.
  cn.SetOnWait([&session](const WriteWait& wait) {
    if (wait.mayGiveUp && session.machine.environment.MustEnd()) return false;
    return session.desk.KeepWaiting(wait.waited, wait.mayGiveUp);
  });
  cn.SetStatementLog(machine.environment.Variable("KTL_SQL_LOG"));
  cn.Open(connectionString);
}

bool Connect(Session& session, const CommandLine& line) {
  const LaunchFields fields = ConvertFields(line, session.machine.environment.ExecutableName());
  session.FormCode = fields.formCode;
  session.ReportFlag = fields.reportFlag;
  session.ReportNumber = fields.reportNumber;
  session.TrailingNumber = fields.trailingNumber;
  session.OpenedFromFile = fields.openedFromFile;

  const std::optional<std::string> connectionString =
      fields.openedFromFile ? ConnectionOfFile(fields.connectionFile) : ConnectionOfHost(session);
  if (!connectionString) {
    session.desk.Warn("Please open the Kestrel Ledger file.", kVendorTitle);
    return false;
  }
  OpenConnection(session, *connectionString);
  session.MultiLoginYN = ReadMultiLogin(session);
  return true;
}

}  // namespace ktl
