# SPDX-License-Identifier: Apache-2.0
"""Checks the modules of Android.bp by the rules that an Android 13 tree has for them.

Usage: rules.py ANDROID_BP MAKERS_FOLDER SOURCE_FOLDER TEST_MAPPING

ANDROID_BP is what modules.go prints for the build file, MAKERS_FOLDER holds the same for each kind
of maker's library that a tree may have. The build file's paths are relative to SOURCE_FOLDER.
Everything is looked at under each setting of the variables and for each kind of product.
"""

import itertools
import json
import pathlib
import sys
import xml.etree.ElementTree

import soong

# The modules of the platform that are linked, and where they exist. Each does so for all ABIs.
PLATFORM = {
    "libbinder": soong.EVERYWHERE,
    "libbinder_headers": soong.EVERYWHERE,
    "libcutils": soong.EVERYWHERE,
    "libgmock": soong.EVERYWHERE,
    "liblog": soong.EVERYWHERE,
    "libmedia_ndkformatpriv": soong.EVERYWHERE,
    "libmediandk": {"android"},
    "libmediandk_format": soong.EVERYWHERE,
    "libstagefright_foundation": soong.EVERYWHERE,
    "libstagefright_headers": soong.EVERYWHERE,
    "libutils": soong.EVERYWHERE,
    "media_ndk_headers": soong.EVERYWHERE,
}
LINKS = {
    "data_libs": "shared",
    "header_libs": "header",
    "shared_libs": "shared",
    "static_libs": "static",
    "whole_static_libs": "static",
}
MAKER_VARIABLE = "maker_keys"
MAKER_MODULE = "libmediandk.zor"
# Where a partition begins on a device; nothing of the sort is on a host.
DEVICE_PATHS = ("/data/", "/system/", "/system_ext/", "/vendor/")
# Whoever sets a property of the system must be root.
ROOT_ONLY = ("property_set", "ScopedProperty")
ROOT_PREPARER = "com.android.tradefed.targetprep.RootTargetPreparer"


def missing_links(tree, variants):
    """What a variant links exists for its OS and ABI."""
    built = {(variant.name, variant.target, way)
             for variant in variants for way in variant.kind.linked_as}
    for variant in variants:
        for key, way in LINKS.items():
            for name in variant.properties.get(key, []):
                name = name.partition("#")[0]
                if name in tree:
                    if (name, variant.target, way) not in built:
                        yield f"{variant} links {name}, which has no such {way} variant"
                elif name not in PLATFORM:
                    yield f"{variant} links {name}, which is no module"
                elif variant.target.os not in PLATFORM[name]:
                    yield f"{variant} links {name}, which has no such variant"


def installed_twice(variants):
    """One file name is installed once; in another partition it would be found first or never."""
    owners = {}
    for variant in variants:
        if "shared" not in variant.kind.linked_as:
            continue
        folder = variant.properties.get("relative_install_path", "")
        file = f"{folder}/{variant.properties.get('stem', variant.name)}.so"
        other = owners.setdefault((variant.target, file), variant.name)
        if other != variant.name:
            yield f"{other} and {variant} are installed under the same file name"


def built_for_32_bits(variants):
    """The sources are for 64 bits, and `m checkbuild` builds every variant."""
    yield from (f"{variant} is built for 32 bits" for variant in variants
                if variant.target.bits == "32")


def device_paths_on_host(variants):
    for variant in variants:
        texts = json.dumps(variant.properties)
        if variant.target.os != "android" and any(path in texts for path in DEVICE_PATHS):
            yield f"{variant} names a path of a device"


def sets_properties(variant, sources):
    return any(word in (sources / source).read_text()
               for source in variant.properties.get("srcs", []) for word in ROOT_ONLY)


def asks_for_root(configuration):
    preparers = xml.etree.ElementTree.parse(configuration).findall("target_preparer")
    return any(preparer.get("class") == ROOT_PREPARER for preparer in preparers)


def root_not_said(variants, sources):
    yield from (f"{variant} sets properties and does not say require_root" for variant in variants
                if variant.type == "cc_test" and sets_properties(variant, sources)
                and not needs_root(variant))


def root_not_given(variants, sources):
    """A configuration of the test's own takes the place of the build's, require_root included."""
    for variant in filter(needs_root, variants):
        configuration = variant.properties.get("test_config")
        if variant.target.os != "android":
            yield f"{variant} needs root on a host"
        elif configuration is None:
            yield f"{variant} needs root and has no test_config"
        elif not asks_for_root(sources / configuration):
            yield f"{variant} needs root and its test_config does not ask for it"


def needs_root(variant):
    return variant.properties.get("require_root", False)


def attended(tree, mapping):
    """What TEST_MAPPING names are tests that run without root."""
    for entry in itertools.chain.from_iterable(mapping.values()):
        name = entry["name"]
        if name not in tree or tree.type_of(name) != "cc_test":
            yield f"TEST_MAPPING names {name}, which is no test"
        elif tree.properties(name).get("require_root", False):
            yield f"TEST_MAPPING names {name}, which needs root"


def problems(modules, setting, product, sources, mapping):
    try:
        tree = soong.Tree(modules, setting)
        variants = tree.variants(product)
    except soong.RefusedError as error:
        yield str(error)
        return
    yield from missing_links(tree, variants)
    yield from installed_twice(variants)
    ours = [variant for variant in variants if variant.name != MAKER_MODULE]
    yield from built_for_32_bits(ours)
    yield from device_paths_on_host(ours)
    yield from root_not_said(ours, sources)
    yield from root_not_given(ours, sources)
    yield from attended(tree, mapping)


def settings(modules):
    """Every choice of the variables."""
    variables = sorted({variable for module in modules
                        for variable in module["properties"].get("bool_variables", [])})
    for count in range(len(variables) + 1):
        yield from (frozenset(chosen) for chosen in itertools.combinations(variables, count))


def found_problems(modules, makers, sources, mapping):
    """Returns each problem with the first circumstances in which it occurs."""
    found = {}
    for setting in settings(modules):
        libraries = makers if MAKER_VARIABLE in setting else {"no library": []}
        for (library, more), (product, targets) in itertools.product(
                libraries.items(), soong.PRODUCTS.items()):
            circumstances = ", ".join([*sorted(setting), library, product])
            for problem in problems(modules + more, setting, targets, sources, mapping):
                found.setdefault(problem, circumstances)
    return found


def main():
    android_bp, makers_folder, sources, mapping = map(pathlib.Path, sys.argv[1:])
    makers = {path.stem: json.loads(path.read_text())
              for path in sorted(makers_folder.glob("*.json"))}
    if not makers:
        sys.exit(f"no maker's library in {makers_folder}")
    found = found_problems(json.loads(android_bp.read_text()), makers, sources,
                           json.loads(mapping.read_text()))
    for problem, circumstances in found.items():
        print(f"{problem} [{circumstances}]", file=sys.stderr)
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
