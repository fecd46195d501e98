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
from itertools import pairwise
from pathlib import Path

sys.dont_write_bytecode = True
HERE = Path(__file__).resolve().parent
sys.path[:0] = [str(HERE), str(HERE.parent.parent / "demo")]
import desk
import pages

desk.enter_private_desktop()
desk.PATIENCE = 30.0
STYLED = {"color": "rgb(236, 230, 214)", "background": "rgba(0, 0, 0, 0)"}
GROUND = (20, 40, 20)  # of the probe's window, darkened a little where the page lies
# Within the window of the probe, below its row of searches.
PAGE = (20 + 4, 20 + 60)
LINES = r"^(ready|done |painted$|native |value |engine |prior |will change$|no such button$)"
UPDATES = "/wiki/Game_updates"


class Probe(desk.Program):
    def __init__(self, binary, folder, server, *options, environment=None):
        self.folder = Path(tempfile.mkdtemp(dir=folder))
        fifo = self.folder / "commands"
        os.mkfifo(fifo)
        hosts = [server.host] * 3
        # Starts no other program of this desktop; what it would start is written down.
        taken = self.folder / "bin" / "xdg-open"
        taken.parent.mkdir()
        taken.write_text(f'#!/bin/sh\necho "$@" >>{self.folder}/opened\n')
        taken.chmod(0o755)
        super().__init__("sh", "-c", 'exec "$0" "$@" <"$COMMANDS"', binary, *hosts, self.folder / "profile", *options,
                         environment={"COMMANDS": str(fifo), "PATH": f"{taken.parent}:{os.environ['PATH']}",
                                      "HOME": str(self.folder / "home"), **(environment or {})})
        self.commands = open(fifo, "w")
        if not self.line("^ready"):
            raise RuntimeError(f"the probe does not start: {self.lines}")

    def do(self, *commands):
        """Gives commands one after the other, and the lines since then, once the last is done."""
        before = len(self.lines)
        for command in commands:
            start = len(self.lines)
            self.commands.write(command + "\n")
            self.commands.flush()
            if not desk.wait_until(lambda: f"done {command}" in self.lines[start:], desk.PATIENCE):
                raise RuntimeError(f"no answer to {command!r}: {self.lines[-5:]}")
        return self.lines[before:]

    def values(self):
        return dict(line.split(" ", 2)[1:] for line in self.do("values") if line.startswith("value "))

    def engine(self):
        number = next(line for line in self.do("values") if line.startswith("engine ")).split()[1]
        return ("not wanted", "running", "missing", "gone")[int(number)]

    def opened(self):
        file = self.folder / "opened"
        return file.read_text().split() if file.exists() else []

    def renderers(self):
        found = desk.ask("pgrep", "-f", "--", "--type=renderer")
        return [int(pid) for pid in found.split() if self._is_descendant(int(pid))]

    def _is_descendant(self, pid):
        while pid > 1 and pid != self.pid:
            try:
                pid = int(Path(f"/proc/{pid}/stat").read_text().rsplit(")", 1)[1].split()[1])
            except OSError:
                return False
        return pid == self.pid


class Desk:
    def __init__(self, binary, folder, report):
        self.binary, self.folder, self.report = binary, folder, report

    def probe(self, server, *options, **named):
        return Probe(self.binary, self.folder, server, *options, **named)

    def check(self, *arguments):
        return self.report.check(*arguments)

    def quiet(self, probe, what):
        noise = [line for line in probe.lines if line and not re.search(LINES, line)]
        self.check(not noise, f"{what}: nothing else is printed", noise)


def seen(server, page, count=1):
    return desk.wait_until(lambda: len(server.sights(page)) >= count and server.sights(page), desk.PATIENCE) or []


def click_page(x=100, y=80):
    desk.click(PAGE[0] + x, PAGE[1] + y)


