#pragma once

#include <initializer_list>

namespace ktl {

class Button;
struct Session;

// Whose lock turns off what writes: the user's, or the one of the employee chosen as well.
enum class WriteLock { OfUser, OfUserAndEmployee };

// Off where nothing may be written, with the reason to tell; true when they are on.
bool EnableWriting(const Session& session, std::initializer_list<Button*> buttons,
                   WriteLock lock = WriteLock::OfUserAndEmployee);

}  // namespace ktl
