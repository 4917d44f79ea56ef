#include "frame/frame_fixture.h"

#include <sqlite3.h>

#include <memory>

#include "company/schema_texts.h"
#include "database/recordset.h"
#include "frame/connect.h"

namespace ktl {

namespace {

namespace fs = std::filesystem;

void RunScript(const fs::path& file, const std::string& script) {
  sqlite3* opened = nullptr;
  sqlite3_open(file.c_str(), &opened);
  const std::unique_ptr<sqlite3, decltype(&sqlite3_close)> database(opened, &sqlite3_close);
  if (sqlite3_exec(opened, script.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) {
    throw std::runtime_error(file.string() + ": " + sqlite3_errmsg(opened));
  }
}

fs::path TemporaryFolder() {
  std::string pattern = (fs::temp_directory_path() / "ktl-frame-XXXXXX").string();
  return ::mkdtemp(pattern.data());
}

}  // namespace

FrameFixture::FrameFixture() : folder_(TemporaryFolder()) {
  RawSql(kSchemaText);
  RawSql(kSeedText);
  machine.folder.path = Folder();
  company_.SetClient({machine.environment.hostName, "ADMIN", [this] { return machine.clock.now; }});
  company_.Open(ConnectionString());
}

FrameFixture::~FrameFixture() {
  company_.Close();
  session.Cn.Close();
  fs::remove_all(folder_);
}

std::string FrameFixture::ConnectionString() const {
  return "Provider=SQLite;Data Source=" + (folder_ / "company.kldb").string() + ";";
}

void FrameFixture::Connect() { OpenConnection(session, ConnectionString()); }

void FrameFixture::Sql(const std::string& text) { company_.Execute(text); }

void FrameFixture::RawSql(const std::string& text) { RunScript(folder_ / "company.kldb", text); }

double FrameFixture::Number(const std::string& sql) {
  const Recordset row(company_, sql);
  return row[0].NumberOr0();
}

void FrameFixture::MakeLocalStore(const std::vector<int>& assessmentYears) {
  const fs::path file = folder_ / "klgen.MDB";
  fs::remove(file);
  RunScript(file, kLocalText);
  RunScript(file, "DELETE FROM ITSETTING");
  for (const int year : assessmentYears) {
    RunScript(file, "INSERT INTO ITSETTING (ASSYEAR) VALUES (" + std::to_string(year) + ")");
  }
}

}  // namespace ktl
