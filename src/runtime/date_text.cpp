#include <array>

#include "runtime/date.h"
#include "runtime/text.h"

namespace ktl {
namespace {

constexpr std::array<std::string_view, 12> kMonthNames = {"January",   "February", "March",    "April",
                                                          "May",       "June",     "July",     "August",
                                                          "September", "October",  "November", "December"};
constexpr std::array<std::string_view, 7> kDayNames = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                                       "Thursday", "Friday", "Saturday"};
constexpr std::size_t kShortName = 3;

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 0x20) : c; }
bool IsLetter(char c) { return Lower(c) >= 'a' && Lower(c) <= 'z'; }

// The month that the whole word names, 0 when it names none.
int MonthByName(std::string_view word) {
  for (std::size_t i = 0; i < kMonthNames.size(); ++i)
    if (EqualsNoCase(word, kMonthNames[i]) || EqualsNoCase(word, kMonthNames[i].substr(0, kShortName)))
      return static_cast<int>(i) + 1;
  return 0;
}

// Reads a date from the left. Every Read gives false, and the text is no date, when what it looks for is not
// there.
class DateReader {
 public:
  explicit DateReader(std::string_view text) : text_(text) {}

  std::optional<Date> Read();

 private:
  struct Part {
    int number = 0;
    std::size_t length = 0;  // digits; 0 for a month by its name
    bool IsYear() const { return length > 2; }
    bool IsName() const { return length == 0; }
  };

  void SkipBlanks() {
    while (at_ < text_.size() && text_[at_] == ' ') ++at_;
  }
  bool AtEnd() const { return at_ == text_.size(); }
  char Peek() const { return AtEnd() ? '\0' : text_[at_]; }

  bool ReadSeparator();
  bool ReadDigits(Part& part);
  bool ReadName(Part& part);
  bool ReadParts();
  bool Arrange();
  bool ReadTime();
  bool ReadClock();
  bool ReadHalfOfDay();

  static int FullYear(const Part& part) {
    if (part.length != 2) return part.number;
    return part.number < 30 ? 2000 + part.number : 1900 + part.number;
  }

  std::string_view text_;
  std::size_t at_ = 0;
  std::array<Part, 3> parts_;
  std::size_t count_ = 0;
  int year_ = 0, month_ = 0, day_ = 0;
  int hour_ = 0, minute_ = 0, second_ = 0;
};

std::optional<Date> DateReader::Read() {
  while (!text_.empty() && text_.back() == ' ') text_.remove_suffix(1);
  if (!ReadParts() || !Arrange() || !ReadTime()) return std::nullopt;
  return Date::FromYmd(year_, month_, day_, hour_, minute_, second_);
}

bool DateReader::ReadSeparator() {
  const std::size_t before = at_;
  SkipBlanks();
  if (Peek() == '/' || Peek() == '-') ++at_;
  SkipBlanks();
  return at_ > before;
}

bool DateReader::ReadDigits(Part& part) {
  part = {};
  while (IsDigit(Peek()) && part.length < 5) {
    part.number = part.number * 10 + (text_[at_++] - '0');
    ++part.length;
  }
  return part.length >= 1 && part.length <= 4;
}

bool DateReader::ReadName(Part& part) {
  const std::size_t start = at_;
  while (IsLetter(Peek())) ++at_;
  part = {MonthByName(text_.substr(start, at_ - start)), 0};
  return part.number > 0;
}

// Two or three parts; a number with a ":" behind it begins the time and is left to it.
bool DateReader::ReadParts() {
  SkipBlanks();
  while (count_ < parts_.size()) {
    const std::size_t before = at_;
    if (count_ > 0 && !ReadSeparator()) break;
    Part& part = parts_[count_];
    if (!(IsLetter(Peek()) ? ReadName(part) : ReadDigits(part))) return false;
    if (Peek() == ':') {
      at_ = before;
      break;
    }
    ++count_;
  }
  return count_ >= 2;
}

// Year first, or day first; of two parts the day is left out, and the year is written in full: 3/10 could be
// a day.
bool DateReader::Arrange() {
  const auto [first, second, third] = parts_;
  Part day{1, 1}, month = first, year = second;
  if (count_ == 3 && first.IsYear()) {
    year = first, month = second, day = third;
  } else if (count_ == 3) {
    day = first, month = second, year = third;
  }
  if (day.IsName() || day.IsYear() || month.IsYear() || year.length < (count_ == 2 ? 3U : 2U)) return false;
  day_ = day.number;
  month_ = month.number;
  year_ = FullYear(year);
  return true;
}

bool DateReader::ReadTime() {
  if (AtEnd()) return true;
  if (Peek() != ' ' && Peek() != 'T') return false;
  ++at_;
  SkipBlanks();
  return ReadClock() && ReadHalfOfDay() && AtEnd();
}

