#!/usr/bin/env bash
# Runs a command in a desktop of its own: private_desktop.sh COMMAND [ARGUMENT...]. X server, bus, keyring, window manager and
# compositor are made for it and end with it; settings, data and runtime folders are temporary. Its status is the command's.
# The window manager's process is VANTOR_WINDOW_MANAGER.
# VANTOR_DESKTOP_MANAGER is openbox, xfwm4, kwin_x11, mutter, marco or i3; VANTOR_DESKTOP_COMPOSITING is picom, own (the
# manager's) or none; VANTOR_DESKTOP_CONFIG is the configuration of openbox or i3. With kwin_wayland it is a Wayland session in a
# window of the X server, and DISPLAY its XWayland: keys and clicks come in through VANTOR_HANDS_DISPLAY, and what is seen is seen on
# VANTOR_EYES_DISPLAY. mutter_wayland is one that draws nothing, since in a window mutter 43 ends when a client confines the pointer.
set -euo pipefail
top=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
(($#)) || { echo "usage: private_desktop.sh COMMAND [ARGUMENT...]" >&2; exit 2; }
geometry=${VANTOR_DESKTOP_GEOMETRY:-1360x820x24}
manager=${VANTOR_DESKTOP_MANAGER:-openbox}
compositing=${VANTOR_DESKTOP_COMPOSITING:-picom}
config=${VANTOR_DESKTOP_CONFIG:-$top/openbox.xml}

home=$(mktemp -d "${TMPDIR:-/tmp}/vantor-desktop.XXXXXX")
chmod 700 "$home"
started=()
tear_down() {
    local status=$?
    trap - EXIT INT TERM HUP
    local at
    for ((at = ${#started[@]} - 1; at >= 0; --at)); do
        kill -TERM "${started[at]}" 2>/dev/null || true
        wait "${started[at]}" 2>/dev/null || true
    done
    rm -rf "$home"
    exit "$status"
}
trap tear_down EXIT
trap 'exit 130' INT
trap 'exit 143' TERM HUP

# Starts a process that dies with this shell, even if the shell is killed.
start() {
    local log=$1
    shift
    setpriv --pdeathsig KILL -- "$@" >>"$home/$log.log" 2>&1 &
    started+=($!)
}
# Waits until a condition holds, for ten seconds at most.
await() {
    local what=$1 tries
    shift
    for ((tries = 0; tries < 500; ++tries)); do
        "$@" >/dev/null 2>&1 && return 0
        read -rt 0.02 <> <(:) || true
    done
    echo "private_desktop: no $what after ten seconds" >&2
    cat "$home"/*.log >&2 || true
    exit 1
}

mkdir -m 700 "$home/run" "$home/config" "$home/data" "$home/cache"
export XDG_RUNTIME_DIR=$home/run XDG_CONFIG_HOME=$home/config XDG_DATA_HOME=$home/data XDG_CACHE_HOME=$home/cache
export XAUTHORITY=$home/xauthority NO_AT_BRIDGE=1 VANTOR_PRIVATE_DESKTOP=1
unset DISPLAY WAYLAND_DISPLAY DBUS_SESSION_BUS_ADDRESS SESSION_MANAGER QT_QPA_PLATFORM

cookie=$(mcookie)
touch "$XAUTHORITY"
xauth -q -f "$XAUTHORITY" add ":0" . "$cookie"
mkfifo "$home/display"
exec {display}<>"$home/display"
start xvfb Xvfb -displayfd "$display" -screen 0 "$geometry" -nolisten tcp -noreset -auth "$XAUTHORITY" +extension Composite
read -rt 20 number <&"$display" || { cat "$home/xvfb.log" >&2; echo "private_desktop: the X server does not start" >&2; exit 1; }
exec {display}>&-
export DISPLAY=:$number
xauth -q -f "$XAUTHORITY" add "$DISPLAY" . "$cookie"

# A bus without service folders starts nothing that we did not.
cat >"$home/bus.conf" <<EOF
<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig><type>session</type><listen>unix:path=$home/run/bus</listen><auth>EXTERNAL</auth>
<policy context="default"><allow send_destination="*" eavesdrop="true"/><allow eavesdrop="true"/><allow own="*"/></policy>
</busconfig>
EOF
start bus dbus-daemon --nofork --nopidfile --config-file="$home/bus.conf"
await "bus" test -S "$home/run/bus"
export DBUS_SESSION_BUS_ADDRESS=unix:path=$home/run/bus

if command -v gnome-keyring-daemon >/dev/null; then
    printf 'private' >"$home/password"
    start keyring sh -c 'exec gnome-keyring-daemon --foreground --unlock --components=secrets <"$1"' sh "$home/password"
    await "keyring" sh -c 'dbus-send --session --print-reply --dest=org.freedesktop.DBus /org/freedesktop/DBus \
        org.freedesktop.DBus.NameHasOwner string:org.freedesktop.secrets | grep -q "boolean true"'
fi
# Their settings come from the temporary folders alone.
export GSETTINGS_BACKEND=keyfile
own() { [[ $compositing == own ]] && echo "$1" || echo "$2"; }
# What the session's first program is given is what all others of it get.
wayland() {
    printf '%s\n' '#!/bin/sh' 'env >"$0.new" && mv "$0.new" "$0.env"' 'exec sleep infinity' >"$home/session"
    chmod +x "$home/session"
    start manager env XDG_SESSION_TYPE=wayland KWIN_COMPOSE=Q "$@"
    await "Wayland session" test -e "$home/session.env"
    export XDG_SESSION_TYPE=wayland VANTOR_EYES_DISPLAY=:$number VANTOR_EYES_XAUTHORITY=$home/xauthority
    local name
    for name in DISPLAY XAUTHORITY WAYLAND_DISPLAY; do export "$(grep "^$name=" "$home/session.env")"; done
}
case $manager in
    openbox) start manager openbox --sm-disable --config-file "$config" ;;
    i3) start manager i3 -c "$config" ;;
    xfwm4)
        start xfconf sh -c 'exec "$(find /usr/lib -path "*/xfconf/xfconfd" -print -quit)"'
        start manager xfwm4 --compositor="$(own on off)" --vblank=off ;;
    kwin_x11) start manager env KWIN_COMPOSE="$(own O2 N)" kwin_x11 ;;
    mutter) start manager mutter --x11 --sm-disable ;;
    marco) start manager marco --sm-disable "$(own --composite --no-composite)" ;;
    kwin_wayland)
        # Without the capability that its file may have, which not every machine gives.
        cp "$(command -v kwin_wayland)" "$home/kwin_wayland"
        wayland "$home/kwin_wayland" --x11-display "$DISPLAY" --width "${geometry%%x*}" --height "$(cut -dx -f2 <<<"$geometry")" \
            --xwayland --exit-with-session "$home/session"
        export VANTOR_HANDS_DISPLAY=:$number VANTOR_HANDS_XAUTHORITY=$home/xauthority ;;
    mutter_wayland) wayland mutter --wayland --headless --virtual-monitor "${geometry%x*}" -- "$home/session" ;;
    *) echo "private_desktop: no window manager '$manager'" >&2; exit 2 ;;
esac
export VANTOR_WINDOW_MANAGER=${started[-1]}
await "window manager" sh -c 'xprop -root _NET_SUPPORTING_WM_CHECK | grep -q "window id"'
if [[ $compositing == picom ]]; then
    start picom picom --config /dev/null --backend xrender --no-fading-openclose
    await "compositor" sh -c 'xwininfo -root -tree | grep -qi picom'
fi

set +e
setpriv --pdeathsig TERM -- "$@" &
started+=($!)
wait "${started[-1]}"
