# The schema's files are part of the program.
set(company ${CMAKE_CURRENT_SOURCE_DIR}/company)
file(GLOB schema_files CONFIGURE_DEPENDS ${company}/schema/*.sql)
set(schema_source ${CMAKE_CURRENT_BINARY_DIR}/schema_texts.cpp)
add_custom_command(
  OUTPUT ${schema_source}
  COMMAND ${CMAKE_COMMAND} -DOUTPUT=${schema_source} "-DFILES=${schema_files}" -P ${company}/embed_texts.cmake
  DEPENDS ${schema_files} ${company}/embed_texts.cmake
  VERBATIM)
target_sources(ktl_company PRIVATE ${schema_source})
