#pragma once

namespace ktl {

struct Session;

// "Updated" under "Saving Information"; the box closes itself after one second.
void ShowSaved(Session& session);

}  // namespace ktl
