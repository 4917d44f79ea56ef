#include "support/fake_machine.h"

#include <cstdlib>

#include "runtime/errors.h"
#include "runtime/text.h"

namespace ktl {

namespace {

std::string Name(std::string_view section, std::string_view key) {
  return UpperCase(section) + "\n" + UpperCase(key);
}

}  // namespace

std::string FakeSettings::Get(std::string_view section, std::string_view key, std::string_view defaultValue) {
  const auto found = values_.find(Name(section, key));
  return found == values_.end() ? std::string(defaultValue) : found->second;
}

void FakeSettings::Set(std::string_view section, std::string_view key, std::string_view value) {
  values_[Name(section, key)] = value;
}

void RecordingStatusBox::ReplaceText(long windowHandle, std::string_view text) {
  if (failWith != 0) {
    throw RuntimeError(failWith, "The clipboard cannot be opened");
  }
  texts.push_back({windowHandle, std::string(text)});
}

std::string FakeEnvironment::Variable(std::string_view name) const {
  const auto found = variables.find(name);
  if (found != variables.end()) return found->second;
  // What all tests say is checked behind them.
  const char* log = name == "KTL_SQL_LOG" ? std::getenv("KTL_SQL_LOG") : nullptr;
  return log == nullptr ? "" : log;
}

std::string RecordingSiblings::Find(const Sibling& sibling) {
  return missing.contains(sibling.program) ? "" : "/" + sibling.program;
}

std::unique_ptr<SiblingProcess> RecordingSiblings::Launch(const std::string&, const Sibling& sibling) {
  class EndedProcess final : public SiblingProcess {
    bool IsRunning() override { return false; }
    std::string TakeStatus() override { return ""; }
  };
  started.push_back(sibling);
  return std::make_unique<EndedProcess>();
}

}  // namespace ktl
