#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "company/company_address.h"

namespace ktl {

struct CompanyCopy {
  CompanyAddress from;
  CompanyAddress to;
  bool replace = false;
  std::function<void(const std::string& table, std::int64_t rows)> onProgress;  // again and again
};

struct CopiedCompany {
  std::size_t tables = 0;
  std::int64_t rows = 0;
  std::vector<std::string> leftOut;  // tables, and columns as TABLE.COLUMN, that no company has
  std::string cleaned;               // what was found of an earlier copy that was killed
};

// Makes a company of the rows of another one, between files and servers in any direction. Counts and sums of
// every table are compared with what was read before the new company takes its place. Throws CompanyError, with
// the target as it was.
CopiedCompany CopyCompany(const CompanyCopy& copy);

}  // namespace ktl
