# Cross build for 64-bit Windows with Debian's MinGW-w64 (g++-mingw-w64-x86-64-posix):
#   cmake -S . -B build-windows -G Ninja -DCMAKE_TOOLCHAIN_FILE=cmake/mingw-w64-x86_64.cmake
# Programs built here run on Linux under Wine: ctest, gtest_discover_tests and add_test start
# them through CMAKE_CROSSCOMPILING_EMULATOR, scripts/wine-run.sh with a Wine prefix inside the
# build folder (scripts/test-windows.sh makes it and keeps its server running).
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(TL_GIS_MINGW_TRIPLET x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${TL_GIS_MINGW_TRIPLET}-gcc-posix)
set(CMAKE_CXX_COMPILER ${TL_GIS_MINGW_TRIPLET}-g++-posix)
set(CMAKE_RC_COMPILER ${TL_GIS_MINGW_TRIPLET}-windres)

# Libraries and headers come from the MinGW-w64 tree only, never from Linux; CMake packages also
# from the prefixes a project names (CMAKE_PREFIX_PATH), such as an installed tl_gis.
set(CMAKE_FIND_ROOT_PATH /usr/${TL_GIS_MINGW_TRIPLET})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE BOTH)

if(NOT CMAKE_CROSSCOMPILING_EMULATOR)
  set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/../scripts/wine-run.sh ${CMAKE_BINARY_DIR}/wine-prefix)
endif()
