# Where what is built is used from: an installation, or the built tree when it is a part of another project's. That tree is laid
# out as the installation is, as far as that lies below its prefix, so that programs find each other in both.

# quiverleaf_folder(NAME USUAL-FOLDER SUBFOLDER): QUIVERLEAF_NAME, QUIVERLEAF_FULL_NAME, and in the built tree
# QUIVERLEAF_BUILT_NAME.
function(quiverleaf_folder name usual_folder subfolder)
  set(folder ${usual_folder})
  set(prefix ${PROJECT_BINARY_DIR})
  if(QUIVERLEAF_INSTALL)
    set(folder ${CMAKE_INSTALL_${name}})
    set(prefix ${CMAKE_INSTALL_PREFIX})
  endif()
  set(built ${folder})
  if(IS_ABSOLUTE ${folder})
    set(built ${usual_folder})
  endif()
  cmake_path(ABSOLUTE_PATH folder BASE_DIRECTORY ${prefix} OUTPUT_VARIABLE full)
  set(QUIVERLEAF_${name} ${folder}${subfolder} PARENT_SCOPE)
  set(QUIVERLEAF_FULL_${name} ${full}${subfolder} PARENT_SCOPE)
  set(QUIVERLEAF_BUILT_${name} ${PROJECT_BINARY_DIR}/${built}${subfolder} PARENT_SCOPE)
endfunction()

if(QUIVERLEAF_INSTALL)
  include(GNUInstallDirs)
endif()
quiverleaf_folder(BINDIR bin "")
quiverleaf_folder(LIBDIR lib "")
quiverleaf_folder(LIBEXECDIR libexec /quiverleaf)
quiverleaf_folder(DATADIR share /quiverleaf)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${QUIVERLEAF_BUILT_BINDIR})
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${QUIVERLEAF_BUILT_LIBDIR})
