#include "frame/modExternal.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <functional>

#include "frame/session.h"
#include "machine/siblings.h"
#include "runtime/errors.h"
#include "support/fake_machine.h"
#include "support/scripted_desk.h"
#include "support/temporary_folder.h"

namespace ktl {
namespace {

namespace fs = std::filesystem;

// A person who does something while the launcher waits.
class WaitingDesk final : public ScriptedDesk {
 public:
  void Refresh() override {
    ++refreshes;
    if (meanwhile) meanwhile();
  }

  int refreshes = 0;
  std::function<void()> meanwhile;
};

// Real processes: the siblings are shell scripts in a folder of the test.
class LauncherTest : public testing::Test {
 protected:
  LauncherTest() { machine.folder.path = folder.string(); }

  void Script(const fs::path& file, const std::string& body) {
    fs::create_directories(file.parent_path());
    std::ofstream(file) << "#!/bin/sh\n" << body << '\n';
    fs::permissions(file, fs::perms::owner_all);
  }
  std::string Written(const std::string& name) { return ReadAll(folder / name); }
  void Launch(const char* name, int mode, const std::string& parameter = "") {
    modExternal launcher(session);
    launcher.AppName = name;
    launcher.AppParameter = parameter;
    launcher.AppSearchDir = (folder / "development").string();
    launcher.MODE = mode;
    launcher.Load();
    EXPECT_TRUE(launcher.IsUnloaded());
  }
  std::string Handle(const std::string& key) { return machine.settings.Get("ExeTalk", key, ""); }

