#!/usr/bin/env python3
"""Holds the embedded catalogue against a file of the wiki's event timer data: compare.py TIMERS.json

Prints the differences of the two UTC days, one line for each event name and chat code with all its times; nothing and status 0
where there are none. With --day alone it prints our day."""

import argparse
import difflib
import json
import sys
from pathlib import Path

OURS = Path(__file__).resolve().parents[2] / "resources/catalogue/events.json"
DAY = 24 * 60


def sections(document):
    """Whatever holds segments and sequences, however deep the file keeps it."""
    if isinstance(document, dict) and {"segments", "sequences"} <= document.keys():
        yield document
    elif isinstance(document, (dict, list)):
        for part in document.values() if isinstance(document, dict) else document:
            yield from sections(part)


def segments(section):
    """By number: a list of ours names it "id", an object of theirs has it as the key."""
    found = section["segments"]
    return {each["id"]: each for each in found} if isinstance(found, list) else {int(key): each for key, each in found.items()}


def day(document):
    minutes = {}
    for section in sections(document):
        if not section.get("active", True):
            continue
        known, at = segments(section), 0
        steps = list(section["sequences"]["partial"])
        while at < DAY:
            for step in steps:
                event = known[step["r"]]
                if event.get("name") and event.get("chatlink"):
                    minutes.setdefault((event["name"], event["chatlink"]), set()).update(
                        range(at, min(at + step["d"], DAY)))
                at += step["d"]
            steps = section["sequences"]["pattern"]
    return [f"{name} {code}: {spans(taken)}" for (name, code), taken in sorted(minutes.items())]


def spans(minutes):
    clock = "{:02d}:{:02d}".format
    starts = [minute for minute in sorted(minutes) if minute - 1 not in minutes]
    ends = [minute + 1 for minute in sorted(minutes) if minute + 1 not in minutes]
    return ", ".join(f"{clock(*divmod(start, 60))}-{clock(*divmod(end, 60))}" for start, end in zip(starts, ends))


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("timers", type=Path, nargs="?")
    parser.add_argument("--day", action="store_true")
    arguments = parser.parse_args()
    ours = day(json.loads(OURS.read_text()))
    if arguments.day:
        print("\n".join(ours))
        return 0
    if not arguments.timers:
        parser.error("which timer file?")
    theirs = day(json.loads(arguments.timers.read_text()))
    differences = list(difflib.unified_diff(theirs, ours, str(arguments.timers), "catalogue", n=0, lineterm=""))
    print("\n".join(differences), end="\n" if differences else "")
    return 1 if differences else 0


sys.exit(main())
