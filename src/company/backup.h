#pragma once

#include <filesystem>

namespace ktl {

struct CopyOptions {
  std::filesystem::path from;
  std::filesystem::path to;
  bool force = false;  // an existing file is replaced
};

// A copy of a company in one file, with what is still in the company's log, made while programs may work on
// it and checked from end to end. A CompanyError, with nothing left behind, when that cannot be.
void BackUpCompany(const CopyOptions& options);

// A company from such a copy, or from any other company file. One that a program has open is not replaced.
void RestoreCompany(const CopyOptions& options);

}  // namespace ktl
