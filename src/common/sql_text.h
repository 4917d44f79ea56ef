#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace ktl {

// "O'Brien" as "O''Brien": the part of every dialect.
std::string DoubleQuotes(std::string_view text);
// A searched text inside a LIKE pattern, where "%", "_" and "[" find themselves. Its quotes are doubled as
// well.
std::string LikePattern(std::string_view searched);
// The condition that a column is one of the numbers. Where most numbers between them are meant it is theirs
// all the same, others included: such texts differ in two numbers only and are read once by the database.
std::string AmongNumbers(std::string_view column, std::span<const long> numbers);

// Values typed by a person, made safe for a statement. Plain replacements in a fixed order; no state but the
// dialect word ("SQL", "MYSQL", "ACC97", ...), which the caller reads from the settings ("Settings",
// "DBType", default "ACC97").
class clsSPChar {
 public:
  explicit clsSPChar(std::string_view dbType);

  std::string FnStrSpSQL(std::string_view text) const;       // inside a quoted literal
  static std::string FnStrSpLikeSQL(std::string_view text);  // inside a LIKE pattern
  static std::string FnStrSpFFSQL(std::string_view text);
  static std::string FnStrSpFFLikeSQL(std::string_view text);
  static std::string FnStrSpRep(std::string_view text);  // the text as a quoted literal of a find expression
  // Overwrites inside a fixed-width text, position from 1.
  static std::string FnStrSpeReplace(std::string_view text, std::size_t position,
                                     std::string_view replacement);
  static std::string FnStrChangeAllSp(std::string_view text);
  static std::string FnStrClearAllSp(std::string_view text);  // for the audit trail

 private:
  std::string dbType_;
};

}  // namespace ktl
