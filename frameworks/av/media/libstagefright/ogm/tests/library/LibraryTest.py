# SPDX-License-Identifier: Apache-2.0
"""Checks the built plug-in as a file, like a device's loader.

Usage: LibraryTest.py LIBRARY [unittest arguments]
"""

import os
import re
import sys
import unittest

from elftools.elf.dynamic import DynamicSection
from elftools.elf.elffile import ELFFile

ENTRY_POINT = "GETEXTRACTORDEF"

# The symbols that the plug-in may import from the platform. Except for the maker's key, all exist on
# each device of API level 29 or later.
PLATFORM_IMPORTS = {
    *("AMediaFormat_" + name for name in (
        "copy", "delete", "getInt32", "getInt64", "getString", "new",
        "setBuffer", "setInt32", "setInt64", "setString")),
    *("AMEDIAFORMAT_KEY_" + name for name in (
        "CHANNEL_COUNT", "DURATION", "ESDS", "FRAME_RATE", "HEIGHT", "IS_SYNC_FRAME", "MIME",
        "MPEG_AUD_LAYER", "SAMPLE_RATE", "TARGET_TIME", "THUMBNAIL_TIME", "TIME_US", "WIDTH")),
    "__android_log_assert", "__android_log_print",
    "property_get", "property_get_int32",
}
# From the C library: only memory, text, one dump file and locks.
C_IMPORTS = {
    "malloc", "free", "posix_memalign", "madvise",
    "memcmp", "memcpy", "memmove", "memset", "memchr", "memmem",
    "strlen", "snprintf", "abort",
    "fopen", "fwrite", "fclose",
    "pthread_mutex_lock", "pthread_mutex_unlock", "__libc_single_threaded",
    # Called by compilers: guards of stack and buffers, destructors, exclusive access on Arm.
    "__stack_chk_fail", "__stack_chk_guard", "__cxa_finalize", "__cxa_atexit", "__getauxval",
    "__memcpy_chk", "__memmove_chk", "__memset_chk", "__strlen_chk",
    "__snprintf_chk",
    # For properties, if the platform's library for them cannot be linked.
    "__system_property_get", "strnlen", "strtoimax", "__errno", "__errno_location",
}
WEAK_START_UP_HOOKS = {"__gmon_start__", "_ITM_deregisterTMCloneTable", "_ITM_registerTMCloneTable"}

# Outside a tree there is no libcutils and no shared C++ library to link for a device.
DEVICE_LIBRARIES = {
    "libmediandk.so", "libmediandk.zor.so", "liblog.so", "libc.so", "libm.so", "libdl.so"}
DESKTOP_LIBRARIES = {
    "libmediandk.so", "libmediandk.zor.so", "liblog.so", "libcutils.so",
    "libc.so.6", "libm.so.6", "libstdc++.so.6", "libgcc_s.so.1",
    "ld-linux-x86-64.so.2", "ld-linux-aarch64.so.1",
}

PAGE_SIZE_OF_ARM = 16 * 1024

library_path = None


