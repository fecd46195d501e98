#!/usr/bin/env python3
"""Vantor beside a real Windows program: tests/real/game.c under Wine, in window managers as players have them.

    matrix.py                      the short form: one cell a line of SHORT
    matrix.py --long               every manager, with and without compositing, full screen and windowed
    matrix.py openbox-picom-full   these cells alone
    matrix.py --rounds 100 "paste then switch" openbox-picom-full
                                   a scenario or a check again and again in one cell; also "click then close"

A cell is MANAGER-COMPOSITING-MODE, --list names them; "second" has two monitors, the game on the second. Each runs in an X server
of its own, with input from another client. What it leaves behind stands in build/real/CELL: found.json, the lines of the game and
of Vantor, a picture of each check that did not hold, and after rounds the core of a Vantor that crashed. The Wine prefix is made
once, in build/real/prefix. Prints a table and the reasons, and "N passed, M failed" as its last line."""

import argparse
import contextlib
import ctypes
import datetime
import fcntl
import json
import os
import re
import resource
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
VANTOR = TOP / "build/checked/src/vantor"
OTHER_APPLICATION = TOP / "build/checked/demo/standin-game"
WINE = {"WINEPREFIX": str(BUILD / "prefix"), "WINEDEBUG": "-all", "HOME": str(BUILD),
        "WINEDLLOVERRIDES": "mscoree,mshtml,winemenubuilder.exe="}
MANAGER_PACKAGES = ("openbox", "xfwm4", "kwin-x11", "mutter", "marco", "i3-wm", "kwin-wayland", "xwayland")
PATIENCE = 15
# Of the camera key that the closing of the overlay plays, when the game has gone.
NO_GAME = "the game did not get the keyboard back"
CAMERA = "48"  # the virtual key codes of H and F9
FENCE = "78"
TEXT = "The quick [&BFAEAAA=] fox: <jumps> over_the \"lazy\" dog; #1 @ 50%! " + "".join(map(chr, range(33, 127)))
HOME_TAB, TIMERS_TAB = (80, 87), (180, 87)  # inside the main window, from its top left corner

DESKTOPS = ("openbox-none", "openbox-picom", "xfwm4-none", "xfwm4-own", "kwin_x11-none", "kwin_x11-own", "mutter-own",
            "marco-none", "marco-own", "i3-none", "i3-picom", "kwin_wayland-own", "mutter_wayland-own")
MODES = {"full": (), "windowed": ("--windowed", "--place", "0,0,1200,760"), "second": ("--place", "1360,0,1360,820")}
CELLS = [f"{desktop}-{mode}" for desktop in DESKTOPS for mode in ("full", "windowed")] + ["openbox-picom-second"]
SHORT = ("openbox-picom-full", "kwin_x11-own-full", "mutter-own-full")
# Wine says by this whether a window may be minimised; these managers heed it. The others iconify a window without Wine's knowing.
HEEDS_BOX = ("mutter", "mutter_wayland", "marco")
# Gives the focus back to the game as soon as that lets go of the pointer, which is over it; Vantor takes it again.
FOLLOWS_POINTER = ("i3",)
HAVE_ALT_TAB = ("openbox", "xfwm4")
ALT_TAB = """  <keyboard><keybind key="A-Tab"><action name="NextWindow"><dialog>none</dialog><bar>no</bar>
  <finalactions><action name="Focus"/><action name="Raise"/></finalactions></action></keybind></keyboard>
"""
ICON_CLICK = 25  # beside what KWin, where it composes, keeps of the corner for itself
# Draws for nobody: that a window is mapped has to do there.
HAS_NO_SCREEN = ("mutter_wayland",)
# What a manager does not have; the table says so in place of a yes.
NOT_THERE = {("i3", "minimise"): "i3 minimises no windows",
             ("mutter", "paste"): "mutter gives V to the game past every grab: a v comes before the text",
             **{(manager, name): "no screen to see it on"
                for manager in HAS_NO_SCREEN for name in ("icon seen", "overlay seen", "list seen", "tab click")}}


def window_under_pointer():
    return re.search(r"window:(\d+)", desk.ask("xdotool", "getmouselocation")).group(1)


