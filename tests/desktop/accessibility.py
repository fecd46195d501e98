#!/usr/bin/env python3
"""The whole program over the real accessibility bus. A screen reader walks every tab and popup, led there by the controls' own
actions: each control has a name. A new player's first minute, from an empty home: each step is clicked where the bus says that its
control is. Prints "N passed, M failed" as its last line."""

import argparse
import contextlib
import glob
import json
import os
import re
import subprocess
import sys
import tempfile
from pathlib import Path

TOP = Path(__file__).resolve().parents[2]
sys.dont_write_bytecode = True
sys.path.insert(0, str(TOP / "demo"))
import desk  # noqa: E402
import web_service  # noqa: E402

CONTROLS = {"push button", "toggle button", "check box", "radio button", "combo box", "entry", "text", "password text", "slider",
            "spin button", "page tab", "link", "list item", "menu item", "check menu item", "button menu"}
PAGES = {"document web", "document frame"}  # of the wiki: its controls are not ours


@contextlib.contextmanager
def accessibility_bus():
    """The bus and its registry, and the desktop's word that a screen reader runs."""
    launcher = next(iter(glob.glob("/usr/libexec/at-spi-bus-launcher") + glob.glob("/usr/lib/*/at-spi-bus-launcher")))
    with desk.Program(launcher, "--launch-immediately"):
        bus = ("dbus-send", "--session", "--print-reply", "--dest=org.a11y.Bus", "/org/a11y/bus")
        if not desk.wait_until(lambda: "string" in desk.ask(*bus, "org.a11y.Bus.GetAddress")):
            raise RuntimeError("the accessibility bus does not start")
        subprocess.run([*bus, "org.freedesktop.DBus.Properties.Set", "string:org.a11y.Status", "string:ScreenReaderEnabled",
                        "variant:boolean:true"], check=True, stdout=subprocess.DEVNULL, timeout=desk.PATIENCE)
        yield


class Reader:
    """A screen reader's view of one process."""

    def __init__(self, pid):
        # Only now is there a bus to find.
        import pyatspi
        from gi.repository import GLib
        self.atspi, self.pid, self.focused = pyatspi, pid, None
        self.gone, self.events = (GLib.Error, LookupError), GLib.MainContext.default()

        def focus(event):
            self.focused = event.source

        pyatspi.Registry.registerEventListener(focus, "object:state-changed:focused")

    def nodes(self):
        """All that is shown, as (role, name, node). What goes away meanwhile is left out."""
        found = []

        def walk(node, of_menu=False):
            try:
                if of_menu:
                    node = node.parent if node is not None and node.getRoleName() == "menu item" else None
                # Where it is scrolled away it is still there for a reader.
                if node is None or not node.getState().contains(self.atspi.STATE_VISIBLE):
                    return
                role = node.getRoleName()
                found.append((role, node.name or "", node))
                for child in () if role in PAGES else node:
                    walk(child)
            except self.gone:
                pass

        for program in self.atspi.Registry.getDesktop(0):
            if program is not None and program.get_process_id() == self.pid:
                for window in program:
                    walk(window)
        # A menu of its own is in no window: a reader comes upon it by the focus.
        while self.events.iteration(False):
            pass
        walk(self.focused, of_menu=True)
        return found

    def controls(self):
        def is_control(role, node):
            return role in CONTROLS or (role not in {"frame", "window", "dialog", "filler", *PAGES}
                                        and node.getState().contains(self.atspi.STATE_FOCUSABLE))
        return [each for each in self.nodes() if is_control(each[0], each[2])]

    def needed(self, pattern, last=False):
        """The first control whose name matches, or the last, waited for."""
        found = desk.wait_until(lambda: [node for _, name, node in self.controls() if re.search(pattern, name)])
        if not found:
            raise RuntimeError(f"no control {pattern}: {[name for _, name, _ in self.nodes()]}")
        return found[-1 if last else 0]

    def sees(self, pattern):
        return desk.wait_until(lambda: any(re.search(pattern, name) for _, name, _ in self.nodes()))

    def place(self, pattern):
        """The middle of what is in sight, once it stands still: in pixels, where the bus has points."""
        scale = float(os.environ.get("QT_SCALE_FACTOR", "1"))

        def middle():
            frame = self.needed(pattern).queryComponent().getExtents(self.atspi.DESKTOP_COORDS)
            return round(scale * (frame.x + frame.width / 2)), round(scale * (frame.y + frame.height / 2))

        desk.wait_until(lambda: middle() == middle())
        return middle()

    def press(self, pattern, last=False):
        node = self.needed(pattern, last)
        actions = node.queryAction()
        names = [actions.getName(place).lower() for place in range(actions.nActions)]
        actions.doAction(next(place for place, name in enumerate(names) if name in {"press", "toggle", "click", "showmenu"}))


