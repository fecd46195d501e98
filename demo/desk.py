"""A player's hands and eyes for the tour and the scenarios: starts programs in the private desktop, presses keys, looks at
windows, and waits for conditions, never for a time."""

import contextlib
import ctypes
import json
import os
import re
import subprocess
import sys
import tempfile
import threading
import time
from pathlib import Path

import web_service

DEMO = Path(__file__).resolve().parent
PATIENCE = 10.0
SETTINGS = {
    "general.windowToggleEvent": "⌃ + ⇧ + T",
    "general.actionCamToggleEvent": "H",
    "general.pasteClipoard": "true",
}
HOTKEY = ("Control_L", "Shift_L", "t")
PASTE_KEYS = ("Super_L", "v")
CAMERA_KEY = "H"
# Where a player's keyboard and mouse, and the screen, are: outside of a Wayland session.
HANDS, EYES = ({**os.environ, **{name: os.environ[f"VANTOR_{of}_{name}"] for name in ("DISPLAY", "XAUTHORITY")
                                 if f"VANTOR_{of}_{name}" in os.environ}} for of in ("HANDS", "EYES"))
ROLES = {"Vantor": "main", "Vantor icon": "icon", "Vantor emotes": "emoji", "Vantor watched events": "watched"}


def enter_private_desktop():
    """Starts this program again in a private desktop, unless it runs in one."""
    if "VANTOR_PRIVATE_DESKTOP" not in os.environ:
        script = str(DEMO / "private_desktop.sh")
        os.execv(script, [script, sys.executable, *sys.argv])


def wait_until(condition, patience=PATIENCE):
    """What the condition gave, as soon as it is true; its last answer when the time is over."""
    deadline = time.monotonic() + patience
    while True:
        result = condition()
        if result or time.monotonic() > deadline:
            return result
        time.sleep(0.02)


class Report:
    """Prints each finding as a line and counts."""

    def __init__(self):
        self.passed = 0
        self.failed = 0

    def check(self, holds, text, detail=""):
        if holds:
            self.passed += 1
            print(f"ok {text}", flush=True)
        else:
            self.failed += 1
            print(f"FAILED {text}{': ' + str(detail) if detail != '' else ''}", flush=True)
        return bool(holds)


class Program:
    """A child process that dies with us; its lines are kept."""

    def __init__(self, *command, environment=None):
        self.lines = []
        self.process = subprocess.Popen(
            ["setpriv", "--pdeathsig", "KILL", "--", *map(str, command)], env={**os.environ, **(environment or {})},
            stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, errors="replace")
        self.pid = self.process.pid
        threading.Thread(target=self._read, daemon=True).start()

    def _read(self):
        for line in self.process.stdout:
            self.lines.append(line.rstrip("\n"))

    def line(self, pattern, patience=PATIENCE):
        """The first line that the pattern matches, waited for."""
        return wait_until(lambda: next((each for each in list(self.lines) if re.search(pattern, each)), None), patience)

    def alive(self):
        return self.process.poll() is None

    def end(self):
        if self.alive():
            self.process.terminate()
            try:
                self.process.wait(PATIENCE)
            except subprocess.TimeoutExpired:
                self.process.kill()
        return self.process.wait()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.end()


class Game(Program):
    """The stand-in game, or with another class any application; what it was given is read from its record."""

    def __init__(self, binary, folder, *, scene="dark", window_class=None, size=None, holds_pointer=False):
        handle, name = tempfile.mkstemp(suffix=".jsonl", dir=folder)
        os.close(handle)
        self.record_file = Path(name)
        options = ["--scene", scene, "--record", self.record_file]
        options += ["--class", window_class] if window_class else []
        options += ["--size", size] if size else []
        options += ["--hold-pointer"] if holds_pointer else []
        super().__init__(binary, *options)
        ready = self.line(r"^ready 0x")
        if not ready:
            raise RuntimeError(f"the stand-in game does not start: {self.lines}")
        self.window = int(ready.split()[1], 16)

    def record(self, since=0):
        lines = self.record_file.read_text().split("\n")[:-1]
        return [json.loads(line) for line in lines[since:]]

    def keys(self, since=0, down=True):
        return [event for event in self.record(since) if event["event"] == "key" and event["down"] == down]

    def presses(self, key, since=0):
        return sum(1 for event in self.keys(since) if event["key"] == key)

    def typed(self, since=0):
        return "".join(event["text"] for event in self.keys(since))

    def has_focus(self):
        return active_window() == self.window

    def keys_are_up(self):
        """Every key that went down has come up again."""
        held = set()
        for event in self.record():
            if event["event"] == "key":
                (held.add if event["down"] else held.discard)(event["code"])
        return not held


