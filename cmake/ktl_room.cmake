# ktl_room(ROOM [WHEN OPTION] [USES ROOM...] [LINKS LIBRARY...] [PROGRAM NAME])
#
# src/ROOM becomes the library ktl_ROOM on top of the rooms that it uses, its main.cpp the program NAME, and
# tests/ROOM the test program test_ROOM. What a room needs besides stands in src/ROOM/room.cmake. USES names only
# rooms that stand above the line, so there are no circles.
function(ktl_room room)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "WHEN;PROGRAM" "USES;LINKS")
  if(arg_WHEN AND NOT ${arg_WHEN})
    return()
  endif()
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${room}/*.cpp)
  list(FILTER sources EXCLUDE REGEX "/main\\.cpp$")
  add_library(ktl_${room} STATIC ${sources})
  target_include_directories(ktl_${room} PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
  foreach(used ${arg_USES})
    if(NOT TARGET ktl_${used})
      message(FATAL_ERROR "The room ${room} uses ${used}, which does not stand above it")
    endif()
    target_link_libraries(ktl_${room} PUBLIC ktl_${used})
  endforeach()
  target_link_libraries(ktl_${room} PUBLIC ${arg_LINKS})
  include(${CMAKE_CURRENT_SOURCE_DIR}/${room}/room.cmake OPTIONAL)
  ktl_precompile(ktl_${room})
  set_property(GLOBAL APPEND PROPERTY KTL_ROOMS ${room})

  if(arg_PROGRAM)
    add_executable(${arg_PROGRAM} ${room}/main.cpp)
    target_link_libraries(${arg_PROGRAM} PRIVATE ktl_${room})
    target_compile_definitions(${arg_PROGRAM} PRIVATE KTL_VERSION="${PROJECT_VERSION}")
    # All programs stand side by side: one folder holds them, and a program looks for its siblings in its own.
    set_target_properties(${arg_PROGRAM} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR})
  endif()
endfunction()
