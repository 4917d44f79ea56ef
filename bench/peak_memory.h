#pragma once

#include <malloc.h>

#include <fstream>
#include <string>

namespace ktl {

// The most memory that the process has held since this was made.
class PeakMemory {
 public:
  PeakMemory() {
    malloc_trim(0);
    std::ofstream("/proc/self/clear_refs") << 5;
    start_ = Of("VmRSS:");
  }
  double Megabytes() const { return Of("VmHWM:"); }
  double Risen() const { return Megabytes() - start_; }

 private:
  static double Of(const std::string& what) {
    std::ifstream status("/proc/self/status");
    std::string word;
    while (status >> word && word != what) {
    }
    double kilobytes = 0;
    status >> kilobytes;
    return kilobytes / 1000;
  }

  double start_ = 0;
};

// What is in use of the heap.
inline double HeapMegabytes() { return static_cast<double>(mallinfo2().uordblks) / 1e6; }

// Rows are read as they come: a library that kept them too would hold them twice.
inline bool IsHeldOnce(double kept, double risen) { return risen < 1.5 * kept + 1; }

}  // namespace ktl