class WebService(Program):
    def __init__(self, fault="none", delay=5.0, catalogue=None):
        super().__init__(sys.executable, DEMO / "web_service.py", "--fault", fault, "--delay", delay,
                         *(["--catalogue", catalogue] if catalogue else []))
        line = self.line(r"^port \d+")
        if not line:
            raise RuntimeError(f"the stand-in web service does not start: {self.lines}")
        self.host = f"http://127.0.0.1:{line.split()[1]}"


class Vantor(Program):
    """The program itself, with settings of its own, or as it finds them, and a given host for the web API."""

    def __init__(self, binary, host, folder, *, key=web_service.VALID_KEY, settings=None, environment=None, as_found=False):
        self.binary = binary
        self.environment = {"XDG_CONFIG_HOME": tempfile.mkdtemp(prefix="settings.", dir=folder),
                            **{f"VANTOR_{name}_HOST": host for name in ("API", "WIKI", "VIDEO", "SEARCH", "FEEDBACK")},
                            **(environment or {})}
        if not as_found:
            store(binary, self.environment, {**SETTINGS, **(settings or {})}, key)
        super().__init__(binary, environment=self.environment)

    def windows(self):
        """The geometry of the windows that are on the screen, by role."""
        return {ROLES.get(name, name): geometry for name, geometry in visible_windows(self.pid).items()}

    def overlay_shown(self):
        return "main" in self.windows()

    def overlay(self):
        """Its place, once it is there."""
        return wait_until(lambda: self.windows().get("main"))

    def setting(self, key):
        command = [str(self.binary), "--get", key]
        return subprocess.run(command, env={**os.environ, **self.environment}, capture_output=True, text=True,
                              timeout=PATIENCE).stdout.strip()

    def unexpected_lines(self, *expected):
        return [line for line in self.lines if line and not any(re.search(pattern, line) for pattern in expected)]


def every_event(minutes=10):
    """Settings that watch all events: of these some are always about to happen."""
    catalogue = json.loads((DEMO.parent / "resources/catalogue/events.json").read_text(encoding="utf-8"))
    names = sorted({event["name"] for section in catalogue for event in section["segments"] if event["name"]})
    return {"events.watching": json.dumps(names), "timer.watchedWindowDuration": str(minutes)}


def store(binary, environment, settings, key):
    """Writes settings as a player would; the key goes by standard input, so that no argument shows it."""
    arguments = [str(binary)]
    for name, value in settings.items():
        arguments += ["--set", f"{name}={value}"]
    environment = {**os.environ, **environment}
    subprocess.run(arguments, env=environment, check=True, timeout=PATIENCE)
    subprocess.run([str(binary), "--set", "api.key=-"], env=environment, check=True, timeout=PATIENCE, input=key, text=True)


def ask(*command):
    return subprocess.run(command, capture_output=True, text=True, timeout=PATIENCE).stdout.strip()


@contextlib.contextmanager
def held(key):
    """The player's hand on a key."""
    subprocess.run(["xdotool", "keydown", key], check=True, timeout=PATIENCE, env=HANDS)
    try:
        yield
    finally:
        subprocess.run(["xdotool", "keyup", key], check=True, timeout=PATIENCE, env=HANDS)


def clipboard_text():
    return subprocess.run(["xclip", "-o", "-selection", "clipboard"], capture_output=True, text=True, timeout=PATIENCE).stdout


def press(*chord):
    """Holds all but the last key, presses the last, and lets go in the reverse order, as a hand does."""
    held = [word for key in chord[:-1] for word in ("keydown", key)]
    released = [word for key in reversed(chord[:-1]) for word in ("keyup", key)]
    subprocess.run(["xdotool", *held, "key", chord[-1], *released], check=True, timeout=PATIENCE, env=HANDS)


def click(x, y, button=1):
    subprocess.run(["xdotool", "mousemove", str(x), str(y), "click", str(button)], check=True, timeout=PATIENCE, env=HANDS)


def point_at(x, y):
    subprocess.run(["xdotool", "mousemove", str(x), str(y)], check=True, timeout=PATIENCE, env=HANDS)


def drag(x, y, to_x, to_y):
    subprocess.run(["xdotool", "mousemove", str(x), str(y), "mousedown", "1", "mousemove", str(to_x - 1), str(to_y),
                    "mousemove", str(to_x), str(to_y), "mouseup", "1"], check=True, timeout=PATIENCE, env=HANDS)


def screen_size():
    width, height = ask("xdotool", "getdisplaygeometry").split()
    return int(width), int(height)


class _Monitor(ctypes.Structure):  # XRRMonitorInfo
    _fields_ = [("name", ctypes.c_ulong), ("primary", ctypes.c_int), ("automatic", ctypes.c_int), ("output_count", ctypes.c_int),
                ("x", ctypes.c_int), ("y", ctypes.c_int), ("width", ctypes.c_int), ("height", ctypes.c_int),
                ("width_mm", ctypes.c_int), ("height_mm", ctypes.c_int), ("outputs", ctypes.POINTER(ctypes.c_ulong))]


