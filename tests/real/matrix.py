#!/usr/bin/env python3
"""Vantor beside a real Windows program: tests/real/game.c under Wine, in window managers as players have them.

    matrix.py                      the short form: one cell a line of SHORT
    matrix.py --long               every manager, with and without compositing, full screen and windowed
    matrix.py openbox-picom-full   these cells alone

A cell is MANAGER-COMPOSITING-MODE; --list names them. Each runs in an X server of its own, with input from another client.
What it leaves behind stands in build/real/CELL: found.json, the lines of the game and of Vantor, a picture of each check that did
not hold. The Wine prefix is made once, in build/real/prefix. Prints a table and the reasons, and
"N passed, M failed" as its last line."""

import argparse
import ctypes
import fcntl
import json
import os
import re
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

HERE = Path(__file__).resolve().parent
TOP = HERE.parents[1]
sys.dont_write_bytecode = True
sys.path.insert(0, str(TOP / "demo"))
import desk  # noqa: E402

BUILD = TOP / "build/real"
VANTOR = TOP / "build/release/src/vantor"
OTHER_APPLICATION = TOP / "build/release/demo/standin-game"
WINE = {"WINEPREFIX": str(BUILD / "prefix"), "WINEDEBUG": "-all", "HOME": str(BUILD),
        "WINEDLLOVERRIDES": "mscoree,mshtml,winemenubuilder.exe="}
PATIENCE = 15
CAMERA = "48"  # the virtual key codes of H and F9
FENCE = "78"
TEXT = "The quick [&BFAEAAA=] fox: <jumps> over_the \"lazy\" dog; #1 @ 50%! " + "".join(map(chr, range(33, 127)))
TIMERS_TAB = (180, 87)  # inside the main window, from its top left corner
TITLE = (40, 10, 300, 40)

DESKTOPS = ("openbox-none", "openbox-picom", "xfwm4-none", "xfwm4-own", "kwin_x11-none", "kwin_x11-own", "mutter-own",
            "marco-none", "marco-own", "i3-none", "i3-picom")
CELLS = [f"{desktop}-{mode}" for desktop in DESKTOPS for mode in ("full", "windowed")]
SHORT = ("openbox-picom-full", "kwin_x11-own-full", "mutter-own-full")
# What a manager does not have; the table says so in place of a yes.
NOT_THERE = {("i3", "minimise"): "i3 minimises no windows"}


class Unmet(Exception):
    """Why a check does not hold."""


def soon(condition, reason):
    result = desk.wait_until(condition, PATIENCE)
    if not result:
        raise Unmet(reason() if callable(reason) else reason)
    return result


def active_name():
    return desk.ask("xdotool", "getactivewindow", "getwindowname") or "nobody"


class WineGame(desk.Program):
    """game.c under Wine; its lines are the record."""

    def __init__(self, *options):
        super().__init__("wine", BUILD / "Gw2-64.exe", *options, environment=WINE)
        ready = self.line(r"^ready ", patience=60)
        if not ready:
            raise RuntimeError(f"the game does not start: {self.lines}")
        self.window = int(ready.split()[1], 16)
        soon(lambda: self.count("focus gained"), "the new game gets no focus")

    def count(self, line, since=0):
        return self.lines[since:].count(line)

    def has_focus(self):
        focus = [line for line in self.lines if line.startswith("focus ")]
        return focus[-1:] == ["focus gained"] and desk.active_window() == self.window

    def typed(self, since=0):
        units = [int(line.split()[1], 16) for line in self.lines[since:] if line.startswith("char ")]
        return "".join(map(chr, units))


