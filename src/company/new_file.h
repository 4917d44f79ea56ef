#pragma once

#include <fmt/format.h>

#include <filesystem>

#include "company/company_error.h"
#include "machine/files.h"
#include "runtime/errors.h"

namespace ktl {

// A company or a store that is being made beside the place it is wanted at, so that whatever ends the program
// leaves there what was there before. Gone again unless it was kept; what killed programs have left in the
// folder goes with the next one.
class NewFile final {
 public:
  // Throws CompanyError: no such folder, a folder itself, a name that no connection string can hold; one that
  // is there already, unless it is to be replaced and no program has it open.
  NewFile(const std::filesystem::path& wanted, bool replace);
  ~NewFile();
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;

  const std::filesystem::path& path() const { return making_; }

  // Puts the file, on the disk, where it is wanted. Throws CompanyError when a program has opened the old one
  // meanwhile, or when one has appeared that is not to be replaced.
  void Keep();

 private:
  void Put() const;

  std::filesystem::path wanted_;
  bool replace_;
  std::filesystem::path making_;
  FileDescriptor held_;  // tells others that somebody is at work
};

// Failures of files and of the database as one line each.
template <typename Work>
auto TellingFiles(const Work& work) {
  try {
    return work();
  } catch (const std::filesystem::filesystem_error& error) {
    throw CompanyError(fmt::format("{}: {}", error.path1().string(), error.code().message()));
  } catch (const RuntimeError& error) {
    throw CompanyError(error.description());
  }
}

}  // namespace ktl
