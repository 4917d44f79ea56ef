#include "frame/startup.h"
#include "instructions/modAdvLoan.h"
#include "instructions/modSIMaster.h"

namespace ktl {

void RegisterScreens(ScreenRegistry& screens) {
  screens.Add("modAdvLoan", [](Session& session, Screen*) { return std::make_unique<modAdvLoan>(session); });
  screens.Add("modSIMaster",
              [](Session& session, Screen* parent) { return std::make_unique<modSIMaster>(session, parent); });
}

}  // namespace ktl
