#!/usr/bin/env python3
"""Runs `vantor --timeline --json` for many zones, moments, filters and catalogues and compares each whole list with the
independent computation beside this file.

    compare.py VANTOR CATALOGUE

CATALOGUE is the one that is built into VANTOR. Needs no display. The random cases are the same in every run.
"""

import itertools
import json
import os
import random
import subprocess
import sys
import tempfile
from concurrent.futures import ThreadPoolExecutor
from datetime import datetime, timedelta, timezone
from pathlib import Path
from typing import NamedTuple
from zoneinfo import ZoneInfo

import timeline_oracle as oracle

ZONES = """UTC Europe/Berlin Europe/Dublin Africa/Casablanca Asia/Tehran Asia/Kolkata Asia/Kathmandu Australia/Lord_Howe
Pacific/Chatham Pacific/Apia Pacific/Kiritimati Etc/GMT+12 America/St_Johns America/New_York America/Los_Angeles
Pacific/Marquesas Atlantic/Azores Antarctica/Troll""".split()
MOMENTS = ["2026-01-01T00:00", "2026-07-14T23:59:59", "2026-11-22T10:00", "2026-02-28T01:30", "2024-02-29T12:34:56Z",
           "2026-06-01T05:00:00+05:45", "2011-12-30T12:00", "1999-12-31"]
FILTERS = list(oracle.DEFAULT_FILTERS)


class Case(NamedTuple):
    zone: str = "UTC"
    now: str = "2026-11-22T10:00"
    stored: dict = {}
    window: bool = False
    file: Path | None = None  # the built-in catalogue without one


def run(program, *arguments, zone="UTC"):
    # VANTOR_MUTANT is the fault that tests/mutate chooses for this run.
    environment = {k: v for k, v in os.environ.items()
                   if k == "VANTOR_MUTANT" or not k.startswith("VANTOR_") and k != "DISPLAY"}
    return subprocess.run([program, *arguments], env=environment | {"TZ": zone}, capture_output=True, text=True, timeout=60)


def settings_file(folder, stored):
    return folder / ("settings " + " ".join(f"{key}={value}" for key, value in stored.items()))


def changes_of_offset(zone, year):
    """The seconds just before and at each change, in UTC."""
    offset = lambda second: datetime.fromtimestamp(second, zone).utcoffset()
    start, end = (int(datetime(each, 1, 1, tzinfo=timezone.utc).timestamp()) for each in (year, year + 1))
    for before in range(start, end, 1800):
        if offset(before) != offset(before + 1800):
            change = next(second for second in range(before, before + 1801) if offset(second) != offset(before))
            yield from (datetime.fromtimestamp(each, timezone.utc) for each in (change - 1, change))


def random_catalogue(chance):
    def event():
        made = {"id": chance.randrange(0, 6), "name": chance.choice(["", "Grüße \"\\\t🐉", "Boss"])}
        if chance.random() < 0.5:
            made["chatlink"] = chance.choice(["", "[&BEwCAAA=]"])
        if chance.random() < 0.5:
            lists = {"items": [1], "random_items": [2], "achievements": [3, 4], "items_for_achievements": [{"i": 5, "a": 6}]}
            made["rewards"] = {key: chance.choice([[], some]) for key, some in lists.items() if chance.random() < 0.7}
        if chance.random() < 0.4:
            made["lfg"] = chance.choice([0, 10, -5, 1500, 2**62])
        return made

    def steps(most, durations):
        return [{"r": chance.choice(ids), "d": chance.choice(durations)} for _ in range(chance.randrange(0, most))]

    sections = []
    for _ in range(chance.randrange(0, 4)):
        segments = [event() for _ in range(chance.randrange(1, 6))]
        ids = [one["id"] for one in segments] + ([9] if chance.random() < 0.1 else [])
        partial = steps(4, [0, 15, 600, 2000, -45] + ([2**63 - 100] if chance.random() < 0.1 else []))
        pattern = steps(5, chance.choice([[30, 45], [120, 0], [90, -30, 60], [0], [-10, 5]]))
        sections.append({"id": chance.randrange(0, 100), "category": chance.choice(["Core", "Special Events"]),
                         "name": chance.choice(["Ort", "Ley-Line \"x\""]), "active": chance.random() < 0.8,
                         "segments": segments, "sequences": {"partial": partial, "pattern": pattern}})
    return sections


