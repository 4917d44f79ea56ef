#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "shell.h"
#include "support/sample_company.h"

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

// On a sample company that is put back as it was made before every script.
std::string Play(const test::SampleCompany& sample, const fs::path& script) {
  sample.Reset();
  const TemporaryFolder folder;
  const auto file = [&](const char* name) { return folder.path() / name; };
  const int status = RunShell(
      "cd " + ShellQuoted(sample.Folder().string()) +
      " && KTL_SETTINGS=\"$PWD/settings.ini\" KTL_FOLDER=\"$PWD\" KTL_TODAY=2026-10-15 " KTL_BUILD_DIR
      "/KTLStInsConsole " +
      ShellQuoted(CommandLineOf(script)) + " " + ShellQuoted(script.string()) + " >" +
      ShellQuoted(file("out").string()) + " 2>" + ShellQuoted(file("err").string()));
  std::string outcome = ReadAll(file("out"));
  std::istringstream errors(ReadAll(file("err")));
  for (std::string line; std::getline(errors, line);) outcome += "stderr | " + line + '\n';
  return outcome + "exit | " + std::to_string(status) + '\n';
}

TEST(WholeProgram, PlaysEveryScriptAsExpected) {
  const test::SampleCompany sample;
  for (const fs::path& script : Scripts()) {
    SCOPED_TRACE(script.filename());
    ASSERT_NE(CommandLineOf(script), "") << "no command line in the script";
    EXPECT_EQ(Play(sample, script), ReadAll(fs::path(script).replace_extension(".expected")));
  }
}

}  // namespace
}  // namespace ktl
