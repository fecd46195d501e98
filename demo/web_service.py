#!/usr/bin/env python3
"""The stand-in for the game's public web API, its wiki, the searches and the feedback service, on this machine only: the API
answers from the files in demo/web-api/, every page is demo/wiki_page.html; updates of the catalogue come out of a folder
(--catalogue).

Prints "port N" when it answers, then one line for each request; keys never appear in it. Faults can be set at the start
(--fault) and while it runs (GET /fault/KIND; "none" ends it). A fault concerns the paths below /v2/ only.
"""

import argparse
import html
import json
import sys
import threading
import zlib
from http.server import BaseHTTPRequestHandler, ThreadingHTTPServer
from pathlib import Path
from urllib.parse import parse_qs, urlsplit

FILES = Path(__file__).resolve().parent / "web-api"
VALID_KEY = "11111111-AAAA-4AAA-8AAA-111111111111"
REVOKED_KEY = "22222222-BBBB-4BBB-8BBB-222222222222"
WITHOUT_PROGRESSION_KEY = "33333333-CCCC-4CCC-8CCC-333333333333"
PROGRESSION_FIELDS = ("fractal_level", "daily_ap", "monthly_ap", "wvw_rank")
# slow: the whole answer after --delay seconds; hang: no answer while the service lives; shape: JSON of another form
FAULTS = ("none", "slow", "empty", "garbage", "shape", "close", "hang", "status500")
PAGES = ("/index.php", "/results", "/search")
PLAIN_LISTS = {"/v2/dailycrafting": "dailycrafting", "/v2/worldbosses": "worldbosses", "/v2/mapchests": "mapchests"}


def sample(name):
    return json.loads((FILES / f"{name}.json").read_text())


def by_ids(records, query):
    """The web API's rule for ids: 206 when some are unknown, 404 when all are."""
    if "ids" not in query:
        return 200, [record["id"] for record in records]
    wanted = query["ids"][0].split(",")
    if wanted != ["all"]:
        if len(wanted) > 200:
            return 400, {"text": "id list too long; this endpoint is limited to 200 ids at once"}
        found = [record for record in records if str(record["id"]) in wanted]
        if not found:
            return 404, {"text": "all ids provided are invalid"}
        return (200 if len(found) == len(wanted) else 206), found
    return 200, records


def answer(path, query, key):
    """Status and JSON document of one request."""
    if path in ("/v2/account", "/v2/account/achievements"):
        if key not in (VALID_KEY, WITHOUT_PROGRESSION_KEY):
            return 401, sample("error_invalid_key")
        if path == "/v2/account":
            account = sample("account")
            if key == WITHOUT_PROGRESSION_KEY:
                account = {name: value for name, value in account.items() if name not in PROGRESSION_FIELDS}
            return 200, account
        if key == WITHOUT_PROGRESSION_KEY:
            return 403, sample("error_missing_scope")
        return 200, sample("account_achievements")
    if path == "/v2/tokeninfo":
        if key not in (VALID_KEY, WITHOUT_PROGRESSION_KEY):
            return 401, sample("error_invalid_key")
        permissions = ["account", "inventories"] if key == WITHOUT_PROGRESSION_KEY else ["account", "progression"]
        return 200, {"id": key[:8], "name": "Vantor", "permissions": permissions}
    if path in PLAIN_LISTS:
        return 200, sample(PLAIN_LISTS[path])
    if path == "/v2/achievements":
        return by_ids(sample("achievements"), query)
    if path == "/v2/achievements/categories":
        return by_ids([sample("achievements_categories_261")], query)
    return 404, {"text": "no such endpoint"}


def page(path, query):
    """A page of the wiki's structure. Its title is the last part of the path, the words that were asked for stand in it."""
    asked = next((query[name][0] for name in ("search", "search_query", "q") if name in query), "")
    title = path.removeprefix("/wiki/").strip("/").replace("_", " ") if path.startswith("/wiki/") else f"Search: {asked}"
    text = (FILES.parent / "wiki_page.html").read_text()
    return text.replace("{title}", html.escape(title)).replace("{query}", html.escape(asked)).encode()


