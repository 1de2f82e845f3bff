# SPDX-License-Identifier: Apache-2.0
"""Builds tests with one changed source, and runs them. What is changed is for others to say."""

import dataclasses
import enum
import itertools
import math
import os
import pathlib
import re
import resource
import shutil
import signal
import subprocess
import time

# A mutant is compiled once and run once.
COMPILER_OPTIONS = ["-w", "-Wno-error"]

# A change with which the tests never end is noticed too: they may take as many times longer.
MOST_TIMES_LONGER = 3
UNMEASURED_SECONDS = 300
# Of a machine that does other work too; for tests that wait for ever.
MOST_TIMES_LONGER_BY_THE_CLOCK = 10
MEMORY_BYTES = 2 << 30


class Outcome(enum.Enum):
    NOT_COMPILED = "does not compile"
    SAME_CODE = "makes no difference to the compiler"
    KILLED = "killed"
    SURVIVED = "survived"


@dataclasses.dataclass(frozen=True)
class Mutant:
    """A source, relative to the folder of all, and one change of it, or none."""

    source: str
    change: object


@dataclasses.dataclass(frozen=True)
class Step:
    """Tests of a program; `tests` is a filter as GoogleTest takes it."""

    program: str
    tests: str


@dataclasses.dataclass(frozen=True)
class Seconds:
    """Of the processor, for each process, and by the clock."""

    cpu: float
    clock: float


