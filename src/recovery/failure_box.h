#pragma once

#include <string>

#include "screen/controls.h"

namespace ktl {

struct Session;

// The handler with a critical box for a failure: its description, " : ", its number.
Handler WithNumberedErrorBox(Session& session, std::string title, Handler handler);

}  // namespace ktl
