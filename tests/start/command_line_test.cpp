#include "start/command_line.h"

#include <gtest/gtest.h>

#include <tuple>
#include <vector>

#include "support/errors.h"

namespace ktl {
namespace {

TEST(CommandLine, FieldsConvert) {
  // form code, report flag, report number, trailing number, connection file
  const std::tuple<const char*, const char*, long, bool, int, long, const char*> cases[] = {
      {"1502#False#0#0", "KTLStIns", 1502, false, 0, 0, ""},
      {"1500,17,Apr/2010#True#3#99", "KTLStIns", 1500, true, 3, 99, ""},
      {"1502#-1#7", "KTLStIns", 1502, true, 7, 7, ""},                  // field 2 read twice
      {"1501#fAlSe#2#5#70000", "KTLStIns", 1501, false, 2, 70000, ""},  // more fields: the last one counts
      {"1501.5#0#2.5#3.5", "KTLStIns", 1502, false, 2, 4, ""},          // halves to even
      {"1502x#False#0#0$A#B$C", "KTLStIns", 1502, false, 0, 0, ""},     // "#" of a title is no separator
      {"abc#False#0#0", "KTLStIns", 0, false, 0, 0, ""},
      {"1502#False#0#0", "KTLLeaveMgmt", 1502, false, 0, 0, ""},  // four fields: the host's company even so
      {"1502#False#0#12#/data/c.txt", "KTLLeaveMgmt", 1502, false, 0, 12, "/data/c.txt"},
      {"1502#1#0", "KTLLeaveMgmt", 1502, true, 0, 1, "0"},
      {"1502#False#0#12#9", "KTLLEAVEMGMT", 1502, false, 0, 9, ""},
  };
  for (const auto& [line, executable, formCode, reportFlag, reportNumber, trailingNumber, file] : cases) {
    SCOPED_TRACE(std::string(line) + " as " + executable);
    const LaunchFields fields = ConvertFields(SplitCommandLine(line), executable);
    EXPECT_EQ(std::tie(fields.formCode, fields.reportFlag, fields.reportNumber, fields.trailingNumber),
              std::tie(formCode, reportFlag, reportNumber, trailingNumber));
    EXPECT_EQ(fields.connectionFile, file);
    EXPECT_EQ(fields.openedFromFile, *file != '\0');
  }
}

TEST(CommandLine, FieldsThatDoNotConvertAreRunTimeErrors) {
  // The title is cut off before the fields are counted.
  const std::pair<long, std::vector<const char*>> cases[] = {
      {9, {"", "1502#False", "1502#False$#0#0"}},
      {13, {"1502#maybe#0#0", "1502##0#0", "1502#False#x#0", "1502#False#0#"}},
      {6, {"1502#False#32768#0", "1502#False#0#2147483648", "3000000000#False#0#0"}},
  };
  for (const auto& [error, lines] : cases)
    for (const char* line : lines)
      EXPECT_EQ(ErrorOf([&] { ConvertFields(SplitCommandLine(line), "KTLStIns"); }), error) << line;
}

TEST(CommandLine, TitleAndArguments) {
  const CommandLine line = SplitCommandLine("1500, 17 ,Apr/2010#False#0#0$Loans $ of #1");
  EXPECT_EQ(line.title, "Loans $ of #1");
  EXPECT_EQ(line.ArgumentNumber(1), 17);
  EXPECT_EQ(line.Argument(2), "Apr/2010");
  EXPECT_THROW(line.Argument(3), RuntimeError);
  EXPECT_EQ(SplitCommandLine("1502#False#0#0").title, std::nullopt);
}

}  // namespace
}  // namespace ktl
