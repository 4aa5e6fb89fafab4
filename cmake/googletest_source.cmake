# GoogleTest built from its sources for the target of a cross build, where no GoogleTest for
# the target is installed: Debian's googletest package puts them in /usr/src/googletest.
set(TL_GIS_GOOGLETEST_SOURCE /usr/src/googletest CACHE PATH "GoogleTest sources to build for the target")
if(NOT EXISTS ${TL_GIS_GOOGLETEST_SOURCE}/CMakeLists.txt)
  message(FATAL_ERROR "no GoogleTest sources in ${TL_GIS_GOOGLETEST_SOURCE}; scripts/install-windows-tools.sh installs them")
endif()
set(BUILD_GMOCK OFF CACHE BOOL "" FORCE)
set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
# Its own CMake file names the targets GTest::gtest and GTest::gtest_main, as find_package does.
add_subdirectory(${TL_GIS_GOOGLETEST_SOURCE} ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
