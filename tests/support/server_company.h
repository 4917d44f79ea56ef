#pragma once

#include <string>

#include "database/connection.h"
#include "support/private_server.h"

namespace ktl::test {

// A company on the tests' server with the tables, objects and rows of an embedded one.
class ServerCompany {
 public:
  explicit ServerCompany(Connection& from);

  Connection& Cn() { return cn_; }
  const ServerDatabase& Database() const { return database_; }

 private:
  ServerDatabase database_;
  Connection cn_;
};

}  // namespace ktl::test
