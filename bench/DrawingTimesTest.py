#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Usage: DrawingTimesTest.py PROGRAM [TEST...]"""
import pathlib
import subprocess
import sys
import unittest

PROGRAM = sys.argv.pop(1)
SCRIPT = pathlib.Path(__file__).with_name("drawing_times.py")


class DrawingTimes(unittest.TestCase):
    def test_AreMeasuredForEachPartOfTheFile(self):
        result = subprocess.run([sys.executable, SCRIPT, PROGRAM, "10"], check=True,
                                capture_output=True, text=True)
        first, idle, *dragged = result.stdout.splitlines()
        self.assertRegex(first, r"^\d+ packets: page of [\d,]+ bytes, shown after \d+\.\d s$")
        self.assertRegex(idle, r"^  nothing drawn: frames \d+\.\d ms apart$")
        parts = (1, 10, 100, 1000, 10000)
        self.assertEqual(len(parts), len(dragged))
        for part, line in zip(parts, dragged):
            self.assertRegex(line, rf"^  1/{part} of the time shown: drawn in \d+\.\d ms, "
                             r"at most \d+\.\d ms; frames \d+\.\d ms apart$")


if __name__ == "__main__":
    unittest.main()
