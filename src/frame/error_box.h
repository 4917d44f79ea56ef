#pragma once

#include "screen/controls.h"

namespace ktl {

struct Session;

// The handler with the screens' own answer to a failure: a critical box with the number, a tab and the description.
Handler WithErrorBox(Session& session, Handler handler);

}  // namespace ktl
