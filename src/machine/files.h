#pragma once

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

namespace ktl {

// False for an empty path, a folder and whatever cannot be looked at.
inline bool FnBlnFileExists(const std::filesystem::path& path) {
  std::error_code ignored;
  return !path.empty() && std::filesystem::is_regular_file(path, ignored);
}

// The file that a path leads to over links, be it there or not: what replaces it must not replace the link.
inline std::filesystem::path BehindLinks(std::filesystem::path path) {
  constexpr int kMostLinks = 40;  // as the system has it
  std::error_code none;
  for (int links = 0; links < kMostLinks && std::filesystem::is_symlink(path, none); ++links)
    path = path.parent_path() / std::filesystem::read_symlink(path, none);
  return path;
}

class FileDescriptor final {
 public:
  explicit FileDescriptor(int fd) : fd_(fd) {}
  ~FileDescriptor() {
    if (fd_ >= 0) ::close(fd_);
  }
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;
  int get() const { return fd_; }
  bool valid() const { return fd_ >= 0; }

 private:
  int fd_;
};

// What the program makes from now on (companies, stores, logs, workbooks) only its user can read.
inline void KeepNewFilesPrivate() { ::umask(S_IRWXG | S_IRWXO); }

}  // namespace ktl
