# SPDX-License-Identifier: Apache-2.0
"""Makes one-place changes in the plug-in's or the tool's sources and shows what no test notices."""

import argparse
import collections
import concurrent.futures
import itertools
import pathlib
import queue
import random
import subprocess
import sys

import build
import changes
import plugin
import tool
import trial

WORKSHOPS = {"plugin": plugin.PluginWorkshop, "tool": tool.ToolWorkshop}


def parse_arguments():
    parser = argparse.ArgumentParser(prog="scripts/mutants", description=__doc__)
    parser.add_argument("--of", choices=WORKSHOPS, default="plugin", help="whose sources (plugin)")
    parser.add_argument("--sample", type=int, metavar="N", help="try N changes, taken at random")
    parser.add_argument("--seed", type=int, default=1, metavar="S", help="of the sample (1)")
    parser.add_argument("--jobs", type=int, default=2, metavar="J", help="tried at a time (2)")
    parser.add_argument("--quick", action="store_true", help="leave out the slowest tests")
    parser.add_argument("--list", action="store_true", help="only show the changes")
    parser.add_argument("--project", type=pathlib.Path, required=True, help=argparse.SUPPRESS)
    parser.add_argument(
        "sources", nargs="*", metavar="SOURCE[:LINE]",
        help="relative to the folder of all, for example seek/SeekPlan.cpp:28; all unless given",
    )  # fmt: skip
    return parser.parse_args()


def sources_of(root, folders):
    return sorted(
        str(path.relative_to(root))
        for folder in folders
        for path in (root / folder).iterdir()
        if path.suffix in (".cpp", ".h")
    )


def mutants_of(root, sources):
    """All mutants of the sources, or of the lines, that are named."""
    found = []
    for name in sources:
        source, _, line = name.partition(":")
        text = (root / source).read_text()
        found += [
            trial.Mutant(source, change)
            for change in changes.changes_of(text)
            if line in ("", str(change.line(text)))
        ]
    return found


def show(root, mutant):
    text = (root / mutant.source).read_text()
    where = f"{mutant.source}:{mutant.change.line(text)}"
    print(f"{where}: {mutant.change.kind}\n{mutant.change.diff(text)}", flush=True)


def build_unchanged(kind, project, folder):
    """Its messages go where they do not mix with the changes that are shown."""
    configure = ["cmake", *kind.CONFIGURED, "-B", str(folder)]
    compile_and_link = ["cmake", "--build", str(folder), "--target", *kind.BUILT]
    for command in (configure, compile_and_link):
        subprocess.run(command, cwd=project, check=True, stdout=sys.stderr)


class Run:
    """Tries mutants until as many compiled as were asked for."""

    def __init__(self, options, root, mutants):
        self.root = root
        self.mutants = mutants
        self.wanted = options.sample or len(mutants)
        self.workshops = queue.Queue()
        self.jobs = options.jobs
        self._open_workshops(options)

    def _open_workshops(self, options):
        kind = WORKSHOPS[options.of]
        folder = options.project / "build/mutants"
        build_unchanged(kind, options.project, folder / options.of)
        unchanged = build.Build(folder / options.of, self.root, kind.LINKED)
        for number in range(self.jobs):
            job = folder / f"{options.of}.{number}"
            self.workshops.put(kind(unchanged, job, options.quick))

    def failing_unchanged(self):
        workshop = self.workshops.get()
        failing = workshop.failing_unchanged()
        self.workshops.put(workshop)
        return failing

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
                    show(self.root, mutant)
                elif outcome is not trial.Outcome.KILLED:
                    begin(1)
                self._show_progress(counts)
        return counts

    def _show_progress(self, counts):
        tried = counts[trial.Outcome.KILLED] + counts[trial.Outcome.SURVIVED]
        print(f"{tried} of {self.wanted}", end="\r", file=sys.stderr, flush=True)


def main():
    options = parse_arguments()
    kind = WORKSHOPS[options.of]
    root = options.project / kind.ROOT
    mutants = mutants_of(root, options.sources or sources_of(root, kind.FOLDERS))
    if options.sample:
        random.Random(options.seed).shuffle(mutants)
    if options.list:
        for mutant in mutants[: options.sample]:
            show(root, mutant)
        return 0
    run = Run(options, root, mutants)
    if failing := run.failing_unchanged():
        print(f"Fails without a change: {failing.program} {failing.tests}", file=sys.stderr)
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
