#!/usr/bin/env python3
"""Black-box runs of the whole program: real X server, window manager, compositor, bus and keyring, the stand-in game and the
stand-in web service. Names of scenarios run these alone. Prints "N passed, M failed" as its last line."""

import argparse
import contextlib
import datetime
import json
import os
import re
import signal
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

PARSER = argparse.ArgumentParser(description=__doc__)
PARSER.add_argument("--vantor", required=True, type=Path)
PARSER.add_argument("--game", required=True, type=Path)
PARSER.add_argument("names", nargs="*")
ARGUMENTS = PARSER.parse_args()
desk.enter_private_desktop()
REPORT = desk.Report()
check, wait_until = REPORT.check, desk.wait_until

NO_DATA = r"^No data for Array<AchievementCompletition>$"
ERROR_FILLING = r"^Error filling Array<AchievementCompletition>: "
EVENTS = json.loads((TOP / "resources/catalogue/events.json").read_text())
FAKETIME = ":".join(map(str, Path("/usr/lib").glob("*/faketime")))
DEAD_HOST = "http://127.0.0.1:9"  # the discard port: nobody listens
PASTED = "The quick [&BFAEAAA=] fox: <jumps> over_the \"lazy\" dog; #1 @ 50%! " + "".join(map(chr, range(33, 127)))
CHAT_LINK = r"\[&[A-Za-z0-9+/]+=*\]"
# Inside the main window, from its top left corner.
TIMERS_TAB, SETTINGS_TAB, HOTKEY_FIELD = (180, 87), (765, 87), (460, 224)
ACCEPT = (160, 40)  # in the popup, from its bottom right corner
FIRST_WAYPOINT = (775, 205)


def play(**options):
    return desk.Game(ARGUMENTS.game, FOLDER, **options)


@contextlib.contextmanager
def running(service, *expected, **options):
    """The program; afterwards it has printed what was expected and nothing else."""
    with desk.Vantor(ARGUMENTS.vantor, getattr(service, "host", DEAD_HOST), FOLDER, **options) as vantor:
        yield vantor
        check(not vantor.unexpected_lines(*expected), "nothing unexpected is printed", vantor.lines)


@contextlib.contextmanager
def everything(game=None, **options):
    """Service, game and the program, once its icon is there."""
    with desk.WebService() as service, play(**(game or {})) as one, running(service, **options) as vantor:
        check(started(vantor), "the icon floats over the game", vantor.lines)
        yield service, one, vantor


def started(vantor):
    return wait_until(lambda: "icon" in vantor.windows())


def ask(*words, **more):
    """The program called with a command."""
    return subprocess.run([ARGUMENTS.vantor, *words], capture_output=True, text=True, timeout=60, check=False, **more)


def opens(vantor):
    desk.press(*desk.HOTKEY)
    return wait_until(vantor.overlay_shown)


def closes(vantor):
    desk.press("Escape")
    return wait_until(lambda: not vantor.overlay_shown())


def opens_and_closes(game, vantor):
    """The hotkey opens the overlay and Escape closes it, the camera key replayed once each."""
    before = game.presses(desk.CAMERA_KEY)
    return all(turn(vantor) and wait_until(lambda: game.presses(desk.CAMERA_KEY) == before + times)
               for times, turn in ((1, opens), (2, closes))) and wait_until(game.keys_are_up)


def types(game, act):
    """What an act types, up to the Return that ends it."""
    before = len(game.record())
    act()
    wait_until(lambda: game.typed(before).endswith("\r") and game.typed(before) != "\r")
    return game.typed(before)


