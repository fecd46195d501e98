#!/usr/bin/env python3
"""Breaks the code on purpose and counts which breaks the tests notice: mutate.py [--only TEXT] [ROOM...]

Every line of mutants.txt is "room | file | old text | new text"; the old text stands exactly once in the file. All of them
are compiled into one build of a copy of the tree, build/mutate, and VANTOR_MUTANT chooses one while a test runs:
    an expression        (mutant ? (new) : (old))
    a statement, ";"     { if (mutant) { new } else { old } }; a new text that is empty leaves the statement out
    a new text with MUTANT in it stands as it is, MUTANT being the condition, for a place where neither fits
A mutant is killed when a program of its room goes red, or hangs. Without a room all run but those that need a desktop.
"""
import argparse
import concurrent.futures
import os
import pathlib
import re
import shutil
import signal
import subprocess
import sys
import zlib

TOP = pathlib.Path(__file__).resolve().parents[2]
COPY = TOP / "build/mutate"
BUILD = COPY / "build/release"  # at the same place as in the tree, so that the compiler cache knows what is not mutated
HEADER = """#pragma once
#include <cstdlib>
inline bool isMutant(unsigned long number) {
    static const char* const chosen = std::getenv("VANTOR_MUTANT");
    static const unsigned long wanted = chosen ? std::strtoul(chosen, nullptr, 10) : 0;
    return wanted == number;
}
"""
WANTED = 0.9
LIMIT = 300  # seconds that a green run never takes; a hanging mutant is killed

UNIT = ["tests/unit_tests"]
VIEWS = ["tests/views_tests"]
THREADED = ["tests/threaded_tests"]
DESKTOP = ["demo/private_desktop.sh", "tests/desktop_tests"]
MACOS = ["build/macos/macos_tests"]  # mutants.macos.txt, with --list
ORACLE = ["python3", "tests/oracle/compare.py", "src/vantor", "resources/catalogue/events.json"]
# The longest part of a room's name decides: its programs, and the suites that are asked before all others.
PROGRAMS = {
    "": ([UNIT, VIEWS], "Browser*:Web*:Lazy*:Style*:Feedback*:Appreciation*:ScriptGrid*:Accounts*:Credential*:Http*:JsonDefaults*"),
    "data": ([UNIT, THREADED], "JsonFetchable*:DataChain*:Records*:ScriptGrid*:Feedback*"),
    "timers": ([UNIT, VIEWS, ORACLE], "Time*:Watched*:Visible*:Occurrence*:Empty*:WordSearch*:Achievement*:Bestiary*"),
    "catalogue": ([UNIT], "Layer*:Player*:Update*:Festivals*:Catalogue*:Fetch*:QtDownload*"),
    "input": ([UNIT, VIEWS], "KeyMap*:Clipboard*:Chat*:Hotkey*:ReadableKey*"),
    "app": ([UNIT, VIEWS], "App*:Api*:Settings*:Enabled*:StatusMenu*:Hotkey*:WindowPlaces*:Achievement*:CommandLine*:Moment*"
                           ":SystemClock*:TimelineCommand*"),
    "view": ([VIEWS], "Timers*:Watched*:Input*:Emoji*:Settings*:Browser*:KitWindows*:Feedback*:Bestiary*"),
    "ui": ([VIEWS], "Kit*-KitWindows*"),
    "platform/linux/keys": ([UNIT, DESKTOP], "Key*:Pending*:Tracked*:Xkb*:Neutral*:Guardian*"),
    "platform/linux/desktop": ([UNIT, DESKTOP], "DesktopEntries*:Workspace*"),
    "platform/linux/services": ([UNIT, DESKTOP], "*Keyring*:Tray*:ReducedMotion*:Doctor*"),
    "macos": ([MACOS], ""),
}


class Mutant:
    def __init__(self, line):
        self.room, self.file, self.old, self.new = (part.strip() for part in line.split(" | "))
        self.number = zlib.crc32(f"{self.file}|{self.old}|{self.new}".encode())
        known = "view" if self.room.endswith("/view") else max((name for name in PROGRAMS if self.room.startswith(name)), key=len)
        self.programs, self.suites = PROGRAMS[known]

    def text(self):
        chosen = f"::isMutant({self.number}UL)"
        if "MUTANT" in self.new:
            return self.new.replace("MUTANT", chosen)
        if self.old.endswith(";"):
            return f"{{ if ({chosen}) {{ {self.new} }} else {{ {self.old} }} }}"
        return f"({chosen} ? ({self.new}) : ({self.old}))"


def read_list(path):
    return [Mutant(re.sub(r"\|\s*$", "| ", line)) for line in path.read_text().splitlines() if line and line[0] != "#"]


def misfits(mutants):  # a line for each whose old text the code has no longer, or more than once
    texts = {file: (TOP / file).read_text() if (TOP / file).is_file() else "" for file in {mutant.file for mutant in mutants}}
    return [f"mutate: not once in {each.file}: {each.old}" for each in mutants if texts[each.file].count(each.old) != 1]


