#!/usr/bin/env python3
"""Black-box runs of the whole program: real X server, window manager, compositor, bus and keyring, the stand-in game and the
stand-in web service. Prints "N passed, M failed" as its last line."""

import argparse
import json
import subprocess
import sys
import tempfile
from pathlib import Path

TOP = Path(__file__).resolve().parents[2]
sys.dont_write_bytecode = True
sys.path.insert(0, str(TOP / "demo"))
import desk  # noqa: E402
import web_service  # noqa: E402

NO_DATA = r"^No data for Array<AchievementCompletition>$"
ERROR_FILLING = r"^Error filling Array<AchievementCompletition>: "
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
            desk.Vantor(arguments.vantor, service.host, folder) as vantor:
        report.check(started(vantor), "start: the icon floats over the game", vantor.lines)
        report.check(set(vantor.windows()) >= {"icon", "watched"} and game.has_focus(),
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
        desk.click(x + width // 2, y + height // 2)
        report.check(desk.wait_until(lambda: not game.has_focus()), "a click into the overlay takes the focus")
        before = game.presses(desk.CAMERA_KEY)
        desk.press(*desk.HOTKEY)
        report.check(desk.wait_until(lambda: not vantor.overlay_shown()), "the hotkey in our own window toggles once",
                     vantor.windows())
        report.check(desk.wait_until(lambda: game.presses(desk.CAMERA_KEY) == before + 1),
                     "the camera key reaches the game after the focus came back", game.record()[-12:])
        report.check(game.has_focus(), "the game has the focus again")

        with desk.clipboard(PASTED):
            start = game.after_paste_keys()
            desk.wait_until(lambda: len(game.typed(start)) >= len(PASTED))
            report.check(game.typed(start) == PASTED, "every printable character is pasted", repr(game.typed(start)))
        report.check(desk.wait_until(game.keys_are_up), "no key is left down")
        report.check(not vantor.unexpected_lines(), "nothing unexpected is printed", vantor.lines)


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


def command_line(report, arguments, folder):
    doctor = subprocess.run([arguments.vantor, "--doctor"], capture_output=True, text=True, timeout=desk.PATIENCE)
    report.check(doctor.returncode == 0 and all(name in doctor.stdout for name in ("display", "raw keys", "keyring")),
                 "--doctor names the powers", doctor.stdout + doctor.stderr)
    with desk.Game(arguments.game, folder) as game:
        desk.wait_until(game.has_focus)
        text = "Typed [once] & for All"
        typing = subprocess.run([arguments.vantor, "--type", "-"], input=text, text=True, capture_output=True, timeout=30)
        report.check(typing.returncode == 0 and desk.wait_until(lambda: game.typed() == text), "--type - types once",
                     (typing.stderr, game.typed()))
        pressing = subprocess.run([arguments.vantor, "--press", "⌃ + ⇧ + K"], capture_output=True, text=True, timeout=30)
        pressed = desk.wait_until(lambda: game.presses("K") == 1 and game.keys_are_up())
        report.check(pressing.returncode == 0 and pressed, "--press presses a hotkey", (pressing.stderr, game.record()))


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--vantor", required=True, type=Path)
    parser.add_argument("--game", required=True, type=Path)
    arguments = parser.parse_args()
    desk.enter_private_desktop()
    report = desk.Report()
    with tempfile.TemporaryDirectory(prefix="vantor-scenarios.") as folder:
        for scenario in (player_keys, second_start, faults, command_line):
            try:
                scenario(report, arguments, folder)
            except (OSError, RuntimeError, KeyError, subprocess.SubprocessError, json.JSONDecodeError) as fault:
                report.check(False, scenario.__name__, repr(fault))
    print(f"{report.passed} passed, {report.failed} failed")
    return 1 if report.failed else 0


if __name__ == "__main__":
    sys.exit(main())
