#pragma once

#include <string>
#include <unordered_map>

#include "database/driver.h"
#include "database/tsql/words.h"

namespace ktl {

enum class FieldKind { Text, Integer, Real, Date };
using FieldKinds = std::unordered_map<std::string, FieldKind, tsql::WordHash, tsql::WordEqual>;

// The value as its field stores it: a text for a date is read day first, a number for a whole one is rounded
// half to even. Throws DatabaseError for a value that does not fit, and for a field that is not there.
Value FittedValue(const Assignment& assignment, const FieldKinds& fields);

}  // namespace ktl
