#pragma once

#include <cstdint>
#include <string_view>

namespace ktl::tsql {

// Names of the language and of its objects: ASCII letters without regard to case.
inline char LowerAscii(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; }

inline char UpperAscii(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; }

inline bool SameWord(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i)
    if (LowerAscii(a[i]) != LowerAscii(b[i])) return false;
  return true;
}

// For unordered containers whose keys are such names.
struct WordHash {
  using is_transparent = void;
  std::size_t operator()(std::string_view word) const {
    std::uint64_t hash = 1469598103934665603ULL;
    for (char c : word) hash = (hash ^ static_cast<unsigned char>(LowerAscii(c))) * 1099511628211ULL;
    return hash;
  }
};

struct WordEqual {
  using is_transparent = void;
  bool operator()(std::string_view a, std::string_view b) const { return SameWord(a, b); }
};

}  // namespace ktl::tsql