def colours(x, y, width, height):
    data = desk.pixels(x, y, width, height)
    return [tuple(data[at:at + 3]) for at in range(0, len(data), 3)]


def first_opening(the):
    with pages.Server() as server, the.probe(server) as probe:
        probe.do("updates")
        the.check(not server.requests("/wiki") and probe.engine() == "not wanted", "a hidden tab starts no engine")
        probe.do("show")
        the.check(len(seen(server, UPDATES)) == 1, "the game updates are loaded when their tab appears")
        order = [line.split()[0] for line in probe.lines if re.match("painted|native .* again|prior loading", line)]
        the.check(order[:1] == ["painted"], "the window is painted before the engine starts", order)
        the.check(server.sights(UPDATES)[0] | STYLED == server.sights(UPDATES)[0], "the very first page is styled",
                  server.sights(UPDATES))
        the.check(server.sights(UPDATES)[0]["styles"] == "1", "one load, one style element", server.sights(UPDATES))
        the.check(server.sights(UPDATES)[0]["names"] == "", "no bridge to the program", server.sights(UPDATES))
        probe.do("hide", "show")
        probe.do("away", "updates")
        twice = seen(server, UPDATES, 2)
        the.check(len(server.requests("/wiki")) == 2, "showing the window again reloads nothing, the tab does",
                  server.requests("/wiki"))
        the.check(len(twice) == 2 and twice[1]["styles"] == "2", "two loads, two style elements", twice)
        stored = [file.name for file in (probe.folder / "home").rglob("*")] if (probe.folder / "home").exists() else []
        the.check((probe.folder / "profile").is_dir() and not any("QtWebEngine" in name for name in stored),
                  "the profile lies in its own folder", stored)
        the.quiet(probe, "first opening")


def picture(the):
    """What the player sees: the page over the window's own background, no white, fades at the edges."""
    with pages.Server() as server, the.probe(server) as probe:
        server.bodies[UPDATES] = "<p style='font-size:40px; font-weight:bold; line-height:50px'>" + "WWWWW " * 80 + "</p>"
        probe.do("show", "updates")
        seen(server, UPDATES)
        inner = (40, 40, 800, 480)
        shown = lambda: (236, 230, 214) in colours(*inner)
        the.check(desk.wait_until(shown), "the page's letters are seen in their colour")
        found = colours(*inner)
        the.check(max(map(max, found)) < 245, "no white background behind them", max(found))
        the.check(any(abs(each[1] - GROUND[1]) < 12 and each[0] < 30 for each in found), "the window's background shows through")
        # A sheet of one colour shows the fades alone, at each of the four edges.
        server.bodies["/sheet"] = "<div style='position:fixed;inset:0;background:#c0c0c0;box-shadow:none!important'></div>"
        probe.do(f"load {server.host}/sheet")
        seen(server, "/sheet")
        middle = lambda: colours(450, 300, 1, 1)[0][0]
        the.check(desk.wait_until(lambda: middle() == 0xc0), "a sheet of one colour", middle())
        for edge, place, inward in (("top", (450, 22), (0, 1)), ("bottom", (450, 577), (0, -1)), ("left", (22, 300), (1, 0)),
                                    ("right", (877, 300), (-1, 0))):
            steps = [colours(place[0] + step * inward[0], place[1] + step * inward[1], 1, 1)[0][0] for step in range(0, 30, 4)]
            the.check(steps[0] < 130 and steps == sorted(steps) and steps[-1] == 0xc0, f"a soft fade at the {edge}", steps)
        if "VANTOR_PICTURES" in os.environ:
            desk.picture(Path(os.environ["VANTOR_PICTURES"]) / "web.png")

def without_sheet(the):
    with pages.Server() as server, the.probe(server, "no-sheet") as probe:
        probe.do("show", "internet", f"load {server.host}/plain")
        sight = seen(server, "/plain")
        the.check(sight and sight[0]["styles"] == "0" and sight[0]["background"] == "rgb(255, 255, 255)",
                  "without a style sheet a page is as it is", sight)
        the.check(desk.wait_until(lambda: (255, 255, 255) in colours(80, 180, 300, 200)), "and is seen so")


