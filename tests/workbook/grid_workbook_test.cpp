#include "workbook/grid_workbook.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "frame/session.h"
#include "screen/screen.h"
#include "start/connect.h"
#include "support/company_fixture.h"
#include "support/fake_machine.h"
#include "support/scripted_desk.h"
#include "workbook/export_menu.h"

namespace ktl {
namespace {

TEST(Workbook, ColumnLettersKeepTheirSlip) {
  const std::pair<int, const char*> columns[] = {{1, "A"},   {26, "Z"},  {27, "AA"},
                                                 {51, "AY"}, {52, "BZ"}, {53, "BA"}};
  for (const auto& [column, letters] : columns) EXPECT_EQ(ExlFnStrGetCol(column), letters) << column;
  EXPECT_EQ(FnStrGetExcelCell(28, 7), "AB7");
}

std::string PartOf(const std::filesystem::path& book, const std::string& part) {
  const std::string out = book.string() + ".part";
  const std::string command = "unzip -p '" + book.string() + "' " + part + " >'" + out + "'";
  if (std::system(command.c_str()) != 0) return "unreadable";
  std::ifstream in(out);
  return {std::istreambuf_iterator<char>(in), {}};
}

// What stands behind the opening tags up to the next one, in the order of the file.
std::string Values(const std::string& xml, const std::string& tag) {
  std::string values;
  for (std::size_t at = xml.find(tag); at != std::string::npos; at = xml.find(tag, at + 1)) {
    const std::size_t from = xml.find('>', at) + 1;
    values += xml.substr(from, xml.find('<', from) - from) + "|";
  }
  return values;
}

TEST(Workbook, HoldsWhatTheGridShowsUnderTheCompanysName) {
  test::TestCompany company;
  FakeMachine machine;
  ScriptedDesk desk;
  Session session{machine.machine(), desk};
  OpenConnection(session, company.ConnectionString());
  company.Execute("UPDATE MAS_COMPANY SET CMPNAME = 'Neem & Sons', ADDRESS = '4 Hill Road'");
  machine.folder.path = test::UnusedPath("-folder");
  struct Child : Screen {
    using Screen::Screen;
    ktl::Subject Subject() const override { return {"Meera:\n Kulkarni (K9)", "Car Loan 2", "10.00"}; }
  } screen("toy");
  Grid grid(screen, "fpgToy");
  grid.columns = {{"Month"},
                  {"Amount", CellType::Number},
                  {"Hidden", CellType::Text, 90, true},
                  {"Done", CellType::Tick},
                  {"", CellType::Tick}};
  for (const char* amount : {"3333.50", "7"}) {
    const std::size_t row = grid.AddRow();
    grid.At(row, 0).text = "Apr/2026";
    grid.At(row, 1).text = amount;
    grid.At(row, 3).text = row == 0 ? "1" : "0";
  }
  grid.rows[grid.AddRow()].hidden = true;
  const std::string file = ExportGridToWorkbook(session, grid, "EMI Details", "Meera (K9)");
  const std::string sheet = PartOf(file, "xl/worksheets/sheet1.xml");
  EXPECT_EQ(Values(sheet, "<t>"),
            "Neem &amp; Sons : Meera (K9)|4 Hill Road|Month|Amount|Done|Apr/2026|Yes|Apr/2026|No|");
  EXPECT_EQ(Values(sheet, "<v>"), "3333.5|7|");
  const std::filesystem::path first = file, second = ExportGridToWorkbook(session, grid, "EMI Details");
  EXPECT_EQ(first.filename(), "EMI Details - Meera Kulkarni (K9) - Car Loan 2.xlsx");
  EXPECT_EQ(second.filename(), "EMI Details - Meera Kulkarni (K9) - Car Loan 2 (2).xlsx");
  screen.caption = "A caption that is too long for a [sheet] - KestrelLedger";
  OfferExports(session, screen);
  grid.onExport();
  EXPECT_EQ(desk.LastBox().text,
            "The list has been written to " +
                (first.parent_path() / "A caption that is too long for a [sheet]").string() +
                " - Meera Kulkarni (K9) - Car Loan 2.xlsx");
  // What stands in the way can be put right while the question is asked.
  const std::filesystem::path third = first.parent_path() / "Other - Meera Kulkarni (K9) - Car Loan 2.xlsx";
  const std::filesystem::path inTheWay = third.string() + ".part";
  std::filesystem::create_directory(inTheWay);
  EXPECT_EQ(ExportGridToWorkbook(session, grid, "Other"), "");
  EXPECT_EQ(desk.LastBox().text, third.string() + " could not be written: Is a directory. Try again?");
  desk.WillAnswer({Answer::Yes});
  desk.whileItStands = [&](const MessageBox&) { std::filesystem::remove(inTheWay); };
  EXPECT_EQ(ExportGridToWorkbook(session, grid, "Other"), third);
  // Rows that the disk does not take: the package alone would fit.
  for (int row = 0; row < 2000; ++row) grid.At(grid.AddRow(), 0).text = "Apr/2026";
  std::signal(SIGXFSZ, SIG_IGN);
  rlimit before{};
  getrlimit(RLIMIT_FSIZE, &before);
  const rlimit small{30000, before.rlim_max};
  setrlimit(RLIMIT_FSIZE, &small);
  EXPECT_EQ(ExportGridToWorkbook(session, grid, "Cut"), "");
  setrlimit(RLIMIT_FSIZE, &before);
  EXPECT_NE(desk.LastBox().text.find("could not be written: the disk may be full. Try"), std::string::npos);
  std::filesystem::remove_all(machine.folder.path);
  machine.folder.path = "/dev/null";
  EXPECT_EQ(ExportGridToWorkbook(session, grid, "EMI Details"), "");
  EXPECT_EQ(desk.LastBox().title, "Check File Path");
}

}  // namespace
}  // namespace ktl