class Server:
    """What only the X server knows: who holds the pointer."""

    def __init__(self):
        self.x = ctypes.CDLL("libX11.so.6")
        self.x.XOpenDisplay.restype = ctypes.c_void_p
        self.x.XDefaultRootWindow.restype = ctypes.c_ulong
        self.display = ctypes.c_void_p(self.x.XOpenDisplay(None))
        self.root = ctypes.c_ulong(self.x.XDefaultRootWindow(self.display))

    def pointer_is_held(self):
        none, now, asynchronous = ctypes.c_ulong(0), ctypes.c_ulong(0), 1
        answer = self.x.XGrabPointer(self.display, self.root, 1, 0, asynchronous, asynchronous, none, none, now)
        if answer == 0:
            self.x.XUngrabPointer(self.display, now)
        self.x.XSync(self.display, 0)
        return answer == 1


class Stage:
    """One cell's desktop with the game and Vantor in it."""

    def __init__(self, cell, folder):
        self.manager, self.compositing, self.mode = cell.split("-")
        self.folder = folder
        self.output = BUILD / cell
        self.service = desk.WebService()
        self.server = Server()
        self.games = []
        subprocess.run(["wmctrl", "-n", "2"], check=False, timeout=PATIENCE)
        desk.park_pointer()
        self.new_game()
        self.held = desk.wait_until(self.server.pointer_is_held, 3)
        self.width, self.height = desk.screen_size()
        self.bare = desk.settled_pixels(0, 0, self.width, self.height)
        self.vantor = self.new_vantor()

    def new_game(self):
        options = ["--windowed", "--place", "0,0,1200,760"] if self.mode == "windowed" else []
        self.game = WineGame(*options)
        self.games.append(self.game)

    def new_vantor(self):
        return desk.Vantor(VANTOR, self.service.host, self.folder)

    def end(self):
        for program in (self.vantor, self.game, self.service):
            program.end()
        (self.output / "game.log").write_text("\n\n".join("\n".join(game.lines) for game in self.games))
        (self.output / "vantor.log").write_text("\n".join(self.vantor.lines))

    def overlay_has_focus(self):
        return active_name() == "Vantor"

    def changed(self, rectangle):
        """The share of the rectangle's points that do not show what was there before Vantor."""
        x, y = max(0, rectangle[0]), max(0, rectangle[1])
        width = min(self.width, rectangle[0] + rectangle[2]) - x
        height = min(self.height, rectangle[1] + rectangle[3]) - y
        if width <= 0 or height <= 0:
            return 0
        now = desk.pixels(x, y, width, height)
        points = [(column, row) for row in range(0, height, 4) for column in range(0, width, 4)]
        differing = 0
        for column, row in points:
            there, here = 3 * ((y + row) * self.width + x + column), 3 * (row * width + column)
            differing += self.bare[there:there + 3] != now[here:here + 3]
        return differing / len(points)

    def is_seen(self, role, share):
        place = self.vantor.windows().get(role)
        return place and self.changed(place) > share

    def icon_is_seen(self):
        soon(lambda: "icon" in self.vantor.windows(), "the icon is not mapped")
        soon(lambda: self.is_seen("icon", 0.2), "the icon is mapped and not to be seen")

    def overlay_is_seen(self):
        soon(lambda: self.is_seen("main", 0.6), "the overlay is mapped and not to be seen")

    def opens(self):
        since = len(self.game.lines)
        desk.press(*desk.HOTKEY)
        soon(self.vantor.overlay_shown, "the hotkey opens no overlay")
        self.camera_once(since, "opening")
        return since

    def closes(self, *keys, camera=True):
        since = len(self.game.lines)
        if keys:
            desk.press(*keys)
        soon(lambda: not self.vantor.overlay_shown(), "the overlay stays open")
        if camera:
            self.camera_once(since, "closing")
        soon(self.game.has_focus, "closed, the game does not get the focus back")

    def camera_once(self, since, when):
        soon(lambda: self.game.count(f"key up {CAMERA}", since), f"no camera key at the {when}")

    def opens_and_closes(self):
        self.icon_is_seen()
        self.opens()
        self.overlay_is_seen()
        self.closes("Escape")

    def settle(self):
        """Brings the desktop back to the game with the overlay closed, whatever a check has left behind."""
        if not self.vantor.alive():
            self.vantor = self.new_vantor()
        if not self.game.alive():
            self.new_game()
        for keys in (("Escape",), desk.HOTKEY):
            if self.vantor.overlay_shown():
                desk.press(*keys)
                desk.wait_until(lambda: not self.vantor.overlay_shown(), 3)
        if not self.game.has_focus():
            activate(self.game.window)
            desk.wait_until(self.game.has_focus, 3)
        if not desk.wait_until(lambda: "icon" in self.vantor.windows(), 3):
            self.vantor.end()
            self.vantor = self.new_vantor()
        desk.park_pointer()


