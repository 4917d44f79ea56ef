#include "company/backup.h"

#include "company/new_file.h"
#include "database/drivers/sqlite_file.h"

namespace ktl {
namespace {

namespace fs = std::filesystem;

void Copy(const CopyOptions& options, LogMode mode) {
  const auto& [from, to, force] = options;
  TellingFiles([&] {
    if (fs::exists(to) && fs::exists(from) && fs::equivalent(from, to))
      throw CompanyError(to.string() + ": is the file to be copied");
    NewFile copy(to, force);
    CopySqliteFile(from, copy.path(), mode);
    copy.Keep();
  });
}

}  // namespace

void BackUpCompany(const CopyOptions& options) { Copy(options, LogMode::None); }

void RestoreCompany(const CopyOptions& options) { Copy(options, LogMode::Apart); }

}  // namespace ktl
