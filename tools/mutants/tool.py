# SPDX-License-Identifier: Apache-2.0
"""Tries changes of the tool: its parts are linked with their tests, the program is run."""

import pathlib

from trial import Step, Workshop

TOOL = "ogmprobe"
PARTS = "ogmprobe_parts_test"
CHECK = "ogmprobe_check_test"
TIMELINE = "ogmprobe_timeline_test"
# These are linked with the tool's own libraries; the other tests run the program.
PARTS_TARGETS = ("ogmprobe_options", "ogmprobe_parts", "ogmprobe_reports")
TIMELINE_TARGETS = (*PARTS_TARGETS, "ogmprobe_timeline")
CHECK_TARGETS = (*TIMELINE_TARGETS, "ogmprobe_check")
LINKED_TESTS = {PARTS: PARTS_TARGETS, CHECK: CHECK_TARGETS, TIMELINE: TIMELINE_TARGETS}
SAMPLES = "ogmprobe_samples_test"
PROGRAM = "ogmprobe_program_test"
CHECK_PROGRAM = "ogmprobe_check_program_test"
TIMELINE_PROGRAM = "ogmprobe_timeline_program_test"
TIMELINE_SAMPLES = "ogmprobe_timeline_samples_test"
RUNNING_TESTS = (SAMPLES, PROGRAM, CHECK_PROGRAM, TIMELINE_PROGRAM, TIMELINE_SAMPLES)

ANSWERS = "OnSamples/Answers.*"
# These wait for time limits or search long files. They take two thirds of the whole time.
SLOW_TESTS = {
    PARTS: "RepeatedSearchTest.EndsEarly*",
    SAMPLES: "HoleInTheMiddle.*:HoleAtTheEnd.*:ExplainFormats.AnAc3FrameOfNoSize*:Samples.Give*",
    PROGRAM: "ProgressTest.*:ReadingWithoutEnd.*:Standstill.*:Compare.CutsShort*",
    CHECK_PROGRAM: (
        "TriageTest.Progress*:TriageTest.ARunThatIsKilled*:TriageTest.FilesThatStall*:"
        "TriageTest.NoMischief*:ReportTest.ARunThatIsEnded*:CheckTest.WhatEndsOrBlocks*"
    ),
}
FIRST = Step(SAMPLES, ANSWERS)
QUICK = {
    program: Step(program, "-" + SLOW_TESTS.get(program, ""))
    for program in (*LINKED_TESTS, *RUNNING_TESTS)
} | {SAMPLES: Step(SAMPLES, f"-{ANSWERS}:{SLOW_TESTS[SAMPLES]}")}
SLOW = [Step(program, tests) for program, tests in SLOW_TESTS.items()]

# The tests of the folder of a source come first.
LINKED_TESTS_OF = {"check": CHECK, "timeline": TIMELINE}
RUNNING_TESTS_OF = {"check": (CHECK_PROGRAM,), "timeline": (TIMELINE_PROGRAM, TIMELINE_SAMPLES)}


def steps_for(source):
    """The quick tests, first those that are most likely to notice a change of this source."""
    room = pathlib.PurePath(source).parts[0]
    own = LINKED_TESTS_OF.get(room, PARTS)
    running = RUNNING_TESTS_OF.get(room, ())
    others = [program for program in (*RUNNING_TESTS, *LINKED_TESTS) if program != own]
    return [
        QUICK[own], *(QUICK[program] for program in running), FIRST,
        *(QUICK[program] for program in others if program not in running),
    ]  # fmt: skip


class ToolWorkshop(Workshop):
    ROOT = pathlib.PurePath("tools/ogmprobe")
    FOLDERS = (
        "", "check", "codecs", "commands", "compare", "console", "explain", "files", "info", "jobs",
        "ledger", "options", "plugin", "process", "records", "sync", "text", "timeline",
    )  # fmt: skip
    TARGETS = (*CHECK_TARGETS, TOOL)
    LINKED = (TOOL, *LINKED_TESTS, *RUNNING_TESTS)
    # The tool is only optimised in releases. Plug-in and platform do not change, so they are
    # optimised to run faster. Each source is a separate object: little is compiled after a change.
    CONFIGURED = (
        "--preset", "host", "-DCMAKE_BUILD_TYPE=None", "-DCMAKE_CXX_FLAGS=-O2", "-DOGM_EXTRAS=OFF",
        "-DOGM_QUICK_BATCH=1",
    )  # fmt: skip
    BUILT = LINKED
    # The tool kills processes that it started. With a changed process number it could kill others.
    CONTAINED = (
        "unshare", "--user", "--map-root-user", "--pid", "--fork", "--mount-proc", "--kill-child",
    )  # fmt: skip

    def __init__(self, build, folder, is_quick):
        super().__init__(build, folder, is_quick)
        # The program looks for the plug-in in a folder next to its own.
        (folder / "bin").mkdir(exist_ok=True)
        library = folder / "lib"
        if not library.is_symlink():
            library.symlink_to(build.folder / "lib")
        (output,) = build.objects("ogmprobe_test_support")
        self.program = folder / "bin" / TOOL
        runner = self.compile_with_definition(output, "OGMPROBE_PROGRAM", self.program)
        for program in RUNNING_TESTS:
            self.link(program, folder / program, first=[runner], check=True)

    def all_steps(self):
        return [FIRST, *QUICK.values(), *([] if self.is_quick else SLOW)]

    def link_unchanged(self):
        for program in LINKED_TESTS:
            self.link(program, self.folder / program)
        self.link(TOOL, self.program)

    def passes(self, mutant, replaced):
        steps = steps_for(mutant.source) + ([] if self.is_quick else SLOW)
        linked = set()
        for step in steps:
            target = step.program if step.program in LINKED_TESTS else TOOL
            if target not in linked and not self._link_changed(target, mutant, replaced):
                return False
            linked.add(target)
            if not self.passes_step(step):
                return False
        return True

    def _link_changed(self, target, mutant, replaced):
        if target == TOOL:
            return self.link(TOOL, self.program, replaced)
        # Unit tests include the header too.
        tests = self.compile(mutant, target)
        if tests is None:
            return False
        parts = {
            output: compiled
            for output, compiled in replaced.items()
            if any(f"/{part}.dir/" in output for part in LINKED_TESTS[target])
        }
        return self.link(target, self.folder / target, {**parts, **tests})
