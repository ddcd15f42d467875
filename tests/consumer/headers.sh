#!/usr/bin/env bash
# Each installed header compiles by itself without a warning, and includes nothing but the standard library and its
# fellows.
source "$(dirname "$0")/common.sh"

cd "$PREFIX/$INCLUDEDIR"
mapfile -t headers < <(find . -type f | sed 's|^\./||' | sort)
((${#headers[@]} > 0)) || fail "no header is installed"
failures=0
for header in "${headers[@]}"; do
    echo "#include <$header>" | "$CXX" -std=c++23 -fsyntax-only -Wall -Wextra -Wpedantic -Wconversion -Wshadow \
        -Wnon-virtual-dtor -Werror -I . -x c++ - || {
        echo "$header does not compile by itself"
        failures=$((failures + 1))
    }
done
# A header of the standard library has no folder and no ending.
if grep -rnE '^\s*#\s*include' . | grep -vE '#\s*include\s*(<[a-z_]+>|"MirethVex/[A-Za-z/]+\.hpp")'; then
    echo "are foreign includes"
    failures=$((failures + 1))
fi
((failures == 0)) || fail "$failures complaints"
echo "${#headers[@]} headers"
