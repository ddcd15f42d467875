#!/usr/bin/env bash
# Builds and runs a host that finds the library with find_package; builds the example that newcomers copy from.
source "$(dirname "$0")/common.sh"

build() {
    "$CMAKE" -S "$1" -B "$work/$2" -DCMAKE_PREFIX_PATH="$PREFIX" -DCMAKE_CXX_COMPILER="$CXX" \
        -DCMAKE_FIND_USE_PACKAGE_REGISTRY=OFF >"$work/log" 2>&1 || fail "$(cat "$work/log")"
    grep -q "^MirethVex_DIR:PATH=$PREFIX/" "$work/$2/CMakeCache.txt" || fail "another installation was found"
    "$CMAKE" --build "$work/$2" >"$work/log" 2>&1 || fail "$(cat "$work/log")"
}

# Moved elsewhere, an installation has to work, too.
cp -r "$PREFIX" "$work/moved"
PREFIX=$work/moved
build "$SOURCE/tests/consumer/host" host
(cd "$work" && XDG_CACHE_HOME=$work/cache host/host)
build "$SOURCE/examples/minimal" minimal
# Its information file lies beside it. Whether a receiver listens where that says is up to the machine.
(cd "$work" && XDG_CACHE_HOME=$work/cache minimal/minimal) >"$work/log" || fail "$(cat "$work/log")"
grep -qE '^start: (success|fail)' "$work/log" || fail "the example was answered: $(cat "$work/log")"
