#include "support/frame_fixture.h"

#include "company/schema_texts.h"
#include "database/drivers/sqlite_file.h"
#include "start/connect.h"

namespace ktl {

void FrameFixture::Connect() { OpenConnection(session, company.ConnectionString()); }

void FrameFixture::Fill(const std::string& table, const std::string& columnsAndRows) {
  Sql("DELETE FROM " + table);
  Sql("INSERT INTO " + table + " " + columnsAndRows);
}

void FrameFixture::DropColumn(const std::string& table, const std::string& column) {
  company.Alter("ALTER TABLE " + table + " DROP COLUMN " + column);
}

void FrameFixture::MakeLocalStore(const std::vector<int>& assessmentYears) {
  const std::string file = Folder() + "/klgen.MDB";
  for (const char* ending : {"", "-wal", "-shm"}) std::filesystem::remove(file + ending);
  std::string rows = "DELETE FROM ITSETTING;";
  for (const int year : assessmentYears)
    rows += "INSERT INTO ITSETTING VALUES (" + std::to_string(year) + ");";
  CreateSqliteFile(file, {kLocalText, rows.c_str()});
}

}  // namespace ktl
