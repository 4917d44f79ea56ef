#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>

#include "database/tsql/tree.h"
#include "database/tsql/words.h"

namespace ktl::tsql {

inline bool IsNumber(Type type) { return type == Type::Integer || type == Type::Real; }

// What a column of this name holds, in whatever table it stands; Unknown for names outside the schema.
Type TypeOfColumn(std::string_view name);

// A bare column whose own declaration makes it compare without regard to letter case and trailing blanks, or
// an expression with a COLLATE clause.
bool ComparesItself(const Expr& expr);

enum class Role { Plain, Aggregate, Window, Dates };

// What a function of the language answers and takes; what a dialect calls it, the dialect knows.
struct Function {
  std::string_view name;  // upper case
  Type result;            // NotAsked: that of its first argument whose type is known
  std::size_t minArguments;
  std::size_t maxArguments;
  Role role = Role::Plain;
};

// Every function of the language.
std::span<const Function> Functions();
// Null for one that is not known.
const Function* FindFunction(std::string_view name);

// A type as CAST, CONVERT and DECLARE name it.
struct TypeName {
  std::string_view name;
  Type type;
  std::optional<int> scale = {};  // of a decimal: its places unless the text gives them
};
// Null for one that is not known.
const TypeName* FindTypeName(std::string_view name);

// Types expressions from names, literals and functions alone.
class Typing {
 public:
  void Declare(std::string_view variable, Type type) { variables_[std::string(variable)] = type; }
  bool IsDeclared(std::string_view variable) const { return variables_.contains(variable); }
  Type Of(const Expr& expr) const;

 private:
  Type Find(const Expr& expr) const;
  Type FirstKnown(const Expr& expr) const;
  Type OfArithmetic(const Expr& expr) const;
  Type OfCase(const Expr& expr) const;
  Type OfCast(const Expr& expr) const;

  std::unordered_map<std::string, Type, WordHash, WordEqual> variables_;
};

}  // namespace ktl::tsql
