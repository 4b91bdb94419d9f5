"""browser.py: a Chromium without a window, asked over the pipe of its DevTools protocol."""

import base64
import contextlib
import json
import os
import select
import shutil
import subprocess
import tempfile
import time

LONGEST_WAIT = 300
# What a page says to whoever writes it, and what it asks the network for.
COMPLAINTS = ("Runtime.consoleAPICalled", "Runtime.exceptionThrown", "Log.entryAdded")
REQUESTS = "Network.requestWillBeSent"


class BrowserError(Exception):
    """The browser cannot be started, or does not answer."""


class Browser:
    """One browser with one tab. Close it, or use it in a with-statement."""

    def __init__(self):
        self.profile = tempfile.mkdtemp(prefix="velmor-browser-")
        to_browser, self.writing = os.pipe()
        self.reading, from_browser = os.pipe()
        command = [
            "chromium",
            "--headless",
            "--no-sandbox",
            "--disable-gpu",
            "--disable-dev-shm-usage",
            "--hide-scrollbars",
            "--no-first-run",
            "--remote-debugging-pipe",
            f"--user-data-dir={self.profile}",
            "about:blank",
        ]

        def give_pipes():
            # The protocol's pipes are descriptors 3 and 4, whatever they were here.
            high = [os.dup2(to_browser, 100), os.dup2(from_browser, 101)]
            os.dup2(high[0], 3)
            os.dup2(high[1], 4)

        try:
            self.process = subprocess.Popen(
                command,
                stdin=subprocess.DEVNULL,
                stdout=subprocess.DEVNULL,
                stderr=subprocess.DEVNULL,
                close_fds=False,
                preexec_fn=give_pipes,
                env=os.environ | {"HOME": self.profile},
            )
        finally:
            os.close(to_browser)
            os.close(from_browser)
        self.buffer = b""
        self.last = 0
        self.session = None
        self.events = []
        target = self.ask("Target.createTarget", url="about:blank")["targetId"]
        self.session = self.ask("Target.attachToTarget", targetId=target, flatten=True)["sessionId"]
        for domain in ("Page", "Runtime", "Log", "Network"):
            self.ask(domain + ".enable")

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def close(self):
        with contextlib.suppress(Exception):
            self.session = None
            self.ask("Browser.close")
        try:
            self.process.wait(timeout=20)
        except subprocess.TimeoutExpired:
            self.process.kill()
            self.process.wait()
        os.close(self.writing)
        os.close(self.reading)
        shutil.rmtree(self.profile, ignore_errors=True)

    def message(self):
        """The next one from the browser."""
        end = time.monotonic() + LONGEST_WAIT
        while b"\0" not in self.buffer:
            ready, _, _ = select.select([self.reading], [], [], max(0, end - time.monotonic()))
            piece = os.read(self.reading, 1 << 20) if ready else b""
            if not piece:
                raise BrowserError("the browser has ended" if ready else "the browser does not answer")
            self.buffer += piece
        text, self.buffer = self.buffer.split(b"\0", 1)
        return json.loads(text)

    def ask(self, method, **params):
        """The answer to a call; events that come meanwhile are kept."""
        self.last += 1
        call = {"id": self.last, "method": method, "params": params}
        if self.session:
            call["sessionId"] = self.session
        data = json.dumps(call).encode() + b"\0"
        while data:
            data = data[os.write(self.writing, data) :]
        while True:
            message = self.message()
            if message.get("id") == self.last:
                if "error" in message:
                    raise BrowserError(f"{method}: {message['error']['message']}")
                return message["result"]
            self.events.append(message)

    def wait_for(self, event):
        while not any(message.get("method") == event for message in self.events):
            self.events.append(self.message())

    def load(self, path):
        """Opens a file; returns what the page complained of and which addresses it asked for."""
        self.events = []
        self.ask("Page.navigate", url="file://" + os.path.abspath(path))
        self.wait_for("Page.loadEventFired")
        # The answer comes when everything before it has been told.
        self.run("document.fonts.ready.then(() => 0)")
        complaints = [e for e in self.events if e.get("method") in COMPLAINTS]
        asked = [e["params"]["request"]["url"] for e in self.events if e.get("method") == REQUESTS]
        return complaints, asked

    def resize(self, width, height=1000):
        self.ask("Emulation.setDeviceMetricsOverride", width=width, height=height, deviceScaleFactor=1, mobile=False)

    def scheme(self, name):
        """Light or dark."""
        self.ask("Emulation.setEmulatedMedia", features=[{"name": "prefers-color-scheme", "value": name}])

    def run(self, script):
        """The value of an expression in the page."""
        result = self.ask("Runtime.evaluate", expression=script, awaitPromise=True, returnByValue=True)
        if "exceptionDetails" in result:
            raise BrowserError(str(result["exceptionDetails"]))
        return result["result"].get("value")

    def picture(self, path, height=None):
        """The page, or its first `height` pixels, as a PNG."""
        size = self.ask("Page.getLayoutMetrics")["cssContentSize"]
        clip = {"x": 0, "y": 0, "width": size["width"], "height": min(height or size["height"], size["height"]), "scale": 1}
        shot = self.ask("Page.captureScreenshot", format="png", captureBeyondViewport=True, clip=clip)
        with open(path, "wb") as file:
            file.write(base64.b64decode(shot["data"]))

    def print_to(self, path):
        """The page as a PDF, on the paper that it asks for."""
        made = self.ask("Page.printToPDF", preferCSSPageSize=True, printBackground=False)
        with open(path, "wb") as file:
            file.write(base64.b64decode(made["data"]))
