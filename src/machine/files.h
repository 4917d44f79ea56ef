#pragma once

#include <sys/stat.h>

#include <filesystem>

namespace ktl {

// False for an empty path, a folder and whatever cannot be looked at.
inline bool FnBlnFileExists(const std::filesystem::path& path) {
  std::error_code ignored;
  return !path.empty() && std::filesystem::is_regular_file(path, ignored);
}

// What the program makes from now on (companies, stores, logs, workbooks) only its user can read.
inline void KeepNewFilesPrivate() { ::umask(S_IRWXG | S_IRWXO); }

}  // namespace ktl
