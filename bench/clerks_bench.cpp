// Twenty people at once on one company, each in a process of its own, saving loans of 24 instalments as fast
// as they are told "Updated": clerks_bench [SECONDS [CLERKS]]. Nothing that was told may be missing
// afterwards.
#include <fmt/format.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <vector>

#include "bench_session.h"

namespace ktl {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int kMonths = 24;

double Seconds(Clock::duration time) { return std::chrono::duration<double>(time).count(); }

// Each clerk has employees of his own; the waits go to the parent as they are.
void Work(const std::filesystem::path& company, int clerk, int clerks, int seconds, int results) {
  LoanClerk person(company, fmt::format("clerk-{}", clerk));
  const auto employees = person.Employees();
  const auto end = Clock::now() + std::chrono::seconds(seconds);
  auto next = static_cast<std::size_t>(clerk);
  while (Clock::now() < end) {
    person.Type(employees[next % employees.size()], kMonths);
    next += static_cast<std::size_t>(clerks);
    const auto begin = Clock::now();
    if (!person.Save()) continue;
    const double wait = Seconds(Clock::now() - begin);
    if (write(results, &wait, sizeof wait) != sizeof wait) _exit(1);
  }
}

std::vector<double> WorkTogether(const std::filesystem::path& company, int clerks, int seconds) {
  int results[2];
  if (pipe(results) != 0) return {};
  for (int clerk = 0; clerk < clerks; ++clerk) {
    if (fork() != 0) continue;
    Work(company, clerk, clerks, seconds, results[1]);
    _exit(0);
  }
  close(results[1]);
  std::vector<double> waits;
  for (double wait = 0; read(results[0], &wait, sizeof wait) == sizeof wait;) waits.push_back(wait);
  close(results[0]);
  while (wait(nullptr) > 0) {
  }
  return waits;
}

long Count(const std::filesystem::path& company, const char* table) {
  Connection cn;
  cn.Open(ConnectionStringOf(company));
  return cn.FirstValue(std::string("SELECT COUNT(*) FROM ") + table)->ToLong();
}

double ProcessorSeconds() {
  rusage usage{};
  getrusage(RUSAGE_CHILDREN, &usage);
  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
  };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

void Measure(BenchSize size, int clerks, int seconds) {
  const auto company = ScratchCompany(size);
  const long loans = Count(company, "INS_ADVLOAN"), months = Count(company, "INS_EMIDETAIL");
  const double before = ProcessorSeconds();
  std::vector<double> waits = WorkTogether(company, clerks, seconds);
  if (waits.empty()) return;
  std::ranges::sort(waits);
  const auto saves = static_cast<double>(waits.size());
  const long told = static_cast<long>(waits.size());
  fmt::print(
      "{} instalments, {} clerks, {} s: {:.0f} saves a second, wait {:.3f} s in the middle, {:.2f} s for one "
      "of a "
      "hundred, {:.2f} s the longest, {:.1f} ms of processor a save; lost: {} loans, {} instalments\n",
      size.instalments, clerks, seconds, saves / seconds, waits[waits.size() / 2],
      waits[waits.size() * 99 / 100], waits.back(), (ProcessorSeconds() - before) * 1000 / saves,
      loans + told - Count(company, "INS_ADVLOAN"),
      months + told * kMonths - Count(company, "INS_EMIDETAIL"));
}

}  // namespace
}  // namespace ktl

int main(int argc, char** argv) {
  const int seconds = argc > 1 ? std::atoi(argv[1]) : 30;
  const int clerks = argc > 2 ? std::atoi(argv[2]) : 20;
  ktl::Measure(ktl::Usual(10000), clerks, seconds);
  if (ktl::IsLargeMeasured()) ktl::Measure(ktl::kLarge, clerks, seconds);
}
