# symbols: the names in the symbol map, in the header and in the shared library are the same; the
# library calls its own functions directly, except those that an application may displace.
# Use: symbols.sh SOURCES LIBRARY
# SPDX-License-Identifier: MIT
set -eu
work=$(mktemp -d)
trap 'rm -r "$work"' EXIT

names() { # of a file with one name a line, alone and with a semicolon
  sed -n 's/^ *\([a-z]*\);$/\1/p' "$1" | LC_ALL=C sort
}
names "$1/cmake/cf.map" >"$work/map"
names "$1/cmake/displaceable.list" >"$work/displaceable"
sed -n 's/^CF_API[^(]*[ *]\([a-z]*\)(.*/\1/p' "$1/include/cf.h" | LC_ALL=C sort >"$work/header"
nm -D --defined-only "$2" | sed '/ A CF_/d; s/^[0-9a-f]* [TW] //; s/@.*//' | LC_ALL=C sort >"$work/library"
readelf -rW "$2" | sed "s/@.*//; s/.* //" | grep -xFf "$work/map" | LC_ALL=C sort -u >"$work/called"

diff "$work/header" "$work/map"
diff "$work/map" "$work/library"
diff "$work/displaceable" "$work/called"
