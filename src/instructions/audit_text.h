#pragma once

#include <string>
#include <vector>

namespace ktl {

// A field of an audit text: what it holds now and what it held when it was loaded ("" when it was empty or
// new).
struct AuditField {
  std::string label;
  std::string newText;
  std::string oldText;
};

// ":Label = new" of each field, ":Label = new (old)" of a changed one; a field that holds nothing now is left
// out.
std::string AuditPairs(const std::vector<AuditField>& fields);

}  // namespace ktl
