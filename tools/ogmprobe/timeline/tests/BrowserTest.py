# SPDX-License-Identifier: Apache-2.0
"""Opens timelines in a headless Chromium: what is drawn, and what mouse and keys bring forth.

Usage: BrowserTest.py PROGRAM [unittest arguments]
"""

import itertools
import json
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

from selenium import webdriver
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common.by import By
from selenium.webdriver.common.keys import Keys

program = None
samples = (pathlib.Path(__file__).parents[4] /
           "frameworks/av/media/libstagefright/ogm/tests/data/samples")

FLAGS = ("headless", "no-sandbox", "disable-gpu", "disable-quic", "no-first-run",
         "disable-background-networking", "disable-component-update", "disable-sync",
         "disable-dev-shm-usage")


def run(*arguments):
    return subprocess.run([program, *map(str, arguments)], check=True, text=True,
                          capture_output=True).stdout


def packets_of(file):
    documents = map(json.loads, run("packets", "--json", file).splitlines())
    return [document for document in documents if document["type"] == "buffer"]


def luminance(colour):
    """Of "rgb(r, g, b)", as WCAG 2 has it."""
    parts = [int(part) / 255 for part in colour[colour.index("(") + 1:-1].split(",")[:3]]
    red, green, blue = (part / 12.92 if part <= 0.04045 else ((part + 0.055) / 1.055) ** 2.4
                        for part in parts)
    return 0.2126 * red + 0.7152 * green + 0.0722 * blue


def contrast(first, second):
    dark, light = sorted((luminance(first), luminance(second)))
    return (light + 0.05) / (dark + 0.05)


