#include "instructions/modAdvLoan.h"
#include "instructions/modSIMaster.h"
#include "recovery/modEMIDet.h"
#include "recovery/modInterestMaster.h"
#include "recovery/modReceipts.h"
#include "runtime/errors.h"
#include "start/startup.h"

namespace ktl {

namespace {

// A screen that works on the instruction of the screen that opens it, and never without one.
template <typename ScreenType>
void AddOfInstruction(ScreenRegistry& screens, const char* name) {
  screens.Add(name, [](Session& session, Screen* parent) -> std::unique_ptr<Screen> {
    auto* instruction = dynamic_cast<InstructionParent*>(parent);
    if (instruction == nullptr) throw RuntimeError::InvalidProcedureCall();
    return std::make_unique<ScreenType>(session, *instruction);
  });
}

}  // namespace

void RegisterScreens(ScreenRegistry& screens) {
  screens.Add("modAdvLoan", [](Session& session, Screen*) { return std::make_unique<modAdvLoan>(session); });
  screens.Add("modSIMaster", [](Session& session, Screen* parent) {
    return std::make_unique<modSIMaster>(session, parent);
  });
  AddOfInstruction<modEMIDet>(screens, "modEMIDet");
  AddOfInstruction<modReceipts>(screens, "modReceipts");
  AddOfInstruction<modInterestMaster>(screens, "modInterestMaster");
}

}  // namespace ktl
