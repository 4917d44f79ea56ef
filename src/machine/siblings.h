#pragma once

#include "machine/machine.h"

namespace ktl {

// The product's other programs as processes. One is looked for in the program's folder, in the current
// folder, then in the sibling's own search folder. What it writes to its standard output is its status.
class LocalSiblings final : public SiblingPrograms {
 public:
  explicit LocalSiblings(const ProgramFolder& folder) : folder_(folder) {}
  std::string Find(const Sibling& sibling) override;
  std::unique_ptr<SiblingProcess> Launch(const std::string& path, const Sibling& sibling) override;
  bool IsAlive(long windowHandle) override;

 private:
  const ProgramFolder& folder_;
};

}  // namespace ktl
