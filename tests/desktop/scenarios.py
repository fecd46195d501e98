#!/usr/bin/env python3
"""Black-box runs of the whole program: real X server, window manager, compositor, bus and keyring, the stand-in game and the
stand-in web service. Prints "N passed, M failed" as its last line."""

import argparse
import datetime
import json
import os
import re
import subprocess
import sys
import tempfile
import time
from pathlib import Path

TOP = Path(__file__).resolve().parents[2]
sys.dont_write_bytecode = True
sys.path.insert(0, str(TOP / "demo"))
import desk  # noqa: E402
import web_service  # noqa: E402

NO_DATA = r"^No data for Array<AchievementCompletition>$"
ERROR_FILLING = r"^Error filling Array<AchievementCompletition>: "
FAKETIME = ":".join(map(str, Path("/usr/lib").glob("*/faketime")))
DEAD_HOST = "http://127.0.0.1:9"  # the discard port: nobody listens
PASTED = "The quick [&BFAEAAA=] fox: <jumps> over_the \"lazy\" dog; #1 @ 50%! " + "".join(map(chr, range(33, 127)))


def opens_and_closes(game, vantor):
    """The hotkey opens the overlay and Escape closes it, the camera key replayed once each."""
    before = game.presses(desk.CAMERA_KEY)
    desk.press(*desk.HOTKEY)
    opened = desk.wait_until(vantor.overlay_shown) and desk.wait_until(
        lambda: game.presses(desk.CAMERA_KEY) == before + 1)
    desk.press("Escape")
    closed = desk.wait_until(lambda: not vantor.overlay_shown()) and desk.wait_until(
        lambda: game.presses(desk.CAMERA_KEY) == before + 2)
    return opened and closed and desk.wait_until(game.keys_are_up)


def started(vantor):
    return desk.wait_until(lambda: "icon" in vantor.windows())


