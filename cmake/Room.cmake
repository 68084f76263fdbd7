# A library is made of rooms. Its objects are linked into the library, and into the tests of what the library keeps to itself.

# quiverleaf_library(NAME LIBRARY...): the shared library nimbo-NAME out of the objects nimbo-NAME-objects, which the rooms
# fill; its users get the libraries, too.
function(quiverleaf_library name)
  add_library(nimbo-${name}-objects OBJECT)
  target_include_directories(nimbo-${name}-objects PUBLIC ${PROJECT_SOURCE_DIR})
  set_target_properties(nimbo-${name}-objects PROPERTIES CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
  add_library(nimbo-${name} SHARED)
  target_link_libraries(nimbo-${name}-objects PUBLIC ${ARGN})
  target_link_libraries(nimbo-${name} PRIVATE nimbo-${name}-objects PUBLIC ${ARGN})
  target_include_directories(nimbo-${name} PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>)
  set_target_properties(nimbo-${name} PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
endfunction()

# quiverleaf_room(LIBRARY SOURCES... HEADERS...): what this folder adds to a library. HEADERS are the public ones, which are
# installed; the others are this room's own.
function(quiverleaf_room library)
  cmake_parse_arguments(PARSE_ARGV 1 ROOM "" "" "SOURCES;HEADERS")
  target_sources(nimbo-${library}-objects PRIVATE ${ROOM_SOURCES})
  file(RELATIVE_PATH room ${PROJECT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR})
  list(TRANSFORM ROOM_HEADERS PREPEND ${room}/)
  set_property(TARGET nimbo-${library} APPEND PROPERTY QUIVERLEAF_PUBLIC_HEADERS ${ROOM_HEADERS})
endfunction()
