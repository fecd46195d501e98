#!/usr/bin/env bash
# Makes Vantor.app out of a build: bundle.sh [identity | lay-out | local | all] BUILD_FOLDER [OUTPUT_FOLDER]
#   identity   makes the identity to sign with, once for this user; needs no folder
#   lay-out    the folders, the property list, the program, the images and the licences (works on Linux as well)
#   local      what ./run starts: lay-out and a signature, again only where something is newer; the toolkit stays where
#              Homebrew has it
#   all        lay-out, then the toolkit's frameworks and the signature, to be taken to another Mac (the default)
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

# The oldest system that the program was compiled for, which the toolkit's libraries beside it were too.
minimum() { otool -l "$program" | sed -nE 's/^ *minos ([0-9.]+)$/\1/p'; }

# draw SIZE SVG PNG
draw() { rsvg-convert --width="$1" --height="$1" --output="$3" "$2"; }

# The build may have made a bundle of its own, with nothing in it but the program.
find_program() {
    program=$1/src/vantor.app/Contents/MacOS/vantor
    [[ -x $program ]] || program=$1/src/vantor
    [[ -x $program ]] || stop "there is no $program: build it first"
}

lay_out() {
    local app=$1 number oldest=11.0 size
    number=$(version)
    [[ -n $number ]] || stop "CMakeLists.txt names no version"
    # On Linux there is no program that could say it.
    if [[ $command != lay-out ]]; then oldest=$(minimum); fi
    [[ -n $oldest ]] || stop "$program does not say for which system it was made"

    rm -rf "$app"
    mkdir -p "$app/Contents/MacOS" "$app/Contents/Resources/Licences"
    install -m 755 "$program" "$app/Contents/MacOS/vantor"
    sed "s/@VERSION@/$number/g; s/@MINIMUM@/$oldest/" "$here/Info.plist.in" >"$app/Contents/Info.plist"
    printf 'APPL????' >"$app/Contents/PkgInfo"
    cp "$top/packaging/licences/copyright" "$top/packaging/licences/GFDL-1.3.txt" "$top/resources/catalogue/NOTICE.md" \
        "$app/Contents/Resources/Licences"

    # The status bar looks for the image by its name, and takes the finer one on a fine screen.
    draw 18 "$here/status.svg" "$app/Contents/Resources/vantor.png"
    draw 36 "$here/status.svg" "$app/Contents/Resources/vantor@2x.png"

    icons=$app/../Vantor.iconset
    rm -rf "$icons"
    mkdir -p "$icons"
    for size in 16 32 128 256 512; do
        draw "$size" "$top/packaging/icons/vantor.svg" "$icons/icon_${size}x${size}.png"
        draw $((size * 2)) "$top/packaging/icons/vantor.svg" "$icons/icon_${size}x${size}@2x.png"
    done
}

add_icon() {
    iconutil --convert icns --output "$1/Contents/Resources/Vantor.icns" "$icons"
    rm -rf "$icons"
}

# What Homebrew keeps of each library's licence. Qt's own texts lie here, because its packages keep none where we look.
add_library_licences() {
    local app=$1 folder=$1/Contents/Resources/Licences prefix each text keg found lacking=
    cp "$here"/licences/* "$folder"
    prefix=$(brew --prefix)
    for each in "$app/Contents/Frameworks"/*; do
        case ${each##*/} in Qt*.framework | '*') continue ;; esac
        keg=
        for text in "$prefix"/opt/*/lib/"${each##*/}"; do
            # The same package may be there by several names: what they stand for is .../Cellar/NAME/VERSION.
            if [[ -e $text ]]; then
                keg=$(cd -P "${text%/lib/*}" && pwd)
                break
            fi
        done
        found=
        for text in "$keg"/LICEN[CS]E* "$keg"/COPYING* "$keg"/COPYRIGHT* "$keg"/NOTICE*; do
            [[ -n $keg && -e $text ]] || continue
            found=$(basename "$(dirname "$keg")")
            mkdir -p "$folder/$found"
            cp -R "$text" "$folder/$found"
        done
        [[ -n $found ]] || lacking="$lacking ${each##*/}"
    done
    [[ -z $lacking ]] || say "no licence was found for$lacking: put it into $folder before you give the bundle away"
}

