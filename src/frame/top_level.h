#pragma once

namespace ktl {

class Screen;
struct Session;

// What every top-level screen does first on load: it becomes the active form and its window handle goes to
// the store.
void EnterTopLevel(Session& session, Screen& screen);
// ... and last on unload: the handle is cleared and the host's status line too.
void LeaveTopLevel(Session& session);

// Puts the window's handle back after another program has used the key.
void RegisterWindow(Session& session);

// Clears the host's status line; a failure is shown, not passed on.
void StatusClose(Session& session);

}  // namespace ktl
