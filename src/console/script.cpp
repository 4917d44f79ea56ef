#include "console/script.h"

#include <charconv>
#include <utility>

namespace ktl {

namespace {

constexpr std::string_view kBlanks = " \t";
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

}  // namespace

const ScriptLine* Script::Peek() {
  std::string line;
  while (!ahead_ && std::getline(input_, line)) {
    if (++linesRead_ == 1 && line.starts_with(kByteOrderMark)) line.erase(0, kByteOrderMark.size());
    if (line.ends_with('\r')) line.pop_back();
    const std::size_t first = line.find_first_not_of(kBlanks);
    if (first != std::string::npos && line[first] != '#') ahead_ = ScriptLine{linesRead_, line.substr(first)};
  }
  return ahead_ ? &*ahead_ : nullptr;
}

std::optional<ScriptLine> Script::Next() {
  Peek();
  return std::exchange(ahead_, std::nullopt);
}

std::string_view CommandWords::TakeWord() {
  rest_.remove_prefix(std::min(rest_.find_first_not_of(kBlanks), rest_.size()));
  const std::string_view word = rest_.substr(0, rest_.find_first_of(kBlanks));
  rest_.remove_prefix(word.size());
  return word;
}

std::string CommandWords::Word(std::string_view what) {
  const std::string_view word = TakeWord();
  if (word.empty()) throw CommandError(std::string(what) + " is missing");
  return std::string(word);
}

std::string CommandWords::WordOr(std::string_view otherwise) {
  const std::string_view word = TakeWord();
  return std::string(word.empty() ? otherwise : word);
}

std::size_t CommandWords::Index(std::string_view what) {
  const std::string word = Word(what);
  std::size_t number = 0;
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
  if (error != std::errc() || end != word.data() + word.size() || number == 0) {
    throw CommandError(std::string(what) + " counts from 1, not \"" + word + "\"");
  }
  return number - 1;
}

bool CommandWords::OnOrOff() {
  const std::string word = Word("on or off");
  if (word != "on" && word != "off") throw CommandError("on or off is expected, not \"" + word + "\"");
  return word == "on";
}

std::string CommandWords::Value() {
  if (!rest_.empty()) rest_.remove_prefix(1);
  return std::string(std::exchange(rest_, {}));
}

void CommandWords::End() const {
  const std::size_t first = rest_.find_first_not_of(kBlanks);
  if (first != std::string_view::npos) {
    throw CommandError("\"" + std::string(rest_.substr(first)) + "\" is too much");
  }
}

}  // namespace ktl
