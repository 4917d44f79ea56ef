#include "frame/command_line.h"

#include <gtest/gtest.h>

#include "runtime/errors.h"

namespace ktl {
namespace {

struct Good {
  const char* line;
  const char* executable;
  long formCode;
  bool reportFlag;
  int reportNumber;
  long trailingNumber;
  const char* connectionFile;
};

TEST(CommandLine, FieldsConvert) {
  const Good cases[] = {
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
  for (const Good& c : cases) {
    SCOPED_TRACE(std::string(c.line) + " as " + c.executable);
    const LaunchFields fields = ConvertFields(SplitCommandLine(c.line), c.executable);
    EXPECT_EQ(fields.formCode, c.formCode);
    EXPECT_EQ(fields.reportFlag, c.reportFlag);
    EXPECT_EQ(fields.reportNumber, c.reportNumber);
    EXPECT_EQ(fields.trailingNumber, c.trailingNumber);
    EXPECT_EQ(fields.connectionFile, c.connectionFile);
    EXPECT_EQ(fields.openedFromFile, *c.connectionFile != '\0');
  }
}

TEST(CommandLine, FieldsThatDoNotConvertAreRunTimeErrors) {
  const struct {
    const char* line;
    long error;
  } cases[] = {
      {"", 9},
      {"1502#False", 9},
      {"1502#False$#0#0", 9},  // the title is cut off first
      {"1502#maybe#0#0", 13},
      {"1502##0#0", 13},
      {"1502#False#x#0", 13},
      {"1502#False#0#", 13},
      {"1502#False#32768#0", 6},
      {"1502#False#0#2147483648", 6},
      {"3000000000#False#0#0", 6},
  };
  for (const auto& c : cases) {
    try {
      ConvertFields(SplitCommandLine(c.line), "KTLStIns");
      ADD_FAILURE() << c.line << " converted";
    } catch (const RuntimeError& error) {
      EXPECT_EQ(error.number(), c.error) << c.line;
    }
  }
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