bool DateReader::ReadClock() {
  Part part;
  if (!ReadDigits(part) || part.IsYear() || Peek() != ':') return false;
  hour_ = part.number;
  ++at_;
  if (!ReadDigits(part) || part.IsYear()) return false;
  minute_ = part.number;
  if (Peek() != ':') return true;
  ++at_;
  if (!ReadDigits(part) || part.IsYear()) return false;
  second_ = part.number;
  if (Peek() == '.') {  // parts of a second, as databases write them
    ++at_;
    while (IsDigit(Peek())) ++at_;
  }
  return true;
}

bool DateReader::ReadHalfOfDay() {
  SkipBlanks();
  const std::string_view word = text_.substr(at_);
  if (word.empty()) return true;
  const bool afternoon = EqualsNoCase(word, "PM");
  if ((!afternoon && !EqualsNoCase(word, "AM")) || hour_ < 1 || hour_ > 12) return false;
  hour_ = hour_ % 12 + (afternoon ? 12 : 0);
  at_ = text_.size();
  return true;
}

void AppendNumber(std::string& text, int number, int digits) {
  int power = 1;
  for (int i = 1; i < digits; ++i) power *= 10;
  while (number / power >= 10) power *= 10;
  for (; power > 0; power /= 10) text += static_cast<char>('0' + number / power % 10);
}

void AppendDay(std::string& text, const Date& date, int letters) {
  const std::string_view name = kDayNames[static_cast<std::size_t>(date.weekday() - 1)];
  if (letters <= 2)
    AppendNumber(text, date.day(), letters);
  else
    text += letters == 3 ? name.substr(0, kShortName) : name;
}

void AppendMonth(std::string& text, const Date& date, int letters) {
  const std::string_view name = kMonthNames[static_cast<std::size_t>(date.month() - 1)];
  if (letters <= 2)
    AppendNumber(text, date.month(), letters);
  else
    text += letters == 3 ? name.substr(0, kShortName) : name;
}

void AppendYear(std::string& text, const Date& date, int letters) {
  if (letters <= 2)
    AppendNumber(text, date.year() % 100, 2);
  else
    AppendNumber(text, date.year(), 4);
}

constexpr std::string_view kHalfOfDay = "AM/PM";

bool StandsHalfOfDay(std::string_view pattern, std::size_t at) {
  return EqualsNoCase(pattern.substr(at, kHalfOfDay.size()), kHalfOfDay);
}

// Writes one date by one pattern, field by field.
class DateWriter {
 public:
  DateWriter(const Date& date, std::string_view pattern) : date_(date), pattern_(pattern) {
    for (std::size_t at = 0; at < pattern.size(); ++at) twelveHours_ |= StandsHalfOfDay(pattern, at);
  }

  std::string Write();

 private:
  void AppendField(char letter, int letters);
  int Hour() const { return twelveHours_ ? (date_.hour() + 11) % 12 + 1 : date_.hour(); }

  const Date& date_;
  std::string_view pattern_;
  bool twelveHours_ = false;
  bool afterHour_ = false;
  std::string text_;
};

std::string DateWriter::Write() {
  std::size_t at = 0;
  while (at < pattern_.size()) {
    const char letter = Lower(pattern_[at]);
    if (letter == 'a' && StandsHalfOfDay(pattern_, at)) {
      text_ += date_.hour() < 12 ? "AM" : "PM";
      at += kHalfOfDay.size();
    } else if (std::string_view("dmyhns").find(letter) != std::string_view::npos) {
      const std::size_t start = at;
      while (at < pattern_.size() && Lower(pattern_[at]) == letter) ++at;
      AppendField(letter, static_cast<int>(at - start));
    } else {
      text_ += pattern_[at++];
    }
  }
  return std::move(text_);
}

void DateWriter::AppendField(char letter, int letters) {
  const bool isMinute = letter == 'n' || (letter == 'm' && afterHour_ && letters <= 2);
  afterHour_ = letter == 'h';
  if (isMinute) return AppendNumber(text_, date_.minute(), letters);
  switch (letter) {
    case 'd':
      return AppendDay(text_, date_, letters);
    case 'm':
      return AppendMonth(text_, date_, letters);
    case 'y':
      return AppendYear(text_, date_, letters);
    case 'h':
      return AppendNumber(text_, Hour(), letters);
    default:
      return AppendNumber(text_, date_.second(), letters);
  }
}

}  // namespace

std::optional<Date> ParseDate(std::string_view text) { return DateReader(text).Read(); }

bool IsDate(std::string_view text) { return ParseDate(text).has_value(); }

std::string FormatDate(const Date& date, std::string_view pattern) {
  return DateWriter(date, pattern).Write();
}

std::string FormatDateText(std::string_view text, std::string_view pattern) {
  const std::optional<Date> date = ParseDate(text);
  return date ? FormatDate(*date, pattern) : std::string(text);
}

}  // namespace ktl
