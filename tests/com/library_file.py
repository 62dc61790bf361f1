#!/usr/bin/env python3
"""Looks into the library without running it: library_file.py LIBRARY TYPE_LIBRARY 32|64 OBJDUMP"""

import pathlib
import re
import struct
import subprocess
import sys

EXPORTS = ["DllCanUnloadNow", "DllGetClassObject", "DllInstall", "DllRegisterServer", "DllUnregisterServer"]
NAMES = ["Kunde", "Vertrag", "Auftrag", "AuftragsPos", "ImportJob", "ImportJobSubItem", "ImportJobs", "ImportJobSubItems",
         "ImportJobObject", "ImportJobObject2", "ProcessInfo", "WährungEingabe", "qxtJobKundenVerträgeDone"]
# Of the file, and of the type library: the system that its types are laid out for.
FORMATS = {"32": ("pei-i386", 1), "64": ("pei-x86-64", 3)}
SYSTEM_OF_TYPES = 20


def main():
    library, types, bits, objdump = sys.argv[1:]
    file_format, system = FORMATS[bits]
    headers = subprocess.run([objdump, "-p", library], stdout=subprocess.PIPE, check=True).stdout.decode("latin-1")
    written = pathlib.Path(types).read_bytes()
    failures = []

    def same(what, found, wanted):
        if found != wanted:
            failures.append(f"{what}: {found} in place of {wanted}")

    same("format", re.search(r"file format (\S+)", headers).group(1), file_format)
    # Without the marks of the calling convention, which nobody who loads the library would look for.
    exports = headers[headers.index("[Ordinal/Name Pointer] Table"):]
    same("exports", sorted(re.findall(r"^\s+\[\s*\d+\] (\S+)", exports, re.MULTILINE)), EXPORTS)
    same("libraries of the compiler", re.findall(r"DLL Name: (lib\S+)", headers), [])
    same("type library embedded", written in pathlib.Path(library).read_bytes(), True)
    same("system of the types", struct.unpack_from("<I", written, SYSTEM_OF_TYPES)[0] & 15, system)
    # Names whose letters differ in case only are stored once.
    same("names missing", [name for name in NAMES if name.lower().encode("cp1252") not in
                           written.decode("cp1252", "replace").lower().encode("cp1252", "replace")], [])
    print("\n".join(failures) or "the file holds what hosts look for")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
