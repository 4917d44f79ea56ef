#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "formula/clsExprEval.h"
#include "runtime/errors.h"

namespace ktl {
namespace {

// Evaluated on 15/Aug/2010 at 10:30.
Value Evaluate(std::string_view text, const TokenTable& first = {}, const TokenTable& second = {}) {
  const clsExprEval evaluator([] { return *Date::FromYmd(2010, 8, 15, 10, 30, 0); });
  return evaluator.EvaluateExpression(text, first, second);
}

// The kind of a value and its text, so that a number and the text of a number differ.
std::string Shown(const Value& value) {
  if (value.IsNull()) return "null";
  if (value.IsEmpty()) return "empty";
  if (value.IsText()) return '"' + value.ToText() + '"';
  return value.ToText();
}

using Cases = std::vector<std::pair<std::string, const char*>>;

void ExpectAll(const Cases& cases, const TokenTable& first = {}, const TokenTable& second = {}) {
  for (const auto& [expression, shown] : cases)
    EXPECT_EQ(Shown(Evaluate(expression, first, second)), shown) << expression.substr(0, 100);
}

void ExpectEach(const char* shown, const std::vector<std::string>& expressions) {
  for (const auto& expression : expressions) ExpectAll({{expression, shown}});
}

constexpr const char* kDivideByZero = "\"ERROR: Divide By Zero Error\"";
constexpr const char* kInvalidArgument = "\"ERROR: Invalid argument\"";
constexpr const char* kMissingBrace = "\"ERROR: Missing closing braces )\"";
constexpr const char* kBadSyntax = "\"ERROR: Either bad syntax or ( missing\"";
constexpr const char* kInvalid = "\"ERROR: Invalid expression\"";

TEST(Expression, ReadsLiterals) {
  ExpectAll({
      {" .5\t", "0.5"},
      {"5.", "5"},
      {"1E-2", "0.01"},
      {"1E-999", "0"},
      {"&hffff", "-1"},
      {"&HFFFF&", "65535"},
      {"&H10000", "65536"},
      {"&HFFFFFFFF", "-1"},
      {"&O17 + &17", "30"},
      {"\"Say \"\"hi\"\"\"", "\"SAY \"HI\"\""},
      {"\"\"", "\"\""},
      {"true", "True"},
      {"empty", "empty"},
      {"null", "null"},
      {"1 + 1 ' the rest is a remark (", "2"},
  });
}

TEST(Expression, OrdersAndRoundsOperands) {
  ExpectAll({
      {"2 ^ 3 ^ 2", "64"},
      {"-2 ^ 2", "-4"},
      {"2 ^ -1 * 3", "1.5"},
      {"- - 3", "3"},
      {"20 / 2 * 5", "50"},
      {"100 \\ 3 * 2", "16"},
      {"17 Mod 10 \\ 3", "2"},
      {"10 + 7 Mod 4", "13"},
      {"10 - 3 - 2", "5"},
      {"1 + 2 & 3 + 4", "\"37\""},
      {"\"A\"&1&\"B\"", "\"A1B\""},
      {"(1 + 2) * (3 + 4)", "21"},
      {"7.5 \\ 2", "4"},
      {"6.5 \\ 2", "3"},
      {"-7 \\ 2", "-3"},
      {"10.5 Mod 4", "2"},
      {"11.5 Mod 5", "2"},
      {"-7 Mod 3", "-1"},
      {"5 And 3", "1"},
      {"5 Or 3", "7"},
      {"5 Xor 3", "6"},
      {"5 Eqv 3", "-7"},
      {"5 Imp 3", "-5"},
      {"Not 0.5", "-1"},
      {"True And 6", "6"},
      {"\"12\" And 10", "8"},
  });
  ExpectEach("True", {"1 & 2 = 12", "Not 1 = 2", "1 = 1 Or 1 = 2 And 1 = 3", "True Xor True Eqv False",
                      "1 < 2 < 3", "2 => 2 And 2 =< 2 And 1 >< 2"});
  ExpectEach("False", {"1 = Not 0 = 1", "Not True And False", "True Or True Xor True",
                       "False Eqv False Imp False", "3 > 2 > 1"});
}

TEST(Expression, MixesKinds) {
  ExpectAll({
      {"True + True", "-2"},
      {"-True", "1"},
      {"\"1,200.50\" / 2", "600.25"},
      {"\"1\" + \"2\"", "\"12\""},
      {"\"1\" + 2", "3"},
      {"True & \"\"", "\"True\""},
      {"0.1 + 0.2 & \"\"", "\"0.3\""},
      {"Empty + 5", "5"},
      {"Empty & Null & \"x\"", "\"X\""},
      {"0 And Null", "0"},
      {"KLIF(Null, 1, 2)", "2"},
      {"KLIF(\"True\", 1, 2)", "1"},
  });
  ExpectEach("True", {"\"10\" = 10", "\"9\" < 10", "\"abc\" > 999999", "\"Accounts\" = \"ACCOUNTS\"",
                      "True = -1", "Empty = 0 And Empty = \"\" And Not \"a\" = Empty", "True Or Null",
                      "False Imp Null", "IsNull(Null) And IsEmpty(Empty) And Not IsNull(0)"});
  ExpectEach("False", {"\"9\" < \"10\"", "\"abc\" < 5", "\"abc\" = 0"});
  ExpectEach("null", {"Null + 1", "Null = Null", "1 And Null", "True Imp Null", "Len(Null)"});
}

TEST(Expression, CountsWithDates) {
  ExpectAll({
      {"CDate(\"05/Apr/2010\")", "05/04/2010"},
      {"CDate(\"05/04/2010\") + 30", "05/05/2010"},
      {"CDate(\"01/Mar/2012\") - 1", "29/02/2012"},
      {"CDate(\"01/Mar/2012\") - CDate(\"01/Feb/2012\")", "29"},
      {"CDbl(CDate(\"01/01/1900\"))", "2"},
      {"CDate(2) & \"\"", "\"01/01/1900\""},
      {"KLSystemDate", "15/08/2010"},
      {"Now", "15/08/2010 10:30:00"},
      {"KLMonthYear(\"01/Apr/2010\") - KLMonthYear(\"Mar/2010\")", "1"},
      {"KLMonthYear(\"Apr/2010\")", "24124"},
      {"KLDayDiff(CDate(\"01/03/2012\"), CDate(\"28/02/2012\"))", "-2"},
      {"KLMonthDiff(\"31/Jan/2010\", \"01/Feb/2010\")", "1"},
      {"KLMonthDiff(\"15/Jan/2010\", \"20/Dec/2009\")", "-1"},
      {"KLYearDiff(\"31/Dec/2009\", \"01/Jan/2010\")", "1"},
      {"FnLngKLDaysDiff(\"01/01/2010\", \"02/01/2010\")", "1"},
      {"DateDiff(\"q\", \"31/03/2010\", \"01/04/2010\")", "1"},
      {"DateDiff(\"w\", \"01/08/2010\", \"14/08/2010\")", "1"},
      {"DateDiff(\"ww\", \"14/08/2010\", \"15/08/2010\")", "1"},  // the 15th was a Sunday
      {"DateDiff(\"h\", \"14/08/2010\", Now)", "34"},
      {"DateDiff(\"n\", Now, \"15/08/2010\")", "-630"},
      {"DateAdd(\"m\", 1, \"31/01/2012\")", "29/02/2012"},
      {"DateAdd(\"yyyy\", -1, \"29/02/2012\")", "28/02/2011"},
      {"DateAdd(\"h\", -11, Now)", "14/08/2010 23:30:00"},
      {"DatePart(\"y\", \"01/03/2012\")", "61"},
      {"DatePart(\"ww\", \"03/01/2010\")", "2"},  // a Sunday
      {"DateSerial(2010, 14, 0)", "31/01/2011"},
      {"DateSerial(29, 1, 1)", "01/01/2029"},
      {"DateSerial(30, 1, 1)", "01/01/1930"},
      {"Year(Now) * 10000 + Month(Now) * 100 + Day(Now)", "20100815"},
      {"Weekday(\"16/08/2010\") & Weekday(\"16/08/2010\", 2)", "\"21\""},
      {"MonthName(4) & MonthName(4, True)", "\"AprilApr\""},
      {"WeekdayName(7) & WeekdayName(7, True, 2)", "\"SaturdaySun\""},
  });
  ExpectEach("True",
             {"CDate(\"31/12/2009\") < CDate(\"01/01/2010\")", "CDate(\"01/Jan/2010\") = \"01/01/2010\"",
              "CDate(\"01/01/2010\") > \"31/Dec/2009\"", "KLSystemDate() = Date And Int(Now) = Date()",
              "IsDate(\"28/02/2010\") And Not IsDate(\"31/02/2010\")"});
}

TEST(Expression, RoundsLimitsAndChooses) {
  ExpectAll({
      {"KLRound(1232.4, 5, \"N\")", "1230"},
      {"KLRound(1232.5, 5, \"n\")", "1235"},
      {"KLRound(1000, 100, \"U\") + KLRound(1000, 100, \"L\")", "2000"},
      {"KLRound(1000.01, 100, \"u\")", "1100"},
      {"KLRound(1099.99, 100, \"l\")", "1000"},
      {"KLRound(-12.34, 5, \"U\")", "-10"},
      {"KLRound(-12.34, 5, \"L\")", "-15"},
      {"KLRound(-12.34, 5, \"N\")", "-12.34"},
      // Int gives -1, so nothing but the fraction counts: 0.4 is below one half.
      {"KLRound(-0.4, 1, \"N\")", "-1"},
      {"KLRound(4.999999999, 1, \"N\")", "4.999999999"},
      {"KLRound(7.5, 0, \"U\")", "7.5"},
      {"KLRound(7, 0, \"N\")", "7"},
      {"KLRound(7, 2, LCase(\"U\"))", "7"},
      {"KLRound(7, 2, 0)", "7"},
      {"KLRound(\"7\", \"2\", \"U\")", "8"},
      {"KLRound(\"7\", 2, \"X\")", "\"7\""},
      {"KLRound(12.3456, 0.05, \"L\")", "12.3"},
      {"Remainder(-13, 5)", "-3"},
      {"Remainder(13, -5)", "3"},
      {"Remainder(13, 0)", "0"},
      {"KLBetween(5, 5, 10) + KLBetween(\"10\", 5, 10)", "-2"},
      {"KLBetween(10.01, 5, 10)", "0"},
      {"KLSubjectToMax(1500, 1250)", "1250"},
      {"KLSubjectToMax(\"900\", 1250)", "\"900\""},
      {"KLSubjectToMax(\"abc\", 5)", "5"},
      {"KLSubjectToMin(100, 250) + KLSubjectToMin(300, 250)", "550"},
      {"KLIF(1 = 2, \"a\", 3)", "3"},
      {"IIF(2, 1, 0)", "1"},
  });
}

TEST(Expression, CallsTheLanguagesFunctions) {
  ExpectAll({
      {"Int(-1.5) & Fix(-1.5)", "\"-2-1\""},
      {"Abs(-2) + Sgn(-7) + Sqr(9) + Log(Exp(2))", "6"},
      {"Round(2.5) & Round(3.5) & Round(0.125, 2)", "\"240.12\""},
      {"CInt(2.5) + CInt(\"3.5\")", "6"},
      {"CSng(1234.56789) & CByte(2.5)", "\"1234.5682\""},
      {"CLng(32768.5)", "32768"},
      {"CCur(0.00005)", "0"},
      {"CBool(\"0\") Or CBool(2)", "True"},
      {"CStr(12.50)", "\"12.5\""},
      {"Left(\"Zoë K\", 3) & Right(\"Zoë K\", 3) & Mid(\"Zoë K\", 3, 2)", "\"ZOËË KË \""},
      {"Left(\"ab\", 9) & Right(\"ab\", 9) & Mid(\"ab\", 9)", "\"ABAB\""},
      {"LCase(\"AbÉ\")", "\"abé\""},
      {"\"[\" & Trim(\" a \") & LTrim(\" b \") & RTrim(\" c \") & \"]\"", "\"[AB  C]\""},
      {"InStr(\"Zoë Zoë\", \"ë\") & InStr(4, \"Zoë Zoë\", \"ë\") & InStr(\"abc\", \"d\")", "\"370\""},
      {"InStr(1, \"abc\", LCase(\"B\"), 1) & InStr(\"abc\", LCase(\"B\"))", "\"20\""},
      {"InStrRev(\"a/b/c\", \"/\") & InStrRev(\"a/b/c\", \"/\", 3)", "\"42\""},
      {"Replace(\"a-b-c\", \"-\", \"\") & Replace(\"a-b-c\", \"-\", \"+\", 3, 1)", "\"ABCB+C\""},
      {"Replace(\"abc\", \"\", \"x\")", "\"ABC\""},
      {"StrReverse(\"Zoë K\")", "\"K ËOZ\""},
      {"StrComp(\"a\", \"b\") & StrComp(LCase(\"A\"), \"A\") & StrComp(LCase(\"A\"), \"A\", 1)", "\"-110\""},
      {"Chr(65) & Asc(\"A\") & Asc(Chr(233)) & Len(\"Zoë\")", "\"A652333\""},
      {"String(3, \"xy\") & String(2, 42) & Space(1) & \".\"", "\"XXX** .\""},
      {"FormatNumber(1234567.895) & FormatNumber(1234, 0, -1, 0, 0)", "\"12,34,567.901234\""},
      {"FormatNumber(-0.5, 1, 0) & FormatNumber(-5, 0, -1, -1)", "\"-.5(5)\""},
      {"IsNumeric(\"1,000\") And Not IsNumeric(\"1x\") And Not IsNumeric(\"\")", "True"},
  });
}

TEST(Expression, NamesItsFailures) {
  ExpectEach(kDivideByZero, {"1 / 0", "0 / 0", "1 \\ 0.4", "1 Mod 0", "KLRound(7.5, 0, \"N\")",
                             "KLIF(1 = 2, 1 / 0, 3)", "1 / 0 + Gross", "Gross(1 / 0)"});
  ExpectEach("\"ERROR: Invalid function 'GROSS'\"", {"Gross(1)", "Gross()"});
  ExpectEach("\"ERROR: Invalid function 'FNDBLFNDBLKLROUND'\"", {"FnDblKLRound(7, 2, \"U\")"});
  ExpectEach("\"ERROR: Variable not defined 'GROSS'\"", {"Gross + 1", "Gross + 1 / 0", "KLIF(Gross)"});
  ExpectEach(kInvalidArgument, {"KLIF", "Len", "KLRound(1, 2)", "Date(1)"});
  // Syntax is judged first, and then from left to right.
  ExpectEach(kMissingBrace, {"(1 + 2", "KLIF(1, 2, 3", "Abs(1 2)", "1 / 0 + (2"});
  ExpectEach(kBadSyntax, {"1 + 2)", "1 2", "\"a\" \"b\"", "5(1)", "1 Not 2", "Gross + 1 2", "1 2 {"});
  ExpectEach(kInvalid, {"",
                        "  ' nothing but a remark",
                        "(",
                        "()",
                        "(1 +",
                        "1 +",
                        "* 2",
                        "Abs(,1)",
                        "Abs(1,)",
                        "Component{BASIC}",
                        "\"open",
                        "1 + If",
                        "#01/01/2010#",
                        "&HG",
                        "&H123456789",
                        "1E999",
                        "1E308 * 10",
                        "0 ^ -1",
                        "(-8) ^ 0.5",
                        "1\n+ 2",
                        "1 + 2\r\n",
                        "\"a\nb\"",
                        "1 { 2 3"});
}

TEST(Expression, RefusesValuesThatDoNotFit) {
  ExpectEach(kInvalid, {"3000000000 Mod 2", "\"a\" + 2", "\"\" + 2", "KLIF(\"yes\", 1, 2)",
                        "CDate(\"30/02/2010\")", "DatePart(\"x\", Now)", "MonthName(13)", "WeekdayName(8)",
                        "CDate(\"31/12/9999\") + 1", "Sqr(-1)", "Log(0)", "Round(1, -1)", "CInt(32768)",
                        "CByte(256)", "CDbl(\"x\")", "Mid(\"abc\", 0)", "Left(\"abc\", -1)", "Asc(\"\")"});
}

TEST(Expression, PutsTokensInBeforeAnythingElse) {
  const TokenTable components = {
      {"Component{BASIC}", "12000"}, {"", "never"}, {"(Grade)", "\"m1\""}, {"Long", "Short"}, {"short", "7"}};
  const TokenTable fields = {{"empdet{dept}", "\"Accounts\""}, {"7", "8"}};
  ExpectAll(
      {
          {"COMPONENT{basic} * 2", "24000"},
          {"(GRADE) = \"M1\"", "True"},
          {"(grade) & \"(grade)\"", kBadSyntax},  // the quotes come in inside the literal and end it
          {"long", "8"},  // Long, short, 7, 8: each row sees what the ones before put in
          {"EmpDet{Dept}", "\"ACCOUNTS\""},
          {"\"prolonged\"", "\"PRO8ED\""},
          {"\"klif\"", "\"IIF\""},
          {"unit + 1", "\"ERROR: Variable not defined 'UNIT'\""},
      },
      components, fields);
  ExpectAll({{"(name) = \"x\"", kBadSyntax}, {"\"\" & Café", "\"3\""}},
            {{"(name)", "\"5\" pipe\""}, {"café", "3"}});
}

std::string Repeat(std::string_view part, std::size_t times) {
  std::string text;
  while (times-- > 0) text += part;
  return text;
}

TEST(Expression, SurvivesAnyText) {
  constexpr std::size_t kMany = 1 << 20;
  ExpectAll({{Repeat("(", 500) + "1" + Repeat(")", 500), "1"},
             {"1" + Repeat("+1", kMany / 2), "524289"},
             {"Len(\"" + Repeat("\"\"", kMany / 2) + "\")", "524288"},
             {"Len(" + Repeat("\"x\"&", 10000) + "1)", "10001"},
             {"InStr(String(4000000, 65), String(2000000, 65) & 1)", "0"},
             {"InStrRev(String(4000000, 65), 1 & String(2000000, 65))", "0"}});
  ExpectEach(kInvalid, {Repeat("(", kMany), Repeat("-", kMany) + "1", Repeat("Not ", kMany) + "1",
                        Repeat("Abs(", kMany), Repeat("KLIF", kMany / 4), Repeat("\"x\"&", kMany / 4) + "1",
                        "Len(String(2000000000, 65))", Repeat("A", 256), std::string("1 +\0 1", 6),
                        "Left(\"\xC3\xC3\x80\xFF\", 2) = \xFF"});
  EXPECT_EQ(Shown(clsExprEval([]() -> Date { throw RuntimeError::Overflow(); }).EvaluateExpression("Now")),
            kInvalid);
}

}  // namespace
}  // namespace ktl
