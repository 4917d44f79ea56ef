#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "frame/session.h"
#include "support/company_fixture.h"
#include "support/fake_machine.h"
#include "support/scripted_desk.h"
#include "support/temporary_folder.h"

namespace ktl {

// An empty company, a folder, and a session of a fake machine that can be connected to the company.
class FrameFixture : public testing::Test {
 protected:
  FrameFixture() { machine.folder.path = Folder(); }

  std::string Folder() const { return folder.path().string(); }
  void Connect();  // the session, without the start-up
  void Sql(const std::string& text) { company.Execute(text); }
  // Fill("T", "(A, B) VALUES (1, 2)"): these rows alone.
  void Fill(const std::string& table, const std::string& columnsAndRows);
  double Number(const std::string& sql) { return company.Cn().FirstValue(sql)->NumberOr0(); }
  void Setting(const char* key, const std::string& value) { machine.settings.Set("Settings", key, value); }
  void Talk(const char* key, const std::string& value) { machine.settings.Set("ExeTalk", key, value); }
  void DropColumn(const std::string& table, const std::string& column);
  void MakeLocalStore(const std::vector<int>& assessmentYears);  // instead of the one that is there

  TemporaryFolder folder;
  test::TestCompany company;
  FakeMachine machine;
  ScriptedDesk desk;
  Session session{machine.machine(), desk};
};

}  // namespace ktl