def player_keys():
    with everything(settings=desk.every_event()) as (_, game, vantor):
        check(wait_until(lambda: "watched" in vantor.windows()) and game.has_focus(),
              "the watched list is there, the game keeps the focus", vantor.windows())
        for round_ in (1, 2, 3):
            check(opens_and_closes(game, vantor), f"hotkey and Escape, round {round_}", game.record()[-12:])
        before = game.presses(desk.CAMERA_KEY)
        desk.press("Escape")
        desk.press("F9")
        wait_until(lambda: game.presses("F9") == 1)
        check(game.presses(desk.CAMERA_KEY) == before, "Escape with the overlay closed replays nothing")

        # The focus is ours after a click; the camera key must reach the game all the same.
        opens(vantor)
        x, y, width, height = vantor.windows()["main"]
        desk.click(x + 220, y + 40)
        check(wait_until(lambda: not game.has_focus()), "a click into the overlay takes the focus")
        # A Space meant for the game presses nothing here: were the overlay closed, the next click would give the game the focus.
        desk.press("space")
        desk.click(x + width // 2, y + height // 2)
        desk.settled_pixels(x, y, width, height)
        check(vantor.overlay_shown() and not game.has_focus(), "a Space after it presses no control")
        before = game.presses(desk.CAMERA_KEY)
        desk.press(*desk.HOTKEY)
        check(wait_until(lambda: not vantor.overlay_shown()), "the hotkey in our own window toggles once", vantor.windows())
        check(wait_until(lambda: game.presses(desk.CAMERA_KEY) == before + 1) and game.has_focus(),
              "the camera key reaches the game after the focus came back", game.record()[-12:])

        with desk.clipboard(PASTED):
            before = len(game.record())
            desk.press(*desk.PASTE_KEYS)
            wait_until(lambda: len(game.typed(before)) >= len(PASTED))
            check(game.typed(before) == PASTED, "every printable character is pasted, and nothing before it",
                  repr(game.typed(before)))
        check(wait_until(game.keys_are_up), "no key is left down")


def opens_once():
    """What an opening maps stays until the closing, and nothing flashes when the page comes. What holds nothing is not there."""
    with everything({"scene": "bright"}, settings={"events.watching": "[]"}) as (_, game, vantor):
        check(set(vantor.windows()) == {"icon"}, "with nothing watched and no emotes only the icon is there", vantor.windows())
        middle = [length // 2 for length in desk.screen_size()]
        for when in ("first", "second"):
            before = len(game.record())
            desk.click(*middle)
            check(wait_until(lambda: any(event["event"] == "click" for event in game.record(before))),
                  f"{when} opening: before it a click into the middle is the game's", vantor.windows())
            with desk.Program("xev", "-root", "-event", "substructure", "-event", "property") as server:
                wait_until(lambda: server.lines or desk.ask("xprop", "-root", "-f", "ASKED", "8s", "-set", "ASKED", "yes"))
                desk.press(*desk.HOTKEY)
                x, y, *_ = vantor.overlay()
                empty, title = (x + 50, y + 300, 100, 100), (x + 210, y + 200, 250, 60)
                dark = []

                def has_title():
                    dark.append(max(desk.pixels(*empty)) < 100)
                    return dark[-1] and max(desk.pixels(*title)) > 200

                check(wait_until(has_title) and all(dark[dark.index(True):]), f"{when} opening: the page comes without a flash", dark)
                notices = re.findall(r"(Map|Unmap|Destroy)Notify event.*\n.* window (\w+)", "\n".join(server.lines))
            mapped = [window for kind, window in notices if kind == "Map"]
            gone = [window for kind, window in notices if kind != "Map" and window in mapped]
            check(len(mapped) == 1 and not gone, f"{when} opening: one map, and it stays", notices)
            desk.press("Escape")
            wait_until(lambda: set(vantor.windows()) == {"icon"})


def hotkeys():
    """Whichever key goes up first, with Caps Lock on, held for long; and the popup that takes a new one."""
    def keys(*steps):
        desk.ask("xdotool", *(word for step in steps for word in step.split()))

    down = [f"keydown {key}" for key in ("Control_L", "Shift_L", "t")]
    with everything() as (_, game, vantor):
        for what, steps in (("with its modifiers let go first", [*down, "keyup Control_L", "keyup Shift_L", "keyup t"]),
                            ("with Caps Lock on", ["key Caps_Lock", *down, "keyup t", "keyup Shift_L", "keyup Control_L", "key Caps_Lock"])):
            keys(*steps)
            check(wait_until(vantor.overlay_shown) and game.has_focus(), f"the hotkey opens {what}", vantor.windows())
            closes(vantor)
        keys(*down, "sleep 0.6", "keyup t", "keyup Shift_L", "keyup Control_L")
        check(wait_until(lambda: vantor.overlay_shown() and not game.has_focus()),
              "held for half a second it gives the overlay the keyboard", desk.active_window())
        x, y, *_ = vantor.overlay()
        closes(vantor)
        wait_until(game.has_focus)
        opens(vantor)
        desk.click(x + SETTINGS_TAB[0], y + SETTINGS_TAB[1])
        desk.settled_pixels(x + 160, y + 140, 400, 200)

        def popup():
            return "Vantor hotkey" in vantor.windows()

        def opens_popup():
            desk.click(x + HOTKEY_FIELD[0], y + HOTKEY_FIELD[1])
            return wait_until(lambda: popup() and desk.ask("xdotool", "getwindowfocus", "getwindowname") == "Vantor hotkey")

        opened = opens_popup()
        keys("key F7", "key Escape")
        check(opened and wait_until(lambda: not popup()) and vantor.overlay_shown(),
              "Escape in the popup cancels it and leaves the overlay", vantor.windows())
        opened = opens_popup()
        desk.click(x + 860, y + 48)
        check(opened and wait_until(lambda: not vantor.overlay_shown() and not popup()), "the popup goes with the overlay",
              vantor.windows())
        stored = vantor.setting("general.windowToggleEvent")
        check(stored == "⌃ + ⇧ + T", "and what it took is not stored", stored)
        opens(vantor)
        desk.settled_pixels(x + 160, y + 140, 400, 200)
        for taken, name in (("key F7", "F7"), ("key KP_5", "numpad 5"), ("key shift+Right", "⇧ + →"),
                            ("key super+ctrl+shift+a", "⌘ + ⌃ + ⇧ + A"), ("key dead_circumflex key b key Shift_L", "B")):
            opens_popup()
            keys(taken)
            left, top, width, height = vantor.windows()["Vantor hotkey"]
            desk.click(left + width - ACCEPT[0], top + height - ACCEPT[1])
            wait_until(lambda: not popup())
            stored = vantor.setting("general.windowToggleEvent")
            check(stored == name and vantor.overlay_shown(), f"{taken} is taken, stored, and does nothing else", repr(stored))


def second_start():
    with everything() as (service, game, vantor):
        second = desk.Program(ARGUMENTS.vantor, environment=vantor.environment)
        wait_until(lambda: not second.alive())
        check(second.end() == 0 and not second.lines, "a second start ends with 0", second.lines)
        check(wait_until(vantor.overlay_shown) and game.has_focus(), "it opens the overlay and leaves the game the focus",
              (vantor.windows(), desk.active_window()))
        vantor.process.kill()
        vantor.process.wait()
        with running(service) as next_one:
            check(started(next_one), "after a killed one, a new start works", next_one.lines)


def faults():
    with play() as game:
        for fault, key, expected in ((None, web_service.VALID_KEY, NO_DATA), ("close", web_service.VALID_KEY, NO_DATA),
                                     ("empty", web_service.VALID_KEY, NO_DATA), ("shape", web_service.VALID_KEY, ERROR_FILLING),
                                     ("garbage", web_service.VALID_KEY, ERROR_FILLING),
                                     ("status500", web_service.VALID_KEY, ERROR_FILLING),
                                     ("none", web_service.REVOKED_KEY, ERROR_FILLING),
                                     ("none", web_service.WITHOUT_PROGRESSION_KEY, ERROR_FILLING)):
            with desk.WebService(fault or "none") as service, running(fault and service, expected, key=key) as vantor:
                check(vantor.line(expected), f"fault {fault}: the line is printed", vantor.lines)
                check(started(vantor) and opens_and_closes(game, vantor), f"fault {fault}: the program goes on", vantor.lines)
                check(not any(key in line for line in vantor.lines), "the key is not printed")
        answered = r"^GET /v2/account/achievements \d"
        for fault, later in (("slow", answered), ("hang", "hang")):
            with desk.WebService(fault, delay=4.0) as service, running(service) as vantor:
                check(started(vantor) and opens_and_closes(game, vantor), f"{fault} service: the overlay does not wait")
                check(fault == "slow" or not service.line(answered, patience=0), "there is still no answer", service.lines)
                check(service.line(later), f"{fault} service: it was asked", service.lines)
                check(vantor.alive(), f"{fault} service: the program goes on")


def chat_links_and_watching():
    """Beside a full-screen game that keeps every click while it has the focus: the open overlay has it instead."""
    settings = {"general.enableChatLinkReturnKey": "true", "timer.watchedWindowDuration": "10"}
    with everything({"holds_pointer": True}, settings=settings) as (service, game, vantor):
        before = len(game.record())

        def told(*expected):
            """Whether this is the game's own account of the focus and of the camera key, which no capital in a chat link is."""
            return wait_until(lambda: expected == tuple(
                event.get("key", "gained" if event.get("in") else "lost") for event in game.record(before)
                if event["event"] == "focus" or event.get("key") == desk.CAMERA_KEY and event["down"] and event["text"] == "h"))

        check(opens(vantor) and told("H", "lost"), "the open overlay has the focus, after the camera key", game.record(before))
        check(service.line(r"^page /wiki/Game_updates"), "the first opening loads the game's updates", service.lines)
        x, y, *_ = vantor.overlay()
        desk.click(x + TIMERS_TAB[0], y + TIMERS_TAB[1])
        desk.settled_pixels(x + 40, y + 170, 400, 200)
        waypoint = (x + FIRST_WAYPOINT[0], y + FIRST_WAYPOINT[1])
        desk.click(*waypoint)
        copied = wait_until(lambda: re.fullmatch(rf"\n{CHAT_LINK}\n", desk.clipboard_text()))
        check(copied, "a click on a tab and one on a waypoint copy its chat link", repr(desk.clipboard_text()))
        with desk.held("Shift_L"):
            typed = types(game, lambda: desk.click(*waypoint))
        check(re.fullmatch(rf"\r{CHAT_LINK}\r", typed), "a click with Shift held types it", repr(typed))
        check(told("H", "lost", "gained", "lost"), "then the overlay has the focus again", game.record(before))
        desk.press("Escape")
        check(told("H", "lost", "gained", "lost", "gained", "H") and wait_until(game.keys_are_up),
              "the closing's camera key comes after the focus", game.record(before))

        # The watched list follows the settings file, so that no clock has to be waited for.
        desk.store(ARGUMENTS.vantor, vantor.environment, desk.every_event(), web_service.VALID_KEY)
        shown = wait_until(lambda: vantor.windows().get("watched"))
        # At some hours there are more rows than find room below the corner.
        width, height = desk.screen_size()
        check(shown and shown[0] == (width - 250) // 2 and shown[1] in ((height - 60) // 2, height - shown[3]) and shown[1] >= 0,
              "the watched list grows from its corner and stays on the screen", shown)
        check(game.has_focus(), "the watched list takes no focus", desk.active_window())


def moved_clock():
    """A watched event enters the floating list at its minute and leaves it at its minute, past local midnight in a zone with a
    half hour. The program's clock is moved to some seconds before each of the two."""
    midnight = datetime.datetime(2026, 11, 23)
    clock = Path(FOLDER) / "clock"
    moved = {"LD_PRELOAD": "libfaketimeMT.so.1", "LD_LIBRARY_PATH": FAKETIME, "FAKETIME_TIMESTAMP_FILE": str(clock),
             "FAKETIME_NO_CACHE": "1", "FAKETIME_DONT_FAKE_MONOTONIC": "1", "TZ": "Asia/Kolkata"}
    clock.write_text(f"@{midnight:%Y-%m-%d %H:%M:%S}\n")
    timeline = json.loads(ask("--timeline", "--json", env={**os.environ, **moved}).stdout)
    # In this zone the day's frame begins at 05:30, so that what comes after midnight has minutes of 1440 and more.
    event = next(row for row in timeline if row["startMinute"] == 1470 and row["startMinute"] > row["gatheringMinute"])
    settings = {"events.watching": json.dumps([event["name"]]), "timer.watchedWindowDuration": "10"}
    with desk.WebService() as service, play() as game:
        wait_until(game.has_focus)
        for what, minute, entering in (("enters", event["gatheringMinute"] - 10, True), ("leaves", event["startMinute"] + 1, False)):
            early = midnight + datetime.timedelta(minutes=minute % 1440, seconds=-10)
            clock.write_text(f"@{early:%Y-%m-%d %H:%M:%S}\n")
            with running(service, settings=settings, environment=moved) as vantor:
                begin = time.monotonic()
                started(vantor)
                there = lambda: "watched" in vantor.windows()
                check(not there() if entering else wait_until(there), f"the list is right before a watched event {what}")
                changed = wait_until(lambda: there() == entering, patience=20)
                seconds = time.monotonic() - begin
                check(changed and 8.5 < seconds < 30, f"a watched event {what} at its minute", (event, seconds))


def emotes():
    with everything() as (_, game, vantor):
        desk.store(ARGUMENTS.vantor, vantor.environment, {"general.enableEmojiCommands": "true"}, web_service.VALID_KEY)
        x, y, *_ = wait_until(lambda: vantor.windows().get("emoji"))

        def turns(wide):
            return wait_until(lambda: (vantor.windows()["emoji"][2] > 100) == wide)

        def use(place):
            desk.click(x + 15, y + 15)
            turns(wide=True)
            typed = types(game, lambda: desk.click(x + 15 + 32 * (place + 1), y + 15))
            return typed if turns(wide=False) and game.has_focus() else ""

        desk.click(x + 15, y + 15)
        turns(wide=True)
        before = set(vantor.windows())
        desk.point_at(x + 15 + 32 * 7, y + 15)
        check(wait_until(lambda: set(vantor.windows()) - before) and game.has_focus(),
              "a tooltip comes while the game has the focus", vantor.windows())
        desk.click(x + 15, y + 15)
        turns(wide=False)
        check(use(26) == "\r/wave @\r", "an emote is typed between two Returns, and the row closes", game.record()[-12:])
        check(use(0) == "\r/wave @\r", "the emote used last is the first one")
        check(use(20) == "\r/sit\r" and use(1) == "\r/wave @\r", "the order follows each use")
        vantor.end()
        with desk.Program(ARGUMENTS.vantor, environment=vantor.environment) as again:
            vantor.pid = again.pid
            wait_until(lambda: "emoji" in vantor.windows())
            check(use(0) == "\r/wave @\r", "the order is kept over a restart")


def logins():
    """A login in the real keyring, filled by command; its password goes nowhere else."""
    canary = "c4nary-Pa55 & <word>"
    subprocess.run(["secret-tool", "store", "--label=Vantor", "class", "generic-password", "account", "orvendel.Vantor.accounts"],
                   input=json.dumps({"player@example.org": canary}), text=True, check=True, timeout=desk.PATIENCE)
    with everything() as (service, game, vantor):
        environment = {**os.environ, **vantor.environment}
        filled = wait_until(lambda: ask("--fill", "player@example.org", env=environment).returncode == 0)
        expected = f"player@example.org\t{canary}"
        check(filled and wait_until(lambda: game.typed() == expected), "--fill types name, tab and password", game.typed())
        unknown = ask("--fill", "nobody", env=environment)
        check(unknown.returncode == 1 and unknown.stderr.count("\n") == 1, "--fill of an unknown name is one line", unknown)
        folders = [environment[f"XDG_{name}"] for name in ("CONFIG_HOME", "DATA_HOME", "CACHE_HOME", "RUNTIME_DIR")]
        files = [path for each in folders for path in Path(each).rglob("*") if path.is_file()]
        process = Path(f"/proc/{vantor.pid}")
        limits = (process / "limits").read_text()
        check(re.search(r"^Max core file size +0 +0 ", limits, re.M), "a crash would write no core file", limits)
        places = [path.read_bytes() for path in (*files, process / "cmdline", process / "environ")]
        places += ["\n".join(vantor.lines).encode(), "\n".join(service.lines).encode()]
        check(files and not any(canary.encode() in place for place in places), "the password is nowhere else")
        check(ask("--toggle-app", env=environment).returncode == 0 and wait_until(lambda: not vantor.windows()),
              "--toggle-app takes Vantor off the application in front", vantor.windows())
        ends = ask("--quit", env=environment).returncode == 0 and wait_until(lambda: not vantor.alive())
        check(ends and ask("--quit", env=environment).returncode == 1, "--quit ends it, and says so without a running one")


def command_line():
    doctor = ask("--doctor")
    check(doctor.returncode == 0 and all(name in doctor.stdout for name in ("display", "raw keys", "keyring")),
          "--doctor names the capabilities", doctor)
    with play() as game:
        wait_until(game.has_focus)
        text = "Typed [once] & for All"
        typing = ask("--type", "-", input=text)
        check(typing.returncode == 0 and wait_until(lambda: game.typed() == text), "--type - types once", (typing, game.typed()))
        before = len(game.record())
        partly = ask("--type", "a☃b🙂")
        check(partly.returncode == 0 and partly.stderr.count("\n") == 1 and " 2 " in partly.stderr and "☃" not in partly.stderr
              and wait_until(lambda: game.typed(before) == "ab"), "--type says how many characters have no key", partly)
        pressing = ask("--press", "⌃ + ⇧ + K")
        check(pressing.returncode == 0 and wait_until(lambda: game.presses("K") == 1 and game.keys_are_up()),
              "--press presses a hotkey", (pressing, game.record()))


def slow_and_dying():
    """A game that reads nothing for a while, and one that dies in mid-text."""
    text = "The Quick Brown Fox (17 + 4) jumps; \"Over\" the Lazy Dog: [&AgEAWgAA=]! " * 3
    with play(window_class="notes", size="300x200") as notes:
        with play() as game:
            wait_until(game.has_focus)
            game.process.send_signal(signal.SIGSTOP)
            ask("--type", "-", input=text)
            game.process.send_signal(signal.SIGCONT)
            check(wait_until(lambda: game.typed() == text), "a game that was busy has the whole text", game.typed())
            before = len(game.record())
            typing = desk.Program(ARGUMENTS.vantor, "--type", text)
            wait_until(lambda: len(game.typed(before)) > 20)
            game.process.kill()
            wait_until(lambda: not typing.alive())
            check(typing.end() == 1 and text.startswith(game.typed(before)) and re.fullmatch(
                r"vantor: typing ended after \d+ of 213 characters: another window has the keyboard", "\n".join(typing.lines)),
                "a text ends when its game dies, and a line says so",
                  (typing.end(), typing.lines, game.typed(before)))
        wait_until(notes.has_focus)
        ask("--type", "{Next}")
        check(wait_until(lambda: notes.typed().endswith("{Next}")), "the next one is whole", notes.typed())


def release(folder, version, name):
    """Signed by minisign itself, with the key for tests; the section of the world bosses bears the name."""
    folder.mkdir(exist_ok=True)
    catalogue = folder / "events.json"
    catalogue.write_text(json.dumps([EVENTS[0], {**EVENTS[1], "name": name}, *EVENTS[2:]]))
    return subprocess.run([TOP / "packaging/catalogue/sign.sh", str(version), "2026-09-30", TOP / "demo/catalogue/test.key",
                           folder / "served", catalogue], env={**os.environ, "VANTOR": str(ARGUMENTS.vantor)},
                          stdin=subprocess.DEVNULL, capture_output=True, text=True, timeout=60, check=False)


def releases():
    folder = Path(FOLDER) / "released"
    signed = release(folder, 7, "First")
    check(signed.returncode == 0 and signed.stdout.startswith("version 7 of "), "a release is signed and holds", signed)
    again = release(folder, 7, "Again")
    check(again.returncode == 1 and "version 7 is there already" in again.stderr, "versions only grow", again)
    old = release(folder / "other", 1, "Old")
    check(old.returncode == 1 and not (folder / "other/served").exists(), "what Vantor refuses is not released", old)


def catalogues():
    """Catalogues from outside: an update that is served, one that is damaged, the player's files, a faulty one."""
    folder = Path(FOLDER) / "layers"
    served, data, cache = (folder / name for name in ("served", "data", "cache"))
    own = data / "vantor/catalogue"
    own.mkdir(parents=True)
    release(folder, 7, "First")
    with desk.WebService(catalogue=served) as service, play():
        environment = {"XDG_DATA_HOME": str(data), "XDG_CACHE_HOME": str(cache), "VANTOR_CATALOGUE_HOST": service.host}

        def said(*words):
            return ask(*words, env={**os.environ, **environment})

        def section(name):
            return any(row["section"] == name for row in json.loads(said("--timeline", "--json").stdout))

        def run(*expected):
            return running(service, *expected, environment=environment)

        with run() as vantor:
            taken = wait_until(lambda: (cache / "vantor/catalogue/state.json").exists())
            check(taken and "catalogue version 7 of " in said("--version").stdout, "the update is fetched and kept", vantor.lines)
            check(section("First"), "its times are shown")
        with run():
            check(service.line(r"minisig 304"), "the next start is told that nothing is new", service.lines)
        # Another body below the signature, as from a host that was broken into.
        release(folder, 8, "Second")
        file = served / "1/catalogue.json"
        file.write_text(file.read_text().replace("Second", "Forged"))
        refusal = "^The catalogue update was refused: signature: is not this document's$"
        with run(refusal) as vantor:
            check(vantor.line(refusal), "a damaged update is refused in one line", vantor.lines)
            check(section("First") and not section("Forged"), "and the old one stays")
        release(folder, 9, "Third")
        (own / "mine.json").write_text(json.dumps([{**EVENTS[2], "name": "Mine"}]))
        (own / "wrong.json").write_text(json.dumps([{**EVENTS[3], "segments": []}]))
        fault = r"^Error in your catalogue file wrong\.json: \[0\]\.sequences\."
        with run(fault) as vantor:
            check(vantor.line(fault), "a faulty file of the player's is named", vantor.lines)
            check(wait_until(lambda: "version 9" in said("--version").stdout), "the next update is taken", vantor.lines)
            check(section("Third") and section("Mine") and section(EVENTS[3]["name"]), "the player's file lies over it")
            doctor = said("--doctor").stdout
            check("catalogue" in doctor and "mine.json" in doctor and "wrong.json: [0]" in doctor, "--doctor tells all of it", doctor)
            back = said("--catalogue-rollback")
            check(back.returncode == 0 and back.stdout.startswith("catalogue version 7") and section("First"),
                  "--catalogue-rollback goes back to the one before", back)


def two_monitors():
    """Everything comes on the game's monitor, goes over with it, and has a place on each."""
    width, height = desk.screen_size()
    half = width // 2
    with desk.monitors(LEFT=(0, 0, half, height), RIGHT=(half, 0, half, height)) as unplug, desk.WebService() as service, \
            play(size="600x400") as game:
        def play_on(x):
            subprocess.run(["xdotool", "windowmove", str(game.window), str(x + 20), "200"], check=True, timeout=desk.PATIENCE)

        play_on(half)
        settings = {**desk.every_event(), "general.enableEmojiCommands": "true"}
        with running(service, settings=settings) as vantor:
            def stands(what, **corners):
                there = wait_until(lambda: all(vantor.windows().get(role, ())[:2] == corner for role, corner in corners.items()))
                check(there, what, vantor.windows())

            stands("icon and emotes come on the game's monitor", icon=(half, 0), emoji=(half + 36, 0))
            check(wait_until(lambda: vantor.windows().get("watched", (0,))[0] == half + (half - 250) // 2), "so does the list",
                  vantor.windows())
            opens(vantor)
            x, y, *_ = vantor.overlay()
            check(x == half, "so does the overlay", vantor.windows())
            desk.drag(x + 400, y + 40, x + 330, y + 90)
            stands("it can be dragged over the edge between them", main=(half - 70, y + 50))
            play_on(0)
            stands("they go over with the game while they are shown", icon=(0, 0), main=(0, y + 50))
            desk.drag(400, y + 90, 400, y + 60)
            stands("the overlay has its place there", main=(0, y + 20))
            play_on(half)
            stands("and its own on the other", main=(half - 70, y + 50))
            unplug("RIGHT")
            stands("they come back when that monitor goes", icon=(0, 0), main=(0, y + 20))


def without_compositor():
    """Where nothing is blended the game is seen beside the torn edge. This ends the compositor."""
    width, height = desk.screen_size()
    corner = ((width - 920) // 2, (height - 600) // 2, 5, 5)
    middle = (width // 2, height // 2, 50, 50)
    with everything() as (_, _, vantor):
        scene = {part: desk.settled_pixels(*part) for part in (corner, middle)}
        compositor = desk.ask("xdotool", "search", "--name", "^picom$").split()
        subprocess.run(["xdotool", "windowkill", compositor[-1]], check=True, timeout=desk.PATIENCE)
        desk.press(*desk.HOTKEY)
        shown = wait_until(lambda: desk.pixels(*middle) != scene[middle])
        check(shown and desk.settled_pixels(*corner) == scene[corner], "the overlay has no black frame", vantor.windows())


def teller(vantor):
    """Runs a command to the Vantor that runs; what it printed and its status."""
    def tell(*words):
        return subprocess.run([ARGUMENTS.vantor, *words], env={**os.environ, **vantor.environment}, capture_output=True, text=True,
                              timeout=30, check=False)
    return tell


def mid_text():
    """A text that takes a minute is ended by what a player does, goes nowhere else, and holds up nothing meanwhile."""
    # Without Shift: the player's is on the same device here, and no key of one device goes down twice.
    long = "meet at the gate, all of you; " * 100
    password = "s3cret-" * 20
    subprocess.run(["secret-tool", "store", "--label=Vantor", "class", "generic-password", "account", "orvendel.Vantor.accounts"],
                   input=json.dumps({"long": password}), text=True, check=True, timeout=desk.PATIENCE)
    with desk.WebService() as service, play() as game, desk.clipboard(long), \
            desk.Vantor(ARGUMENTS.vantor, service.host, FOLDER) as vantor:
        tell = teller(vantor)
        ended = []

        def new_line():
            """The next of Vantor's lines about a text that was not typed whole."""
            told = [line for line in vantor.lines if line.startswith("vantor: typing ended")]
            if len(told) == len(ended):
                return None
            ended.append(told[len(ended)])
            return ended[-1]

        def typing(start, text, beginning=20):
            return wait_until(lambda: len(game.typed(start)) >= beginning and text.startswith(game.typed(start)[:beginning]))

        def ends(act, text, what, begin=lambda: desk.press(*desk.PASTE_KEYS), reason="a key|stopped", are_up=game.keys_are_up):
            start = len(game.record())
            begin()
            under_way = typing(start, text)
            act()
            line = wait_until(new_line) or ""
            found = re.fullmatch(rf"vantor: typing ended after (\d+) of {len(text)} characters: .*({reason}).*", line)
            count = int(found.group(1)) if found else 0
            wait_until(lambda: len(game.typed(start)) >= count)
            typed = game.typed(start)
            # What ends it may itself be a key that the game gets, before the stroke that was under way.
            return check(under_way and 20 <= count < len(text) and typed.startswith(text[:count - 2]) and
                                len(typed) <= count + 2 and wait_until(are_up),
                                f"{what} ends a text, nothing is down, and a line says how far it came", (line, count, typed[-40:]))

        started(vantor)
        wait_until(game.has_focus)
        ends(lambda: desk.press("Escape"), long, "Escape")
        ends(lambda: desk.press(*desk.HOTKEY), long, "the hotkey")
        check(wait_until(vantor.overlay_shown) and wait_until(lambda: game.typed().endswith("h")),
                     "the hotkey opens the overlay as well, camera key included", vantor.windows())
        desk.press("Escape")
        wait_until(lambda: not vantor.overlay_shown())
        ends(lambda: desk.press("x"), long, "a key of the player's")
        ends(lambda: tell("--stop"), long, "--stop")
        ends(lambda: tell("--stop"), f"long\t{password}", "--stop", lambda: tell("--fill", "long"))
        check(not any("s3cret" in line for line in vantor.lines), "the lines hold nothing of a login", vantor.lines)

        others = []
        # The end of the last key may be the other window's.
        ends(lambda: others.append(play(window_class="notes", size="300x200")), long,
             "another window in front", reason="another window", are_up=lambda: True)
        astray = others[0].typed()
        others[0].end()
        check(len(astray) <= 1 and wait_until(game.has_focus), "nothing goes there but the key that was under way", astray)

        # The program goes on while it types.
        start = len(game.record())
        desk.press(*desk.PASTE_KEYS)
        typing(start, long)
        begin = time.monotonic()
        shown = tell("--show").returncode == 0 and wait_until(vantor.overlay_shown)
        x, y, *_ = vantor.overlay()
        before = desk.settled_pixels(x + 200, y + 60, 300, 60)
        check(shown and len(game.typed(start)) < 300, "a command opens the overlay in mid-text", time.monotonic() - begin)
        line = wait_until(lambda: vantor.windows().get("Vantor typing"))
        check(line and max(before) > 60, "what takes long shows a line over the game", vantor.windows())
        length = len(game.typed(start))
        check(wait_until(lambda: len(game.typed(start)) > length + 20) and game.has_focus(), "and the text goes on")
        tell("--hide")
        wait_until(new_line)
        check(wait_until(lambda: "Vantor typing" not in vantor.windows()), "the line goes with the text", vantor.windows())
        wait_until(lambda: not vantor.overlay_shown())

        # Three in a queue, a stop in the second.
        start = len(game.record())
        tell("--emote", "/cry"), tell("--paste"), tell("--emote", "/sit")
        wait_until(lambda: len(game.typed(start)) > 40)
        tell("--stop")
        wait_until(new_line)
        tell("--emote", "/bow @")
        whole = wait_until(lambda: game.typed(start).endswith("\r/bow @\r"))
        typed = game.typed(start)
        check(whole and typed.startswith("\r/cry\r" + long[:20]) and "/sit" not in typed,
                     "a stop ends the second of three and drops the third", typed)

        start = len(game.record())
        desk.press(*desk.PASTE_KEYS)
        typing(start, long)
        check(tell("--quit").returncode == 0 and wait_until(lambda: not vantor.alive()) and wait_until(game.keys_are_up),
                     "--quit in mid-text leaves nothing down", game.record()[-4:])
        check(wait_until(new_line), "and says how far it came", vantor.lines[-2:])


def commands():
    """What a desktop without hotkeys binds to its own."""
    with desk.WebService() as service, play() as game, desk.clipboard("one\r\ntwo\x01\t3"), running(service) as vantor:
        tell = teller(vantor)
        started(vantor)
        wait_until(game.has_focus)

        def camera(count, shown):
            return wait_until(lambda: game.presses(desk.CAMERA_KEY) == count and vantor.overlay_shown() == shown)

        for words, count, shown in (("--toggle", 1, True), ("--toggle", 2, False), ("--hide", 2, False), ("--show", 2, True),
                                    ("--show", 2, True), ("--hide", 3, False)):
            check(tell(words).returncode == 0 and camera(count, shown), f"{words}: the overlay and the camera key follow",
                         (vantor.windows(), game.presses(desk.CAMERA_KEY)))
        start = len(game.record())
        pasted = tell("--paste").returncode == 0 and wait_until(lambda: game.typed(start) == "one\rtwo\t3")
        check(pasted, "--paste types the clipboard, each line end once, no control characters", repr(game.typed(start)))
        start = len(game.record())
        for name in ("👋", "/sit"):
            tell("--emote", name)
        check(wait_until(lambda: game.typed(start) == "\r/wave @\r\r/sit\r"), "--emote takes an emoji or a command",
                     game.typed(start))
        tell("--show")
        wait_until(vantor.overlay_shown)
        refused = [tell("--paste"), tell("--emote", "/jump")]
        check(all(each.returncode == 1 and each.stderr.count("\n") == 1 for each in refused),
                     "--paste over the open overlay and an unknown emote are refused, one line each", refused)


SCENARIOS = (player_keys, opens_once, hotkeys, second_start, chat_links_and_watching, moved_clock, emotes, logins,
             faults, command_line, mid_text, commands, slow_and_dying, releases, catalogues, two_monitors, without_compositor)
with tempfile.TemporaryDirectory(prefix="vantor-scenarios.") as FOLDER:
    for scenario in SCENARIOS:
        if ARGUMENTS.names and scenario.__name__ not in ARGUMENTS.names:
            continue
        print(f"-- {scenario.__name__}", flush=True)
        try:
            scenario()
        except (OSError, RuntimeError, KeyError, TypeError, subprocess.SubprocessError, json.JSONDecodeError) as fault:
            check(False, scenario.__name__, repr(fault))
print(f"{REPORT.passed} passed, {REPORT.failed} failed")
sys.exit(1 if REPORT.failed else 0)
