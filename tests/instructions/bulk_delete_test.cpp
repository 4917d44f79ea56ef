#include <fmt/format.h>

#include <random>

#include "database/drivers/sqlite_file.h"
#include "entry_fixture.h"
#include "instructions/frmAdvLoanBulkDelete.h"

namespace ktl {
namespace {

const std::string kAsk = "Do you want to delete selected Loan";

// Loans of two months of 600 and a receipt: 1 of Asha from Sep/2026, and of Binod one that is recovered.
class BulkDelete : public EntryScreen {
 protected:
  using Bulk = frmAdvLoanBulkDelete;

  BulkDelete() {
    AddLoan(17, 1, 24321, "15/Sep/2026");
    AddLoan(18, 1, 24310, "10/Oct/2025");
    company.Salary(18, 24310, 5000, 4000);
    Run("UPDATE INS_EMIDETAIL SET EMIRECVYN = 1 WHERE EMPID = 18 AND COUNTER = 2");
    session.options.EMPREFNOYN = true;
  }
  ~BulkDelete() override { bulk.reset(); }

  void AddLoan(int employee, int serial, int month, const char* date) {
    company.Loan(employee, serial, "Car Loan", 1200, date);
    for (int each = 0; each < 2; ++each) company.Emi(employee, 2, serial, each + 1, month + each, 600);
    company.Row("INS_HLOAN").With("EMPID", employee).With("SERIALNO", serial).With("SITYPE", 2);
    company.Row("INS_HLOAN_VAL")
        .With("EMPID", employee)
        .With("SERIALNO", serial)
        .With("SITYPE", 2)
        .With("FINYEAR", 2026);
  }
  Bulk& OpenBulk(InstructionType type = Loan) {
    bulk = std::make_unique<Bulk>(session, type);
    RunAndGrantFocus(*bulk, [this] { bulk->Load(); });
    return *bulk;
  }
  Bulk& Listed(InstructionType type = Loan) {
    OpenBulk(type);
    EXPECT_EQ(Press(bulk->cmdLoad), Texts{});
    return *bulk;
  }
  // "K17/Car Loan/15/09/2026/1200.00/2/Oct/2026/1200.00"
  std::string Line(std::size_t row) {
    std::string line;
    for (const auto column : {Bulk::kRefNo, Bulk::kName, Bulk::kDate, Bulk::kAmount, Bulk::kCompleted,
                              Bulk::kLastMonth, Bulk::kBalance})
      line += (line.empty() ? "" : "/") + bulk->fpgBulkDelete.Text(row, column);
    return line;
  }
  std::string Left() {
    std::string left;
    for (const char* table : {"INS_ADVLOAN", "INS_EMIDETAIL", "INS_RECEIPTS", "INS_HLOAN", "INS_HLOAN_VAL"})
      left += company.One(std::string("SELECT COUNT(*) FROM ") + table).ToText() + " ";
    return left;
  }

  // A text a row; rows of one employee and day, whose order nothing tells, in the order of their texts.
  static Texts AsListed(const ResultSet& list) {
    std::vector<std::pair<std::string, std::string>> rows;
    for (const ResultRow& row : list.rows) {
      std::string text;
      for (const Value& value : row) text += (value.IsNull() ? "NULL" : value.ToText()) + "|";
      const std::string day = row[0].ToText() + row[4].ToText();
      rows.emplace_back(rows.empty() || !rows.back().first.ends_with(day)
                            ? fmt::format("{:04} {}", rows.size(), day)
                            : rows.back().first,
                        text);
    }
    std::ranges::sort(rows);
    Texts texts{fmt::format("{}", fmt::join(list.columns, "|"))};
    for (const auto& row : rows) texts.push_back(row.second);
    return texts;
  }

