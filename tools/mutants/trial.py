# SPDX-License-Identifier: Apache-2.0
"""Builds the tests with one changed source, and runs them."""

import dataclasses
import enum
import json
import math
import os
import pathlib
import re
import resource
import shlex
import shutil
import subprocess

PLUGIN = pathlib.PurePath("frameworks/av/media/libstagefright/ogm")
STATIC_LIBRARY = "lib/static/libogmextractor_static.a"
PLUGIN_LIBRARY = "lib/extractors/libogmextractor.so"
# A mutant is compiled once and run once.
COMPILER_OPTIONS = ["-w", "-Wno-error"]

# What takes longest comes last, when nothing else has noticed the change. These take nine tenths of
# the time of all.
SLOW_TESTS = {
    "ogm_unit_test": (
        "DtsCutterTest.*Pieces*:FifoTest.ItsEnd*:"
        "PacketStorageTest.PacketsIn*:PacketStorageTest.Large*:PacketStorageTest.Whatever*"
    ),
    "ogm_plugin_test": (
        "*FaultSweepTest.*:*RandomSeekTest.*:EndlessSearchTest.*:WaitingTrackTest.*"
    ),
}
# A change with which the tests never end is noticed too: they may take as many times longer.
MOST_TIMES_LONGER = 3
UNMEASURED_SECONDS = 300
# Of a machine that does other work too; for tests that wait for ever.
REAL_SECONDS_PER_CPU_SECOND = 20
MEMORY_BYTES = 2 << 30


class Outcome(enum.Enum):
    NOT_COMPILED = "does not compile"
    SAME_CODE = "makes no difference to the compiler"
    KILLED = "killed"
    SURVIVED = "survived"


@dataclasses.dataclass(frozen=True)
class Mutant:
    """A source of the plug-in, relative to its folder, and one change of it, or none."""

    source: str
    change: object


class Build:
    """The build of the unchanged sources: its objects and commands serve all trials."""

    def __init__(self, project, folder):
        self.folder = folder
        self.plugin = project / PLUGIN
        self.commands = {}
        for entry in json.loads((folder / "compile_commands.json").read_text()):
            arguments = shlex.split(entry["command"])
            output = arguments[arguments.index("-o") + 1]
            self.commands[output] = (arguments, entry["file"])
        self.links = {
            name: self._ninja("commands", name).splitlines()[-1]
            for name in ("ogm_unit_test", "ogm_plugin_test", "ogmextractor")
        }
        self.files = self._files()
        # What the tests of a program may take, once that was measured.
        self.cpu_seconds = {}

    def _ninja(self, tool, *arguments):
        command = ["ninja", "-C", str(self.folder), "-t", tool, *arguments]
        return subprocess.run(command, check=True, capture_output=True, text=True).stdout

    def _files(self):
        """For each object the files it was made of."""
        files = {output: {source} for output, (_, source) in self.commands.items()}
        output = None
        for line in self._ninja("deps").splitlines():
            if line.startswith("    "):
                files.setdefault(output, set()).add(os.path.join(self.folder, line.strip()))
            elif ": #deps" in line:
                output = line.split(":")[0]
        # The plug-in's folder names itself once as an include path.
        return {
            output: {os.path.normpath(path) for path in paths} for output, paths in files.items()
        }

    def objects(self, target):
        """Without the precompiled headers, which hold none of the plug-in's."""
        return [o for o in self.commands if f"/{target}.dir/" in o and o.endswith(".o")]

    def objects_of(self, source, target):
        """Those of a target that a source is part of."""
        path = str(self.plugin / source)
        return [output for output in self.objects(target) if path in self.files[output]]

    def holds(self, output, name):
        """Whether an object was made of a file of that name; several sources make one object."""
        return any(os.path.basename(path) == name for path in self.files[output])