def check_recognised(stage):
    soon(lambda: {"icon", "watched"} <= set(stage.vantor.windows()), "no icon and list beside the game")


def check_icon_seen(stage):
    stage.icon_is_seen()


def check_overlay_seen(stage):
    stage.opens()
    stage.overlay_is_seen()
    stage.closes("Escape")


def check_focus_and_camera(stage):
    """By the game's own account: the camera key before the focus leaves, and after it is back; no second one."""
    since = stage.opens()
    soon(stage.overlay_has_focus if stage.held else stage.game.has_focus, lambda: f"open, the focus is with {active_name()}")
    stage.closes("Escape")
    desk.press("F9")
    soon(lambda: stage.game.count(f"key up {FENCE}", since), "the game has no keyboard after the closing")
    told = [line for line in stage.game.lines[since:] if line.startswith("focus") or line.endswith(f" {CAMERA}")]
    camera = [f"key down {CAMERA}", f"key up {CAMERA}"]
    expected = [*camera, *(["focus lost", "focus gained"] if stage.held else []), *camera]
    if told != expected:
        raise Unmet(f"the game was given {', '.join(told)}")


def check_hotkey_closes(stage):
    stage.opens()
    stage.closes(*desk.HOTKEY)


def clicked(stage, x, y, condition, what):
    since = len(stage.game.lines)
    desk.click(x, y)
    soon(condition, lambda: f"the click on {what} " + (
        "goes to the game" if any(line.startswith("click") for line in stage.game.lines[since:]) else "does nothing"))


def check_tab_click(stage):
    """A click opens the Timers tab, and the closing after a click plays the camera key into the game."""
    stage.opens()
    stage.overlay_is_seen()
    x, y, *_ = stage.vantor.overlay()
    title = (x + TITLE[0], y + TITLE[1], *TITLE[2:])
    before = desk.settled_pixels(*title)
    clicked(stage, x + TIMERS_TAB[0], y + TIMERS_TAB[1], lambda: desk.pixels(*title) != before, "the tab")
    stage.closes("Escape")


def check_icon_click(stage):
    """Where the game holds the pointer the icon can be clicked while the overlay is open, and closes it."""
    x, y, *_ = stage.vantor.windows()["icon"]
    if stage.held:
        stage.opens()
        clicked(stage, x + 16, y + 16, lambda: not stage.vantor.overlay_shown(), "the icon")
        stage.closes(camera=False)
    else:
        clicked(stage, x + 16, y + 16, stage.vantor.overlay_shown, "the icon")
        stage.closes("Escape")


def arrives(stage, since):
    soon(lambda: stage.game.typed(since) == TEXT, lambda: f"arrived: {stage.game.typed(since)!r}")


def check_type(stage):
    since = len(stage.game.lines)
    typing = subprocess.run([VANTOR, "--type", "-"], input=TEXT, text=True, capture_output=True, timeout=60)
    if typing.returncode:
        raise Unmet(f"status {typing.returncode}: {typing.stderr.strip()}")
    arrives(stage, since)


def check_paste(stage):
    with desk.clipboard(TEXT):
        since = len(stage.game.lines)
        desk.press(*desk.PASTE_KEYS)
        arrives(stage, since)


