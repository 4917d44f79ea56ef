#pragma once

#include <string>

#include "screen/controls.h"

namespace ktl {

struct Session;

// The handler with the screens' own answer to a failure: a critical box with the number, a tab and the
// description. Under the application's title, or the given one.
Handler WithErrorBox(Session& session, Handler handler);
Handler WithErrorBox(Session& session, Handler handler, std::string title);
// The same with the description first: the description, " : ", the number.
Handler WithNumberedErrorBox(Session& session, Handler handler, std::string title);

}  // namespace ktl
