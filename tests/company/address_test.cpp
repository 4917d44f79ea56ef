#include <sstream>

#include "common/amounts.h"
#include "company/check_command.h"
#include "company/company_address.h"
#include "machine/settings_store.h"
#include "sample_company.h"

namespace ktl {
namespace {

constexpr const char* kServer = "Provider=MariaDB;Server=pay;Database=acme;User ID=ktl;PWD=secret;";

TEST(CompanyAddress, IsAFileAConnectionOrAFileThatHoldsOne) {
  const Folder folder;
  std::ofstream(folder / "connection") << kServer << "\r\n";
  std::ofstream(folder / "empty");
  const struct {
    std::string text, connection, shown;
  } cases[] = {
      {"/tmp/x/../a.kldb", "Provider=SQLite;Data Source=/tmp/a.kldb;", "/tmp/a.kldb"},
      {"provider=sqlite;Data Source=/tmp/a.kldb;", "Provider=SQLite;Data Source=/tmp/a.kldb;", "/tmp/a.kldb"},
      {kServer, kServer, "database acme on pay"},
      {"@" + (folder / "connection").string(), kServer, "database acme on pay"},
      {"Provider=SQLOLEDB.1;PWD=secret;Initial Catalog=acme;Data Source=pay",
       "Provider=SQLOLEDB.1;PWD=secret;Initial Catalog=acme;Data Source=pay", "database acme on pay"},
      {"Provider=MariaDB;Database=acme", "Provider=MariaDB;Database=acme", "database acme on localhost"},
  };
  for (const auto& c : cases) {
    const CompanyAddress address = AddressOf(c.text);
    EXPECT_EQ(address.connectionString, c.connection) << c.text;
    EXPECT_EQ(address.shown, c.shown) << c.text;
    EXPECT_EQ(address.OnServer(), c.shown.starts_with("database")) << c.text;
  }
  const std::string empty = (folder / "empty").string();
  EXPECT_EQ(ErrorOf([&] { AddressOf("@" + empty); }), empty + ": no connection string can be read");
  for (const char* nonsense : {"Server=pay;PWD=secret", "Provider=;PWD=secret;"})
    EXPECT_EQ(
        ErrorOf([&] { AddressOf(nonsense); }),
        "Neither a file, whose name holds no semicolon, nor a connection string, which names a provider.");
}

TEST(CompanyAddress, TheSettingsHoldItScrambled) {
  const Folder folder;
  WriteSettings(folder / "settings.ini", AddressOf(kServer));
  EXPECT_EQ(clsGenCmn::FnStrEncryptWord(SettingsFile(folder / "settings.ini").Get("Settings", "DefLnk")),
            kServer);
  EXPECT_EQ(ReadAll(folder / "settings.ini").find("secret"), std::string::npos);
}

TEST(CheckStatements, TellsEachShapeOnceAndPassesOverWhatFailed) {
  const Folder folder;
  std::ofstream(folder / "log") << "12\t1\tSELECT NONE FROM MAS_EMPLOYEE WHERE EMPID = 17\n"
                                   "12\t0\tSELECT NONE FROM MAS_EMPLOYEE WHERE EMPID = 18\n"
                                   "12\t-1\tSELECT OTHER FROM MAS_EMPLOYEE\n"
                                   "SELECT EMPID FROM MAS_EMPLOYEE\n";
  std::ostringstream out;
  EXPECT_FALSE(CheckStatements({(folder / "log").string()}, out));
  EXPECT_EQ(out.str(),
            "SELECT NONE FROM MAS_EMPLOYEE WHERE EMPID = 17\n"
            "  there is no column NONE, near \"SELECT NONE FROM MAS_EMPLOYEE WHERE EMPI\"\n"
            "3 statements, 2 shapes, 1 that SQL Server would refuse.\n");
}

}  // namespace
}  // namespace ktl
