#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Measures how long a headless Chromium needs to show a timeline of a long file, and to draw it while
it is dragged, with more and with less of it in view.

Usage: drawing_times.py OGMPROBE [SECONDS_OF_FILE...]    (default: an hour, and a million packets)
"""

import pathlib
import subprocess
import sys
import tempfile
import time

TOOL = pathlib.Path(__file__).parents[1] / "tools/ogmprobe"
sys.path += [str(TOOL / "tests"), str(TOOL / "timeline/tests")]
import LongFile
from Browser import Browser

LENGTHS_S = (3600, 4.4 * 3600)
PARTS = (1, 10, 100, 1000, 10000)
FRAMES = 30

SHOW_PART = """
    zoomAll();
    const {startUs, lengthUs} = outline.axis;
    setView(startUs + lengthUs * 0.4, lengthUs / arguments[0]);"""

# In milliseconds: what each drawing takes, in rising order, and how far frames are apart.
DRAG = """
    const [frames, draws] = arguments;
    const drawings = [];
    const frame = () => new Promise(requestAnimationFrame);
    await frame();
    const begin = performance.now();
    for (let i = 0; i < frames; ++i) {
        const from = performance.now();
        if (draws) {
            pan(i < frames / 2 ? 9 : -9);
            drawAll();
        }
        drawings.push(performance.now() - from);
        await frame();
    }
    return {apart: (performance.now() - begin) / frames, drawings: drawings.sort((a, b) => a - b)};"""


def measure(tab, page):
    begin = time.monotonic()
    tab.go(page.as_uri())
    packets = tab.script("""
        while (!document.body.dataset.ready) {
            await new Promise((wake) => setTimeout(wake, 4));
        }
        return film.lanes.reduce((sum, lane) => sum + lane.row.count, 0);""")
    shown_after = time.monotonic() - begin
    print(f"{packets:,} packets: page of {page.stat().st_size:,} bytes, "
          f"shown after {shown_after:.1f} s")
    print(f"  nothing drawn: frames {tab.script(DRAG, FRAMES, False)['apart']:.1f} ms apart")
    for part in PARTS:
        tab.script(SHOW_PART, part)
        dragged = tab.script(DRAG, FRAMES, True)
        median, worst = dragged["drawings"][FRAMES // 2], dragged["drawings"][-1]
        print(f"  1/{part} of the time shown: drawn in {median:.1f} ms, at most {worst:.1f} ms; "
              f"frames {dragged['apart']:.1f} ms apart")


def main(program, *lengths):
    with tempfile.TemporaryDirectory() as folder, Browser() as browser:
        for number, seconds in enumerate(map(float, lengths or LENGTHS_S)):
            file, page = (pathlib.Path(folder) / f"{number}.{ending}" for ending in ("ogm", "html"))
            LongFile.write(file, seconds)
            subprocess.run([program, "timeline", file, "-o", page], check=True,
                           stdout=subprocess.DEVNULL)
            tab = browser.open_tab()
            measure(tab, page)
            tab.close()


if __name__ == "__main__":
    main(*sys.argv[1:])
