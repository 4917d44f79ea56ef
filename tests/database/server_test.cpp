#include <gtest/gtest.h>

#include "database/connection.h"
#include "database/recordset.h"
#include "failure.h"
#include "support/private_server.h"

namespace ktl::test {
namespace {

class Server : public testing::Test {
 protected:
  void SetUp() override {
    KTL_NEEDS_SERVER();
    database_.emplace();
    database_->Run(
        "CREATE TABLE MAS_EMPLOYEE (EMPID INT NOT NULL PRIMARY KEY, EMPNAME VARCHAR(255), BASIC DOUBLE,"
        " DOJ DATETIME, REMARKS TEXT)");
    cn_.SetClient({"PC1", "ADMIN", {}});
    cn_.SetConnectionTimeout(5);
    cn_.SetCommandTimeout(5);
    cn_.Open(database_->ConnectionString());
  }

  std::optional<ServerDatabase> database_;
  Connection cn_;
};

std::string Text(const ResultSet& result) {
  std::string text;
  for (const auto& row : result.rows) {
    if (!text.empty()) text += '\n';
    for (const auto& value : row)
      text += (&value == &row.front() ? "" : "|") + (value.IsNull() ? "NULL" : value.ToText());
  }
  return text;
}

TEST_F(Server, ValuesComeBackAsTheyWere) {
  const std::string longText(20000, 'x');
  Recordset rows(cn_, "Select * from mas_employee where empid = 0", OpenMode::AddOnly);
  rows.AddNew();
  rows.Set("EMPID", 17);
  rows.Set("empname", "Zoë Ōtake {d '?'} 'x\\");
  rows.Set("BASIC", 1234.565);
  rows.Set("DOJ", "26/Apr/2010");
  rows.Set("REMARKS", longText);
  rows.Update();
  cn_.Execute("INSERT INTO MAS_EMPLOYEE (EMPID, DOJ) VALUES (18, '01/May/2010 09:30:00')");
  EXPECT_EQ(Text(cn_.Query("SELECT * FROM MAS_EMPLOYEE ORDER BY EMPID")),
            "17|Zoë Ōtake {d '?'} 'x\\|1234.565|26/04/2010|" + longText +
                "\n18|NULL|NULL|01/05/2010 09:30:00|NULL");
  for (int i = 0; i < 3; ++i)
    EXPECT_EQ(cn_.FirstValue("SELECT EMPNAME FROM MAS_EMPLOYEE WHERE EMPNAME = 'ZOË ōtake {d ''?''} ''X\\ '"),
              Value("Zoë Ōtake {d '?'} 'x\\"));
}

}  // namespace
}  // namespace ktl::test
