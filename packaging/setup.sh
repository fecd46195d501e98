#!/usr/bin/env bash
# Installs what a set of tasks needs, and only what is missing: setup.sh build [desktop] [checks] [macdouble] [package]
# [bench] [fuzz] [real]. Says on standard error what it does. On systems with neither apt nor Homebrew it names what is missing and ends with 1.
# shellcheck disable=SC2034  # the lists are taken by their names
set -euo pipefail

# The bash that macOS brings is 3.2, so this branch does without later inventions.
if [[ $(uname) == Darwin ]]; then
    xcode-select -p >/dev/null 2>&1 || { echo "setup: no compiler; please run: xcode-select --install" >&2; exit 1; }
    command -v brew >/dev/null || { echo "setup: Homebrew is not there; please install it from https://brew.sh" >&2; exit 1; }
    wanted=()
    for set in "$@"; do
        case $set in
            build) wanted+=(cmake ninja ccache python qt librsvg libsodium googletest fonttools font-eb-garamond font-lato) ;;
            # git came with the compiler.
            checks) wanted+=(clang-format) ;;
            desktop | macdouble | package | bench | fuzz | real) echo "setup: '$set' needs Linux" >&2 && exit 1 ;;
            *) echo "setup: unknown set '$set' (build, checks)" >&2 && exit 2 ;;
        esac
    done
    # Homebrew's folders answer at once, and for fonts as well; asked by `brew list`, each start would take seconds.
    prefix=$(brew --prefix)
    missing=()
    for name in ${wanted[@]+"${wanted[@]}"}; do
        [[ -e $prefix/opt/$name || -e $prefix/Caskroom/$name ]] || missing+=("$name")
    done
    ((${#missing[@]})) || exit 0
    echo "setup: installing ${missing[*]}" >&2
    brew install --quiet "${missing[@]}" >&2 || { echo "setup: the installation failed" >&2; exit 1; }
    exit 0
fi

build=(g++ cmake ninja-build ccache pkg-config python3 qt6-base-dev qt6-svg-dev qt6-webengine-dev qt6-qpa-plugins libgl-dev libegl-dev
    libxcb1-dev libxcb-xinput-dev libxcb-xtest0-dev libxcb-xkb-dev libxcb-randr0-dev libxcb-xfixes0-dev libxkbcommon-dev libxkbcommon-x11-dev libsecret-1-dev libsodium-dev
    xkb-data libgtest-dev libgmock-dev fontconfig fonttools fonts-ebgaramond fonts-lato fonts-noto-color-emoji)
desktop=(xvfb openbox picom dbus dbus-x11 xdotool xclip imagemagick x11-utils xauth gnome-keyring
    xserver-xephyr x11-xkb-utils libsecret-tools openssl procps faketime minisign at-spi2-core python3-pyatspi)
checks=(clang-format-19 clang-tidy git shellcheck tzdata)
package=(dpkg-dev lintian desktop-file-utils appstream man-db groff fakeroot binutils file)
bench=(libbenchmark-dev)
fuzz=(clang libclang-rt-dev)
# Marco starts only with the settings' descriptions of MATE, kwin composes only with a GL driver.
real=(wine wine64 gcc-mingw-w64-x86-64 kwin-x11 kwin-wayland xwayland mutter marco mate-settings-daemon-common xfwm4 xfconf i3-wm libgl1-mesa-dri wmctrl
    x11-xserver-utils)
macdouble=(clang-19 libclang-rt-19-dev libc++-19-dev gobjc libgnustep-base-dev libblocksruntime-dev librsvg2-bin openssl)

wanted=()
for set in "$@"; do
    case $set in
        build | desktop | checks | macdouble | package | bench | fuzz | real) declare -n list=$set && wanted+=("${list[@]}") ;;
        *) echo "setup: unknown set '$set' (build, desktop, checks, macdouble, package, bench, fuzz, real)" >&2 && exit 2 ;;
    esac
done

if ! command -v apt-get >/dev/null || ! command -v dpkg-query >/dev/null; then
    missing=()
    for tool in g++ cmake ninja pkg-config python3; do command -v "$tool" >/dev/null || missing+=("$tool"); done
    for module in xcb xcb-xinput xcb-xtest xcb-xkb xcb-xfixes xkbcommon xkbcommon-x11 libsecret-1 libsodium; do
        pkg-config --exists "$module" 2>/dev/null || missing+=("$module")
    done
    if ((${#missing[@]})); then
        echo "setup: no apt here; please install by hand: ${missing[*]} (and Qt 6.4 or newer with Svg, GoogleTest)" >&2
        exit 1
    fi
    exit 0
fi

missing=()
for package in "${wanted[@]}"; do
    [[ $(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null || true) == installed ]] || missing+=("$package")
done
((${#missing[@]})) || exit 0

as_root=()
if ((EUID != 0)); then
    if ! command -v sudo >/dev/null; then
        echo "setup: neither root nor sudo; please install: ${missing[*]}" >&2
        exit 1
    fi
    as_root=(sudo)
fi
echo "setup: installing ${missing[*]}" >&2
log=$(mktemp)
trap 'rm -f "$log"' EXIT
if ! { "${as_root[@]}" apt-get update && "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get install -y --no-install-recommends "${missing[@]}"; } >"$log" 2>&1; then
    tail -n 20 "$log" >&2
    echo "setup: the installation failed" >&2
    exit 1
fi
