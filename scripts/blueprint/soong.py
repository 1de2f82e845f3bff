# SPDX-License-Identifier: Apache-2.0
"""How Android 13's build resolves the modules of Blueprint files: their properties under a
setting, and their variants for a product.
"""

import dataclasses
import itertools

EVERYWHERE = frozenset({"android", "linux_glibc"})


@dataclasses.dataclass(frozen=True)
class Target:
    os: str
    arch: str
    bits: str

    def __str__(self):
        return f"{self.os} {self.arch}"


ARM64 = Target("android", "arm64", "64")
ARM = Target("android", "arm", "32")
HOST = (Target("linux_glibc", "x86_64", "64"), Target("linux_glibc", "x86", "32"))
# The ABIs of a product, the first one first.
PRODUCTS = {
    "64-bit device": (ARM64,),
    "64- and 32-bit device": (ARM64, ARM),
    "32-bit device": (ARM,),
}


@dataclasses.dataclass(frozen=True)
class Kind:
    """A type of module: the ABIs it is built for unless it says otherwise, and how it is linked."""
    multilib: str
    linked_as: frozenset = frozenset()


KINDS = {
    "cc_binary": Kind("first"),
    "cc_fuzz": Kind("first"),
    "cc_library": Kind("both", frozenset({"shared", "static"})),
    "cc_library_headers": Kind("both", frozenset({"header"})),
    "cc_library_shared": Kind("both", frozenset({"shared"})),
    "cc_library_static": Kind("both", frozenset({"static"})),
    "cc_prebuilt_library_shared": Kind("both", frozenset({"shared"})),
    "cc_test": Kind("both"),
}


@dataclasses.dataclass(frozen=True)
class Variant:
    name: str
    kind: Kind
    type: str
    target: Target
    properties: dict = dataclasses.field(hash=False, compare=False)

    def __str__(self):
        return f"{self.name} ({self.target})"


class RefusedError(Exception):
    """The build would stop here."""


def merged(first, second):
    """Lists of both, one after the other; of two other values the second."""
    result = dict(first)
    for key, value in second.items():
        before = result.get(key)
        if isinstance(value, dict) and isinstance(before, dict):
            result[key] = merged(before, value)
        elif isinstance(value, list) and isinstance(before, list):
            result[key] = before + value
        else:
            result[key] = value
    return result


def leaves(properties, prefix=""):
    """The full names of all properties that have a value."""
    for key, value in properties.items():
        if isinstance(value, dict):
            yield from leaves(value, f"{prefix}{key}.")
        else:
            yield prefix + key


class Tree:
    """The modules of some files under one setting: the names of the variables that are true."""

    def __init__(self, modules, setting):
        self._setting = setting
        self._config_types = {
            module["properties"]["name"]: module["properties"] for module in modules
            if module["type"] == "soong_config_module_type"}
        self._modules = {}
        for module in modules:
            name = module["properties"].get("name")
            if name in self._modules:
                raise RefusedError(f"{name} is defined twice")
            if name is not None:
                self._modules[name] = module

    def __contains__(self, name):
        return name in self._modules

    def type_of(self, name):
        module_type = self._modules[name]["type"]
        return self._config_types.get(module_type, {}).get("module_type", module_type)

    def names(self):
        """The modules that something is built from."""
        return [name for name in self._modules if self.type_of(name) in KINDS]

    def properties(self, name):
        """With those of its defaults, and those that the setting adds."""
        module = self._modules[name]
        own = merged(module["properties"], self._configured(module))
        result = {}
        for default in own.pop("defaults", []):
            if default not in self._modules:
                raise RefusedError(f"{name}: there are no defaults {default}")
            result = merged(result, self.properties(default))
        return merged(result, own)

    def _configured(self, module):
        config_type = self._config_types.get(module["type"])
        if config_type is None:
            return {}
        result = {}
        for variable, values in module["properties"].get("soong_config_variables", {}).items():
            if variable not in config_type["bool_variables"]:
                raise RefusedError(f"{module['type']} has no variable {variable}")
            chosen = values if variable in self._setting else values.get("conditions_default", {})
            chosen = {key: value for key, value in chosen.items() if key != "conditions_default"}
            for leaf in leaves(chosen):
                if leaf not in config_type["properties"]:
                    raise RefusedError(f"{variable} may not set {leaf} of a {module['type']}")
            result = merged(result, chosen)
        return result

    def variants(self, product):
        """All that are built of all modules."""
        return list(itertools.chain.from_iterable(
            self._variants_of(name, product) for name in self.names()))

    def _variants_of(self, name, product):
        properties = self.properties(name)
        kind = KINDS[self.type_of(name)]
        groups = []
        if properties.get("device_supported", True):
            groups.append(("android", product))
        if properties.get("host_supported", False):
            groups.append(("host", HOST))
        for group, targets in groups:
            multilib = properties.get("target", {}).get(group, {}).get(
                "compile_multilib", properties.get("compile_multilib", kind.multilib))
            for target in chosen_targets(name, multilib, targets):
                own = properties_for(properties, target)
                if own.get("enabled", True):
                    yield Variant(name, kind, self.type_of(name), target, own)


def chosen_targets(name, multilib, targets):
    if multilib == "both":
        return targets
    if multilib == "first":
        return targets[:1]
    if multilib in ("32", "64"):
        return tuple(target for target in targets if target.bits == multilib)
    raise RefusedError(f"{name}: this check does not know compile_multilib {multilib}")


def properties_for(properties, target):
    """Those of one variant, without the parts that are for others."""
    parts = ("arch", "multilib", "soong_config_variables", "target")
    result = {key: value for key, value in properties.items() if key not in parts}
    groups = ["android"] if target.os == "android" else ["host", "linux", "linux_glibc"]
    selected = [("target", group) for group in groups]
    selected += [("arch", target.arch), ("multilib", "lib" + target.bits),
                 ("target", f"{target.os}_{target.arch}")]
    for part, key in selected:
        result = merged(result, properties.get(part, {}).get(key, {}))
    return result
