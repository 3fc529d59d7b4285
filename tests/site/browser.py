"""Runs Chromium without a window, on pages from files and from a web server."""
import contextlib
import functools
import http.server
import json
import queue
import subprocess
import tempfile
import threading
from pathlib import Path

FOLDER = Path(__file__).parent
FRAME = '<!doctype html><meta charset="utf-8"><iframe width="1280" height="900"></iframe><script src="script.js"></script>'


class Handler(http.server.SimpleHTTPRequestHandler):
    """Serves a site, and in /test/ a page whose script works on the site's pages in a frame and posts a result."""

    def do_GET(self):  # pylint: disable=invalid-name
        own = self.server.own_files.get(self.path)
        if own:
            self.answer(*own)
        else:
            super().do_GET()

    def do_POST(self):  # pylint: disable=invalid-name
        self.server.results.put(json.loads(self.rfile.read(int(self.headers["Content-Length"]))))
        self.answer("text/plain", "")

    def answer(self, kind, text):
        self.send_response(200)
        self.send_header("Content-Type", kind)
        self.end_headers()
        self.wfile.write(text.encode())

    def log_message(self, *arguments):  # pylint: disable=arguments-differ
        pass


@contextlib.contextmanager
def served(site, own_files):
    with http.server.ThreadingHTTPServer(("127.0.0.1", 0), functools.partial(Handler, directory=site)) as server:
        server.own_files, server.results = own_files, queue.Queue()
        thread = threading.Thread(target=server.serve_forever)
        thread.start()
        try:
            yield server
        finally:
            server.shutdown()
            thread.join()


@contextlib.contextmanager
def chromium(program, *arguments, **options):
    """Starts Chromium with a new profile; yields the process and ends it."""
    with tempfile.TemporaryDirectory(ignore_cleanup_errors=True) as profile:
        command = [program, "--headless", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
                   "--disable-background-networking", "--disable-component-update", "--disable-sync",
                   "--disable-dev-shm-usage", f"--user-data-dir={profile}", *arguments]
        with subprocess.Popen(command, stderr=subprocess.DEVNULL, **options) as process:
            try:
                yield process
            finally:
                process.terminate()


def result_of(program, site, script, seconds):
    """The result that a script of this folder posts. It finds the names of the site's pages in pages.json."""
    pages = [p.relative_to(site).as_posix() for p in sorted(Path(site).rglob("*.html"))]
    own_files = {"/test/": ("text/html", FRAME),
                 "/test/script.js": ("text/javascript", (FOLDER / script).read_text(encoding="utf-8")),
                 "/test/pages.json": ("application/json", json.dumps(pages))}
    with served(site, own_files) as server:
        with chromium(program, "--window-size=1400,1000", f"http://127.0.0.1:{server.server_port}/test/"):
            return server.results.get(timeout=seconds)


def page_after(program, address, seconds, *arguments):
    """The page's HTML after its scripts have run for a time, which passes quickly."""
    with chromium(program, *arguments, f"--virtual-time-budget={1000 * seconds}", "--dump-dom", address,
                  stdout=subprocess.PIPE, encoding="utf-8") as process:
        return process.communicate(timeout=120)[0]