  TemporaryFolder temporary;
  const fs::path folder = temporary.path();
  FakeMachine machine;
  WaitingDesk desk;
  LocalSiblings siblings{machine.folder};
  Session session{
      {machine.settings, machine.folder, machine.clock, machine.statusBox, machine.environment, siblings},
      desk};
};

TEST_F(LauncherTest, StartsWithOneArgumentAndWaitsForTheEnd) {
  Script(folder / "KTLFilter", "echo $$ > \"$0.pid\"; sleep 0.2; echo \"$#:$1\" > \"$0.out\"");
  for (const int mode : {1, 3, 4}) {
    fs::remove(folder / "KTLFilter.out");
    machine.settings.Set("ExeTalk", "HWNDKTLFilter", "77");
    desk.refreshes = 0;
    Launch("KTLFilter", mode, "1500,True $x 'y'");
    EXPECT_EQ(Written("KTLFilter.out"), "1:1500,True $x 'y'\n") << mode;
    EXPECT_GE(desk.refreshes, 3) << mode;  // the screen stays alive
    EXPECT_EQ(Handle("HWNDKTLFilter"), "0");
    EXPECT_EQ(::kill(std::stoi(Written("KTLFilter.pid")), 0), -1);
  }
  EXPECT_TRUE(desk.Boxes().empty());
}

TEST_F(LauncherTest, SearchesItsFolderTheCurrentOneAndTheGivenOne) {
  const fs::path before = fs::current_path();
  fs::create_directory(folder / "here");
  fs::current_path(folder / "here");
  for (const char* place : {"development", "here", "."}) {  // each goes before those already there
    Script(folder / place / "KTLSIRep", std::string("echo ") + place + " > " + (folder / "who").string());
    Launch("KTLSIRep", 3);
    EXPECT_EQ(Written("who"), std::string(place) + "\n");
  }
  fs::current_path(before);
}

TEST_F(LauncherTest, SaysOnceThatAProgramIsNotThere) {
  std::ofstream(folder / "KTLText") << "no program";
  std::ofstream(folder / "KTLBroken") << "neither";
  fs::permissions(folder / "KTLBroken", fs::perms::owner_all);
  fs::create_directory(folder / "KTLFolder");
  for (const char* name : {"KTLMissing", "KTLText", "KTLBroken", "KTLFolder", ""}) {
    Launch(name, 3);
    EXPECT_EQ(desk.LastBox().icon, Icon::Critical);
    EXPECT_EQ(desk.TakeTexts(), std::vector<std::string>{"Required External Application not found"}) << name;
  }
  for (const int mode : {0, 5}) Launch("", mode);
  EXPECT_EQ(desk.TakeTexts(),
            std::vector<std::string>(2, "Properties of external application is not set properly"));
}

TEST_F(LauncherTest, ASiblingThatEndsAtOnceOrNeverWritesItsHandleComesBack) {
  Script(folder / "KTLQuick", "exit 3");
  Launch("KTLQuick", 1);
  Script(folder / "KTLSilent", "sleep 0.3");
  Launch("KTLSilent", 1);
  EXPECT_TRUE(desk.Boxes().empty());
  // A wait that fails ends the other program with it.
  Script(folder / "KTLLong", "echo $$ > \"$0.pid\"; exec sleep 60");
  desk.meanwhile = [this] {
    if (!Written("KTLLong.pid").empty()) throw RuntimeError(5, "stop");
  };
  EXPECT_THROW(Launch("KTLLong", 1), RuntimeError);
  EXPECT_EQ(::kill(std::stoi(Written("KTLLong.pid")), 0), -1);
}

TEST_F(LauncherTest, PassesStatusTextOn) {
  machine.settings.Set("ExeTalk", "StatusHWNDKestrel Ledger", "900");
  Script(folder / "KTLSIRep", "echo reading; sleep 0.2; echo writing; printf 'not yet'");
  std::string during;
  desk.meanwhile = [&] { during = Handle("StatusHWNDKestrel Ledger"); };
  Launch("KTLSIRep", 3);
  EXPECT_EQ(during, "4711");  // its own box takes the texts meanwhile
  std::string passed;
  for (const auto& [window, text] : machine.statusBox.texts) passed += std::to_string(window) + text + ' ';
  EXPECT_EQ(passed, "900reading 900writing ");
  EXPECT_EQ(desk.statusTexts, (std::vector<std::string>{"reading", "writing", ""}));
  EXPECT_EQ(Handle("StatusHWNDKestrel Ledger"), "900");
}

TEST_F(LauncherTest, ASignalEndsTheWaitAndTheOtherProgramAndLeavesNoDeadNumbers) {
  machine.settings.Set("ExeTalk", "StatusHWNDKestrel Ledger", "900");
  Script(folder / "KTLLong", "echo $$ > \"$0.pid\"; exec sleep 60");
  desk.meanwhile = [this] { machine.environment.mustEnd = !Written("KTLLong.pid").empty(); };
  EXPECT_THROW(Launch("KTLLong", 3), ProgramFailure);
  EXPECT_EQ(::kill(std::stoi(Written("KTLLong.pid")), 0), -1);
  EXPECT_EQ(Handle("StatusHWNDKestrel Ledger"), "900");
  EXPECT_EQ(Handle("HWNDKTLLong"), "0");
}

TEST_F(LauncherTest, OurStandardInputIsNotTheirs) {
  Script(folder / "KTLReads", "cat > \"$0.out\"; echo done >> \"$0.out\"");
  Launch("KTLReads", 3);
  EXPECT_EQ(Written("KTLReads.out"), "done\n");
}

TEST_F(LauncherTest, ModeTwoWaitsForOneThatRunsAlready) {
  machine.settings.Set("ExeTalk", "HWNDKTLFFS", std::to_string(::getpid()));
  desk.meanwhile = [this] {
    if (desk.refreshes == 3) machine.settings.Set("ExeTalk", "HWNDKTLFFS", "0");
  };
  Launch("KTLFFS", 2);
  EXPECT_EQ(desk.refreshes, 3);
  EXPECT_TRUE(desk.Boxes().empty());
}

TEST_F(LauncherTest, TheFilterLeavesItsAnswer) {
  Script(folder / "KTLFilter", "echo \"$1\" > \"$0.out\"");
  session.MultiLoginYN = true;
  modExternal caller(session);
  machine.settings.Set("Settings", "Filter", "1");
  OpenFilter(session, caller);
  EXPECT_TRUE(session.FilterYN);
  EXPECT_EQ(session.ActiveForm, &caller);
  EXPECT_EQ(Written("KTLFilter.out"), "1500,True\n");
  EXPECT_EQ(Handle("HWNDKTLStIns"), "4711");
  session.FormCode = 1502;
  OpenInstitutionMaster(session);
  EXPECT_EQ(Written("KTLFilter.out"), "1502,True$KestrelLedger - Institution\n");
}

}  // namespace
}  // namespace ktl
