#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "frame/session.h"
#include "support/company_fixture.h"
#include "support/fake_machine.h"
#include "support/scripted_desk.h"

namespace ktl {

// An empty company, a folder, and a session of a fake machine that can be connected to the company.
class FrameFixture : public testing::Test {
 protected:
  FrameFixture();
  ~FrameFixture() override;

  std::string Folder() const { return folder_.string(); }
  void Connect();  // the session, without the start-up
  void Sql(const std::string& text) { company.Execute(text); }
  double Number(const std::string& sql) { return company.Cn().FirstValue(sql)->NumberOr0(); }
  void DropColumn(const std::string& table, const std::string& column);
  void MakeLocalStore(const std::vector<int>& assessmentYears);  // instead of the one that is there

 private:
  std::filesystem::path folder_;

 protected:
  test::TestCompany company;
  FakeMachine machine;
  ScriptedDesk desk;
  Session session{machine.machine(), desk};
};

}  // namespace ktl
