#include "database/connection_string.h"

#include "runtime/text.h"

namespace ktl {

std::string ConnectionSetting(std::string_view connectionString, std::string_view key) {
  for (const auto& part : Split(connectionString, ";")) {
    const auto equals = part.find('=');
    if (equals == std::string::npos) continue;
    if (EqualsNoCase(Trim(std::string_view(part).substr(0, equals)), key))
      return Trim(std::string_view(part).substr(equals + 1));
  }
  return "";
}

}  // namespace ktl
