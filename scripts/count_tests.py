#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Counts the tests of a CTest report, each of a GoogleTest program or a Python script by itself;
names what failed and what was skipped.
"""

import re
import sys
import xml.etree.ElementTree as ElementTree

ENDED = re.compile(r"^\[=+\] \d+ tests? from \d+ test suites? ran\.", re.MULTILINE)
NAMED = r"^\[ *{} *\] (\d+) tests?[.,]"
SKIPPED_TEST = re.compile(r"^\[ *SKIPPED *\] (\S+)$", re.MULTILINE)
PYTHON_ENDED = re.compile(r"^Ran (\d+) tests? in [\d.]+s$", re.MULTILINE)
PYTHON_FAILED = re.compile(r"^(?:FAIL|ERROR): (\S+ \(\S+\))", re.MULTILINE)
PYTHON_SKIPPED = re.compile(r"^\S+ \(__main__\.(\S+)\) \.\.\. skipped ", re.MULTILINE)


def count_of(output, word):
    found = re.search(NAMED.format(word), output, re.MULTILINE)
    return int(found.group(1)) if found else 0


def counts_of(case):
    """Passed, failed and skipped tests of one run of a program."""
    output = case.findtext("system-out") or ""
    bad = case.get("status") == "fail"
    if ENDED.search(output):
        failed = count_of(output, "FAILED")
        return count_of(output, "PASSED"), max(failed, int(bad)), count_of(output, "SKIPPED")
    if ran := PYTHON_ENDED.search(output):
        # A test may fail in several of its parts, and what all tests need before any has run.
        failed = len(set(PYTHON_FAILED.findall(output)))
        skipped = len(PYTHON_SKIPPED.findall(output))
        return max(0, int(ran.group(1)) - failed - skipped), max(failed, int(bad)), skipped
    if case.get("status") in ("notrun", "disabled"):
        return 0, 0, 1
    return int(not bad), int(bad), 0


def skipped_tests(case):
    """What the list at the end of a program's output names, or the run itself."""
    if case.get("status") in ("notrun", "disabled"):
        return [case.get("name")]
    output = case.findtext("system-out") or ""
    return SKIPPED_TEST.findall(output) + PYTHON_SKIPPED.findall(output)


def main():
    totals = [0, 0, 0]
    for case in ElementTree.parse(sys.argv[1]).iter("testcase"):
        counts = counts_of(case)
        totals = [total + count for total, count in zip(totals, counts)]
        if counts[1] > 0:
            print(f"FAILED: {case.get('name')}")
        for test in skipped_tests(case):
            print(f"skipped: {test}")
    print("{} passed, {} failed, {} skipped".format(*totals))
    return int(totals[1] > 0)


sys.exit(main())