has_identity() {
    [[ $identity == - ]] || security find-identity -p codesigning | grep -F "\"$identity\"" >/dev/null
}

# From the inside out: a signature covers what it finds.
sign() {
    local app=$1 folder each
    [[ $identity == - ]] ||
        say "if the system asks whether codesign may use the key: your login password, then Always Allow; it asks once"
    for folder in "$app/Contents/Frameworks" "$app/Contents/PlugIns"; do
        [[ -d $folder ]] || continue
        find "$folder" \( -name '*.dylib' -o -name '*.framework' \) -prune -print0 |
            while IFS= read -r -d '' each; do
                codesign --force --options runtime --sign "$identity" "$each"
            done
    done
    codesign --force --options runtime --entitlements "$here/Vantor.entitlements" --sign "$identity" "$app"
    codesign --verify --strict --deep "$app"
}

whole() {
    local app=$1
    has_identity || stop "there is no identity '$identity': run bundle.sh identity, or set VANTOR_SIGN_IDENTITY"
    lay_out "$app"
    add_icon "$app"
    # Where it signs by itself, our signature replaces its own.
    macdeployqt "$app" || stop "macdeployqt failed"
    add_library_licences "$app"
    sign "$app"
    say "signed by '$identity'. The first start: Control-click it in the Finder, Open."
}

# A bundle is fresh that was signed whole, by this identity, after all that it is made of was written.
fresh() {
    local seal=$1 each
    [[ -f $seal && $(cat "$seal") == "$identity" ]] || return 1
    for each in "$program" "$here"/* "$top"/packaging/icons/*.svg "$top"/packaging/licences/* "$top/CMakeLists.txt" \
        "$top/resources/catalogue/NOTICE.md"; do
        if [[ $each -nt $seal ]]; then return 1; fi
    done
}

local_bundle() {
    local app=$1 seal=$1.signed
    if ! has_identity; then
        [[ -z ${VANTOR_SIGN_IDENTITY:-} ]] || stop "there is no identity '$identity'"
        identity=-
    fi
    if fresh "$seal"; then return; fi
    rm -f "$seal"
    lay_out "$app"
    add_icon "$app"
    sign "$app"
    if [[ $identity == - ]]; then
        say "what you allow Vantor now will not last beyond this build; packaging/macos/bundle.sh identity makes it last"
    fi
    echo "$identity" >"$seal"
}

# A certificate for signing code, signed by itself, in the login keychain; codesign may use it without asking.
make_identity() {
    local password
    if has_identity; then
        say "there is an identity '$identity' already"
        return
    fi
    # Not a local name: the trap needs it when the function is over.
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
    identity | lay-out | local | all)
        command=$1
        shift
        ;;
esac
[[ $command == lay-out ]] || on_mac "$command"
if [[ $command == identity ]]; then
    make_identity
    exit
fi
(($# >= 1 && $# <= 2)) || stop "usage: bundle.sh [identity | lay-out | local | all] BUILD_FOLDER [OUTPUT_FOLDER]"
find_program "$1"
need rsvg-convert "brew install librsvg"
if [[ $command != lay-out ]]; then
    need iconutil "xcode-select --install"
    need otool "xcode-select --install"
fi
if [[ $command == all ]]; then need macdeployqt "brew install qt"; fi
output=${2:-$1}
# Apart from the whole bundle, which lies in the build folder itself.
if [[ $command == local ]]; then output=${2:-$1/local}; fi
mkdir -p "$output"
app=$(cd "$output" && pwd)/Vantor.app
case $command in
    lay-out) lay_out "$app" ;;
    local) local_bundle "$app" ;;
    all) whole "$app" ;;
esac
if [[ $command != local ]]; then say "made $app"; fi
