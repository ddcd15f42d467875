#!/usr/bin/env bash
# Installs the build tree into a prefix that the other consumer tests use.
source "$(dirname "$0")/common.sh"

rm -rf "$PREFIX"
"$CMAKE" --install "$BUILD" --prefix "$PREFIX" >"$work/install.log" || fail "$(cat "$work/install.log")"

for file in "$INCLUDEDIR/MirethVex/MirethVex.hpp" "$INCLUDEDIR/MirethVex/Linux/LinuxPlatform.hpp" \
    "$LIBDIR/cmake/MirethVex/MirethVexConfig.cmake" "$LIBDIR/pkgconfig/mirethvex.pc" \
    share/doc/MirethVex/LICENSE; do
    [[ -s $PREFIX/$file ]] || fail "$file is not installed"
done
# Tests, private headers and all programs but one stay at home.
programs=$(ls "$PREFIX/bin" 2>/dev/null || true)
[[ -z $programs || $programs == mireth-attach ]] || fail "other programs are installed: $programs"
[[ ! -e $PREFIX/$INCLUDEDIR/MirethVex/Headless ]] || fail "the headless platform is installed"
