#include "frame/siblings.h"

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "frame/files.h"
#include "runtime/text.h"

namespace ktl {

namespace {

bool IsProgram(const std::filesystem::path& path) {
  return FnBlnFileExists(path) && ::access(path.c_str(), X_OK) == 0;
}

// Empty when there is no such program.
std::filesystem::path FindProgram(const std::filesystem::path& ownFolder, const std::string& name) {
  if (const auto own = ownFolder / name; IsProgram(own)) return own;
  const char* searched = std::getenv("PATH");
  for (const std::string& folder : Split(searched == nullptr ? "" : searched, ":")) {
    if (folder.empty()) continue;
    if (const auto found = std::filesystem::path(folder) / name; IsProgram(found)) return found;
  }
  return {};
}

void WaitFor(pid_t process) {
  int status = 0;
  while (::waitpid(process, &status, 0) < 0 && errno == EINTR) {
  }
}

}  // namespace

bool LocalSiblings::Start(const Sibling& sibling) {
  const std::string path = FindProgram(folder_.Path(), sibling.program).string();
  if (sibling.program.empty() || path.empty()) return false;
  std::string program = path;
  std::string arguments = sibling.arguments;
  char* const argv[] = {program.data(), arguments.data(), nullptr};
  pid_t process = 0;
  if (::posix_spawn(&process, path.c_str(), nullptr, nullptr, argv, environ) != 0) return false;
  if (sibling.wait) WaitFor(process);
  return true;
}

}  // namespace ktl
