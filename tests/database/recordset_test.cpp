#include "database/recordset.h"

#include <gtest/gtest.h>

#include "support/company_fixture.h"

namespace ktl::test {
namespace {

TEST(Recordset, AddsChangesAndDeletesRows) {
  TestCompany company;
  company.Employee(17).Named("Asha Rao").Joined("01/Apr/2010");
  Recordset rows(company.Cn(), "Select * From INS_ADVLOAN Where EMPID = 17 And SERIALNO = 3 And SITYPE = 2",
                 OpenMode::Update);
  EXPECT_TRUE(rows.Eof() && rows.Bof());
  rows.AddNew();
  rows.Set("EMPID", 17);
  rows.Set("serialno", 3);
  rows.Set("SITYPE", 2);
  rows.Set("SINAME", "Car Loan");
  rows.Set("SIDATE", "05/Jun/2024");
  rows.Set("ACTAMT", "1,20,000.50");
  rows.Update();
  EXPECT_EQ(company.Rows("SELECT SINAME, SIDATE, ACTAMT, INTAMT FROM INS_ADVLOAN"),
            "Car Loan|05/06/2024|120000.5|NULL");
  rows.Set("SERIALNO", 4);
  rows.Update();
  EXPECT_EQ(company.Rows("SELECT SERIALNO FROM INS_ADVLOAN"), "4");
  EXPECT_EQ(company.Execute("DELETE FROM INS_ADVLOAN WHERE EMPID = 17"), 1);
}

}  // namespace
}  // namespace ktl::test