def walk(report, reader, where, expected):
    """Nothing there is a control without a name, and these controls are among what is there."""
    def missing():
        names = [name for _, name, _ in reader.controls()]
        return [pattern for pattern in expected if not any(re.search(pattern, name) for name in names)]

    desk.wait_until(lambda: not missing())
    report.check(not missing(), f"{where}: has the controls that belong there", (missing(), reader.nodes()))
    unnamed = [role for role, name, _ in reader.controls() if not name.strip()]
    report.check(not unnamed, f"{where}: each control has a name", unnamed)


TABS = (("Home", ["^Your key, to do$", "^Your hotkey, to do$", "^An event to watch, done$"]),
        ("Timers", ["^Search the timers$", "^Watch .", "^Chat link"]),
        ("Translator", ["."]),
        ("Bestiary", ["^Search the bestiary$"]),
        ("Internet", ["^Navigate back$", "^Navigate forward$", r"^Search\.\.\.$"]),
        ("Support", ["^How bad it is", "^Describe it here$"]),
        ("Settings", ["^Edit$", "^Window toggle: not set$"]))


def every_tab_and_popup(report, arguments, folder):
    settings = {"general.windowToggleEvent": " ", "general.enableEmojiCommands": "true", "timer.withoutProgress": "true",
                **desk.every_event()}
    with desk.WebService() as service, desk.Game(arguments.game, folder), \
            desk.Vantor(arguments.vantor, service.host, folder, key="", settings=settings) as vantor:
        desk.wait_until(lambda: {"icon", "watched"} <= set(vantor.windows()))
        reader = Reader(vantor.pid)
        reader.press("^Open the emotes$")
        walk(report, reader, "over the game", ["^Show or hide Vantor$", "^Close the emotes$", "^wave$"])
        desk.click(*reader.place("^Show or hide Vantor$"), button=3)
        desk.press("Down")
        walk(report, reader, "the icon's menu", ["^Quit$"])
        desk.press("Escape")
        reader.press("^Show or hide Vantor$")
        for tab, expected in TABS:
            reader.press(f"^{tab}$")
            walk(report, reader, tab, ["^Close$", *expected])
        reader.press("^Edit$")
        walk(report, reader, "the key's field", ["^Insert API Key$", "^Confirm$", "^Cancel$"])
        reader.press("^Cancel$")
        reader.press("^Window toggle: not set$")
        walk(report, reader, "the hotkey's popup", ["^Unbind$", "^Default$", "^Accept$", "^Cancel$"])
        reader.press("^Cancel$")
        for page, expected in (("Timers", ["^Reload events$", "time window"]), ("Accounts", ["^Username$", "^Password$"])):
            reader.press(f"^{page}$", last=True)
            walk(report, reader, f"Settings, {page}", expected)
        reader.press("^Support$")
        reader.press("^How bad it is")
        walk(report, reader, "a list of choices", ["^Bug$"])
        report.check(vantor.alive() and not vantor.unexpected_lines(), "nothing unexpected is printed", vantor.lines)


class NewPlayer:
    """Starts the program in an empty home, acts, and counts what was done."""

    def __init__(self, arguments, service, folder):
        self.arguments, self.service, self.folder = arguments, service, folder
        self.home = {"XDG_CONFIG_HOME": tempfile.mkdtemp(prefix="home.", dir=folder)}
        self.actions = 0

    def start(self):
        self.program = desk.Vantor(self.arguments.vantor, self.service.host, self.folder, environment=self.home, as_found=True)
        desk.wait_until(lambda: "icon" in self.program.windows())
        self.reader = Reader(self.program.pid)
        self.sees = self.reader.sees
        return self.program

    def click(self, pattern):
        desk.click(*self.reader.place(pattern))
        self.actions += 1

    def confirms(self, key):
        with desk.clipboard(key):
            desk.press("Control_L", "v")
            desk.press("Return")
        self.actions += 2

    def watches_an_event(self):
        self.click("^Watch .")
        return desk.wait_until(lambda: json.loads(self.program.setting("events.watching") or "[]"))

    def picture(self, name):
        if self.arguments.pictures:
            desk.park_pointer()
            desk.settled_pixels(0, 0, *desk.screen_size())
            desk.picture(self.arguments.pictures / f"{name}.png")


