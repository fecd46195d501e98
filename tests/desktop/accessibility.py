#!/usr/bin/env python3
"""The whole program over the real accessibility bus. A screen reader walks every tab and popup, led there by the controls' own
actions: each control has a name. A new player's first minute, from an empty home: each step is clicked where the bus says that its
control is. Prints "N passed, M failed" as its last line."""

import argparse
import contextlib
import glob
import json
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
        self.atspi = pyatspi
        self.pid = pid

    def program(self):
        for each in self.atspi.Registry.getDesktop(0):
            if each is not None and each.get_process_id() == self.pid:
                return each
        return None

    def nodes(self):
        """All that is shown, as (path, role, name, node). What goes away meanwhile is left out."""
        found = []

        def walk(node, path):
            try:
                # Where it is scrolled away it is still there for a reader.
                if node is None or not node.getState().contains(self.atspi.STATE_VISIBLE):
                    return
                role, name = node.getRoleName(), node.name
                here = f"{path}/{role}"
                found.append((here, role, name, node))
                if role not in PAGES:
                    for child in node:
                        walk(child, here)
            except Exception as gone:  # noqa: BLE001  the bus's own error class comes only with the bus
                if "GLib" not in type(gone).__name__ and "Lookup" not in type(gone).__name__:
                    raise

        program = self.program()
        for window in program or ():
            walk(window, "")
        return found

    def is_control(self, role, node):
        return role in CONTROLS or (role not in {"frame", "window", "dialog", "filler", *PAGES}
                                    and node.getState().contains(self.atspi.STATE_FOCUSABLE))

    def find(self, pattern):
        """The first control whose name matches, waited for."""
        return desk.wait_until(lambda: next((node for _, role, name, node in self.nodes()
                                             if re.search(pattern, name or "") and self.is_control(role, node)), None))

    def needed(self, pattern, last=False):
        if self.find(pattern) is None:
            raise RuntimeError(f"no control {pattern}: {[(role, name) for _, role, name, _ in self.nodes()]}")
        return [node for _, role, name, node in self.nodes() if re.search(pattern, name or "") and
                self.is_control(role, node)][-1 if last else 0]

    def place(self, pattern):
        """The middle of what is in sight, once it stands still."""
        def extents():
            frame = self.needed(pattern).queryComponent().getExtents(self.atspi.DESKTOP_COORDS)
            return frame.x + frame.width // 2, frame.y + frame.height // 2

        last = extents()

        def same():
            nonlocal last
            before, last = last, extents()
            return before == last

        desk.wait_until(same)
        return last

    def press(self, pattern, last=False):
        node = self.needed(pattern, last)
        actions = node.queryAction()
        names = [actions.getName(place).lower() for place in range(actions.nActions)]
        actions.doAction(next(place for place, name in enumerate(names) if name in {"press", "toggle", "click"}))


def walk(report, reader, where, expected):
    """Nothing there is a control without a name, and these controls are among what is there."""
    missing = [pattern for pattern in expected if not reader.find(pattern)]
    controls = [(path, name) for path, role, name, node in reader.nodes() if reader.is_control(role, node)]
    unnamed = [path for path, name in controls if not (name or "").strip()]
    report.check(not missing, f"{where}: {len(controls)} controls, those that belong there among them",
                 (missing, [name for _, name in controls]))
    report.check(not unnamed, f"{where}: each has a name", unnamed)


TABS = (("Home", ["^Your key, to do$", "^Your hotkey, to do$", "^An event to watch, done$"]),
        ("Timers", ["^Search the timers$", "^Watch .", "^Chat link"]),
        ("Translator", ["."]),
        ("Bestiary", ["^Search the bestiary$"]),
        ("Internet", ["^Navigate back$", "^Navigate forward$", r"^Search\.\.\.$"]),
        ("Support", ["^How bad it is", "^Describe it here$"]),
        ("Settings", ["^Edit$", "^Window toggle: not set$"]))


def every_tab_and_popup(report, arguments, folder):
    catalogue = json.loads((TOP / "resources/catalogue/events.json").read_text())
    names = sorted({event["name"] for section in catalogue for event in section["segments"] if event["name"]})
    settings = {"general.windowToggleEvent": " ", "general.enableEmojiCommands": "true", "timer.withoutProgress": "true",
                "events.watching": json.dumps(names), "timer.watchedWindowDuration": "10"}
    with accessibility_bus(), desk.WebService() as service, desk.Game(arguments.game, folder), \
            desk.Vantor(arguments.vantor, service.host, folder, key="", settings=settings) as vantor:
        desk.wait_until(lambda: {"icon", "watched"} <= set(vantor.windows()))
        reader = Reader(vantor.pid)
        reader.press("^Open the emotes$")
        walk(report, reader, "over the game", ["^Show or hide Vantor$", "^Close the emotes$", "^wave$"])
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
        walk(report, reader, "a list of choices", ["^How bad it is"])
        report.check(vantor.alive() and not vantor.unexpected_lines(), "nothing unexpected is printed", vantor.lines)


