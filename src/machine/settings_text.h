#pragma once

#include <map>
#include <string>
#include <string_view>

namespace ktl {

// The text form of the settings store: "[section]" lines, "key=value" lines, comments behind ";" or "#".
// Names and values are written with "\" escapes, so that any bytes survive.

// Values by SettingName. Throws std::invalid_argument with "line N: why" for a line that is none of the
// above.
std::map<std::string, std::string, std::less<>> ParseSettings(std::string_view text);
// The text with one value changed or added; every other line stays as it is.
std::string WithSetting(std::string_view text, std::string_view section, std::string_view key,
                        std::string_view value);

// Letter case does not count.
std::string SettingName(std::string_view section, std::string_view key);

}  // namespace ktl
