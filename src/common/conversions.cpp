#include <algorithm>
#include <array>
#include <cstdlib>
#include <utility>

#include "common/amounts.h"
#include "common/month_year.h"
#include "runtime/date.h"
#include "runtime/text.h"
#include "screen/desk.h"

namespace ktl {
namespace {

bool EndsWord(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

}  // namespace

std::string clsGenCmn::FnStrClearAllNonFileChar(std::string_view text) {
  std::string name(text);
  std::erase_if(name, [](char c) {
    const int key = static_cast<unsigned char>(c);
    return FnIntAllowAllFileNameChrs(key) != key;
  });
  return name;
}

std::string clsGenCmn::FnStrConvertToDate(std::string_view text) {
  return FormatDateText(clsDateHandle::FnStrCorrectDate(text), "dd/MMM/yyyy");
}

std::string clsGenCmn::FnStrConvertToUpper(std::string_view text) { return UpperCase(text); }

std::string clsGenCmn::FnStrConvertToTitle(std::string_view text) { return FnStrConvProperCase(text); }

std::string clsGenCmn::FnStrConvProperCase(std::string_view text) {
  const std::string small = LowerCase(text);
  std::string proper;
  bool beginsWord = true;
  for (std::size_t at = 0; at < small.size();) {
    const std::string character = Left(std::string_view(small).substr(at), 1);
    proper += beginsWord ? UpperCase(character) : character;
    beginsWord = EndsWord(small[at]);
    at += character.size();
  }
  return proper;
}

std::string clsGenCmn::FnStrConvSmallcase(std::string_view text) { return LowerCase(text); }

std::string clsGenCmn::FnStrCorrectFileName(std::string_view text) {
  std::string name(text);
  for (const std::string_view dropped : {"'", "/", ",", "*", "\u0082", "(", ")", " "})
    name = ReplaceAll(std::move(name), dropped, "");
  return name;
}

std::string clsGenCmn::FnStrSuffixST_ND_RD_TH(long number) {
  const long tens = std::labs(number % 100);
  if (tens >= 11 && tens <= 13) return "th";
  switch (tens % 10) {
    case 1:
      return "st";
    case 2:
      return "nd";
    case 3:
      return "rd";
    default:
      return "th";
  }
}

std::string clsGenCmn::FnStrPADL(std::string_view text, std::size_t width, char fill) {
  const std::size_t length = Length(text);
  return std::string(width > length ? width - length : 0, fill).append(text);
}

std::string clsGenCmn::FnStrEncryptWord(std::string_view text) {
  constexpr unsigned char kHighBit = 0x80;
  std::string scrambled(text);
  for (char& byte : scrambled) byte = static_cast<char>(static_cast<unsigned char>(byte) ^ kHighBit);
  return scrambled;
}

// Every key byte has its high bit set, so that no plain character comes out as a zero.
std::string clsGenCmn::FnStrAccessPassword(std::string_view text) {
  constexpr std::array<char32_t, 12> kKey = {0xA7, 0xD2, 0x8E, 0xF1, 0xB4, 0x99,
                                             0xC6, 0xEB, 0x93, 0xDC, 0x85, 0xBA};
  std::string scrambled;
  for (std::size_t i = 0; !text.empty(); ++i)
    AppendCharacter(scrambled, TakeCharacter(text) ^ kKey[i % kKey.size()]);
  return scrambled;
}

Answer clsGenCmn::FnLngDeleteBox(Desk& desk) {
  return desk.Confirm("Delete This Record ?", "Confirm Deleting :") ? Answer::Yes : Answer::No;
}

}  // namespace ktl
