#!/usr/bin/env python3
"""Who may include whom: holds every #include below src/ against the rooms' rules. The build guards the same by what each
room links; this also catches headers that are reachable by chance. And that every planned break still fits its line."""

import re
import sys
from pathlib import Path

TOP = Path(__file__).resolve().parents[2]
SOURCE = TOP / "src"
# room: the rooms that it may include besides itself, the base and the seam
RULES = {
    "base": set(),
    "platform": set(),
    "data": set(),
    "timers": {"data"},
    "catalogue": {"data", "timers"},
    "input": {"data"},
    "browser": set(),
    "accounts": {"data"},
    "feedback": {"data", "input"},
    "translators": {"data"},
    "app": {"data", "timers", "catalogue", "input", "browser", "accounts"},
    "app/cli": {"app", "data", "timers", "catalogue", "input"},
    "ui": set(),
    "input/view": {"input", "data", "ui"},
    "timers/view": {"timers", "data", "ui", "input", "input/view"},
    "accounts/view": {"accounts", "data", "ui", "input"},
    "feedback/view": {"feedback", "data", "ui", "input"},
    "translators/view": {"translators", "data", "ui"},
    "browser/view": {"browser", "data", "ui"},
    "app/view": {"app", "data", "timers", "catalogue", "input", "browser", "accounts", "feedback", "translators", "ui", "timers/view",
                 "input/view", "accounts/view", "feedback/view", "translators/view", "browser/view"},
    "platform/qt": set(),
    "platform/linux": set(),
    "platform/linux/keys": {"platform/linux"},
    "platform/linux/desktop": {"platform/linux"},
    "platform/linux/services": {"platform/linux", "platform/linux/desktop"},
    "platform/macos": set(),
    "platform/webengine": {"platform/qt"},
}
# Rooms that draw, or speak to the system: what they link decides.
OPEN_ROOMS = {"ui", "timers/view", "input/view", "accounts/view", "feedback/view", "translators/view", "browser/view",
              "app/view", "platform/qt", "platform/linux", "platform/linux/keys", "platform/linux/desktop",
              "platform/linux/services", "platform/macos", "platform/webengine"}
TOOLKIT_FREE = {"base", "platform"}
X11_ROOMS = {"platform/linux", "platform/linux/keys", "platform/linux/desktop", "platform/linux/services"}


def room_of(path: str) -> str:
    parts = path.split("/")[:-1]
    return "/".join(parts)


def main() -> int:
    faults = []
    for file in sorted(SOURCE.rglob("*")):
        if file.suffix not in {".h", ".cpp", ".mm"}:
            continue
        here = room_of(file.relative_to(SOURCE).as_posix())
        if here and here not in RULES:
            faults.append(f"{file}: no rules for the room {here}")
            continue
        for number, line in enumerate(file.read_text().splitlines(), 1):
            where = f"{file.relative_to(SOURCE)}:{number}"
            if re.match(r"\s*#\s*if(n?def)?\b.*(__linux__|__APPLE__|_WIN32|Q_OS_)", line):
                faults.append(f"{where}: the operating system is asked for outside CMake")
            if not here:  # the programs themselves wire every room
                continue
            found = re.match(r'\s*#\s*(?:include|import)\s+([<"])([^>"]+)[>"]', line)
            if not found:
                continue
            kind, name = found.groups()
            if kind == '"':
                there = room_of(name)
                if there not in {here, "base", "platform"} and there not in RULES[here]:
                    faults.append(f"{where}: {here} may not include {name}")
            elif name.startswith("Q"):
                if here in TOOLKIT_FREE:
                    faults.append(f"{where}: the seam includes no toolkit header")
                elif here not in OPEN_ROOMS and not name.startswith("QtCore/"):
                    faults.append(f"{where}: {here} includes {name}, which is not QtCore's")
            elif re.match(r"(xcb|X11|xkbcommon)/", name) and here not in X11_ROOMS:
                faults.append(f"{where}: X11 outside platform/linux")
            elif re.match(r"(Foundation|AppKit|CoreGraphics|WebKit|Security)/", name) and here != "platform/macos":
                faults.append(f"{where}: a framework of macOS outside platform/macos")
    # A break that fits no line any more would be tried by nobody.
    sys.dont_write_bytecode = True
    sys.path.insert(0, str(TOP / "tests/mutate"))
    for mutants in sorted((TOP / "tests/mutate").glob("mutants*.txt")):
        import mutate
        faults += mutate.misfits(mutate.read_list(mutants))
    print("\n".join(faults) if faults else "layers: every include points down")
    return 1 if faults else 0


sys.exit(main())
