#!/usr/bin/env python3
"""Makes the Debian package of a build folder, looks at it as a distribution would, installs it into a root of its own, plays the
installed program in a private desktop, and removes it. Prints "N passed, M failed" as its last line."""

import argparse
import configparser
import json
import os
import re
import shutil
import struct
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ElementTree
from pathlib import Path

TOP = Path(__file__).resolve().parents[2]
sys.dont_write_bytecode = True
sys.path.insert(0, str(TOP / "demo"))
import desk  # noqa: E402

IDENTIFIER = "orvendel.Vantor"
# The identifier is that of the program on every system, and older than the rule that this name breaks.
APPSTREAM = ["appstreamcli", "validate", "--no-net", "--override", "cid-desktopapp-is-not-rdns=pedantic"]
# The developer is told twice: AppStream 1.0 finds the older form outdated, and what came before does not know the newer one.
TOLD_TWICE = {"unknown-tag developer", "developer-name-tag-deprecated"}


def run(*command, **options):
    return subprocess.run([str(word) for word in command], capture_output=True, text=True, timeout=120, **options)


def silent(report, text, *command, **options):
    """A checker that ends with 0 and says nothing."""
    result = run(*command, **options)
    return report.check(result.returncode == 0 and not (result.stdout + result.stderr).strip(), text,
                        result.stdout + result.stderr)


class Root:
    """A root folder with a package database of its own, in which everything counts as installed that the machine has: what
    the package depends on must be there."""

    def __init__(self, folder):
        self.folder = Path(folder) / "root"
        database = self.folder / "var/lib/dpkg"
        for name in ("info", "updates", "triggers"):
            (database / name).mkdir(parents=True)
        status = Path("/var/lib/dpkg/status").read_text()
        # A Vantor that the machine itself has would be replaced, not installed.
        own = [entry for entry in status.split("\n\n") if not entry.startswith("Package: vantor\n")]
        (database / "status").write_text("\n\n".join(own))
        self.bin = self.folder / "usr/bin"

    def dpkg(self, *words):
        options = ["--force-not-root", "--force-bad-path", f"--root={self.folder}", f"--log={self.folder}/dpkg.log"]
        return run("fakeroot", "dpkg", *options, *words)

    def files(self):
        return {"/" + str(path.relative_to(self.folder)) for path in (self.folder / "usr").rglob("*") if not path.is_dir()}


def desktop_entry(root):
    entry = configparser.ConfigParser(interpolation=None)
    entry.optionxform = str
    entry.read(root.folder / f"usr/share/applications/{IDENTIFIER}.desktop")
    return entry


def from_entry(root, group):
    """The command of an entry as the desktop would start it, with the program that the search path gives."""
    words = desktop_entry(root)[group]["Exec"].split()
    return [shutil.which(words[0], path=str(root.bin)) or "", *words[1:]]


def package(report, build, folder):
    made = run(TOP / "packaging/linux/deb.sh", build, folder)
    if not report.check(made.returncode == 0, "the package is made", made.stderr):
        return None
    file = Path(made.stdout.strip())
    before = file.read_bytes()
    run(TOP / "packaging/linux/deb.sh", build, folder)
    report.check(file.read_bytes() == before, "made again, it is the same")
    lint = ["lintian", "--fail-on", "error", "--display-level", ">=warning"]
    linted = run(*lint, *(["--allow-root"] if os.geteuid() == 0 else []), file)
    # Newer ones ask the metadata's validator, whose remarks are looked at more closely below.
    remarks = [line for line in (linted.stdout + linted.stderr).splitlines() if "appstream-metadata-validation-failed" not in line]
    report.check(linted.returncode == 0 and not any(remarks), "lintian has no error and no warning", remarks)
    wanted = {field: run("dpkg-deb", "-f", file, field).stdout for field in ("Depends", "Recommends")}
    report.check("libqt6widgets6" in wanted["Depends"] and "webengine" not in wanted["Depends"],
                 "the toolkit is required, the web engine is not", wanted)
    report.check("libqt6webenginecore6" in wanted["Recommends"], "the web engine is recommended", wanted)
    return file


def installed(report, root, file):
    done = root.dpkg("--install", file)
    listed = set(root.dpkg("--listfiles", "vantor").stdout.split("\n"))
    expected = {"/usr/bin/vantor", "/usr/lib/vantor/vantor-guardian", "/usr/lib/vantor/libvantor_web.so",
                f"/usr/share/applications/{IDENTIFIER}.desktop", f"/usr/share/metainfo/{IDENTIFIER}.metainfo.xml",
                f"/usr/share/icons/hicolor/scalable/apps/{IDENTIFIER}.svg", "/usr/share/man/man1/vantor.1.gz",
                "/usr/share/doc/vantor/copyright"}
    report.check(done.returncode == 0, "it installs, and what it depends on is known", done.stderr)
    return report.check(expected <= listed & root.files(), "every part is installed", sorted(expected - root.files()))


def removed(report, root):
    done = root.dpkg("--remove", "vantor")
    report.check(done.returncode == 0 and not root.files(), "removed, it leaves nothing", done.stderr or root.files())


