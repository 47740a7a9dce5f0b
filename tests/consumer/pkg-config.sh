# pkg-config: builds and runs the programs with the flags that pkg-config prints.
# Use: pkg-config.sh LIBDIR CC CXX
# SPDX-License-Identifier: MIT
set -eu
cd "$(dirname "$0")/project"
app=$(mktemp)
trap 'rm "$app"' EXIT
export PKG_CONFIG_PATH="$1/pkgconfig"

for compile in "$2 -std=c11 app.c" "$3 -std=c++20 app.cpp"; do
  $compile -o "$app" $(pkg-config --cflags --libs cf)
  LD_LIBRARY_PATH=$1 "$app"
  $compile -o "$app" -static $(pkg-config --static --cflags --libs cf)
  "$app"
done
