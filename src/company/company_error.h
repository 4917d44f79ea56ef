#pragma once

#include <stdexcept>

namespace ktl {

// Why a company could not be made or asked: one line for the person at the command line.
class CompanyError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace ktl
