#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Shows where the instructions of a buffer are spent. Reads callgrind's records, written without
compression, of reading a short and a long file; the difference excludes start and opening.

Usage: instructions.py SHORT_RECORD SHORT_BUFFERS LONG_RECORD LONG_BUFFERS
"""
import collections
import os
import sys

PLUGIN = "libogmextractor.so"
LIBRARIES = "the rest of the C and C++ libraries, called by the plug-in"
# The purposes of calls from the plug-in into other objects.
CALLED = {
    "libc.so": LIBRARIES,
    "libstdc++.so": LIBRARIES,
    "liblog.so": "log lines that are filtered out",
    "libmediandk.so": "entries of the buffer's format",
    "ogm_bench": "buffers, their group and the data source",
}
COPYING = "copying of bytes"


def purpose_of(library, function):
    if function.startswith(("__memcpy", "__memmove")):
        return COPYING
    for name, purpose in CALLED.items():
        if library.startswith(name):
            return purpose
    return library


def read_record(path):
    """All instructions, and those that the plug-in and its callees take, by purpose."""
    total = 0
    spent = collections.Counter()
    current = called = function = ""
    in_call = False
    with open(path, encoding="utf-8", errors="replace") as record:
        for line in record:
            key, _, value = line.rstrip("\n").partition("=")
            if key == "ob":
                current = os.path.basename(value)
            elif key == "cob":
                called = os.path.basename(value)
            elif key == "cfn":
                function = value
            elif key == "calls":
                in_call = True
            elif line[0].isdigit():
                cost = int(line.split()[-1])
                if not in_call:
                    total += cost
                    spent["the plug-in itself"] += cost if current == PLUGIN else 0
                elif current == PLUGIN and called not in ("", PLUGIN):
                    spent[purpose_of(called, function)] += cost
                if in_call:
                    in_call, called = False, ""
    return total, spent


def main(short_record, short_buffers, long_record, long_buffers):
    buffers = int(long_buffers) - int(short_buffers)
    (short_total, short_spent), (total, spent) = read_record(short_record), read_record(long_record)
    total -= short_total
    spent.subtract(short_spent)
    spent["the player, which releases the buffers"] = total - sum(spent.values())
    for purpose, count in spent.most_common():
        if round(count / buffers) > 0:
            print(f"{count / buffers:7.0f}  {purpose}")
    print(f"{total / buffers:7.0f}  instructions a buffer")


if __name__ == "__main__":
    main(*sys.argv[1:])
