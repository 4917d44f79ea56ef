#include "instructions/instruction_type.h"

#include "frame/session.h"

namespace ktl {

std::string InstructionCaption(Session& session, int siType) {
  return session.data
      .FnVarGetDbValue(
          "Select PDLISTDESC From MAS_PULLDOWNVALUES Where REFID = 5 And PDID = " + std::to_string(siType),
          "")
      .ToText();
}

}  // namespace ktl
