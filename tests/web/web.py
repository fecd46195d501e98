#!/usr/bin/env python3
"""The embedded browser with its real engine, against servers of its own: web.py PROBE [NAME...]. Runs in a private desktop; its
last line is "N passed, M failed"."""

import os
import re
import shutil
import signal
import subprocess
import sys
import tempfile
from pathlib import Path

sys.dont_write_bytecode = True
HERE = Path(__file__).resolve().parent
sys.path[:0] = [str(HERE), str(HERE.parent.parent / "demo")]
import desk
import pages

desk.enter_private_desktop()
desk.PATIENCE = 30.0
REPORT = desk.Report()
check = REPORT.check
INK, HEADING = (236, 230, 214), (242, 215, 140)  # of a styled page
UPDATES = "/wiki/Game_updates"


class Probe(desk.Program):
    def __init__(self, server, binary=None, flags=""):
        self.folder, self.server = Path(tempfile.mkdtemp(dir=FOLDER)), server
        os.mkfifo(self.folder / "commands")
        # Starts no other program of this desktop; what it would start is written down.
        taken = self.folder / "bin" / "xdg-open"
        taken.parent.mkdir()
        taken.write_text(f'#!/bin/sh\necho "$@" >>{self.folder}/opened\n')
        taken.chmod(0o755)
        super().__init__("sh", "-c", f'exec "$0" "$@" <{self.folder}/commands', binary or BINARY, server.host,
                         self.folder / "profile",
                         environment={"PATH": f"{taken.parent}:{os.environ['PATH']}", "HOME": str(self.folder / "home"),
                                      "QTWEBENGINE_CHROMIUM_FLAGS": flags})
        self.commands = open(self.folder / "commands", "w")
        if not self.line("^ready"):
            raise RuntimeError(f"the probe does not start: {self.lines}")

    def do(self, *commands):
        """Gives commands one after the other; how the page stands after the last, in words."""
        for command in commands:
            start = len(self.lines)
            self.commands.write(command + "\n")
            self.commands.flush()
            done = desk.wait_until(lambda: [line for line in self.lines[start:] if line.startswith("done ")], desk.PATIENCE)
            if not done:
                raise RuntimeError(f"no answer to {command!r}: {self.lines[-5:]}")
        return done[0].split()[1:]

    def becomes(self, *words):
        def stands():
            found = self.do("look")
            return {*words} <= {*found} and "loading" not in found
        return desk.wait_until(stands, desk.PATIENCE)

    def load(self, *names):
        """Loads pages in turn, and what the last has seen of itself."""
        for page in names:
            count = len(self.server.sights(page)) + 1
            self.do(f"load {self.server.host}{page}")
            sight = self.seen(page, count)
        return sight

    def seen(self, page, count=1):
        sights = desk.wait_until(lambda: self.server.sights(page)[count - 1:], desk.PATIENCE)
        if not sights:
            raise RuntimeError(f"{page} is not seen: {self.server.paths[-5:]}, {self.lines[-5:]}")
        return sights[0]

    def opened(self):
        file = self.folder / "opened"
        return file.read_text().split() if file.exists() else []

    def __exit__(self, *_):
        noise = [line for line in self.lines if line and not re.search("^(ready|done |vantor: no web engine)", line)]
        check(not noise, "nothing else is printed", noise)
        self.end()


def colours(x, y, width, height):
    data = desk.pixels(x, y, width, height)
    return [tuple(data[at:at + 3]) for at in range(0, len(data), 3)]


def line_is_seen():
    """In the page's place."""
    return desk.wait_until(lambda: sum(each[0] > 120 for each in colours(180, 250, 500, 120)) > 30)


