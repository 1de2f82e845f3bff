# SPDX-License-Identifier: Apache-2.0
"""Opens the report of many files in a headless Chromium: sorting, filter, links, colours.

Usage: ReportBrowserTest.py PROGRAM [unittest arguments]
"""

import json
import pathlib
import shutil
import subprocess
import sys
import unittest

from selenium.webdriver.common.keys import Keys
from selenium.webdriver.support.ui import WebDriverWait

sys.path.insert(0, str(pathlib.Path(__file__).parents[2] / "tests"))
from BrowserCase import BrowserCase, contrast

program = None
samples = (pathlib.Path(__file__).parents[4] /
           "frameworks/av/media/libstagefright/ogm/tests/data/samples")

# Nothing of this may change what a link means.
TIMELINES = "drawn #1? 50% of a:b"
FILMS = {"Zoo.ogm": "mpeg4_2997_ac3.ogm", "apes.ogm": "long_mpeg4_mp3.ogm",
         "cut <b>.ogm": "xvid_refused_mp3.ogm", "Bees.ogm": "h264_mp3vbr.ogm"}


class ReportInBrowser(BrowserCase):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        films = cls.shared / "films"
        films.mkdir()
        for name, sample in FILMS.items():
            shutil.copy(samples / sample, films / name)
        cls.page = cls.shared / "report.html"
        made = subprocess.run(
            [program, "check", "--json", films, "--html", cls.page, "--timelines",
             cls.shared / TIMELINES], text=True, capture_output=True)
        cls.files = {pathlib.Path(file["path"]).name: file
                     for file in json.loads(made.stdout)["files"]}

    def setUp(self):
        super().setUp()
        self.load(self.page)

    def names(self):
        """Of the files that are shown, from top to bottom."""
        cells = self.elements("#files tbody td:nth-child(2)")
        return [pathlib.Path(cell.text).name for cell in cells if cell.is_displayed()]

    def heading(self, title):
        return next(button for button in self.elements("#files th button")
                    if button.text.startswith(title))

    def sorted_by(self, title):
        """The names after a click, and the order that assistive software gets."""
        self.heading(title).click()
        order = self.heading(title).find_element("xpath", "..").get_attribute("aria-sort")
        return self.names(), order

    def write_filter(self, text):
        self.element("filter").clear()
        self.element("filter").send_keys(text)

    def assertSorts(self, title, key):
        """By that key of the file upwards, then downwards."""
        for order, reverse in (("ascending", False), ("descending", True)):
            names, announced = self.sorted_by(title)
            keys = [key(self.files[name]) for name in names]
            self.assertEqual(sorted(FILMS), sorted(names))
            self.assertGreater(len(set(keys)), 1)
            self.assertEqual(sorted(keys, reverse=reverse), keys)
            self.assertEqual(order, announced)

    def test_ListsTheFilesByTheirPaths(self):
        self.assertEqual(sorted(FILMS), self.names())
        self.assertEqual([], self.elements("bdi b"))

    def test_SortsByVerdictSizeAndDurationAsNumbers(self):
        verdicts = ["plays", "plays with faults", "does not play"]
        self.assertSorts("Verdict", lambda file: verdicts.index(file["verdict"]))
        self.assertSorts("Size", lambda file: file["size"])
        self.assertSorts("Duration", lambda file: file["duration_us"])

    def test_SortsByTheNumberOfReasons(self):
        def reasons(file):
            return len({reason["id"] for part in (file, *file["tracks"])
                        for reason in part["reasons"] if reason["verdict"] != "plays"})
        self.assertSorts("Reasons", reasons)

    def test_SortsByPathFromEitherEnd(self):
        self.assertEqual((sorted(FILMS), "ascending"), self.sorted_by("File"))
        self.assertEqual((sorted(FILMS, reverse=True), "descending"), self.sorted_by("File"))

    def test_OnlyOneHeadingIsMarked(self):
        self.sorted_by("Size")
        self.sorted_by("File")
        orders = [cell.get_attribute("aria-sort")
                  for cell in self.elements("#files th[aria-sort]")]
        self.assertEqual(["none", "ascending", "none", "none", "none"], orders)

    def test_HeadingsAnswerTheKeyboard(self):
        self.heading("Size").send_keys(Keys.ENTER)
        self.assertEqual(sorted(FILMS, key=lambda name: self.files[name]["size"]), self.names())

    def test_TheFilterShowsFilesThatHoldTheTextInAnyCase(self):
        self.write_filter("BEES")
        self.assertEqual(["Bees.ogm"], self.names())
        self.assertEqual(f"1 of {len(FILMS)}", self.element("shown").text)
        self.write_filter("codec-not-supported")
        self.assertEqual(["cut <b>.ogm"], self.names())
        self.write_filter("nowhere to be found")
        self.assertEqual([], self.names())
        self.assertEqual(f"0 of {len(FILMS)}", self.element("shown").text)
        self.write_filter("x" + Keys.BACKSPACE)
        self.assertEqual(sorted(FILMS), self.names())

    def test_WhatIsFilteredStaysSoWhenSorted(self):
        self.write_filter("e")
        self.write_filter("es.ogm")
        self.assertEqual(["Bees.ogm", "apes.ogm"], self.names())
        self.assertEqual((["Bees.ogm", "apes.ogm"], "ascending"), self.sorted_by("File"))
        self.assertEqual((["apes.ogm", "Bees.ogm"], "descending"), self.sorted_by("File"))

    def test_LinksLeadToTheTimelines(self):
        links = {pathlib.Path(row.find_element("css selector", "bdi").text).name:
                 row.find_element("css selector", "a").get_attribute("href")
                 for row in self.elements("#files tbody tr:has(a)")}
        faulty = [name for name, file in self.files.items() if file["verdict"] != "plays"]
        self.assertGreater(len(faulty), 1)
        self.assertEqual(sorted(faulty), sorted(links))
        for name, link in links.items():
            self.browser.get(link)
            WebDriverWait(self.browser, 60, 0.05).until(
                lambda browser: self.script("return document.body.dataset.ready"))
            self.assertEqual(f"{name} - timeline", self.browser.title)

    def test_OnAPhoneThePageIsAsWideAsTheScreen(self):
        self.load(self.page, width=400, height=800, phone=True)
        self.assertEqual([400, 400], self.script(
            "return [innerWidth, document.documentElement.scrollWidth]"))
        names, _ = self.sorted_by("Size")
        self.assertEqual(sorted(FILMS, key=lambda name: self.files[name]["size"]), names)
        self.write_filter("bees")
        self.assertEqual(["Bees.ogm"], self.names())

    def test_VerdictsCanBeReadInLightAndDark(self):
        for dark in (False, True):
            self.load(self.page, dark=dark)
            paper = self.script("return getComputedStyle(document.querySelector("
                                "'#files thead th')).backgroundColor")
            cells = self.elements("#files tbody td:first-child")
            self.assertEqual(len(FILMS), len(cells))
            for cell in cells:
                colour = self.script("return getComputedStyle(arguments[0]).color", cell)
                self.assertGreater(contrast(colour, paper), 4.5, (cell.text, dark))


if __name__ == "__main__":
    program = sys.argv.pop(1)
    unittest.main()
