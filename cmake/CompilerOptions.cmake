# Warnings, sanitizers, and where programs look for the project's libraries.
add_compile_options(-Wall -Wextra -Wpedantic -Wshadow
  "$<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor;-Wextra-semi>")
if(QUIVERLEAF_WERROR)
  add_compile_options(-Werror)
endif()
if(QUIVERLEAF_SANITIZE)
  add_compile_options(-fsanitize=${QUIVERLEAF_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  # GCC finds uninitialized values in instrumented code that are none.
  add_compile_options(-Wno-maybe-uninitialized)
  add_link_options(-fsanitize=${QUIVERLEAF_SANITIZE})
endif()
set(CMAKE_INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")
find_program(CCACHE ccache)
if(CCACHE)
  set(CMAKE_C_COMPILER_LAUNCHER ${CCACHE})
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE})
endif()
