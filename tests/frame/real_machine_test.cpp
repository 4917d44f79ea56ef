#include "frame/real_machine.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

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

}  // namespace
}  // namespace ktl
