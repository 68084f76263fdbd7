# Warnings, sanitizers, and where programs look for the project's libraries.
add_compile_options(-Wall -Wextra -Wpedantic -Wshadow
  "$<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor;-Wextra-semi>")
if(QUIVERLEAF_WERROR)
  add_compile_options(-Werror)
endif()
if(QUIVERLEAF_SANITIZE)
  add_compile_options(-fsanitize=${QUIVERLEAF_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${QUIVERLEAF_SANITIZE})
  # GCC takes a std::variant for uninitialized between what the sanitizers insert.
  add_compile_options($<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
endif()
if(QUIVERLEAF_FUZZ)
  # The fuzzing engine is led by the coverage of the libraries, too.
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()
set(CMAKE_INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")
find_program(CCACHE ccache)
if(CCACHE)
  set(CMAKE_C_COMPILER_LAUNCHER ${CCACHE})
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE})
endif()