@contextlib.contextmanager
def monitors(**rectangles):
    """Divides the screen into monitors of these names, the first one the main one, as a player's desktop does it (RandR 1.5). Gives
    what takes one of them away. Without the first the server has its own one monitor again."""
    x11, randr = ctypes.CDLL("libX11.so.6"), ctypes.CDLL("libXrandr.so.2")
    for function in (x11.XOpenDisplay, randr.XRRGetScreenResourcesCurrent):
        function.restype = ctypes.c_void_p
    for function in (x11.XDefaultRootWindow, x11.XInternAtom):
        function.restype = ctypes.c_ulong
    display = ctypes.c_void_p(x11.XOpenDisplay(None))
    root = ctypes.c_ulong(x11.XDefaultRootWindow(display))
    # XRRScreenResources: two times, a count and a list of controllers, a count and a list of outputs, each in 8 bytes.
    resources = ctypes.cast(randr.XRRGetScreenResourcesCurrent(display, root), ctypes.POINTER(ctypes.c_void_p))
    outputs = ctypes.cast(resources[5], ctypes.POINTER(ctypes.c_ulong))

    there = set(rectangles)

    def name_of(monitor):
        return ctypes.c_ulong(x11.XInternAtom(display, monitor.encode(), 0))

    def remove(monitor):
        there.discard(monitor)
        randr.XRRDeleteMonitor(display, root, name_of(monitor))
        x11.XSync(display, 0)

    for at, (monitor, rectangle) in enumerate(rectangles.items()):
        info = _Monitor(name_of(monitor), at == 0, 0, int(at == 0), *rectangle, 300, 200, outputs)
        randr.XRRSetMonitor(display, root, ctypes.byref(info))
    x11.XSync(display, 0)
    try:
        yield remove
    finally:
        for monitor in set(there):
            remove(monitor)
        x11.XCloseDisplay(display)


def park_pointer():
    subprocess.run(["xdotool", "mousemove", "1340", "800"], check=True, timeout=PATIENCE, env=HANDS)


def activate(window):
    subprocess.run(["xdotool", "windowactivate", str(window)], check=True, timeout=PATIENCE)


def active_window():
    answer = ask("xdotool", "getactivewindow")
    return int(answer) if answer.isdigit() else None


def visible_windows(pid):
    """Name and geometry of a process's mapped windows."""

    def search():  # a window of anybody that goes meanwhile ends it with an error and half an answer
        answer = subprocess.run(["xdotool", "search", "--onlyvisible", "--pid", str(pid)], capture_output=True, text=True,
                                check=False, timeout=PATIENCE)
        return None if answer.stderr else (answer.stdout.split(),)

    windows = {}
    for window in (wait_until(search) or ([],))[0]:
        name = ask("xdotool", "getwindowname", window)
        shell = dict(re.findall(r"^(\w+)=(-?\d+)$", ask("xdotool", "getwindowgeometry", "--shell", window), re.M))
        if "WIDTH" in shell:
            windows[name] = tuple(int(shell[key]) for key in ("X", "Y", "WIDTH", "HEIGHT"))
    return windows


@contextlib.contextmanager
def clipboard(text):
    """Owns the clipboard while it lasts."""
    owner = subprocess.Popen(["setpriv", "--pdeathsig", "KILL", "--", "xclip", "-quiet", "-selection", "clipboard"],
                             stdin=subprocess.PIPE, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    owner.stdin.write(text.encode())
    owner.stdin.close()
    wait_until(lambda: ask("xclip", "-o", "-selection", "clipboard") == text.strip())
    try:
        yield
    finally:
        owner.kill()
        owner.wait()


def pixels(x, y, width, height):
    """What the screen shows there, three bytes for each point."""
    return subprocess.run(["import", "-silent", "-window", "root", "-crop", f"{width}x{height}+{x}+{y}", "-depth", "8", "rgb:-"],
                          capture_output=True, check=True, timeout=PATIENCE, env=EYES).stdout


def picture(file):
    file = Path(file)
    file.parent.mkdir(parents=True, exist_ok=True)
    subprocess.run(["import", "-silent", "-window", "root", str(file)], check=True, timeout=PATIENCE, env=EYES)
    return file.exists() and file.stat().st_size > 1000


def settled_pixels(x, y, width, height):
    """The screen's part once two looks in a row agree, as they do within the second between the timers' turns."""
    last = pixels(x, y, width, height)

    def same():
        nonlocal last
        before, last = last, pixels(x, y, width, height)
        return before == last

    wait_until(same)
    return last
