#include "formula/expression_functions.h"

#include <unordered_map>

namespace ktl {
namespace {

using Library = std::unordered_map<std::string_view, const ExpressionFunction*>;

Library WholeLibrary() {
  Library library;
  for (const auto room : {LedgerFunctions(), NumberFunctions(), TextFunctions(), DateFunctions()})
    for (const ExpressionFunction& function : room) library.emplace(function.name, &function);
  return library;
}

}  // namespace

const ExpressionFunction* FindFunction(std::string_view name) {
  static const Library library = WholeLibrary();
  const auto found = library.find(name);
  return found == library.end() ? nullptr : found->second;
}

}  // namespace ktl
