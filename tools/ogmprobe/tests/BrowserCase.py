# SPDX-License-Identifier: Apache-2.0
"""What tests of pages share: a headless Chromium.

    class MyPages(BrowserCase):
        def test_ShowsItsTitle(self):
            self.load(self.folder / "page.html", dark=True)
            self.assertEqual("Mine", self.browser.title)
"""

import pathlib
import tempfile
import unittest

from selenium import webdriver
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common.by import By

FLAGS = ("headless", "no-sandbox", "disable-gpu", "disable-quic", "no-first-run",
         "disable-background-networking", "disable-component-update", "disable-sync",
         "disable-dev-shm-usage")


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
    """All tests share a browser, which takes seconds to start; each has its own tab."""

    # What the browser may log, or a part of it.
    expected_complaint = None

    @classmethod
    def setUpClass(cls):
        cls.shared = pathlib.Path(cls.enterClassContext(tempfile.TemporaryDirectory()))
        options = webdriver.ChromeOptions()
        options.binary_location = "/usr/bin/chromium"
        for flag in FLAGS:
            options.add_argument("--" + flag)
        options.add_argument(f"--user-data-dir={cls.shared / 'profile'}")
        cls.browser = webdriver.Chrome(service=Service("/usr/bin/chromedriver"), options=options)
        cls.addClassCleanup(cls.browser.quit)
        cls.first_tab = cls.browser.current_window_handle

    def setUp(self):
        self.folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        # Emulation, history, and keys, fingers and buttons that are held down end with their tab.
        self.browser.switch_to.new_window("tab")
        self.addCleanup(self.leave_tab)

    def leave_tab(self):
        self.browser.close()
        self.browser.switch_to.window(self.first_tab)
        self.assertNoComplaints()

    def load(self, page, width=1280, height=1500, dark=False, fragment="", phone=False):
        """Nothing is left of what the test showed before, nor is the mouse where it was."""
        self.browser.get("about:blank")
        for command, arguments in (
                ("Page.resetNavigationHistory", {}),
                ("Storage.clearDataForOrigin", {"origin": "*", "storageTypes": "all"}),
                ("Emulation.setDeviceMetricsOverride", {
                    "width": width, "height": height, "deviceScaleFactor": 1, "mobile": phone}),
                ("Emulation.setTouchEmulationEnabled", {"enabled": phone}),
                ("Emulation.setEmulatedMedia", {"features": [
                    {"name": "prefers-color-scheme", "value": "dark" if dark else "light"},
                    {"name": "prefers-reduced-motion", "value": "reduce"}]}),
                ("Input.dispatchMouseEvent", {"type": "mouseMoved", "x": 0, "y": 0})):
            self.browser.execute_cdp_cmd(command, arguments)
        self.browser.get(page.as_uri() + fragment)

    def assertNoComplaints(self):
        """Reading the log empties it, so that none of it is taken for the next test's."""
        entries = self.browser.get_log("browser")
        self.assertEqual([], [entry for entry in entries if self.expected_complaint is None
                              or self.expected_complaint not in entry["message"]])

    def script(self, text, *arguments):
        return self.browser.execute_script(text, *arguments)

    def elements(self, selector):
        return self.browser.find_elements(By.CSS_SELECTOR, selector)

    def element(self, identifier):
        return self.browser.find_element(By.ID, identifier)
