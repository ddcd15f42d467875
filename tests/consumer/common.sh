# What the consumer tests share; sourced by each of them. The variables come from CMakeLists.txt.
set -euo pipefail

fail() {
    echo "FAILED: $*" >&2
    exit 1
}

skip() {
    echo "SKIPPED: $*"
    exit 77
}

# A directory of the test's own, gone when it is.
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

[[ $SANITIZER == none ]] || skip "what is installed from a sanitizer build is for no host"

# fenced FILE LANGUAGE FOLDER: writes the text's blocks of that language to FOLDER/1.LANGUAGE, FOLDER/2.LANGUAGE, ...
fenced() {
    mkdir -p "$3"
    awk -v language="$2" -v folder="$3" '
        $0 == "```" language { inside = 1; file = folder "/" ++count "." language; next }
        $0 == "```" { inside = 0 }
        inside { print > file }' "$1"
}
