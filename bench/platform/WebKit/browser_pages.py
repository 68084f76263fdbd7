# SPDX-License-Identifier: Apache-2.0
"""Pages in a headless browser without scripts: the text that it shows, with the styles that it computes.

A page's text is a list of runs, [text, attributes]. The attributes are those of the element around: weight (a number), italic,
size (in pixels), color ([red, green, blue, alpha]), underline, strike and link (an absolute address, or null).
"""

import json
import os
import pathlib
import select
import shutil
import subprocess
import tempfile
import time

BROWSER = "chromium"
PAGE_SECONDS = 20

# Decorations go on into the boxes inside, but not into those that stand outside of the text's flow. What a closed "details" and
# "content-visibility" hide has rectangles all the same, and so has text of no size, which are empty.
COLLECT = r"""
(() => {
  const styles = new Map();
  const styleOf = element => {
    let style = styles.get(element);
    if (!style) styles.set(element, style = getComputedStyle(element));
    return style;
  };
  const decorations = new Map();
  const decorationsOf = element => {
    if (!element) return '';
    let lines = decorations.get(element);
    if (lines !== undefined) return lines;
    const style = styleOf(element);
    const ends = /^inline-(block|table|flex|grid)$/.test(style.display) || style.cssFloat !== 'none' ||
        style.position === 'absolute' || style.position === 'fixed' || element.localName === 'rt';
    lines = style.textDecorationLine + ' ' + (ends ? '' : decorationsOf(element.parentElement));
    decorations.set(element, lines);
    return lines;
  };
  const canvas = new OffscreenCanvas(1, 1).getContext('2d', {willReadFrequently: true});
  const componentsOf = color => {
    const numbers = (color.match(/[\d.]+/g) || []).map(Number);
    if (/^rgb/.test(color)) return [...numbers.slice(0, 3), numbers.length > 3 ? numbers[3] : 1];
    const [, opaque, alpha] = color.match(/^([^/]*?)(?: *\/ *([^)]+))?\)$/);
    canvas.fillStyle = opaque + ')';
    canvas.fillRect(0, 0, 1, 1);
    return [...canvas.getImageData(0, 0, 1, 1).data.slice(0, 3), alpha ? parseFloat(alpha) : 1];
  };
  const attributes = new Map();
  const attributesOf = element => {
    let found = attributes.get(element);
    if (found !== undefined) return found;
    const style = styleOf(element);
    if (style.visibility !== 'visible' || !element.checkVisibility() ||
        style.contentVisibility === 'hidden' || (element.localName === 'details' && !element.open)) {
      found = null;
    } else {
      const lines = decorationsOf(element);
      const link = element.closest('a[href], area[href], a[*|href]');
      found = {
        weight: Number(style.fontWeight), italic: style.fontStyle !== 'normal', size: parseFloat(style.fontSize),
        color: componentsOf(style.color),
        underline: lines.includes('underline'), strike: lines.includes('line-through'),
        link: !link ? null : typeof link.href === 'string' ? link.href : new URL(link.href.baseVal, document.baseURI).href,
      };
    }
    attributes.set(element, found);
    return found;
  };
  const runs = [];
  const range = document.createRange();
  const walker = document.createTreeWalker(document.documentElement, NodeFilter.SHOW_TEXT);
  for (let node = walker.nextNode(); node; node = walker.nextNode()) {
    if (!/\S/.test(node.data)) continue;
    const found = attributesOf(node.parentElement);
    if (!found) continue;
    range.selectNodeContents(node);
    if (![...range.getClientRects()].some(box => box.width > 0 && box.height > 0)) continue;
    runs.push([node.data, found]);
  }
  return JSON.stringify({charset: document.characterSet, runs: runs});
})()
"""


class Browser:
    """A browser that is spoken to through pipes. It runs no script of a page and reaches no network."""

    def __init__(self):
        self.profile = tempfile.mkdtemp(prefix="browser-")
        command_read, self.commands = os.pipe()
        self.answers, answer_write = os.pipe()
        arguments = [
            BROWSER, "--headless", "--no-sandbox", "--disable-gpu", "--hide-scrollbars", "--window-size=1280,720",
            "--remote-debugging-pipe", "--host-resolver-rules=MAP * ~NOTFOUND", "--user-data-dir=" + self.profile,
            "about:blank",
        ]  # fmt: skip

        def place_pipes():
            # The browser reads commands from descriptor 3 and writes answers to descriptor 4.
            high = [os.dup2(command_read, 100), os.dup2(answer_write, 101)]
            for descriptor, place in zip(high, (3, 4)):
                os.dup2(descriptor, place)

        self.process = subprocess.Popen(
            arguments, preexec_fn=place_pipes, close_fds=False, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL
        )
        os.close(command_read)
        os.close(answer_write)
        self.pending, self.number = b"", 0
        target = self.call("Target.createTarget", {"url": "about:blank"}, session=None)["targetId"]
        self.session = self.call("Target.attachToTarget", {"targetId": target, "flatten": True}, session=None)["sessionId"]
        self.call("Page.enable")
        self.call("Emulation.setScriptExecutionDisabled", {"value": True})
        screen = {"width": 1280, "height": 720, "deviceScaleFactor": 1, "mobile": False}
        self.call("Emulation.setDeviceMetricsOverride", screen)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.terminate()
        self.process.wait()
        shutil.rmtree(self.profile, ignore_errors=True)

    def receive(self, deadline):
        while b"\0" not in self.pending:
            if not select.select([self.answers], [], [], max(0, deadline - time.monotonic()))[0]:
                raise TimeoutError
            data = os.read(self.answers, 1 << 20)
            if not data:
                raise EOFError("the browser has ended")
            self.pending += data
        message, self.pending = self.pending.split(b"\0", 1)
        return json.loads(message)

    def call(self, method, parameters=None, session=""):
        self.number += 1
        message = {"id": self.number, "method": method, "params": parameters or {}}
        if session is not None:
            message["sessionId"] = self.session
        os.write(self.commands, json.dumps(message).encode() + b"\0")
        deadline = time.monotonic() + PAGE_SECONDS
        while True:
            answer = self.receive(deadline)
            if answer.get("id") == self.number:
                if "error" in answer:
                    raise RuntimeError(answer["error"])
                return answer["result"]

    def load(self, path):
        self.call("Page.navigate", {"url": pathlib.Path(path).resolve().as_uri()})
        deadline = time.monotonic() + PAGE_SECONDS
        try:
            while self.receive(deadline).get("method") != "Page.loadEventFired":
                pass
        except TimeoutError:
            self.call("Page.stopLoading")

    def text_of(self, path):
        """The page's character set and runs; None when the browser does not answer."""
        self.load(path)
        result = self.call("Runtime.evaluate", {"expression": COLLECT, "returnByValue": True})["result"]
        return json.loads(result["value"]) if "value" in result else None
