#include "common/amounts.h"
#include "machine/settings_store.h"
#include "sample_company.h"

namespace ktl {
namespace {

TEST(CreateCompany, SameArgumentsGiveTheSameCompany) {
  const Folder folder;
  auto options = Options(folder / "a.kldb", 70);
  const std::vector<TableSum> first = CreateCompany(options);
  options.file = folder / "b.kldb";
  EXPECT_TRUE(CreateCompany(options) == first);
  options.file = folder / "c.kldb";
  options.sample.seed = 2;
  EXPECT_FALSE(CreateCompany(options) == first);
}

TEST(CreateCompany, AnEmployeeIsTheSameInCompaniesOfAnySize) {
  const Folder folder;
  CreateCompany(Options(folder / "small.kldb", 120));
  CreateCompany(Options(folder / "large.kldb", 150));
  const std::pair<std::string, std::string> cases[] = {
      {"MAS_EMPLOYEE", "REFNO || EMPNAME || DOJ || DOB || PFYN || ESIYN || TDSYN"},
      {"MAS_EMPLOYEEDET", "EMPDETID || EFFFROMDATE || BRANCHID || ATTHEADID || DEPARTMENT"},
      {"INS_ADVLOAN", "SITYPE || SERIALNO || SINAME || SIDATE || ACTAMT"},
      {"INS_EMIDETAIL", "SITYPE || SERIALNO || COUNTER || MONTHYEAR || EMIAMT || MDFYAMT"},
      {"INS_RECEIPTS", "SITYPE || SERIALNO || COUNTER || RCPTDATE || RCPTAMT"},
      {"SLC_SALARYCALC_E", "SALID || MONTHYEAR || NETAMOUNT || ETOTAL"},
  };
  for (const auto& [table, columns] : cases) {
    const std::string sql = "SELECT EMPID || ' ' || " + columns + " FROM " + table +
                            " WHERE EMPID > 60 AND EMPID <= 120 ORDER BY rowid";
    const std::string small = Ask(folder / "small.kldb", sql);
    EXPECT_FALSE(small.empty()) << table;
    EXPECT_EQ(Ask(folder / "large.kldb", sql), small) << table;
  }
}

TEST(CreateCompany, TargetsAreMetExactly) {
  const Folder folder;
  auto options = Options(folder / "a.kldb", 200);
  options.sample.targets = {500, 9001};
  CreateCompany(options);
  EXPECT_EQ(Ask(options.file, "SELECT COUNT(*) FROM INS_ADVLOAN"), "500");
  EXPECT_EQ(Ask(options.file, "SELECT COUNT(*) FROM INS_EMIDETAIL"), "9001");
  // What the planner knows is counted, not guessed.
  EXPECT_EQ(Ask(options.file, "SELECT CAST(stat AS INTEGER) FROM sqlite_stat1 WHERE idx = 'IX_EMI_MONTH'"),
            "9001");
}

TEST(CreateCompany, AnEmptyCompanyHasTheRequiredRowsAndTheMonths) {
  const Folder folder;
  auto options = Options(folder / "a.kldb");
  options.empty = true;
  CreateCompany(options);
  const std::pair<const char*, const char*> cases[] = {
      {"SELECT group_concat(PDLISTDESC) FROM MAS_PULLDOWNVALUES WHERE REFID = 5",
       "Advance,Loan,Insurance,SSS,Group Insurance,Periodic Incentive"},
      {"SELECT MIN(MONTHYEAR) || ' ' || MAX(MONTHYEAR) || ' ' || COUNT(*) FROM MAS_MONTHYEAR",
       "24292 24327 36"},
      {"SELECT (SELECT COUNT(*) FROM MAS_EMPLOYEE) || ' ' || (SELECT COUNT(*) FROM SEC_USERLIST)", "0 1"},
      {"PRAGMA user_version", "1"},
  };
  for (const auto& [question, answer] : cases) EXPECT_EQ(Ask(options.file, question), answer);
}

TEST(CreateCompany, AnExistingFileStaysWithoutForce) {
  const Folder folder;
  std::ofstream(folder / "a.kldb") << "mine";
  auto options = Options(folder / "a.kldb");
  EXPECT_THROW(CreateCompany(options), CompanyError);
  EXPECT_EQ(ReadAll(options.file), "mine");
  EXPECT_EQ(folder.Names(), std::vector<std::string>{"a.kldb"});

  // Logs of the old file would be played into the new one.
  std::ofstream(folder / "a.kldb-wal") << "old log";
  options.force = true;
  CreateCompany(options);
  EXPECT_EQ(Ask(options.file, "SELECT COUNT(*) FROM MAS_EMPLOYEE"), "60");
  EXPECT_EQ(folder.Names(), (std::vector<std::string>{"a.kldb", "klgen.MDB"}));
}

TEST(CreateCompany, AFailureLeavesNothingBehind) {
  struct {
    std::function<void(CompanyOptions&)> spoil;
    const char* error;
  } const cases[] = {
      {[](auto& o) { o.sample.variants = {"nowhere"}; }, "There is no variant \"nowhere\"."},
      {[](auto& o) { o.sample.employees = 100, o.sample.targets.loans = 3; },
       "At least 46 loans are in every company."},
      {[](auto& o) { o.sample.targets.loans = 900; }, "A number of loans needs more than 60 employees."},
      {[](auto& o) { o.sample.employees = 59; }, "A sample company has at least 60 employees."},
  };
  for (const auto& c : cases) {
    const Folder folder;
    auto options = Options(folder / "a.kldb");
    c.spoil(options);
    EXPECT_EQ(ErrorOf([&] { CreateCompany(options); }), c.error);
    EXPECT_TRUE(folder.Names().empty()) << c.error;
  }
}

TEST(CreateCompany, PlacesThatCannotHoldACompanyAreNamed) {
  const Folder folder;
  std::ofstream(folder / "file") << "text";
  const std::pair<std::filesystem::path, std::string> cases[] = {
      {folder.path(), folder.path().string() + ": is a directory"},
      {folder / "none" / "a.kldb", (folder / "none").string() + ": no such directory"},
      {folder / "file" / "a.kldb", (folder / "file").string() + ": no such directory"},
  };
  for (const auto& [file, error] : cases)
    EXPECT_EQ(ErrorOf([&, &f = file] { CreateCompany(Options(f)); }), error);
}

TEST(CreateCompany, TheSettingsNameTheCompanyAndItsUser) {
  const Folder folder;
  auto options = Options(folder / "a.kldb");
  options.settingsFile = folder / "settings.ini";
  CreateCompany(options);
  SettingsFile settings(*options.settingsFile);
  EXPECT_EQ(clsGenCmn::FnStrEncryptWord(settings.Get("Settings", "DefLnk")),
            "Provider=SQLite;Data Source=" + options.file.string() + ";");
  EXPECT_EQ(settings.Get("Settings", "USER"), "ADMIN");
  EXPECT_EQ(settings.Get("Settings", "DBType"), "SQL");
}

TEST(CreateCompany, ALocalStoreThatIsThereStays) {
  const Folder folder;
  CreateCompany(Options(folder / "a.kldb"));
  EXPECT_EQ(Ask(folder / "klgen.MDB", "SELECT group_concat(ASSYEAR) FROM ITSETTING"),
            "2024,2025,2026,2027,2028");
  SqliteDatabase(folder / "klgen.MDB", SqliteDatabase::Mode::Existing)
      .RunScript("INSERT INTO ITSETTING VALUES (2029)");
  CreateCompany(Options(folder / "b.kldb"));
  EXPECT_EQ(Ask(folder / "klgen.MDB", "SELECT MAX(ASSYEAR) FROM ITSETTING"), "2029");
}

TEST(CreateCompany, VariantsGoTogetherAndChangeWhatTheyName) {
  const struct {
    const char *question, *plain, *changed;
  } cases[] = {
      {"SELECT TDSMAR2FEB || EMPREFNOYN || CLASSSECURITYN || ROUNDTYPE FROM MAS_OPTSET", "0001", "1115"},
      {"SELECT ADVMGALYN || AUDITTRAILYN || EMPLOCKYN FROM MAS_OPTSETFEATURE", "111", "000"},
      {"SELECT COUNT(*) FROM sqlite_master WHERE name = 'HVN_ATTENDANCE'", "1", "0"},
      {"SELECT CALCSTARTDATE || ' ' || CALCENDDATE FROM MAS_MONTHYEAR WHERE MONTHYEAR = 24315",
       "2026-03-01 2026-03-31", "2026-02-26 2026-03-25"},
  };
  const Folder folder;
  auto options = Options(folder / "plain.kldb");
  CreateCompany(options);
  options.sample.variants = {"mar2feb", "refno",  "classsec", "noadv",   "noaudit",
                             "nolock",  "round5", "nohvn",    "midmonth"};
  options.file = folder / "changed.kldb";
  CreateCompany(options);
  for (const auto& c : cases) {
    EXPECT_EQ(Ask(folder / "plain.kldb", c.question), c.plain) << c.question;
    EXPECT_EQ(Ask(folder / "changed.kldb", c.question), c.changed) << c.question;
  }
}

}  // namespace
}  // namespace ktl
