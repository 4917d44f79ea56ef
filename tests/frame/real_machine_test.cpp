#include "frame/real_machine.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "runtime/errors.h"

namespace ktl {
namespace {

namespace fs = std::filesystem;

class RealMachineTest : public testing::Test {
 protected:
  RealMachineTest() {
    std::string pattern = (fs::temp_directory_path() / "ktl-machine-XXXXXX").string();
    folder_ = ::mkdtemp(pattern.data());
    ::setenv("KTL_FOLDER", folder_.c_str(), 1);
    ::setenv("KTL_SETTINGS", (folder_ / "settings.ini").c_str(), 1);
    ::setenv("KTL_TODAY", "2026-02-28", 1);
  }
  ~RealMachineTest() override {
    for (const char* name : {"KTL_FOLDER", "KTL_SETTINGS", "KTL_TODAY"}) ::unsetenv(name);
    fs::remove_all(folder_);
  }

  void Script(const std::string& name, const std::string& body) {
    std::ofstream(folder_ / name) << "#!/bin/sh\n" << body << '\n';
    fs::permissions(folder_ / name, fs::perms::owner_all);
  }

  fs::path folder_;
};

TEST_F(RealMachineTest, FollowsTheEnvironment) {
  RealMachine real("/opt/ktl/KTLStIns.exe");
  const Machine machine = real.machine();
  EXPECT_EQ(machine.environment.ExecutableName(), "KTLStIns");
  EXPECT_EQ(machine.folder.Path(), folder_.string());
  EXPECT_EQ(machine.clock.Now(), *Date::FromYmd(2026, 2, 28));
  machine.settings.Set("Settings", "User", "RAVI");
  EXPECT_TRUE(machine.folder.HasFile("settings.ini"));
  EXPECT_FALSE(machine.folder.HasFile("SIRoundNone.dat"));
  fs::create_directory(folder_ / "SIRoundNone.dat");
  EXPECT_FALSE(machine.folder.HasFile("SIRoundNone.dat"));
}

TEST_F(RealMachineTest, RefusesADayThatIsNone) {
  for (const char* day : {"2026-02-29", "28/02/2026", "2026-2-28", "today"}) {
    ::setenv("KTL_TODAY", day, 1);
    EXPECT_THROW(RealMachine("KTLStIns"), RuntimeError) << day;
  }
}

TEST_F(RealMachineTest, StartsASiblingWithOneArgumentAndWaits) {
  Script("KTLFilter", "sleep 0.1; echo \"$#:$1\" > \"$0.out\"");
  std::ofstream(folder_ / "KTLText") << "no program";
  RealMachine real("KTLStIns");
  const Machine machine = real.machine();
  EXPECT_TRUE(machine.siblings.Start({"KTLFilter", "KestrelLedger - Filter", "1500,True $x 'y'", true}));
  std::ostringstream said;
  said << std::ifstream(folder_ / "KTLFilter.out").rdbuf();
  EXPECT_EQ(said.str(), "1:1500,True $x 'y'\n");
  for (const char* name : {"KTLMissing", "KTLText", ""}) {
    EXPECT_FALSE(machine.siblings.Start({name, "", "", true})) << name;
  }
  EXPECT_TRUE(machine.siblings.Start({"true", "", "", true}));  // of PATH
}

}  // namespace
}  // namespace ktl
