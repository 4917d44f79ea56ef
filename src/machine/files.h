#pragma once

#include <filesystem>

namespace ktl {

// False for an empty path, a folder and whatever cannot be looked at.
inline bool FnBlnFileExists(const std::filesystem::path& path) {
  std::error_code ignored;
  return !path.empty() && std::filesystem::is_regular_file(path, ignored);
}

}  // namespace ktl
