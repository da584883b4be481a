"""A headless Chromium, driven over its debugging pipe (Chrome DevTools Protocol): enough to open a page, press keys, move
the pointer, evaluate expressions and take pictures."""
import base64
import json
import os
import select
import shutil
import subprocess
import tempfile
import time

PROGRAMS = ("chromium", "chromium-browser", "google-chrome")
SECONDS = 120


def program():
    """The browser, or None."""
    return next((path for path in map(shutil.which, PROGRAMS) if path), None)


class Browser:
    """A page in a browser of its own. `flags` are added to those of the program."""

    def __init__(self, width=1280, height=900, flags=()):
        self.profile = tempfile.TemporaryDirectory(ignore_cleanup_errors=True)
        to_read, self.to_browser = os.pipe()
        self.from_browser, to_write = os.pipe()
        descriptors = [os.dup2(to_read, 60), os.dup2(to_write, 61)]
        command = (f"exec 3<&60 4>&61 60<&- 61>&-; exec '{program()}' --headless --no-sandbox --remote-debugging-pipe "
                   f"--user-data-dir='{self.profile.name}' --no-first-run --disable-background-networking "
                   f"--window-size={width},{height} --hide-scrollbars {' '.join(flags)} about:blank")
        with open(os.devnull, "wb") as nothing:
            self.process = subprocess.Popen(["bash", "-c", command], pass_fds=descriptors, stdin=nothing,
                                            stdout=nothing, stderr=nothing)
        for descriptor in (to_read, to_write, *descriptors):
            os.close(descriptor)
        self.buffer, self.number, self.events, self.session = b"", 0, [], None
        target = self.call("Target.createTarget", url="about:blank")["targetId"]
        self.session = self.call("Target.attachToTarget", targetId=target, flatten=True)["sessionId"]
        for domain in ("Page", "Runtime", "Network", "Log"):
            self.call(f"{domain}.enable")
        self.resize(width, height)

    def resize(self, width, height):
        self.call("Emulation.setDeviceMetricsOverride", width=width, height=height, deviceScaleFactor=1, mobile=False)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        try:
            self.session = None
            self.call("Browser.close")
        except (OSError, RuntimeError, TimeoutError):
            self.process.kill()
        self.process.wait(SECONDS)
        os.close(self.to_browser)
        os.close(self.from_browser)
        self.profile.cleanup()

    def message(self):
        end = time.monotonic() + SECONDS
        while b"\0" not in self.buffer:
            if not select.select([self.from_browser], [], [], max(0, end - time.monotonic()))[0]:
                raise TimeoutError("the browser does not answer")
            data = os.read(self.from_browser, 1 << 20)
            if not data:
                raise RuntimeError("the browser ended")
            self.buffer += data
        text, self.buffer = self.buffer.split(b"\0", 1)
        return json.loads(text)

    def call(self, method, **parameters):
        self.number += 1
        request = {"id": self.number, "method": method, "params": parameters}
        if self.session:
            request["sessionId"] = self.session
        data = json.dumps(request).encode() + b"\0"
        while data:
            data = data[os.write(self.to_browser, data):]
        while True:
            answer = self.message()
            if answer.get("id") == self.number:
                if "error" in answer:
                    raise RuntimeError(f"{method}: {answer['error']['message']}")
                return answer["result"]
            self.events.append(answer)

    def value(self, expression):
        """What an expression of the page gives."""
        answer = self.call("Runtime.evaluate", expression=expression, returnByValue=True, awaitPromise=True)
        if "exceptionDetails" in answer:
            raise RuntimeError(f"{expression}: {answer['exceptionDetails']}")
        return answer["result"].get("value")

    def media(self, scheme="light", medium=""):
        self.call("Emulation.setEmulatedMedia", media=medium,
                  features=[{"name": "prefers-color-scheme", "value": scheme}])

    def open_without_script(self, path):
        self.call("Emulation.setScriptExecutionDisabled", value=True)
        self.events.clear()
        self.call("Page.navigate", url="file://" + os.path.abspath(path))
        while not any(event.get("method") == "Page.loadEventFired" for event in self.events):
            self.events.append(self.message())

    def open(self, path):
        """Opens a page; waits until its script, if it has one, is through. Returns "yes", or "no" where it gave up."""
        self.events.clear()
        self.call("Page.navigate", url="file://" + os.path.abspath(path))
        ready = ("(document.documentElement?.dataset.ready || document.readyState === 'complete' && "
                 "!document.querySelector('script') && 'yes')")
        end = time.monotonic() + SECONDS
        while not self.value(f"location.href !== 'about:blank' && {ready} || null"):
            if time.monotonic() > end:
                raise TimeoutError(f"{path} does not get ready")
            time.sleep(0.05)
        self.settle()
        return self.value(ready)

    def settle(self):
        """Waits for two frames."""
        self.value("new Promise((done) => requestAnimationFrame(() => requestAnimationFrame(() => done(1))))")

    def key(self, name, times=1):
        text = name if len(name) == 1 else "\r" if name == "Enter" else ""
        for _ in range(times):
            self.call("Input.dispatchKeyEvent", type="keyDown", key=name, text=text)
            self.call("Input.dispatchKeyEvent", type="keyUp", key=name)

    def pointer(self, kind, x, y):
        pressed = 0 if kind == "mouseMoved" and not getattr(self, "held", False) else 1
        self.held = kind == "mousePressed" or (kind == "mouseMoved" and getattr(self, "held", False))
        self.call("Input.dispatchMouseEvent", type=kind, x=x, y=y, buttons=pressed, clickCount=1,
                  button="left" if kind != "mouseMoved" or pressed else "none")

    def requests(self):
        """The addresses that the page asked for, but itself and what it holds."""
        urls = [e["params"]["request"]["url"] for e in self.events if e.get("method") == "Network.requestWillBeSent"]
        return [url for url in urls[1:] if not url.startswith("data:")]

    def complaints(self):
        """Errors of scripts and of the content security policy."""
        found = [str(e["params"]["exceptionDetails"]) for e in self.events if e.get("method") == "Runtime.exceptionThrown"]
        return found + [e["params"]["entry"]["text"] for e in self.events
                        if e.get("method") == "Log.entryAdded" and e["params"]["entry"]["level"] == "error"]

    def picture(self, path, is_whole=True):
        data = self.call("Page.captureScreenshot", captureBeyondViewport=is_whole)["data"]
        with open(path, "wb") as file:
            file.write(base64.b64decode(data))