class Unmet(Exception):
    """Why a check does not hold."""


def soon(condition, reason):
    result = desk.wait_until(condition, PATIENCE)
    if not result:
        raise Unmet(reason() if callable(reason) else reason)
    return result


def active_name():
    return desk.ask("xdotool", "getactivewindow", "getwindowname") or "nobody"


def activate(window):
    subprocess.run(["xdotool", "windowactivate", str(window)], check=False, capture_output=True, timeout=PATIENCE)


class WineGame(desk.Program):
    """game.c under Wine; its lines are the record."""

    def __init__(self, *options):
        super().__init__("wine", BUILD / "Gw2-64.exe", *options, environment=WINE)
        ready = self.line(r"^ready ", patience=60)
        if not ready:
            raise Unmet(f"the game does not start: {self.lines}")
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
    """What only the X server knows: whether somebody holds the pointer."""

    def __init__(self):
        self.x = ctypes.CDLL("libX11.so.6")
        self.x.XOpenDisplay.restype = ctypes.c_void_p
        self.x.XDefaultRootWindow.restype = ctypes.c_ulong
        self.display = ctypes.c_void_p(self.x.XOpenDisplay(None))
        self.root = ctypes.c_ulong(self.x.XDefaultRootWindow(self.display))

    def pointer_is_held(self):
        none = ctypes.c_ulong(0)
        answer = self.x.XGrabPointer(self.display, self.root, 1, 0, 1, 1, none, none, none)
        self.x.XUngrabPointer(self.display, none)
        self.x.XSync(self.display, 0)
        return answer == 1  # AlreadyGrabbed


