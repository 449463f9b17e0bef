"""A Chromium without a display, driven over the WebDriver protocol."""

import json
import re
import shutil
import subprocess
import tempfile
import urllib.request

FLAGS = [
    "--headless=new", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
    "--disable-background-networking", "--disable-component-update", "--disable-sync", "--disable-ipc-flooding-protection",
]


class Browser:
    def __init__(self):
        self._profile = tempfile.mkdtemp(prefix="atlas-test-")
        self._session = None
        self._driver = subprocess.Popen(["chromedriver", "--port=0"], stdout=subprocess.PIPE,
                                        stderr=subprocess.DEVNULL, text=True)
        for line in self._driver.stdout:
            started = re.search(r"started successfully on port (\d+)", line)
            if started:
                self._base = f"http://127.0.0.1:{started[1]}"
                break
        else:
            raise RuntimeError("chromedriver does not start")
        options = {"args": [*FLAGS, f"--user-data-dir={self._profile}"]}
        capabilities = {"goog:chromeOptions": options, "goog:loggingPrefs": {"browser": "ALL", "performance": "ALL"}}
        session = self._call("POST", "/session", {"capabilities": {"alwaysMatch": capabilities}})
        self._session = f"/session/{session['sessionId']}"

    def close(self):
        try:
            if self._session:
                self._call("DELETE", self._session)
        finally:
            self._driver.terminate()
            self._driver.wait()
            self._driver.stdout.close()
            shutil.rmtree(self._profile, ignore_errors=True)

    def _call(self, method, path, body=None):
        data = None if body is None else json.dumps(body).encode()
        request = urllib.request.Request(self._base + path, data=data, method=method)
        # A proxy has no business between this and the driver.
        opener = urllib.request.build_opener(urllib.request.ProxyHandler({}))
        with opener.open(request, timeout=120) as answer:
            return json.load(answer)["value"]

    def open(self, url):
        self._call("POST", self._session + "/url", {"url": url})

    def run(self, script, *arguments):
        """What the function body returns."""
        return self._call("POST", self._session + "/execute/sync", {"script": script, "args": list(arguments)})

    def wait_for(self, script, *arguments):
        """Until the function body returns something true, looked at after every event of the page; that value."""
        body = """
            const [args, done] = [[...arguments].slice(0, -1), arguments[arguments.length - 1]];
            const until = performance.now() + 10000;
            const look = () => {
                const found = (function () { %s }).apply(null, args);
                if (found || performance.now() > until) done(found); else setTimeout(look, 10);
            };
            look();""" % script
        found = self._call("POST", self._session + "/execute/async", {"script": body, "args": list(arguments)})
        if not found:
            raise AssertionError(f"not seen within 10 seconds: {script} {arguments}")
        return found

    def press(self, *keys):
        """Key strokes, as from a keyboard."""
        actions = [{"type": kind, "value": key} for key in keys for kind in ("keyDown", "keyUp")]
        self._call("POST", self._session + "/actions",
                   {"actions": [{"type": "key", "id": "keyboard", "actions": actions}]})

    def point_at(self, css):
        """Moves the mouse to the middle of an element."""
        element = self._call("POST", self._session + "/element", {"using": "css selector", "value": css})
        move = {"type": "pointerMove", "duration": 0, "x": 0, "y": 0, "origin": element}
        self._call("POST", self._session + "/actions",
                   {"actions": [{"type": "pointer", "id": "mouse", "actions": [move]}]})

    def devtools(self, command, **parameters):
        return self._call("POST", self._session + "/goog/cdp/execute", {"cmd": command, "params": parameters})

    def log(self, kind):
        return self._call("POST", self._session + "/se/log", {"type": kind})
