#!/usr/bin/env bash
# A port outside the tree, as docs/porting.md shows it, is held to the contract.
source "$(dirname "$0")/common.sh"

fenced "$SOURCE/docs/porting.md" cmake "$work/port"
fenced "$SOURCE/docs/porting.md" cpp "$work/port"
mv "$work/port/1.cmake" "$work/port/CMakeLists.txt"
mv "$work/port/1.cpp" "$work/port/MyClock.cpp"
"$CMAKE" -S "$work/port" -B "$work/build" -DMIRETH="$SOURCE" -DCMAKE_PREFIX_PATH="$PREFIX" \
    -DCMAKE_CXX_COMPILER="$CXX" -DCMAKE_FIND_USE_PACKAGE_REGISTRY=OFF >"$work/log" 2>&1 || fail "$(cat "$work/log")"
"$CMAKE" --build "$work/build" >"$work/log" 2>&1 || fail "$(cat "$work/log")"
"$work/build/my_port_tests" >"$work/log" 2>&1 || fail "$(cat "$work/log")"
grep -q 'Mine/ClockContract.*MyClock' "$work/log" || fail "no test of the clock ran"
