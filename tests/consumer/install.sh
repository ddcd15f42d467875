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
if [[ $TOOLS == ON ]]; then
    for program in mireth-phone mireth-receiver; do
        "$PREFIX/bin/$program" --version | grep -q "^$program [0-9]" ||
            fail "$program does not run where it is installed"
    done
fi
# Tests and private headers stay at home.
others=$(find "$PREFIX/bin" -type f -printf '%f\n' 2>/dev/null | grep -vxE 'mireth-(attach|phone|receiver)' || true)
[[ -z $others ]] || fail "other programs are installed: $others"
[[ ! -e $PREFIX/$INCLUDEDIR/MirethVex/Headless ]] || fail "the headless platform is installed"