def scripts(the):
    with pages.Server() as server, the.probe(server) as probe:
        server.bodies["/framed"] = "<iframe src='/inner'></iframe><a href='/linked' style='position:fixed;inset:0'>on</a>"
        probe.do("show", "internet")
        probe.do(f"load {server.host}/page")
        seen(server, "/page")
        probe.do(f"load {server.host}/framed")
        inner = seen(server, "/inner")
        the.check(inner and inner[0]["styles"] == "2" and inner[0]["top"] == "false", "a frame is styled as well", inner)
        seen(server, "/framed")
        click_page()
        linked = seen(server, "/linked")
        the.check(linked and linked[0]["styles"] == "2", "a followed link adds no script", linked)


def searches(the):
    rows = (
        ("Search with Google", "ice brood", "/search?q=gw2+ice+brood"),
        ("Search on GW2 wiki", "50% off", "/index.php?search=50%25+off"),
        ("Search on GW2 wiki", "Zhaïtan \"x\"", "/index.php?search=Zha%C3%AFtan+%22x%22"),
    )
    with pages.Server() as server, the.probe(server) as probe:
        probe.do("show", "internet")
        probe.do("type quaggan", "return")
        the.check(probe.engine() == "not wanted", "Return in the field does nothing")
        for button, term, path in rows:
            probe.do(f"type {term}" if term else "type", f"press {button}")
            arrived = desk.wait_until(lambda: path in server.requests("/"), 10)
            the.check(arrived, f"{button}: {term!r}", server.requests("/")[-2:])
        the.quiet(probe, "searches")


def ways(the):
    with pages.Server() as server, the.probe(server) as probe:
        at = lambda page: desk.wait_until(lambda: probe.values()["url"] == server.host + page and
                                          probe.values()["loading"] == "false", desk.PATIENCE)
        probe.do("show", "internet", "press Navigate back", "press Navigate forward")
        the.check(probe.engine() == "not wanted", "back and forward without a page do nothing")
        for page in ("/one", "/two", "/three"):
            probe.do(f"load {server.host}{page}")
            seen(server, page)
        the.check(at("/three"), "three pages", probe.values())
        probe.do("press Navigate back")
        the.check(at("/two"), "back")
        probe.do("away", "hide", "show", "internet")
        values = probe.values()
        the.check((values["url"], values["canGoBack"], values["canGoForward"]) == (server.host + "/two", "true", "true"),
                  "tabs and hiding keep the page and its history", values)
        probe.do("press Navigate forward")
        the.check(at("/three") and probe.values()["canGoForward"] == "false", "forward")
        probe.do("press Navigate forward")
        the.check(at("/three"), "forward at the end does nothing")
        the.check(probe.values()["title"] == "/three", "the page's title", probe.values())


def announcements(the):
    with pages.Server() as server, the.probe(server) as probe:
        probe.do("show", "internet")
        for page in ("/one", "/two"):
            probe.do(f"load {server.host}{page}")
            seen(server, page)
        probe.do("press Navigate back")
        desk.wait_until(lambda: probe.values()["url"].endswith("/one") and probe.values()["loading"] == "false")
        lines = probe.do("values")
        last = dict(line.split(" ", 2)[1:] for line in lines if line.startswith("value "))
        priors = [line.split(" ", 2)[1:] for line in probe.lines if line.startswith("prior ")]
        the.check(len(priors) > 12 and len(priors) == probe.lines.count("will change"), "the store announces each, once",
                  (len(priors), probe.lines.count("will change")))
        for name in ("title", "url", "loading", "estimatedProgress", "canGoBack", "canGoForward"):
            values = [value for each, value in priors if each == name] + [last[name]]
            same = [value for value, after in pairwise(values) if value == after]
            the.check(len(values) > 1 and not same, f"{name}: each announcement is followed by one change", values)


