#!/usr/bin/env python3
"""Walks the scripts for macOS on Linux: a copy of them, with stand-ins for a Mac's programs that write down how they were
called. Shows what is laid out, called and said; not that a Mac's own programs take it. Prints "N passed, M failed" as its
last line."""

import os
import plistlib
import re
import shutil
import struct
import subprocess
import sys
import tempfile
from pathlib import Path

TOP = Path(__file__).resolve().parents[2]
sys.dont_write_bytecode = True
sys.path.insert(0, str(TOP / "demo"))
import desk  # noqa: E402

IDENTITY = "Vantor Self-Signed"
VERSION = re.search(r"^project\(vantor VERSION ([0-9.]+)", (TOP / "CMakeLists.txt").read_text(), re.M)[1]
FOR_BUILDING = "cmake ninja ccache python qt librsvg libsodium googletest fonttools font-eb-garamond font-lato".split()
LINUX_PARTS = "bench|macos|fuzz|desktop|package|tidy"
# What a Mac's bash 3.2 cannot do, and what GNU's tools know and a Mac's do not.
LATER_BASH = r"(declare|local|typeset) -[Ang]|mapfile|readarray|\$\{\w+(\[[@*]\])?(@\w|,,?|\^\^?)|&>>|\|&|coproc|\[\[ -v "
GNU_ONLY = {"sed": "-r|-i|--.*", "xargs": "-r|-d|--.*", "grep": "-[A-Za-z]*P.*", "readlink": "-.*", "cp": "--.*|-[tT]",
            "mktemp": "--.*", "install": "-[DtT]|--.*", "find": "-printf|-regextype", "date": "-d|--.*", "head": "--.*|-n-.*"}
# Refuses what only GNU's tool would take, and else is the tool. The words of xargs end where its command begins.
NARROW = """#!/bin/bash
for each in "$@"; do
    [[ ${0##*/} == xargs && $each != -* ]] && break
    [[ $each =~ ^(%s)$ ]] && { echo "${0##*/}: $each is GNU's" >&2; exit 64; }
done
exec %s "$@"
"""
STANDIN = r"""#!/bin/bash
name=${0##*/}
{ printf '%s' "$name" && printf '\t%s' "$@" && echo; } >>"$RECORD"
[[ -n $FAILING && "$name $*" =~ $FAILING ]] && exit 7
program() { mkdir -p "$(dirname "$1")" && { echo '#!/bin/bash'; echo "$2"; } >"$1" && chmod +x "$1"; }
case $name in
    uname) echo Darwin ;;
    tty) [[ -n $TERMINAL ]] && echo "$TERMINAL" ;;
    brew) [[ $1 != --prefix ]] || echo "$BREW" ;;
    git) echo a.cpp ;;
    otool) printf '      cmd LC_BUILD_VERSION\n    minos 14.0\n      sdk 14.2\n  version 1022.1\n' ;;
    macdeployqt)
        mkdir -p "$1/Contents/Frameworks/QtCore.framework/Versions/A" "$1/Contents/PlugIns/platforms"
        touch "$1/Contents/Frameworks/"{QtCore.framework/Versions/A/inner.dylib,libglib.0.dylib,libbare.1.dylib} \
            "$1/Contents/PlugIns/platforms/libqcocoa.dylib" ;;
    iconutil) cp -R "${!#}" "$KEEP/" && touch "$4" ;;
    security)
        case $1 in
            find-identity) printf '  1) 0123456789 "%s"\n     1 identities found\n' "$IDENTITIES" ;;
            import) cp "$2" "$KEEP/identity.p12" && echo "$4" >"$KEEP/password" ;;
            add-trusted-cert) cp "${!#}" "$KEEP/certificate.pem" ;;
        esac ;;
    codesign) find "${!#}" -type f >"$KEEP/covered" ;;
    cmake) mkdir -p "build/$2" && touch "build/$2/build.ninja" ;;
    ninja)
        [[ $3 != -n ]] || { [[ -e $2/done-$4 ]] && echo 'no work to do'; exit 0; }
        for each in "${@:3}"; do
            touch "$2/done-$each"
            if [[ $each == vantor ]]; then program "$2/src/vantor" 'echo "started $*"'
            else program "$2/tests/$each" 'echo "[  PASSED  ] 3 tests."'; fi
        done ;;
esac
"""
MAC_PROGRAMS = ("uname tty open otool brew xcode-select macdeployqt iconutil codesign security cmake ninja git "
                "clang-format").split()


