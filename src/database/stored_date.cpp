#include "database/stored_date.h"

#include <fmt/format.h>

#include <algorithm>

namespace ktl {

namespace {

// -1 when there is anything but digits.
int Digits(std::string_view text) {
  int value = 0;
  for (char c : text) {
    if (c < '0' || c > '9') return -1;
    value = value * 10 + (c - '0');
  }
  return value;
}

}  // namespace

std::string StoredDate(const Date& date) {
  std::string text = fmt::format("{:04}-{:02}-{:02}", date.year(), date.month(), date.day());
  if (date.HasTime()) text += fmt::format(" {:02}:{:02}:{:02}", date.hour(), date.minute(), date.second());
  return text;
}

std::optional<Date> FromStoredDate(std::string_view text) {
  if ((text.size() != 10 && text.size() != 19) || text[4] != '-' || text[7] != '-') return std::nullopt;
  const int year = Digits(text.substr(0, 4)), month = Digits(text.substr(5, 2)),
            day = Digits(text.substr(8, 2));
  if (year < 0 || month < 0 || day < 0) return std::nullopt;
  if (text.size() == 10) return Date::FromYmd(year, month, day);
  if (text[10] != ' ' || text[13] != ':' || text[16] != ':') return std::nullopt;
  const int hour = Digits(text.substr(11, 2)), minute = Digits(text.substr(14, 2)),
            second = Digits(text.substr(17));
  if (hour < 0 || minute < 0 || second < 0) return std::nullopt;
  return Date::FromYmd(year, month, day, hour, minute, second);
}

std::optional<Date> ParseDateLiteral(std::string_view text) {
  if (auto date = FromStoredDate(text)) return date;
  // A month and a year alone name no day.
  if (std::ranges::count(text, '/') + std::ranges::count(text, '-') != 2) return std::nullopt;
  return ParseDate(text);
}

}  // namespace ktl
