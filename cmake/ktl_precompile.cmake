# ktl_precompile(TARGET [FROM OTHER | HEADERS HEADER...])
#
# The standard library and fmt are read once for all rooms, not once a file. A target takes what another one has
# precompiled; one that needs further headers everywhere (a window system, a test library) precompiles its own.
set(KTL_STANDARD_HEADERS
    <algorithm> <array> <chrono> <cmath> <cstdint> <filesystem> <fstream> <functional> <map> <memory> <optional>
    <set> <sstream> <stdexcept> <string> <string_view> <tuple> <unordered_map> <utility> <vector> <fmt/format.h>)

function(ktl_precompile target)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "FROM" "HEADERS")
  get_target_property(own ${target} PRECOMPILE_HEADERS)
  if(own)
    return()
  endif()
  if(arg_FROM)
    target_precompile_headers(${target} REUSE_FROM ${arg_FROM})
  elseif(arg_HEADERS OR NOT TARGET ktl_runtime OR target STREQUAL ktl_runtime)
    target_precompile_headers(${target} PRIVATE ${KTL_STANDARD_HEADERS} ${arg_HEADERS})
  else()
    target_precompile_headers(${target} REUSE_FROM ktl_runtime)
  endif()
endfunction()
