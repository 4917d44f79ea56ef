#pragma once

#include <algorithm>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "runtime/text.h"

namespace ktl::test {

// A statement of the program, as it says it.
struct Said {
  std::string id;
  std::string mode;  // val, exists, rs: read; upd: an updatable recordset; exec, batch, proc: run
  std::string sql;
};

inline const std::vector<Said>& EverythingSaid() {
  static const std::vector<Said> said = [] {
    std::vector<Said> all;
    std::ifstream file(KTL_TEST_DATA "/statements.tsv");
    for (std::string line; std::getline(file, line);) {
      const auto parts = Split(line, "\t");
      all.push_back({parts.at(0), parts.at(1), parts.at(2)});
    }
    return all;
  }();
  return said;
}

inline const Said& SaidAs(const std::string& id) {
  const auto found = std::ranges::find(EverythingSaid(), id, &Said::id);
  if (found == EverythingSaid().end()) throw std::runtime_error("no statement " + id);
  return *found;
}

}  // namespace ktl::test
