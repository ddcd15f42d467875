#!/usr/bin/env bash
# Builds and runs a host with the compiler and pkg-config alone.
source "$(dirname "$0")/common.sh"

# Moved elsewhere, an installation has to work, too.
cp -r "$PREFIX" "$work/moved"
PREFIX=$work/moved
export PKG_CONFIG_PATH=$PREFIX/$LIBDIR/pkgconfig
static=
[[ $SHARED == ON ]] || static=--static
read -ra flags <<<"$(pkg-config $static --cflags --libs mirethvex)"
"$CXX" -std=c++23 "$SOURCE/tests/consumer/host/main.cpp" "${flags[@]}" -o "$work/host"
(cd "$work" && XDG_CACHE_HOME=$work/cache LD_LIBRARY_PATH=$PREFIX/$LIBDIR ./host)
