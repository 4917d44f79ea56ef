#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "frame/session.h"
#include "support/fake_machine.h"
#include "support/scripted_desk.h"

namespace ktl {

// An empty company in a file of its own, and a session of a fake machine that can be connected to it.
class FrameFixture : public testing::Test {
 protected:
  FrameFixture();
  ~FrameFixture() override;

  std::string Folder() const { return folder_.string(); }
  std::string ConnectionString() const;
  void Connect();  // the session, without the start-up

  void Sql(const std::string& text);     // on a connection of the fixture's own
  void RawSql(const std::string& text);  // past the connection, in the file's own dialect
  double Number(const std::string& sql);
  void MakeLocalStore(const std::vector<int>& assessmentYears);  // instead of the one that is there

 private:
  std::filesystem::path folder_;
  Connection company_;

 protected:
  FakeMachine machine;
  ScriptedDesk desk;
  Session session{machine.machine(), desk};
};

}  // namespace ktl
