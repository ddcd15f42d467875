#!/usr/bin/env bash
# What the documents show in C++ compiles as it stands there, without a warning. A block with a main is a whole
# program; any other is what a host writes inside a function of its own.
source "$(dirname "$0")/common.sh"

# A block that names its headers gets no others but those of the window it is given.
cat >"$work/headers" <<'EOF'
#include <MirethVex/Linux/LinuxPlatform.hpp>
#include <MirethVex/MirethVex.hpp>
#ifdef WITH_QT
#include <MirethVex/Qt/QtPlatform.hpp>
#endif
EOF
cat >"$work/host" <<'EOF'
using namespace mireth;
void host([[maybe_unused]] MirethSR& library, [[maybe_unused]] platform::LinuxPlatform& phone,
          [[maybe_unused]] const std::shared_ptr<platform::MainQueue>& ownQueue,
          [[maybe_unused]] VexConfiguration configuration) {
EOF

has_qt=false
[[ $HAS_QT == ON || $HAS_QT == TRUE || $HAS_QT == 1 ]] && has_qt=true
count=0
for text in "$SOURCE/README.md" "$SOURCE"/docs/*.md; do
    folder=$work/$(basename "$text" .md)
    fenced "$text" cpp "$folder"
    for block in "$folder"/*.cpp; do
        [[ -e $block ]] || continue
        flags=(-std=c++23 -fsyntax-only -Wall -Wextra -Wpedantic -Werror -isystem "$PREFIX/$INCLUDEDIR")
        if grep -q 'mireth::qt\|<Q' "$block"; then
            $has_qt || continue
            flags+=(-DWITH_QT)
            # Qt's headers with the warnings left to Qt.
            read -ra qt <<<"$(pkg-config --cflags Qt6Widgets | sed 's/-I/-isystem /g')"
            flags+=("${qt[@]}" -fPIC)
        fi
        if grep -q 'INSTANTIATE_TEST_SUITE_P' "$block"; then
            continue # port.sh builds and runs it
        elif grep -q '^int main(' "$block"; then
            cp "$block" "$work/block.cpp"
        else
            if grep -q '^#include' "$block"; then
                { echo '#include <QWidget>' && grep '^#include' "$block" && echo 'void host(QWidget& window) {' &&
                    grep -v '^#include' "$block" && echo '}'; } >"$work/block.cpp"
            else
                { cat "$work/headers" "$work/host" "$block" && echo '}'; } >"$work/block.cpp"
            fi
        fi
        "$CXX" "${flags[@]}" "$work/block.cpp" || fail "$(basename "$text"), block $(basename "$block" .cpp)"
        count=$((count + 1))
    done
done
((count > 0)) || fail "no block was found"
echo "$count blocks"
