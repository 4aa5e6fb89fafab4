#!/usr/bin/env bash
# apt-install.sh WHO PACKAGE...: installs Debian packages quietly for the scripts that fetch
# their own tools. Exits with 1, saying what is missing, when not run as root.
set -euo pipefail
who=$1
shift
[ $# -gt 0 ] || exit 0
if [ "$(id -u)" -ne 0 ]; then
  echo "$who: missing $*; run as root to install them" >&2
  exit 1
fi
echo "$who: installing $*" >&2
export DEBIAN_FRONTEND=noninteractive
apt-get update -qq >/dev/null
apt-get install -y -qq --no-install-recommends "$@" >/dev/null