class NewPlayer:
    """Starts the program in an empty home, acts, and counts what was done."""

    def __init__(self, arguments, service, folder):
        self.arguments = arguments
        self.environment = {"XDG_CONFIG_HOME": tempfile.mkdtemp(prefix="home.", dir=folder),
                            **{f"VANTOR_{name}_HOST": service.host for name in ("API", "WIKI", "VIDEO", "SEARCH", "FEEDBACK")}}
        self.actions = 0

    def start(self):
        self.program = desk.Program(self.arguments.vantor, environment=self.environment)
        desk.wait_until(lambda: "Vantor icon" in desk.visible_windows(self.program.pid))
        self.reader = Reader(self.program.pid)
        return self.program

    def click(self, pattern):
        desk.click(*self.reader.place(pattern))
        self.actions += 1

    def press(self, *keys):
        desk.press(*keys)
        self.actions += 1

    def sees(self, pattern):
        return desk.wait_until(lambda: any(re.search(pattern, name or "") for _, _, name, _ in self.reader.nodes()))

    def setting(self, key):
        return desk.ask("env", *(f"{name}={value}" for name, value in self.environment.items()), str(self.arguments.vantor), "--get", key)

    def picture(self, name):
        if self.arguments.pictures:
            desk.park_pointer()
            desk.settled_pixels(0, 0, *desk.screen_size())
            desk.picture(self.arguments.pictures / f"{name}.png")


def first_minute_without_a_key(report, arguments, folder):
    with accessibility_bus(), desk.WebService() as service, desk.Game(arguments.game, folder, scene=arguments.scene):
        player = NewPlayer(arguments, service, folder)
        with player.start():
            report.check(player.sees("click on the icon opens Vantor"), "a bubble explains the icon")
            player.picture("1-icon")
            player.click("^Show or hide Vantor$")
            report.check(player.sees("^An event to watch, to do$") and not any(
                "Vantor hint" in name for name in desk.visible_windows(player.program.pid)), "the overlay takes the bubble's place")
            player.picture("2-steps")
            player.click("^An event to watch, to do$")
            report.check(player.sees("^No API key yet$") and player.sees("^Enter the key$"), "the empty list says why")
            player.picture("3-empty")
            player.click("^Show the times without progress$")
            player.sees("^Watch .")
            player.picture("4-times")
            player.click("^Watch .")
            watched = desk.wait_until(lambda: json.loads(player.setting("events.watching") or "[]"))
            report.check(watched and player.actions <= 5, f"an event is watched after {player.actions} actions", watched)
            player.click("^Bestiary$")
            report.check(player.sees("needs your key") and not any(
                "not started" in (name or "") for _, _, name, _ in player.reader.nodes()), "progress says that it needs the key")
            player.picture("5-bestiary")
            report.check(not any("achievements" in line and "account" in line for line in service.lines), "no progress was asked for",
                         service.lines)
        with player.start():
            player.click("^Show or hide Vantor$")
            player.click("^Timers$")
            report.check(player.sees("^Watch ."), "the next start shows the times at once")
            report.check("Vantor hint" not in desk.visible_windows(player.program.pid), "and explains the icon no more")


def first_minute_with_a_key(report, arguments, folder):
    def enter(key, said):
        with desk.clipboard(key):
            player.press("ctrl+a")
            player.press("ctrl+v")
            player.press("Return")
        report.check(player.sees(said), f"the field says: {said}", player.reader.nodes()[-12:])
        return player.actions

    with accessibility_bus(), desk.WebService() as service, desk.Game(arguments.game, folder, scene=arguments.scene):
        player = NewPlayer(arguments, service, folder)
        with player.start():
            player.click("^Show or hide Vantor$")
            player.click("^Your key, to do$")
            report.check(player.sees("^Insert API Key$") and player.sees("^Permissions needed: account, progression$"),
                         "the step leads to the field and says what the key needs")
            player.picture("6-key")
            before = player.actions
            enter("no key at all", "^This cannot be an API key")
            player.picture("7-no-key")
            enter(web_service.REVOKED_KEY, "^Insert API Key$")
            report.check(desk.wait_until(lambda: player.reader.needed("^Insert API Key$").queryText().getText(0, -1)
                                         == "Invalid API key"), "a refused key is an invalid one")
            enter(web_service.WITHOUT_PROGRESSION_KEY, "^This key lacks the permission progression")
            player.picture("8-lacks-permission")
            player.actions = before
            # What is pasted takes the place of the selected text, as it does in a field that is still empty.
            enter(f"  {web_service.VALID_KEY}\n", r"^The key is accepted\. \d+ events? (is|are) listed\.$")
            player.actions -= 1
            report.check(player.setting("api.key") == web_service.VALID_KEY, "without the white space around it")
            player.picture("9-accepted")
            player.click("^Show the events$")
            player.click("^Watch .")
            watched = desk.wait_until(lambda: json.loads(player.setting("events.watching") or "[]"))
            report.check(watched and player.actions <= 7, f"an event is watched after {player.actions} actions", watched)


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--pictures", type=Path, help="keep one of each step there")
    parser.add_argument("--only", default="", help="the scenarios whose names hold this")
    parser.add_argument("--scene", default="dark", help="of the stand-in game")
    parser.add_argument("--vantor", required=True, type=Path)
    parser.add_argument("--game", required=True, type=Path)
    arguments = parser.parse_args()
    desk.enter_private_desktop()
    report = desk.Report()
    with tempfile.TemporaryDirectory(prefix="vantor-accessibility.") as folder:
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
