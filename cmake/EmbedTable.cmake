# quiverleaf_embed_table(LIBRARY TABLE SOURCE OPTIONS...): makes TABLE.tsv a part of a library, so that it needs no path at run
# time: SOURCE includes it as TABLE.inc.
function(quiverleaf_embed_table library table source)
  set(output ${CMAKE_CURRENT_BINARY_DIR}/${table}.inc)
  add_custom_command(OUTPUT ${output}
    COMMAND ${CMAKE_COMMAND} -DINPUT=${CMAKE_CURRENT_SOURCE_DIR}/${table}.tsv -DOUTPUT=${output} ${ARGN}
      -P ${PROJECT_SOURCE_DIR}/cmake/EmbedTableRows.cmake
    DEPENDS ${table}.tsv ${PROJECT_SOURCE_DIR}/cmake/EmbedTableRows.cmake
    VERBATIM)
  add_custom_target(${library}-${table} DEPENDS ${output})
  add_dependencies(${library} ${library}-${table})
  set_source_files_properties(${source} TARGET_DIRECTORY ${library} PROPERTIES
    INCLUDE_DIRECTORIES ${CMAKE_CURRENT_BINARY_DIR} OBJECT_DEPENDS ${output})
endfunction()
