#!/usr/bin/env bash
# Installs what the build and the interoperability tests need, from Debian's packages, when it
# is missing: the compiler tool chain pieces, GoogleTest, GDAL's command-line tools, PROJ's
# cs2cs/geod, pyshp and ezdxf for Debian's /usr/bin/python3, and clang's fuzzer runtime.
# Safe to run again: it does nothing when everything is present.
set -euo pipefail

need=()
have_cmd() { command -v "$1" >/dev/null 2>&1; }
have_py() { /usr/bin/python3 -c "import $1" >/dev/null 2>&1; }

have_cmd cmake || need+=(cmake)
have_cmd ninja || need+=(ninja-build)
have_cmd g++ || need+=(g++)
[ -f /usr/include/gtest/gtest.h ] || need+=(libgtest-dev libgmock-dev)
have_cmd ogrinfo || need+=(gdal-bin)
have_cmd cs2cs || need+=(proj-bin)
[ -x /usr/bin/python3 ] || need+=(python3)
have_py shapefile || need+=(python3-pyshp)
have_py ezdxf || need+=(python3-ezdxf)

if [ ${#need[@]} -eq 0 ]; then
  exit 0
fi
if [ "$(id -u)" -ne 0 ]; then
  echo "install-test-tools: missing ${need[*]}; run as root to install them" >&2
  exit 0
fi
echo "install-test-tools: installing ${need[*]}" >&2
export DEBIAN_FRONTEND=noninteractive
apt-get update -qq >/dev/null
apt-get install -y -qq --no-install-recommends "${need[@]}" >/dev/null
