#!/usr/bin/env python3
"""Runs `vantor --timeline --json` for many zones, moments, filters and catalogues and compares each whole list with the
independent computation beside this file.

    compare.py VANTOR CATALOGUE

CATALOGUE is the one that is built into VANTOR. Needs no display. The random cases are the same in every run.
"""

import json
import os
import random
import subprocess
import sys
import tempfile
from concurrent.futures import ThreadPoolExecutor
from datetime import datetime, timedelta, timezone
from pathlib import Path
from zoneinfo import ZoneInfo

import timeline_oracle as oracle

ZONES = """UTC Europe/Berlin Europe/Dublin Africa/Casablanca Asia/Tehran Asia/Kolkata Asia/Kathmandu Australia/Lord_Howe
Pacific/Chatham Pacific/Apia Pacific/Kiritimati Etc/GMT+12 America/St_Johns America/New_York America/Los_Angeles
Pacific/Marquesas Atlantic/Azores Antarctica/Troll""".split()
MOMENTS = ["2026-01-01T00:00", "2026-07-14T23:59:59", "2026-11-22T10:00", "2026-02-28T01:30", "2024-02-29T12:34:56Z",
           "2026-06-01T05:00:00+05:45", "2011-12-30T12:00", "1999-12-31"]
FILTERS = list(oracle.DEFAULT_FILTERS)


class Runner:
    def __init__(self, program, folder):
        self.program = program
        self.folder = folder
        self.settings_files = {}

    def run(self, *arguments, zone="UTC"):
        environment = {k: v for k, v in os.environ.items() if not k.startswith("VANTOR_") and k != "DISPLAY"}
        return subprocess.run([self.program, *arguments], env=environment | {"TZ": zone}, capture_output=True, text=True,
                              timeout=60)

    def settings(self, stored):
        """A settings file that holds these, written by the program itself."""
        key = tuple(sorted(stored.items()))
        if key not in self.settings_files:
            file = self.folder / f"settings-{len(self.settings_files)}"
            changes = [part for name, value in key for part in ("--set", f"{name}={json.dumps(value)}")]
            if changes:
                done = self.run("--settings", str(file), *changes)
                if done.returncode:
                    sys.exit(f"--set {changes}: status {done.returncode}: {done.stderr.strip()}")
            self.settings_files[key] = str(file)
        return self.settings_files[key]


class Case:
    def __init__(self, zone="UTC", now="2026-11-22T10:00", stored=None, window=False, catalogue=None):
        self.zone, self.now, self.stored, self.window = zone, now, stored or {}, window
        self.catalogue = catalogue  # file and sections, or nothing for the built-in one

    def __str__(self):
        file = self.catalogue[0] if self.catalogue else "built-in"
        return f"TZ={self.zone} --now {self.now} {self.stored} window={self.window} catalogue={file}"


def changes_of_offset(zone, year):
    """The seconds just before and at each change, in UTC."""
    moment = datetime(year, 1, 1, tzinfo=timezone.utc)
    step = timedelta(minutes=30)
    while moment.year == year:
        if moment.astimezone(zone).utcoffset() != (moment + step).astimezone(zone).utcoffset():
            change = moment + step
            while (change - timedelta(seconds=1)).astimezone(zone).utcoffset() == change.astimezone(zone).utcoffset():
                change -= timedelta(seconds=1)
            yield from (change - timedelta(seconds=1), change)
        moment += step


def local_texts_around(moment, zone):
    """Written as local time: among them times that occur twice, and times that never occur."""
    for minutes in (-91, -45, -1, 0, 15, 59, 61):
        wall = moment.astimezone(zone).replace(tzinfo=None) + timedelta(minutes=minutes)
        yield wall.isoformat(timespec="seconds")


def random_catalogue(chance):
    def rewards():
        return {key: value for key, value in {
            "items": chance.choice([None, [], [1]]),
            "random_items": chance.choice([None, [], [2]]),
            "achievements": chance.choice([None, [], [3, 4]]),
            "items_for_achievements": chance.choice([None, [], [{"i": 5, "a": 6}]]),
        }.items() if value is not None}

    def event():
        made = {"id": chance.randrange(0, 6), "name": chance.choice(["", "Grüße \"\\\t🐉", "Boss"])}
        if chance.random() < 0.5:
            made["chatlink"] = chance.choice(["", "[&BEwCAAA=]"])
        if chance.random() < 0.5:
            made["rewards"] = rewards()
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
    for zone_name in ZONES:
        zone = ZoneInfo(zone_name)
        for now in MOMENTS:
            yield Case(zone_name, now)
            yield Case(zone_name, now, {"timer.isTimer": True}, window=True)
        for change in list(changes_of_offset(zone, 2026))[:4]:
            yield Case(zone_name, change.isoformat(), window=True)
            for text in local_texts_around(change, zone):
                yield Case(zone_name, text, window=True)
    for bits in range(2 ** len(FILTERS)):
        yield Case(stored={key: bool(bits >> place & 1) for place, key in enumerate(FILTERS)})
    for hours in (1, 2.5, 6, 24, 0, -1):
        yield Case("Europe/Berlin", "2026-07-14T01:30", {"timer.windowDuration": hours}, window=True)
    chance = random.Random(864)
    for number in range(300):
        file = folder / f"catalogue-{number}.json"
        sections = random_catalogue(chance)
        file.write_text(json.dumps(sections, ensure_ascii=chance.random() < 0.5), encoding="utf-8")
        # sets of a few sizes, so that settings files are shared
        stored = {key: True for key in chance.choice([FILTERS, FILTERS[:1], FILTERS[2:4], FILTERS[4:], []])}
        yield Case(chance.choice(ZONES), chance.choice(MOMENTS), stored, chance.random() < 0.3, (file, sections))


def difference(runner, case, built_in):
    """Nothing when the program and the oracle agree."""
    file, sections = case.catalogue or (None, built_in)
    arguments = ["--timeline", "--json", "--now", case.now, "--settings", runner.settings_files[tuple(sorted(case.stored.items()))]]
    if case.window:
        arguments.append("--window")
    if file:
        arguments += ["--catalogue", str(file)]
    zone = ZoneInfo(case.zone)
    filters = oracle.DEFAULT_FILTERS | {key: value for key, value in case.stored.items() if key in FILTERS}
    hours = case.stored.get("timer.windowDuration", 3.0) if case.window else None
    fault = None
    try:
        expected = oracle.timeline(sections, filters, oracle.moment(case.now, zone), zone, window_hours=hours)
    except oracle.Fault as found:
        fault = found

    done = runner.run(*arguments, zone=case.zone)
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
    for place, (theirs, ours) in enumerate(zip(printed, expected)):
        if theirs != ours:
            return f"[{place}]: printed {theirs}, expected {ours}"
    return f"{len(printed)} printed, {len(expected)} expected"


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    built_in = json.loads(Path(sys.argv[2]).read_text(encoding="utf-8"))
    with tempfile.TemporaryDirectory() as name:
        runner = Runner(os.path.abspath(sys.argv[1]), Path(name))
        every = list(cases(Path(name)))
        for case in every:
            runner.settings(case.stored)
        with ThreadPoolExecutor(os.cpu_count()) as pool:
            found = list(pool.map(lambda case: difference(runner, case, built_in), every))
    for case, what in zip(every, found):
        if what:
            print(f"{case}\n    {what}")
    failed = sum(1 for what in found if what)
    print(f"{len(found) - failed} passed, {failed} failed")
    return 1 if failed else 0


sys.exit(main())
