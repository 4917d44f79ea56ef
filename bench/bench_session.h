#pragma once

#include <cstdlib>
#include <filesystem>
#include <memory>

#include "bench_company.h"
#include "frame/connect.h"
#include "frame/real_machine.h"
#include "frame/startup.h"
#include "instructions/advloan_write.h"
#include "quiet_desk.h"

namespace ktl {

// A session with a settings store of its own, so that the user's stays as it is.
struct Bench {
  explicit Bench(int employees) : Bench(BenchCompany(employees)) {}
  explicit Bench(const std::filesystem::path& company) {
    const auto settings = std::filesystem::temp_directory_path() / "ktl-bench-settings.ini";
    std::filesystem::remove(settings);
    setenv("KTL_SETTINGS", settings.c_str(), 1);
    WriteSettings(settings, company);
    real = std::make_unique<RealMachine>("bench");
    session = std::make_unique<Session>(real->machine(), desk);
  }

  void Connect(const std::filesystem::path& company) {
    OpenConnection(*session, ConnectionStringOf(company));
    LoadOptionSet(*session);
  }

  QuietDesk desk;
  std::unique_ptr<RealMachine> real;
  std::unique_ptr<Session> session;
};

// A copy of the company of that many employees, to write into.
inline std::filesystem::path ScratchCompany(int employees = 1000) {
  const auto scratch = std::filesystem::temp_directory_path() / "ktl-bench-scratch.kldb";
  for (const char* ending : {"", "-wal", "-shm"}) std::filesystem::remove(scratch.string() + ending);
  std::filesystem::copy_file(BenchCompany(employees), scratch);
  return scratch;
}

inline constexpr int kInstalments = 360;

// A loan of 360 instalments of 1000 from Nov/2026, not saved yet.
inline AdvLoanEntry LoanOf360() {
  AdvLoanEntry entry{.key = {100, InstructionType::Loan, 1000}, .institution = 1, .newRecord = true};
  entry.ReadTyped({.name = "Consumer Loan",
                   .date = "15/10/2026",
                   .amount = "360000",
                   .instalment = "1000",
                   .recoverFrom = "Nov/2026"});
  return entry;
}

}  // namespace ktl