def program(path, text):
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_text(text)
    path.chmod(0o755)


class Mac:
    """A copy of the scripts in a folder of its own, and a search path on which a Mac's programs stand first."""

    def __init__(self, folder):
        self.folder = Path(folder)
        self.tree, self.bin, self.brew, self.keep = (self.folder / name for name in ("tree", "bin", "brew", "keep"))
        for each in (self.bin, self.brew / "opt", self.keep, self.folder / "tmp", self.tree / "src"):
            each.mkdir(parents=True)
        for name in ("packaging", "resources/images", "resources/catalogue", "tests/layers"):
            shutil.copytree(TOP / name, self.tree / name)
        for name in ("run", "test", "CMakeLists.txt"):
            shutil.copy2(TOP / name, self.tree / name)
        program(self.tree / "tests/oracle/compare.py", "print('2 passed, 0 failed')\n")
        for name in MAC_PROGRAMS:
            program(self.bin / name, STANDIN)
        for name, options in GNU_ONLY.items():
            program(self.bin / name, NARROW % (options, shutil.which(name)))
        self.bundle = self.tree / "packaging/macos/bundle.sh"
        self.built = self.tree / "build/release"

    def call(self, *command, failing="", identities=IDENTITY, **more):
        """What a script gave, with the calls of the stand-ins in their order."""
        record = self.folder / "record"
        record.write_text("")
        environment = {"PATH": f"{self.bin}:/usr/bin:/bin", "HOME": str(self.folder), "TMPDIR": str(self.folder / "tmp"),
                       "RECORD": str(record), "FAILING": failing, "IDENTITIES": identities, "KEEP": str(self.keep),
                       "BREW": str(self.brew), "TERMINAL": "", **more}
        result = subprocess.run([str(word) for word in command], capture_output=True, text=True, timeout=60, env=environment)
        calls = [line.split("\t") for line in record.read_text().splitlines()]
        result.of = lambda *names: [call for call in calls if call[0] in names]
        result.said = result.stderr.strip().split("\n")
        return result

    def install(self, *names):
        for name in names:
            (self.brew / "opt" / name).mkdir(exist_ok=True)


def same(report, text, found, expected):
    report.check(found == expected, text, found)


def stops(report, text, result, status, line):
    report.check(result.returncode == status and len(result.said) == 1 and line in result.said[0], text,
                 (result.returncode, result.said))


def sizes(folder):
    return {path.name: struct.unpack(">II", path.read_bytes()[16:24]) for path in folder.glob("*.png")}


def scripts(report, _):
    files = [file for file in (*TOP.glob("*"), *TOP.glob(".ci/*"), *TOP.glob("demo/*"), *TOP.glob("packaging/**/*.sh"))
             if file.is_file() and re.match(rb"#!.*bash", file.read_bytes()[:40])]
    shellcheck = subprocess.run(["shellcheck", "-S", "warning", *files], capture_output=True, text=True)
    same(report, "shellcheck warns of nothing", (len(files) >= 8, shellcheck.returncode, shellcheck.stdout), (True, 0, ""))
    on_a_mac = {name: (TOP / name).read_text() for name in ("run", "packaging/build.sh", "packaging/macos/bundle.sh")}
    on_a_mac["packaging/setup.sh"] = (TOP / "packaging/setup.sh").read_text().split("\nfi\n")[0]
    on_a_mac["test"] = re.sub(rf"^part_({LINUX_PARTS})\(.*?^}}", "", (TOP / "test").read_text(), flags=re.M | re.S)
    later = {name: found[0] for name, text in on_a_mac.items() if (found := re.search(LATER_BASH, text))}
    same(report, "what a Mac runs keeps to bash 3.2", later, {})


