#include "start/command_line.h"

#include <fmt/format.h>

#include "runtime/errors.h"
#include "runtime/numbers.h"
#include "runtime/text.h"
#include "runtime/value.h"

namespace ktl {

namespace {

const std::string& At(const std::vector<std::string>& parts, std::size_t place) {
  if (place >= parts.size()) throw RuntimeError::SubscriptOutOfRange();
  return parts[place];
}

// A copy of the program under this name is started with the path of a file that says where the database is.
constexpr std::string_view kOpensFiles = "KTLLeaveMgmt";

}  // namespace

const std::string& CommandLine::Field(std::size_t place) const { return At(fields, place); }

const std::string& CommandLine::Argument(std::size_t place) const { return At(arguments, place); }

std::int32_t CommandLine::ArgumentNumber(std::size_t place) const {
  return Value(Val(Argument(place))).ToLong();
}

CommandLine SplitCommandLine(std::string_view text) {
  CommandLine line;
  if (const std::size_t dollar = text.find('$'); dollar != std::string_view::npos) {
    line.title = std::string(text.substr(dollar + 1));
    text = text.substr(0, dollar);
  }
  line.fields = Split(text, "#");
  if (!line.fields.empty()) line.arguments = Split(line.fields.front(), ",");
  return line;
}

LaunchFields ConvertFields(const CommandLine& line, std::string_view executableName) {
  LaunchFields fields;
  fields.formCode = Value(Val(line.Field(0))).ToLong();
  fields.reportFlag = Value(line.Field(1)).ToBoolean();
  fields.reportNumber = Value(line.Field(2)).ToInt();
  const std::size_t last = line.fields.size() - 1;
  fields.openedFromFile = executableName == kOpensFiles && last != 3;
  // With three fields the last one is field 2, read a second time.
  fields.trailingNumber = Value(line.Field(fields.openedFromFile ? last - 1 : last)).ToLong();
  if (fields.openedFromFile) fields.connectionFile = line.Field(last);
  return fields;
}

std::string CommandLineComplaint(std::string_view text, std::string_view executableName) {
  try {
    ConvertFields(SplitCommandLine(text), executableName);
    return "";
  } catch (const RuntimeError&) {
    return fmt::format(
        "\"{}\" is no command line. One looks like '1502#False#0#0': a code (1501 advances, 1502 loans), "
        "whether a "
        "report called (True or False), the report's number, a reserved number.",
        text);
  }
}

}  // namespace ktl