def binaries(report, root):
    for file in (root.bin / "vantor", *sorted((root.folder / "usr/lib/vantor").iterdir())):
        content = file.read_bytes()
        paths = [path for path in (str(TOP), str(Path.home()) + "/") if len(path) > 4 and path.encode() in content]
        search = re.findall(r"\((?:RPATH|RUNPATH)\).*", run("readelf", "-d", file).stdout)
        report.check(not paths and not search, f"{file.name} holds no path of the machine that built it", paths + search)
    linked = run("readelf", "-d", root.bin / "vantor").stdout
    report.check("WebEngine" not in linked and "libQt6Core" in linked, "vantor itself does not link the web engine")


def manual(report, root, version):
    page = root.folder / "usr/share/man/man1/vantor.1.gz"
    shown = run("man", "--warnings=all", "-E", "UTF-8", "-l", "-P", "cat", page,
                env={**os.environ, "MANWIDTH": "120", "LC_ALL": "C.UTF-8"})
    report.check(shown.returncode == 0 and not shown.stderr, "the manual page is well formed", shown.stderr)
    text = re.sub(r".\x08", "", shown.stdout)
    help_text = run(root.bin / "vantor", "--help").stdout
    options = set(re.findall(r"^  (--[a-z-]+(?: [A-Z][A-Z0-9=-]+)?)", help_text, re.M))
    told = set(re.findall(r"^ +(--[a-z-]+(?: [A-Z][A-Z0-9=-]+)?)", text, re.M))
    report.check(len(options) > 10 and options == told, "the manual page tells of exactly the options that there are",
                 sorted(options ^ told))
    sources = "\n".join(path.read_text() for path in (TOP / "src").rglob("*.cpp"))
    variables = set(re.findall(r'"(VANTOR_[A-Z_]+)"', sources))
    told = set(re.findall(r"VANTOR_[A-Z_]+", text))
    report.check(variables and variables == told, "and of the variables", sorted(variables ^ told))
    report.check(f"Vantor {version}" in text, "and of this version", text.strip().split("\n")[-1])


def desktop_files(report, root, version):
    share = root.folder / "usr/share"
    silent(report, "the desktop entry is valid", "desktop-file-validate", share / f"applications/{IDENTIFIER}.desktop")
    metainfo = share / f"metainfo/{IDENTIFIER}.metainfo.xml"
    valid = run(*APPSTREAM, metainfo)
    remarks = set(re.findall(r"^[EWI]: \S+ (.+)$", valid.stdout, re.M))
    report.check(valid.returncode == 0 and remarks <= TOLD_TWICE, "the metadata are valid", valid.stdout + valid.stderr)
    component = ElementTree.parse(metainfo).getroot()
    report.check(component.find("releases/release").get("version") == version, "the newest release is this version")
    entry = desktop_entry(root)["Desktop Entry"]
    report.check(component.findtext("launchable") == f"{entry.get('Icon')}.desktop" == f"{IDENTIFIER}.desktop"
                 and component.findtext("name") == entry["Name"], "entry, icon and metadata belong together")
    sizes = {}
    for icon in (share / "icons").rglob("*.png"):
        header = icon.read_bytes()[:24]
        sizes[icon.parts[-3]] = "{}x{}".format(*struct.unpack(">II", header[16:24]))
    report.check(len(sizes) >= 9 and all(folder == size for folder, size in sizes.items()),
                 "every icon has the size of its folder", sizes)


def font_notices(file):
    """Copyright and licence as the font itself tells them (entries 0 and 13 of its `name` table)."""
    data = file.read_bytes()
    tables = struct.unpack(">H", data[4:6])[0]
    for each in range(tables):
        tag, _, start, _ = struct.unpack(">4s3L", data[12 + 16 * each:28 + 16 * each])
        if tag == b"name":
            count, strings = struct.unpack(">HH", data[start + 2:start + 6])
            for entry in range(count):
                platform, _, _, name, length, at = struct.unpack(">6H", data[start + 6 + 12 * entry:start + 18 + 12 * entry])
                if platform == 3 and name in (0, 13):
                    yield data[start + strings + at:start + strings + at + length].decode("utf-16-be")


def licences(report, root, build):
    notice = " ".join((root.folder / "usr/share/doc/vantor/copyright").read_text().split())
    # Qt 6.4 lists in .rcc what is embedded, 6.8 in .qt/rcc.
    embedded = [*(build / "src").glob(".*/**/vantor_faces.qrc")][0]
    faces = [Path(face.text) for face in ElementTree.parse(embedded).getroot().iter("file")]
    faces = [face if face.is_absolute() else embedded.parent / face for face in faces]
    report.check(len(faces) == 3, "the embedded typefaces are known", faces)
    for face in faces:
        text = " ".join(font_notices(face))
        holders = re.findall(r"(Georg A\. Duffner|Siva Kalyan|tyPoland Lukasz Dziedzic)", text)
        report.check("SIL Open Font License, Version 1.1" in text and holders and all(name in notice for name in holders)
                     and face.name in notice, f"the licence of {face.name} is told, with those who made it", text[:200])
    report.check("SIL OPEN FONT LICENSE Version 1.1" in notice and "DISCLAIMER" in notice and "License: GFDL-1.3" in notice
                 and "resources/catalogue/*" in notice, "the licences' texts and the catalogue's are there")


