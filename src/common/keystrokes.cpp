#include <string_view>

#include "common/amounts.h"
#include "runtime/text.h"

namespace ktl {
namespace {

bool IsControl(int key) {
  return key == 1 || key == 3 || key == 8 || key == 13 || key == 22 || key == 24 || key == 26;
}

bool IsDigit(int key) { return key >= '0' && key <= '9'; }
bool IsCapital(int key) { return key >= 'A' && key <= 'Z'; }
bool IsSmall(int key) { return key >= 'a' && key <= 'z'; }
bool IsLetter(int key) { return IsCapital(key) || IsSmall(key); }

bool IsOneOf(int key, std::string_view characters) {
  return key > 0 && key < 128 && characters.find(static_cast<char>(key)) != characters.npos;
}

bool IsFirst(int key, char character, std::string_view text) {
  return key == character && text.find(character) == text.npos;
}

int Pass(int key, bool allowed) { return allowed || IsControl(key) ? key : 0; }

constexpr int kCaseDistance = 'a' - 'A';

}  // namespace

int clsGenCmn::FnIntAllowAmtOnly(int key, std::string_view text) {
  return Pass(key, IsDigit(key) || key == ',' || IsFirst(key, '.', text));
}

int clsGenCmn::FnIntAllowAmountOnly(int key, std::string_view text) {
  return Pass(key, IsDigit(key) || IsFirst(key, '.', text));
}

int clsGenCmn::FnIntAllowNegativeAmtAlso(int key, std::string_view text) {
  return Pass(key, IsDigit(key) || key == ',' || IsFirst(key, '.', text) || IsFirst(key, '-', text));
}

int clsGenCmn::FnIntAllowDoubleOnly(int key, std::string_view text) {
  return FnIntAllowAmountOnly(key, text);
}

int clsGenCmn::FnIntAllowNumbersOnly(int key) { return Pass(key, IsDigit(key)); }

int clsGenCmn::FnIntAllowDateOnly(int key) { return Pass(key, IsDigit(key) || IsOneOf(key, " -./")); }

int clsGenCmn::FnIntAllowDateOnlyWithAlpha(int key) {
  return Pass(key, IsDigit(key) || IsLetter(key) || IsOneOf(key, " -./"));
}

int clsGenCmn::DateKey(int key) { return FnIntAllowDateOnly(IsOneOf(key, ",_\\") ? '/' : key); }

int clsGenCmn::DateKeyWithAlpha(int key) {
  return FnIntAllowDateOnlyWithAlpha(IsOneOf(key, ",_\\") ? '/' : key);
}

int clsGenCmn::FnIntAllowCapitalsOnly(int key) { return IsSmall(key) ? key - kCaseDistance : key; }

int clsGenCmn::FnIntAllowLowerCaseOnly(int key) { return IsCapital(key) ? key + kCaseDistance : key; }

int clsGenCmn::FnIntAllowAlphaNumaralsOnly(int key) {
  return Pass(key, IsLetter(key) || IsDigit(key) || key == '-');
}

int clsGenCmn::FnIntAllowAlphabetsOnly(int key) { return Pass(key, IsLetter(key) || key == '-'); }

int clsGenCmn::FnIntAllowOnlyEvalNumarals(int key) {
  return Pass(key, IsDigit(key) || IsOneOf(key, "()*+,-./"));
}

int clsGenCmn::FnIntAllowExprsnOnly(int key) { return Pass(key, IsDigit(key) || IsOneOf(key, "()*+-./")); }

int clsGenCmn::FnIntAllowAllNonSpecial(int key) { return Pass(key, !IsOneOf(key, "\"#'[\\]|")); }

int clsGenCmn::FnIntAllowAllFileNameChrs(int key) { return Pass(key, !IsOneOf(key, "\"*/:<>?\\`|")); }

int clsGenCmn::FnIntLimitMaxLength(std::string_view text, int key, std::size_t maximum) {
  return Pass(key, Length(text) < maximum);
}

}  // namespace ktl
