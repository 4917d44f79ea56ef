#include "frame/local_store.h"

#include <fmt/format.h>

#include <filesystem>

#include "frame/session.h"
#include "machine/files.h"

namespace ktl {

std::unique_ptr<Connection> OpenLocalStore(Session& session, const std::string& path) {
  const std::filesystem::path folder = session.machine.folder.Path();
  const std::string file = path.empty() ? (folder / "klgen.MDB").string() : path;
  if (!FnBlnFileExists(file)) {
    throw DatabaseError(fmt::format("The local store {} is not there.", file));
  }
  auto store = std::make_unique<Connection>();
  store->Open(fmt::format(
      "Provider=Microsoft.Jet.OLEDB.4.0;Data Source= {};Jet OLEDB:Database Password=MOLE;", file));
  return store;
}

}  // namespace ktl
