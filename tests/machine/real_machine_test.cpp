#include "machine/real_machine.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "runtime/errors.h"
#include "support/temporary_folder.h"

namespace ktl {
namespace {

class RealMachineTest : public testing::Test {
 protected:
  RealMachineTest() {
    ::setenv("KTL_FOLDER", folder_.path().c_str(), 1);
    ::setenv("KTL_SETTINGS", (folder_.path() / "settings.ini").c_str(), 1);
    ::setenv("KTL_TODAY", "2026-02-28", 1);
  }
  ~RealMachineTest() override {
    for (const char* name : {"KTL_FOLDER", "KTL_SETTINGS", "KTL_TODAY"}) ::unsetenv(name);
  }

  TemporaryFolder folder_;
};

TEST_F(RealMachineTest, FollowsTheEnvironment) {
  RealMachine real("/opt/ktl/KTLStIns.exe");
  const Machine machine = real.machine();
  EXPECT_EQ(machine.environment.ExecutableName(), "KTLStIns");
  EXPECT_EQ(machine.folder.Path(), folder_.path().string());
  EXPECT_EQ(machine.clock.Now(), *Date::FromYmd(2026, 2, 28));
  machine.settings.Set("Settings", "User", "RAVI");
  EXPECT_TRUE(machine.folder.HasFile("settings.ini"));
  EXPECT_FALSE(machine.folder.HasFile("SIRoundNone.dat"));
  std::filesystem::create_directory(folder_.path() / "SIRoundNone.dat");
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
