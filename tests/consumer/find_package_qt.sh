#!/usr/bin/env bash
# Builds and runs a Qt host with the package's component; builds the examples.
source "$(dirname "$0")/common.sh"

[[ $HAS_QT == ON || $HAS_QT == TRUE || $HAS_QT == 1 ]] || skip "the library was built without Qt"
build() {
    "$CMAKE" -S "$SOURCE/$1" -B "$work/$2" -DCMAKE_PREFIX_PATH="$PREFIX" -DCMAKE_CXX_COMPILER="$CXX" \
        -DCMAKE_FIND_USE_PACKAGE_REGISTRY=OFF >"$work/log" 2>&1 || fail "$(cat "$work/log")"
    "$CMAKE" --build "$work/$2" >"$work/log" 2>&1 || fail "$(cat "$work/log")"
}

build tests/consumer/qthost qthost
(cd "$work" && XDG_CACHE_HOME=$work/cache QT_QPA_PLATFORM=offscreen qthost/qthost)
# What newcomers copy from.
build examples/qt-form qt-form
build examples/qt-shop qt-shop
# It calls nothing of the library itself, only of the component.
if ldd "$work/qt-shop/qt-shop" | grep -F 'not found'; then
    fail "the shop does not find its libraries"
fi
