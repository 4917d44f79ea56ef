#pragma once

#include <fmt/format.h>

#include <string_view>

#include "runtime/errors.h"

namespace ktl {

// What fails while a setting, a column or a file is read is told with its name, under the same number.
template <typename Read>
auto Naming(std::string_view name, const Read& read) {
  try {
    return read();
  } catch (const RuntimeError& why) {
    throw RuntimeError(why.number(), fmt::format("{}: {}", name, why.description()));
  }
}

}  // namespace ktl
