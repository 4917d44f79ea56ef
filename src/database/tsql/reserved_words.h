#pragma once

#include <string_view>

namespace ktl::tsql {

// A word that SQL Server takes for a name only in brackets.
bool IsReservedWord(std::string_view word);

}  // namespace ktl::tsql
