# SPDX-License-Identifier: Apache-2.0
"""What tests of pages share: a headless Chromium, and mouse, fingers and keys.

    class MyPages(BrowserCase):
        def test_ShowsItsTitle(self):
            self.load(self.folder / "page.html", dark=True)
            self.assertEqual(["Mine"], self.texts("h1"))
"""

import pathlib
import tempfile
import unittest

from Browser import Browser

# Names of keys that write nothing, with the numbers that the browser's own actions go by.
KEYS = {"Backspace": 8, "Enter": 13, "Escape": 27, "PageDown": 34, "Home": 36, "ArrowLeft": 37,
        "ArrowRight": 39, "ArrowDown": 40}
WRITTEN = {"Enter": "\r"}


def luminance(colour):
    """Of "rgb(r, g, b)", as WCAG 2 has it."""
    parts = [int(part) / 255 for part in colour[colour.index("(") + 1:-1].split(",")[:3]]
    red, green, blue = (part / 12.92 if part <= 0.04045 else ((part + 0.055) / 1.055) ** 2.4
                        for part in parts)
    return 0.2126 * red + 0.7152 * green + 0.0722 * blue


def contrast(first, second):
    dark, light = sorted((luminance(first), luminance(second)))
    return (light + 0.05) / (dark + 0.05)


class BrowserCase(unittest.TestCase):
    """All tests share a browser; each page that they load has its own tab."""

    # What the browser may log, or a part of it.
    expected_complaint = None

    @classmethod
    def setUpClass(cls):
        cls.shared = pathlib.Path(cls.enterClassContext(tempfile.TemporaryDirectory()))
        cls.browser = cls.enterClassContext(Browser())

    def setUp(self):
        self.folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        self.tab = None
        self.addCleanup(self.leave_tab)

    def leave_tab(self):
        """Keys, fingers and buttons that are held down end with their tab."""
        if self.tab:
            # What the page has done until now is reported before this is answered.
            self.script("")
            self.tab.close()
            tab, self.tab = self.tab, None
            self.assertNoComplaintsOf(tab)

    def load(self, page, fragment="", **how):
        """Nothing is left of what the test showed before, nor is the mouse where it was."""
        self.leave_tab()
        self.tab = self.browser.open_tab(**how)
        self.tab.go(page.as_uri() + fragment)

    def assertNoComplaints(self):
        self.assertNoComplaintsOf(self.tab)

    def assertNoComplaintsOf(self, tab):
        self.assertEqual([], [text for text in tab.complaints if self.expected_complaint is None
                              or self.expected_complaint not in text])

    def script(self, text, *arguments):
        return self.tab.script(text, *arguments)

    def wait_until(self, expression):
        self.script(f"while (!({expression})) {{"
                    "await new Promise((wake) => setTimeout(wake, 4)); }")

    def count(self, selector):
        return self.script("return document.querySelectorAll(arguments[0]).length", selector)

    def texts(self, selector):
        """What can be read in each of the elements; nothing in hidden ones."""
        return self.script("""
            return Array.from(document.querySelectorAll(arguments[0]), (element) =>
                element.checkVisibility() ? element.innerText.trim() : "");""", selector)

    def text(self, selector):
        """Of the only such element."""
        text, = self.texts(selector)
        return text

    def is_shown(self, selector, number=0):
        """Whether that element can be seen."""
        return self.script("""
            const element = document.querySelectorAll(arguments[0])[arguments[1]];
            const {width, height} = element.getBoundingClientRect();
            return width > 0 && height > 0 &&
                element.checkVisibility({opacityProperty: true, visibilityProperty: true});
            """, selector, number)

    def box(self, selector, number=0):
        """Place and size of an element in the window."""
        return self.script("return document.querySelectorAll(arguments[0])[arguments[1]]"
                           ".getBoundingClientRect().toJSON()", selector, number)

    def mouse(self, kind, x, y, **more):
        self.tab.call("Input.dispatchMouseEvent", type=kind, x=x, y=y, **more)

    def touch(self, kind, *points):
        self.tab.call("Input.dispatchTouchEvent", type=kind, touchPoints=[
            {"x": x, "y": y, "id": number} for number, (x, y) in enumerate(points)])

    def click_on(self, selector, number=0):
        """In the middle of the element, which is scrolled to and must not be covered."""
        x, y = self.script("""
            const element = document.querySelectorAll(arguments[0])[arguments[1]];
            element.scrollIntoView({block: "nearest", behavior: "instant"});
            const box = element.getBoundingClientRect();
            const middle = [box.x + box.width / 2, box.y + box.height / 2];
            if (!element.contains(document.elementFromPoint(...middle))) {
                throw new Error(`no click reaches ${element.outerHTML}`);
            }
            return middle;""", selector, number)
        self.mouse("mouseMoved", x, y)
        for kind in ("mousePressed", "mouseReleased"):
            self.mouse(kind, x, y, button="left", clickCount=1)

    def press(self, selector, *keys, number=0):
        """Presses keys, by name or by what they write, while that element has the focus."""
        self.script("document.querySelectorAll(arguments[0])[arguments[1]].focus()", selector, number)
        self.tab.call_all([
            ("Input.dispatchKeyEvent", event) for key in keys for event in self._strokes(key)])

    def _strokes(self, key):
        text = WRITTEN.get(key, "" if key in KEYS else key)
        # The numbers of signs are those of other keys.
        number = KEYS.get(key) or (ord(key.upper()) if key.isalnum() else 0)
        common = {"key": key, "code": key if key in KEYS else "", "windowsVirtualKeyCode": number,
                  # The shift key.
                  "modifiers": 8 if len(key) == 1 and key.isupper() else 0}
        return ({"type": "keyDown" if text else "rawKeyDown", "text": text, **common},
                {"type": "keyUp", **common})

    def write(self, selector, text, *keys):
        """In place of what is in the field."""
        self.script("document.querySelector(arguments[0]).select()", selector)
        self.press(selector, *(text or ("Backspace",)), *keys)