def mutated(file, text, mutants):
    """The text with every mutant of the file in it."""
    places = sorted(((text.index(mutant.old), mutant) for mutant in mutants), key=lambda place: place[0], reverse=True)
    end = len(text)
    for start, mutant in places:
        if start + len(mutant.old) > end:
            sys.exit(f"mutate: {file}: two mutants overlap at \"{mutant.old}\"")
        text = text[:start] + mutant.text() + text[start + len(mutant.old):]
        end = start
    return '#include "mutant.h"\n' + text


def make_copy(mutants):
    """Writes what has changed only, so that only that is built again."""
    listed = subprocess.run(["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"], cwd=TOP,
                            capture_output=True, check=True, text=True).stdout
    files = {name: (TOP / name).read_bytes() for name in listed.split("\0") if name and (TOP / name).is_file()}
    by_file = {}
    for mutant in mutants:
        by_file.setdefault(mutant.file, []).append(mutant)
    for name, some in by_file.items():
        files[name] = mutated(name, files[name].decode(), some).encode()
    files["src/mutant.h"] = HEADER.encode()
    for name, content in files.items():
        target = COPY / name
        if not target.is_file() or target.read_bytes() != content:
            target.parent.mkdir(parents=True, exist_ok=True)
            target.write_bytes(content)
            if (TOP / name).is_file():
                shutil.copymode(TOP / name, target)
    for folder in {name.split("/")[0] for name in files}:
        for old in (COPY / folder).rglob("*"):
            if old.is_file() and str(old.relative_to(COPY)) not in files:
                old.unlink()


def build(programs):
    targets = {pathlib.Path(word).name for program in programs for word in program if is_built(word)}
    if MACOS in programs:
        configured = ["cmake", "-S", "tests/macdouble", "-B", "build/macos", "-G", "Ninja", "-DVANTOR_MUTATED=ON"]
        for command in (configured, ["ninja", "-C", "build/macos", "macos_tests"]):
            if subprocess.run(command, cwd=COPY, stdout=subprocess.DEVNULL).returncode:
                sys.exit("mutate: the mutated copy does not build")
    targets = sorted(targets and targets | {"vantor-guardian", "standin-game"})
    if targets and subprocess.run(["packaging/build.sh", "release", *targets], cwd=COPY).returncode:
        sys.exit("mutate: the mutated copy does not build")


def is_built(word):
    return word.startswith(("tests/", "src/")) and not word.endswith(".py")


def is_green(program, number=0, suites=None):
    """Runs a program until its first red test."""
    command = [str(BUILD / word) if is_built(word) else word for word in program]
    if program != ORACLE:
        command += ["--gtest_fail_fast", "--gtest_brief=1"] + ([f"--gtest_filter={suites}"] if suites else [])
    overrides = dict(os.environ, VANTOR_MUTANT=str(number), QT_QPA_PLATFORM="offscreen")
    run = subprocess.Popen(command, cwd=COPY, env=overrides, start_new_session=True, stdin=subprocess.DEVNULL,
                           stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    try:
        return run.wait(LIMIT) == 0
    except subprocess.TimeoutExpired:
        return False
    finally:
        # A private desktop clears up after itself when it is asked.
        for kind in (signal.SIGTERM, signal.SIGKILL):
            try:
                os.killpg(run.pid, kind)
                run.wait(5)
            except (ProcessLookupError, subprocess.TimeoutExpired):
                pass


def survives(mutant):
    first = [program for program in mutant.programs if program not in (ORACLE, THREADED)]
    return (all(is_green(program, mutant.number, mutant.suites) for program in first)
            and all(is_green(program, mutant.number) for program in mutant.programs))


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("rooms", nargs="*")
    parser.add_argument("--only", default="", help="only mutants whose line has this text")
    parser.add_argument("--list", type=pathlib.Path, default=pathlib.Path(__file__).with_name("mutants.txt"))
    options = parser.parse_args()
    known = read_list(options.list)
    if lost := misfits(known):
        sys.exit("\n".join(lost))
    if wrong := set(options.rooms) - {mutant.room for mutant in known}:
        sys.exit(f"mutate: no mutants of {', '.join(sorted(wrong))}")
    make_copy(known)
    chosen = [mutant for mutant in known
              if (mutant.room in options.rooms or not options.rooms and DESKTOP not in mutant.programs)
              and options.only in f"{mutant.file} {mutant.old} {mutant.new}"]
    programs = [program for mutant in chosen for program in mutant.programs]
    build(programs)
    for program in {tuple(program) for program in programs}:
        if not is_green(list(program)):
            sys.exit(f"mutate: {' '.join(program)} is red without any mutant")
    table = {}
    with concurrent.futures.ThreadPoolExecutor(2) as pool:
        for mutant, survived in zip(chosen, pool.map(survives, chosen)):
            table.setdefault(mutant.room, []).append(not survived)
            if survived:
                print(f"survived: {mutant.room} | {mutant.file} | {mutant.old} | {mutant.new}", flush=True)
    for room, kills in sorted(table.items()):
        print(f"{room:28} {sum(kills):3} of {len(kills):3}")
    killed, tried = sum(map(sum, table.values())), len(chosen)
    print(f"{killed} of {tried} mutants killed")
    sys.exit(0 if killed >= WANTED * tried else 1)


if __name__ == "__main__":
    main()
