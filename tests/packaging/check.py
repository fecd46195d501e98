#!/usr/bin/env python3
"""Makes the Debian package of a build folder, looks at it as a distribution would, installs it into a root of its own, plays the
installed program in a private desktop, and removes it. Prints "N passed, M failed" as its last line."""

import argparse
import configparser
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

IDENTIFIER = "orvendel.vantor.Vantor"
# The maker's name is no top-level domain.
APPSTREAM = ["appstreamcli", "validate", "--no-net", "--override", "cid-maybe-not-rdns=pedantic"]
# The developer is told twice: AppStream 1.0 finds the older form outdated, and what came before does not know the newer one.
TOLD_TWICE = {"unknown-tag developer", "developer-name-tag-deprecated"}


def run(*command, **options):
    return subprocess.run([str(word) for word in command], capture_output=True, text=True, timeout=120, **options)


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
        return [path for path in (self.folder / "usr").rglob("*") if not path.is_dir()]


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
    needs, likes = (run("dpkg-deb", "-f", file, field).stdout for field in ("Depends", "Recommends"))
    report.check("libqt6widgets6" in needs and "webengine" not in needs and "libqt6webenginecore6" in likes,
                 "the toolkit is required, the web engine recommended", needs + likes)
    return file


def installed(report, root, file):
    done = root.dpkg("--install", file)
    return report.check(done.returncode == 0, "it installs, and what it depends on is known", done.stderr)


def removed(report, root):
    done = root.dpkg("--remove", "vantor")
    report.check(done.returncode == 0 and not root.files(), "removed, it leaves nothing", done.stderr or root.files())


def binaries(report, root):
    for file in (root.bin / "vantor", *sorted((root.folder / "usr/lib/vantor").iterdir())):
        content = file.read_bytes()
        paths = [path for path in (str(TOP), str(Path.home()) + "/") if len(path) > 4 and path.encode() in content]
        search = re.findall(r"\((?:RPATH|RUNPATH)\).*", run("readelf", "-d", file).stdout)
        report.check(not paths and not search, f"{file.name} holds no path of the machine that built it", paths + search)


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
    shown = run(root.bin / "vantor", "--version").stdout
    report.check(shown.startswith(f"vantor {version}\nweb engine "), "--version finds the web module", shown)


def desktop_files(report, root, version):
    share = root.folder / "usr/share"
    valid = run("desktop-file-validate", share / f"applications/{IDENTIFIER}.desktop")
    report.check(valid.returncode == 0 and not valid.stdout.strip(), "the desktop entry is valid", valid.stdout)
    metainfo = share / f"metainfo/{IDENTIFIER}.metainfo.xml"
    valid = run(*APPSTREAM, metainfo)
    remarks = set(re.findall(r"^[EWI]: \S+ (.+)$", valid.stdout, re.M))
    report.check(valid.returncode == 0 and remarks <= TOLD_TWICE, "the metadata are valid", valid.stdout + valid.stderr)
    component = ElementTree.parse(metainfo).getroot()
    report.check(component.find("releases/release").get("version") == version, "the newest release is this version")
    entry = desktop_entry(root)["Desktop Entry"]
    report.check(component.findtext("launchable") == f"{entry.get('Icon')}.desktop" == f"{IDENTIFIER}.desktop"
                 and component.findtext("name") == entry["Name"], "entry, icon and metadata belong together")
    icons = (share / "icons").rglob("*.png")
    sizes = {icon.parts[-3]: "{}x{}".format(*struct.unpack(">II", icon.read_bytes()[16:24])) for icon in icons}
    report.check(len(sizes) >= 9 and all(folder == size for folder, size in sizes.items()),
                 "every icon has the size of its folder", sizes)


def licences(report, root, build):
    notice = " ".join((root.folder / "usr/share/doc/vantor/copyright").read_text().split())
    # Qt 6.4 lists in .rcc what is embedded, 6.8 in .qt/rcc.
    embedded = [*(build / "src").glob(".*/**/vantor_faces.qrc")][0]
    faces = [Path(face.text) for face in ElementTree.parse(embedded).getroot().iter("file")]
    faces = [face if face.is_absolute() else embedded.parent / face for face in faces]
    report.check(len(faces) == 3, "the embedded typefaces are known", faces)
    for face in faces:
        # As the font's `name` table tells it.
        told = face.read_bytes().decode("utf-16-be", "ignore") + face.read_bytes()[1:].decode("utf-16-be", "ignore")
        holders = re.findall(r"Georg A\. Duffner|Siva Kalyan|tyPoland Lukasz Dziedzic", told)
        report.check("SIL Open Font License, Version 1.1" in told and holders and all(name in notice for name in holders)
                     and face.name in notice, f"the licence of {face.name} is told, with those who made it", holders)
    report.check("SIL OPEN FONT LICENSE Version 1.1" in notice and "DISCLAIMER" in notice and "License: GFDL-1.3" in notice
                 and "resources/catalogue/*" in notice, "the licences' texts and the catalogue's are there")


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
            return {os.path.realpath(f"/proc/{each}/exe") for each in run("pgrep", "--parent", vantor.pid).stdout.split()}

        guardian = os.path.realpath(root.folder / "usr/lib/vantor/vantor-guardian")
        report.check(desk.wait_until(lambda: guardian in programs()), "the installed guardian watches over the keys", programs())
        module = os.path.realpath(root.folder / "usr/lib/vantor/libvantor_web.so")
        maps = Path(f"/proc/{vantor.pid}/maps")
        report.check(desk.wait_until(lambda: module in maps.read_text()), "the installed web module is loaded", vantor.lines)

        # The first page replaces the overlay's window once, so the windows are looked at until one answers.
        own = f'"{desktop_entry(root)["Desktop Entry"]["StartupWMClass"]}"'
        search = ("xdotool", "search", "--onlyvisible", "--pid", str(vantor.pid))
        found = desk.wait_until(lambda: any(own in desk.ask("xprop", "-id", each, "WM_CLASS") for each in desk.ask(*search).split()))
        report.check(found, "its windows belong to its desktop entry", own)
        quitting = run(*from_entry(root, "Desktop Action quit"))
        report.check(quitting.returncode == 0 and desk.wait_until(lambda: not vantor.alive()), "the entry's action ends it",
                     quitting.stderr)
        report.check(not vantor.unexpected_lines(), "nothing unexpected is printed", vantor.lines)


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
                               (in_a_desktop, (arguments.game.resolve(), folder)), (removed, ())):
                try:
                    part(report, root, *more)
                except Exception as fault:  # the other parts are looked at all the same
                    report.check(False, part.__name__, repr(fault))
    print(f"{report.passed} passed, {report.failed} failed")
    return 1 if report.failed else 0


if __name__ == "__main__":
    sys.exit(main())
