#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "runtime/date.h"

namespace ktl {

// How the embedded database keeps a date, so that text order is time order: "2010-04-26", with " 09:30:00"
// behind it only when the time is not midnight.
std::string StoredDate(const Date& date);
// Nothing for a text of any other form.
std::optional<Date> FromStoredDate(std::string_view text);
// What a literal or a field may hold: day, month, year or year, month, day, with an optional time.
std::optional<Date> ParseDateLiteral(std::string_view text);

}  // namespace ktl
