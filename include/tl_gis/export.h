#pragma once
// TL_GIS_API marks what the library exports: the classes, functions and objects of the public
// headers. Everything else is hidden, so a host links against the interface and nothing more.
//
// On Windows the DLL's own sources are built with TL_GIS_BUILDING_DLL and a host that links the
// static library defines TL_GIS_STATIC; any other user imports from the DLL.

#if defined(_WIN32) || defined(__CYGWIN__)
#if defined(TL_GIS_BUILDING_DLL)
#define TL_GIS_API __declspec(dllexport)
#elif defined(TL_GIS_STATIC)
#define TL_GIS_API
#else
#define TL_GIS_API __declspec(dllimport)
#endif
#else
#define TL_GIS_API __attribute__((visibility("default")))
#endif
