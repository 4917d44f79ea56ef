#pragma once

#include <memory>

#include "machine/machine.h"

namespace ktl {

// From now on SIGTERM, SIGINT and SIGHUP only make Environment::MustEnd true: the program ends by itself, in
// order. The answer is a descriptor that can be read then, for who waits in an event loop.
int EndOnSignals();

// The machine that the program runs on. Reads KTL_SETTINGS, KTL_FOLDER and KTL_TODAY from the environment.
class RealMachine final {
 public:
  // Throws RuntimeError when KTL_TODAY is no date as yyyy-mm-dd.
  explicit RealMachine(const char* argv0);
  ~RealMachine();

  Machine machine();

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace ktl
