#!/usr/bin/env bash
# Makes Vantor.app out of a build: bundle.sh [identity | lay-out | all] BUILD_FOLDER [OUTPUT_FOLDER]
#   identity   makes the identity to sign with, once for this user
#   lay-out    the folders, the property list, the program and the images (works on Linux as well)
#   all        lay-out, then the toolkit's frameworks and the signature (the default)
# Needs Xcode's command line tools, Qt's macdeployqt and librsvg's rsvg-convert: brew install qt librsvg
#
# Why an identity of your own. What the player allows under Accessibility and Input Monitoring, and which keychain item may
# be read without a question, the system binds to the program's signature. An unsigned program and one with an ad-hoc
# signature are another program after each build: the switches in System Settings still stand there, switched on, and do
# nothing. With one identity, self-signed or bought, they last. Take another with VANTOR_SIGN_IDENTITY="Developer ID
# Application: ...", or "-" for an ad-hoc signature where nothing has to last.
#
# Why the entitlement. The hardened runtime loads only libraries of the same team, and a self-signed identity belongs to
# none: without it the toolkit's frameworks in the bundle would not be loaded. Vantor asks for nothing else; it is not
# sandboxed, because a sandboxed program cannot press keys in another. (The file has no comments: the system's own reader
# stumbles over them.)
#
# Written for the bash 3.2 that macOS has.
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
top=$(cd "$here/../.." && pwd)
identity=${VANTOR_SIGN_IDENTITY:-Vantor Self-Signed}

say() { echo "bundle: $*" >&2; }
stop() {
    say "$*"
    exit 1
}
need() { command -v "$1" >/dev/null || stop "$1 is missing: $2"; }

version() {
    sed -nE 's/^project\(vantor VERSION ([0-9.]+).*/\1/p' "$top/CMakeLists.txt"
}

# draw SIZE SVG PNG
draw() { rsvg-convert --width="$1" --height="$1" --output="$3" "$2"; }

lay_out() {
    local build=$1 app=$2 program number size
    # The build may have made a bundle of its own, with nothing in it but the program.
    program=$build/src/vantor.app/Contents/MacOS/vantor
    [[ -x $program ]] || program=$build/src/vantor
    [[ -x $program ]] || stop "there is no $program: build it first"
    number=$(version)
    [[ -n $number ]] || stop "CMakeLists.txt names no version"
    need rsvg-convert "brew install librsvg"

    rm -rf "$app"
    mkdir -p "$app/Contents/MacOS" "$app/Contents/Resources/Fonts"
    install -m 755 "$program" "$app/Contents/MacOS/vantor"
    sed "s/@VERSION@/$number/g" "$here/Info.plist.in" >"$app/Contents/Info.plist"
    printf 'APPL????' >"$app/Contents/PkgInfo"

    # The status bar looks for the image by its name, and takes the finer one on a fine screen.
    draw 18 "$top/resources/images/vantor.svg" "$app/Contents/Resources/vantor.png"
    draw 36 "$top/resources/images/vantor.svg" "$app/Contents/Resources/vantor@2x.png"

    icons=$app/../Vantor.iconset
    rm -rf "$icons"
    mkdir -p "$icons"
    for size in 16 32 128 256 512; do
        draw "$size" "$top/packaging/icons/orvendel.Vantor.svg" "$icons/icon_${size}x${size}.png"
        draw $((size * 2)) "$top/packaging/icons/orvendel.Vantor.svg" "$icons/icon_${size}x${size}@2x.png"
    done
}

add_frameworks() {
    local app=$1
    iconutil --convert icns --output "$app/Contents/Resources/Vantor.icns" "$icons"
    rm -rf "$icons"
    # Where it signs by itself, our signature replaces its own.
    macdeployqt "$app" || stop "macdeployqt failed"
}

has_identity() {
    [[ $identity == - ]] || security find-identity -p codesigning | grep -qF "\"$identity\""
}

# From the inside out: a signature covers what it finds.
sign() {
    local app=$1 each
    has_identity || stop "there is no identity '$identity': run bundle.sh identity, or set VANTOR_SIGN_IDENTITY"
    find "$app/Contents/Frameworks" "$app/Contents/PlugIns" \( -name '*.dylib' -o -name '*.framework' \) -prune -print0 |
        while IFS= read -r -d '' each; do
            codesign --force --options runtime --sign "$identity" "$each"
        done
    codesign --force --options runtime --entitlements "$here/Vantor.entitlements" --sign "$identity" "$app"
    codesign --verify --strict --deep "$app"
    say "signed by '$identity'. The first start: Control-click it in the Finder, Open."
}

# A certificate for signing code, signed by itself, in the login keychain; codesign may use it without asking.
make_identity() {
    local work password
    has_identity && { say "there is an identity '$identity' already"; return; }
    work=$(mktemp -d)
    trap 'rm -rf "$work"' EXIT
    password=$(/usr/bin/openssl rand -hex 16)
    write_request "$work/request"
    /usr/bin/openssl req -x509 -newkey rsa:2048 -nodes -days 3650 -config "$work/request" \
        -keyout "$work/key.pem" -out "$work/certificate.pem"
    # The system's own openssl, whose container the keychain can open.
    /usr/bin/openssl pkcs12 -export -inkey "$work/key.pem" -in "$work/certificate.pem" -name "$identity" \
        -out "$work/identity.p12" -passout "pass:$password"
    security import "$work/identity.p12" -P "$password" -T /usr/bin/codesign
    say "the system now asks for your password, to trust the certificate for signing code"
    security add-trusted-cert -p codeSign "$work/certificate.pem"
    say "made '$identity'. It is in your login keychain; keep it, and what you allow Vantor lasts."
}

write_request() {
    cat >"$1" <<REQUEST
[req]
distinguished_name = name
x509_extensions = signing
prompt = no
[name]
CN = $identity
[signing]
basicConstraints = critical, CA:false
keyUsage = critical, digitalSignature
extendedKeyUsage = critical, codeSigning
REQUEST
}

on_mac() { [[ $(uname -s) == Darwin ]] || stop "'$1' needs macOS"; }

command=all
case ${1:-} in
    identity | lay-out | all)
        command=$1
        shift
        ;;
esac
if [[ $command == identity ]]; then
    on_mac identity
    make_identity
    exit
fi
(($# >= 1 && $# <= 2)) || stop "usage: bundle.sh [identity | lay-out | all] BUILD_FOLDER [OUTPUT_FOLDER]"
output=${2:-$1}
mkdir -p "$output"
app=$(cd "$output" && pwd)/Vantor.app
if [[ $command == all ]]; then
    on_mac all
    need macdeployqt "brew install qt"
    need iconutil "xcode-select --install"
fi
lay_out "$1" "$app"
if [[ $command == all ]]; then
    add_frameworks "$app"
    sign "$app"
fi
say "made $app"
