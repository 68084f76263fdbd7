# quiverleaf_embed_table(LIBRARY TABLE SOURCE OPTIONS...): makes TABLE.tsv a part of a library, so that it needs no path at run
# time: SOURCE includes it as TABLE.inc, without the folder.
function(quiverleaf_embed_table library table source)
  get_filename_component(name ${table} NAME)
  set(output ${CMAKE_CURRENT_BINARY_DIR}/${name}.inc)
  add_custom_command(OUTPUT ${output}
    COMMAND ${CMAKE_COMMAND} -DINPUT=${CMAKE_CURRENT_SOURCE_DIR}/${table}.tsv -DOUTPUT=${output} ${ARGN}
      -P ${PROJECT_SOURCE_DIR}/cmake/EmbedTableRows.cmake
    DEPENDS ${table}.tsv ${PROJECT_SOURCE_DIR}/cmake/EmbedTableRows.cmake
    VERBATIM)
  add_custom_target(${library}-${name} DEPENDS ${output})
  add_dependencies(${library} ${library}-${name})
  set_source_files_properties(${source} TARGET_DIRECTORY ${library} PROPERTIES
    INCLUDE_DIRECTORIES ${CMAKE_CURRENT_BINARY_DIR} OBJECT_DEPENDS ${output})
endfunction()

# quiverleaf_embed_text(LIBRARY TEXT SOURCE): makes the file TEXT a part of a library, as a literal that SOURCE includes as
# TEXT.inc, without the folder.
function(quiverleaf_embed_text library text source)
  get_filename_component(name ${text} NAME)
  set(output ${CMAKE_CURRENT_BINARY_DIR}/${name}.inc)
  add_custom_command(OUTPUT ${output}
    COMMAND ${CMAKE_COMMAND} -DINPUT=${CMAKE_CURRENT_SOURCE_DIR}/${text} -DOUTPUT=${output}
      -P ${PROJECT_SOURCE_DIR}/cmake/EmbedText.cmake
    DEPENDS ${text} ${PROJECT_SOURCE_DIR}/cmake/EmbedText.cmake
    VERBATIM)
  add_custom_target(${library}-${name} DEPENDS ${output})
  add_dependencies(${library} ${library}-${name})
  set_property(SOURCE ${source} TARGET_DIRECTORY ${library} APPEND PROPERTY INCLUDE_DIRECTORIES ${CMAKE_CURRENT_BINARY_DIR})
  set_property(SOURCE ${source} TARGET_DIRECTORY ${library} APPEND PROPERTY OBJECT_DEPENDS ${output})
endfunction()
