#!/usr/bin/env python3
"""The guided tour: plays Vantor beside the stand-in game in a private desktop, prints what it sees line by line, and leaves
pictures. Its status is 0 when everything was seen."""

import argparse
import sys
import tempfile
from pathlib import Path

sys.dont_write_bytecode = True
sys.path.insert(0, str(Path(__file__).resolve().parent))
import desk  # noqa: E402

# Inside the first two tabs, from the main window's top left corner (its margin, title bar 52, half of the tab row).
HOME_TAB = (95, 87)
TIMERS_TAB = (180, 87)
CLIPBOARD_TEXT = "Meet at [&BNABAAA=] in 5 min - bring \"water\" & (some) $pice: 100% ~ok~ {x|y}?"


def open_overlay(report, game, vantor, what):
    before = game.presses(desk.CAMERA_KEY)
    desk.press(*desk.HOTKEY)
    report.check(desk.wait_until(vantor.overlay_shown), f"{what}: the hotkey opens the overlay", vantor.windows())
    report.check(desk.wait_until(lambda: game.presses(desk.CAMERA_KEY) == before + 1),
                 f"{what}: the camera key came once", game.presses(desk.CAMERA_KEY) - before)
    report.check("watched" not in vantor.windows(), f"{what}: the watched list makes room", vantor.windows())


def close_overlay(report, game, vantor, what):
    before = game.presses(desk.CAMERA_KEY)
    desk.press("Escape")
    report.check(desk.wait_until(lambda: not vantor.overlay_shown()), f"{what}: Escape closes the overlay", vantor.windows())
    report.check(desk.wait_until(game.has_focus), f"{what}: the game has the focus", desk.active_window())
    report.check(desk.wait_until(lambda: game.presses(desk.CAMERA_KEY) == before + 1),
                 f"{what}: the camera key came once", game.presses(desk.CAMERA_KEY) - before)
    report.check(desk.wait_until(game.keys_are_up), f"{what}: no key is left down in the game")


def show_timers(report, vantor, what):
    x, y, width, height = vantor.windows()["main"]
    content = (x + 40, y + 130, width - 80, height - 200)
    desk.click(x + HOME_TAB[0], y + HOME_TAB[1])
    desk.park_pointer()
    home = desk.settled_pixels(*content)
    desk.click(x + TIMERS_TAB[0], y + TIMERS_TAB[1])
    desk.park_pointer()
    report.check(desk.wait_until(lambda: desk.pixels(*content) != home), f"{what}: a click shows the Timers tab")
    desk.settled_pixels(*content)


def visit_scene(report, arguments, folder, vantor, scene):
    with desk.Game(arguments.game, folder, scene=scene) as game:
        report.check(desk.wait_until(lambda: "watched" in vantor.windows() and "icon" in vantor.windows()),
                     f"{scene} scene: icon and watched list float over the game", vantor.windows())
        report.check(desk.wait_until(game.has_focus), f"{scene} scene: the game keeps the focus")
        desk.picture(arguments.pictures / f"{scene}-1-game.png")
        open_overlay(report, game, vantor, f"{scene} scene")
        report.check(game.has_focus(), f"{scene} scene: the game keeps the focus under the overlay")
        show_timers(report, vantor, f"{scene} scene")
        report.check(desk.picture(arguments.pictures / f"{scene}-2-timers.png"), f"{scene} scene: a picture of the timers")
        close_overlay(report, game, vantor, f"{scene} scene")


def paste(report, game, pictures):
    with desk.clipboard(CLIPBOARD_TEXT):
        start = len(game.record())
        desk.press(*desk.PASTE_KEYS)
        desk.wait_until(lambda: len(game.typed(start)) >= len(CLIPBOARD_TEXT))
        desk.wait_until(game.keys_are_up)
        report.check(game.typed(start) == CLIPBOARD_TEXT, "the clipboard arrives in the game character for character",
                     repr(game.typed(start)))
    desk.picture(pictures / "bright-4-pasted.png")


def switch_away(report, arguments, folder, game, vantor):
    before = set(vantor.windows())
    with desk.Game(arguments.game, folder, window_class="notes", size="700x420") as notes:
        desk.wait_until(notes.has_focus)
        report.check(desk.wait_until(lambda: not vantor.windows()), "another application hides all windows",
                     vantor.windows())
        desk.picture(arguments.pictures / "bright-5-other-application.png")
        desk.activate(game.window)
        report.check(desk.wait_until(lambda: set(vantor.windows()) == before), "the game brings them back",
                     vantor.windows())
        desk.press(*desk.HOTKEY)
        desk.wait_until(vantor.overlay_shown)
        desk.activate(notes.window)
        report.check(desk.wait_until(lambda: not vantor.windows()), "another application hides the overlay too",
                     vantor.windows())
    report.check(desk.wait_until(vantor.overlay_shown), "back in the game, the open overlay is there again",
                 vantor.windows())
    desk.press("Escape")
    report.check(desk.wait_until(lambda: not vantor.overlay_shown()), "Escape closes it")


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--vantor", required=True, type=Path)
    parser.add_argument("--game", required=True, type=Path)
    parser.add_argument("--pictures", required=True, type=Path)
    arguments = parser.parse_args()
    desk.enter_private_desktop()

    report = desk.Report()
    with tempfile.TemporaryDirectory(prefix="vantor-tour.") as folder, desk.WebService() as service:
        with desk.Vantor(arguments.vantor, service.host, folder, settings=desk.every_event()) as vantor:
            progress = service.line(r"^GET /v2/account/achievements 200 \(key: valid\)")
            report.check(progress, "Vantor fetches the player's progress", vantor.lines)
            visit_scene(report, arguments, folder, vantor, "dark")
            visit_scene(report, arguments, folder, vantor, "bright")
            with desk.Game(arguments.game, folder, scene="bright") as game:
                report.check(desk.wait_until(lambda: "icon" in vantor.windows()), "a new game brings the icon back")
                paste(report, game, arguments.pictures)
                switch_away(report, arguments, folder, game, vantor)
                report.check(desk.wait_until(game.keys_are_up), "no key is left down in the game")
            report.check(vantor.alive(), "Vantor is still running", vantor.lines)
            report.check(not vantor.unexpected_lines(), "Vantor had nothing to complain about", vantor.lines)
    print(f"pictures: {arguments.pictures}")
    print(f"{report.passed} passed, {report.failed} failed")
    return 1 if report.failed else 0


if __name__ == "__main__":
    sys.exit(main())
