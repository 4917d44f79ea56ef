#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "shell.h"

// Plays every scripts/NAME.script through KTLStInsConsole, on a sample company of its own, and compares what
// came of it with scripts/NAME.expected: the transcript, a line "stderr | TEXT" for each line on standard
// error, and "exit | STATUS". The first line of a script is "# command: COMMANDLINE".

namespace ktl {
namespace {

namespace fs = std::filesystem;

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

// One sample company, put back as it was made before every script.
class WholeProgram : public testing::Test {
 protected:
  void SetUp() override {
    if (Scripts().empty()) GTEST_SKIP() << "no scripts";
    ASSERT_FALSE(folder.empty());
    work = folder / "work";
    fs::create_directory(work);
    const int status = RunShell(
        "cd " + ShellQuoted(work.string()) +
        " && " KTL_BUILD_DIR "/KTLCompany create company.kldb --settings \"$PWD/settings.ini\" >../log 2>&1");
    ASSERT_EQ(status, 0) << ReadAll(folder / "log");
    fs::copy(work, folder / "pristine", fs::copy_options::recursive);
  }
  std::string Play(const fs::path& script) {
    fs::remove_all(work);
    fs::copy(folder / "pristine", work, fs::copy_options::recursive);
    const int status = RunShell(
        "cd " + ShellQuoted(work.string()) +
        " && KTL_SETTINGS=\"$PWD/settings.ini\" KTL_FOLDER=\"$PWD\" KTL_TODAY=2026-10-15 " KTL_BUILD_DIR
        "/KTLStInsConsole " +
        ShellQuoted(CommandLineOf(script)) + " " + ShellQuoted(script.string()) + " >../out 2>../err");
    std::string outcome = ReadAll(folder / "out");
    std::istringstream errors(ReadAll(folder / "err"));
    for (std::string line; std::getline(errors, line);) outcome += "stderr | " + line + '\n';
    return outcome + "exit | " + std::to_string(status) + '\n';
  }

  TemporaryFolder temporary;
  fs::path folder = temporary.path();
  fs::path work;  // the company, its settings and its local store, as the program finds them
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
