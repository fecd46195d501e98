#!/usr/bin/env bash
# Configures and builds one preset: build.sh PRESET TARGET... Quiet when it works; the log when it does not.
set -euo pipefail
top=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
preset=$1
shift
folder=$top/build/$preset
mkdir -p "$folder"
log=$folder/build.log
fail() {
    grep -E 'error|Error|FAILED' -A 12 "$log" | head -n 80 >&2 || true
    echo "build: $preset failed, the whole log is $log" >&2
    exit 1
}
if [[ ! -f $folder/build.ninja || $top/CMakePresets.json -nt $folder/build.ninja ]]; then
    echo "build: configuring $preset" >&2
    (cd "$top" && cmake --preset "$preset") >"$log" 2>&1 || { rm -f "$folder/build.ninja"; cat "$log" >&2; exit 1; }
    touch "$folder/build.ninja"
fi
if ! ninja -C "$folder" -n "$@" 2>/dev/null | grep -q 'no work to do'; then
    echo "build: building $preset ($*)" >&2
    ninja -C "$folder" "$@" >"$log" 2>&1 || fail
fi
