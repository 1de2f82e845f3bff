# SPDX-License-Identifier: Apache-2.0
"""Compares the sources of Android.bp with those that CMake builds.

Usage: check.py MODULES BUILD_FOLDER SOURCE_FOLDER MODULE

MODULES is what modules.go prints for Android.bp, BUILD_FOLDER a folder that CMake has configured
with a query for its code model, SOURCE_FOLDER the one that holds Android.bp. MODULE must be among
the modules.
"""

import json
import pathlib
import sys

import soong

# What a module of the tree is built from here, where it is not one target of the same name.
TARGETS = {
    "libogmextractor": ["ogmextractor_static", "platform_mediandk_zor"],
    "libogmextractor_fuzz_support": ["ogm_fuzz_support", "ogm_fuzz_session"],
    "libogmextractor_keys": ["platform_mediandk_zor"],
    "libogmextractor_test_files": ["ogm_test_files"],
    "libogmextractor_test_support": ["ogm_test_support"],
    "libogmextractor_unwound": ["ogmextractor_unwound", "platform_mediandk_zor"],
    "ogm_extractor_fuzzer": ["ogm_extractor_fuzzer", "ogm_fuzz_log", "ogm_allocation_hooks"],
    "ogmdump": ["ogmdump", "ogmdump_parts"],
    "ogm_memory_test": ["ogm_memory_test", "ogm_allocation_hooks"],
}
# A tree's fuzzers always have an engine, those of a desktop's tests have not.
ENGINE_ONLY = {"fuzz/ogm_extractor_mutator.cpp"}
# The framework's factory and the stand-ins are tested where they stand in for a device's; the
# fuzzers' own tests are for whoever changes a fuzzer, and that of threads needs the sanitizer that
# devices lack. The stand-in for the public extractor is not needed: the device has its own.
DESKTOP_ONLY = ("tests/factory/", "tests/ThreadTest.cpp", "zor/tests/", "fuzz/tests/",
                "fuzz/support/StandaloneMain.cpp", "standin/", "tests/DumpTest.cpp",
                "tests/JsonLineTest.cpp", "tests/SampleLinesTest.cpp")
SOURCE_SUFFIXES = {".cpp"}


def modules_of(path):
    """The sources of each module, those for the device alone or a host alone included."""
    tree = soong.Tree(json.loads(path.read_text()), frozenset())
    modules = {}
    for variant in tree.variants(soong.PRODUCTS["64-bit device"]):
        modules.setdefault(variant.name, set()).update(variant.properties.get("srcs", []))
    return modules


def sources_of_targets(build, folder):
    """The sources that each target compiles, relative to the folder; others are left out."""
    reply = build / ".cmake/api/v1/reply"
    (model_path,) = reply.glob("codemodel-v2-*.json")
    model = json.loads(model_path.read_text())
    root = pathlib.Path(model["paths"]["source"])
    sources = {}
    for entry in model["configurations"][0]["targets"]:
        target = json.loads((reply / entry["jsonFile"]).read_text())
        paths = [root / source["path"] for source in target.get("sources", [])]
        sources[entry["name"]] = {
            str(path.relative_to(folder)) for path in paths
            if path.suffix in SOURCE_SUFFIXES and path.is_relative_to(folder)}
    return sources


def targets_of(module):
    if module in TARGETS:
        return TARGETS[module]
    return [module, "ogm_fuzz_log"] if module.endswith("_fuzzer") else [module]


def differences(modules, targets):
    for module, listed in modules.items():
        names = targets_of(module)
        if not all(name in targets for name in names):
            yield f"{module}: CMake builds nothing of this kind"
            continue
        built = set.union(*(targets[name] for name in names))
        yield from (f"{module}: CMake builds {source}, Android.bp does not"
                    for source in sorted(built - listed) if not source.startswith(DESKTOP_ONLY))
        yield from (f"{module}: Android.bp builds {source}, CMake does not"
                    for source in sorted(listed - built - ENGINE_ONLY))
    in_modules = set.union(*modules.values())
    for target, built in sorted(targets.items()):
        yield from (f"{target}: no module of Android.bp builds {source}"
                    for source in sorted(built - in_modules)
                    if not source.startswith(DESKTOP_ONLY))


def main():
    modules_path, build, folder = (pathlib.Path(argument).resolve() for argument in sys.argv[1:4])
    wanted = sys.argv[4]
    modules = modules_of(modules_path)
    found = list(differences(modules, sources_of_targets(build, folder)))
    if wanted not in modules:
        found.append(f"Android.bp lacks {wanted}")
    print(*found, sep="\n", end="\n" if found else "", file=sys.stderr)
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