def activate(window):
    subprocess.run(["xdotool", "windowactivate", str(window)], check=False, capture_output=True, timeout=PATIENCE)


def goes_and_returns(stage, leave, come_back):
    """With the overlay closed, and once more with the overlay open: it is there again when the game is."""
    for is_open in (False, True):
        if is_open:
            stage.opens()
        leave()
        soon(lambda: not stage.vantor.windows(), lambda: f"away from the game there are still {', '.join(stage.vantor.windows())}")
        since = len(stage.game.lines)
        come_back()
        soon(lambda: stage.game.count("focus gained", since), "the game does not get the focus again")
        stage.icon_is_seen()
        if is_open:
            soon(stage.vantor.overlay_shown, "the overlay was open and does not come back")
            stage.overlay_is_seen()
            stage.closes("Escape")
    stage.opens_and_closes()


def check_switch(stage):
    with desk.Game(OTHER_APPLICATION, stage.folder, window_class="editor", size="500x300") as editor:
        def leave():
            activate(editor.window)
            soon(editor.has_focus, "the other application does not come to the front")

        goes_and_returns(stage, leave, lambda: activate(stage.game.window))


def check_minimise(stage):
    def leave():
        desk.ask("xdotool", "windowminimize", str(stage.game.window))
        soon(lambda: "Iconic" in desk.ask("xprop", "-id", str(stage.game.window), "WM_STATE"), "the game is not minimised")

    goes_and_returns(stage, leave, lambda: activate(stage.game.window))


def show_workspace(stage, number):
    if stage.manager == "i3":
        desk.ask("i3-msg", "workspace", str(number + 1))
    else:
        desk.ask("wmctrl", "-s", str(number))


def check_workspace(stage):
    def come_back():
        show_workspace(stage, 0)
        activate(stage.game.window)  # some managers leave the focus with nobody

    goes_and_returns(stage, lambda: show_workspace(stage, 1), come_back)


def check_game_closes(stage):
    stage.opens()
    desk.ask("wmctrl", "-i", "-c", hex(stage.game.window))
    soon(lambda: not stage.game.alive(), "the game does not close")
    soon(lambda: not stage.vantor.windows(), lambda: f"after the game there are still {', '.join(stage.vantor.windows())}")


def check_new_game(stage):
    """A game that begins after the other one closed under the overlay: the overlay is still wanted."""
    stage.new_game()
    soon(stage.vantor.overlay_shown, "the overlay was open and does not come back")
    stage.overlay_is_seen()
    stage.closes("Escape")
    stage.opens_and_closes()


def check_no_attention(stage):
    wanting = []
    for window in desk.ask("xdotool", "search", "--pid", str(stage.vantor.pid)).split():
        if "DEMANDS_ATTENTION" in desk.ask("xprop", "-id", window, "_NET_WM_STATE"):
            wanting.append(desk.ask("xdotool", "getwindowname", window))
    if wanting:
        raise Unmet(f"attention is asked for by {', '.join(wanting)}")


def check_quiet(stage):
    if not stage.vantor.alive() or stage.vantor.unexpected_lines():
        raise Unmet(f"Vantor {'is gone' if not stage.vantor.alive() else 'prints'}: {stage.vantor.lines[-3:]}")


CHECKS = {
    "recognised": check_recognised, "icon seen": check_icon_seen, "overlay seen": check_overlay_seen,
    "focus, camera": check_focus_and_camera, "hotkey closes": check_hotkey_closes, "tab": check_tab_click,
    "icon": check_icon_click, "type": check_type, "paste": check_paste, "switch": check_switch, "minimise": check_minimise,
    "workspace": check_workspace, "game closes": check_game_closes, "new game": check_new_game, "no attention": check_no_attention,
    "quiet": check_quiet,
}


