#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Usage: InstructionsTest.py PATH_OF_INSTRUCTIONS_PY [TEST...]"""
import os
import subprocess
import sys
import tempfile
import unittest

SCRIPT = sys.argv.pop(1)


def record(buffers):
    """A read of that many buffers: 7 instructions of the plug-in for each, and its calls."""
    return f"""positions: line
events: Ir
ob=/lib/extractors/libogmextractor.so
fn=read
0 {7 * buffers}
cfn=helper
calls=1 0
0 {1000 * buffers}
cob=/usr/lib/libc.so.6
cfn=__memcpy_avx_unaligned
calls=1 0
0 {20 * buffers}
cob=/usr/lib/libc.so.6
cfn=pthread_mutex_lock
calls=1 0
0 {5 * buffers}
cob=/lib/liblog.so
cfn=__android_log_print
calls=1 0
0 {11 * buffers}

ob=/usr/lib/libc.so.6
fn=all
0 {36 * buffers + 500}
cob=/lib/extractors/libogmextractor.so
cfn=read
calls=1 0
0 {7 * buffers}

ob=/bin/ogm_bench
fn=main
0 {3 * buffers}
"""


class Instructions(unittest.TestCase):
    def lines(self):
        with tempfile.TemporaryDirectory() as folder:
            arguments = []
            for buffers in (10, 30):
                path = os.path.join(folder, str(buffers))
                with open(path, "w", encoding="utf-8") as file:
                    file.write(record(buffers))
                arguments += [path, str(buffers)]
            result = subprocess.run([sys.executable, SCRIPT, *arguments], check=True,
                                    capture_output=True, text=True)
        return [line.strip().split(maxsplit=1) for line in result.stdout.splitlines()]

    def test_AreGroupedByPurposeTheMostFirst(self):
        self.assertEqual(self.lines(), [
            ["20", "copying of bytes"],
            ["11", "log lines that are filtered out"],
            ["7", "the plug-in itself"],
            ["5", "the rest of the C and C++ libraries, called by the plug-in"],
            ["3", "the player, which releases the buffers"],
            ["46", "instructions a buffer"],
        ])


if __name__ == "__main__":
    unittest.main()
