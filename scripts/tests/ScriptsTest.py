# SPDX-License-Identifier: Apache-2.0
"""Checks which packages the scripts miss, what they count, and which sources they find unformatted.

Usage: ScriptsTest.py FOLDER_OF_THE_PROJECT [unittest arguments]
"""

import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

project = None


class Scripts(unittest.TestCase):
    """Each test has a project of its own with the real scripts, and no sources."""

    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.folder = pathlib.Path(temporary.name)
        shutil.copytree(project / "scripts", self.folder / "scripts")
        shutil.copy(project / ".clang-format", self.folder)
        self.run_here("git", "init", "--quiet")

    def run_here(self, *command, **environment):
        return subprocess.run(command, cwd=self.folder, env=os.environ | environment, text=True,
                              capture_output=True, check=False)

    def missing(self, *packages):
        """What `scripts/setup` misses if packages, each with architecture and state, are known."""
        (self.folder / "status").write_text("".join(
            f"Package: {name}\nStatus: {state}\nArchitecture: {architecture}\n"
            f"Multi-Arch: {'foreign' if architecture == 'all' else 'same'}\n"
            "Maintainer: nobody <nobody@example.org>\nVersion: 1\nDescription: none\n\n"
            for name, architecture, state in packages))
        run = self.run_here("scripts/setup", "--print", DPKG_ADMINDIR=str(self.folder))
        self.assertEqual(0, run.returncode, run.stderr)
        return run.stdout.split()

    def is_formatted(self):
        return self.run_here("scripts/format", "--check").returncode == 0

    def steps(self, text):
        """Returns the exit code of these steps, their output, and its last line."""
        run = self.run_here("bash", "-c", f". scripts/steps.sh; {text}; print_totals")
        return run.returncode, run.stdout, run.stdout.splitlines()[-1]

    def test_OnAnEmptyMachineEachPackageIsMissing(self):
        missing = self.missing()
        self.assertIn("cmake", missing)
        self.assertIn("zlib1g-dev:arm64", missing)
        self.assertEqual(sorted(set(missing)), sorted(missing))

    def test_OnlyInstalledPackagesAreNotMissing(self):
        machine = self.run_here("dpkg", "--print-architecture").stdout.strip()
        here = "install ok installed"
        missing = self.missing(("cmake", machine, here), ("fish", "all", here),
                               ("zsh", machine, "install ok half-installed"),
                               ("libfmt-dev", machine, here), ("libexpat1-dev", "armhf", here))
        self.assertEqual({"cmake", "fish", "libfmt-dev"}, set(self.missing()) - set(missing))
        self.assertIn("libfmt-dev:arm64", missing)

    def test_NothingIsMissingIfAllIsInstalled(self):
        machine = self.run_here("dpkg", "--print-architecture").stdout.strip()
        all_packages = [name.partition(":") for name in self.missing()]
        self.assertEqual([], self.missing(*((name, architecture or machine, "install ok installed")
                                            for name, _, architecture in all_packages)))

    def test_ASourceIsFoundUnformattedUntilItIsFormatted(self):
        source = self.folder / "a.cpp"
        source.write_text("int good = 1;\n")
        self.assertTrue(self.is_formatted())
        self.assertTrue(self.is_formatted())
        source.write_text("int   bad=1 ;\n")
        self.assertFalse(self.is_formatted())
        self.assertFalse(self.is_formatted())
        self.run_here("scripts/format")
        self.assertEqual("int bad = 1;\n", source.read_text())
        self.assertTrue(self.is_formatted())

    def test_WithOtherRulesEachSourceIsCheckedAgain(self):
        (self.folder / "a.cpp").write_text("int* good = nullptr;\n")
        self.assertTrue(self.is_formatted())
        (self.folder / ".clang-format").write_text("PointerAlignment: Right\n")
        self.assertFalse(self.is_formatted())

    def test_TheLastLineCountsStepsAndTheTestsInThem(self):
        code, _, last = self.steps("step Alone true; step Tests echo 5 passed, 0 failed, 2 skipped; "
                                   "skip Emulated 'no emulator here'")
        self.assertEqual((0, "6 passed, 0 failed, 3 skipped"), (code, last))

    def test_AStepThatFailsShowsItsOutputAndFailsTheRun(self):
        code, output, last = self.steps("step Good echo unseen; step Bad bash -c 'echo why; exit 3'")
        self.assertEqual((1, "1 passed, 1 failed"), (code, last))
        self.assertIn("why\n", output)
        self.assertIn("Bad: FAILED", output)
        self.assertNotIn("unseen", output)


if __name__ == "__main__":
    project = pathlib.Path(sys.argv.pop(1)).resolve()
    unittest.main()