class Workshop:
    """A folder in which one mutant after the other is built and tried."""

    # Of the sources' folder; the targets that are made of them; commands that tests run under.
    ROOT = pathlib.PurePath()
    TARGETS = ()
    CONTAINED = ()

    def __init__(self, build, folder, is_quick):
        self.build = build
        self.is_quick = is_quick
        self.folder = folder
        self.overlay = folder / "sources"
        self.temporary = folder / "tmp"
        self.folder.mkdir(parents=True, exist_ok=True)

    def all_steps(self):
        """The tests that a change of any source may go through."""
        raise NotImplementedError

    def passes(self, mutant, replaced):
        """Whether all tests pass with these objects in place of those of the build."""
        raise NotImplementedError

    def link_unchanged(self):
        raise NotImplementedError

    def try_out(self, mutant):
        self._write(mutant)
        replaced = self.compile(mutant, *self.TARGETS)
        if not replaced:
            return Outcome.NOT_COMPILED
        if not self.passes(mutant, replaced):
            return Outcome.KILLED
        return Outcome.SAME_CODE if self._is_same_code(mutant) else Outcome.SURVIVED

    def failing_unchanged(self):
        """Returns the first step that fails without a change. Learns how long each takes."""
        self.link_unchanged()
        return next((step for step in self.all_steps() if not self._measure(step)), None)

    def compile_with_definition(self, output, name, value):
        """Returns an object of the build, compiled with another value of a macro."""
        command = [
            re.sub(rf"^-D{name}=.*", f'-D{name}="{value}"', argument)
            for argument in self.build.compile_command(output)
        ]
        compiled = str(self.folder / f"{name}.o")
        command[command.index("-o") + 1] = compiled
        self.run(command, check=True)
        return compiled

    def compile(self, mutant, *targets, only_with=None):
        """Compiles the objects that the mutant is part of, all or those that also hold another
        file; None if one does not compile."""
        replaced = {}
        for target in targets:
            for output in self.build.objects_of(mutant.source, target):
                if only_with and not self.build.holds(output, only_with):
                    continue
                replaced[output] = str(self.folder / f"{target}{len(replaced)}.o")
                if not self.run(self._compile_command(mutant, output, replaced[output])):
                    return None
        return replaced

    def _compile_command(self, mutant, output, compiled, optimise=False):
        source = self.build.source_of(output)
        changed = str(self._changed_source(mutant, source))
        command = self.build.compile_command(output)
        command = [changed if argument == str(source) else argument for argument in command]
        command[command.index("-o") + 1] = compiled
        command[1:1] = [f"-I{self.overlay}", f"-I{self.overlay / 'include'}"]
        command += COMPILER_OPTIONS
        if not optimise:
            return command
        return [*without_compiled_headers(command), "-O2"]

    def _changed_source(self, mutant, source):
        """The source, or the one that includes several, with the changed one in its place."""
        original = self.build.root / mutant.source
        if source == original:
            return self.overlay / mutant.source
        text = source.read_text()
        if f'"{original}"' not in text:
            return source
        combined = self.folder / source.name
        combined.write_text(text.replace(f'"{original}"', f'"{self.overlay / mutant.source}"'))
        return combined

    def _is_same_code(self, mutant):
        """Whether the compiler sees no difference once it optimises."""
        compiled = self.folder / "optimised.o"
        outputs = [self.build.objects_of(mutant.source, target) for target in self.TARGETS]
        for output in itertools.chain(*outputs):
            codes = []
            for change in (mutant.change, None):
                one = Mutant(mutant.source, change)
                self._write(one)
                # Some code that compiles does not with optimisation.
                if not self.run(self._compile_command(one, output, str(compiled), optimise=True)):
                    return False
                codes.append(compiled.read_bytes())
            if codes[0] != codes[1]:
                return False
        return True

    def _write(self, mutant):
        shutil.rmtree(self.overlay, ignore_errors=True)
        path = self.overlay / mutant.source
        # With its neighbours, which it includes as lying beside it.
        shutil.copytree(
            (self.build.root / mutant.source).parent, path.parent,
            ignore=lambda folder, names: [n for n in names if pathlib.Path(folder, n).is_dir()],
        )  # fmt: skip
        if mutant.change is not None:
            path.write_text(mutant.change.apply(path.read_text()))

    def link(self, target, output, replaced=(), first=(), without="", check=False):
        """Links a target of the build with other objects in place of its own.

        Of what stands in a library or is inline, those that come first are taken. An object that
        stands in a library is linked only where the library's would be: not all programs have what
        it needs itself.
        """
        command = self.build.links[target].replace(without, "")
        added = list(first)
        for before, after in dict(replaced).items():
            if f" {before} " in command:
                command = command.replace(f" {before} ", f" {after} ")
            else:
                added += ["-Wl,--start-lib", after, "-Wl,--end-lib"]
        command = re.sub(r" -o \S+ ", f" -o {output} {' '.join(added)} ", command, count=1)
        return self.run(["sh", "-c", command], check)

    def run(self, command, check=False):
        return subprocess.run(
            command, cwd=self.build.folder, check=check, stdin=subprocess.DEVNULL,
            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
        ).returncode == 0  # fmt: skip

    def passes_step(self, step):
        """Whether the tests of a program pass, and end."""
        shutil.rmtree(self.temporary, ignore_errors=True)
        self.temporary.mkdir()
        program = str(self.folder / step.program)
        command = [*self.CONTAINED, program, "--gtest_fail_fast", "--gtest_filter=" + step.tests]
        seconds = self.build.seconds.get(step, Seconds(UNMEASURED_SECONDS, UNMEASURED_SECONDS))
        process = subprocess.Popen(
            command, cwd=self.folder, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL, preexec_fn=lambda: begin_tests(seconds.cpu),
            env={**os.environ, "TMPDIR": str(self.temporary)}, start_new_session=True,
        )  # fmt: skip
        try:
            return process.wait(seconds.clock) == 0
        except subprocess.TimeoutExpired:
            return False
        finally:
            end_group(process)

    def _measure(self, step):
        """Runs tests and learns how long they take; nothing else may run meanwhile."""
        clock, cpu = time.monotonic(), cpu_seconds_of_children()
        passes = self.passes_step(step)
        self.build.seconds[step] = Seconds(
            math.ceil(MOST_TIMES_LONGER * (cpu_seconds_of_children() - cpu)) + 1,
            math.ceil(MOST_TIMES_LONGER_BY_THE_CLOCK * (time.monotonic() - clock)) + 10,
        )
        return passes


def without_compiled_headers(command):
    """Clang refuses headers that were compiled with other options; GCC parses them again."""
    if "-include-pch" not in command:
        return command
    # -Xclang -include-pch -Xclang COMPILED -Xclang -include -Xclang HEADER
    begin = command.index("-include-pch") - 1
    return command[:begin] + command[begin + 8 :]


def end_group(process):
    """Ends what a process started, as long as that has not left its group."""
    try:
        os.killpg(process.pid, signal.SIGKILL)
    except ProcessLookupError:
        pass
    process.wait()


def begin_tests(cpu_seconds):
    """In the new process. What runs in the background ignores signals that tests send."""
    for number in (signal.SIGHUP, signal.SIGINT, signal.SIGQUIT):
        signal.signal(number, signal.SIG_DFL)
    resource.setrlimit(resource.RLIMIT_CPU, (cpu_seconds, cpu_seconds))
    resource.setrlimit(resource.RLIMIT_AS, (MEMORY_BYTES, MEMORY_BYTES))
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))


def cpu_seconds_of_children():
    used = resource.getrusage(resource.RUSAGE_CHILDREN)
    return used.ru_utime + used.ru_stime