def bundling(report, mac):
    stops(report, "without a program it stops", mac.call(mac.bundle, mac.built), 1, "build it first")
    program(mac.built / "src/vantor", "")
    laid_out = mac.call(mac.bundle, "lay-out", mac.built, mac.folder / "lay out")
    report.check(laid_out.returncode == 0 and not laid_out.of("codesign", "security", "macdeployqt", "otool"),
                 "laying out asks for no Mac", laid_out.stderr)
    program(mac.brew / "Cellar/glib/2.0/COPYING", "")
    program(mac.brew / "Cellar/glib/2.0/lib/libglib.0.dylib", "")
    (mac.brew / "opt/glib").symlink_to("../Cellar/glib/2.0")
    app = mac.built / "Vantor.app"
    made = mac.call(mac.bundle, mac.built)
    *inner, outer, verified = made.of("codesign")
    hardened = ["codesign", "--force", "--options", "runtime"]
    libraries = ("Frameworks/QtCore.framework", "Frameworks/libglib.0.dylib", "Frameworks/libbare.1.dylib",
                 "PlugIns/platforms/libqcocoa.dylib")
    rights = str(mac.tree / "packaging/macos/Vantor.entitlements")
    same(report, "each library is signed once, hardened, then the bundle with its right, which is verified",
         (sorted(inner), outer, verified),
         (sorted([*hardened, "--sign", IDENTITY, str(app / "Contents" / name)] for name in libraries),
          [*hardened, "--entitlements", rights, "--sign", IDENTITY, str(app)],
          ["codesign", "--verify", "--strict", "--deep", str(app)]))
    covered = set((mac.keep / "covered").read_text().split("\n")) - {""}
    same(report, "nothing is added after that", {str(path) for path in app.rglob("*") if path.is_file()} - covered, set())
    resources = app / "Contents/Resources"
    plist = plistlib.loads((app / "Contents/Info.plist").read_bytes())
    told = [plist.get(key) for key in ("CFBundleIdentifier", "CFBundlePackageType", "CFBundleVersion", "CFBundleIconFile",
                                       "LSUIElement", "LSMinimumSystemVersion")]
    same(report, "the list names the program, an accessory, and where it starts", told,
         ["orvendel.Vantor", "APPL", VERSION, "Vantor", True, "14.0"])
    report.check(os.access(app / "Contents/MacOS" / plist["CFBundleExecutable"], os.X_OK), "the program lies where it says")
    icons = {f"icon_{size}x{size}{end}.png": (size * scale,) * 2
             for size in (16, 32, 128, 256, 512) for end, scale in (("", 1), ("@2x", 2))}
    same(report, "the icon is made of its ten sizes, and the status bar has its images",
         (sizes(mac.keep / "Vantor.iconset"), (resources / "Vantor.icns").exists(), sizes(resources)),
         (icons, True, {"vantor.png": (18, 18), "vantor@2x.png": (36, 36)}))
    texts = {str(path.relative_to(resources / "Licences")) for path in app.rglob("Licences/**/*")}
    same(report, "the licences are there", texts, {"copyright", "GFDL-1.3.txt", "NOTICE.md", "LGPL-3.0.txt", "GPL-3.0.txt",
                                                   "Libraries.txt", "glib", "glib/COPYING"})
    report.check("no licence was found for libbare.1.dylib:" in made.stderr and made.stderr.count("Always Allow") == 1,
                 "what it could not do and what is asked once are told", made.stderr)
    bare = mac.call(mac.bundle, mac.built, identities="Somebody Else")
    stops(report, "without the identity it stops", bare, 1, f"no identity '{IDENTITY}'")
    for failing, most in (("codesign.*libglib", 4), ("codesign --verify", 6), ("otool", 0)):
        broken = mac.call(mac.bundle, mac.built, failing=failing)
        claims = re.search("made|signed by", broken.stderr)
        report.check(broken.returncode != 0 and len(broken.of("codesign")) <= most and not claims,
                     f"a failing {failing} stops it", (broken.returncode, broken.stderr))


def identity(report, mac):
    made = mac.call(mac.bundle, "identity", identities="Somebody Else")
    _, imported, trusted = made.of("security")
    same(report, "the identity is imported for codesign and trusted for code", (imported[1], imported[-2:], trusted[1:4]),
         ("import", ["-T", "/usr/bin/codesign"], ["add-trusted-cert", "-p", "codeSign"]))
    shown = subprocess.run(["openssl", "x509", "-in", mac.keep / "certificate.pem", "-noout", "-subject", "-ext",
                            "keyUsage,extendedKeyUsage,basicConstraints"], capture_output=True, text=True).stdout
    report.check(all(text in shown for text in (f"CN = {IDENTITY}", "Code Signing", "Digital Signature", "CA:FALSE")),
                 "its certificate is for signing code", shown)
    opened = subprocess.run(["openssl", "pkcs12", "-in", mac.keep / "identity.p12", "-passin", f"file:{mac.keep}/password",
                             "-nodes"], capture_output=True, text=True)
    report.check("PRIVATE KEY" in opened.stdout and f"Name: {IDENTITY}" in opened.stdout, "the key is with it", opened.stderr)
    refused = mac.call(mac.bundle, "identity", identities="", failing="security import")
    report.check(refused.returncode != 0 and "made" not in refused.stderr, "a keychain that refuses stops it", refused.stderr)
    same(report, "no key is left behind", list((mac.folder / "tmp").iterdir()), [])
    same(report, "one that is there is kept", len(mac.call(mac.bundle, "identity").of("security")), 1)


