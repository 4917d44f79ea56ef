#include "frame/frame_fixture.h"

#include "company/schema_texts.h"
#include "database/drivers/sqlite_file.h"
#include "frame/connect.h"

namespace ktl {

namespace fs = std::filesystem;

FrameFixture::FrameFixture() {
  std::string pattern = (fs::temp_directory_path() / "ktl-frame-XXXXXX").string();
  folder_ = ::mkdtemp(pattern.data());
  machine.folder.path = Folder();
}

FrameFixture::~FrameFixture() { fs::remove_all(folder_); }

void FrameFixture::Connect() { OpenConnection(session, company.ConnectionString()); }

void FrameFixture::DropColumn(const std::string& table, const std::string& column) {
  OpenSqliteFile(company.File(), FileKind::Company, 1).Run("ALTER TABLE " + table + " DROP COLUMN " + column);
}

void FrameFixture::MakeLocalStore(const std::vector<int>& assessmentYears) {
  const std::string file = Folder() + "/klgen.MDB";
  for (const char* ending : {"", "-wal", "-shm"}) fs::remove(file + ending);
  std::string rows = "DELETE FROM ITSETTING;";
  for (const int year : assessmentYears)
    rows += "INSERT INTO ITSETTING VALUES (" + std::to_string(year) + ");";
  CreateSqliteFile(file, {kLocalText, rows.c_str()});
}

}  // namespace ktl
