#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "company/company_address.h"

namespace ktl {

// Who looks on while a company is copied.
struct CopyWatch {
  std::function<void(const std::string& table, std::int64_t rows)> onProgress;  // again and again
  std::function<void(const std::string& what)> onCleaned;  // an earlier copy that was killed is taken away
};

struct CompanyCopy {
  CompanyAddress from;
  CompanyAddress to;
  bool replace = false;
  CopyWatch watch = {};
};

struct CopiedCompany {
  std::size_t tables = 0;
  std::int64_t rows = 0;
  std::vector<std::string> leftOut;  // tables, and columns as TABLE.COLUMN, that no company has
};

// Makes a company of the rows of another one, between files and servers in any direction. Counts and sums of
// every table are compared with what was read before the new company takes its place. Throws CompanyError,
// with the target as it was.
CopiedCompany CopyCompany(const CompanyCopy& copy);

}  // namespace ktl
