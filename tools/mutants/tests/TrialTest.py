# SPDX-License-Identifier: Apache-2.0
"""Checks how a changed source is compiled and linked, and in which order tests are run.

Usage: TrialTest.py FOLDER_OF_THE_CHANGES [unittest arguments]
"""

import pathlib
import sys
import tempfile
import time
import types
import unittest

sys.path.insert(0, sys.argv.pop(1))
import changes
import tool
import trial

CHANGE = changes.Change("number", 4, 5, "2")


class OneSource(trial.Workshop):
    """Compiles nothing: writes down the commands, and makes the object that each names."""

    TARGETS = ("parts",)

    def __init__(self, build, folder, is_quick=True):
        super().__init__(build, folder, is_quick)
        self.commands = []

    def run(self, command, check=False):
        self.commands.append(command)
        return True


class Trial(unittest.TestCase):
    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.folder = pathlib.Path(temporary.name)
        self.root = self.folder / "root"
        (self.root / "room").mkdir(parents=True)
        (self.root / "room/A.cpp").write_text("a = 1;")
        (self.root / "room/B.h").write_text("b")
        self.source = self.root / "room/A.cpp"
        self.build = types.SimpleNamespace(
            root=self.root, folder=self.folder, seconds={}, links={},
            objects_of=lambda source, target: [f"{target}/A.o"],
            compile_command=lambda output: ["c++", "-o", output, "-c", str(self.source)],
            source_of=lambda output: self.source,
        )  # fmt: skip
        self.workshop = OneSource(self.build, self.folder / "job")

    def compile(self):
        mutant = trial.Mutant("room/A.cpp", CHANGE)
        self.workshop._write(mutant)
        self.workshop.compile(mutant, "parts")
        return self.workshop.commands[-1]

    def link(self, command, replaced, **options):
        self.build.links["program"] = command
        self.workshop.link("program", "new", replaced, **options)
        return self.workshop.commands[-1][-1]

    def test_TheChangedCopyIsCompiledWithItsNeighboursInSight(self):
        command = self.compile()
        copy = self.folder / "job/sources/room/A.cpp"
        self.assertEqual(str(copy), command[command.index("-c") + 1])
        self.assertEqual("a = 2;", copy.read_text())
        self.assertTrue((copy.parent / "B.h").exists())
        self.assertEqual(f"-I{self.folder / 'job/sources'}", command[1])
        self.assertEqual("a = 1;", (self.root / "room/A.cpp").read_text())

    def test_InASourceThatIncludesSeveralTheChangedOneTakesItsPlace(self):
        self.source = self.folder / "unity.cxx"
        names = [f'"{self.root}/room/{name}.cpp"' for name in "AC"]
        self.source.write_text("".join(f"#include {name}\n" for name in names))
        command = self.compile()
        combined = pathlib.Path(command[command.index("-c") + 1]).read_text()
        self.assertIn(f'"{self.folder}/job/sources/room/A.cpp"', combined)
        self.assertIn(f'"{self.root}/room/C.cpp"', combined)

    def test_ASourceThatOnlyIncludesAChangedHeaderStaysWhereItIs(self):
        self.source = self.folder / "other.cpp"
        self.source.write_text('#include "room/A.cpp"\n')
        command = self.compile()
        self.assertEqual(str(self.source), command[command.index("-c") + 1])

    def test_AnObjectOfTheProgramIsReplaced(self):
        command = self.link("ld a.o b.o -o old lib.a", {"b.o": "x.o"})
        self.assertEqual("ld a.o x.o -o new  lib.a", command)

    def test_AnObjectThatStandsInALibraryComesBeforeThat(self):
        command = self.link("ld a.o -o old lib.a", {"b.o": "x.o"}, first=["y.o"])
        library = "-Wl,--start-lib x.o -Wl,--end-lib"
        self.assertEqual(f"ld a.o -o new y.o {library} lib.a", command)

    def test_HeadersThatClangCompiledAreLeftOutAndThoseOfGccStay(self):
        headers = "-Xclang -include-pch -Xclang a.pch -Xclang -include -Xclang a.hxx"
        self.assertEqual(
            ["c++", "-c", "b.cpp"],
            trial.without_compiled_headers(f"c++ {headers} -c b.cpp".split()),
        )
        with_gcc = "c++ -include a.hxx -c b.cpp".split()
        self.assertEqual(with_gcc, trial.without_compiled_headers(with_gcc))

    def test_TestsThatNeverEndAreEndedWithWhatTheyStarted(self):
        program = self.folder / "job/program"
        program.write_text("#!/bin/sh\n(sleep 0.5; touch still-there) & wait\n")
        program.chmod(0o755)
        step = trial.Step("program", "*")
        self.build.seconds[step] = trial.Seconds(cpu=1, clock=0.1)
        self.assertFalse(self.workshop.passes_step(step))
        time.sleep(0.7)
        self.assertFalse((self.folder / "job/still-there").exists())

    def test_TestsPassOnlyWithoutAFailure(self):
        program = self.folder / "job/program"
        for status in (0, 1):
            program.write_text(f"#!/bin/sh\nexit {status}\n")
            program.chmod(0o755)
            self.assertEqual(status == 0, self.workshop.passes_step(trial.Step("program", "*")))

    def test_TheTestsOfTheRoomComeFirstThenWholeAnswers(self):
        for source, programs in {
            "codecs/Esds.cpp": [tool.PARTS, tool.SAMPLES],
            "main.cpp": [tool.PARTS, tool.SAMPLES],
            "check/Pool.cpp": [tool.CHECK, tool.CHECK_PROGRAM, tool.SAMPLES],
            "timeline/Page.cpp": [
                tool.TIMELINE, tool.TIMELINE_PROGRAM, tool.TIMELINE_SAMPLES, tool.SAMPLES,
            ],
        }.items():  # fmt: skip
            with self.subTest(source):
                steps = tool.steps_for(source)
                self.assertEqual(programs, [step.program for step in steps[: len(programs)]])
                self.assertEqual(tool.FIRST, steps[len(programs) - 1])

    def test_EachSourceIsTriedWithAllTests(self):
        every = {tool.FIRST, *tool.QUICK.values()}
        for source in ("codecs/Esds.cpp", "check/Pool.cpp", "timeline/Page.cpp"):
            with self.subTest(source):
                self.assertEqual(len(every), len(tool.steps_for(source)))
                self.assertEqual(every, set(tool.steps_for(source)))


if __name__ == "__main__":
    unittest.main()
