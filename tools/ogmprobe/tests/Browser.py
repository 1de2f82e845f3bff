# SPDX-License-Identifier: Apache-2.0
"""A headless Chromium, driven through two pipes by the DevTools protocol.

    with Browser() as browser:
        tab = browser.open_tab(width=800)
        tab.go("file:///page.html")
        tab.script("return document.title + arguments[0]", "!")

Each message is an object in JSON and a zero byte. This needs one package, and less than half of the
processor time of a full Chromium that a WebDriver asks for each step.
"""

import contextlib
import json
import os
import select
import subprocess
import tempfile
import time

PROGRAM = "/usr/bin/chromium-headless-shell"
FLAGS = ("no-sandbox", "disable-gpu", "disable-quic", "no-first-run",
         "disable-background-networking", "disable-component-update", "disable-sync",
         "disable-dev-shm-usage", "remote-debugging-pipe")
# Of one command, on a machine that has other things to do.
PATIENCE_S = 120


class Browser:
    def __init__(self):
        # Helpers of the browser may write into it for a moment after it has ended.
        self._profile = tempfile.TemporaryDirectory(ignore_cleanup_errors=True)
        command_end, self._commands = os.pipe()
        self._answers, answer_end = os.pipe()
        # The browser expects the pipes at these numbers.
        command = [f'exec "$@" 3<&{command_end} 4>&{answer_end}', "sh", PROGRAM,
                   *(f"--{flag}" for flag in FLAGS), f"--user-data-dir={self._profile.name}"]
        self._process = subprocess.Popen(["/bin/sh", "-c", *command], stderr=subprocess.DEVNULL,
                                         pass_fds=(command_end, answer_end))
        os.close(command_end)
        os.close(answer_end)
        self._received = b""
        self._last_id = 0
        self._results = {}
        # By session: called with the name and the values of each event.
        self.listeners = {}

    def __enter__(self):
        return self

    def __exit__(self, *error):
        with contextlib.suppress(BrokenPipeError):
            self.send("Browser.close")
        # It also ends when nobody is at the other end.
        os.close(self._commands)
        self._process.wait(PATIENCE_S)
        os.close(self._answers)
        self._profile.cleanup()

    def send(self, method, session=None, **values):
        """Does not wait; returns the number of the command, for result_of()."""
        self._last_id += 1
        message = {"id": self._last_id, "method": method, "params": values}
        if session:
            message["sessionId"] = session
        data = json.dumps(message).encode() + b"\0"
        while data:
            data = data[os.write(self._commands, data):]
        return self._last_id

    def result_of(self, command):
        self.wait_for(lambda: command in self._results)
        answer = self._results.pop(command)
        if "error" in answer:
            raise RuntimeError(answer["error"]["message"])
        return answer["result"]

    def call(self, method, session=None, **values):
        return self.result_of(self.send(method, session, **values))

    def wait_for(self, condition):
        """Until it holds, which a message of the browser must make it do."""
        deadline = time.monotonic() + PATIENCE_S
        while not condition():
            self._take_messages(deadline - time.monotonic())

    def open_tab(self, **how):
        return Tab(self, **how)

    def _take_messages(self, seconds):
        if not select.select([self._answers], [], [], max(0, seconds))[0]:
            raise TimeoutError("the browser does not answer")
        data = os.read(self._answers, 1 << 20)
        if not data:
            raise EOFError("the browser has ended")
        *messages, self._received = (self._received + data).split(b"\0")
        for message in map(json.loads, messages):
            if "id" in message:
                self._results[message["id"]] = message
            elif listener := self.listeners.get(message.get("sessionId")):
                listener(message["method"], message["params"])


class Tab:
    """In a browsing context of its own, so that it shares no storage, history or input with others."""

    def __init__(self, browser, width=1280, height=1500, dark=False, phone=False):
        self._browser = browser
        self._context = browser.call("Target.createBrowserContext")["browserContextId"]
        target = browser.call("Target.createTarget", url="about:blank",
                              browserContextId=self._context)["targetId"]
        self._session = browser.call("Target.attachToTarget", targetId=target,
                                     flatten=True)["sessionId"]
        # What the page logged: texts of messages, warnings, failed requests and exceptions.
        self.complaints = []
        self._pages_loaded = 0
        browser.listeners[self._session] = self._listen
        self.call_all([
            ("Page.enable", {}),
            ("Log.enable", {}),
            ("Runtime.enable", {}),
            ("Emulation.setDeviceMetricsOverride", {
                "width": width, "height": height, "deviceScaleFactor": 1, "mobile": phone}),
            ("Emulation.setTouchEmulationEnabled", {"enabled": phone}),
            ("Emulation.setEmulatedMedia", {"features": [
                {"name": "prefers-color-scheme", "value": "dark" if dark else "light"},
                {"name": "prefers-reduced-motion", "value": "reduce"}]})])

    def close(self):
        self._browser.call("Target.disposeBrowserContext", browserContextId=self._context)
        del self._browser.listeners[self._session]

    def call(self, method, **values):
        return self._browser.call(method, self._session, **values)

    def call_all(self, commands):
        """Without waiting between them."""
        sent = [self._browser.send(method, self._session, **values) for method, values in commands]
        return [self._browser.result_of(number) for number in sent]

    def go(self, address):
        """Until the page and all that it needs are loaded."""
        before = self._pages_loaded
        self.call("Page.navigate", url=address)
        self._browser.wait_for(lambda: self._pages_loaded > before)

    def script(self, text, *arguments):
        """Runs the body of an asynchronous function in the page."""
        answer = self.call("Runtime.evaluate", awaitPromise=True, returnByValue=True, expression=(
            f"(async function() {{{text}\n}}).apply(null, {json.dumps(arguments)})"))
        if "exceptionDetails" in answer:
            thrown = answer["exceptionDetails"].get("exception", {})
            raise RuntimeError(thrown.get("description", answer["exceptionDetails"]["text"]))
        return answer["result"].get("value")

    def _listen(self, event, values):
        if event == "Page.loadEventFired":
            self._pages_loaded += 1
        elif event == "Log.entryAdded" and values["entry"]["level"] != "verbose":
            self.complaints.append(values["entry"]["text"])
        elif event == "Runtime.consoleAPICalled":
            self.complaints.append(json.dumps(values["args"]))
        elif event == "Runtime.exceptionThrown":
            self.complaints.append(json.dumps(values["exceptionDetails"]))
