#pragma once

#include "support/company_fixture.h"

namespace ktl::test {

// A company in which every statement finds its objects and a few rows; the amounts are round so that results
// can be worked out in the head: twelve months of 1000 principal and 10 interest, 500 paid back in April
// 2010, one salary.
inline void Furnish(TestCompany& company) {
  company.Employee(17).Named("Asha Rao").Taxed();
  company.Employee(18).Named("Bilal Khan").Taxed();
  company.Name(2, "Car Loan").Reducing(9).SeparateInterest().Benefit();
  company.Name(2, "House Loan");
  company.Name(3, "LIC");
  company.Institution(5, "Nilgiri Bank", 2);
  company.Months(24121, 24135);
  company.Loan(17, 3, "Car Loan", 12000, "15/Jan/2010");
  company.Loan(18, 1, "House Loan", 50000, "15/Jan/2010");
  for (int i = 0; i < 12; ++i)
    company.Emi(17, 2, 3, i + 1, 24121 + i, 1010)
        .With("MDFPRNAMT", 1000)
        .With("MDFINTAMT", 10)
        .With("INTAMT", 10)
        .With("INSTID", 5);
  company.Receipt(17, 2, 3, 1, "26/Apr/2010", 500);
  company.Salary(17, 24121, 20000, 9000, 1010);
  company.Execute(
      "INSERT INTO MAS_LOANINT (INTID, FINANCIALYEAR, INTEREST, LOANTYPE, LOANNAME) VALUES"
      " (1, 2010, 9, '', ''), (2, 2010, 12, 'Cars', '#$#bike loan#$#car loan#$#');"
      "INSERT INTO MAS_MONTHSALDATE (MONTHYEAR, CALCSTARTDATE, CALCENDDATE) VALUES"
      " (24124, '01/Apr/2010', '30/Apr/2010');"
      "INSERT INTO HVN_ATTENDANCE (EMPID, MONTHYEAR) VALUES (17, 24121), (18, 24121)");
  company.Execute("dbo.ClassSecurity 0,0,0");
}

// Attendance, leave and buttons, for the statements that read them.
inline void FurnishAttendance(TestCompany& company) {
  company.Execute(
      "INSERT INTO MAS_EMPLOYEEDET (EMPDETID, EMPID, EFFFROMDATE, ATTHEADID) VALUES"
      " (5, 17, '01/Apr/2010', 1);"
      "INSERT INTO MAS_ATTHEAD (ATTHEADID, ATTHEADNAME) VALUES (1, 'Monthly');"
      "INSERT INTO ATT_WKLYROT (EMPID, WEEKDATE) VALUES"
      " (17, '04/Apr/2010'), (17, '11/Apr/2010'), (17, '02/May/2010');"
      "INSERT INTO ATT_DETAIL (EMPID, LEVID, LEVDATE, FIRSTHALFYN, SECONDHALFYN) VALUES"
      " (17, 4, '30/Apr/2010', 1, 1), (17, 4, '15/Apr/2010', 1, NULL), (17, 4, '01/May/2010', 1, NULL);"
      "INSERT INTO LEV_DETAILS (EMPID, EMPDETID, LEVID, LEAVEDATE, FIRSTHALFYN, SECONDHALFYN) VALUES"
      " (17, 5, 4, '14/Apr/2010', 1, 0);"
      "INSERT INTO SEC_BUTDET (BUTID, FORMID, BUTNAME) VALUES (7, 52, '*Save[x] *'), (8, 52, 'Save[x] ')");
}

}  // namespace ktl::test
