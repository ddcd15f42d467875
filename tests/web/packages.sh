#!/usr/bin/env bash
# Installs the packages of package-lock.json that are not there yet. No browser is among them: Debian's is used.
set -euo pipefail
cd "$(dirname "$0")"

stamp=node_modules/.installed
if [[ -f $stamp ]] && cmp -s package-lock.json "$stamp"; then
    exit 0
fi
npm ci --no-audit --no-fund --loglevel=error
cp package-lock.json "$stamp"
