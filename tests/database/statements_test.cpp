#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "company/schema_texts.h"
#include "database/drivers/sqlite_file.h"
#include "database/recordset.h"
#include "runtime/text.h"
#include "support/company_fixture.h"

namespace ktl::test {
namespace {

struct Said {
  std::string id;
  std::string mode;  // val, exists, rs: read; upd: an updatable recordset; exec, batch, proc: run
  std::string sql;
};

std::vector<Said> EverythingSaid() {
  std::vector<Said> all;
  std::ifstream file(KTL_TEST_DATA "/statements.tsv");
  for (std::string line; std::getline(file, line);) {
    const auto parts = Split(line, "\t");
    all.push_back({parts.at(0), parts.at(1), parts.at(2)});
  }
  return all;
}

void Say(Connection& cn, const Said& said) {
  if (said.mode == "val") {
    cn.FirstValue(said.sql);
  } else if (said.mode == "exists") {
    cn.HasRows(said.sql);
  } else if (said.mode == "rs") {
    Recordset(cn, said.sql);
  } else if (said.mode == "upd") {
    Recordset(cn, said.sql, OpenMode::Update);
  } else {
    cn.Execute(said.sql);
  }
}

// A company in which every statement finds its objects and a few rows.
void Furnish(TestCompany& company) {
  company.Employee(17).Named("Asha Rao").Taxed();
  company.Name(2, "Car Loan").Reducing(9).SeparateInterest().Benefit();
  company.Name(3, "LIC");
  company.Institution(5, "Nilgiri Bank", 2);
  company.Months(24121, 24135);
  company.Loan(17, 3, "Car Loan", 12000);
  for (int i = 0; i < 12; ++i)
    company.Emi(17, 2, 3, i + 1, 24121 + i, 1100).With("MDFPRNAMT", 1000).With("MDFINTAMT", 100).With("INSTID", 5);
  company.Receipt(17, 2, 3, 1, "26/Apr/2010", 500);
  company.Salary(17, 24121, 30000, 28900, 1100);
  company.Execute("dbo.ClassSecurity 0,0,0");
}

// Every text on its own: what one leaves behind must not help or hinder another.
class RolledBack {
 public:
  explicit RolledBack(Connection& cn) : cn_(cn) { cn_.BeginTrans(); }
  ~RolledBack() { cn_.RollbackTrans(); }

 private:
  Connection& cn_;
};

TEST(Statements, EveryOneRuns) {
  // The filter table and view that every start makes, for those that read them.
  const std::map<std::string, std::vector<std::string>> before{{"session-4", {"session-2"}},
                                                              {"allotment-3", {"session-2", "session-4"}}};
  TestCompany company;
  Furnish(company);
  const auto store = company.File().string() + "-local";
  CreateSqliteFile(store, {kLocalText});
  Connection local;
  local.Open("Provider=Microsoft.Jet.OLEDB.4.0;Data Source= " + store + ";Jet OLEDB:Database Password=MOLE;");
  const auto all = EverythingSaid();
  EXPECT_EQ(all.size(), 383u);
  for (const auto& said : all) {
    RolledBack undo(company.Cn());
    try {
      if (const auto first = before.find(said.id); first != before.end())
        for (const auto& id : first->second) Say(company.Cn(), *std::ranges::find(all, id, &Said::id));
      Say(said.sql.ends_with("ITSETTING") ? local : company.Cn(), said);
    } catch (const RuntimeError& error) {
      ADD_FAILURE() << said.id << ": " << error.description() << "\n" << said.sql;
    }
  }
  std::filesystem::remove(store);
}

}  // namespace
}  // namespace ktl::test
