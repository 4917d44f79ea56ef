#pragma once

#include <cstddef>
#include <istream>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace ktl {

// What is wrong with a command, without its place.
class CommandError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct ScriptLine {
  int number = 0;    // in the file, from 1
  std::string text;  // from the command's first letter to the end of the line
};

// The commands of a script, one a line; empty lines and those that begin with "#" are none.
class Script {
 public:
  explicit Script(std::istream& input) : input_(input) {}

  // The next command without taking it; null at the end.
  const ScriptLine* Peek();
  std::optional<ScriptLine> Next();

 private:
  std::istream& input_;
  int linesRead_ = 0;
  std::optional<ScriptLine> ahead_;
};

// A command taken apart word by word. Throws CommandError that tells which word is missing or wrong.
class CommandWords {
 public:
  explicit CommandWords(std::string_view line) : rest_(line) {}

  std::string Word(std::string_view what);
  std::string WordOr(std::string_view otherwise);  // when no word is left
  std::size_t Index(std::string_view what);        // a number from 1, given back from 0
  bool OnOrOff();
  std::string Value();  // the rest of the line as it stands
  void End() const;     // nothing may be left

 private:
  std::string_view TakeWord();

  std::string_view rest_;
};

}  // namespace ktl
