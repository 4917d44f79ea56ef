#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace ktl {

class DataAccess;
class Desk;
class Value;
enum class Answer;

inline constexpr double kAmountLimit = 9999999999.99;

// By ROUNDTYPE 1 to 6: nearest rupee, next rupee, nearest ten, next ten, two decimals, next 5 paise; another
// type gives 0. The sign is set aside and put back.
double FnDblRoundByType(int type, double value);
double FnDblRoundUp(double value);
// As lists show an amount: two decimals, nothing for null.
std::string ShownAmount(double amount);
std::string ShownAmount(const Value& amount);
std::string ShownAmount(const std::optional<double>& amount);
bool FnBlnWithinLimit(std::string_view text, double limit);

// Formatting, words and keystroke filters. A filter takes a character code and gives it back, another one, or
// 0 to drop it; `text` is what the box holds so far.
class clsGenCmn {
 public:
  // Commas removed, then the number that the text begins with.
  static double FnDblTrimVal(std::string_view text);
  static std::string FnStrCormat(std::string_view text, int decimals);  // Indian grouping; "" for zero
  static std::string FnStrConvertToCommaNumber(std::string_view text, int decimals);
  static std::string FnStrRestrictAmount(std::string_view text, double limit);
  static std::string FnStrRupeeInWords(double& amount);  // makes the argument positive

  static int FnIntAllowAmtOnly(int key, std::string_view text);
  static int FnIntAllowAmountOnly(int key, std::string_view text);
  static int FnIntAllowNegativeAmtAlso(int key, std::string_view text);
  static int FnIntAllowDoubleOnly(int key, std::string_view text);
  static int FnIntAllowNumbersOnly(int key);
  static int FnIntAllowDateOnly(int key);
  static int FnIntAllowDateOnlyWithAlpha(int key);
  // Of fields whose text is corrected to a date or a month when they are left: ",", "_" and "\\" are "/" at
  // once.
  static int DateKey(int key);
  static int DateKeyWithAlpha(int key);
  static int FnIntAllowCapitalsOnly(int key);
  static int FnIntAllowLowerCaseOnly(int key);
  static int FnIntAllowAlphaNumaralsOnly(int key);
  static int FnIntAllowAlphabetsOnly(int key);
  static int FnIntAllowOnlyEvalNumarals(int key);
  static int FnIntAllowExprsnOnly(int key);
  static int FnIntAllowAllNonSpecial(int key);
  static int FnIntAllowAllFileNameChrs(int key);
  static int FnIntLimitMaxLength(std::string_view text, int key, std::size_t maximum);

  static std::string FnStrClearAllNonFileChar(std::string_view text);
  static std::string FnStrConvertToDate(std::string_view text);  // "dd/MMM/yyyy", "" when it is no date
  // Like the comma number, without commas.
  static std::string FnStrConvertToNumber(std::string_view text, int decimals);
  static std::string FnStrConvertToUpper(std::string_view text);
  static std::string FnStrConvertToTitle(std::string_view text);
  static std::string FnStrConvProperCase(std::string_view text);
  static std::string FnStrConvSmallcase(std::string_view text);
  static std::string FnStrCorrectFileName(std::string_view text);
  static std::string FnStrSuffixST_ND_RD_TH(long number);
  static std::string FnStrPADL(std::string_view text, std::size_t width, char fill = ' ');
  // Each byte below 128 gains 128, any other loses it: twice gives any text back.
  static std::string FnStrEncryptWord(std::string_view text);
  // Another scrambling, by a fixed key: twice gives the text back as well.
  static std::string FnStrAccessPassword(std::string_view text);

  static Answer FnLngDeleteBox(Desk& desk);  // Yes or No, No by default
};

class clsCtrlDep {
 public:
  explicit clsCtrlDep(DataAccess& data) : data_(data) {}
  bool FnBlnMatchedWithList(std::string_view field, std::string_view table, std::string_view value,
                            std::string_view condition = "");
  long FnLngGetNextNumber(std::string_view field, std::string_view table, std::string_view condition = "");
  bool FnBlnGetYesNo(std::string_view field, std::string_view table);

 private:
  DataAccess& data_;
};

}  // namespace ktl
