# PROJ for tlgis's reprojection (--projected reproject, --crs). The tool loads PROJ's shared
# library at run time, and only when a file is to be reprojected, so that it starts as fast
# without it; the build needs PROJ's header and the name its library is loaded by. PROJ 8.1 or
# later (Debian's libproj-dev; scripts/install-test-tools.sh installs it). Without them tlgis is
# built without reprojection, and says so when asked for it. The core library never uses PROJ.
#
# Sets TLGIS_PROJ_INCLUDE_DIR, TLGIS_PROJ_SONAME ("libproj.so.25") and TLGIS_PROJ_PACKAGE
# (Debian's package of that library, "libproj25"); TLGIS_PROJ_SONAME is empty without PROJ.
set(TLGIS_PROJ_SONAME "")
if(NOT WIN32)
  find_path(TLGIS_PROJ_INCLUDE_DIR proj.h)
  find_library(TLGIS_PROJ_LIBRARY proj)
endif()
if(TLGIS_PROJ_INCLUDE_DIR AND TLGIS_PROJ_LIBRARY)
  file(STRINGS ${TLGIS_PROJ_INCLUDE_DIR}/proj.h proj_version_lines REGEX "define PROJ_VERSION_(MAJOR|MINOR) ")
  string(REGEX MATCH "MAJOR +([0-9]+)" _ "${proj_version_lines}")
  set(proj_major ${CMAKE_MATCH_1})
  string(REGEX MATCH "MINOR +([0-9]+)" _ "${proj_version_lines}")
  set(proj_minor ${CMAKE_MATCH_1})
  # The run-time name is the link name's target cut after its first version number.
  file(REAL_PATH ${TLGIS_PROJ_LIBRARY} proj_real)
  get_filename_component(proj_file ${proj_real} NAME)
  string(REGEX MATCH "^libproj\\.so\\.[0-9]+" proj_soname "${proj_file}")
  if("${proj_major}.${proj_minor}" VERSION_LESS 8.1)
    message(STATUS "tlgis: PROJ ${proj_major}.${proj_minor} is older than 8.1; tlgis is built without reprojection")
  elseif(NOT proj_soname)
    message(STATUS "tlgis: no versioned PROJ library behind ${TLGIS_PROJ_LIBRARY}; tlgis is built without reprojection")
  else()
    set(TLGIS_PROJ_SONAME ${proj_soname})
    string(REGEX REPLACE "^libproj\\.so\\." "libproj" TLGIS_PROJ_PACKAGE "${proj_soname}")
    message(STATUS "tlgis: reprojection through PROJ ${proj_major}.${proj_minor}, loaded as ${TLGIS_PROJ_SONAME} when asked for")
  endif()
else()
  message(STATUS "tlgis: PROJ's header or library not found (Debian's libproj-dev); tlgis is built without reprojection")
endif()
