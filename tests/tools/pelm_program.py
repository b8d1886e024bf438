# Drives the program from outside: runs it, serves with it, and visits what it serves.
import html
import http.cookiejar
import os
import re
import signal
import subprocess
import urllib.error
import urllib.parse
import urllib.request
from pathlib import Path

PELM = os.environ["PELM"]
SAMPLE = Path(__file__).resolve().parents[2] / "examples" / "crm"
PATIENCE = 120  # seconds before a hanging program fails its test; no test waits so long otherwise


def run(*arguments, text="", folder=None, **environment):
    """Runs the program to its end: .returncode, .stdout, .stderr."""
    return subprocess.run([PELM, *map(str, arguments)], input=text, capture_output=True, text=True,
                          encoding="utf-8", cwd=folder, timeout=PATIENCE,
                          env={**os.environ, **environment})


class Serving:
    """`pelm serve` on a free port, until the end of a `with`."""

    def __init__(self, *arguments, **environment):
        self.process = subprocess.Popen(
            [PELM, "serve", "--port", "0", *map(str, arguments)], stdout=subprocess.PIPE,
            stderr=subprocess.PIPE, text=True, encoding="utf-8", env={**os.environ, **environment})
        self.stopping = False
        self.first_line = self.process.stdout.readline()
        self.url = next((word for word in self.first_line.split() if word.startswith("http://")), None)
        if self.url is None:
            raise AssertionError(f"no address in {self.first_line!r}: {self.end()}")
        self.address = urllib.parse.urlsplit(self.url)

    def __enter__(self):
        return self

    def __exit__(self, *failure):
        status, _, problems = self.end()
        if failure[0] is None and (status != 0 or "Sanitizer" in problems):
            raise AssertionError(f"the server ended with {status}: {problems}")

    def ask_to_stop(self, how=signal.SIGTERM):
        self.stopping = True
        self.process.send_signal(how)

    def end(self):
        """Stops it when it still runs: (exit status, rest of its output, its errors)."""
        if self.process.poll() is None and not self.stopping:
            self.ask_to_stop()
        try:
            output, problems = self.process.communicate(timeout=PATIENCE)
        except subprocess.TimeoutExpired:
            self.process.kill()
            raise
        return self.process.returncode, output, problems


class Answer:
    def __init__(self, response):
        self.status = response.status
        self.url = response.url
        self.headers = response.headers
        self.text = response.read().decode("utf-8")


class Visitor:
    """A browser without a screen: keeps cookies, follows redirects."""

    def __init__(self, url):
        self.url = url
        self._seal = None
        jar = urllib.request.HTTPCookieProcessor(http.cookiejar.CookieJar())
        self.opener = urllib.request.build_opener(jar, urllib.request.ProxyHandler({}))

    def get(self, path, **query):
        return self._open(path + ("?" + urllib.parse.urlencode(query) if query else ""))

    def seal(self):
        """What this visitor's forms carry; nothing on a site whose first page has no form."""
        if self._seal is None:
            found = re.search(r'name="selo" value="([^"]*)"', self.get("/").text)
            self._seal = {"selo": html.unescape(found.group(1))} if found else {}
        return self._seal

    def post(self, path, headers=None, **fields):
        """Sends a form as its page has it; a field `selo` of one's own takes the seal's place."""
        fields = {**self.seal(), **fields}
        return self._open(path, urllib.parse.urlencode(fields).encode("ascii"), headers or {})

    def _open(self, path, body=None, headers=None):
        request = urllib.request.Request(urllib.parse.urljoin(self.url, path), body, headers or {})
        try:
            response = self.opener.open(request, timeout=PATIENCE)
        except urllib.error.HTTPError as refused:
            response = refused
        with response:
            return Answer(response)
