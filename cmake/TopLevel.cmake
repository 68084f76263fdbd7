# What a project decides for itself when it is built alone, and leaves to the one above when it is a part.
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
get_property(is_multi_config GLOBAL PROPERTY GENERATOR_IS_MULTI_CONFIG)
if(NOT is_multi_config AND NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE RelWithDebInfo CACHE STRING "Debug, Release, RelWithDebInfo or MinSizeRel" FORCE)
endif()

find_program(QUIVERLEAF_CCACHE ccache)
mark_as_advanced(QUIVERLEAF_CCACHE)
foreach(language C CXX)
  if(QUIVERLEAF_CCACHE AND NOT CMAKE_${language}_COMPILER_LAUNCHER)
    set(CMAKE_${language}_COMPILER_LAUNCHER ${QUIVERLEAF_CCACHE})
  endif()
endforeach()
