# pkg-config: builds and runs the programs with the flags that pkg-config prints.
# Use: pkg-config.sh LIBDIR CC CXX
# SPDX-License-Identifier: MIT
set -eu
cd "$(dirname "$0")/project"
app=$(mktemp)
trap 'rm "$app" "$app.o"' EXIT
export PKG_CONFIG_PATH="$1/pkgconfig"

for compile in "$2 -std=c11 -c app.c" "$3 -std=c++20 -c app.cpp"; do
  $compile -o "$app.o" $(pkg-config --cflags cf)
  ${compile%% *} -o "$app" "$app.o" $(pkg-config --libs cf)
  LD_LIBRARY_PATH=$1 "$app"
  ${compile%% *} -o "$app" -static "$app.o" $(pkg-config --static --libs cf)
  "$app"
done