def setting_up(report, mac):
    setup = mac.tree / "packaging/setup.sh"
    mac.install("cmake", "qt", "python")
    (mac.brew / "Caskroom/font-lato").mkdir(parents=True)
    wanted = "ninja ccache librsvg libsodium googletest fonttools font-eb-garamond clang-format".split()
    asked = mac.call(setup, "build", "checks")
    same(report, "it installs what is missing", asked.of("brew")[1:], [["brew", "install", "--quiet", *wanted]])
    for words, more, status, line in ((["build"], {"failing": "brew install"}, 1, "the installation failed"),
                                      (["build"], {"failing": "xcode-select"}, 1, "xcode-select --install"),
                                      (["everything"], {}, 2, "unknown set 'everything'"),
                                      (["build", "desktop"], {}, 1, "needs Linux")):
        refused = mac.call(setup, *words, **more)
        same(report, f"it says '{line}'", (refused.returncode, line in refused.said[-1]), (status, True))


def starting(report, mac):
    mac.install(*FOR_BUILDING)
    app = str(mac.built / "local/Vantor.app")

    def start(*words, **more):
        result = mac.call(mac.tree / "run", *words, **more)
        result.signers = [call[-2] for call in result.of("codesign") if call[-3] == "--sign"]
        return result

    first = start("--set", "a b", identities="Somebody Else")
    calls = [call[0] for call in first.of("brew", "cmake", "ninja", "iconutil", "codesign", "macdeployqt", "open")]
    same(report, "it builds, makes a bundle, signs it and starts it", (first.stdout, calls, first.signers),
         ("started --set a b\n", ["brew", "cmake", "ninja", "ninja", "iconutil", "codesign", "codesign"], ["-"]))
    report.check("will not last" in first.said[-1] and "bundle.sh identity" in first.said[-1], "and says what ad hoc means",
                 first.said)
    quick = start(identities="Somebody Else")
    same(report, "without arguments as a program of its own, at once when nothing is new",
         (quick.of("open"), quick.stdout, quick.signers, quick.stderr), ([["open", "-W", app]], "", [], ""))
    same(report, "that speaks in the terminal", start(identities="Somebody Else", TERMINAL="/dev/ttys001").of("open"),
         [["open", "-W", "--stdout", "/dev/ttys001", "--stderr", "/dev/ttys001", app]])
    same(report, "an identity made since is taken, and stays", (start().signers, start().signers), ([IDENTITY], []))
    for changed in (mac.built / "src/vantor", mac.tree / "packaging/macos/Info.plist.in"):
        seal = Path(app + ".signed").stat().st_mtime
        os.utime(changed, (seal, seal + 60))
        broken = start(failing="codesign --verify")
        report.check(broken.returncode != 0 and not broken.of("open"), f"with a new {changed.name}, none unverified starts")
        same(report, "and the next start signs again", start().signers, [IDENTITY])
        os.utime(changed, (seal, seal - 60))
    stops(report, "an identity that was asked for is needed", start(VANTOR_SIGN_IDENTITY="Lost"), 1, "no identity 'Lost'")
    stops(report, "the tour needs Linux", start("--demo"), 1, "needs Linux")


def testing(report, mac):
    mac.install(*FOR_BUILDING[1:])
    tested = mac.call(mac.tree / "test")
    # One each of layers and format, three tests in each of three programs, two cases of the oracle's stand-in.
    same(report, "./test runs there", (tested.returncode, tested.stdout, tested.of("clang-format")),
         (0, "13 passed, 0 failed\n", [["clang-format", "--dry-run", "--Werror", "a.cpp"]]))
    stops(report, "a part that needs Linux is named", mac.call(mac.tree / "test", "desktop"), 2, "no part 'desktop'")


def main():
    report = desk.Report()
    for part in (scripts, bundling, identity, setting_up, starting, testing):
        with tempfile.TemporaryDirectory(prefix="vantor-macos.") as folder:
            try:
                part(report, Mac(folder))
            except (OSError, LookupError, ValueError, struct.error, subprocess.SubprocessError) as fault:
                report.check(False, part.__name__, repr(fault))
    print(f"{report.passed} passed, {report.failed} failed")
    return 1 if report.failed else 0


if __name__ == "__main__":
    sys.exit(main())