class TimelineInBrowser(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        options = webdriver.ChromeOptions()
        options.binary_location = "/usr/bin/chromium"
        for flag in FLAGS:
            options.add_argument("--" + flag)
        options.add_argument(f"--user-data-dir={self.folder / 'profile'}")
        self.browser = webdriver.Chrome(service=Service("/usr/bin/chromedriver"), options=options)
        self.addCleanup(self.browser.quit)

    def open(self, sample="mpeg4_mp3_ac3.ogm", suffix=".html", width=1280, dark=False):
        page = self.folder / ("page" + suffix)
        run("timeline", samples / sample if isinstance(sample, str) else sample, "-o", page)
        self.browser.set_window_size(width, 1500)
        self.browser.execute_cdp_cmd("Emulation.setEmulatedMedia", {"features": [
            {"name": "prefers-color-scheme", "value": "dark" if dark else "light"}]})
        self.browser.get(page.as_uri())
        self.assertNoComplaints()

    def assertNoComplaints(self):
        self.assertEqual([], self.browser.get_log("browser"))

    def script(self, text, *arguments):
        return self.browser.execute_script(text, *arguments)

    def elements(self, selector):
        return self.browser.find_elements(By.CSS_SELECTOR, selector)

    def box(self, selector, number=0):
        """Place and size of an element in the window."""
        return self.script("return document.querySelectorAll(arguments[0])[arguments[1]]"
                           ".getBoundingClientRect().toJSON()", selector, number)

    def data(self):
        return json.loads(self.script("return document.getElementById('data').textContent"))

    def move_mouse(self, x, y):
        self.browser.execute_cdp_cmd("Input.dispatchMouseEvent",
                                     {"type": "mouseMoved", "x": x, "y": y})

    def wheel(self, x, y, by):
        control = 2
        self.browser.execute_cdp_cmd("Input.dispatchMouseEvent", {
            "type": "mouseWheel", "x": x, "y": y, "deltaX": 0, "deltaY": by, "modifiers": control})

    def x_of(self, time_us):
        axis = self.data()["axis"]
        plot = self.box("svg.plot")
        return plot["x"] + (time_us - axis["startUs"]) / axis["lengthUs"] * plot["width"]

    def point_at_lane(self, lane, time_us, height=6):
        """Points that far above the lane's base line."""
        base = self.box(".panel.lane path.base", lane)
        self.move_mouse(self.x_of(time_us), base["y"] - height)

    def tooltip(self):
        """Its lines; none while it is hidden."""
        return self.browser.find_element(By.ID, "tooltip").text.splitlines()

    def ticks(self):
        return [tick.text for tick in self.elements("text.tick")]

    def test_DrawsALaneForEachTrackBitrateAndFilePositions(self):
        self.open()
        names = [lane.get_attribute("aria-label") for lane in self.elements(".panel.lane")]
        self.assertEqual(3, len(names))
        self.assertRegex(names[0], r"^Track 0, video, MPEG-4 Part 2: \d+ packets$")
        for selector in (".type-I.bar", ".type-P.bar", ".type-B.bar", "path.sync", "path.head",
                         "path.audio0.bar", "path.audio1.bar", "path.repeated", "path.backward",
                         "path.gap", "path.total", "path.rate", "path.point", "path.seek",
                         "path.way ~ path.way", "path.opening"):
            with self.subTest(selector):
                box = self.box(selector)
                self.assertGreater(box["width"] + box["height"], 10)

    def test_TellsOfThePacketUnderTheMouse(self):
        self.open()
        key_frame = next(packet for packet in packets_of(samples / "mpeg4_mp3_ac3.ogm")
                         if packet["track"] == 0 and packet["sync"] and packet["time_us"] > 0)
        self.point_at_lane(0, key_frame["time_us"])
        lines = self.tooltip()
        self.assertRegex(lines[0], r"^Track 0 \(MPEG-4 Part 2\), packet \d+$")
        self.assertEqual(f"time {key_frame['time_us'] / 1e6:.6f} s", lines[1])
        self.assertEqual(f"{key_frame['size']:,} bytes, I picture, sync frame", lines[2])
        self.assertRegex(lines[3], r"^file read up to [\d,]+$")
        self.assertNoComplaints()

    def test_TellsOfTheMemberOfAPileAtTheHeightOfTheMouse(self):
        self.open()
        sounds = [packet for packet in packets_of(samples / "mpeg4_mp3_ac3.ogm")
                  if packet["track"] == 2]
        time_us = sounds[0]["time_us"]
        pile = sum(packet["time_us"] == time_us for packet in sounds)
        self.point_at_lane(2, time_us, 2)
        self.assertIn("packet 0", self.tooltip()[0])
        self.point_at_lane(2, time_us, 58)
        self.assertIn(f"packet {pile - 1}", self.tooltip()[0])
        self.assertIn(f"one of {pile} packets of this time", self.tooltip())

    def test_TellsOfBitrateAndSeeksUnderTheMouse(self):
        self.open()
        seek = self.data()["seeks"][4]
        bitrate = self.box(".panel.bitrate svg.plot")
        self.move_mouse(self.x_of(seek["targetUs"]), bitrate["y"] + 20)
        self.assertRegex(self.tooltip()[1], r"^all tracks [\d.]+ kbit/s$")
        position = self.box(".panel.position svg.plot")
        self.move_mouse(self.x_of(seek["targetUs"]), position["y"] + 60)
        self.assertEqual(f"Seek to {seek['targetUs'] / 1e6:.6f} s", self.tooltip()[0])
        self.assertEqual(f"{seek['reads']:,} reads, {seek['bytes']:,} bytes", self.tooltip()[2])
        self.move_mouse(2, 2)
        self.assertEqual([], self.tooltip())
        self.assertNoComplaints()

    def test_WalksFromPacketToPacketWithKeys(self):
        self.open()
        times = [packet["time_us"] for packet in packets_of(samples / "mpeg4_mp3_ac3.ogm")
                 if packet["track"] == 0]
        figure = self.browser.find_element(By.ID, "figure")
        figure.send_keys(Keys.ARROW_RIGHT)
        first = times.index(min(times))
        self.assertEqual(f"Track 0 (MPEG-4 Part 2), packet {first}", self.tooltip()[0])
        figure.send_keys(Keys.ARROW_RIGHT * 400)
        self.assertIn("the last time", self.tooltip())
        figure.send_keys(Keys.ARROW_DOWN)
        self.assertIn("Track 1 (MP3", self.tooltip()[0])
        figure.send_keys(Keys.ESCAPE)
        self.assertEqual([], self.tooltip())
        self.assertNoComplaints()

    def test_ZoomsWhereTheMouseIs(self):
        self.open()
        whole = self.ticks()
        base = self.box(".panel.lane path.base")
        x, y = base["x"] + base["width"] / 2, base["y"] - 20
        self.move_mouse(x, y)
        self.point_at_lane(0, 2960000)
        middle = self.tooltip()[1]
        for _ in range(10):
            self.wheel(self.x_of(2960000), y, -100)
        near = self.ticks()
        self.assertNotEqual(whole, near)
        self.assertIn("0:03.0", near)
        self.assertNotIn("0:00.0", near)
        self.move_mouse(self.x_of(2960000), base["y"] - 6)
        self.assertEqual(middle, self.tooltip()[1])
        self.browser.find_element(By.ID, "zoom-all").click()
        self.assertEqual(whole, self.ticks())
        self.browser.find_element(By.ID, "zoom-in").click()
        self.assertNotEqual(whole, self.ticks())
        self.browser.find_element(By.ID, "zoom-out").click()
        self.assertEqual(whole, self.ticks())
        self.assertNoComplaints()

    def test_HasTextThatIsReadInLightAndDark(self):
        papers = []
        for dark in (False, True):
            self.open(dark=dark)
            papers.append(self.script("return getComputedStyle(document.body).backgroundColor"))
            inks = self.script(
                "return [...document.querySelectorAll('h1, td, th, .summary, .help')]"
                ".map((element) => getComputedStyle(element).color)"
                ".concat([...document.querySelectorAll('svg text')]"
                ".map((element) => getComputedStyle(element).fill))")
            self.assertGreater(len(inks), 50)
            self.assertGreater(min(contrast(ink, papers[-1]) for ink in set(inks)), 4.5)
            (self.folder / "page.html").unlink()
        self.assertGreater(luminance(papers[0]), 0.8)
        self.assertLess(luminance(papers[1]), 0.05)

    def test_HasNoTextsThatOverlap(self):
        for width in (900, 1280, 1900):
            self.open("long_mpeg4_mp3.ogm", width=width)
            self.assertTextsApart()
            (self.folder / "page.html").unlink()

    def assertTextsApart(self):
        texts = self.script(
            "return [...document.querySelectorAll('svg text, svg .swatch')]"
            ".map((element) => ({name: element.textContent, ...element.getBoundingClientRect()"
            ".toJSON()}))")
        self.assertGreater(len(texts), 20)
        for one, other in itertools.combinations(texts, 2):
            across = min(one["right"], other["right"]) - max(one["left"], other["left"])
            down = min(one["bottom"], other["bottom"]) - max(one["top"], other["top"])
            # Boxes of lines have some air above and below the letters.
            self.assertFalse(across > 0 and down > 4, f"{one['name']} over {other['name']}")

    def test_FitsIntoTheWindow(self):
        for width in (700, 1280, 1900):
            self.open(width=width)
            page, window = self.script(
                "return [document.documentElement.scrollWidth, window.innerWidth]")
            self.assertLessEqual(page, window)
            (self.folder / "page.html").unlink()

    def test_TakesNamesAsText(self):
        name = "<img src=x onerror=document.title='run'> & \"'{{data}}.ogm"
        file = self.folder / name
        shutil.copy(samples / "mpeg4_b_mp3.ogm", file)
        self.open(file)
        self.assertEqual(name, self.script("return document.querySelector('h1').textContent"))
        self.assertEqual(f"{name} - timeline", self.browser.title)
        self.assertEqual([], self.elements("img"))

    def test_LoadsNothingElse(self):
        self.open()
        self.assertEqual([], self.script(
            "return performance.getEntriesByType('resource').map((entry) => entry.name)"))

    def test_DrawingsAreShownByThemselves(self):
        papers = []
        for dark in (False, True):
            self.open(suffix=".svg", dark=dark)
            self.assertEqual(3, len(self.elements(".panel.lane")))
            self.assertGreater(self.box("path.bar")["height"], 50)
            self.assertTextsApart()
            papers.append(self.script(
                "return getComputedStyle(document.querySelector('.paper')).fill"))
            (self.folder / "page.svg").unlink()
        self.assertGreater(luminance(papers[0]), 0.8)
        self.assertLess(luminance(papers[1]), 0.05)


if __name__ == "__main__":
    program = sys.argv.pop(1)
    unittest.main()
