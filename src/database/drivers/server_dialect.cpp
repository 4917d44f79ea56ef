#include "database/drivers/server_dialect.h"

#include <algorithm>

#include "runtime/text.h"

namespace ktl {

std::optional<ServerFailure> FailureNumbered(std::span<const NumberedFailure> known, long number) {
  const auto found = std::ranges::find(known, number, &NumberedFailure::number);
  return found != known.end() ? std::optional(found->failure) : std::nullopt;
}

namespace {

long NumberOf(ServerFailure failure) {
  switch (failure) {
    case ServerFailure::Statement:
      return kStatementError;
    case ServerFailure::NoSuchTable:
      return kNoSuchTableError;
    case ServerFailure::DuplicateKey:
      return kIntegrityError;
    default:
      return kGenericDatabaseError;
  }
}

}  // namespace

ServerError::ServerError(ServerFailure failure, std::string description, std::string state)
    : DatabaseError(std::move(description), NumberOf(failure)), failure_(failure), state_(std::move(state)) {}

// Not every driver reads "}}" between brackets as one bracket.
std::string OdbcValue(std::string_view value) {
  if (value.find(';') == value.npos && !value.starts_with('{')) return std::string(value);
  return "{" + ReplaceAll(std::string(value), "}", "}}") + "}";
}

std::string OdbcPart(std::string_view key, std::string_view value) {
  return value.empty() ? "" : std::string(key) + "=" + OdbcValue(value) + ";";
}

}  // namespace ktl