class Library(unittest.TestCase):
    def setUp(self):
        self.stream = open(library_path, "rb")
        self.addCleanup(self.stream.close)
        self.elf = ELFFile(self.stream)

    def segments(self, kind):
        return [segment for segment in self.elf.iter_segments() if segment["p_type"] == kind]

    def dynamic_entries(self, tag):
        dynamic = next(section for section in self.elf.iter_sections()
                       if isinstance(section, DynamicSection))
        return list(dynamic.iter_tags(tag))

    def dynamic_flags(self, tag):
        return sum(entry["d_val"] for entry in self.dynamic_entries(tag))

    def symbols(self, *, defined):
        table = self.elf.get_section_by_name(".dynsym")
        return [symbol for symbol in table.iter_symbols()
                if symbol.name and (symbol["st_shndx"] != "SHN_UNDEF") == defined]

    def test_ExportsTheEntryPointAndNothingElse(self):
        exported = [(symbol.name, symbol["st_info"]["type"])
                    for symbol in self.symbols(defined=True)]
        self.assertEqual([(ENTRY_POINT, "STT_FUNC")], exported)

    def test_ImportsNothingButThePlatformAndTheCAndCppLibraries(self):
        known = PLATFORM_IMPORTS | C_IMPORTS | WEAK_START_UP_HOOKS
        surprising = [symbol.name for symbol in self.symbols(defined=False)
                      if symbol.name not in known and not is_from_cpp_runtime(symbol.name)]
        self.assertEqual([], surprising)

    def test_ImportsEachPlatformNameThatTheListAllows(self):
        imported = {symbol.name for symbol in self.symbols(defined=False)}
        on_device_by_other_means = {"property_get", "property_get_int32"}
        self.assertLessEqual(PLATFORM_IMPORTS - on_device_by_other_means, imported)

    def test_NeedsNothingButThePlatformAndTheCAndCppLibraries(self):
        needed = {entry.needed for entry in self.dynamic_entries("DT_NEEDED")}
        is_for_device = self.elf.get_section_by_name(".note.android.ident") is not None
        self.assertLessEqual(needed, DEVICE_LIBRARIES if is_for_device else DESKTOP_LIBRARIES)
        self.assertIn("libmediandk.zor.so", needed)

    def test_HasNoTextRelocations(self):
        self.assertEqual([], self.dynamic_entries("DT_TEXTREL"))
        self.assertFalse(self.dynamic_flags("DT_FLAGS") & 0x4)

    def test_BindsEverythingAtLoadAndSealsItsTables(self):
        self.assertEqual(1, len(self.segments("PT_GNU_RELRO")))
        bind_now = self.dynamic_flags("DT_FLAGS") & 0x8
        now = self.dynamic_flags("DT_FLAGS_1") & 0x1
        self.assertTrue(bind_now or now)

    def test_HasNoSegmentBothWritableAndExecutable(self):
        for segment in self.elf.iter_segments():
            if segment["p_type"] in ("PT_LOAD", "PT_GNU_STACK"):
                self.assertNotEqual(0x3, segment["p_flags"] & 0x3, segment["p_type"])

    def test_GuardsItsStack(self):
        imported = {symbol.name for symbol in self.symbols(defined=False)}
        self.assertIn("__stack_chk_fail", imported)

    def test_LoadsOnPagesOf16KiBOnArm(self):
        self.assertEqual("EM_AARCH64", self.elf["e_machine"])
        for segment in self.segments("PT_LOAD"):
            self.assertEqual(0, segment["p_align"] % PAGE_SIZE_OF_ARM)
            self.assertEqual(0, (segment["p_vaddr"] - segment["p_offset"]) % PAGE_SIZE_OF_ARM)

    def test_HasAFileNameThatTheLoaderTakes(self):
        name = os.path.basename(library_path)
        self.assertFalse(name.startswith("."))
        self.assertIn("extractor.so", name)
        self.assertEqual([name], [entry.soname for entry in self.dynamic_entries("DT_SONAME")])

    def test_NamesNoFolderOfTheMachineThatBuiltIt(self):
        paths = [entry.runpath for entry in self.dynamic_entries("DT_RUNPATH")]
        paths += [entry.rpath for entry in self.dynamic_entries("DT_RPATH")]
        folders = {folder.rstrip("/") for path in paths for folder in path.split(":")}
        self.assertLessEqual(folders, {"$ORIGIN/.."})


def is_from_cpp_runtime(name):
    """Whether a name is of the C++ library or its support routines."""
    standard = r"_Z(N[KVRO]*)?S[a-z0-9]|_Z(nw|na|dl|da)|_ZNS?K?St|_ZTVN10__cxxabiv1"
    support = r"__cxa_(pure_virtual|guard_(acquire|release|abort))$|__gxx_personality_v0$|_Unwind_"
    return re.match(f"{standard}|{support}", name) is not None


if __name__ == "__main__":
    library_path = sys.argv.pop(1)
    unittest.main()
