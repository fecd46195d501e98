#!/usr/bin/env bash
# Makes a release of the catalogue: sign.sh VERSION VALID_UNTIL KEY FOLDER [CATALOGUE]
#   VERSION      above that of every release before
#   VALID_UNTIL  the day, such as 2026-12-31, after which a player is told how old the times are
#   KEY          minisign's secret key, kept anywhere but in the repository (minisign -G makes one)
#   FOLDER       what is put on the host below /catalogue; the release goes into the path of its format
#   CATALOGUE    resources/catalogue/events.json, if nothing else is said
# Vantor itself checks it, before and after the signing: VANTOR names the program (build/release/src/vantor), which must
# have been built with the key's public half (VANTOR_CATALOGUE_KEY).
set -euo pipefail
top=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
(($# == 4 || $# == 5)) || { sed -n '2,9p' "${BASH_SOURCE[0]}" >&2; exit 2; }
version=$1 valid_until=$2 key=$3 folder=$4 catalogue=${5:-$top/resources/catalogue/events.json}
program=${VANTOR:-$top/build/release/src/vantor}
stop() { echo "sign: $*" >&2; exit 1; }
[[ -x $program ]] || stop "there is no $program: build it first, or name it with VANTOR"
command -v minisign >/dev/null || stop "minisign is missing"
[[ $version =~ ^[1-9][0-9]*$ ]] || stop "the version is no number: $version"
schema=$(sed -nE 's/.* catalogueSchema = ([0-9]+);/\1/p' "$top/src/catalogue/CatalogueUpdate.h")

there=$folder/$schema
if [[ -f $there/catalogue.json.minisig ]]; then
    before=$(sed -nE 's/^trusted comment: (.* )?catalogue=([0-9]+)( .*)?$/\2/p' "$there/catalogue.json.minisig")
    ((version > before)) || stop "version $before is there already"
fi

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cp "$catalogue" "$work/catalogue.json"
"$program" --catalogue-check "$work/catalogue.json" >/dev/null || stop "not signed"
minisign -S -s "$key" -m "$work/catalogue.json" -c "Vantor's catalogue" \
    -t "catalogue=$version schema=$schema valid-until=$valid_until date=$(date -u +%F)" >/dev/null || stop "not signed"
"$program" --catalogue-check "$work/catalogue.json" || stop "signed, but Vantor refuses it"
# The signature last: who asks between the two finds the old one, whose document is gone, and asks again later.
mkdir -p "$there"
mv "$work/catalogue.json" "$there/catalogue.json"
mv "$work/catalogue.json.minisig" "$there/catalogue.json.minisig"