class Handler(BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"

    def do_GET(self):
        parts = urlsplit(self.path)
        query = parse_qs(parts.query)
        if parts.path.startswith("/fault/"):
            return self.change_fault(parts.path.removeprefix("/fault/"))
        if parts.path.startswith("/catalogue/"):
            return self.send_catalogue(parts.path.removeprefix("/catalogue/"))
        if parts.path.startswith("/wiki/") or parts.path in PAGES:
            print(f"page {self.path}", flush=True)
            return self.send(200, page(parts.path, query), "text/html; charset=utf-8")
        key = query.get("access_token", [""])[0]
        if self.headers.get("Authorization", "").startswith("Bearer "):
            key = self.headers["Authorization"].removeprefix("Bearer ")
        fault = self.server.fault
        status, document = answer(parts.path, query, key)
        body = json.dumps(document).encode()
        if fault == "slow":
            self.server.stopping.wait(self.server.delay)
        elif fault == "empty":
            body = b""
        elif fault == "garbage":
            body = b"<html><body>This is not the page that you are looking for"
        elif fault == "shape":
            body = b'{"achievements": []}'
        elif fault == "status500":
            status, body = 500, b'{"text": "internal error"}'
        self.note(parts.path, fault if fault in ("close", "hang") else status, key)
        if fault == "hang":
            self.server.stopping.wait()
        if fault in ("close", "hang"):
            self.close_connection = True
            return None
        return self.send(status, body)

    def send_catalogue(self, path):
        """A file of the folder, unless the client has it already."""
        file = self.server.catalogue / path if self.server.catalogue else None
        if not file or ".." in path or not file.is_file():
            print(f"GET {self.path} 404", flush=True)
            return self.send(404, b"no such file")
        body = file.read_bytes()
        tag = f'"{zlib.crc32(body):08x}"'
        status = 304 if self.headers.get("If-None-Match") == tag else 200
        print(f"GET {self.path} {status}", flush=True)
        return self.send(status, body if status == 200 else b"", "application/octet-stream", ETag=tag)

    def do_POST(self):
        """The feedback service: says what it got, byte for byte."""
        body = self.rfile.read(int(self.headers.get("Content-Length", 0)))
        status = 200 if self.server.fault == "none" else 500
        print(f"feedback {self.path} {status} {body.decode(errors='backslashreplace')}", flush=True)
        self.send(status, b"")

    def change_fault(self, kind):
        if kind not in FAULTS:
            return self.send(404, b'{"text": "no such fault"}')
        self.server.fault = kind
        return self.send(200, b"{}")

    def send(self, status, body, kind="application/json; charset=utf-8", **headers):
        self.send_response(status)
        for name, value in headers.items():
            self.send_header(name, value)
        self.send_header("Content-Type", kind)
        self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        self.wfile.write(body)

    def note(self, path, outcome, key):
        names = {VALID_KEY: "valid", REVOKED_KEY: "revoked", WITHOUT_PROGRESSION_KEY: "no progression", "": "none"}
        print(f"{self.command} {path} {outcome} (key: {names.get(key, 'unknown')})", flush=True)

    def log_message(self, *_):
        """The base class would print the whole request line, the key in it."""


class Service(ThreadingHTTPServer):
    daemon_threads = True

    def __init__(self, port, fault="none", delay=5.0, catalogue=None):
        super().__init__(("127.0.0.1", port), Handler)
        self.fault = fault
        self.delay = delay
        self.catalogue = catalogue
        self.stopping = threading.Event()

    def handle_error(self, request, client_address):
        """A client that went away is no fault of ours; anything else is."""
        if not isinstance(sys.exc_info()[1], ConnectionError):
            super().handle_error(request, client_address)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--port", type=int, default=0, help="0 takes a free one")
    parser.add_argument("--fault", choices=FAULTS, default="none")
    parser.add_argument("--delay", type=float, default=5.0, help="seconds that a slow answer takes")
    parser.add_argument("--catalogue", type=Path, help="a folder of signed catalogues, as packaging/catalogue/sign.sh fills it")
    arguments = parser.parse_args()
    service = Service(arguments.port, arguments.fault, arguments.delay, arguments.catalogue)
    print(f"port {service.server_address[1]}", flush=True)
    try:
        service.serve_forever()
    except KeyboardInterrupt:
        service.stopping.set()


if __name__ == "__main__":
    main()
