# The platform libraries; each is linked privately by the one adapter that wraps it. Their names have the project's in front,
# because what is found about them stands in the cache of the whole build.
find_package(PkgConfig REQUIRED)
pkg_check_modules(QUIVERLEAF_ICU REQUIRED IMPORTED_TARGET icu-uc icu-i18n)
pkg_check_modules(QUIVERLEAF_GLIB REQUIRED IMPORTED_TARGET glib-2.0 gio-2.0 gio-unix-2.0)
pkg_check_modules(QUIVERLEAF_PUGIXML REQUIRED IMPORTED_TARGET pugixml)
pkg_check_modules(QUIVERLEAF_SECCOMP REQUIRED IMPORTED_TARGET libseccomp)
pkg_check_modules(QUIVERLEAF_URIPARSER REQUIRED IMPORTED_TARGET liburiparser)
pkg_check_modules(QUIVERLEAF_CURL REQUIRED libcurl)

# Of Highway the headers alone; platform/Foundation/Vectors/VectorTargets.cpp has what they call.
pkg_check_modules(QUIVERLEAF_HIGHWAY REQUIRED libhwy)
add_library(Highway INTERFACE IMPORTED)
target_include_directories(Highway SYSTEM INTERFACE ${QUIVERLEAF_HIGHWAY_INCLUDE_DIRS})

if(QUIVERLEAF_MEDIA)
  pkg_check_modules(QUIVERLEAF_MAGIC REQUIRED IMPORTED_TARGET libmagic)
  pkg_check_modules(QUIVERLEAF_VIPS REQUIRED IMPORTED_TARGET vips)
  pkg_check_modules(QUIVERLEAF_EXIV2 REQUIRED IMPORTED_TARGET exiv2)
  pkg_check_modules(QUIVERLEAF_ARCHIVE REQUIRED IMPORTED_TARGET libarchive)
  pkg_check_modules(QUIVERLEAF_EXPAT REQUIRED IMPORTED_TARGET expat)
  pkg_check_modules(QUIVERLEAF_LCMS REQUIRED IMPORTED_TARGET lcms2)
  # MuPDF's own pkg-config file names the wrong libraries.
  add_library(MuPDF INTERFACE IMPORTED)
  target_link_libraries(MuPDF INTERFACE mupdf mupdf-third mujs gumbo openjp2 jbig2dec jpeg freetype harfbuzz z m)
endif()
if(QUIVERLEAF_COMMAND)
  find_package(nlohmann_json 3.11 REQUIRED)
endif()
if(QUIVERLEAF_TESTS OR QUIVERLEAF_INSTALL)
  find_package(Python3 3.9 COMPONENTS Interpreter REQUIRED)
endif()
