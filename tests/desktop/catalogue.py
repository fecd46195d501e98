#!/usr/bin/env python3
"""The program with catalogues from outside: an update that is served, one that is damaged, the player's files, a faulty one."""

import argparse
import json
import os
import subprocess
import sys
import tempfile
from pathlib import Path

TOP = Path(__file__).resolve().parents[2]
sys.dont_write_bytecode = True
sys.path.insert(0, str(TOP / "demo"))
import desk  # noqa: E402

EVENTS = json.loads((TOP / "resources/catalogue/events.json").read_text())


def release(arguments, folder, version, valid_until, name):
    """Signed by minisign itself, with the key for tests; the section of the world bosses bears the name."""
    catalogue = folder / "events.json"
    catalogue.write_text(json.dumps([EVENTS[0], {**EVENTS[1], "name": name}, *EVENTS[2:]]))
    return subprocess.run([TOP / "packaging/catalogue/sign.sh", str(version), valid_until, TOP / "demo/catalogue/test.key",
                           folder / "served", catalogue], env={**os.environ, "VANTOR": str(arguments.vantor)},
                          stdin=subprocess.DEVNULL, capture_output=True, text=True, timeout=60, check=False)


def signing(report, arguments, folder):
    signed = release(arguments, folder, 7, "2026-09-30", "First")
    report.check(signed.returncode == 0 and signed.stdout.startswith("version 7 of "), "a release is signed and holds", signed)
    again = release(arguments, folder, 7, "2026-09-30", "Again")
    report.check(again.returncode == 1 and "version 7 is there already" in again.stderr, "versions only grow", again)
    (folder / "other").mkdir()
    old = release(arguments, folder / "other", 1, "2026-09-30", "Old")
    report.check(old.returncode == 1 and not (folder / "other/served").exists(), "what Vantor refuses is not released", old)


def layers(report, arguments, folder):
    served, data, cache = (folder / name for name in ("served", "data", "cache"))
    own = data / "vantor/catalogue"
    own.mkdir(parents=True)
    with desk.WebService(catalogue=served) as service, desk.Game(arguments.game, folder):
        environment = {"XDG_DATA_HOME": str(data), "XDG_CACHE_HOME": str(cache), "VANTOR_CATALOGUE_HOST": service.host}

        def said(*words):
            return subprocess.run([arguments.vantor, *words], env={**os.environ, **environment}, capture_output=True, text=True,
                                  timeout=30, check=False)

        def section(name):
            return any(row["section"] == name for row in json.loads(said("--timeline", "--json").stdout))

        def start():
            return desk.Vantor(arguments.vantor, service.host, folder, environment=environment)

        with start() as vantor:
            taken = desk.wait_until(lambda: (cache / "vantor/catalogue/state.json").exists())
            report.check(taken and "catalogue version 7 of " in said("--version").stdout, "the update is fetched and kept",
                         (service.lines, vantor.lines))
            report.check(section("First"), "its times are shown")
            report.check(not vantor.unexpected_lines(), "and nothing is said", vantor.lines)
        with start() as vantor:
            report.check(service.line(r"minisig 304"), "the next start is told that nothing is new", service.lines)
        # Another body below the signature, as from a host that was broken into.
        release(arguments, folder, 8, "2026-09-30", "Second")
        file = served / "1/catalogue.json"
        file.write_text(file.read_text().replace("Second", "Forged"))
        with start() as vantor:
            report.check(vantor.line("^The catalogue update was refused: signature: is not this document's$"),
                         "a damaged update is refused in one line", vantor.lines)
            report.check(section("First") and not section("Forged"), "and the old one stays")
        release(arguments, folder, 9, "2026-09-30", "Third")
        (own / "mine.json").write_text(json.dumps([{**EVENTS[2], "name": "Mine"}]))
        (own / "wrong.json").write_text(json.dumps([{**EVENTS[3], "segments": []}]))
        with start() as vantor:
            report.check(vantor.line(r"^Error in your catalogue file wrong\.json: \[0\]\.sequences\."),
                         "a faulty file of the player's is named", vantor.lines)
            report.check(desk.wait_until(lambda: "version 9" in said("--version").stdout), "the next update is taken", vantor.lines)
            report.check(section("Third") and section("Mine") and section(EVENTS[3]["name"]), "the player's file lies over it")
            doctor = said("--doctor").stdout
            report.check("catalogue" in doctor and "mine.json" in doctor and "wrong.json: [0]" in doctor, "--doctor tells all of it",
                         doctor)
            back = said("--catalogue-rollback")
            report.check(back.returncode == 0 and back.stdout.startswith("catalogue version 7"), "--catalogue-rollback goes back", back)
            report.check(section("First"), "to the one before")
            if arguments.pictures:
                pictures(arguments, vantor)
            report.check(not vantor.unexpected_lines("^Error in your catalogue file wrong"), "nothing else is said", vantor.lines)


def pictures(arguments, vantor):
    """The timers and the end of their settings, for looking at."""
    desk.press(*desk.HOTKEY)
    x, y, width, height = vantor.overlay()
    for name, places in {"timers": [(180, 87)], "settings": [(735, 87), (70, 185)]}.items():
        for place in places:
            desk.settled_pixels(x + 40, y + 130, 300, 200)
            desk.click(x + place[0] * width // 920, y + place[1] * height // 600)
        desk.settled_pixels(x + 40, y + 130, 300, 200)
        desk.picture(arguments.pictures / f"{name}.png")
    for _ in range(40):
        desk.click(x + width // 2, y + height // 2, button=5)
    desk.park_pointer()
    desk.settled_pixels(x + 40, y + 130, width - 80, height - 200)
    desk.picture(arguments.pictures / "catalogue.png")


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--vantor", required=True, type=Path)
    parser.add_argument("--game", required=True, type=Path)
    parser.add_argument("--pictures", type=Path, help="a folder for pictures of what is shown")
    arguments = parser.parse_args()
    desk.enter_private_desktop()
    report = desk.Report()
    with tempfile.TemporaryDirectory(prefix="vantor-catalogue.") as folder:
        for scenario in (signing, layers):
            try:
                scenario(report, arguments, Path(folder))
            except (OSError, RuntimeError, KeyError, subprocess.SubprocessError, json.JSONDecodeError) as fault:
                report.check(False, scenario.__name__, repr(fault))
    print(f"{report.passed} passed, {report.failed} failed")
    return 1 if report.failed else 0


if __name__ == "__main__":
    sys.exit(main())
