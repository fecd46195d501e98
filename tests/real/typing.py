#!/usr/bin/env python3
"""What --type types, as a game under Wine reads it that looks at its messages only every so often.

    typing.py                            the short form: German, a game at 30 pictures a second
    typing.py --long                     every layout of LAYOUTS at every interval of FRAMES, some forty minutes
    typing.py --layout fr --frame 33     these alone; --characters says how many of them need AltGr

More than half of the characters need AltGr, the others Shift or nothing. Prints how many came wrong, and "N passed, M failed" as
its last line: up to 33 ms none may of those that the game read in time."""

import argparse
import difflib
import fcntl
import json
import os
import random
import subprocess
import sys
import time

import matrix
from matrix import desk

LAYOUTS = ("us", "de", "fr", "es", "ch", "pl")
FRAMES = (1, 8, 16, 33, 50, 100)
PROMISED = 33
SHORT, LONG, ROUND = 150, 1000, 50  # characters that need AltGr
RIGHT_OPTION = [61, 0]
LETTERS = "".join(map(chr, range(33, 127))) + "€ąćęłńóśźżĄĆĘŁŃÓŚŹŻ"
LINK = "[&AgEAWgAA=]"
MOST = 8  # times as much is typed at most


class Sampler:
    """Texts of the layout's characters, in an order that is the same each time."""

    def __init__(self, vantor):
        keymap = json.loads(subprocess.run([vantor, "--key-map", "--json"], capture_output=True, check=True, timeout=30).stdout)
        typed = {text: keys for text, keys in keymap.items() if text and text in LETTERS}
        self.with_option = sorted(text for text, keys in typed.items() if RIGHT_OPTION in keys)
        self.without = sorted(set(typed) - set(self.with_option))
        self.choice = random.Random(1)

    def text(self):
        """Those that need AltGr, every third in a row with another one."""
        needed = self.with_option or self.without
        return "".join(self.choice.choice(needed) + (self.choice.choice(self.without) if self.choice.random() < 0.7 else "")
                       for _ in range(ROUND))


def type_text(vantor, text):
    begin = time.monotonic()
    typing = subprocess.run([vantor, "--type", "-"], input=text, text=True, capture_output=True, timeout=900)
    if typing.returncode or typing.stderr:
        raise RuntimeError(f"status {typing.returncode}: {typing.stderr}")
    return 1000 * (time.monotonic() - begin)


def compare(text, lines):
    """Where what came is not what was typed, each with whether the game was late about there, and what came in time."""
    at = [index for index, line in enumerate(lines) if line.startswith("char ")]
    came = "".join(chr(int(lines[index].split()[1], 16)) for index in at)

    def look_behind(index):
        return next((there for there in range(index, len(lines)) if lines[there] in ("in time", "late")), len(lines))

    def is_late(begin, end):
        """What is lost leaves no line, so the looks about there count: from the character before to the one behind."""
        first = at[begin - 1] if begin else 0
        last = look_behind(at[end]) if end < len(at) else len(lines)
        return "late" in lines[first:last + 1]

    wrong = [(text[begin:end], came[there:until], is_late(there, until))
             for kind, begin, end, there, until in difflib.SequenceMatcher(None, text, came, False).get_opcodes() if kind != "equal"]
    in_time = [each for each, index in zip(came, at) if "late" not in lines[look_behind(index):look_behind(index) + 1]]
    return wrong, in_time


def measure(vantor, layout, frame, count):
    """Whether what a game read in time is right, and a line about all of it and about how long a chat link takes. Where the game
    is late, since the machine is busy, more is typed until it has read as much in time."""
    subprocess.run(["setxkbmap", "-layout", layout], check=True, timeout=30)
    sampler = Sampler(vantor)
    wrong, in_time, sent = [], 0, ""
    with matrix.WineGame("--frame", str(frame)) as game:
        while in_time < count and len(sent) < MOST * count:
            since = len(game.lines)
            text = sampler.text()
            type_text(vantor, text)
            sent += text
            desk.wait_until(lambda: len(game.typed(since)) >= len(text), matrix.PATIENCE)
            more, read = compare(text, game.lines[since:])
            wrong += more
            in_time += sum(1 for each in read if not sampler.with_option or each in sampler.with_option)
        link = type_text(vantor, LINK) - type_text(vantor, "")

    def count_of(pieces, among=None):
        return sum(sum(1 for each in there if each in among) if among else max(len(there), len(here)) for there, here, _ in pieces)

    faults = [piece for piece in wrong if not piece[2]]
    altgr = sum(1 for each in sent if each in sampler.with_option)
    said = (f"{count_of(wrong)} of {len(sent)} wrong, {count_of(wrong, sampler.with_option or ' ')} of the {altgr} with AltGr; of "
            f"{in_time} such that were read in time {count_of(faults)} wrong; a chat link takes {link:.0f} ms")
    examples = ", ".join(f"{there!r} as {here!r}" for there, here, _ in faults[:4])
    return not faults and in_time >= count, said + (f"; {examples}" if examples else "")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--long", action="store_true")
    parser.add_argument("--layout", action="append", choices=LAYOUTS)
    parser.add_argument("--frame", action="append", type=int)
    parser.add_argument("--characters", type=int, default=0)
    parser.add_argument("--vantor", default=str(matrix.VANTOR))
    arguments = parser.parse_args()
    if "VANTOR_PRIVATE_DESKTOP" not in os.environ:
        matrix.prepare()
        with open(matrix.BUILD / "lock", "w", encoding="ascii") as lock:
            fcntl.flock(lock, fcntl.LOCK_EX)
            desktop = [matrix.TOP / "demo/private_desktop.sh", sys.executable, __file__, *sys.argv[1:]]
            return subprocess.run(list(map(str, desktop)), env={**os.environ, **matrix.desktop_environment("openbox-none-full")},
                                  check=False).returncode
    layouts = arguments.layout or (LAYOUTS if arguments.long else ("de",))
    frames = arguments.frame or (FRAMES if arguments.long else (PROMISED,))
    report = desk.Report()
    try:
        for layout in layouts:
            for frame in frames:
                many = LONG if arguments.long and frame == PROMISED else SHORT
                right, said = measure(arguments.vantor, layout, frame, arguments.characters or many)
                print(f"{layout} read every {frame} ms: {said}", flush=True)
                if frame <= PROMISED:
                    report.check(right, f"{layout} read every {frame} ms arrives", said)
    finally:
        subprocess.run(["wineserver", "-k"], env={**os.environ, **matrix.WINE}, check=False, capture_output=True, timeout=60)
    print(f"{report.passed} passed, {report.failed} failed")
    return 1 if report.failed else 0


if __name__ == "__main__":
    sys.exit(main())
