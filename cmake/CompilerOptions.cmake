# Warnings, optimisation, hardening and sanitizers, for this folder and those below it.
add_compile_options(-Wall -Wextra -Wpedantic -Wshadow
  "$<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor;-Wextra-semi>")
if(QUIVERLEAF_WERROR)
  add_compile_options(-Werror)
endif()
# A project above that names no configuration means none of -O, which nobody wants of a library.
if(NOT CMAKE_CXX_FLAGS MATCHES "(^| )-O")
  add_compile_options("$<$<CONFIG:>:-O2>")
endif()
add_link_options(LINKER:--as-needed)

if(QUIVERLEAF_HARDENING)
  include(CheckCXXCompilerFlag)
  foreach(flag -fstack-protector-strong -fstack-clash-protection -fcf-protection)
    string(MAKE_C_IDENTIFIER QUIVERLEAF_HAS${flag} has_flag)
    check_cxx_compiler_flag(${flag} ${has_flag})
    if(${has_flag})
      add_compile_options(${flag})
    endif()
  endforeach()
  add_compile_definitions(_GLIBCXX_ASSERTIONS)
  # It takes optimisation, and hides calls from the sanitizers.
  if(NOT QUIVERLEAF_SANITIZE)
    add_compile_options("$<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=3>")
  endif()
  add_link_options(LINKER:-z,relro,-z,now "$<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:-pie>")
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