def opening():
    with pages.Server() as server, Probe(server) as probe:
        server.bodies[UPDATES] = "<p style='font-size:40px; font-weight:bold; line-height:50px'>" + "WWWWW " * 80 + "</p>"
        check("unwanted" in probe.do("updates") and not server.paths, "a hidden tab starts no engine")
        probe.do("show")
        sight = probe.seen(UPDATES)
        check((sight["color"], sight["background"], sight["styles"]) == ("rgb(236, 230, 214)", "rgba(0, 0, 0, 0)", "1"),
              "the very first page is styled, once", sight)
        check(sight["names"] == "", "no bridge to the program", sight)
        inner = (40, 40, 800, 480)
        check(desk.wait_until(lambda: INK in colours(*inner)), "its letters are seen in their colour")
        found = colours(*inner)
        check(max(map(max, found)) < 245 and any(abs(each[1] - 40) < 12 and each[0] < 30 for each in found),
              "and the window's background behind them", max(found))
        probe.do("hide", "show", "away", "updates")
        check(probe.seen(UPDATES, 2)["styles"] == "2" and len(server.requests("/wiki")) == 2,
              "showing the window again reloads nothing, the tab does", server.sights(UPDATES))
        stored = [file.name for file in (probe.folder / "home").rglob("*QtWebEngine*")]
        check((probe.folder / "profile").is_dir() and not stored, "the profile lies in its own folder", stored)
        # A sheet of one colour shows the fades alone, at each of the four edges.
        server.bodies["/sheet"] = "<div style='position:fixed;inset:0;background:#c0c0c0;box-shadow:none!important'></div>"
        probe.load("/sheet")
        check(desk.wait_until(lambda: colours(450, 300, 1, 1)[0][0] == 0xc0), "a sheet of one colour")
        for x, y, right, down in ((450, 22, 0, 1), (450, 577, 0, -1), (22, 300, 1, 0), (877, 300, -1, 0)):
            steps = [colours(x + step * right, y + step * down, 1, 1)[0][0] for step in range(0, 30, 4)]
            check(steps[0] < 130 and steps == sorted(steps) and steps[-1] == 0xc0, f"a soft fade at {x}, {y}", steps)


def moving():
    with pages.Server() as server, Probe(server) as probe:
        words = probe.do("show", "internet", "press Navigate back", "press Navigate forward")
        check("unwanted" in words, "back and forward without a page do nothing")
        server.bodies["/framed"] = "<iframe src='/inner'></iframe><a href='/linked' style='position:fixed;inset:0'>on</a>"
        probe.load("/page", "/framed")
        inner = probe.seen("/inner")
        check((inner["styles"], inner["top"]) == ("2", "false"), "a frame is styled as well", inner)
        desk.click(124, 160)
        check(probe.seen("/linked")["styles"] == "2", "a followed link adds no script")
        for term, path in (("50% off", "50%25+off"), ('Zhaïtan "x"', "Zha%C3%AFtan+%22x%22")):
            probe.do(f"type {term}", "press Search on GW2 wiki")
            check(desk.wait_until(lambda: server.requests(f"/index.php?search={path}")), f"{term!r}", server.paths[-2:])
        probe.load("/one", "/two")
        probe.do("press Navigate back")
        check(probe.becomes(f"{server.host}/one", "/one", "forward"), "back")
        probe.do("away", "hide", "show", "internet")
        check(probe.becomes(f"{server.host}/one", "back", "forward"), "tabs and hiding keep the page and its history")
        for what in ("forward", "forward at the end does nothing"):
            probe.do("press Navigate forward")
            check(probe.becomes(f"{server.host}/two", "/two") and "forward" not in probe.do("look"), what)


def refusals():
    clicked = {"/download": "href='/file.bin'", "/file": "href='file:///etc/hostname'", "/game": "href='steam://run/1'",
               "/mail": "href='mailto:someone@example.org'", "/blank": "href='/opened' target='_blank'",
               "/asked": "href='#' onclick=\"open('/opened2', '', 'popup'); return false\"", "/trap": "href='#'"}
    with pages.Server() as server, Probe(server) as probe:
        for page, attributes in clicked.items():
            server.bodies[page] = f"<a style='position:fixed;inset:0;display:block' {attributes}>link</a>"
        server.bodies["/trap"] += "<script>onbeforeunload = event => { event.preventDefault(); return 'stay' }</script>"
        server.bodies["/scripted"] = "<script>open('/popup'); location = 'file:///etc/hostname'</script>"
        server.bodies["/talking"] = (
            "<script>console.error('noise'); alert(1); if (!confirm(1) && prompt(1) === null) fetch('/silent');"
            "navigator.geolocation.getCurrentPosition(() => fetch('/found'), () => fetch('/denied'));"
            "navigator.mediaDevices?.getUserMedia({audio: true}).then(() => fetch('/heard'), () => 0);"
            "Notification.requestPermission().then(answer => fetch('/notify-' + answer))</script>")
        probe.do("show", "internet")
        probe.load("/scripted", "/talking")
        # Off a secure origin some engines refuse before they ask.
        for path in ("/silent", "/denied", "/notify-denied"):
            check(desk.wait_until(lambda: server.requests(path)), f"what a script asks for is answered unseen: {path}")
        arrived = {"/download": lambda: server.requests("/file.bin"), "/mail": probe.opened,
                   "/blank": lambda: probe.becomes(f"{server.host}/opened"), "/asked": lambda: server.sights("/opened2")}
        for page in clicked:
            probe.load(page)
            desk.click(124, 160)
            check(desk.wait_until(arrived.get(page, lambda: True)), f"a click on the page {page}", probe.lines[-5:])
        check(probe.load("/away"), "no page keeps the player")
        check(probe.opened() == ["mailto:someone@example.org"], "only the mail link goes to the desktop", probe.opened())
        files = [line for line in probe.lines if line.startswith("done file:")]
        windows = list(desk.visible_windows(probe.pid))
        check(windows == ["Probe"] and not files, "one window, and no files in it", (windows, files))
        taken = [file for place in (probe.folder, Path(os.environ["XDG_DATA_HOME"])) for file in place.rglob("taken.bin*")]
        wrong = [path for path in server.paths if path in ("/popup", "/heard", "/found")]
        check(not taken and not wrong, "nothing is downloaded, told, heard or opened without a click", (taken, wrong))


