#include "instructions/audit_text.h"

namespace ktl {

std::string AuditPairs(const std::vector<AuditField>& fields) {
  std::string text;
  for (const AuditField& field : fields) {
    if (field.newText.empty()) continue;
    text += ":" + field.label + " = " + field.newText;
    if (!field.oldText.empty() && field.oldText != field.newText) text += " (" + field.oldText + ")";
  }
  return text;
}

}  // namespace ktl