def first_minute_without_a_key(report, arguments, folder):
    with desk.WebService() as service, desk.Game(arguments.game, folder, scene=arguments.scene):
        player = NewPlayer(arguments, service, folder)
        with player.start():
            report.check(player.sees("click on the icon opens Vantor"), "a bubble explains the icon")
            player.picture("icon")
            player.click("^Show or hide Vantor$")
            report.check(player.sees("^An event to watch, to do$") and "Vantor hint" not in player.program.windows(),
                         "the overlay takes the bubble's place")
            player.picture("steps")
            player.click("^An event to watch, to do$")
            report.check(player.sees("^No API key yet$") and player.sees("^Enter the key$"), "the empty list says why")
            player.picture("empty")
            player.click("^Show the times without progress$")
            report.check(player.watches_an_event() and player.actions <= 5, f"an event is watched after {player.actions} actions")
            player.picture("times")
            player.click("^Bestiary$")
            report.check(player.sees("needs your key") and not any(
                "not started" in name for _, name, _ in player.reader.nodes()), "progress says that it needs the key")
            player.picture("bestiary")
            report.check(not any("/v2/account" in line for line in service.lines), "no progress was asked for", service.lines)
            player.click("^Home$")
            player.click("^Your hotkey, to do$")
            player.sees("^Press the keys that you want")
            desk.press("Control_L", "Shift_L", "g")
            report.check(player.sees(r"^Ctrl \+ Shift \+ G$"), "a hotkey is spelled in words")
            player.picture("hotkey")
            player.click("^Accept$")
            player.click("^Home$")
            report.check(desk.wait_until(lambda: not any("to do" in name for _, name, _ in player.reader.nodes())),
                         "with all done the steps are gone")
        with player.start():
            desk.press("Control_L", "Shift_L", "g")
            player.click("^Timers$")
            report.check(player.sees("^Watch .") and "Vantor hint" not in player.program.windows(),
                         "the next start shows the times at once, and explains no more")


def first_minute_with_a_key(report, arguments, folder):
    with desk.WebService() as service, desk.Game(arguments.game, folder, scene=arguments.scene):
        player = NewPlayer(arguments, service, folder)
        with player.start():
            player.click("^Show or hide Vantor$")
            player.click("^Your key, to do$")
            report.check(player.sees("^Insert API Key$") and player.sees("^Permissions needed: account, progression$"),
                         "the step leads to the field and says what the key needs")
            player.picture("key")
            player.confirms(f"  {web_service.VALID_KEY}\n")
            report.check(player.sees(r"^The key is accepted\. \d+ events? (is|are) listed\.$") and
                         player.program.setting("api.key") == web_service.VALID_KEY, "a key with white space around it is taken")
            player.picture("accepted")
            player.click("^Show the events$")
            report.check(player.watches_an_event() and player.actions <= 7, f"an event is watched after {player.actions} actions")

            player.click("^Settings$")
            player.click("^Edit$")
            refusals = (("no key at all", "^This cannot be an API key", "no-key"),
                        (web_service.WITHOUT_PROGRESSION_KEY, "^This key lacks the permission progression", "lacks-permission"))
            for key, said, picture in refusals:
                desk.press("Control_L", "a")
                player.confirms(key)
                report.check(player.sees(said), f"the field says: {said}")
                player.picture(picture)


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--pictures", type=Path, help="keep one of each step of the first minute there")
    parser.add_argument("--scene", default="dark", help="of the stand-in game")
    parser.add_argument("--only", default="", help="the scenarios whose names hold this")
    parser.add_argument("--vantor", required=True, type=Path)
    parser.add_argument("--game", required=True, type=Path)
    arguments = parser.parse_args()
    desk.enter_private_desktop()
    report = desk.Report()
    # One bus for all: the bindings keep to the first that they find.
    with tempfile.TemporaryDirectory(prefix="vantor-accessibility.") as folder, accessibility_bus():
        for scenario in (every_tab_and_popup, first_minute_without_a_key, first_minute_with_a_key):
            if arguments.only not in scenario.__name__:
                continue
            try:
                scenario(report, arguments, folder)
            except (OSError, RuntimeError, KeyError, StopIteration, subprocess.SubprocessError) as fault:
                report.check(False, scenario.__name__, repr(fault))
    print(f"{report.passed} passed, {report.failed} failed")
    return 1 if report.failed else 0


if __name__ == "__main__":
    sys.exit(main())
