#!/usr/bin/env bash
# Makes the Debian package of what a build folder holds: deb.sh BUILD FOLDER. Prints the package's path. What the web module
# needs is recommended, not required: without it Vantor runs and says that pages need it.
set -euo pipefail
top=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
build=$(cd "$1" && pwd)
mkdir -p "$2"
folder=$(cd "$2" && pwd)
maintainer=${VANTOR_MAINTAINER:-The makers of Vantor <packages@vantor.example>}
# Older than the -1 of a distribution, so that its own package of this version would replace ours.
version=$(sed -nE 's/^CMAKE_PROJECT_VERSION:STATIC=(.*)/\1/p' "$build/CMakeCache.txt")-1~vantor1
architecture=$(dpkg --print-architecture)

# The same sources give the same package: times are those of the last commit.
SOURCE_DATE_EPOCH=$(git -C "$top" log -1 --format=%ct 2>/dev/null || date +%s)
export SOURCE_DATE_EPOCH
stage=$(mktemp -d)
trap 'rm -rf "$stage"' EXIT
root=$stage/root
umask 022
DESTDIR=$root cmake --install "$build" --prefix /usr --strip >"$stage/log" || { cat "$stage/log" >&2; exit 1; }

documents=$root/usr/share/doc/vantor
# Debian keeps this text for all packages.
rm "$documents/GFDL-1.3.txt"
cp "$top/CHANGELOG.md" "$documents/changelog"
cat >"$documents/changelog.Debian" <<END
vantor ($version) unstable; urgency=medium

  * Packaged from the sources; the file "changelog" tells what is new.

 -- $maintainer  $(date -Ru -d "@$SOURCE_DATE_EPOCH")
END
gzip -9n "$documents/changelog" "$documents/changelog.Debian" "$root/usr/share/man/man1/vantor.1"

# dpkg-shlibdeps insists on a source package.
mkdir -p "$stage/debian" "$root/DEBIAN"
printf 'Source: vantor\n\nPackage: vantor\nArchitecture: any\n' >"$stage/debian/control"
needs=$(cd "$stage" && dpkg-shlibdeps --warnings=0 -O -dDepends root/usr/bin/vantor root/usr/lib/vantor/vantor-guardian \
    -dRecommends root/usr/lib/vantor/libvantor_web.so)
depends=$(sed -nE 's/^shlibs:Depends=//p' <<<"$needs")
recommends=$(sed -nE 's/^shlibs:Recommends=//p' <<<"$needs")
[[ -n $depends && $recommends == *webengine* ]] || { echo "deb: the libraries' packages are not known: $needs" >&2; exit 1; }

find "$root" -exec touch -hcd "@$SOURCE_DATE_EPOCH" {} +
(cd "$root" && find usr -type f -print0 | sort -z | xargs -0 md5sum) >"$root/DEBIAN/md5sums"
cat >"$root/DEBIAN/control" <<END
Package: vantor
Version: $version
Architecture: $architecture
Maintainer: $maintainer
Installed-Size: $(du -sk --apparent-size "$root/usr" | cut -f1)
Depends: $depends, fontconfig
Recommends: $recommends, fonts-noto-color-emoji, gnome-keyring
Section: utils
Priority: optional
Description: companion beside Guild Wars 2
 World-event timers, chat links, the bestiary, the game's wiki and logins in
 an overlay over the game, which keeps the keyboard. Hotkeys work while the
 game is in front; texts are typed into it as keystrokes.
 .
 It needs an X server: a session with X11, or XWayland in one with Wayland.
END
package=$folder/vantor_${version}_$architecture.deb
dpkg-deb --root-owner-group -Zxz --build "$root" "$package" >/dev/null
echo "$package"
