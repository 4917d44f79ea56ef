#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/wait.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <vector>

#include "common/amounts.h"
#include "frame/settings_store.h"

// Plays every scripts/NAME.script through KTLStInsConsole, on a sample company of its own, and compares what
// came of it with scripts/NAME.expected: the transcript, a line "stderr | TEXT" for each line on standard
// error, and "exit | STATUS". The first line of a script is "# command: COMMANDLINE".

namespace ktl {
namespace {

namespace fs = std::filesystem;

std::string ReadAll(const fs::path& file) {
  std::ifstream in(file, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

std::string ShellQuoted(const std::string& text) {
  std::string quoted = "'";
  for (const char c : text) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return quoted + "'";
}

int RunShell(const std::string& shellCommand) {
  const int status = std::system(shellCommand.c_str());
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::vector<fs::path> Scripts() {
  std::vector<fs::path> scripts;
  std::error_code noFolder;
  for (const auto& entry : fs::directory_iterator(fs::path(KTL_TEST_DATA) / "scripts", noFolder)) {
    if (entry.path().extension() == ".script") scripts.push_back(entry.path());
  }
  std::sort(scripts.begin(), scripts.end());
  return scripts;
}

std::string CommandLineOf(const fs::path& script) {
  const std::string mark = "# command: ";
  std::ifstream in(script);
  std::string line;
  std::getline(in, line);
  return line.starts_with(mark) ? line.substr(mark.size()) : std::string();
}

// One sample company, copied afresh for every script.
class WholeProgram : public testing::Test {
 protected:
  void SetUp() override {
    if (Scripts().empty()) GTEST_SKIP() << "no scripts";
    std::string name = (fs::temp_directory_path() / "ktl-scripts-XXXXXX").string();
    ASSERT_NE(mkdtemp(name.data()), nullptr);
    folder = name;
    const std::string made = ShellQuoted((folder / "sample.kldb").string());
    ASSERT_EQ(RunShell(KTL_BUILD_DIR "/KTLCompany create " + made + " >" +
                       ShellQuoted((folder / "log").string()) + " 2>&1"),
              0)
        << ReadAll(folder / "log");
  }
  void TearDown() override {
    if (!folder.empty()) fs::remove_all(folder);
  }

  // A settings file of a user who has the company open.
  void OpenFreshCompany() {
    fs::copy_file(folder / "sample.kldb", folder / "company.kldb", fs::copy_options::overwrite_existing);
    fs::remove(folder / "settings.ini");
    SettingsFile settings(folder / "settings.ini");
    const std::string connection = "Provider=SQLite;Data Source=" + (folder / "company.kldb").string() + ";";
    settings.Set("Settings", "DefLnk", clsGenCmn::FnStrEncryptWord(connection));
    settings.Set("Settings", "DBType", "SQL");
    settings.Set("Settings", "User", "ADMIN");
  }

  std::string Play(const fs::path& script) {
    OpenFreshCompany();
    const std::string environment = "KTL_SETTINGS=" + ShellQuoted((folder / "settings.ini").string()) +
                                    " KTL_FOLDER=" + ShellQuoted(folder.string()) + " KTL_TODAY=2026-10-15 ";
    const int status = RunShell("cd " + ShellQuoted(folder.string()) + " && " + environment +
                                KTL_BUILD_DIR "/KTLStInsConsole " + ShellQuoted(CommandLineOf(script)) + " " +
                                ShellQuoted(script.string()) + " >out 2>err");
    std::string outcome = ReadAll(folder / "out");
    std::istringstream errors(ReadAll(folder / "err"));
    for (std::string line; std::getline(errors, line);) outcome += "stderr | " + line + '\n';
    return outcome + "exit | " + std::to_string(status) + '\n';
  }

  fs::path folder;
};

TEST_F(WholeProgram, PlaysEveryScriptAsExpected) {
  for (const fs::path& script : Scripts()) {
    SCOPED_TRACE(script.filename());
    ASSERT_NE(CommandLineOf(script), "") << "no command line in the script";
    EXPECT_EQ(Play(script), ReadAll(fs::path(script).replace_extension(".expected")));
  }
}

}  // namespace
}  // namespace ktl
