#pragma once

namespace ktl {

struct Session;

// Names this workstation's filter table and employee view in the session and makes them anew: every employee
// is in the table, every flag at 1.
void PrepareWorkstationObjects(Session& session);

}  // namespace ktl
