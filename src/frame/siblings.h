#pragma once

#include "frame/machine.h"

namespace ktl {

// Starts the product's other programs: looked for in the program's folder, then in PATH. The argument text is
// one argument of theirs.
class LocalSiblings final : public SiblingPrograms {
 public:
  explicit LocalSiblings(const ProgramFolder& folder) : folder_(folder) {}
  bool Start(const Sibling& sibling) override;

 private:
  const ProgramFolder& folder_;
};

}  // namespace ktl
