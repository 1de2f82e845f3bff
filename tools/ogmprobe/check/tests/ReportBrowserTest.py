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
        return [pathlib.Path(path).name for path in self.texts("#files tbody td:nth-child(2)") if path]

    def heading(self, title):
        """Its number among those that can be clicked."""
        titles = self.texts("#files th button")
        return next(i for i, text in enumerate(titles) if text.startswith(title))

    def orders(self):
        """Of the headings that can be clicked, for assistive software."""
        return self.script("""
            return Array.from(document.querySelectorAll("#files th:has(button)"),
                (cell) => cell.getAttribute("aria-sort"))""")

    def sorted_by(self, title):
        """The names after a click, and the order that assistive software gets."""
        heading = self.heading(title)
        self.click_on("#files th button", heading)
        return self.names(), self.orders()[heading]

    def write_filter(self, text, *keys):
        self.write("#filter", text, *keys)

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
        self.assertEqual(0, self.count("bdi b"))

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
        self.assertEqual(len(self.orders()), self.count("#files th[aria-sort]"))
        self.assertEqual(["none", "ascending", "none", "none", "none"], self.orders())

    def test_HeadingsAnswerTheKeyboard(self):
        self.press("#files th button", "Enter", number=self.heading("Size"))
        self.assertEqual(sorted(FILMS, key=lambda name: self.files[name]["size"]), self.names())

    def test_TheFilterShowsFilesThatHoldTheTextInAnyCase(self):
        self.write_filter("BEES")
        self.assertEqual(["Bees.ogm"], self.names())
        self.assertEqual(f"1 of {len(FILMS)}", self.text("#shown"))
        self.write_filter("codec-not-supported")
        self.assertEqual(["cut <b>.ogm"], self.names())
        self.write_filter("nowhere to be found")
        self.assertEqual([], self.names())
        self.assertEqual(f"0 of {len(FILMS)}", self.text("#shown"))
        self.write_filter("x", "Backspace")
        self.assertEqual(sorted(FILMS), self.names())

    def test_WhatIsFilteredStaysSoWhenSorted(self):
        self.write_filter("e")
        self.write_filter("es.ogm")
        self.assertEqual(["Bees.ogm", "apes.ogm"], self.names())
        self.assertEqual((["Bees.ogm", "apes.ogm"], "ascending"), self.sorted_by("File"))
        self.assertEqual((["apes.ogm", "Bees.ogm"], "descending"), self.sorted_by("File"))

    def test_LinksLeadToTheTimelines(self):
        links = {pathlib.Path(path).name: link for path, link in self.script("""
            return Array.from(document.querySelectorAll("#files tbody tr:has(a)"), (row) =>
                [row.querySelector("bdi").innerText, row.querySelector("a").href]);""")}
        faulty = [name for name, file in self.files.items() if file["verdict"] != "plays"]
        self.assertGreater(len(faulty), 1)
        self.assertEqual(sorted(faulty), sorted(links))
        for name, link in links.items():
            self.tab.go(link)
            self.wait_until("document.body.dataset.ready")
            self.assertEqual(f"{name} - timeline", self.script("return document.title"))

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
            cells = self.script("""
                return Array.from(document.querySelectorAll("#files tbody td:first-child"), (cell) =>
                    [cell.innerText, getComputedStyle(cell).color]);""")
            self.assertEqual(len(FILMS), len(cells))
            for verdict, colour in cells:
                self.assertGreater(contrast(colour, paper), 4.5, (verdict, dark))


if __name__ == "__main__":
    program = sys.argv.pop(1)
    unittest.main()