def killed(the):
    with pages.Server() as server, the.probe(server) as probe:
        probe.do("show", "internet")
        for page in ("/zero", "/one"):
            probe.do(f"load {server.host}{page}")
            seen(server, page)
        for pid in probe.renderers():
            os.kill(pid, signal.SIGKILL)
        the.check(desk.wait_until(lambda: probe.engine() == "gone"), "the end of the page's process is noticed", probe.engine())
        the.check(probe.values()["loading"] == "false", "and the page loads no longer")
        light = lambda: sum(each[0] > 120 for each in colours(180, 250, 500, 120))
        the.check(desk.wait_until(lambda: light() > 30), "a line says so", light())
        probe.do(f"load {server.host}/two")
        sight = seen(server, "/two")
        the.check(sight and sight[0]["styles"] == "3" and probe.engine() == "running", "the next load recovers",
                  (sight, server.paths, probe.renderers()))
        the.check(desk.wait_until(lambda: (242, 215, 140) in colours(40, 60, 400, 200)), "and is seen")


def refusals(the):
    link = "<a style='position:fixed;inset:0;display:block' {}>link</a>"
    with pages.Server() as server, the.probe(server) as probe:
        server.bodies |= {
            "/scripted": "<script>open('/popup'); location = 'file:///etc/hostname'</script>",
            "/talking": "<script>console.error('noise'); alert(1); if (!confirm(1) && prompt(1) === null) fetch('/silent');"
                        "navigator.geolocation.getCurrentPosition(() => fetch('/found'), () => fetch('/denied'));"
                        "navigator.mediaDevices?.getUserMedia({audio: true}).then(() => fetch('/heard'), () => 0);"
                        "Notification.requestPermission().then(answer => fetch('/notify-' + answer))</script>",
            "/download": link.format("href='/file.bin'"),
            "/file": link.format("href='file:///etc/hostname'"),
            "/mail": link.format("href='mailto:someone@example.org'"),
            "/game": link.format("href='steam://run/1'"),
            "/blank": link.format("href='/opened' target='_blank'"),
            "/asked": link.format("href='#' onclick=\"open('/opened2', '', 'popup'); return false\""),
            "/trap": "<script>onbeforeunload = event => { event.preventDefault(); return event.returnValue = 'stay' }</script>"
                     + link.format("href='#'"),
        }
        probe.do("show", "internet")

        def go(page, click=True):
            probe.do(f"load {server.host}{page}")
            seen(server, page, len(server.sights(page)) + 1)
            if click:
                click_page()

        go("/scripted", click=False)
        go("/talking", click=False)
        the.check(desk.wait_until(lambda: server.requests("/silent")), "alerts, questions and prompts are answered unseen")
        # Off a secure origin some engines refuse before they ask.
        the.check(desk.wait_until(lambda: server.requests("/denied")) and not server.requests("/found"), "no place is told")
        the.check(desk.wait_until(lambda: server.requests("/notify-denied")), "no notifications", server.requests("/notify"))
        go("/download")
        desk.wait_until(lambda: server.requests("/file.bin"))
        go("/file")
        go("/game")
        go("/mail")
        the.check(desk.wait_until(probe.opened) == ["mailto:someone@example.org"], "a mail link goes to the desktop",
                  probe.opened())
        go("/blank")
        the.check(seen(server, "/opened") and probe.values()["url"] == server.host + "/opened",
                  "a link for a new window opens here", probe.values())
        go("/asked")
        the.check(seen(server, "/opened2"), "and so does a window that a click asked for")
        windows = list(desk.visible_windows(probe.pid))
        the.check(windows == ["Probe"], "there is one window", windows)
        taken = [file for place in (probe.folder, Path(os.environ["XDG_DATA_HOME"])) for file in place.rglob("taken.bin*")]
        the.check(not taken, "nothing is downloaded", taken)
        the.check(not server.requests("/popup") and not server.requests("/heard"), "no window without a click, no microphone")
        urls = [line for line in probe.lines if line.startswith("prior url file:")]
        the.check(not urls and probe.opened() == ["mailto:someone@example.org"], "files and other schemes are refused", urls)
        go("/trap")
        probe.do(f"load {server.host}/away")
        the.check(seen(server, "/away"), "no page keeps the player")
        the.quiet(probe, "refusals")


