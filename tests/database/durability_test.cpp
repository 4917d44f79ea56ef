#include <gtest/gtest.h>

#include "support/company_fixture.h"
#include "support/power_cut.h"

namespace ktl::test {
namespace {

class Durability : public testing::Test {
 protected:
  TestCompany company;
  PowerCut machine{company.File()};
};

TEST_F(Durability, WhatWasCommittedIsThereOnceItWasMadeDurable) {
  company.Employee(17);
  company.Employee(18);
  EXPECT_EQ(machine.EmployeesLeft(), 0);
  company.Cn().MakeDurable();
  EXPECT_EQ(machine.EmployeesLeft(), 2);
  {
    Transaction open(company.Cn());
    company.Employee(19);
    company.Cn().MakeDurable();
    EXPECT_EQ(machine.EmployeesLeft(), 2);
    open.Commit();
  }
  company.Cn().MakeDurable();
  EXPECT_EQ(machine.EmployeesLeft(), 3);
}

TEST_F(Durability, OneFlushAnEventAndNoneForNothing) {
  company.Employee(17);
  company.Cn().MakeDurable();
  for (int employee = 20; employee < 60; ++employee) company.Employee(employee);
  const int before = PowerCut::Flushes();
  company.Cn().MakeDurable();
  company.Cn().MakeDurable();
  EXPECT_EQ(PowerCut::Flushes(), before + 1);
}

TEST_F(Durability, LeavingWhileOthersStayFlushesToo) {
  Connection leaving;
  leaving.Open(company.ConnectionString());
  leaving.Execute("INSERT INTO MAS_EMPLOYEE (EMPID) VALUES (17)");
  EXPECT_EQ(machine.EmployeesLeft(), 0);
  leaving.Close();
  EXPECT_EQ(machine.EmployeesLeft(), 1);
}

}  // namespace
}  // namespace ktl::test