def one_shot(report, root, version):
    vantor = root.bin / "vantor"
    shown = run(vantor, "--version")
    report.check(shown.stdout.startswith(f"vantor {version}\nweb engine "), "--version finds the web module",
                 shown.stdout + shown.stderr)
    timeline = run(vantor, "--timeline", "--json")
    report.check(timeline.returncode == 0 and len(json.loads(timeline.stdout)) > 100, "--timeline --json prints the day",
                 timeline.stderr)
    doctor = run(vantor, "--doctor").stdout
    for capability in ("display", "guardian", "web engine"):
        report.check(re.search(rf"^{capability} +yes ", doctor, re.M), f"--doctor finds: {capability}", doctor)


def in_a_desktop(report, root, game, folder):
    command = from_entry(root, "Desktop Entry")
    if not report.check(command == [str(root.bin / "vantor")], "the desktop entry starts the installed program", command):
        return
    with desk.WebService() as service, desk.Game(game, folder) as played, \
            desk.Vantor(command[0], service.host, folder) as vantor:
        report.check(desk.wait_until(lambda: "icon" in vantor.windows()), "it starts beside the game", vantor.lines)
        desk.press(*desk.HOTKEY)
        report.check(desk.wait_until(vantor.overlay_shown) and desk.wait_until(
            lambda: played.presses(desk.CAMERA_KEY) == 1), "the hotkey opens the overlay", vantor.windows())

        def programs():
            found = run("pgrep", "--parent", vantor.pid).stdout.split()
            return {os.path.realpath(f"/proc/{each}/exe") for each in found}

        guardian = os.path.realpath(root.folder / "usr/lib/vantor/vantor-guardian")
        report.check(desk.wait_until(lambda: guardian in programs()), "the installed guardian watches over the keys", programs())
        module = os.path.realpath(root.folder / "usr/lib/vantor/libvantor_web.so")
        maps = Path(f"/proc/{vantor.pid}/maps")
        report.check(desk.wait_until(lambda: module in maps.read_text()), "the installed web module is loaded", vantor.lines)

        # The first page replaces the overlay's window once, so the windows are looked at until one answers.
        def classes():
            windows = desk.ask("xdotool", "search", "--onlyvisible", "--pid", str(vantor.pid)).split()
            return {name for each in windows for name in re.findall(r'"([^"]*)"', desk.ask("xprop", "-id", each, "WM_CLASS"))}

        found = desk.wait_until(classes)
        report.check(desktop_entry(root)["Desktop Entry"]["StartupWMClass"] in found,
                     "its windows belong to its desktop entry", found)
        quitting = run(*from_entry(root, "Desktop Action quit"))
        report.check(quitting.returncode == 0 and desk.wait_until(lambda: not vantor.alive()), "the entry's action ends it",
                     quitting.stderr)
        report.check(not vantor.unexpected_lines(), "nothing unexpected is printed", vantor.lines)


def without_parts(report, root):
    """What a player sees whose installation lost something."""
    for file, capability in (("vantor-guardian", "guardian"), ("libvantor_web.so", "web engine")):
        part = root.folder / "usr/lib/vantor" / file
        aside = part.with_suffix(".aside")
        part.rename(aside)
        doctor = run(root.bin / "vantor", "--doctor").stdout
        report.check(re.search(rf"^{capability} +no ", doctor, re.M), f"without {file}, --doctor says so", doctor)
        aside.rename(part)


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", required=True, type=Path)
    parser.add_argument("--game", required=True, type=Path)
    parser.add_argument("--output", required=True, type=Path, help="where the package is left")
    arguments = parser.parse_args()
    desk.enter_private_desktop()
    report = desk.Report()
    build = arguments.build.resolve()
    version = re.search(r"^CMAKE_PROJECT_VERSION:STATIC=(.*)$", (build / "CMakeCache.txt").read_text(), re.M)[1]
    with tempfile.TemporaryDirectory(prefix="vantor-package.") as folder:
        root = Root(folder)
        file = package(report, build, arguments.output)
        if file and installed(report, root, file):
            for part, more in ((binaries, ()), (manual, (version,)), (desktop_files, (version,)), (licences, (build,)),
                               (one_shot, (version,)), (in_a_desktop, (arguments.game.resolve(), folder)),
                               (without_parts, ()), (removed, ())):
                try:
                    part(report, root, *more)
                except (OSError, RuntimeError, LookupError, ValueError, struct.error, configparser.Error,
                        ElementTree.ParseError, subprocess.SubprocessError) as fault:
                    report.check(False, part.__name__, repr(fault))
    print(f"{report.passed} passed, {report.failed} failed")
    return 1 if report.failed else 0


if __name__ == "__main__":
    sys.exit(main())
