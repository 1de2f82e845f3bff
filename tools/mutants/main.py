# SPDX-License-Identifier: Apache-2.0
"""Makes one-place changes in the plug-in's sources and shows those that its tests do not notice."""

import argparse
import collections
import concurrent.futures
import itertools
import pathlib
import queue
import random
import sys

import changes
import trial

FOLDERS = ["", "include", "audio", "base", "codec", "packet", "page", "seek", "stream"]


def parse_arguments():
    parser = argparse.ArgumentParser(prog="scripts/mutants", description=__doc__)
    parser.add_argument("--sample", type=int, metavar="N", help="try N changes, taken at random")
    parser.add_argument("--seed", type=int, default=1, metavar="S", help="of the sample (1)")
    parser.add_argument("--jobs", type=int, default=2, metavar="J", help="tried at a time (2)")
    parser.add_argument("--quick", action="store_true", help="leave out the slowest tests")
    parser.add_argument("--list", action="store_true", help="only show the changes")
    parser.add_argument("--project", type=pathlib.Path, required=True, help=argparse.SUPPRESS)
    parser.add_argument("--build", type=pathlib.Path, required=True, help=argparse.SUPPRESS)
    parser.add_argument(
        "sources", nargs="*", metavar="SOURCE[:LINE]",
        help="relative to the plug-in's folder, for example seek/SeekPlan.cpp:28; all unless given",
    )  # fmt: skip
    return parser.parse_args()


def sources_of(plugin):
    return sorted(
        str(path.relative_to(plugin))
        for folder in FOLDERS
        for path in (plugin / folder).iterdir()
        if path.suffix in (".cpp", ".h")
    )


def mutants_of(plugin, wanted):
    """All mutants of the sources, or of the lines, that are named."""
    found = []
    for name in wanted or sources_of(plugin):
        source, _, line = name.partition(":")
        text = (plugin / source).read_text()
        found += [
            trial.Mutant(source, change)
            for change in changes.changes_of(text)
            if line in ("", str(change.line(text)))
        ]
    return found


def show(plugin, mutant):
    text = (plugin / mutant.source).read_text()
    where = f"{mutant.source}:{mutant.change.line(text)}"
    print(f"{where}: {mutant.change.kind}\n{mutant.change.diff(text)}", flush=True)


class Run:
    """Tries mutants until as many compiled as were asked for."""

    def __init__(self, options, mutants):
        self.plugin = options.project / trial.PLUGIN
        self.mutants = mutants
        self.wanted = options.sample or len(mutants)
        self.workshops = queue.Queue()
        build = trial.Build(options.project, options.build)
        for number in range(options.jobs):
            folder = options.build.parent / f"job{number}"
            self.workshops.put(trial.Workshop(build, folder, options.quick))
        self.jobs = options.jobs

    def passes_unchanged(self):
        workshop = self.workshops.get()
        passes = workshop.passes_unchanged()
        self.workshops.put(workshop)
        return passes

    def _try_out(self, mutant):
        workshop = self.workshops.get()
        try:
            return workshop.try_out(mutant)
        finally:
            self.workshops.put(workshop)

    def outcomes(self):
        """Which ones are tried does not depend on which are done first."""
        counts = collections.Counter()
        rest = iter(self.mutants)
        with concurrent.futures.ThreadPoolExecutor(self.jobs) as pool:
            running = {}

            def begin(count):
                for mutant in itertools.islice(rest, count):
                    running[pool.submit(self._try_out, mutant)] = mutant

            begin(self.wanted)
            while running:
                done = next(concurrent.futures.as_completed(running))
                mutant, outcome = running.pop(done), done.result()
                counts[outcome] += 1
                if outcome is trial.Outcome.SURVIVED:
                    show(self.plugin, mutant)
                elif outcome is not trial.Outcome.KILLED:
                    begin(1)
                self._show_progress(counts)
        return counts

    def _show_progress(self, counts):
        tried = counts[trial.Outcome.KILLED] + counts[trial.Outcome.SURVIVED]
        print(f"{tried} of {self.wanted}", end="\r", file=sys.stderr, flush=True)


def main():
    options = parse_arguments()
    plugin = options.project / trial.PLUGIN
    mutants = mutants_of(plugin, options.sources)
    if options.sample:
        random.Random(options.seed).shuffle(mutants)
    if options.list:
        for mutant in mutants[: options.sample]:
            show(plugin, mutant)
        return 0
    run = Run(options, mutants)
    if not run.passes_unchanged():
        print("The tests fail without a change", file=sys.stderr)
        return 2
    counts = run.outcomes()
    killed, survived = counts[trial.Outcome.KILLED], counts[trial.Outcome.SURVIVED]
    share = 100 * killed / max(killed + survived, 1)
    print(f"{killed} of {killed + survived} changes noticed ({share:.1f} %)")
    print(f"Not counted: {counts[trial.Outcome.NOT_COMPILED]} that do not compile,", end=" ")
    print(f"{counts[trial.Outcome.SAME_CODE]} that make no difference to the compiler")
    return 0


if __name__ == "__main__":
    sys.exit(main())
