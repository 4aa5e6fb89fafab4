#!/usr/bin/env bash
# Installs what the build and the interoperability tests need, from Debian's packages, when it
# is missing: the compiler tool chain pieces, GoogleTest, the JSON, XML and zip libraries of the
# GeoJSON and KML/KMZ formats, GDAL's command-line tools and Python bindings, PROJ's cs2cs/geod,
# PROJ's header and database (tlgis reprojects through it), pyshp and ezdxf for Debian's
# /usr/bin/python3, and clang's fuzzer runtime.
# Safe to run again: it does nothing when everything is present.
set -euo pipefail

need=()
have_cmd() { command -v "$1" >/dev/null 2>&1; }
have_py() { /usr/bin/python3 -c "import $1" >/dev/null 2>&1; }

have_cmd cmake || need+=(cmake)
have_cmd ninja || need+=(ninja-build)
have_cmd g++ || need+=(g++)
[ -f /usr/include/gtest/gtest.h ] || need+=(libgtest-dev libgmock-dev)
[ -f /usr/include/nlohmann/json.hpp ] || need+=(nlohmann-json3-dev)
[ -f /usr/include/pugixml.hpp ] || need+=(libpugixml-dev)
[ -f /usr/include/minizip/unzip.h ] || need+=(libminizip-dev)
have_cmd ogrinfo || need+=(gdal-bin)
have_py osgeo || need+=(python3-gdal)
have_cmd cs2cs || need+=(proj-bin)
[ -f /usr/include/proj.h ] || need+=(libproj-dev)
[ -f /usr/share/proj/proj.db ] || need+=(proj-data)
[ -x /usr/bin/python3 ] || need+=(python3)
have_py shapefile || need+=(python3-pyshp)
have_py ezdxf || need+=(python3-ezdxf)

# Without root the tests that need a missing peer skip themselves, so that is no failure.
"$(dirname "$0")/apt-install.sh" install-test-tools "${need[@]}" || exit 0
