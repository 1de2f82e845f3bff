# SPDX-License-Identifier: Apache-2.0
"""Opens timelines in a headless Chromium: what is drawn, and what mouse, fingers and keys do.

Usage: BrowserTest.py PROGRAM [unittest arguments]
"""

import csv
import json
import pathlib
import re
import shutil
import subprocess
import sys
import unittest

import LongFile

sys.path.insert(0, str(pathlib.Path(__file__).parents[2] / "tests"))
from BrowserCase import BrowserCase, contrast, luminance

program = None
samples = (pathlib.Path(__file__).parents[4] /
           "frameworks/av/media/libstagefright/ogm/tests/data/samples")

def run(*arguments):
    return subprocess.run([program, *map(str, arguments)], check=True, text=True,
                          capture_output=True).stdout


def packets_of(file):
    documents = map(json.loads, run("packets", "--json", file).splitlines())
    return [document for document in documents if document["type"] == "buffer"]


class TimelineInBrowser(BrowserCase):
    # Reading pixels, as colours_in() does, could be quicker.
    expected_complaint = "readback operations using getImageData"

    def make(self, file):
        """A page of a file that is no sample, or not known as one."""
        page = self.folder / "page.html"
        page.unlink(missing_ok=True)
        run("timeline", file, "-o", page)
        return page

    def page_of(self, sample, kind="html"):
        """Of a sample: made once for all tests."""
        page = self.shared / f"{sample}.{kind}"
        if not page.exists():
            run("timeline", samples / sample, "-o", page)
        return page

    def show(self, page, **how):
        self.load(page, **how)
        self.wait_until("document.body.dataset.ready")
        self.settle(frames=2)
        self.assertNoComplaints()

    def open(self, sample="mpeg4_mp3_ac3.ogm", **how):
        self.show(self.page_of(sample), **how)

    def settle(self, frames=1):
        """Until what was asked for has been drawn. Touches, wheels, media and places in the window may
        only be known in the second frame."""
        self.script("""
            for (let frame = 0; frame < arguments[0] || chart.isWaiting; ++frame) {
                await new Promise(requestAnimationFrame);
            }""", frames)

    def move_mouse(self, x, y):
        self.mouse("mouseMoved", x, y)
        self.settle()

    def drag(self, from_x, to_x, y, modifiers=0):
        held = {"button": "left", "buttons": 1, "modifiers": modifiers}
        self.mouse("mousePressed", from_x, y, clickCount=1, **held)
        for part in range(1, 6):
            self.mouse("mouseMoved", from_x + (to_x - from_x) * part / 5, y, **held)
        self.mouse("mouseReleased", to_x, y, clickCount=1, **held)
        self.settle()

    def click(self, x, y):
        self.drag(x, x, y)

    def wheel(self, x, y, by, control=True):
        self.mouse("mouseWheel", x, y, deltaX=0, deltaY=by, modifiers=2 if control else 0)
        self.settle(frames=2)

    def x_of(self, time_us):
        return self.box(".panel.lane canvas")["x"] + self.script("return xOf(arguments[0])", time_us)

    def point_at_lane(self, lane, time_us):
        box = self.box(".panel.lane canvas", lane)
        self.move_mouse(self.x_of(time_us), box["y"] + box["height"] - 20)

    def tooltip(self):
        """Its lines; none while it is hidden."""
        return self.text("#tooltip").splitlines()

    def view(self):
        return self.script("return [view.startUs, view.lengthUs]")

    def labels(self):
        return self.script("return chart.panels[1].labels")

    def colours_in(self, selector, number, left, width):
        """Counts of the colours in a part of a canvas."""
        return self.script("""
            const canvas = document.querySelectorAll(arguments[0])[arguments[1]];
            const {data} = canvas.getContext("2d").getImageData(
                arguments[2], 0, arguments[3], canvas.height);
            const counts = {};
            for (let i = 0; i < data.length; i += 4) {
                const colour = `rgb(${data[i]}, ${data[i + 1]}, ${data[i + 2]})`;
                counts[colour] = (counts[colour] ?? 0) + 1;
            }
            return counts;""", selector, number, round(left), round(width))

    def colour(self, name):
        """Of the style sheet, as rgb()."""
        digits = self.script("return colours[arguments[0]]", name)[1:]
        return "rgb({}, {}, {})".format(*(int(digits[i:i + 2], 16) for i in (0, 2, 4)))

    def count_of(self, name, lane):
        """Pixels of that colour in a lane."""
        width = self.box(".panel.lane canvas", lane)["width"]
        return self.colours_in(".panel.lane canvas", lane, 0, width).get(self.colour(name), 0)

    def key_frame(self):
        return next(packet for packet in packets_of(samples / "mpeg4_mp3_ac3.ogm")
                    if packet["track"] == 0 and packet["sync"] and packet["time_us"] > 0)

    # What is drawn

    def test_DrawsALaneForEachTrackBitrateAndFilePositions(self):
        self.open()
        names = self.script("return Array.from(document.querySelectorAll('.lane canvas'),"
                            "(canvas) => canvas.getAttribute('aria-label'))")
        self.assertEqual(3, len(names))
        self.assertRegex(names[0], r"^Track 0, video, MPEG-4 Part 2: \d+ packets, 6 packets lost")
        for lane, shown in ((0, ("type-i", "type-p", "type-b", "ink", "repeated", "backward", "lost")),
                            (1, ("audio0", "lost")), (2, ("audio1",))):
            for name in shown:
                with self.subTest(lane=lane, colour=name):
                    self.assertGreater(self.count_of(name, lane), 4)
        for panel in ("overview", "axis", "findings", "bitrate", "position"):
            self.assertGreater(self.box(f".panel.{panel} canvas")["height"], 20)

    def test_AConstantStreamHasAConstantBitrateAtEveryZoom(self):
        for sample, lane in (("mpeg4_pcm8.ogm", 1), ("mpeg4_mp3_ac3.ogm", 1),
                             ("mpeg4_mp3_ac3.ogm", 2), ("long_mpeg4_mp3.ogm", 1)):
            self.open(sample)
            for part in (1, 4, 30):
                rates = self.script("""
                    setView(outline.axis.startUs + outline.axis.lengthUs * 0.4,
                            outline.axis.lengthUs / arguments[0]);
                    drawAll();
                    const {row} = film.lanes[arguments[1]];
                    const panel = chart.panels.find((each) => each.className === "bitrate");
                    // The first and the last time have other numbers of packets.
                    const times = panel.drawn.places.map(timeAt);
                    const edge = windowOf(view.lengthUs) + 6e5;
                    return panel.drawn.lines[arguments[1]].rates.filter((_, i) =>
                        times[i] > row.begins[0] + edge && times[i] < row.ends[row.count - 1] - edge);
                    """, part, lane)
                with self.subTest(sample=sample, lane=lane, part=part):
                    self.assertGreater(len(rates), 20)
                    self.assertLess(max(rates) / min(rates), 1.06)

    def test_ShowsEachFindingOfExplain(self):
        hole = self.folder / "hole.ogm"
        LongFile.write(hole, 60, (20, 25))
        junk = self.folder / "junk.ogm"
        whole = (samples / "mpeg4_b_mp3.ogm").read_bytes()
        page = whole.index(b"OggS", 100000)
        junk.write_bytes(whole[:page] + b"x" * 5000 + whole[page:])
        for file in (hole, junk, samples / "xvid_refused_mp3.ogm", samples / "mpeg4_mp3_ac3.ogm"):
            found = json.loads(run("explain", "--json", file))["findings"]
            self.show(self.make(file))
            self.assertEqual([finding["text"] for finding in found],
                             self.texts("#findings .sentence"))
            for number, finding in enumerate(found, 1):
                with self.subTest(file=file.name, finding=finding["id"]):
                    self.assertFindingIsOnThePicture(number)
            self.assertNoComplaints()

    def assertFindingIsOnThePicture(self, number):
        badges = self.texts(".badge")
        if str(number) in badges:
            self.assertTrue(self.is_shown(".badge", badges.index(str(number))))
            return
        self.script("chooseFinding(arguments[0])", number)
        self.settle()
        left, top, width, height = self.script("""
            const panel = chart.panels.find((each) => each.className === "findings");
            const placed = rowsOfFindings().find(({finding}) => finding.number === arguments[0]);
            const {left, top, width, height} = panel.box(placed);
            return [left, top, width, height];""", number)
        strip = self.box(".panel.findings canvas")
        self.assertTrue(-width < left < strip["width"])
        shown = max(left, 0) + min(width, 18) / 2
        self.move_mouse(strip["x"] + shown, strip["y"] + top + height / 2)
        self.assertRegex(self.tooltip()[0], r"^\d+: ")

    def test_MarksAHoleWhereItIs(self):
        file = self.folder / "hole.ogm"
        LongFile.write(file, 60, (20, 25))
        self.show(self.make(file))
        spans = self.script("return timedFindings.filter((each) => each.id === 'pages-missing')"
                            ".map((each) => [each.fromUs / 1e6, each.toUs / 1e6])")
        self.assertTrue(any(18 < span[0] < 21 and 24 < span[1] < 26 for span in spans), spans)
        gaps = self.script("return film.lanes.map((lane) => [lane.gapFrom[0], lane.gapTo[0]])")
        self.assertTrue(any(19e6 < begin < 21e6 and 24e6 < end < 26e6 for begin, end in gaps), gaps)

    def test_DrawsRefusedStreamsByThePagesTimes(self):
        self.open("xvid_refused_mp3.ogm")
        self.assertEqual(1, self.count(".panel.refused"))
        width = self.box(".panel.refused canvas")["width"]
        counts = self.colours_in(".panel.refused canvas", 0, 0, width)
        self.assertGreater(counts[self.colour("unknown")], 100)
        box = self.box(".panel.refused canvas")
        self.move_mouse(box["x"] + box["width"] / 2, box["y"] + box["height"] - 4)
        self.assertIn("codec not supported", self.tooltip()[0])
        self.assertRegex(self.tooltip()[1], r"^page time [\d.]+ s$")

    def test_ShowsTheSameTimesAgainstThePagesAsSync(self):
        for sample in ("mpeg4_mp3_ac3.ogm", "h264_mp3vbr.ogm"):
            file = samples / sample
            self.open(sample)
            summary = json.loads(run("sync", "--json", file))["summary"]
            self.assertEqual(f"Against the file's pages: {summary}.",
                             self.texts(".worst")[0])
            shown = self.script("""
                return film.lanes.map(({row, pageTimes, byPages}) => Array.from(row.order, (file, i) =>
                    [file, pageTimes.least[file], pageTimes.most[file], byPages.least[i],
                     byPages.most[i], pageTimes.known[file]]));""")
            rows = [row for row in csv.DictReader(run("sync", "--csv", file).splitlines())
                    if row["number"] and row["late_from"]]
            self.assertGreater(len(rows), 200)
            self.assertEqual(len(rows), sum(packet[-1] for lane in shown for packet in lane))
            by_number = [{packet[0]: packet[1:5] for packet in lane} for lane in shown]
            for row in rows:
                expected = [round(float(row[name]) * 1e6)
                            for name in ("page_from", "page_to", "late_from", "late_to")]
                self.assertEqual(expected, by_number[int(row["track"])][int(row["number"])], row)

    def test_DrawsTimesAgainstThePagesAndAudioAgainstVideo(self):
        self.open()
        document = json.loads(run("sync", "--json", samples / "mpeg4_mp3_ac3.ogm"))
        for name, member, entries in (("byPages", ".panel.byPages", document["tracks"]),
                                      ("byVideo", ".panel.byVideo", document["pairs"])):
            width = self.box(f"{member} canvas")["width"]
            counts = self.colours_in(f"{member} canvas", 0, 0, width)
            for colour in ("audio0", "audio1"):
                self.assertGreater(counts[self.colour(colour)], 100)
            shown = self.script(
                "return film.lanes.filter((lane) => lane[arguments[0]].isKnown)"
                ".map((lane) => lane[arguments[0]].of(0, lane.row.count))", name)
            self.assertEqual(len(entries), len(shown))
        box = self.box(".panel.byPages canvas")
        self.move_mouse(box["x"] + box["width"] / 2, box["y"] + 20)
        self.assertRegex(self.tooltip()[2], r"^Track 1 .*: [\d.]+ s early$")

    # Pointing

    def test_ShowsThePacketUnderTheMouse(self):
        self.open()
        key_frame = self.key_frame()
        self.point_at_lane(0, key_frame["time_us"] + 500)
        lines = self.tooltip()
        self.assertRegex(lines[0], r"^Track 0 \(MPEG-4 Part 2\), packet \d+$")
        self.assertIn(f"time {key_frame['time_us'] / 1e6:.6f} s", lines[1])
        self.assertEqual(f"{key_frame['size']:,} bytes, I picture, sync frame", lines[2])
        self.assertRegex(lines[3], r"^file read up to [\d,]+$")
        self.assertNoComplaints()

    def test_LightsUpThePacketsOfThatTimeInAllLanes(self):
        self.open()
        self.move_mouse(2, 2)
        before = [self.count_of("ink", lane) for lane in range(3)]
        self.point_at_lane(1, 3000000)
        for lane in range(3):
            self.assertGreater(self.count_of("ink", lane), before[lane])

    def test_ShowsBitrateAndSeeksUnderTheMouse(self):
        self.open()
        seek = self.script("return outline.seeks[4]")
        bitrate = self.box(".panel.bitrate canvas")
        self.move_mouse(self.x_of(seek["targetUs"]), bitrate["y"] + 20)
        self.assertRegex(self.tooltip()[1], r"^all tracks [\d.]+ kbit/s$")
        position = self.box(".panel.position canvas")
        self.move_mouse(self.x_of(seek["targetUs"]), position["y"] + 60)
        self.assertEqual(f"Seek to {seek['targetUs'] / 1e6:.6f} s", self.tooltip()[0])
        self.assertEqual(f"{seek['reads']:,} reads, {seek['bytes']:,} bytes", self.tooltip()[2])
        self.move_mouse(2, 2)
        self.assertEqual([], self.tooltip())
        self.assertNoComplaints()

    def test_PinsTheRowOfAPacketByAClick(self):
        self.open()
        packets = [packet for packet in packets_of(samples / "mpeg4_mp3_ac3.ogm")
                   if packet["track"] == 0]
        key_frame = self.key_frame()
        box = self.box(".panel.lane canvas")
        self.click(self.x_of(key_frame["time_us"]) + 2, box["y"] + 80)
        row = dict(zip(self.texts("#pinned dt"), self.texts("#pinned dd")))
        number = int(row["Packet"].split()[0])
        self.assertEqual(packets[number]["digest"], row["Digest"])
        self.assertEqual(f"{key_frame['time_us'] / 1e6:.6f} s", row["Time"])
        self.assertEqual(f"{key_frame['size']:,} bytes", row["Size"])
        page = re.match(r"page (\d+) at offset ([\d,]+), time ", row["Page"])
        file = (samples / "mpeg4_mp3_ac3.ogm").read_bytes()
        offset = int(page[2].replace(",", ""))
        self.assertEqual(b"OggS", file[offset:offset + 4])
        self.assertEqual(int(page[1]), int.from_bytes(file[offset + 18:offset + 22], "little"))
        self.click_on("#unpin")
        self.assertFalse(self.is_shown("#pinned"))

    # Moving

    def test_ZoomingReachesEachPacket(self):
        for sample in ("long_mpeg4_mp3.ogm", "mpeg4_mp3_ac3.ogm"):
            self.open(sample)
            self.assertEachPacketIsReached()

    def assertEachPacketIsReached(self, stride=1):
        """By the mouse, where the packets are a few pixels wide."""
        missed = self.script("""
            const missed = [];
            for (const panel of chart.panels.filter((each) => each.className === "lane")) {
                const {row} = panel.lane;
                for (let i = 0; i < row.count; i += arguments[0]) {
                    const lengthUs = (row.ends[i] - row.begins[i]) * 50;
                    setView(row.begins[i] - lengthUs / 2, lengthUs);
                    const found = panel.at(xOf((row.begins[i] + row.ends[i]) / 2), 20);
                    if (found.index !== i || !panel.bars.showsPackets()) {
                        missed.push([panel.lane.index, i, found.index]);
                    }
                }
            }
            return missed;""", stride)
        self.assertEqual([], missed[:10])

    def test_ZoomsWhereTheMouseIs(self):
        self.open()
        whole = self.labels()
        box = self.box(".panel.lane canvas")
        self.point_at_lane(0, 2960000)
        # Wheel events have whole pixels.
        x = round(self.x_of(2960000))
        time_us = self.script("return timeAt(arguments[0])", x - box["x"])
        for _ in range(10):
            self.wheel(x, box["y"] + 80, -100)
        near = self.labels()
        self.assertNotEqual(whole, near)
        self.assertAlmostEqual(x, self.x_of(time_us), delta=1.5)
        self.click_on("#zoom-all")
        self.settle()
        self.assertEqual(whole, self.labels())
        self.click_on("#zoom-in")
        self.settle()
        self.assertNotEqual(whole, self.labels())
        self.click_on("#zoom-out")
        self.settle()
        self.assertEqual(whole, self.labels())
        self.assertNoComplaints()

    def test_WheelWithoutControlScrollsOverLanesAndZoomsOverTheOverview(self):
        self.open()
        whole = self.view()
        box = self.box(".panel.lane canvas")
        self.wheel(box["x"] + 300, box["y"] + 20, -100, control=False)
        self.assertEqual(whole, self.view())
        strip = self.box(".panel.overview canvas")
        self.wheel(strip["x"] + 300, strip["y"] + 10, -100, control=False)
        self.assertLess(self.view()[1], whole[1])

    def test_DragsMoveTheView(self):
        self.open()
        self.script("zoom(0.25)")
        before = self.view()
        box = self.box(".panel.lane canvas")
        self.drag(box["x"] + 400, box["x"] + 300, box["y"] + 50)
        after = self.view()
        self.assertAlmostEqual(before[0] + before[1] * 100 / box["width"], after[0], delta=1000)
        self.assertEqual(before[1], after[1])
        strip = self.box(".panel.overview canvas")
        self.drag(strip["x"] + 200, strip["x"] + strip["width"] - 5, strip["y"] + 10)
        end = self.script("return outline.axis.startUs + outline.axis.lengthUs - endOfView()")
        self.assertAlmostEqual(0, end, delta=1)

    def test_WalksFromPacketToPacketWithKeys(self):
        self.open()
        times = [packet["time_us"] for packet in packets_of(samples / "mpeg4_mp3_ac3.ogm")
                 if packet["track"] == 0]
        self.press("#chart", "ArrowRight")
        first = times.index(min(times))
        self.assertEqual(f"Track 0 (MPEG-4 Part 2), packet {first}", self.tooltip()[0])
        self.assertIn(f"packet {first}", self.script(
            "return document.getElementById('said').textContent"))
        self.press("#chart", *["ArrowRight"] * 400)
        self.assertIn(f"time {max(times) / 1e6:.6f} s", self.tooltip()[1])
        self.press("#chart", "Enter")
        self.assertTrue(self.is_shown("#pinned"))
        self.press("#chart", "ArrowDown")
        self.assertIn("Track 1 (MP3", self.tooltip()[0])
        self.press("#chart", "Escape")
        self.assertEqual([], self.tooltip())
        self.assertFalse(self.is_shown("#pinned"))
        self.assertNoComplaints()

    def test_KeysMoveMeasureAndGoToFindings(self):
        self.open()
        whole = self.view()
        self.press("#chart", "+", "+")
        self.assertAlmostEqual(whole[1] / 4, self.view()[1], delta=1)
        self.press("#chart", "Home")
        self.assertEqual(whole[0], self.view()[0])
        self.press("#chart", "PageDown")
        self.assertAlmostEqual(whole[0] + self.view()[1] * 0.8, self.view()[0], delta=1)
        self.press("#chart", "0", *["ArrowRight"] * 3, "m", *["ArrowRight"] * 20, "m")
        self.assertIn("Track 0 (MPEG-4 Part 2): 20 packets", self.text("#measured"))
        self.press("#chart", "f", "f")
        self.assertEqual(["2"], self.texts("#findings [aria-current=true] .number"))
        self.press("#chart", "F")
        self.assertEqual(["1"], self.texts("#findings [aria-current=true] .number"))

    def test_ShiftAndDragMeasures(self):
        self.open()
        box = self.box(".panel.lane canvas")
        left, right = box["x"] + 200, box["x"] + 500
        shift = 8
        self.drag(left, right, box["y"] + 50, shift)
        lines = self.texts("#measured li")
        begin, end = (self.script("return timeAt(arguments[0])", x - box["x"]) for x in (left, right))
        self.assertIn(f"from {begin / 1e6:.6f} s to {end / 1e6:.6f} s", lines[0])
        counted = re.search(r"(\d+) packets, ([\d,]+) bytes, ([\d.]+) kbit/s", lines[2])
        sounds = [packet for packet in packets_of(samples / "mpeg4_mp3_ac3.ogm")
                  if packet["track"] == 1]
        expected = sum(packet["size"] for packet in sounds) / len(sounds) * int(counted[1])
        self.assertAlmostEqual(expected, int(counted[2].replace(",", "")), delta=expected * 0.02)
        self.assertAlmostEqual(64, float(counted[3]), delta=4)
        self.click_on("#unmeasure")
        self.assertFalse(self.is_shown("#measured"))

    def test_GoesToATime(self):
        self.open("long_mpeg4_mp3.ogm")
        self.write("#goto", "1:02.5", "Enter")
        self.settle()
        start, length = self.view()
        self.assertAlmostEqual(62.5e6, start + length / 2, delta=1)
        self.write("#goto", "10 .. 0:12", "Enter")
        self.settle()
        self.assertEqual([10e6, 2e6], self.view())
        self.write("#goto", "soon", "Enter")
        self.assertEqual(1, self.count("#goto[aria-invalid=true]"))
        self.assertEqual([10e6, 2e6], self.view())

    def test_LegendSwitchesSeries(self):
        self.open()
        self.assertGreater(self.count_of("type-b", 0), 50)
        entries = self.texts("#legend button")
        pressed = ("return document.querySelectorAll('#legend button')[arguments[0]]"
                   ".getAttribute('aria-pressed')")
        pictures = entries.index("B picture")
        self.click_on("#legend button", pictures)
        self.settle()
        self.assertEqual("false", self.script(pressed, pictures))
        self.assertEqual(0, self.count_of("type-b", 0))
        self.click_on("#legend button", entries.index("bitrate"))
        self.settle()
        self.assertFalse(self.is_shown(".panel.bitrate"))
        self.click_on("#legend button", pictures)
        self.settle()
        self.assertGreater(self.count_of("type-b", 0), 50)

    def test_ALinkShowsTheSame(self):
        page = self.page_of("mpeg4_mp3_ac3.ogm")
        self.show(page)
        self.script("setView(2e6, 1e6); switchSeries('bitrate');"
                    "const lane = film.lanes[1];"
                    "pin({lane, index: 50, timeUs: lane.row.begins[50]})")
        self.wait_until("location.hash")
        fragment = self.script("return location.hash")
        row = self.text("#pinned")
        self.show(page, fragment=fragment)
        self.assertEqual([2e6, 1e6], self.view())
        self.assertFalse(self.is_shown(".panel.bitrate"))
        self.assertEqual(row, self.text("#pinned"))
        self.script("location.hash = '#from=1&to=1.5'")
        self.settle(frames=2)
        self.assertEqual([1e6, 5e5], self.view())
        self.assertTrue(self.is_shown(".panel.bitrate"))
        self.script("location.hash = '#from=x&to=&packet=9.9&off=nothing'")
        self.settle(frames=2)
        self.assertNoComplaints()

    def test_DrawsPanelsOnceTheyAreScrolledIntoTheWindow(self):
        self.open(width=800, height=400)
        self.script("zoom(0.25)")
        self.settle()
        drawn = ("chart.panels.filter((panel) => panel.isInWindow)"
                 ".map((panel) => panel.className)")
        self.assertNotIn("position", self.script("return " + drawn))
        self.script("document.querySelector('.panel.position').scrollIntoView()")
        self.wait_until(drawn + ".includes('position')")
        self.settle()
        width = self.box(".panel.position canvas", 1)["width"]
        shown = self.script("""
            const panel = chart.panels.find((each) => each.className === "position");
            const before = panel.plot.canvas.toDataURL();
            panel.draw(null);
            return [before === panel.plot.canvas.toDataURL()];""")
        self.assertEqual([True], shown)
        self.assertGreater(width, 300)

    # Phones

    def test_OnAPhoneLanesHaveTheWholeWidth(self):
        self.open(width=390, height=800, phone=True)
        page, window = self.script(
            "return [document.documentElement.scrollWidth, window.innerWidth]")
        self.assertLessEqual(page, window)
        for canvas in range(self.count(".plot canvas")):
            self.assertGreater(self.box(".plot canvas", canvas)["width"], 360)
        names = self.box(".panel.lane .names")
        self.assertLess(names["bottom"], self.box(".panel.lane canvas")["top"] + 1)

    def test_ATapPinsAndFingersMoveAndPinch(self):
        self.open(width=390, height=800, phone=True)
        self.script("document.querySelector('.panel.lane').scrollIntoView({block: 'center'})")
        self.settle(frames=2)
        box = self.box(".panel.lane canvas")
        x, y = box["x"] + 150, box["y"] + 60
        self.touch("touchStart", (x, y))
        self.touch("touchEnd")
        self.settle(frames=2)
        self.assertTrue(self.is_shown("#pinned"))
        box = self.box(".panel.lane canvas")
        y = box["y"] + 60
        whole = self.view()
        self.touch("touchStart", (x - 20, y), (x + 20, y))
        self.touch("touchMove", (x - 80, y), (x + 80, y))
        self.touch("touchEnd")
        self.settle(frames=2)
        near = self.view()
        self.assertAlmostEqual(whole[1] / 4, near[1], delta=whole[1] / 40)
        self.touch("touchStart", (x, y))
        self.touch("touchMove", (x - 40, y))
        self.touch("touchMove", (x - 100, y))
        self.touch("touchEnd")
        self.settle(frames=2)
        self.assertGreater(self.view()[0], near[0] + near[1] * 0.1)
        self.assertNoComplaints()

    # Looks

    def test_HasTextsAndMarksOfEnoughContrastInLightAndDark(self):
        backgrounds = []
        for dark in (False, True):
            self.open(dark=dark)
            backgrounds.append(self.script("return getComputedStyle(document.body).backgroundColor"))
            inks = self.script(
                "return [...document.querySelectorAll('h1, h2, td, th, p, li, button, summary, dt, "
                ".details, .title, .place, code')].filter((element) => element.offsetParent)"
                ".map((element) => getComputedStyle(element).color)"
                ".filter((colour) => colour !== getComputedStyle(document.body).backgroundColor)")
            self.assertGreater(len(inks), 50)
            for ground in (backgrounds[-1], self.colour("ground")):
                for ink in set(inks):
                    self.assertGreater(contrast(ink, ground), 4.5, ink)
                for mark in self.script("return COLOUR_NAMES"):
                    if mark not in ("paper", "ground", "grid", "area"):
                        self.assertGreater(contrast(self.colour(mark), ground), 3, mark)
            for badge in ("finding", "usual"):
                self.assertGreater(contrast(self.colour(badge), backgrounds[-1]), 4.5, badge)
        self.assertGreater(luminance(backgrounds[0]), 0.8)
        self.assertLess(luminance(backgrounds[1]), 0.05)

    def test_ChangesItsColoursWithTheSystem(self):
        self.open()
        light = self.count_of("type-p", 0)
        before = self.colour("type-p")
        self.tab.call("Emulation.setEmulatedMedia", features=[
            {"name": "prefers-color-scheme", "value": "dark"}])
        self.settle(frames=2)
        self.assertNotEqual(before, self.colour("type-p"))
        self.assertAlmostEqual(light, self.count_of("type-p", 0), delta=light / 10)

    def test_NamesAllForScreenReaders(self):
        self.open()
        unnamed = self.script("""
            return [...document.querySelectorAll("button, input, canvas, section, [tabindex]")]
                .filter((element) => !element.getAttribute("aria-label") &&
                    !element.getAttribute("aria-labelledby") && !element.labels?.length &&
                    !(element.matches("button") && element.textContent.trim().length > 2))
                .map((element) => element.outerHTML.slice(0, 100));""")
        self.assertEqual([], unnamed)

    def test_HasNoTextsThatOverlap(self):
        for width in (500, 900, 1280, 1900):
            self.open("long_mpeg4_mp3.ogm", width=width)
            boxes = self.script("""
                return [...document.querySelectorAll(".names > *, .plot, #legend button, .bar > *")]
                    .filter((element) => element.offsetParent && element.textContent + element.id ||
                        element.matches(".plot"))
                    .map((element) => ({name: element.className + element.textContent,
                        ...element.getBoundingClientRect().toJSON()}));""")
            self.assertGreater(len(boxes), 20)
            self.assertBoxesApart([box for box in boxes if box["width"] > 0])

    def assertBoxesApart(self, boxes):
        for i, one in enumerate(boxes):
            for other in boxes[:i]:
                across = min(one["right"], other["right"]) - max(one["left"], other["left"])
                down = min(one["bottom"], other["bottom"]) - max(one["top"], other["top"])
                # Boxes of lines have some air above and below the letters.
                self.assertFalse(across > 1 and down > 4, f"{one['name']} over {other['name']}")

    def test_FitsIntoTheWindow(self):
        for width in (340, 700, 1280, 1900):
            self.open(width=width)
            page, window = self.script(
                "return [document.documentElement.scrollWidth, window.innerWidth]")
            self.assertLessEqual(page, window)

    def test_TakesNamesAsText(self):
        name = "<img src=x onerror=document.title='run'> & \"'{{data}}.ogm"
        file = self.folder / name
        shutil.copy(samples / "mpeg4_b_mp3.ogm", file)
        self.show(self.make(file))
        self.assertEqual(name, self.script("return document.querySelector('h1').textContent"))
        self.assertEqual(f"{name} - timeline", self.script("return document.title"))
        self.assertEqual(0, self.count("img"))

    def test_LoadsNothingElse(self):
        self.open()
        self.assertEqual([], self.script(
            "return performance.getEntriesByType('resource').map((entry) => entry.name)"))

    def test_AnythingThatAPageLogsIsAComplaint(self):
        page = self.folder / "page.html"
        page.write_text("<img src='missing.png'><script>console.error('said'); undefined();</script>")
        self.load(page)
        self.browser.wait_for(lambda: len(self.tab.complaints) >= 3)
        with self.assertRaises(AssertionError):
            self.assertNoComplaints()
        complaints = "\n".join(self.tab.complaints)
        for part in ("said", "not a function", "ERR_FILE_NOT_FOUND"):
            self.assertIn(part, complaints)
        self.assertEqual(3, len(self.tab.complaints))
        self.tab.complaints.clear()

    def test_DrawingsAreShownByThemselves(self):
        backgrounds = []
        for dark in (False, True):
            self.load(self.page_of("mpeg4_mp3_ac3.ogm", "svg"), dark=dark)
            self.assertNoComplaints()
            self.assertEqual(3, self.count(".panel.lane"))
            self.assertGreater(self.box("path.bar")["height"], 50)
            self.assertBoxesApart(self.script(
                "return [...document.querySelectorAll('svg text, svg .swatch')].map((element) =>"
                "({name: element.textContent, ...element.getBoundingClientRect().toJSON()}))"))
            backgrounds.append(self.script(
                "return getComputedStyle(document.querySelector('.paper')).fill"))
        self.assertGreater(luminance(backgrounds[0]), 0.8)
        self.assertLess(luminance(backgrounds[1]), 0.05)

    # Long files

    def test_ShowsAnHourWithEachPacketInReach(self):
        file = self.folder / "hour.ogm"
        LongFile.write(file, 3600)
        page = self.make(file)
        self.assertLess(page.stat().st_size, 1500000)
        self.show(page)
        packets = self.script("return film.lanes.map((lane) => lane.row.count)")
        self.assertGreater(sum(packets), 227000)
        self.assertEachPacketIsReached(stride=97)
        self.assertNoComplaints()

    def test_ShowsAMillionPackets(self):
        file = self.folder / "million.ogm"
        LongFile.write(file, 4.4 * 3600)
        page = self.make(file)
        self.assertLess(page.stat().st_size, 6000000)
        self.show(page)
        self.assertGreater(sum(self.script("return film.lanes.map((lane) => lane.row.count)")), 1e6)
        self.assertEachPacketIsReached(stride=997)
        self.assertNoComplaints()


if __name__ == "__main__":
    program = sys.argv.pop(1)
    unittest.main()