def player_keys(report, arguments, folder):
    with desk.WebService() as service, desk.Game(arguments.game, folder) as game, \
            desk.Vantor(arguments.vantor, service.host, folder, settings=desk.every_event()) as vantor:
        report.check(started(vantor), "start: the icon floats over the game", vantor.lines)
        report.check(desk.wait_until(lambda: "watched" in vantor.windows()) and game.has_focus(),
                     "start: the watched list is there, the game keeps the focus", vantor.windows())
        for round_ in (1, 2, 3):
            report.check(opens_and_closes(game, vantor), f"hotkey and Escape, round {round_}", game.record()[-12:])
        before = game.presses(desk.CAMERA_KEY)
        desk.press("Escape")
        desk.press("F9")
        desk.wait_until(lambda: game.presses("F9") == 1)
        report.check(game.presses(desk.CAMERA_KEY) == before, "Escape with the overlay closed replays nothing")

        # The focus is ours after a click; the camera key must reach the game all the same.
        desk.press(*desk.HOTKEY)
        desk.wait_until(vantor.overlay_shown)
        x, y, width, height = vantor.windows()["main"]
        desk.click(x + 220, y + 40)
        report.check(desk.wait_until(lambda: not game.has_focus()), "a click into the overlay takes the focus")
        # A Space meant for the game presses nothing here: were the overlay closed, the next click would give the game the focus.
        desk.press("space")
        desk.click(x + width // 2, y + height // 2)
        desk.settled_pixels(x, y, width, height)
        report.check(vantor.overlay_shown() and not game.has_focus(), "a Space after it presses no control")
        before = game.presses(desk.CAMERA_KEY)
        desk.press(*desk.HOTKEY)
        report.check(desk.wait_until(lambda: not vantor.overlay_shown()), "the hotkey in our own window toggles once",
                     vantor.windows())
        report.check(desk.wait_until(lambda: game.presses(desk.CAMERA_KEY) == before + 1),
                     "the camera key reaches the game after the focus came back", game.record()[-12:])
        report.check(game.has_focus(), "the game has the focus again")

        with desk.clipboard(PASTED):
            start = len(game.record())
            desk.press(*desk.PASTE_KEYS)
            desk.wait_until(lambda: len(game.typed(start)) >= len(PASTED))
            report.check(game.typed(start) == PASTED, "every printable character is pasted, and nothing before it",
                         repr(game.typed(start)))
        report.check(desk.wait_until(game.keys_are_up), "no key is left down")
        report.check(not vantor.unexpected_lines(), "nothing unexpected is printed", vantor.lines)


def held_pointer(report, arguments, folder):
    """A full-screen game that keeps every click while it has the focus: the open overlay has it instead."""
    with desk.WebService() as service, desk.Game(arguments.game, folder, holds_pointer=True) as game, \
            desk.Vantor(arguments.vantor, service.host, folder, settings={"general.enableChatLinkReturnKey": "true"}) as vantor:
        started(vantor)
        x, y, *_ = vantor.windows()["icon"]
        desk.click(x + 16, y + 16)
        desk.press("F9")
        report.check(desk.wait_until(lambda: game.presses("F9") == 1) and not vantor.overlay_shown(), "the game keeps the clicks")
        start = len(game.record())

        def told():
            """The game's own account of the focus and of the camera key, which no capital in a chat link is."""
            return [event.get("key", "gained" if event.get("in") else "lost") for event in game.record(start)
                    if event["event"] == "focus" or event.get("key") == desk.CAMERA_KEY and event["down"] and event["text"] == "h"]

        desk.press(*desk.HOTKEY)
        report.check(desk.wait_until(lambda: vantor.overlay_shown() and told() == ["H", "lost"]),
                     "the open overlay has the focus, after the camera key", told())
        x, y, *_ = vantor.overlay()
        title = (x + 40, y + 10, 300, 40)
        home = desk.settled_pixels(*title)
        desk.click(x + TIMERS_TAB[0], y + TIMERS_TAB[1])
        report.check(desk.wait_until(lambda: desk.pixels(*title) != home), "a click opens a tab", game.record(start))
        desk.settled_pixels(x + 40, y + 170, 400, 200)
        typing = len(game.record())
        with desk.held("Shift_L"):
            desk.click(x + WAYPOINT, y + FIRST_ROW)
            typed = typed_since(game, typing, "\r")
        report.check(re.fullmatch(rf"\r{CHAT_LINK}\r", typed) and desk.wait_until(lambda: told()[2:] == ["gained", "lost"]),
                     "after a chat link has been typed into the game, the overlay has the focus again", (typed, told()))
        desk.press("Escape")
        report.check(desk.wait_until(lambda: told()[4:] == ["gained", "H"]), "the closing's camera key comes after the focus", told())
        report.check(not vantor.unexpected_lines(), "nothing unexpected is printed", vantor.lines)


def opens_once(report, arguments, folder):
    """What an opening maps stays until the closing, and nothing flashes when the page comes. What holds nothing is not there."""
    with desk.WebService() as service, desk.Game(arguments.game, folder, scene="bright") as game, \
            desk.Vantor(arguments.vantor, service.host, folder, settings={"events.watching": "[]"}) as vantor:
        started(vantor)
        report.check(set(vantor.windows()) == {"icon"}, "with nothing watched and no emotes only the icon is there", vantor.windows())
        middle = [length // 2 for length in desk.screen_size()]
        for when in ("first", "second"):
            start = len(game.record())
            desk.click(*middle)
            report.check(desk.wait_until(lambda: any(event["event"] == "click" for event in game.record(start))),
                         f"{when} opening: before it a click into the middle is the game's", vantor.windows())
            with desk.Program("xev", "-root", "-event", "substructure", "-event", "property") as server:
                desk.wait_until(lambda: server.lines or desk.ask("xprop", "-root", "-f", "ASKED", "8s", "-set", "ASKED", "yes"))
                desk.press(*desk.HOTKEY)
                x, y, *_ = vantor.overlay()
                empty, title = (x + 50, y + 300, 100, 100), (x + 210, y + 150, 250, 60)
                dark = []

                def has_title():
                    dark.append(max(desk.pixels(*empty)) < 100)
                    return max(desk.pixels(*title)) > 200

                report.check(desk.wait_until(has_title) and all(dark[dark.index(True):]), f"{when} opening: the page comes without a flash",
                             dark)
                notices = re.findall(r"(Map|Unmap|Destroy)Notify event.*\n.* window (\w+)", "\n".join(server.lines))
            mapped = [window for kind, window in notices if kind == "Map"]
            gone = [window for kind, window in notices if kind != "Map" and window in mapped]
            report.check(len(mapped) == 1 and not gone, f"{when} opening: one map, and it stays", notices)
            desk.press("Escape")
            desk.wait_until(lambda: set(vantor.windows()) == {"icon"})


def hotkeys(report, arguments, folder):
    """Whichever key goes up first, with Caps Lock on, held for long; and the popup that takes a new one."""
    def keys(*steps):
        desk.ask("xdotool", *(word for step in steps for word in step.split()))

    down = [f"keydown {key}" for key in ("Control_L", "Shift_L", "t")]
    with desk.WebService() as service, desk.Game(arguments.game, folder) as game, \
            desk.Vantor(arguments.vantor, service.host, folder) as vantor:
        started(vantor)
        for what, steps in (("with its modifiers let go first", [*down, "keyup Control_L", "keyup Shift_L", "keyup t"]),
                            ("with Caps Lock on", ["key Caps_Lock", *down, "keyup t", "keyup Shift_L", "keyup Control_L", "key Caps_Lock"])):
            keys(*steps)
            report.check(desk.wait_until(vantor.overlay_shown) and game.has_focus(), f"the hotkey opens {what}", vantor.windows())
            desk.press("Escape")
            desk.wait_until(lambda: not vantor.overlay_shown())
        keys(*down, "sleep 0.6", "keyup t", "keyup Shift_L", "keyup Control_L")
        report.check(desk.wait_until(lambda: vantor.overlay_shown() and not game.has_focus()),
                     "held for half a second it gives the overlay the keyboard", desk.active_window())
        x, y, *_ = vantor.overlay()
        desk.press("Escape")
        desk.wait_until(lambda: game.has_focus() and not vantor.overlay_shown())

        desk.press(*desk.HOTKEY)
        desk.wait_until(vantor.overlay_shown)
        desk.click(x + SETTINGS_TAB[0], y + SETTINGS_TAB[1])
        desk.settled_pixels(x + 160, y + 140, 400, 200)

        def popup():
            return "Vantor hotkey" in vantor.windows()

        def opens_popup():
            desk.click(x + HOTKEY_FIELD[0], y + HOTKEY_FIELD[1])
            return desk.wait_until(lambda: popup() and desk.ask("xdotool", "getwindowfocus", "getwindowname") == "Vantor hotkey")

        opened = opens_popup()
        keys("key F7", "key Escape")
        report.check(opened and desk.wait_until(lambda: not popup()) and vantor.overlay_shown(),
                     "Escape in the popup cancels it and leaves the overlay", vantor.windows())
        opened = opens_popup()
        desk.click(x + 860, y + 48)
        report.check(opened and desk.wait_until(lambda: not vantor.overlay_shown() and not popup()),
                     "the popup goes with the overlay", vantor.windows())
        keys("key F7")
        report.check(vantor.setting("general.windowToggleEvent") == "\u2303 + \u21e7 + T", "and what it took is not stored",
                     vantor.setting("general.windowToggleEvent"))


def second_start(report, arguments, folder):
    with desk.WebService() as service, desk.Game(arguments.game, folder) as game, \
            desk.Vantor(arguments.vantor, service.host, folder) as vantor:
        started(vantor)
        second = desk.Program(arguments.vantor, environment=vantor.environment)
        desk.wait_until(lambda: not second.alive())
        report.check(second.end() == 0 and not second.lines, "a second start ends with 0", second.lines)
        report.check(desk.wait_until(vantor.overlay_shown), "a second start opens the overlay", vantor.windows())
        report.check(game.has_focus(), "a second start leaves the focus with the game", desk.active_window())
        vantor.process.kill()
        vantor.process.wait()
        with desk.Vantor(arguments.vantor, service.host, folder) as next_one:
            report.check(started(next_one), "after a killed one, a new start works", next_one.lines)


def faults(report, arguments, folder):
    cases = [
        ("service absent", None, {}, NO_DATA),
        ("connection closed", "close", {}, NO_DATA),
        ("empty body", "empty", {}, NO_DATA),
        ("garbage", "garbage", {}, ERROR_FILLING),
        ("another shape", "shape", {}, ERROR_FILLING),
        ("status 500", "status500", {}, ERROR_FILLING),
        ("revoked key", "none", {"key": web_service.REVOKED_KEY}, ERROR_FILLING),
        ("key without progression", "none", {"key": web_service.WITHOUT_PROGRESSION_KEY}, ERROR_FILLING),
    ]
    with desk.Game(arguments.game, folder) as game:
        for name, fault, options, expected in cases:
            with desk.WebService(fault or "none") as service, \
                    desk.Vantor(arguments.vantor, service.host if fault else DEAD_HOST, folder, **options) as vantor:
                report.check(vantor.line(expected), f"{name}: the line is printed", vantor.lines)
                report.check(started(vantor) and opens_and_closes(game, vantor), f"{name}: the program goes on",
                             vantor.lines)
                report.check(not vantor.unexpected_lines(expected), f"{name}: nothing else is printed", vantor.lines)
                key = options.get("key", web_service.VALID_KEY)
                report.check(not any(key in line for line in vantor.lines), f"{name}: the key is not printed")
        with desk.WebService("slow", delay=4.0) as service, \
                desk.Vantor(arguments.vantor, service.host, folder) as vantor:
            report.check(started(vantor) and opens_and_closes(game, vantor), "slow service: the overlay does not wait")
            waiting = not service.line(r"^GET /v2/account/achievements", patience=0)
            report.check(waiting, "slow service: the answer was still outstanding")
            report.check(service.line(r"^GET /v2/account/achievements 200"), "slow service: the answer arrives",
                         service.lines)
            report.check(vantor.alive() and not vantor.unexpected_lines(), "slow service: nothing is printed",
                         vantor.lines)
        with desk.WebService("hang") as service, desk.Vantor(arguments.vantor, service.host, folder) as vantor:
            report.check(service.line(r"hang"), "hanging service: it was asked", service.lines)
            report.check(started(vantor) and opens_and_closes(game, vantor), "hanging service: the overlay does not wait")
            report.check(vantor.alive() and not vantor.unexpected_lines(), "hanging service: nothing is printed",
                         vantor.lines)


# Inside the main window, from its top left corner.
TIMERS_TAB = (180, 87)
SETTINGS_TAB, HOTKEY_FIELD = (765, 87), (460, 224)
FIRST_ROW = 205
ROW = 58
WAYPOINT, WATCH = 775, 850
CHAT_LINK = r"\[&[A-Za-z0-9+/]+=*\]"


def typed_since(game, start, ending):
    desk.wait_until(lambda: game.typed(start).endswith(ending) and game.typed(start) != ending)
    return game.typed(start)


def chat_links_and_watching(report, arguments, folder):
    settings = {"general.enableChatLinkReturnKey": "true", "timer.watchedWindowDuration": "10"}
    with desk.WebService() as service, desk.Game(arguments.game, folder) as game, \
            desk.Vantor(arguments.vantor, service.host, folder, settings=settings) as vantor:
        started(vantor)
        desk.press(*desk.HOTKEY)
        report.check(service.line(r"^page /wiki/Game_updates"), "the first opening loads the game's updates", service.lines)
        x, y, *_ = vantor.overlay()
        desk.click(x + TIMERS_TAB[0], y + TIMERS_TAB[1])
        desk.settled_pixels(x + 40, y + 170, 400, 200)
        start = len(game.record())
        with desk.held("Shift_L"):
            desk.click(x + WAYPOINT, y + FIRST_ROW)
            typed = typed_since(game, start, "\r")
        report.check(re.fullmatch(rf"\r{CHAT_LINK}\r", typed), "a click with Shift held types the chat link", repr(typed))
        report.check(desk.wait_until(game.has_focus) and desk.wait_until(game.keys_are_up), "the game has the keyboard again")
        desk.click(x + WAYPOINT, y + FIRST_ROW)
        copied = desk.wait_until(lambda: re.fullmatch(rf"\n{CHAT_LINK}\n", desk.clipboard_text()))
        report.check(copied, "a plain click copies it", repr(desk.clipboard_text()))

        # The watched list follows the settings file, so that no clock has to be waited for.
        desk.press("Escape")
        desk.wait_until(lambda: not vantor.overlay_shown())
        desk.store(arguments.vantor, vantor.environment, desk.every_event(), web_service.VALID_KEY)
        shown = desk.wait_until(lambda: vantor.windows().get("watched"))
        # At some hours there are more rows than find room below the corner.
        width, height = desk.screen_size()
        report.check(shown and shown[0] == (width - 250) // 2 and shown[1] in ((height - 60) // 2, height - shown[3]) and shown[1] >= 0,
                     "the watched list grows from its corner and stays on the screen", shown)
        report.check(game.has_focus(), "the watched list takes no focus", desk.active_window())
        report.check(not vantor.unexpected_lines(), "nothing unexpected is printed", vantor.lines)


def moved_clock(report, arguments, folder):
    """A watched event enters the floating list at its minute and leaves it at its minute, past local midnight in a zone with a
    half hour. The program's clock is moved to some seconds before each of the two."""
    clock = Path(folder) / "clock"
    midnight = datetime.datetime(2026, 11, 23)

    def moved(moment):
        clock.write_text(f"@{moment:%Y-%m-%d %H:%M:%S}\n")
        return {"LD_PRELOAD": "libfaketimeMT.so.1", "LD_LIBRARY_PATH": FAKETIME, "FAKETIME_TIMESTAMP_FILE": str(clock),
                "FAKETIME_NO_CACHE": "1", "FAKETIME_DONT_FAKE_MONOTONIC": "1", "TZ": "Asia/Kolkata"}

    timeline = json.loads(subprocess.run([arguments.vantor, "--timeline", "--json"], env={**os.environ, **moved(midnight)},
                                         capture_output=True, text=True, timeout=30, check=True).stdout)
    # In this zone the day's frame begins at 05:30, so that what comes after midnight has minutes of 1440 and more.
    event = next(row for row in timeline if row["startMinute"] == 1470 and row["startMinute"] > row["gatheringMinute"])
    settings = {"events.watching": json.dumps([event["name"]]), "timer.watchedWindowDuration": "10"}
    with desk.WebService() as service, desk.Game(arguments.game, folder) as game:
        desk.wait_until(game.has_focus)
        for what, minute, entering in (("enters", event["gatheringMinute"] - 10, True), ("leaves", event["startMinute"] + 1, False)):
            early = datetime.timedelta(seconds=10)
            extra = moved(midnight + datetime.timedelta(minutes=minute % 1440) - early)
            before = {name: os.environ.get(name) for name in extra}
            os.environ.update(extra)
            vantor = desk.Vantor(arguments.vantor, service.host, folder, settings=settings)
            begin = time.monotonic()
            for name, value in before.items():
                os.environ.pop(name) if value is None else os.environ.update({name: value})
            with vantor:
                started(vantor)
                there = lambda: "watched" in vantor.windows()
                if entering:
                    report.check(not there(), f"no watched event is there before it {what}")
                    changed = desk.wait_until(there, patience=20)
                else:
                    report.check(desk.wait_until(there), f"a watched event is there before it {what}")
                    changed = desk.wait_until(lambda: not there(), patience=20)
                seconds = time.monotonic() - begin
                report.check(changed and 8.5 < seconds < 30, f"a watched event {what} at its minute", (event, seconds))


def emotes(report, arguments, folder):
    with desk.WebService() as service, desk.Game(arguments.game, folder) as game, \
            desk.Vantor(arguments.vantor, service.host, folder) as vantor:
        started(vantor)
        desk.store(arguments.vantor, vantor.environment, {"general.enableEmojiCommands": "true"}, web_service.VALID_KEY)
        x, y, *_ = desk.wait_until(lambda: vantor.windows().get("emoji"))

        def use(place):
            desk.click(x + 15, y + 15)
            desk.wait_until(lambda: vantor.windows()["emoji"][2] > 100)
            start = len(game.record())
            desk.click(x + 15 + 32 * (place + 1), y + 15)
            typed = typed_since(game, start, "\r")
            return typed, desk.wait_until(lambda: vantor.windows()["emoji"][2] < 100) and game.has_focus()

        desk.click(x + 15, y + 15)
        desk.wait_until(lambda: vantor.windows()["emoji"][2] > 100)
        before = set(vantor.windows())
        desk.point_at(x + 15 + 32 * 7, y + 15)
        report.check(desk.wait_until(lambda: set(vantor.windows()) - before) and game.has_focus(),
                     "a tooltip comes while the game has the focus", vantor.windows())
        desk.click(x + 15, y + 15)
        desk.wait_until(lambda: vantor.windows()["emoji"][2] < 100)
        used = use(26)
        report.check(used == ("\r/wave @\r", True), "an emote is typed between two Returns, and the row closes", used)
        report.check(use(0) == ("\r/wave @\r", True), "the emote used last is the first one")
        report.check(use(20)[0] == "\r/sit\r" and use(1)[0] == "\r/wave @\r", "the order follows each use")
        vantor.end()
        with desk.Program(arguments.vantor, environment=vantor.environment) as again:
            vantor.pid = again.pid
            desk.wait_until(lambda: "emoji" in vantor.windows())
            report.check(use(0)[0] == "\r/wave @\r", "the order is kept over a restart")


def logins(report, arguments, folder):
    """A login in the real keyring, filled by command; its password goes nowhere else."""
    canary = "c4nary-Pa55 & <word>"
    with desk.WebService() as service, desk.Game(arguments.game, folder) as game:
        subprocess.run(["secret-tool", "store", "--label=Vantor", "class", "generic-password", "account",
                        "orvendel.Vantor.accounts"], input=json.dumps({"player@example.org": canary}), text=True, check=True,
                       timeout=desk.PATIENCE)
        with desk.Vantor(arguments.vantor, service.host, folder) as vantor:
            started(vantor)
            environment = {**os.environ, **vantor.environment}

            def ask(*words):
                return subprocess.run([arguments.vantor, *words], env=environment, capture_output=True, text=True, timeout=30)

            start = len(game.record())
            filled = desk.wait_until(lambda: ask("--fill", "player@example.org").returncode == 0)
            expected = f"player@example.org\t{canary}"
            desk.wait_until(lambda: game.typed(start) == expected)
            report.check(filled and game.typed(start) == expected, "--fill types name, tab and password", game.typed(start))
            unknown = ask("--fill", "nobody")
            report.check(unknown.returncode == 1 and unknown.stderr.count("\n") == 1, "--fill of an unknown name is one line",
                         unknown.stderr)
            files = [path for path in Path(vantor.environment["XDG_CONFIG_HOME"]).rglob("*") if path.is_file()]
            process = Path(f"/proc/{vantor.pid}")
            places = [path.read_bytes() for path in (*files, process / "cmdline", process / "environ")]
            places += ["\n".join(vantor.lines).encode(), "\n".join(service.lines).encode()]
            report.check(files and not any(canary.encode() in place for place in places), "the password is nowhere else")
            report.check(ask("--toggle-app").returncode == 0 and desk.wait_until(lambda: not vantor.windows()),
                         "--toggle-app takes Vantor off the application in front", vantor.windows())
            report.check(ask("--quit").returncode == 0 and desk.wait_until(lambda: not vantor.alive()), "--quit ends it")
            report.check(ask("--quit").returncode == 1, "--quit without a running one says so")


def command_line(report, arguments, folder):
    doctor = subprocess.run([arguments.vantor, "--doctor"], capture_output=True, text=True, timeout=desk.PATIENCE)
    report.check(doctor.returncode == 0 and all(name in doctor.stdout for name in ("display", "raw keys", "keyring")),
                 "--doctor names the capabilities", doctor.stdout + doctor.stderr)
    with desk.Game(arguments.game, folder) as game:
        desk.wait_until(game.has_focus)
        text = "Typed [once] & for All"
        typing = subprocess.run([arguments.vantor, "--type", "-"], input=text, text=True, capture_output=True, timeout=30)
        report.check(typing.returncode == 0 and desk.wait_until(lambda: game.typed() == text), "--type - types once",
                     (typing.stderr, game.typed()))
        start = len(game.record())
        partly = subprocess.run([arguments.vantor, "--type", "a☃b🙂"], text=True, capture_output=True, timeout=30)
        report.check(partly.returncode == 0 and partly.stderr.count("\n") == 1 and " 2 " in partly.stderr and
                     "☃" not in partly.stderr and desk.wait_until(lambda: game.typed(start) == "ab"),
                     "--type says how many characters have no key", (partly.stderr, game.typed(start)))
        pressing = subprocess.run([arguments.vantor, "--press", "⌃ + ⇧ + K"], capture_output=True, text=True, timeout=30)
        pressed = desk.wait_until(lambda: game.presses("K") == 1 and game.keys_are_up())
        report.check(pressing.returncode == 0 and pressed, "--press presses a hotkey", (pressing.stderr, game.record()))


def two_monitors(report, arguments, folder):
    """Everything comes on the game's monitor, goes over with it, and has a place on each. X + 680 is the right one."""
    half = desk.screen_size()[0] // 2
    height = desk.screen_size()[1]
    with desk.monitors(LEFT=(0, 0, half, height), RIGHT=(half, 0, half, height)) as unplug, desk.WebService() as service, \
            desk.Game(arguments.game, folder, size="600x400") as game:
        def play_on(x):
            subprocess.run(["xdotool", "windowmove", str(game.window), str(x + 20), "200"], check=True, timeout=desk.PATIENCE)

        def stands(vantor, **corners):
            return desk.wait_until(lambda: all(vantor.windows().get(role, ())[:2] == corner for role, corner in corners.items()))

        play_on(half)
        settings = {**desk.every_event(), "general.enableEmojiCommands": "true"}
        with desk.Vantor(arguments.vantor, service.host, folder, settings=settings) as vantor:
            report.check(stands(vantor, icon=(half, 0), emoji=(half + 36, 0)) and
                         desk.wait_until(lambda: vantor.windows().get("watched", (0,))[0] == half + (half - 250) // 2),
                         "icon, emotes and list come on the game's monitor", vantor.windows())
            desk.press(*desk.HOTKEY)
            report.check(desk.wait_until(lambda: vantor.windows().get("main", (0,))[0] == half), "so does the overlay", vantor.windows())
            x, y, *_ = vantor.overlay()
            desk.drag(x + 400, y + 40, x + 330, y + 90)
            report.check(stands(vantor, main=(half - 70, y + 50)), "it can be dragged over the edge between them", vantor.windows())
            play_on(0)
            report.check(stands(vantor, icon=(0, 0), main=(0, y + 50)), "they go over with the game while they are shown", vantor.windows())
            desk.drag(400, y + 90, 400, y + 60)
            report.check(stands(vantor, main=(0, y + 20)), "the overlay has its place there", vantor.windows())
            play_on(half)
            report.check(stands(vantor, main=(half - 70, y + 50)), "and its own on the other", vantor.windows())
            unplug("RIGHT")
            report.check(stands(vantor, icon=(0, 0), main=(0, y + 20)), "they come back when that monitor goes", vantor.windows())
            report.check(not vantor.unexpected_lines(), "nothing unexpected is printed", vantor.lines)


def without_compositor(report, arguments, folder):
    """Where nothing is blended the game is seen beside the torn edge. This ends the compositor."""
    width, height = desk.screen_size()
    corner = ((width - 920) // 2, (height - 600) // 2, 5, 5)
    middle = (width // 2, height // 2, 50, 50)
    with desk.WebService() as service, desk.Game(arguments.game, folder):
        scene = {part: desk.settled_pixels(*part) for part in (corner, middle)}
        with desk.Vantor(arguments.vantor, service.host, folder) as vantor:
            started(vantor)
            compositor = desk.ask("xdotool", "search", "--name", "^picom$").split()
            subprocess.run(["xdotool", "windowkill", compositor[-1]], check=True, timeout=desk.PATIENCE)
            desk.press(*desk.HOTKEY)
            shown = desk.wait_until(lambda: desk.pixels(*middle) != scene[middle])
            report.check(shown and desk.settled_pixels(*corner) == scene[corner], "the overlay has no black frame", vantor.windows())


def asker(arguments, vantor):
    """Runs a command to the Vantor that runs; what it printed and its status."""
    def ask(*words):
        return subprocess.run([arguments.vantor, *words], env={**os.environ, **vantor.environment}, capture_output=True, text=True,
                              timeout=30)
    return ask


def mid_text(report, arguments, folder):
    """A text that takes a minute is ended by what a player does, goes nowhere else, and holds up nothing meanwhile."""
    # Without Shift: the player's is on the same device here, and no key of one device goes down twice.
    long = "meet at the gate, all of you; " * 100
    password = "s3cret-" * 20
    subprocess.run(["secret-tool", "store", "--label=Vantor", "class", "generic-password", "account", "orvendel.Vantor.accounts"],
                   input=json.dumps({"long": password}), text=True, check=True, timeout=desk.PATIENCE)
    with desk.WebService() as service, desk.Game(arguments.game, folder) as game, desk.clipboard(long), \
            desk.Vantor(arguments.vantor, service.host, folder) as vantor:
        ask = asker(arguments, vantor)
        ended = []

        def new_line():
            """The next of Vantor's lines about a text that was not typed whole."""
            told = [line for line in vantor.lines if line.startswith("vantor: typing ended")]
            if len(told) == len(ended):
                return None
            ended.append(told[len(ended)])
            return ended[-1]

        def typing(start, text, beginning=20):
            return desk.wait_until(lambda: len(game.typed(start)) >= beginning and text.startswith(game.typed(start)[:beginning]))

        def ends(act, text, what, begin=lambda: desk.press(*desk.PASTE_KEYS), reason="a key|stopped", are_up=game.keys_are_up):
            start = len(game.record())
            begin()
            under_way = typing(start, text)
            act()
            line = desk.wait_until(new_line) or ""
            found = re.fullmatch(rf"vantor: typing ended after (\d+) of {len(text)} characters: .*({reason}).*", line)
            count = int(found.group(1)) if found else 0
            desk.wait_until(lambda: len(game.typed(start)) >= count)
            typed = game.typed(start)
            # What ends it may itself be a key that the game gets, before the stroke that was under way.
            return report.check(under_way and 20 <= count < len(text) and typed.startswith(text[:count - 2]) and
                                len(typed) <= count + 2 and desk.wait_until(are_up),
                                f"{what} ends a text, nothing is down, and a line says how far it came", (line, count, typed[-40:]))

        started(vantor)
        desk.wait_until(game.has_focus)
        ends(lambda: desk.press("Escape"), long, "Escape")
        ends(lambda: desk.press(*desk.HOTKEY), long, "the hotkey")
        report.check(desk.wait_until(vantor.overlay_shown) and desk.wait_until(lambda: game.typed().endswith("h")),
                     "the hotkey opens the overlay as well, camera key included", vantor.windows())
        desk.press("Escape")
        desk.wait_until(lambda: not vantor.overlay_shown())
        ends(lambda: desk.press("x"), long, "a key of the player's")
        ends(lambda: ask("--stop"), long, "--stop")
        ends(lambda: ask("--stop"), f"long\t{password}", "--stop", lambda: ask("--fill", "long"))
        report.check(not any("s3cret" in line for line in vantor.lines), "the lines hold nothing of a login", vantor.lines)

        others = []
        # The end of the last key may be the other window's.
        ends(lambda: others.append(desk.Game(arguments.game, folder, window_class="notes", size="300x200")), long,
             "another window in front", reason="another window", are_up=lambda: True)
        astray = others[0].typed()
        others[0].end()
        report.check(len(astray) <= 1 and desk.wait_until(game.has_focus), "nothing goes there but the key that was under way", astray)

        # The program goes on while it types.
        start = len(game.record())
        desk.press(*desk.PASTE_KEYS)
        typing(start, long)
        begin = time.monotonic()
        shown = ask("--show").returncode == 0 and desk.wait_until(vantor.overlay_shown)
        x, y, *_ = vantor.overlay()
        before = desk.settled_pixels(x + 200, y + 60, 300, 60)
        report.check(shown and len(game.typed(start)) < 300, "a command opens the overlay in mid-text", time.monotonic() - begin)
        line = desk.wait_until(lambda: vantor.windows().get("Vantor typing"))
        report.check(line and max(before) > 60, "what takes long shows a line over the game", vantor.windows())
        length = len(game.typed(start))
        report.check(desk.wait_until(lambda: len(game.typed(start)) > length + 20) and game.has_focus(), "and the text goes on")
        ask("--hide")
        desk.wait_until(new_line)
        report.check(desk.wait_until(lambda: "Vantor typing" not in vantor.windows()), "the line goes with the text", vantor.windows())
        desk.wait_until(lambda: not vantor.overlay_shown())

        # Three in a queue, a stop in the second.
        start = len(game.record())
        ask("--emote", "/cry"), ask("--paste"), ask("--emote", "/sit")
        desk.wait_until(lambda: len(game.typed(start)) > 40)
        ask("--stop")
        desk.wait_until(new_line)
        ask("--emote", "/bow @")
        whole = desk.wait_until(lambda: game.typed(start).endswith("\r/bow @\r"))
        typed = game.typed(start)
        report.check(whole and typed.startswith("\r/cry\r" + long[:20]) and "/sit" not in typed,
                     "a stop ends the second of three and drops the third", typed)

        start = len(game.record())
        desk.press(*desk.PASTE_KEYS)
        typing(start, long)
        report.check(ask("--quit").returncode == 0 and desk.wait_until(lambda: not vantor.alive()) and desk.wait_until(game.keys_are_up),
                     "--quit in mid-text leaves nothing down", game.record()[-4:])


def commands(report, arguments, folder):
    """What a desktop without hotkeys binds to its own."""
    with desk.WebService() as service, desk.Game(arguments.game, folder) as game, desk.clipboard("one\r\ntwo\x01\t3"), \
            desk.Vantor(arguments.vantor, service.host, folder) as vantor:
        ask = asker(arguments, vantor)
        started(vantor)
        desk.wait_until(game.has_focus)

        def camera(count, shown):
            return desk.wait_until(lambda: game.presses(desk.CAMERA_KEY) == count and vantor.overlay_shown() == shown)

        for words, count, shown in (("--toggle", 1, True), ("--toggle", 2, False), ("--hide", 2, False), ("--show", 2, True),
                                    ("--show", 2, True), ("--hide", 3, False)):
            report.check(ask(words).returncode == 0 and camera(count, shown), f"{words}: the overlay and the camera key follow",
                         (vantor.windows(), game.presses(desk.CAMERA_KEY)))
        start = len(game.record())
        pasted = ask("--paste").returncode == 0 and desk.wait_until(lambda: game.typed(start) == "one\rtwo\t3")
        report.check(pasted, "--paste types the clipboard, each line end once, no control characters", repr(game.typed(start)))
        start = len(game.record())
        for name in ("👋", "/sit"):
            ask("--emote", name)
        report.check(desk.wait_until(lambda: game.typed(start) == "\r/wave @\r\r/sit\r"), "--emote takes an emoji or a command",
                     game.typed(start))
        ask("--show")
        desk.wait_until(vantor.overlay_shown)
        refused = [ask("--paste"), ask("--emote", "/jump")]
        report.check(all(each.returncode == 1 and each.stderr.count("\n") == 1 for each in refused),
                     "--paste over the open overlay and an unknown emote are refused, one line each", refused)
        report.check(not vantor.unexpected_lines(), "nothing unexpected is printed", vantor.lines)


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--vantor", required=True, type=Path)
    parser.add_argument("--game", required=True, type=Path)
    arguments = parser.parse_args()
    desk.enter_private_desktop()
    report = desk.Report()
    with tempfile.TemporaryDirectory(prefix="vantor-scenarios.") as folder:
        for scenario in (player_keys, held_pointer, opens_once, hotkeys, second_start, chat_links_and_watching, moved_clock, emotes, logins, faults,
                         command_line, mid_text, commands, two_monitors, without_compositor):
            try:
                scenario(report, arguments, folder)
            except (OSError, RuntimeError, KeyError, subprocess.SubprocessError, json.JSONDecodeError) as fault:
                report.check(False, scenario.__name__, repr(fault))
    print(f"{report.passed} passed, {report.failed} failed")
    return 1 if report.failed else 0


if __name__ == "__main__":
    sys.exit(main())
