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
  target_compile_features(nimbo-${name} INTERFACE cxx_std_20)
  target_sources(nimbo-${name} PUBLIC FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR})
  target_link_options(nimbo-${name} PRIVATE LINKER:--version-script=${PROJECT_SOURCE_DIR}/cmake/exports.map)
  set_target_properties(nimbo-${name} PROPERTIES
    LINK_DEPENDS ${PROJECT_SOURCE_DIR}/cmake/exports.map VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
endfunction()

# quiverleaf_room(LIBRARY SOURCES... HEADERS...): what this folder adds to a library. HEADERS are the public ones, which are
# installed; the others are this room's own.
function(quiverleaf_room library)
  cmake_parse_arguments(PARSE_ARGV 1 ROOM "" "" "SOURCES;HEADERS")
  target_sources(nimbo-${library}-objects PRIVATE ${ROOM_SOURCES})
  target_sources(nimbo-${library} PUBLIC FILE_SET HEADERS FILES ${ROOM_HEADERS})
  file(RELATIVE_PATH room ${PROJECT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR})
  list(TRANSFORM ROOM_HEADERS PREPEND ${room}/)
  set_property(TARGET nimbo-${library} APPEND PROPERTY QUIVERLEAF_PUBLIC_HEADERS ${ROOM_HEADERS})
endfunction()

# quiverleaf_publish(LIBRARY): a library for others, once its rooms are known. They call it nimbo::LIBRARY and include
# <nimbo/LIBRARY.hpp>, which includes all its public headers, whether it is installed or built with them.
function(quiverleaf_publish library)
  add_library(nimbo::${library} ALIAS nimbo-${library})
  set_target_properties(nimbo-${library} PROPERTIES EXPORT_NAME ${library})
  get_target_property(lines nimbo-${library} QUIVERLEAF_PUBLIC_HEADERS)
  list(SORT lines)
  list(TRANSFORM lines REPLACE "(.+)" "#include \"\\1\"")
  list(JOIN lines "\n" lines)
  set(umbrella ${PROJECT_BINARY_DIR}/include/nimbo/${library}.hpp)
  file(CONFIGURE OUTPUT ${umbrella} CONTENT
    "// SPDX-License-Identifier: Apache-2.0\n// All public headers of nimbo-${library}.\n#pragma once\n\n@lines@\n" @ONLY)
  target_sources(nimbo-${library} PUBLIC
    FILE_SET umbrella TYPE HEADERS BASE_DIRS ${PROJECT_BINARY_DIR}/include FILES ${umbrella})
endfunction()