def failures(the):
    with pages.Server() as server, the.probe(server) as probe:
        probe.do("show", "internet", f"load {server.host}/broken")
        the.check(desk.wait_until(lambda: server.requests("/broken") and probe.values()["loading"] == "false"),
                  "a load that fails ends", probe.values())
        found = colours(*PAGE, 800, 400)
        the.check(max(map(max, found)) < 100 and probe.engine() == "running", "and shows nothing", max(found))
        probe.do(f"load {server.host}/good")
        the.check(seen(server, "/good"), "the next load works")
        the.quiet(probe, "failures")


def certificates(the):
    certificate = pages.unsigned_certificate(the.folder)
    with pages.Server(certificate) as server, pages.Server() as plain:
        with the.probe(server) as probe:
            probe.do("show", "internet", f"load {server.host}/secret")
            desk.wait_until(lambda: "prior loading true" in probe.lines)
            values = probe.values()
            the.check(not server.paths, "a page with a wrong certificate is never asked for", server.paths)
            the.check((values["serverTrust"], values["hasOnlySecureContent"]) == ("false", "false"), "and not trusted", values)
            probe.do(f"load {plain.host}/plain")
            seen(plain, "/plain")
            the.check(probe.values()["serverTrust"] == "false", "a page without encryption is not trusted")
            the.quiet(probe, "certificates")
        with the.probe(server, environment={"QTWEBENGINE_CHROMIUM_FLAGS": "--ignore-certificate-errors"}) as probe:
            probe.do("show", "internet", f"load {server.host}/secret")
            seen(server, "/secret")
            values = probe.values()
            the.check((values["serverTrust"], values["hasOnlySecureContent"]) == ("true", "true"),
                      "an accepted certificate is trust", values)


def missing(the):
    lonely = Path(the.folder) / "lonely"
    lonely.mkdir()
    shutil.copy(the.binary, lonely / "probe")
    with pages.Server() as server, Probe(lonely / "probe", the.folder, server) as probe:
        probe.do("show", "updates")
        the.check(desk.wait_until(lambda: probe.engine() == "missing"), "a missing module is noticed", probe.engine())
        said = [line for line in probe.lines if line.startswith("vantor: no web engine")]
        the.check(len(said) == 1, "in one line", said)
        light = lambda: sum(each[0] > 120 for each in colours(180, 250, 500, 120))
        the.check(desk.wait_until(lambda: light() > 30), "a line stands in the page's place", light())
        probe.do("internet", "press Navigate back", "type x", "press Search on GW2 wiki")
        the.check(probe.alive(), "and the rest goes on")


SCENARIOS = [first_opening, picture, without_sheet, scripts, searches, ways, announcements, killed, refusals, failures,
             certificates, missing]


def main():
    binary, *names = sys.argv[1:]
    report = desk.Report()
    with tempfile.TemporaryDirectory() as folder:
        for scenario in SCENARIOS:
            if names and scenario.__name__ not in names:
                continue
            print(f"-- {scenario.__name__}", flush=True)
            try:
                scenario(Desk(Path(binary).resolve(), folder, report))
            except (RuntimeError, OSError, subprocess.SubprocessError) as fault:
                report.check(False, scenario.__name__, fault)
    print(f"{report.passed} passed, {report.failed} failed")
    sys.exit(1 if report.failed else 0)


main()