def run_cell(cell):
    """Inside the cell's desktop: every check, whatever the one before it found."""
    output = BUILD / cell
    shutil.rmtree(output, ignore_errors=True)
    output.mkdir(parents=True)
    found = {}
    with tempfile.TemporaryDirectory(prefix="vantor-real.") as folder:
        stage = Stage(cell, folder)
        for name, check in CHECKS.items():
            reason = NOT_THERE.get((stage.manager, name))
            if reason is None:
                try:
                    check(stage)
                    reason = "yes"
                except (Unmet, OSError, RuntimeError, KeyError, TypeError, subprocess.SubprocessError) as fault:
                    reason = str(fault) if isinstance(fault, Unmet) else repr(fault)
                    desk.picture(output / f"{re.sub('[^a-z]+', '-', name)}.png")
                    stage.settle()
            found[name] = reason
            print(f"{cell}: {name}: {reason}", flush=True)
        found["held"] = bool(stage.held)
        stage.end()
    (output / "found.json").write_text(json.dumps(found, indent=1))


def desktop_environment(cell):
    manager, compositing, _ = cell.split("-")
    config = {"i3": HERE / "i3.conf", "openbox": HERE / "openbox.xml"}.get(manager, "")
    return {"VANTOR_DESKTOP_MANAGER": manager, "VANTOR_DESKTOP_COMPOSITING": compositing, "VANTOR_DESKTOP_CONFIG": str(config)}


def in_desktop(cell, *words):
    """Runs this script again in the desktop of a cell, and ends what Wine leaves behind."""
    command = [TOP / "demo/private_desktop.sh", sys.executable, __file__, *words, cell]
    try:
        return subprocess.run(list(map(str, command)), env={**os.environ, **desktop_environment(cell)}, check=False,
                              timeout=1200).returncode
    finally:
        subprocess.run(["wineserver", "-k"], env={**os.environ, **WINE}, check=False, capture_output=True, timeout=60)


def prepare():
    """Builds the game and makes the prefix, where they are missing or old."""
    BUILD.mkdir(parents=True, exist_ok=True)
    source, program = HERE / "game.c", BUILD / "Gw2-64.exe"
    if not program.exists() or program.stat().st_mtime < source.stat().st_mtime:
        subprocess.run(["x86_64-w64-mingw32-gcc", "-O2", "-Wall", "-Wextra", "-Werror", "-mwindows", "-o", program, source,
                        "-lgdi32"], check=True, timeout=120)
    ready = BUILD / "prefix.ready"
    if not ready.exists():
        shutil.rmtree(BUILD / "prefix", ignore_errors=True)
        environment = {name: value for name, value in {**os.environ, **WINE}.items() if name != "DISPLAY"}
        subprocess.run(["wine", "wineboot", "-i"], env=environment, check=True, capture_output=True, timeout=300)
        subprocess.run(["wineserver", "-w"], env=environment, check=True, timeout=300)
        ready.touch()


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("cells", nargs="*", metavar="CELL")
    parser.add_argument("--long", action="store_true")
    parser.add_argument("--list", action="store_true")
    parser.add_argument("--inside", action="store_true", help=argparse.SUPPRESS)
    arguments = parser.parse_args()
    if arguments.inside:
        return run_cell(arguments.cells[0])
    if arguments.list:
        print(*CELLS, sep="\n")
        return 0
    prepare()
    with open(BUILD / "lock", "w", encoding="ascii") as lock:  # the prefix serves one display at a time
        fcntl.flock(lock, fcntl.LOCK_EX)
        passed = failed = 0
        for cell in arguments.cells or (CELLS if arguments.long else SHORT):
            in_desktop(cell, "--inside")
            found = json.loads((BUILD / cell / "found.json").read_text())
            passed += list(found.values()).count("yes")
            failed += sum(1 for name, value in found.items() if name in CHECKS and value != "yes")
    print(f"{passed} passed, {failed} failed")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
