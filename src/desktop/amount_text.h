#pragma once

#include <QString>
#include <string>

namespace ktl {

// An amount for reading, in Indian grouping: "1234567.89" is shown as "12,34,567.89". Any other text, and one
// without decimals (a counter, a serial number), is shown as it stands.
QString ReadableAmount(const std::string& text);

}  // namespace ktl
