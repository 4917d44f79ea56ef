#include "instructions/modSIMaster.h"

namespace ktl {

modSIMaster::modSIMaster(Session& session, Screen*) : Screen("modSIMaster"), session_(session) {}

void modSIMaster::Form_Load() {}
void modSIMaster::Form_Activate() {}
void modSIMaster::cmdNew_Click() {}
void modSIMaster::cmdSave_Click() {}
void modSIMaster::cmdDelete_Click() {}
void modSIMaster::fpgSIMaster_Click(std::size_t) {}

}  // namespace ktl
