# The platform libraries; each is linked privately by the one adapter that wraps it.
find_package(PkgConfig REQUIRED)
find_package(Threads REQUIRED)
pkg_check_modules(ICU REQUIRED IMPORTED_TARGET icu-uc icu-i18n)
pkg_check_modules(GLIB REQUIRED IMPORTED_TARGET glib-2.0 gio-2.0 gio-unix-2.0)
pkg_check_modules(PUGIXML REQUIRED IMPORTED_TARGET pugixml)
pkg_check_modules(URIPARSER REQUIRED IMPORTED_TARGET liburiparser)
pkg_check_modules(HWY REQUIRED libhwy)
pkg_check_modules(MAGIC REQUIRED IMPORTED_TARGET libmagic)
pkg_check_modules(VIPS REQUIRED IMPORTED_TARGET vips)
pkg_check_modules(EXIV2 REQUIRED IMPORTED_TARGET exiv2)
pkg_check_modules(LCMS REQUIRED IMPORTED_TARGET lcms2)

# Of Highway the headers alone; platform/Foundation/Vectors/VectorTargets.cpp has what they call.
add_library(Highway INTERFACE)
target_include_directories(Highway SYSTEM INTERFACE ${HWY_INCLUDE_DIRS})

# MuPDF's own pkg-config file names the wrong libraries.
add_library(MuPDF INTERFACE)
target_link_libraries(MuPDF INTERFACE mupdf mupdf-third mujs gumbo openjp2 jbig2dec jpeg freetype harfbuzz z m)
find_package(nlohmann_json 3.11 REQUIRED)
find_package(Python3 3.9 COMPONENTS Interpreter REQUIRED)