class Workshop:
    """A folder in which one mutant after the other is built and tried."""

    def __init__(self, build, folder, is_quick):
        self.build = build
        self.is_quick = is_quick
        self.folder = folder
        self.library = folder / PLUGIN_LIBRARY
        self.overlay = folder / "sources"
        self.library.parent.mkdir(parents=True, exist_ok=True)
        self._link_plugin_test()

    def _link_plugin_test(self):
        """The plug-in's tests with the path of this folder's library in place of the build's."""
        objects = self.build.objects("ogm_test_support")
        output = next(o for o in objects if self.build.holds(o, "Plugin.cpp"))
        arguments, _ = self.build.commands[output]
        changed = [
            re.sub(r"^-DOGM_PLUGIN_PATH=.*", f'-DOGM_PLUGIN_PATH="{self.library}"', argument)
            for argument in arguments
        ]
        changed[changed.index("-o") + 1] = str(self.folder / "Plugin.o")
        self._run(changed, check=True)
        self._link("ogm_plugin_test", {}, [str(self.folder / "Plugin.o")], check=True)

    def _run(self, command, check=False):
        return subprocess.run(
            command, cwd=self.build.folder, check=check, stdin=subprocess.DEVNULL,
            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
        ).returncode == 0  # fmt: skip

    def _link(self, target, replaced, first=(), check=False):
        """Links a program or the library with other objects in place of the build's.

        The plug-in's objects come first: of an inline function that tests use too theirs is taken.
        """
        command = self.build.links[target]
        if STATIC_LIBRARY in command:
            command = command.replace(STATIC_LIBRARY, "")
            first = [replaced.get(o, o) for o in self.build.objects("ogmextractor_static")]
        for before, after in replaced.items():
            command = command.replace(f" {before} ", f" {after} ")
        output = self.library if target == "ogmextractor" else self.folder / target
        command = re.sub(r" -o \S+ ", f" -o {output} {' '.join(first)} ", command, count=1)
        return self._run(["sh", "-c", command], check)

    def _compile(self, mutant, target, options=(), only_with=None):
        """Compiles the objects that the mutant is part of, all or those that also hold another
        file; None if one does not compile."""
        replaced = {}
        for number, output in enumerate(self.build.objects_of(mutant.source, target)):
            if only_with and not self.build.holds(output, only_with):
                continue
            arguments, source = self.build.commands[output]
            if source == str(self.build.plugin / mutant.source):
                changed = str(self.overlay / mutant.source)
                arguments = [changed if argument == source else argument for argument in arguments]
            compiled = str(self.folder / f"{target}{number}.o")
            includes = [f"-I{self.overlay}", f"-I{self.overlay / 'include'}"]
            command = [arguments[0], *includes, *arguments[1:], *COMPILER_OPTIONS, *options]
            command[command.index("-o") + 1] = compiled
            if not self._run(command):
                return None
            replaced[output] = compiled
        return replaced

    def _is_same_code(self, mutant):
        """Whether the compiler sees no difference once it optimises."""
        codes = []
        for change in (mutant.change, None):
            self._write(Mutant(mutant.source, change))
            objects = self._compile(mutant, "ogmextractor_static", ["-O2"])
            # Some code that compiles does not with optimisation.
            if objects is None:
                return False
            codes.append([pathlib.Path(path).read_bytes() for path in objects.values()])
        return codes[0] == codes[1]

    def _write(self, mutant):
        shutil.rmtree(self.overlay, ignore_errors=True)
        path = self.overlay / mutant.source
        # With its neighbours, which it includes as lying beside it.
        shutil.copytree(
            (self.build.plugin / mutant.source).parent, path.parent,
            ignore=lambda folder, names: [n for n in names if pathlib.Path(folder, n).is_dir()],
        )  # fmt: skip
        if mutant.change is not None:
            path.write_text(mutant.change.apply(path.read_text()))

    def _passes(self, target, tests):
        """Whether the tests of a program pass, and end."""
        command = [str(self.folder / target), "--gtest_fail_fast", "--gtest_filter=" + tests]
        seconds = self.build.cpu_seconds.get((target, tests), UNMEASURED_SECONDS)
        try:
            return subprocess.run(
                command, cwd=self.folder, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                stderr=subprocess.DEVNULL, preexec_fn=lambda: limit_resources(seconds),
                timeout=REAL_SECONDS_PER_CPU_SECOND * seconds,
            ).returncode == 0  # fmt: skip
        except subprocess.TimeoutExpired:
            return False

    def _measure(self, target, tests):
        """Runs tests and learns how long they take; nothing else may run meanwhile."""
        before = cpu_seconds_of_children()
        passes = self._passes(target, tests)
        seconds = cpu_seconds_of_children() - before
        self.build.cpu_seconds[target, tests] = math.ceil(MOST_TIMES_LONGER * seconds) + 1
        return passes

    def passes_unchanged(self):
        """Whether all tests pass without a change. Learns how long they take."""
        return (
            self._link("ogm_unit_test", {})
            and self._link("ogmextractor", {})
            and all(
                self._measure(target, tests)
                for target, slow in SLOW_TESTS.items()
                for tests in (["-" + slow] if self.is_quick else ["-" + slow, slow])
            )
        )

    def try_out(self, mutant):
        self._write(mutant)
        replaced = self._compile(mutant, "ogmextractor_static")
        if not replaced:
            return Outcome.NOT_COMPILED
        passes = self._passes_header if mutant.source.endswith(".h") else self._passes_source
        if not passes(mutant, replaced):
            return Outcome.KILLED
        return Outcome.SAME_CODE if self._is_same_code(mutant) else Outcome.SURVIVED

    def _passes_source(self, _mutant, replaced):
        return (
            self._link("ogm_unit_test", replaced)
            and self._passes_quick("ogm_unit_test")
            and self._link("ogmextractor", replaced)
            and self._passes_quick("ogm_plugin_test")
            and self._passes_slow()
        )

    def _passes_header(self, mutant, replaced):
        """The tests of parts include it too, which takes long to compile: its own come first."""
        own_tests = f"{pathlib.PurePath(mutant.source).stem}Test.cpp"
        # It may be the size of something, which all have to agree on.
        is_for_all = mutant.change.kind == "number"
        return (
            self._link("ogmextractor", replaced)
            and self._passes_quick("ogm_plugin_test")
            and (is_for_all or self._passes_parts(mutant, replaced, own_tests))
            and self._passes_parts(mutant, replaced)
            and self._passes_slow()
        )

    def _passes_parts(self, mutant, replaced, only_with=None):
        tests = self._compile(mutant, "ogm_unit_test", only_with=only_with)
        # They may also check something at compile time.
        return (
            tests is not None
            and self._link("ogm_unit_test", {**replaced, **tests})
            and self._passes_quick("ogm_unit_test")
        )

    def _passes_quick(self, target):
        return self._passes(target, "-" + SLOW_TESTS[target])

    def _passes_slow(self):
        return self.is_quick or all(self._passes(*tests) for tests in SLOW_TESTS.items())


def limit_resources(cpu_seconds):
    resource.setrlimit(resource.RLIMIT_CPU, (cpu_seconds, cpu_seconds))
    resource.setrlimit(resource.RLIMIT_AS, (MEMORY_BYTES, MEMORY_BYTES))
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))


def cpu_seconds_of_children():
    used = resource.getrusage(resource.RUSAGE_CHILDREN)
    return used.ru_utime + used.ru_stime
