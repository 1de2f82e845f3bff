#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Counts the tests of a CTest report, each GoogleTest of a program by itself; names what failed
and what was skipped.
"""

import re
import sys
import xml.etree.ElementTree as ElementTree

ENDED = re.compile(r"^\[=+\] \d+ tests? from \d+ test suites? ran\.", re.MULTILINE)
NAMED = r"^\[ *{} *\] (\d+) tests?[.,]"
SKIPPED_TEST = re.compile(r"^\[ *SKIPPED *\] (\S+)$", re.MULTILINE)


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
    if case.get("status") in ("notrun", "disabled"):
        return 0, 0, 1
    return int(not bad), int(bad), 0


def skipped_tests(case):
    """What the list at the end of a program's output names, or the run itself."""
    if case.get("status") in ("notrun", "disabled"):
        return [case.get("name")]
    return SKIPPED_TEST.findall(case.findtext("system-out") or "")


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