def cases(folder):
    for zone, now in itertools.product(ZONES, MOMENTS):
        yield Case(zone, now)
        yield Case(zone, now, {"timer.isTimer": True}, window=True)
    for zone in ZONES:
        for change in list(changes_of_offset(ZoneInfo(zone), 2026))[:4]:
            yield Case(zone, change.isoformat(), window=True)
            # Written as local time: among them times that occur twice, and times that never occur.
            for minutes in (-91, -45, -1, 0, 15, 59, 61):
                local = change.astimezone(ZoneInfo(zone)).replace(tzinfo=None) + timedelta(minutes=minutes)
                yield Case(zone, local.isoformat(), window=True)
    for values in itertools.product((False, True), repeat=len(FILTERS)):
        yield Case(stored=dict(zip(FILTERS, values)))
    for hours in (1, 2.5, 6, 24, 0, -1):
        yield Case("Europe/Berlin", "2026-07-14T01:30", {"timer.windowDuration": hours}, window=True)
    chance = random.Random(864)
    for number in range(300):
        file = folder / f"catalogue-{number}.json"
        file.write_text(json.dumps(random_catalogue(chance), ensure_ascii=chance.random() < 0.5), encoding="utf-8")
        # sets of a few sizes, so that settings files are shared
        stored = dict.fromkeys(chance.choice([FILTERS, FILTERS[:1], FILTERS[2:4], FILTERS[4:], []]), True)
        yield Case(chance.choice(ZONES), chance.choice(MOMENTS), stored, chance.random() < 0.3, file)


def difference(program, folder, case, built_in):
    """Nothing when the program and the oracle agree."""
    zone = ZoneInfo(case.zone)
    filters = oracle.DEFAULT_FILTERS | {key: value for key, value in case.stored.items() if key in FILTERS}
    hours = case.stored.get("timer.windowDuration", 3.0) if case.window else None
    fault = None
    try:
        sections = json.loads((case.file or built_in).read_text(encoding="utf-8"))
        expected = oracle.timeline(sections, filters, oracle.moment(case.now, zone), zone, window_hours=hours)
    except oracle.Fault as found:
        fault = found

    arguments = ["--timeline", "--json", "--now", case.now, "--settings", settings_file(folder, case.stored)]
    arguments += (["--window"] if case.window else []) + (["--catalogue", case.file] if case.file else [])
    done = run(program, *arguments, zone=case.zone)
    if fault:
        lines = done.stderr.splitlines()
        named = len(lines) == 1 and f"section {fault.section} " in lines[0] and f", {fault.place}: " in lines[0]
        if done.returncode == 70 and not done.stdout and named:
            return None
        return f"expected status 70 for {fault}, got {done.returncode}: {done.stderr.strip()}"
    if done.returncode or done.stderr:
        return f"status {done.returncode}: {done.stderr.strip()}"
    printed = json.loads(done.stdout)
    # One too large to be exact is printed without a fraction, and would be read as an integer.
    for row in printed:
        row["id"] = float(row["id"])
    if printed == expected:
        return None
    different = [f"[{place}]: printed {theirs}, expected {ours}"
                 for place, (theirs, ours) in enumerate(zip(printed, expected)) if theirs != ours]
    return (different or [f"{len(printed)} printed, {len(expected)} expected"])[0]


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    program = os.path.abspath(sys.argv[1])
    with tempfile.TemporaryDirectory() as name:
        folder = Path(name)
        every = list(cases(folder))
        # Each settings file is written by the program itself.
        for file, stored in {settings_file(folder, case.stored): case.stored for case in every if case.stored}.items():
            changes = [part for key, value in stored.items() for part in ("--set", f"{key}={json.dumps(value)}")]
            done = run(program, "--settings", file, *changes)
            if done.returncode:
                sys.exit(f"--set {changes}: status {done.returncode}: {done.stderr.strip()}")
        with ThreadPoolExecutor(os.cpu_count()) as pool:
            found = list(pool.map(lambda case: difference(program, folder, case, Path(sys.argv[2])), every))
    for case, what in zip(every, found):
        if what:
            print(f"{case}\n    {what}")
    failed = sum(1 for what in found if what)
    print(f"{len(found) - failed} passed, {failed} failed")
    return 1 if failed else 0


sys.exit(main())
