#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "runtime/value.h"

namespace ktl {

// A statement whose numbers stand apart from it, so that what is said of one employee and one month is read,
// written out and prepared once for all of them: ?1, ?2, ... for whole numbers, "?2." for one with decimals.
struct SharedText {
  std::string sql;
  std::vector<Value> numbers;
};

// Takes the numbers that are compared, assigned or listed behind VALUES out of a SELECT, INSERT, UPDATE or
// DELETE. Numbers anywhere else can mean a place or a count (TOP 1, ORDER BY 2) and stay, and so do those
// whose decimals the database might read a little differently. What is no such statement comes back as it
// stands.
void ShareNumbers(std::string_view sql, SharedText& shared);

}  // namespace ktl
