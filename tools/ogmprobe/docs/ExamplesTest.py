# SPDX-License-Identifier: Apache-2.0
"""Runs the examples of the documentation and compares what they print.

Usage: ExamplesTest.py PROGRAM [unittest arguments]

An example is a fenced block marked "console". A line that begins with "$ " is a command for bash; what
follows is its output, where a line of three dots matches any lines. The commands of a document run
one after the other in one folder with copies of the sample files. Those of a block marked "console /data"
have a folder of that name, which is another one than the machine's. With OGM_UPDATE_EXAMPLES=1 in the
environment the outputs in the documents are replaced by the real ones, except those with dots.
"""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

REST = "..."
BLOCK = re.compile(r"^```console( /data)?\n(.*?)(?=^```$)", re.MULTILINE | re.DOTALL)

# Shows the system with another /data to a command that it runs in the current folder. Takes a folder
# that becomes the root, the one that becomes /data, and the command.
WITH_DATA = r"""
set -e
mount -t tmpfs none "$1"
mkdir "$1/data"
mount --bind "$2" "$1/data"
for entry in /*; do
    if [[ -L $entry ]]; then
        cp -P "$entry" "$1$entry"
    elif [[ -d $entry && $entry != /data ]]; then
        mkdir -p "$1$entry"
        mount --rbind "$entry" "$1$entry"
    fi
done
exec chroot "$1" bash -c 'cd "$0" && eval "$1"' "$PWD" "$3"
"""

program = None
root = pathlib.Path(__file__).resolve().parents[3]
samples = root / "frameworks/av/media/libstagefright/ogm/tests/data/samples"


def examples_of(block):
    """The commands of a block with their outputs, each a list of lines."""
    examples = []
    for line in block.splitlines():
        if line.startswith("$ "):
            examples.append((line[2:], []))
        else:
            examples[-1][1].append(line)
    return examples


def pattern_of(lines):
    """Matches the lines, joined and ended by line feeds."""
    return "".join(r"(?:.*\n)*" if line == REST else re.escape(line) + r"\n" for line in lines)


def can_have_data():
    return subprocess.run(["unshare", "--map-root-user", "--mount", "mount", "-t", "tmpfs", "none", "/mnt"],
                          stderr=subprocess.DEVNULL, check=False).returncode == 0


def run(command, folder, data=None):
    if data:
        with tempfile.TemporaryDirectory() as new_root:
            return run_arguments(["unshare", "--map-root-user", "--mount", "bash", "-c", WITH_DATA, "bash",
                                  new_root, data, command], folder)
    return run_arguments(["bash", "-c", command], folder)


def run_arguments(arguments, folder):
    environment = dict(os.environ, NO_COLOR="1", LC_ALL="C.UTF-8", COLUMNS="100",
                       PATH=f"{program.parent}:{os.environ['PATH']}")
    done = subprocess.run(arguments, cwd=folder, env=environment, text=True,
                          stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, check=False)
    return done.stdout


class Examples(unittest.TestCase):
    def check(self, document):
        path = root / document
        text = path.read_text()
        blocks = BLOCK.findall(text)
        self.assertTrue(blocks, f"{document} has no examples")
        with tempfile.TemporaryDirectory() as folder, tempfile.TemporaryDirectory() as data:
            for sample in samples.glob("*.ogm"):
                shutil.copy(sample, folder)

            def check_block(match):
                mark, block = match.groups(default="")
                if mark and not can_have_data():
                    return match[0]
                return f"```console{mark}\n" + self.check_block(block, folder, mark and data)
            renewed = BLOCK.sub(check_block, text)
        if renewed != text:
            path.write_text(renewed)

    def check_block(self, block, folder, data):
        """The block with outputs that are to be replaced."""
        renewed = []
        for command, expected in examples_of(block):
            output = run(command, folder, data)
            if os.environ.get("OGM_UPDATE_EXAMPLES") and REST not in expected:
                expected = output.splitlines()
            with self.subTest(command):
                if not re.fullmatch(pattern_of(expected), output):
                    shown = "\n".join(expected)
                    self.fail(f"prints\n{output}\nwhere the document shows\n{shown}")
            renewed += [f"$ {command}", *expected]
        return "".join(f"{line}\n" for line in renewed)

    def test_OfTheReadmePrintWhatItShows(self):
        self.check("README.md")

    def test_OfTheManualPrintWhatItShows(self):
        self.check("docs/ogmprobe.md")

    def test_OfDumpsCanBeRunHere(self):
        if not can_have_data():
            self.skipTest("no user namespace in which a command could have a /data of its own")


if __name__ == "__main__":
    program = pathlib.Path(sys.argv.pop(1)).resolve()
    unittest.main()
