#!/usr/bin/env bash
# Builds and runs a host with the compiler and pkg-config alone.
source "$(dirname "$0")/common.sh"

# Moved elsewhere, an installation has to work, too.
cp -r "$PREFIX" "$work/moved"
PREFIX=$work/moved
if [[ $SHARED == ON ]]; then
    # A host of the shared object needs no package beside it.
    export PKG_CONFIG_LIBDIR=$PREFIX/$LIBDIR/pkgconfig
else
    export PKG_CONFIG_PATH=$PREFIX/$LIBDIR/pkgconfig
fi
read -ra flags <<<"$(pkg-config --cflags --libs mirethvex)"
"$CXX" -std=c++23 "$SOURCE/tests/consumer/host/main.cpp" "${flags[@]}" -o "$work/host"
(cd "$work" && XDG_CACHE_HOME=$work/cache LD_LIBRARY_PATH=$PREFIX/$LIBDIR ./host)
