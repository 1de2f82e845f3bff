# SPDX-License-Identifier: Apache-2.0
"""Tries changes of the plug-in: its parts are linked with their tests, the library is loaded."""

import pathlib

from trial import Step, Workshop

STATIC_TARGET = "ogmextractor_static"
STATIC_LIBRARY = "lib/static/libogmextractor_static.a"
PARTS = "ogm_unit_test"
LOADED = "ogm_plugin_test"

# The slowest tests come last, if nothing else has noticed the change. They take nine tenths of the
# whole time.
SLOW_TESTS = {
    PARTS: (
        "DtsCutterTest.*Pieces*:FifoTest.ItsEnd*:"
        "PacketStorageTest.PacketsIn*:PacketStorageTest.Large*:PacketStorageTest.Whatever*"
    ),
    LOADED: "*FaultSweepTest.*:*RandomSeekTest.*:EndlessSearchTest.*:WaitingTrackTest.*",
}
QUICK = {program: Step(program, "-" + tests) for program, tests in SLOW_TESTS.items()}
SLOW = [Step(program, tests) for program, tests in SLOW_TESTS.items()]


class PluginWorkshop(Workshop):
    ROOT = pathlib.PurePath("frameworks/av/media/libstagefright/ogm")
    FOLDERS = ("", "include", "audio", "base", "codec", "packet", "page", "seek", "stream")
    TARGETS = (STATIC_TARGET,)
    LINKED = (PARTS, LOADED, "ogmextractor")
    # Without optimisation and debug information, because a change is compiled once and run once.
    # With gcc, which can use the precompiled headers when it compiles again with optimisation.
    CONFIGURED = (
        "--preset", "bench", "-DCMAKE_BUILD_TYPE=None", "-DCMAKE_CXX_FLAGS=-O0", "-DOGM_PROBE=OFF",
    )  # fmt: skip
    BUILT = (PARTS, LOADED)

    def __init__(self, build, folder, is_quick):
        super().__init__(build, folder, is_quick)
        self.library = folder / "libogmextractor.so"
        support = build.objects("ogm_test_support")
        output = next(o for o in support if build.holds(o, "Plugin.cpp"))
        loader = self.compile_with_definition(output, "OGM_PLUGIN_PATH", self.library)
        self.link(LOADED, folder / LOADED, first=[loader], check=True)

    def all_steps(self):
        return [*QUICK.values(), *([] if self.is_quick else SLOW)]

    def link_unchanged(self):
        self._link_parts({})
        self._link_library({})

    def passes(self, mutant, replaced):
        passes = self._passes_header if mutant.source.endswith(".h") else self._passes_source
        return passes(mutant, replaced) and (
            self.is_quick or all(self.passes_step(step) for step in SLOW)
        )

    def _link_parts(self, replaced):
        return self._link(PARTS, self.folder / PARTS, replaced)

    def _link_library(self, replaced):
        return self._link("ogmextractor", self.library, replaced)

    def _link(self, target, output, replaced):
        """The plug-in's objects come first, so that the linker takes their copies of inline
        functions, not those of the tests."""
        objects = [replaced.get(o, o) for o in self.build.objects(STATIC_TARGET)]
        tests = {o: c for o, c in replaced.items() if f"/{STATIC_TARGET}.dir/" not in o}
        return self.link(target, output, tests, first=objects, without=STATIC_LIBRARY)

    def _passes_source(self, _mutant, replaced):
        return (
            self._link_parts(replaced)
            and self.passes_step(QUICK[PARTS])
            and self._link_library(replaced)
            and self.passes_step(QUICK[LOADED])
        )

    def _passes_header(self, mutant, replaced):
        """Unit tests include the header too and compile slowly, so its own tests come first."""
        own_tests = f"{pathlib.PurePath(mutant.source).stem}Test.cpp"
        # It may be a size that all objects must agree on.
        is_for_all = mutant.change.kind == "number"
        return (
            self._link_library(replaced)
            and self.passes_step(QUICK[LOADED])
            and (is_for_all or self._passes_parts(mutant, replaced, own_tests))
            and self._passes_parts(mutant, replaced)
        )

    def _passes_parts(self, mutant, replaced, only_with=None):
        tests = self.compile(mutant, PARTS, only_with=only_with)
        # A failed compilation is noticed too: tests may check something at compile time.
        return (
            tests is not None
            and self._link_parts({**replaced, **tests})
            and self.passes_step(QUICK[PARTS])
        )
