"""A web server of a test's own, plain or over TLS with a certificate that nobody signed. Its pages tell it what they see."""

import http.server
import ssl
import subprocess
import threading
from pathlib import Path
from urllib.parse import parse_qs, urlsplit

# Tells what a page sees of itself once its scripts have run: how often it was styled, its colours, whose frame it is.
REPORT = """<script>addEventListener('load', () => setTimeout(() => {
  const style = getComputedStyle(document.body);
  fetch('/saw?' + new URLSearchParams({page: location.pathname + location.search,
    styles: [...document.querySelectorAll('style')].filter(each => each.type == 'text/css' && !each.id).length,
    color: style.color, background: style.backgroundColor, top: window === top,
    names: Object.getOwnPropertyNames(window).filter(each => /qt|vantor|webchannel/i.test(each)).join(' ')}));
}, 50))</script>"""


class Handler(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"

    def do_GET(self):
        server, (path, query) = self.server, urlsplit(self.path)[2:4]
        server.paths.append(self.path)
        if path == "/broken":
            self.close_connection = True
        elif path == "/saw":
            server.seen.append({name: values[0] for name, values in parse_qs(query, keep_blank_values=True).items()})
            self.answer("")
        elif path == "/file.bin":
            self.answer("\0" * 64, ("Content-Disposition", "attachment; filename=taken.bin"))
        else:
            self.answer(f"<!DOCTYPE html><html><head><title>{path}</title><style id=own>body {{ background: #fff; color: #222 }}"
                        f"</style></head><body>{server.bodies.get(path, f'<h1>Page {path}</h1>')}{REPORT}</body></html>")

    def answer(self, body, *headers):
        self.send_response(200)
        for name, value in (("Content-Type", "text/html; charset=utf-8"), ("Content-Length", len(body.encode())), *headers):
            self.send_header(name, value)
        self.end_headers()
        self.wfile.write(body.encode())

    def log_message(self, *_):
        pass


class Server(http.server.ThreadingHTTPServer):
    daemon_threads = True

    def __init__(self, certificate=None):
        super().__init__(("127.0.0.1", 0), Handler)
        self.paths, self.seen, self.bodies, self.ended = [], [], {}, 0  # appended to by many threads, which Python's lists allow
        if certificate:
            context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
            context.load_cert_chain(certificate)
            # The handshake is the connection's own thread's matter.
            self.socket = context.wrap_socket(self.socket, server_side=True, do_handshake_on_connect=False)
        self.host = f"{'https' if certificate else 'http'}://127.0.0.1:{self.server_address[1]}"
        threading.Thread(target=self.serve_forever, daemon=True).start()

    def requests(self, prefix):
        return [path for path in list(self.paths) if path.startswith(prefix)]

    def sights(self, page):
        return [each for each in list(self.seen) if each["page"] == page]

    def handle_error(self, *_):
        """A client that goes away, or refuses the certificate, is what some tests want."""

    def shutdown_request(self, request):
        super().shutdown_request(request)
        self.ended += 1

    def __exit__(self, *_):
        self.shutdown()
        self.server_close()


def unsigned_certificate(folder):
    file = Path(folder) / "certificate.pem"
    subprocess.run(["openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "2", "-subj", "/CN=127.0.0.1", "-addext",
                    "subjectAltName=IP:127.0.0.1", "-keyout", file, "-out", Path(folder) / "only.pem"], check=True,
                   capture_output=True, timeout=30)
    file.write_text(file.read_text() + (Path(folder) / "only.pem").read_text())
    return file
