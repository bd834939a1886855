# SPDX-License-Identifier: Apache-2.0
# SPDX-FileCopyrightText: 2026 The Sorvane developers
"""Chromium, with its elements to be seen, led through its debugging interface."""
import json
import os

OPTIONS = ["--no-sandbox", "--force-renderer-accessibility", "--remote-debugging-pipe", "--no-first-run",
           "--no-default-browser-check", "--disable-gpu", "--disable-background-networking", "--disable-sync",
           "--disable-component-update", "--disable-dev-shm-usage", "--password-store=basic"]


class Browser:
    """Messages to the browser and from it end with a zero."""

    def __init__(self, commands, answers):
        self.commands = commands
        self.answers = answers
        self.number = 0
        self.session = {}
        pages = []
        while not pages:
            pages = [target for target in self.call("Target.getTargets")["targetInfos"] if target["type"] == "page"]
        attached = self.call("Target.attachToTarget", targetId=pages[0]["targetId"], flatten=True)
        self.session = {"sessionId": attached["sessionId"]}

    def call(self, method, **parameters):
        self.number += 1
        message = {"id": self.number, "method": method, "params": parameters} | self.session
        self.commands.write(json.dumps(message).encode() + b"\0")
        self.commands.flush()
        while (answer := json.loads(self.message())).get("id") != self.number:
            pass
        return answer["result"]

    def message(self):
        text = b""
        while (byte := self.answers.read(1)) != b"\0":
            if not byte:
                raise SystemExit  # the browser is gone
            text += byte
        return text

    def run(self, script):
        return self.call("Runtime.evaluate", expression=script)["result"].get("value")

    def wait_for(self, address, title):
        while self.run("document.readyState + ' ' + document.title + ' ' + location") != f"complete {title} {address}":
            pass


class Field:
    def __init__(self, browser, name):
        self.browser = browser
        self.element = f"document.getElementById('{name}')"

    def focus(self):
        self.browser.run(f"{self.element}.focus()")

    def disable(self):
        self.browser.run(f"{self.element}.disabled = true")

    def read(self):
        return self.browser.run(f"{self.element}.value ?? {self.element}.innerText")

    def remove(self):
        self.browser.run(f"{self.element}.remove()")


def start(folder, *arguments):
    """The browser takes this process, so that it is the one that was started; what leads it goes on in another."""
    to_browser = os.pipe()
    from_browser = os.pipe()
    if not os.fork():
        os.close(from_browser[1])
        return Browser(os.fdopen(to_browser[1], "wb"), os.fdopen(from_browser[0], "rb"))
    os.environ["LOG"] = os.environ["DESKTOP_SESSION_FOLDER"] + "/log/chromium"
    os.set_inheritable(to_browser[0], True)
    os.set_inheritable(from_browser[1], True)
    # It reads from 3 and writes to 4.
    script = f'exec chromium "$@" 3<&{to_browser[0]} 4>&{from_browser[1]} </dev/null >"$LOG" 2>&1'
    os.execlp("sh", "sh", "-c", script, "chromium", *OPTIONS, f"--user-data-dir={folder}/profile", *arguments)
