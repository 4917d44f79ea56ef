#pragma once

#include <optional>
#include <string>

namespace CLI {
class App;
}

namespace ktl {

// The subcommands that show how formulas and days come out: eval, formula, days.
class FormulaCommands final {
 public:
  explicit FormulaCommands(CLI::App& app);

  // Runs the subcommand that was given, if it is one of these: the exit status. A CompanyError when it
  // cannot.
  std::optional<int> Run(const char* argv0) const;

 private:
  void Eval(const char* argv0) const;
  void Formula(const char* argv0) const;
  void Days(const char* argv0) const;

  CLI::App* eval_;
  CLI::App* formula_;
  CLI::App* days_;
  std::string expression_;
  std::string file_;
  long formulaId_ = 0;
  long empId_ = 0;
  std::string month_;
};

}  // namespace ktl
