#!/usr/bin/env bash
# The shared object shows its own namespace and nothing else, and of that only what is meant for hosts.
source "$(dirname "$0")/common.sh"

[[ $SHARED == ON ]] || skip "a static library has no exported symbols"
library=$PREFIX/$LIBDIR/libMirethVex.so
nm -D --defined-only --demangle "$library" | cut -d ' ' -f 3- | sort -u >"$work/symbols"
[[ -s $work/symbols ]] || fail "nothing is exported"
grep -qF 'mireth::MirethSR::shared()' "$work/symbols" || fail "the entry point is not exported"

own='^((typeinfo|typeinfo name|vtable|VTT|guard variable) for |(non-virtual|virtual) thunk to )?mireth::'
if grep -vE "$own" "$work/symbols"; then
    fail "these symbols are not the library's own"
fi
for private in Orchestrator MirethSRCore SessionRecorder MApiClient MirethLog CurlHttpClient; do
    ! grep -E "$own(platform::)?$private(::|\$)" "$work/symbols" || fail "$private is shown to hosts"
done
echo "$(wc -l <"$work/symbols") symbols"
