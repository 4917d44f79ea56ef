#pragma once

namespace ktl {

// The schema that this program works with. A company file names its own; on a server the view KTL_SCHEMA
// does.
inline constexpr int kSchemaVersion = 1;

}  // namespace ktl
