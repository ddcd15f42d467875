#!/usr/bin/env bash
# Runs a program in QML alone, which imports the installed module: as it is, and recorded by the installed mireth-attach.
source "$(dirname "$0")/common.sh"

[[ $HAS_QT == ON || $HAS_QT == TRUE || $HAS_QT == 1 ]] || skip "the library was built without Qt"
# Moved elsewhere, an installation has to work, too.
cp -r "$PREFIX" "$work/moved"
PREFIX=$work/moved
export QT_QPA_PLATFORM=offscreen QT_QUICK_BACKEND=software XDG_CACHE_HOME=$work/cache XDG_RUNTIME_DIR=$work/run
mkdir -m 700 "$work/run"
unset QML_IMPORT_PATH QT_PLUGIN_PATH
program=(/usr/lib/qt6/bin/qml "$SOURCE/tests/consumer/qmlhost/main.qml")

run() { # STATUS COMMAND...: fails unless the command ends with that status and without complaints
    local expected=$1 status=0
    shift
    "$@" >"$work/out" 2>&1 || status=$?
    [[ $status == "$expected" ]] || fail "status $status instead of $expected from $*: $(cat "$work/out")"
    [[ ! -s $work/out ]] || fail "$* said $(cat "$work/out")"
}

if [[ $SHARED == ON ]]; then
    QML_IMPORT_PATH=$PREFIX/$LIBDIR/qt6/qml run 6 "${program[@]}"
    /usr/lib/qt6/bin/qmllint -I "$PREFIX/$LIBDIR/qt6/qml" "$SOURCE/tests/consumer/qmlhost/main.qml" ||
        fail "the module's types are not known"
fi

"$BUILD/bin/mireth-receiver" --listen 127.0.0.1:0 --data "$work/data" --print-ready >"$work/ready" 2>"$work/log" &
receiver=$!
trap 'kill "$receiver"; wait "$receiver"; rm -rf "$work"' EXIT
for _ in $(seq 100); do
    [[ ! -s $work/ready ]] || break
    sleep 0.1
done
origin=$(sed 's/.*"sr":"\([^"]*\)".*/\1/' "$work/ready")
echo '{"DEVICE_IDIOM": "phone"}' >"$work/info.json"
attach=("$PREFIX/bin/mireth-attach" --sr-endpoint "$origin" --info "$work/info.json")
run 5 "${attach[@]}" "${program[@]}"
if [[ $SHARED == ON ]]; then
    # The module, the plugin and the program share one library.
    QML_IMPORT_PATH=$PREFIX/$LIBDIR/qt6/qml run 5 "${attach[@]}" "${program[@]}"
fi
# Run from a build tree it is another one.
ldd "$PREFIX/$LIBDIR/mireth/plugins/generic/libmireth.so" >"$work/libraries"
! grep -F 'not found' "$work/libraries" || fail "the plugin does not find its libraries"
! grep -F "$BUILD" "$work/libraries" || fail "the plugin stands on the build tree"

sessions=0
for session in $("$BUILD/bin/mireth-receiver" list --data "$work/data" --json |
    python3 -c 'import json, sys; print(*(session["id"] for session in json.load(sys.stdin)["sessions"]))'); do
    sessions=$((sessions + 1))
    "$BUILD/bin/mireth-receiver" show "$session" --data "$work/data" --json >"$work/session"
    grep -q '"Checkout"' "$work/session" || fail "the screen is not reported: $(cat "$work/session")"
done
((sessions > 0)) || fail "nothing is recorded"
echo "$sessions sessions"