  std::unique_ptr<Bulk> bulk;
};

TEST_F(BulkDelete, ListsWhatIsLeftToRecover) {
  company.Receipt(17, 2, 1, 1, "20/Sep/2026", 250);
  Run("UPDATE MAS_EMPLOYEE SET lockyn = 1 WHERE EMPID = 18");
  company.Advance(17, 1, "Salary Advance", 500);
  Listed();
  EXPECT_EQ(bulk->caption, "Loan Bulk Delete");
  ASSERT_EQ(bulk->fpgBulkDelete.rows.size(), 2U);
  EXPECT_EQ(Line(0), "K17/Car Loan/15/09/2026/1200.00/2/Oct/2026/950.00");
  EXPECT_EQ(Line(1), "K18/Car Loan/10/10/2025/1200.00/2/Nov/2025/0.00");  // 600 by the salary, 600 by hand
  EXPECT_EQ(bulk->lblListedCnt.caption, "Listed: 2");
  Click(bulk->mnuSelectAll);
  EXPECT_EQ(bulk->lblSelectedCnt.caption, "Selected: 1");
  EXPECT_TRUE(bulk->chkSelectAll.Value());
  EXPECT_FALSE(bulk->fpgBulkDelete.IsTicked(1, Bulk::kTick));
  EXPECT_THROW(TickCell(bulk->fpgBulkDelete, 1, Bulk::kTick, true), PersonError);
  Tick(bulk->chkSelectAll, false);
  EXPECT_EQ(bulk->lblSelectedCnt.caption, "Selected: 0");
  Run("UPDATE MAS_EMPLOYEE SET lockyn = 0");
  Click(bulk->cmdLoad);
  EXPECT_EQ(bulk->fpgBulkDelete.At(0, Bulk::kName).backColour, kWhite);
  EXPECT_EQ(bulk->fpgBulkDelete.At(1, Bulk::kName).backColour, bulk->lblLegend.backColour);
}

TEST_F(BulkDelete, FiltersByMonthEmployeeAndText) {
  const struct {
    const char *from, *to, *name, *search;
    const char* listed;
  } cases[] = {{"Sep/2026", "", "", "", "K17"},
               {"", "Oct/2025", "", "", "K18"},
               {"Nov/2025", "Aug/2026", "", "", ""},
               {"", "", "Binod Sen", "", "K18"},
               {"", "", "", "sha", "K17"},
               {"", "", "", "K1", "K17 K18"},
               {"", "", "", "%", ""},
               {"", "", "", "_", ""},
               {"", "", "", "17", "K17"},
               {"", "", "Asha Rao", "Binod", ""},
               {"", "", "", "'", ""}};
  for (const auto& each : cases) {
    OpenBulk();
    Type(bulk->cmbFromMonth, each.from);
    Type(bulk->cmbToMonth, each.to);
    Type(bulk->employee.cmbEmpName, each.name);
    Type(bulk->search.txtSearch, each.search);
    EXPECT_EQ(Press(bulk->cmdLoad), Texts{});
    std::string listed;
    for (const GridRow& row : bulk->fpgBulkDelete.rows)
      listed += (listed.empty() ? "" : " ") + row.cells[Bulk::kRefNo].text;
    EXPECT_EQ(listed, each.listed) << each.from << each.to << each.name << each.search;
  }
  Type(bulk->cmbFromMonth, "Oct/2026");
  Type(bulk->cmbToMonth, "Sep/2026");
  EXPECT_EQ(Press(bulk->cmdLoad), Texts{"'From Month' should be earlier than 'To Month'"});
  Type(bulk->cmbFromMonth, "nonsense");
  EXPECT_EQ(Press(bulk->cmdLoad), Texts{"Select 'From Month'."});
  Type(bulk->cmbFromMonth, "");
  Type(bulk->employee.cmbEmpName, "Nobody");
  EXPECT_EQ(Press(bulk->cmdLoad), Texts{"Select employee."});
  // What is listed still goes by the filter that listed it.
  Listed();
  Click(bulk->mnuSelectAll);
  Pick(bulk->cmbFromMonth, "Oct/2026");
  Pick(bulk->cmbToMonth, "Sep/2026");
  EXPECT_EQ(Press(bulk->cmdLoad).size(), 1U);
  EXPECT_EQ(Press(bulk->cmdDelete, {Answer::Yes}), (Texts{kAsk, "Deleted"}));
}

// Months edited out of their order, salaries twice in a month, amounts and marks missing, in a company that
// an earlier release has made.
TEST_F(BulkDelete, ListsTheSameWhereTheEmbeddedStoreIsAskedInItsOwnWords) {
  KTL_NEEDS_FILE();
  const std::string index = "SELECT sql FROM sqlite_master WHERE name = 'IX_EMI_KEYMONTH'";
  SqliteDatabase store = OpenSqliteFile(company.File(), FileKind::Company, 1);
  const std::string wide = store.Text(index);
  store.RunScript(
      "DROP VIEW KTL_EMIBYHAND; DROP INDEX IX_EMI_BYHAND; DROP INDEX IX_EMI_KEYMONTH;"
      "CREATE INDEX IX_EMI_KEYMONTH ON INS_EMIDETAIL (EMPID, SITYPE, SERIALNO, MONTHYEAR, MDFPRNAMT)");
  Listed();
  EXPECT_EQ(store.Text(index), wide);
  std::mt19937 random(11);
  const auto up = [&random](int highest) { return static_cast<int>(random() % unsigned(highest + 1)); };
  for (int serial = 10; serial < 60; ++serial) {
    const int employee = 17 + up(1), type = 1 + up(1);
    Run(fmt::format(
        "INSERT INTO INS_ADVLOAN (EMPID, SITYPE, SERIALNO, SINAME, SIDATE, ACTAMT, INTAMT) VALUES "
        "({}, {}, {}, '{} Loan', '0{}/Oct/2025', {}, {})",
        employee, type, serial, up(2), 1 + up(2), up(2) == 0 ? "NULL" : "900", up(1) * 50));
    for (int each = 1, months = up(6); each <= months; ++each)
      Run(
          fmt::format("INSERT INTO INS_EMIDETAIL (EMPID, SITYPE, SERIALNO, COUNTER, MONTHYEAR, MDFYAMT, "
                      "EMIRECVYN) VALUES ({}, {}, {}, {}, {}, {}, {})",
                      employee, type, serial, each, 24285 + up(60), up(5) == 0 ? "NULL" : "100.25",
                      up(3) == 0   ? "1"
                      : up(3) == 0 ? "NULL"
                                   : "0"));
    if (up(2) == 0) company.Receipt(employee, type, serial, 1, "20/Oct/2025", 25);
    if (up(1) == 0) company.Salary(employee, 24285 + up(50), 5000, up(2) == 0 ? 5000 : 4000);
  }
  for (const BulkFilter& filter : {BulkFilter{.type = Loan}, BulkFilter{.type = InstructionType::Advance},
                                   BulkFilter{.type = Loan, .fromMonth = 24310, .toMonth = 24310},
                                   BulkFilter{.type = Loan, .toMonth = 24320}}) {
    for (const char* who : {"", " AND EMP.EMPID=18", " AND (EMPNAME LIKE '%rao%')"}) {
      session.options.EMPREFNOYN = !session.options.EMPREFNOYN;
      const BulkListStatement list = WriteBulkList(session, filter, Statement(who));
      const Texts twin = AsListed(company.Cn().Query(list)), said = AsListed(company.Cn().Query(list.said));
      EXPECT_EQ(twin, said) << list.said.text();
      EXPECT_GT(twin.size(), 2U);
    }
  }
}

TEST_F(BulkDelete, TakesTheTickedWithAllThatHangsOnThem) {
  company.Receipt(18, 2, 1, 1, "20/Oct/2025", 5);
  Run("UPDATE HVN_ATTENDANCE SET EDITMODEYN = 0");
  Listed();
  EXPECT_EQ(Press(bulk->cmdDelete), Texts{"Select Employee"});
  TickCell(bulk->fpgBulkDelete, 1, Bulk::kTick, true);
  EXPECT_EQ(Press(bulk->cmdDelete, {Answer::No}), Texts{kAsk});
  EXPECT_EQ(Left(), "2 4 1 2 2 ");
  EXPECT_EQ(Press(bulk->cmdDelete, {Answer::Yes}), (Texts{kAsk, "Deleted"}));
  EXPECT_EQ(Left(), "1 2 0 1 1 ");
  EXPECT_EQ(Rows("SELECT EMPID, EDITMODEYN FROM SLC_SALARYCALC_E"), "18|1");
  EXPECT_EQ(
      LastAudit(),
      "19|18|Standing Instructions(Bulk Delete) - Loan Deleted|Loan Deleted::SI Type = Loan:SI Name = Car "
      "Loan:Date = 10/10/2025:Amount = 1200");
  EXPECT_EQ(bulk->fpgBulkDelete.rows.size(), 1U);
  Run("UPDATE MAS_OPTSETFEATURE SET AUDITTRAILYN = 0");
  session.auditOn.reset();
  Click(bulk->mnuSelectAll);
  Press(bulk->cmdDelete, {Answer::Yes});
  EXPECT_EQ(Rows("SELECT COUNT(*) FROM SEC_AUDITTRAIL"), "1");
}

TEST_F(BulkDelete, LeavesEverythingOfTheOthers) {
  std::mt19937 random(5);
  for (int serial = 2; serial < 30; ++serial) AddLoan(17 + serial % 2, serial, 24310 + serial, "01/Jan/2026");
  Listed();
  std::set<std::string> left;
  for (std::size_t row = 0; row < bulk->fpgBulkDelete.rows.size(); ++row) {
    const bool ticked = random() % 2 == 0;
    TickCell(bulk->fpgBulkDelete, row, Bulk::kTick, ticked);
    if (!ticked)
      left.insert(bulk->fpgBulkDelete.Text(row, Bulk::kEmpId) + "|" +
                  bulk->fpgBulkDelete.Text(row, Bulk::kSerial));
  }
  Press(bulk->cmdDelete, {Answer::Yes});
  for (const char* table : {"INS_ADVLOAN", "INS_EMIDETAIL", "INS_HLOAN", "INS_HLOAN_VAL"}) {
    std::set<std::string> stored;
    Recordset rs(company.Cn(), std::string("SELECT EMPID, SERIALNO FROM ") + table);
    for (; !rs.Eof(); rs.MoveNext()) stored.insert(rs[0].ToText() + "|" + rs[1].ToText());
    EXPECT_EQ(stored, left) << table;
  }
}

TEST_F(BulkDelete, IsStoppedByAnyLockedMonthFromThere) {
  company.Lock(24300);
  Listed();
  Click(bulk->mnuSelectAll);
  EXPECT_EQ(Press(bulk->cmdDelete), Texts{"One or more Month/Year is locked, so cannot Delete."});
  EXPECT_EQ(bulk->Focus(), &bulk->cmbFromMonth);
  Pick(bulk->cmbFromMonth, "Apr/2025");
  Click(bulk->cmdLoad);
  Click(bulk->mnuSelectAll);
  EXPECT_EQ(Press(bulk->cmdDelete, {Answer::Yes}), (Texts{kAsk, "Deleted"}));
  EXPECT_EQ(Left(), "0 0 0 0 0 ");
}

TEST_F(BulkDelete, KeepsTheRowsBeforeAFailureAndNothingOfTheOneThatFails) {
  Listed();
  Click(bulk->mnuSelectAll);
  Run("UPDATE INS_EMIDETAIL SET MDFYAMT = 1 WHERE EMPID = 18 AND COUNTER = 2");  // another workstation
  const Texts said = Press(bulk->cmdDelete, {Answer::Yes});
  ASSERT_EQ(said.size(), 2U);
  EXPECT_EQ(said[1].substr(0, 21), "Row cannot be located");
  EXPECT_EQ(Left(), "1 2 0 1 1 ");
  EXPECT_EQ(Line(0), "K18/Car Loan/10/10/2025/1200.00/2/Nov/2025/599.00");
  company.FailOn("DELETE", "INS_ADVLOAN", "OLD.EMPID = 18");
  AddLoan(17, 2, 24321, "15/Sep/2026");
  Click(bulk->cmdLoad);
  Click(bulk->mnuSelectAll);
  EXPECT_EQ(Press(bulk->cmdDelete, {Answer::Yes}).size(), 2U);
  EXPECT_EQ(Left(), "1 2 0 1 1 ");
  EXPECT_EQ(bulk->fpgBulkDelete.rows.size(), 1U);
  EXPECT_EQ(Rows("SELECT EDITMODEYN FROM SLC_SALARYCALC_E"), "0");
}

TEST_F(BulkDelete, HeedsClassSecurity) {
  Run("UPDATE MAS_OPTSET SET CLASSSECURITYN = 1");
  session.hostName = "PC1";
  Run("INSERT INTO SEC_CLASSEMP (USERNAME, EMPID) VALUES ('RAVI', 18)");
  Listed();
  EXPECT_EQ(bulk->employee.cmbEmpName.Rows().size(), 1U);
  EXPECT_EQ(bulk->fpgBulkDelete.rows.size(), 1U);
}

}  // namespace
}  // namespace ktl
