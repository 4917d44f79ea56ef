#pragma once

#include <string_view>

namespace ktl {

// A statement that the embedded store cannot plan well, and its equivalent for that store: the same rows in
// the same order, or the same rows left in the tables. The program says the first one: it stands in the log,
// and a server gets it.
struct StatementTwin {
  std::string_view said;
  std::string_view embedded;  // a text or a batch of the same language
  // What the equivalent keeps in a company of its own: a table or view that tells whether it is there, and a
  // script in the store's dialect that makes it all.
  std::string_view table = {};
  const char* setup = nullptr;
};

}  // namespace ktl
