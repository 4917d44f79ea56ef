#include "database/drivers/server_dialect.h"

#include <fmt/format.h>

#include "runtime/text.h"

namespace ktl {

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

ServerError::ServerError(ServerFailure failure, std::string description)
    : DatabaseError(std::move(description), NumberOf(failure)), failure_(failure) {}

std::string OdbcValue(std::string_view value) {
  return "{" + ReplaceAll(std::string(value), "}", "}}") + "}";
}

std::string OdbcPart(std::string_view key, std::string_view value) {
  return value.empty() ? "" : fmt::format("{}={};", key, OdbcValue(value));
}

}  // namespace ktl
