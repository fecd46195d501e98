#!/usr/bin/env bash
# Runs a command in another release of Debian, in a clean clone of what is committed here: other_release.sh RELEASE COMMAND...,
# such as: other_release.sh trixie ./test layers format unit views. To be started as root; the command runs as the user
# "player", who has sudo. The system is kept in /var/tmp/vantor-RELEASE (or VANTOR_ROOT), with its packages and compiler cache.
set -euo pipefail
top=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
(($# > 1)) || { echo "other_release: which release, and which command?" >&2; exit 2; }
((EUID == 0)) || { echo "other_release: a root folder is made and entered by root only" >&2; exit 1; }
release=$1
shift
root=${VANTOR_ROOT:-/var/tmp/vantor-$release}

if [[ ! -d $root ]]; then
    command -v debootstrap >/dev/null || { echo "other_release: please install debootstrap" >&2; exit 1; }
    echo "other_release: making $root" >&2
    # A system that was not finished is none.
    rm -rf "$root.unfinished"
    debootstrap --variant=minbase --include=ca-certificates,git,sudo "$release" "$root.unfinished" \
        "${VANTOR_MIRROR:-http://deb.debian.org/debian}" >"$root.log" 2>&1 || { tail -n 20 "$root.log" >&2; exit 1; }
    chroot "$root.unfinished" useradd --create-home --shell /bin/bash player
    echo 'player ALL=(ALL) NOPASSWD: ALL' >"$root.unfinished/etc/sudoers.d/player"
    mv "$root.unfinished" "$root"
fi
cp -L /etc/resolv.conf /etc/hosts "$root/etc/"

clone=$root/home/player/work
rm -rf "$clone"
# Not the objects themselves: they change their owner below.
git clone --quiet --no-hardlinks "$top" "$clone"
chroot "$root" chown -R player: /home/player/work
echo "other_release: $(. "$root/etc/os-release" && echo "$PRETTY_NAME"), commit $(git -C "$top" rev-parse --short HEAD)" >&2

# Not by chroot alone: in one, the web engine may not make the namespaces of its sandbox. What is mounted and what still runs
# at the end goes with the namespaces.
enter='
set -e
mount --bind "$1" "$1"
cd "$1"
mount -t proc proc proc
mount --rbind /sys sys
mount --rbind /dev dev
mount -t tmpfs -o mode=1777 tmpfs tmp
pivot_root . mnt
umount -l /mnt
shift
exec setpriv --reuid player --regid player --init-groups env -i HOME=/home/player USER=player LANG=C.UTF-8 \
    PATH=/usr/local/bin:/usr/bin:/bin sh -c '\''cd ~/work && exec "$@"'\'' sh "$@"'
exec unshare --mount --pid --ipc --fork --kill-child bash -c "$enter" enter "$root" "$@"
