# Windows builds: every program and the DLL in one folder, bin/, beside the MinGW runtime DLLs
# they load, so that they start from there (under Wine too) without a PATH set up for them.
# The DLL is tl_gis.dll; its import library libtl_gis.dll.a links as -ltl_gis.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(CMAKE_SHARED_LIBRARY_PREFIX "")
# The sources that call the Windows API want <windows.h> without min and max and without its
# rarely used parts; the installed headers are checked without these by the install test.
add_compile_definitions(WIN32_LEAN_AND_MEAN NOMINMAX)

if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  set(TL_GIS_MINGW_RUNTIME)
  foreach(dll libstdc++-6.dll libgcc_s_seh-1.dll libwinpthread-1.dll)
    execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${dll}
                    OUTPUT_VARIABLE found OUTPUT_STRIP_TRAILING_WHITESPACE)
    if(NOT IS_ABSOLUTE "${found}" OR NOT EXISTS "${found}")
      message(FATAL_ERROR "${CMAKE_CXX_COMPILER} does not know where ${dll} is")
    endif()
    file(COPY ${found} DESTINATION ${CMAKE_RUNTIME_OUTPUT_DIRECTORY})
    list(APPEND TL_GIS_MINGW_RUNTIME ${found})
  endforeach()
  install(FILES ${TL_GIS_MINGW_RUNTIME} DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()