class Stage:
    """One cell's desktop with the game and Vantor in it."""

    def __init__(self, cell, folder):
        self.manager, self.compositing, self.mode = cell.split("-")
        self.folder = folder
        self.service = desk.WebService()
        self.server = Server()
        self.games, self.vantors = [], []
        self.expected = ()
        if self.mode == "second":
            for monitor in (("first", "1360/360x820/217+0+0", "screen"), ("second", "1360/360x820/217+1360+0", "none")):
                subprocess.run(["xrandr", "--setmonitor", *monitor], check=True, capture_output=True, timeout=PATIENCE)
        if self.manager == "xfwm4":  # whose keys come with the rest of its desktop
            subprocess.run(["xfconf-query", "-c", "xfce4-keyboard-shortcuts", "-n", "-t", "string", "-p", "/xfwm4/custom/<Alt>Tab",
                            "-s", "cycle_windows_key"], check=True, timeout=PATIENCE)
        subprocess.run(["wmctrl", "-n", "2"], check=False, timeout=PATIENCE)
        desk.park_pointer()
        self.new_game()
        self.held = self.may_hold = self.mode == "full"  # as Wine does while a window covers the whole screen and has the focus
        # Asked for its size, a screen in two parts gives that of its first.
        self.width, self.height = (2720, 820) if self.mode == "second" else desk.screen_size()
        self.monitor = (self.width // 2 if self.mode == "second" else 0, 0, self.width, self.height)
        self.bare = desk.settled_pixels(0, 0, self.width, self.height)
        self.new_vantor()

    def new_game(self):
        self.game = WineGame(*MODES[self.mode], *(["--minimise-box"] if self.manager in HEEDS_BOX else []))
        self.games.append(self.game)

    def new_vantor(self):
        self.vantor = desk.Vantor(VANTOR, self.service.host, self.folder, settings=desk.every_event())
        self.vantors.append(self.vantor)
        desk.wait_until(lambda: "icon" in self.windows(), PATIENCE)

    def end(self):
        for program in (self.vantor, self.game, self.service):
            program.end()
        for name, programs in (("game.log", self.games), ("vantor.log", self.vantors)):
            Path(name).write_text("\n\n".join("\n".join(program.lines) for program in programs), encoding="utf-8")

    def windows(self):
        """What is mapped of Vantor but its item in the status bar."""
        return {role: place for role, place in self.vantor.windows().items() if role in desk.ROLES.values()}

    def left(self):
        return f"still there: {', '.join(self.windows())}, and {active_name()} has the focus"

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
        points = [(3 * ((y + row) * self.width + x + column), 3 * (row * width + column))
                  for row in range(0, height, 4) for column in range(0, width, 4)]
        return sum(self.bare[there:there + 3] != now[here:here + 3] for there, here in points) / len(points)

    def is_seen(self, role, share):
        place = self.windows().get(role)
        return place and (self.manager in HAS_NO_SCREEN or self.changed(place) > share)

    def icon_is_seen(self):
        soon(lambda: "icon" in self.windows(), "the icon is not mapped")
        soon(lambda: self.is_seen("icon", 0.2), "the icon is mapped and not to be seen")

    def overlay_is_seen(self):
        soon(lambda: self.is_seen("main", 0.6), "the overlay is mapped and not to be seen")

    def bring_game_back(self):
        """At times Wine does not take the focus that a manager offers it; a player then clicks once more."""
        for _ in range(3):
            activate(self.game.window)
            if desk.wait_until(self.game.has_focus, 5):
                break

    def hold_again(self):
        """Whether the game holds the pointer now. Wine lets go of it with the focus and holds it anew some time after: at a click into
        the game at the latest, but not in the second after it has let go; and at times, after many turns, no more at all."""
        left, _, _, bottom = self.monitor
        for _ in range(4):
            if not self.may_hold or desk.wait_until(self.server.pointer_is_held, 1):
                break
            desk.click(left + 200, bottom - 60)
        return self.server.pointer_is_held()

    def opens(self):
        self.held = self.hold_again()
        since = len(self.game.lines)
        desk.press(*desk.HOTKEY)
        soon(self.vantor.overlay_shown, "the hotkey opens no overlay")
        soon(lambda: self.game.count(f"key up {CAMERA}", since), "no camera key at the opening")
        if self.held:
            soon(self.overlay_has_focus, lambda: f"open, the focus is with {active_name()}")
        return since

    def closes(self, *keys, camera=True):
        since = len(self.game.lines)
        if keys:
            desk.press(*keys)
        soon(lambda: not self.vantor.overlay_shown(), "the overlay stays open")
        soon(lambda: not camera or self.game.count(f"key up {CAMERA}", since), "no camera key at the closing")
        soon(self.game.has_focus, "closed, the game does not get the focus back")

    def opens_and_closes(self):
        self.icon_is_seen()
        self.opens()
        self.overlay_is_seen()
        self.closes("Escape")

    def settle(self):
        """Brings the desktop back to the game with the overlay closed, whatever a check has left behind."""
        if not self.vantor.alive():
            self.new_vantor()
        if not self.game.alive():
            self.new_game()
        for keys in (("Escape",), desk.HOTKEY):
            if self.vantor.overlay_shown():
                desk.press(*keys)
                desk.wait_until(lambda: not self.vantor.overlay_shown(), 3)
        if not self.game.has_focus():
            activate(self.game.window)
            desk.wait_until(self.game.has_focus, 3)
        if not desk.wait_until(lambda: "icon" in self.windows(), 3):
            self.vantor.end()
            self.new_vantor()
        desk.park_pointer()


class Player(Stage):
    """What a player does, each once as a check of the matrix (in this order), or again and again as a round."""

    def check_pointer(self):
        soon(lambda: self.server.pointer_is_held() == self.may_hold,
             f"the game {'does not hold' if self.may_hold else 'holds'} the pointer")

    def check_recognised(self):
        soon(lambda: "icon" in self.windows(), "no icon beside the game")

    check_icon_seen = Stage.icon_is_seen
    check_overlay_seen = Stage.opens_and_closes

    def check_list_seen(self):
        soon(lambda: self.is_seen("watched", 0.3), "the watched list is not to be seen")

    def check_monitor(self):
        """All that Vantor shows lies on the game's monitor, the icon in its corner, the overlay where it was the time before."""
        left, top, right, bottom = self.monitor
        before = None

        def astray():
            windows = self.windows()
            wanted = {"icon": (left, top), "main": before or windows.get("main", ())[:2]}
            return [role for role in {"icon", "main", *windows} if role not in windows or windows[role][0] < left or windows[role][1] < top
                    or windows[role][0] + windows[role][2] > right or windows[role][1] + windows[role][3] > bottom
                    or wanted.get(role, windows[role][:2]) != windows[role][:2]]

        for _ in range(2):
            self.opens()
            soon(lambda: not astray(), lambda: f"not in its place on the game's monitor: {', '.join(astray())}")
            before = self.windows()["main"][:2]
            self.closes("Escape")

    def check_focus_and_camera(self):
        """By the game's own account: the camera key before the focus leaves, and after it is back; no second one."""
        since = self.opens()
        soon(self.overlay_has_focus if self.held else self.game.has_focus, lambda: f"open, the focus is with {active_name()}")
        self.closes("Escape")
        desk.press("F9")
        soon(lambda: self.game.count(f"key up {FENCE}", since), "the game has no keyboard after the closing")
        told = [line for line in self.game.lines[since:] if line.startswith("focus") or line.endswith(f" {CAMERA}")]
        if self.manager in FOLLOWS_POINTER and told[2:4] == ["focus lost", "focus gained"] == told[4:6]:
            del told[2:4]
        camera = [f"key down {CAMERA}", f"key up {CAMERA}"]
        expected = [*camera, *(["focus lost", "focus gained"] if self.held else []), *camera]
        if told != expected:
            raise Unmet(f"the game was given {', '.join(told)}")

    def check_hotkey_closes(self):
        self.opens()
        self.closes(*desk.HOTKEY)

    def clicked(self, x, y, condition, what):
        desk.wait_until(lambda: not self.server.pointer_is_held(), PATIENCE)
        since = len(self.game.lines)
        desk.point_at(x, y)
        # The pointer rests before the click, as a hand does: KWin, where it composes, keeps a window of its own over each corner
        # of the screen until the pointer has come.
        desk.wait_until(lambda: "InputOnly" not in desk.ask("xwininfo", "-id", window_under_pointer()), PATIENCE)
        desk.click(x, y)
        soon(condition, lambda: f"the click on {what} " + (
            "goes to the game" if any(line.startswith("click") for line in self.game.lines[since:]) else "does nothing"))

    def is_selected(self, tab):
        """The red line under a tab says which one is shown."""
        x, y, *_ = self.vantor.overlay()
        line = desk.pixels(x + tab[0] - 20, y + tab[1] + 28, 40, 16)
        return any(red > 110 and green < 70 and blue < 70 for red, green, blue in zip(line[::3], line[1::3], line[2::3]))

    def clicked_tab(self):
        """Goes from the Home tab to the Timers tab, or back."""
        self.overlay_is_seen()
        soon(lambda: self.is_selected(HOME_TAB) != self.is_selected(TIMERS_TAB), "no tab is shown")
        other = TIMERS_TAB if self.is_selected(HOME_TAB) else HOME_TAB
        x, y, *_ = self.vantor.overlay()
        self.clicked(x + other[0], y + other[1], lambda: self.is_selected(other), "the tab")

    def check_tab_click(self):
        """A click opens the Timers tab, and the closing after a click plays the camera key into the game."""
        self.opens()
        self.clicked_tab()
        self.closes("Escape")

    def check_icon_click(self):
        """Where the game holds the pointer the icon can be clicked while the overlay is open, and closes it."""
        self.icon_is_seen()
        x, y, *_ = self.windows()["icon"]
        if self.may_hold:
            self.opens()
            self.clicked(x + ICON_CLICK, y + ICON_CLICK, lambda: not self.vantor.overlay_shown(), "the icon")
            self.closes(camera=False)
        else:
            self.clicked(x + ICON_CLICK, y + ICON_CLICK, self.vantor.overlay_shown, "the icon")
            self.closes("Escape")

    def arrives(self, since):
        soon(lambda: self.game.typed(since) == TEXT, lambda: f"other text arrives: {self.game.typed(since)[:12]!r} and so on")

    def check_type(self):
        since = len(self.game.lines)
        typing = subprocess.run([VANTOR, "--type", "-"], input=TEXT, text=True, capture_output=True, timeout=60)
        if typing.returncode:
            raise Unmet(f"status {typing.returncode}: {typing.stderr.strip()}")
        self.arrives(since)

    def check_paste(self):
        with desk.clipboard(TEXT):
            since = len(self.game.lines)
            desk.press(*desk.PASTE_KEYS)
            self.arrives(since)

    def goes_and_returns(self, leave, come_back, may_stay=False):
        """With the overlay closed, and once more with the overlay open: it is there again when the game is. An overlay that the
        manager leaves the focus with is an application of its own, and may stay."""
        for is_open in (False, True):
            self.icon_is_seen()
            if is_open:
                self.opens()
            leave()
            soon(lambda: desk.active_window() != self.game.window, "the game stays in front")
            soon(lambda: not self.windows() or (may_stay and self.overlay_has_focus()), lambda: f"away from the game: {self.left()}")
            since = len(self.game.lines)
            come_back()
            soon(lambda: self.game.count("focus gained", since), "the game does not get the focus again")
            self.icon_is_seen()
            if is_open:
                soon(self.vantor.overlay_shown, "the overlay was open and does not come back")
                self.overlay_is_seen()
                self.closes("Escape")
        self.opens_and_closes()

    def switch_to(self, window):
        """To the other of two applications; the managers without a key for it are asked as a task bar asks. From the overlay the
        first stop is the game below it in some managers, so one more is tried, as a hand does."""
        if self.manager not in HAVE_ALT_TAB:
            return self.bring_game_back() if window == self.game.window else activate(window)
        for stops in (1, 2):
            desk.ask("xdotool", "keydown", "Alt_L", "key", "--delay", "100", *["Tab"] * stops, "keyup", "Alt_L")
            if desk.wait_until(lambda: desk.active_window() == window, 3):
                return None
        raise Unmet(f"Alt+Tab leads to {active_name()}")

    def check_switch(self):
        if self.manager == "i3":  # which shows nothing new beside a window in full screen
            self.show_workspace(1)
        with desk.Game(OTHER_APPLICATION, self.folder, window_class="editor", size="500x300") as editor:
            # Most managers give a new window the focus, some time after it is there.
            desk.wait_until(lambda: desk.active_window() == editor.window, 3)
            self.bring_game_back()
            soon(self.game.has_focus, "the game does not get the focus back from a new window")
            self.goes_and_returns(lambda: self.switch_to(editor.window), lambda: self.switch_to(self.game.window))

    def check_minimise(self):
        def minimised():
            return "Iconic" in desk.ask("xprop", "-id", str(self.game.window), "WM_STATE")

        def leave():
            desk.ask("xdotool", "windowminimize", str(self.game.window))
            soon(minimised, "the game is not minimised")

        def come_back():
            desk.settled_pixels(0, 0, self.width, self.height)  # the windows have gone, and what that leads to has happened
            if not minimised():
                raise Unmet("the game does not stay minimised")
            self.bring_game_back()

        self.goes_and_returns(leave, come_back, may_stay=True)

    def show_workspace(self, number):
        if self.manager == "i3":
            desk.ask("i3-msg", "workspace", str(number + 1))
        else:
            desk.ask("wmctrl", "-s", str(number))

    def check_workspace(self):
        def come_back():
            self.show_workspace(0)
            self.bring_game_back()  # some managers leave the focus with nobody

        self.goes_and_returns(lambda: self.show_workspace(1), come_back)

    def check_game_closes(self):
        """Nothing of Vantor stays. An overlay that the manager gives the focus is an application of its own, which Escape closes."""
        self.check_quiet()
        self.expected = (NO_GAME,)
        self.opens()
        desk.ask("wmctrl", "-i", "-c", hex(self.game.window))
        soon(lambda: not self.game.alive(), "the game does not close")
        soon(lambda: not self.windows() or self.overlay_has_focus(), lambda: f"after the game: {self.left()}")
        desk.press("Escape")
        soon(lambda: not self.windows(), lambda: f"after the game: {self.left()}")

    def check_new_game(self):
        """After a game that closed under the open overlay, which may be wanted still."""
        self.new_game()
        self.icon_is_seen()
        self.closes("Escape", camera=False)
        self.opens_and_closes()

    def check_no_attention(self):
        windows = desk.ask("xdotool", "search", "--pid", str(self.vantor.pid)).split()
        wanting = [window for window in windows if "DEMANDS_ATTENTION" in desk.ask("xprop", "-id", window, "_NET_WM_STATE")]
        if wanting:
            raise Unmet("attention is asked for by " + ", ".join(desk.ask("xdotool", "getwindowname", window) for window in wanting))

    def check_quiet(self):
        lines = [line for vantor in self.vantors for line in vantor.unexpected_lines(*self.expected)]
        if lines or not self.vantor.alive():
            raise Unmet(f"Vantor {'prints' if self.vantor.alive() else 'is gone'}: {', '.join(dict.fromkeys(lines))}")

    def round_paste_then_switch(self):
        try:
            self.check_paste()
        finally:
            self.check_switch()

    def round_click_then_close(self):
        for keys in (("Escape",), desk.HOTKEY):
            self.opens()
            self.clicked_tab()
            self.closes(*keys)


def named(prefix):
    return {name[len(prefix):].replace("_", " "): action for name, action in vars(Player).items() if name.startswith(prefix)}


CHECKS = named("check_")
ROUNDS = {**named("round_"), **CHECKS}


@contextlib.contextmanager
def stage_of(cell):
    os.chdir(BUILD / cell)  # logs, pictures and a core are written here
    with tempfile.TemporaryDirectory(prefix="vantor-real.") as folder:
        stage = Player(cell, folder)
        try:
            yield stage
        finally:
            stage.end()


def run_rounds(cell, name, count):
    """The same scenario again and again beside one Vantor; it stops when that is gone."""
    passed = failed = 0
    # Vantor refuses to leave a core, for the passwords' sake; here it has none, and its refusal is overlaid.
    resource.setrlimit(resource.RLIMIT_CORE, (resource.RLIM_INFINITY, resource.RLIM_INFINITY))
    overlay = BUILD / "setrlimit.so"
    subprocess.run(["gcc", "-shared", "-fPIC", "-x", "c", "-o", overlay, "-"], input="int setrlimit(void) { return 0; }", text=True,
                   check=True, timeout=60)
    os.environ["LD_PRELOAD"] = str(overlay)
    with stage_of(cell) as stage:
        for number in range(1, count + 1):
            printed = len(stage.vantor.lines)
            try:
                ROUNDS[name](stage)
                if not stage.vantor.alive() or stage.vantor.lines[printed:]:
                    raise Unmet(f"Vantor prints {stage.vantor.lines[printed:]}")
                passed += 1
            except Unmet as fault:
                failed += 1
                print(f"{cell}: {name} {number}: {fault}", flush=True)
                desk.picture(f"{name}-{number}.png")
                if not stage.vantor.alive():
                    print(f"{cell}: {name} {number}: Vantor is gone, status {stage.vantor.end()}", flush=True)
                    break
                stage.settle()
    print(f"{passed} passed, {failed} failed")
    return 1 if failed or passed < count else 0


def run_cell(cell, names):
    """Inside the cell's desktop: every check, whatever the one before it found."""
    found = {}
    with stage_of(cell) as stage:
        for name in names:
            reason = NOT_THERE.get((stage.manager, name))
            if reason is None:
                try:
                    CHECKS[name](stage)
                    reason = "yes"
                except (Unmet, OSError, RuntimeError, KeyError, TypeError, subprocess.SubprocessError) as fault:
                    reason = str(fault) if isinstance(fault, Unmet) else repr(fault)
                    desk.picture(f"{re.sub('[^a-z]+', '-', name)}.png")
                    stage.settle()
            found[name] = reason
            print(f"{cell}: {name}: {reason}", flush=True)
    Path("found.json").write_text(json.dumps(found, indent=1), encoding="utf-8")


def table(results, names):
    """In the documents' form: yes, or the number of a reason below."""
    reasons = list(dict.fromkeys(value for found in results.values() for value in found.values() if value != "yes"))
    print("\n| | " + " | ".join(names) + " |\n|" + " --- |" * (len(names) + 1))
    for cell, found in results.items():
        marks = ["yes" if found[name] == "yes" else f"({reasons.index(found[name]) + 1})" for name in names]
        print(f"| {cell} | " + " | ".join(marks) + " |")
    print()
    for number, reason in enumerate(reasons, 1):
        print(f"({number}) {reason}")
    versions = subprocess.run(["dpkg-query", "-W", "-f", "${Package} ${Version}, ", "wine", "picom", *MANAGER_PACKAGES],
                              capture_output=True, text=True, check=False, timeout=PATIENCE).stdout
    print(f"{datetime.date.today()}: {versions.rstrip(', ')}")


def desktop_environment(cell):
    """What demo/private_desktop.sh needs to know for the desktop of a cell."""
    manager, compositing, mode = cell.split("-")
    config = HERE / "i3.conf"
    if manager == "openbox":
        config = BUILD / "openbox.xml"
        config.write_text((TOP / "demo/openbox.xml").read_text().replace("  <mouse>", f"{ALT_TAB}  <mouse>"))
    return {"VANTOR_DESKTOP_MANAGER": manager, "VANTOR_DESKTOP_COMPOSITING": compositing, "VANTOR_DESKTOP_CONFIG": str(config),
            "VANTOR_DESKTOP_GEOMETRY": "2720x820x24" if mode == "second" else "1360x820x24"}


def in_desktop(cell, *words, patience):
    """Runs this script again in the desktop of a cell, and ends what Wine leaves behind; false when it did not end by itself."""
    shutil.rmtree(BUILD / cell, ignore_errors=True)
    (BUILD / cell).mkdir(parents=True)
    try:
        return subprocess.run([TOP / "demo/private_desktop.sh", sys.executable, __file__, "--inside", *words, cell],
                              env={**os.environ, **desktop_environment(cell)}, check=False, timeout=patience).returncode == 0
    except subprocess.TimeoutExpired:
        return False
    finally:
        subprocess.run(["wineserver", "-k"], env={**os.environ, **WINE}, check=False, capture_output=True, timeout=60)


def found_in(cell, names):
    """What the checks of a cell found; a desktop that does not come up is the reason for all of them."""
    ended = in_desktop(cell, "--only", ",".join(names), patience=1200)
    if not ended:
        return dict.fromkeys(names, "the cell did not end")
    return json.loads((BUILD / cell / "found.json").read_text(encoding="utf-8"))


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
    parser.add_argument("--only", metavar="CHECK,...", help="these checks alone")
    parser.add_argument("--rounds", nargs=2, metavar=("COUNT", "SCENARIO"))
    parser.add_argument("--inside", action="store_true", help=argparse.SUPPRESS)
    arguments = parser.parse_args()
    rounds = [] if not arguments.rounds else ["--rounds", *arguments.rounds]
    names = arguments.only.split(",") if arguments.only else list(CHECKS)
    unknown = {*names, *rounds[2:]} - {*ROUNDS} | {*arguments.cells} - {*CELLS}
    if unknown:
        parser.error(f"unknown: {', '.join(unknown)}")
    cells = arguments.cells or (CELLS if arguments.long else SHORT)
    if arguments.inside:
        return run_rounds(cells[0], rounds[2], int(rounds[1])) if rounds else run_cell(cells[0], names)
    if arguments.list:
        print(*CELLS, sep="\n")
        return 0
    prepare()
    with open(BUILD / "lock", "w", encoding="ascii") as lock:  # the prefix serves one display at a time
        fcntl.flock(lock, fcntl.LOCK_EX)
        if rounds:
            return 0 if in_desktop(cells[0], *rounds, patience=None) else 1
        results = {cell: found_in(cell, names) for cell in cells}
    table(results, names)
    values = [found[name] for found in results.values() for name in names]
    passed = values.count("yes")
    failed = sum(1 for value in values if value != "yes" and value not in NOT_THERE.values())
    print(f"{passed} passed, {failed} failed")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
