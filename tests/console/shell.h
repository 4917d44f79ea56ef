#pragma once

#include <stdlib.h>
#include <sys/wait.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace ktl {

inline std::string ReadAll(const std::filesystem::path& file) {
  std::ifstream in(file, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

inline std::string ShellQuoted(const std::string& text) {
  std::string quoted = "'";
  for (const char c : text) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return quoted + "'";
}

inline int RunShell(const std::string& shellCommand) {
  const int status = std::system(shellCommand.c_str());
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

// A temporary folder that goes with its test.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "ktl-console-XXXXXX").string();
    if (mkdtemp(name.data()) != nullptr) path_ = name;
  }
  ~TemporaryFolder() {
    if (!path_.empty()) std::filesystem::remove_all(path_);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

}  // namespace ktl
