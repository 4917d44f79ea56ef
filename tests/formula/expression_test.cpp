#include <gtest/gtest.h>

#include <string>
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

struct Case {
  const char* expression;
  const char* shown;
};

void ExpectAll(const std::vector<Case>& cases) {
  for (const Case& c : cases) EXPECT_EQ(Shown(Evaluate(c.expression)), c.shown) << c.expression;
}

constexpr const char* kDivideByZero = "\"ERROR: Divide By Zero Error\"";
constexpr const char* kInvalidArgument = "\"ERROR: Invalid argument\"";
constexpr const char* kMissingBrace = "\"ERROR: Missing closing braces )\"";
constexpr const char* kBadSyntax = "\"ERROR: Either bad syntax or ( missing\"";
constexpr const char* kInvalid = "\"ERROR: Invalid expression\"";

TEST(Expression, ReadsLiterals) {
  ExpectAll({
      {"12", "12"},
      {" .5\t", "0.5"},
      {"5.", "5"},
      {"1.25e2", "125"},
      {"1E-2", "0.01"},
      {"1E-999", "0"},
      {"&HFF", "255"},
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

TEST(Expression, OrdersOperators) {
  ExpectAll({
      {"2 ^ 3 ^ 2", "64"},
      {"-2 ^ 2", "-4"},
      {"2 ^ -1", "0.5"},
      {"2 ^ -1 * 3", "1.5"},
      {"- - 3", "3"},
      {"2 * -3 + 10", "4"},
      {"20 / 2 * 5", "50"},
      {"100 \\ 3 * 2", "16"},
      {"17 Mod 10 \\ 3", "2"},
      {"10 + 7 Mod 4", "13"},
      {"10 - 3 - 2", "5"},
      {"1 + 2 & 3 + 4", "\"37\""},
      {"\"A\"&1&\"B\"", "\"A1B\""},
      {"1 & 2 = 12", "True"},
      {"Not 1 = 2", "True"},
      {"1 = Not 0 = 1", "False"},
      {"Not True And False", "False"},
      {"1 = 1 Or 1 = 2 And 1 = 3", "True"},
      {"True Or True Xor True", "False"},
      {"True Xor True Eqv False", "True"},
      {"False Eqv False Imp False", "False"},
      {"(1 + 2) * (3 + 4)", "21"},
      {"3 > 2 > 1", "False"},
      {"1 < 2 < 3", "True"},
      {"2 => 2 And 2 =< 2 And 1 >< 2", "True"},
  });
}

TEST(Expression, RoundsOperandsOfIntegerOperators) {
  ExpectAll({
      {"7.5 \\ 2", "4"},
      {"6.5 \\ 2", "3"},
      {"-7 \\ 2", "-3"},
      {"10.5 Mod 4", "2"},
      {"11.5 Mod 5", "2"},
      {"-7 Mod 3", "-1"},
      {"3000000000 Mod 2", kInvalid},
      {"5 And 3", "1"},
      {"5 Or 3", "7"},
      {"5 Xor 3", "6"},
      {"5 Eqv 3", "-7"},
      {"5 Imp 3", "-5"},
      {"Not 5", "-6"},
      {"Not 0.5", "-1"},
      {"True And 6", "6"},
      {"\"12\" And 10", "8"},
  });
}

TEST(Expression, MixesKinds) {
  ExpectAll({
      {"True + True", "-2"},
      {"-True", "1"},
      {"\"12\" * 2", "24"},
      {"\"1,200.50\" / 2", "600.25"},
      {"\"1\" + \"2\"", "\"12\""},
      {"\"1\" + 2", "3"},
      {"\"a\" + 2", kInvalid},
      {"\"\" + 2", kInvalid},
      {"True & \"\"", "\"True\""},
      {"0.1 + 0.2 & \"\"", "\"0.3\""},
      {"\"10\" = 10", "True"},
      {"\"9\" < 10", "True"},
      {"\"9\" < \"10\"", "False"},
      {"\"abc\" > 999999", "True"},
      {"5 < \"abc\"", "True"},
      {"\"abc\" = 0", "False"},
      {"\"Accounts\" = \"ACCOUNTS\"", "True"},
      {"True = -1", "True"},
      {"Empty = 0 And Empty = \"\" And Not \"a\" = Empty", "True"},
      {"Empty + 5", "5"},
      {"Empty & \"x\"", "\"X\""},
      {"Null + 1", "null"},
      {"Null = Null", "null"},
      {"Null & \"x\"", "\"X\""},
      {"0 And Null", "0"},
      {"1 And Null", "null"},
      {"True Or Null", "True"},
      {"False Imp Null", "True"},
      {"True Imp Null", "null"},
      {"KLIF(Null, 1, 2)", "2"},
      {"KLIF(\"True\", 1, 2)", "1"},
      {"KLIF(\"yes\", 1, 2)", kInvalid},
  });
}

TEST(Expression, CountsWithDates) {
  ExpectAll({
      {"CDate(\"05/Apr/2010\")", "05/04/2010"},
      {"CDate(\"05/04/2010\") + 30", "05/05/2010"},
      {"CDate(\"01/Mar/2012\") - 1", "29/02/2012"},
      {"CDate(\"01/Mar/2012\") - CDate(\"01/Feb/2012\")", "29"},
      {"CDate(\"31/12/2009\") < CDate(\"01/01/2010\")", "True"},
      {"CDate(\"01/Jan/2010\") = \"01/01/2010\"", "True"},
      {"CDate(\"01/01/2010\") > \"31/Dec/2009\"", "True"},
      {"CDbl(CDate(\"01/01/1900\"))", "2"},
      {"CDate(\"30/02/2010\")", kInvalid},
      {"CDate(2) & \"\"", "\"01/01/1900\""},
      {"KLSystemDate", "15/08/2010"},
      {"KLSystemDate() = Date", "True"},
      {"Now", "15/08/2010 10:30:00"},
      {"Int(Now) = Date()", "True"},
      {"KLMonthYear(\"01/Apr/2010\")", "24124"},
      {"KLMonthYear(\"Apr/2010\")", "24124"},
      {"KLDayDiff(\"28/Feb/2012\", \"01/Mar/2012\")", "2"},
      {"KLDayDiff(CDate(\"01/03/2012\"), CDate(\"28/02/2012\"))", "-2"},
      {"KLMonthDiff(\"31/Jan/2010\", \"01/Feb/2010\")", "1"},
      {"KLMonthDiff(\"15/Jan/2010\", \"20/Dec/2009\")", "-1"},
      {"KLYearDiff(\"31/Dec/2009\", \"01/Jan/2010\")", "1"},
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
      {"DatePart(\"x\", Now)", kInvalid},
      {"DateSerial(2010, 14, 0)", "31/01/2011"},
      {"DateSerial(29, 1, 1)", "01/01/2029"},
      {"DateSerial(30, 1, 1)", "01/01/1930"},
      {"Year(Now) * 10000 + Month(Now) * 100 + Day(Now)", "20100815"},
      {"Weekday(\"16/08/2010\") & Weekday(\"16/08/2010\", 2)", "\"21\""},
      {"MonthName(4) & MonthName(4, True)", "\"AprilApr\""},
      {"MonthName(13)", kInvalid},
      {"WeekdayName(7) & WeekdayName(7, True, 2)", "\"SaturdaySun\""},
      {"WeekdayName(8)", kInvalid},
      {"IsDate(\"31/02/2010\") Or Not IsDate(\"28/02/2010\")", "False"},
      {"CDate(\"31/12/9999\") + 1", kInvalid},
  });
}

TEST(Expression, RoundsToMultiples) {
  ExpectAll({
      {"KLRound(1234.5, 5, \"n\")", "1235"},
      {"KLRound(1232.4, 5, \"N\")", "1230"},
      {"KLRound(1232.5, 5, \"N\")", "1235"},
      {"KLRound(1000, 100, \"U\")", "1000"},
      {"KLRound(1000, 100, \"L\")", "1000"},
      {"KLRound(1000.01, 100, \"u\")", "1100"},
      {"KLRound(1099.99, 100, \"l\")", "1000"},
      {"KLRound(-12.34, 5, \"U\")", "-10"},
      {"KLRound(-12.34, 5, \"L\")", "-15"},
      {"KLRound(-12.34, 5, \"N\")", "-12.34"},
      // Int gives -1, so nothing but the fraction counts: 0.4 is below one half.
      {"KLRound(-0.4, 1, \"N\")", "-1"},
      {"KLRound(4.999999999, 1, \"N\")", "4.999999999"},
      {"KLRound(7.5, 0, \"U\")", "7.5"},
      {"KLRound(7.5, 0, \"N\")", kDivideByZero},
      {"KLRound(7, 0, \"N\")", "7"},
      {"KLRound(7, 2, \"X\")", "7"},
      {"KLRound(7, 2, LCase(\"U\"))", "7"},
      {"KLRound(7, 2, 0)", "7"},
      {"KLRound(\"7\", \"2\", \"U\")", "8"},
      {"KLRound(\"7\", 2, \"X\")", "\"7\""},
      {"KLRound(12.3456, 0.05, \"L\")", "12.3"},
      {"Remainder(-13, 5)", "-3"},
      {"Remainder(13, -5)", "3"},
      {"Remainder(13, 0)", "0"},
  });
}

TEST(Expression, LimitsAndChooses) {
  ExpectAll({
      {"KLBetween(5, 5, 10)", "-1"},
      {"KLBetween(10, 5, 10)", "-1"},
      {"KLBetween(10.01, 5, 10)", "0"},
      {"KLBetween(\"7\", 5, 10)", "-1"},
      {"KLSubjectToMax(1500, 1250)", "1250"},
      {"KLSubjectToMax(\"900\", 1250)", "\"900\""},
      {"KLSubjectToMax(\"abc\", 5)", "5"},
      {"KLSubjectToMin(100, 250)", "250"},
      {"KLSubjectToMin(300, 250)", "300"},
      {"KLIF(1 = 2, \"a\", 3)", "3"},
      {"KLIF(1 = 2, 1 / 0, 3)", kDivideByZero},
      {"IIF(2, 1, 0)", "1"},
      {"FnLngKLDaysDiff(\"01/01/2010\", \"02/01/2010\")", "1"},
  });
}

TEST(Expression, CallsTheLanguagesFunctions) {
  ExpectAll({
      {"Int(-1.5) & Fix(-1.5)", "\"-2-1\""},
      {"Abs(-2) + Sgn(-7) + Sqr(9)", "4"},
      {"Sqr(-1)", kInvalid},
      {"Log(0)", kInvalid},
      {"Log(Exp(2))", "2"},
      {"Round(2.5) & Round(3.5) & Round(0.125, 2)", "\"240.12\""},
      {"Round(1, -1)", kInvalid},
      {"CInt(2.5) + CInt(\"3.5\")", "6"},
      {"CInt(32768)", kInvalid},
      {"CSng(\"1000.1\") + CByte(2.5)", "1002.1"},
      {"CSng(1234.56789)", "1234.568"},
      {"CByte(256)", kInvalid},
      {"CLng(32768.5)", "32768"},
      {"CCur(0.00005)", "0"},
      {"CBool(\"0\") Or CBool(2)", "True"},
      {"CStr(12.50)", "\"12.5\""},
      {"CDbl(\"x\")", kInvalid},
      {"Len(\"Zoë\")", "3"},
      {"Left(\"Zoë K\", 3) & Right(\"Zoë K\", 3) & Mid(\"Zoë K\", 3, 2)", "\"ZOËË KË \""},
      {"Left(\"ab\", 9) & Right(\"ab\", 9) & Mid(\"ab\", 9)", "\"ABAB\""},
      {"Mid(\"abc\", 0)", kInvalid},
      {"Left(\"abc\", -1)", kInvalid},
      {"LCase(\"AbÉ\")", "\"abé\""},
      {"\"[\" & Trim(\" a \") & LTrim(\" b \") & RTrim(\" c \") & \"]\"", "\"[AB  C]\""},
      {"InStr(\"Zoë Zoë\", \"ë\") & InStr(4, \"Zoë Zoë\", \"ë\") & InStr(\"abc\", \"d\")", "\"370\""},
      {"InStr(1, \"abc\", LCase(\"B\"), 1) & InStr(\"abc\", LCase(\"B\"))", "\"20\""},
      {"InStrRev(\"a/b/c\", \"/\") & InStrRev(\"a/b/c\", \"/\", 3)", "\"42\""},
      {"Replace(\"a-b-c\", \"-\", \"\") & Replace(\"a-b-c\", \"-\", \"+\", 3, 1)", "\"ABCB+C\""},
      {"Replace(\"abc\", \"\", \"x\")", "\"ABC\""},
      {"StrReverse(\"Zoë K\")", "\"K ËOZ\""},
      {"StrComp(\"a\", \"b\") & StrComp(LCase(\"A\"), \"A\") & StrComp(LCase(\"A\"), \"A\", 1)", "\"-110\""},
      {"Chr(65) & Asc(\"A\") & Asc(Chr(233))", "\"A65233\""},
      {"Asc(\"\")", kInvalid},
      {"String(3, \"xy\") & String(2, 42) & Space(1) & \".\"", "\"XXX** .\""},
      {"FormatNumber(1234567.895)", "\"12,34,567.90\""},
      {"FormatNumber(-0.5, 1, 0) & FormatNumber(-5, 0, -1, -1)", "\"-.5(5)\""},
      {"FormatNumber(1234, 0, -1, 0, 0)", "\"1234\""},
      {"IsNumeric(\"1,000\") And Not IsNumeric(\"1x\") And Not IsNumeric(\"\")", "True"},
      {"IsNull(Null) And IsEmpty(Empty) And Not IsNull(0)", "True"},
      {"Len(Null)", "null"},
  });
}

TEST(Expression, NamesItsFailures) {
  ExpectAll({
      {"1 / 0", kDivideByZero},
      {"0 / 0", kDivideByZero},
      {"1 \\ 0.4", kDivideByZero},
      {"1 Mod 0", kDivideByZero},
      {"Gross(1)", "\"ERROR: Invalid function 'GROSS'\""},
      {"Gross()", "\"ERROR: Invalid function 'GROSS'\""},
      {"FnDblKLRound(7, 2, \"U\")", "\"ERROR: Invalid function 'FNDBLFNDBLKLROUND'\""},
      {"Gross + 1", "\"ERROR: Variable not defined 'GROSS'\""},
      {"KLIF", kInvalidArgument},
      {"Len", kInvalidArgument},
      {"KLRound(1, 2)", kInvalidArgument},
      {"Date(1)", kInvalidArgument},
      {"(1 + 2", kMissingBrace},
      {"KLIF(1, 2, 3", kMissingBrace},
      {"Abs(1 2)", kMissingBrace},
      {"1 + 2)", kBadSyntax},
      {"1 2", kBadSyntax},
      {"\"a\" \"b\"", kBadSyntax},
      {"5(1)", kBadSyntax},
      {"1 Not 2", kBadSyntax},
      {"", kInvalid},
      {"  ' nothing but a remark", kInvalid},
      {"(", kInvalid},
      {"()", kInvalid},
      {"(1 +", kInvalid},
      {"1 +", kInvalid},
      {"* 2", kInvalid},
      {"Abs(,1)", kInvalid},
      {"Abs(1,)", kInvalid},
      {"Component{BASIC}", kInvalid},
      {"\"open", kInvalid},
      {"1 + If", kInvalid},
      {"#01/01/2010#", kInvalid},
      {"&HG", kInvalid},
      {"&H123456789", kInvalid},
      {"1E999", kInvalid},
      {"1E308 * 10", kInvalid},
      {"0 ^ -1", kInvalid},
      {"(-8) ^ 0.5", kInvalid},
      {"1\n+ 2", kInvalid},
      {"1 + 2\r\n", kInvalid},
      {"\"a\nb\"", kInvalid},
  });
}

TEST(Expression, JudgesSyntaxFirstAndThenFromLeftToRight) {
  ExpectAll({
      {"1 / 0 + (2", kMissingBrace},
      {"Gross + 1 2", kBadSyntax},
      {"1 2 {", kBadSyntax},
      {"1 { 2 3", kInvalid},
      {"1 / 0 + Gross", kDivideByZero},
      {"Gross + 1 / 0", "\"ERROR: Variable not defined 'GROSS'\""},
      {"Gross(1 / 0)", kDivideByZero},
      {"KLIF(Gross)", "\"ERROR: Variable not defined 'GROSS'\""},
  });
}

TEST(Expression, PutsTokensInBeforeAnythingElse) {
  const TokenTable components = {
      {"Component{BASIC}", "12000"}, {"", "never"}, {"(Grade)", "\"m1\""}, {"Long", "Short"}, {"short", "7"}};
  const TokenTable fields = {{"empdet{dept}", "\"Accounts\""}, {"7", "8"}};
  const struct {
    const char* expression;
    const char* shown;
  } cases[] = {
      {"COMPONENT{basic} * 2", "24000"},
      {"(GRADE) = \"M1\"", "True"},
      {"(grade) & \"(grade)\"", kBadSyntax},  // the quotes come in inside the literal and end it
      {"long", "8"},                          // Long, short, 7, 8: each row sees what the ones before put in
      {"EmpDet{Dept} = \"ACCOUNTS\"", "True"},
      {"EmpDet{Dept}", "\"ACCOUNTS\""},
      {"\"prolonged\"", "\"PRO8ED\""},
      {"\"klif\"", "\"IIF\""},
      {"unit + 1", "\"ERROR: Variable not defined 'UNIT'\""},
  };
  for (const auto& c : cases)
    EXPECT_EQ(Shown(Evaluate(c.expression, components, fields)), c.shown) << c.expression;

  EXPECT_EQ(Shown(Evaluate("(name) = \"x\"", {{"(name)", "\"5\" pipe\""}})), kBadSyntax);
  EXPECT_EQ(Shown(Evaluate("\"\" & Café", {{"café", "3"}})), "\"3\"");
}

std::string Repeat(std::string_view part, std::size_t times) {
  std::string text;
  while (times-- > 0) text += part;
  return text;
}

TEST(Expression, SurvivesAnyText) {
  constexpr std::size_t kMany = 1 << 20;
  EXPECT_EQ(Shown(Evaluate(Repeat("(", 500) + "1" + Repeat(")", 500))), "1");
  EXPECT_EQ(Shown(Evaluate(Repeat("(", kMany))), kInvalid);
  EXPECT_EQ(Shown(Evaluate(Repeat("-", kMany) + "1")), kInvalid);
  EXPECT_EQ(Shown(Evaluate(Repeat("Not ", kMany) + "1")), kInvalid);
  EXPECT_EQ(Shown(Evaluate(Repeat("Abs(", kMany))), kInvalid);
  EXPECT_EQ(Shown(Evaluate(Repeat("KLIF", kMany / 4))), kInvalid);
  EXPECT_EQ(Shown(Evaluate("1" + Repeat("+1", kMany / 2))), "524289");
  EXPECT_EQ(Shown(Evaluate("Len(\"" + Repeat("\"\"", kMany / 2) + "\")")), "524288");
  EXPECT_EQ(Shown(Evaluate("Len(" + Repeat("\"x\"&", 10000) + "1)")), "10001");
  EXPECT_EQ(Shown(Evaluate(Repeat("\"x\"&", kMany / 4) + "1")), kInvalid);
  EXPECT_EQ(Shown(Evaluate("Len(String(2000000000, 65))")), kInvalid);
  EXPECT_EQ(Shown(Evaluate("InStr(String(4000000, 65), String(2000000, 65) & 1)")), "0");
  EXPECT_EQ(Shown(Evaluate("InStrRev(String(4000000, 65), 1 & String(2000000, 65))")), "0");
  EXPECT_EQ(Shown(Evaluate(Repeat("A", 256))), kInvalid);
  EXPECT_EQ(Shown(Evaluate(std::string_view("1 +\0 1", 6))), kInvalid);
  EXPECT_EQ(Shown(Evaluate("Left(\"\xC3\xC3\x80\xFF\", 2) = \xFF")), kInvalid);
  EXPECT_EQ(Shown(clsExprEval([]() -> Date { throw RuntimeError::Overflow(); }).EvaluateExpression("Now")),
            kInvalid);
}

}  // namespace
}  // namespace ktl
