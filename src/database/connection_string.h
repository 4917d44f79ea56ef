#pragma once

#include <string>
#include <string_view>

namespace ktl {

// "Provider=SQLite;Data Source=FILE;": the value of a key, without blanks around it; "" when it is not there.
// Keys are found without regard to letter case.
std::string ConnectionSetting(std::string_view connectionString, std::string_view key);

}  // namespace ktl
