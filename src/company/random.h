#pragma once

#include <cstddef>
#include <cstdint>

namespace ktl {

// What a stream of random values is for. Each topic of each employee has a stream of its own, so that more
// rows of one topic do not move another, and an employee is the same in a company of any size.
enum class Topic : std::uint64_t {
  Person = 1,
  Service,
  Detail,
  Pay,
  LoanCount,
  Advance,
  Loan,
  Receipt,
  Premium,
  Leave,
  Claim,
  Salary
};

// SplitMix64.
class Random final {
 public:
  Random(std::uint64_t seed, int employee, Topic topic)
      : state_(seed ^ Spread(static_cast<std::uint64_t>(employee), 0x9E3779B97F4A7C15ULL) ^
               Spread(static_cast<std::uint64_t>(topic), 0xBF58476D1CE4E5B9ULL)) {}

  std::uint64_t Next() {
    std::uint64_t z = (state_ += 0x9E3779B97F4A7C15ULL);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
    return z ^ (z >> 31);
  }

  // From first to last, both included.
  int Between(int first, int last) {
    return first + static_cast<int>(Next() % static_cast<std::uint64_t>(last - first + 1));
  }
  bool Percent(int chance) { return Between(1, 100) <= chance; }

  template <class T, std::size_t N>
  const T& OneOf(const T (&choices)[N]) {
    return choices[Next() % N];
  }

 private:
  static std::uint64_t Spread(std::uint64_t number, std::uint64_t factor) { return number * factor; }

  std::uint64_t state_;
};

}  // namespace ktl