def failures():
    with pages.Server() as server, Probe(server) as probe:
        probe.do("show", "internet", f"load {server.host}/broken")
        check(desk.wait_until(lambda: server.requests("/broken")) and probe.becomes("running"), "a load that fails ends")
        found = colours(24, 80, 800, 400)
        check(max(map(max, found)) < 100, "and shows nothing", max(found))
        probe.load("/one")
        family = {str(probe.pid)}
        for line in desk.ask("ps", "-eo", "pid=,ppid=,args=", "--sort=start_time").splitlines():  # parents come first
            pid, parent, arguments = line.split(None, 2)
            if parent in family:
                family.add(pid)
                if "--type=renderer" in arguments:
                    os.kill(int(pid), signal.SIGKILL)
        check(probe.becomes("gone"), "the end of the page's process is noticed")
        check(line_is_seen(), "a line says so")
        check(probe.load("/two")["styles"] == "3" and probe.becomes("running"), "the next load recovers", server.seen)
        check(desk.wait_until(lambda: HEADING in colours(40, 60, 400, 200)), "and is seen")


def certificates():
    certificate = pages.unsigned_certificate(FOLDER)
    for flags in ("", "--ignore-certificate-errors"):
        with pages.Server(certificate) as server, pages.Server() as plain, Probe(plain, flags=flags) as probe:
            probe.do("show", "internet", f"load {server.host}/secret")
            if flags:
                check(probe.becomes(f"{server.host}/secret", "trusted", "secure"), "an accepted certificate is trust")
            else:
                check(desk.wait_until(lambda: server.ended) and probe.becomes("running"), "a wrong one ends the load")
            probe.load("/plain")
            check(probe.becomes(f"{plain.host}/plain") and not {"trusted"} & {*probe.do("look")}, "none is not")
            check(bool(server.paths) == bool(flags), "a page with a wrong one is never asked for", server.paths)


def missing():
    with pages.Server() as server, Probe(server, binary=shutil.copy(BINARY, FOLDER)) as probe:
        probe.do("show", "updates")
        check(probe.becomes("missing"), "a missing module is noticed")
        said = [line for line in probe.lines if line.startswith("vantor: ")]
        check(len(said) == 1 and line_is_seen(), "in one line on the terminal, and one in the page's place", said)
        check(probe.do("internet", "press Navigate back", "type x", "press Search on GW2 wiki"), "the rest goes on")


BINARY, *NAMES = [Path(sys.argv[1]).resolve(), *sys.argv[2:]]
with tempfile.TemporaryDirectory() as FOLDER:
    for scenario in (opening, moving, refusals, failures, certificates, missing):
        if NAMES and scenario.__name__ not in NAMES:
            continue
        print(f"-- {scenario.__name__}", flush=True)
        try:
            scenario()
        except (RuntimeError, OSError, subprocess.SubprocessError) as fault:
            check(False, scenario.__name__, fault)
print(f"{REPORT.passed} passed, {REPORT.failed} failed")
sys.exit(1 if REPORT.failed else 0)
