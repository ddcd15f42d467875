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
