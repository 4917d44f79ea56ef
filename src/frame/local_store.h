#pragma once

#include <memory>
#include <string>

#include "database/connection.h"

namespace ktl {

struct Session;

// The small store of tax settings (ITSETTING), "klgen.MDB" of the program's folder unless another path is
// given. Throws DatabaseError when it is not there.
std::unique_ptr<Connection> OpenLocalStore(Session& session, const std::string& path = "");

}  // namespace ktl
