#include "frame/startup.h"

namespace ktl {

void RegisterScreens(ScreenRegistry&) {}

}  // namespace ktl
