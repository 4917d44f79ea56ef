#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ktl {

// "1500,17,Apr/2010#False#0#0$Title" taken apart.
struct CommandLine {
  std::optional<std::string> title;    // behind the first "$"
  std::vector<std::string> fields;     // by "#"
  std::vector<std::string> arguments;  // field 0 by ","

  // Error 9 when there is none of that place.
  const std::string& Field(std::size_t place) const;
  const std::string& Argument(std::size_t place) const;
  std::int32_t ArgumentNumber(std::size_t place) const;  // the number that it begins with, rounded
};

CommandLine SplitCommandLine(std::string_view text);

// The fields as the connect step converts them.
struct LaunchFields {
  std::int32_t formCode = 0;
  bool reportFlag = false;
  std::int16_t reportNumber = 0;
  std::int32_t trailingNumber = 0;
  std::string connectionFile;  // of a copy of the program that is handed a data file, else empty
  bool openedFromFile = false;
};

// Errors 9 (fewer than three fields), 13 and 6 (a field that does not convert).
LaunchFields ConvertFields(const CommandLine& line, std::string_view executableName);

// What is to be told to a person whose command line cannot be taken apart, and what one looks like; "" when
// it can.
std::string CommandLineComplaint(std::string_view text, std::string_view executableName);

}  // namespace ktl
