# pkg-config: builds and runs the consumer by what pkg-config tells. Use: pkg-config.sh LIBDIR CC CXX
# SPDX-License-Identifier: MIT
set -eu
cd "$(dirname "$0")/project"
app=$(mktemp)
trap 'rm "$app"' EXIT
export PKG_CONFIG_PATH="$1/pkgconfig"

for compiler in "$2" "$3 -x c++"; do
  $compiler app.c -o "$app" $(pkg-config --cflags --libs cf)
  LD_LIBRARY_PATH=$1 "$app"
  $compiler app.c -o "$app" -static $(pkg-config --static --cflags --libs cf)
  "$app"
done
