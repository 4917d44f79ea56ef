#include "support/power_cut.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <utility>

#include "database/connection.h"

namespace fs = std::filesystem;

namespace {

constexpr auto kOverwrite = fs::copy_options::overwrite_existing;
int flushes = 0;
fs::path watched;  // the company of the machine that can lose its power

int Flush(int descriptor, long call) {
  ++flushes;
  const fs::path file = fs::read_symlink("/proc/self/fd/" + std::to_string(descriptor));
  const bool kept = !watched.empty() && file.string().starts_with(watched.string());
  if (kept && fs::is_regular_file(file)) fs::copy_file(file, file.string() + ".disk", kOverwrite);
  return static_cast<int>(syscall(call, descriptor));
}

}  // namespace

// In place of the system's, for the whole test program.
extern "C" int fdatasync(int descriptor) { return Flush(descriptor, SYS_fdatasync); }
extern "C" int fsync(int descriptor) { return Flush(descriptor, SYS_fsync); }

namespace ktl::test {

PowerCut::PowerCut(fs::path company) : company_(std::move(company)) {
  fs::copy_file(company_, With(".disk"), kOverwrite);
  watched = company_;
}

PowerCut::~PowerCut() {
  watched.clear();
  for (const char* ending : {".disk", "-wal.disk", ".cut", ".cut-wal", ".cut-shm"}) fs::remove(With(ending));
}

int PowerCut::EmployeesLeft() const {
  fs::copy_file(With(".disk"), With(".cut"), kOverwrite);
  if (fs::exists(With("-wal.disk"))) fs::copy_file(With("-wal.disk"), With(".cut-wal"), kOverwrite);
  Connection cut;
  cut.Open("Provider=SQLite;Data Source=" + With(".cut").string());
  return static_cast<int>(cut.FirstValue("SELECT COUNT(*) FROM MAS_EMPLOYEE")->NumberOr0());
}

int PowerCut::Flushes() { return flushes; }

}  // namespace ktl::test
