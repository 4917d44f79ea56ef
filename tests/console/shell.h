#pragma once

#include <sys/wait.h>

#include <cstdlib>
#include <string>

#include "support/temporary_folder.h"

namespace ktl {

inline std::string ShellQuoted(const std::string& text) {
  std::string quoted = "'";
  for (const char c : text) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return quoted + "'";
}

inline int RunShell(const std::string& shellCommand) {
  const int status = std::system(shellCommand.c_str());
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

}  // namespace ktl
