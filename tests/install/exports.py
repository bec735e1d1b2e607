#!/usr/bin/env python3
"""Compares the names that the shared library exports with the public interface.

    exports.py LIBRARY [OBJDUMP]     a .dll is read by the objdump of its target

Every symbol must belong to a public class or be a public function, and each of those must be there.
"""
import re
import subprocess
import sys

CLASSES = {"ITrack", "CTrack", "CTrackEx", "CTrackMangSet", "CTrackProxy", "CTrackMan", "je_memory"}
FUNCTIONS = {
    "CalDistance", "AidCalLength", "AidCalArea",
    "AnsicToUTF_8", "UTF_8ToAnsic", "AnsciToWchar", "WcharToChar", "ChangeStringToWString", "UpString", "UpWString",
    "ChangeSYSTIMEToTime_T", "TimetToSystemTime", "GetLocalTimeStr", "DTSTR2SYS",
    "GetInitGlobalPath", "FileAbsolutPath", "CheckDirectoryExist", "CreateDir", "GetFileSuffixName", "GetString_1",
    "SetDeviceRoot", "SetProgramFolder", "SetStorageCardRoot", "SetAnsiCodePage",
}


def output(*command, **options):
    return subprocess.run(command, check=True, capture_output=True, text=True, **options).stdout


def dynamic_symbols(library):
    listing = output("nm", "-D", "--defined-only", "-C", library)
    return [line.split(maxsplit=2)[2] for line in listing.splitlines()]


def dll_symbols(library, objdump):
    table = output(objdump, "-p", library).partition("[Ordinal/Name Pointer] Table")[2].partition("\n\n")[0]
    names = re.findall(r"^\s*\[\s*\d+\]\s+(?:\+base\[\s*\d+\]\s+\w+\s+)?(\S+)$", table, re.MULTILINE)
    return output("c++filt", input="\n".join(names)).splitlines()


def owner(symbol):
    """The class or function that a symbol belongs to."""
    symbol = re.sub(r"^(vtable|typeinfo name|typeinfo|guard variable) for ", "", symbol)
    return re.split(r"::|\(|\[|<", symbol, maxsplit=1)[0]


def main():
    library, *objdump = sys.argv[1:]
    symbols = dll_symbols(library, *objdump) if objdump else dynamic_symbols(library)
    found = {owner(symbol) for symbol in symbols}
    foreign = sorted(symbol for symbol in symbols if owner(symbol) not in CLASSES | FUNCTIONS)
    missing = sorted((CLASSES | FUNCTIONS) - found)
    for symbol in foreign:
        print(f"exported, but not public: {symbol}")
    for name in missing:
        print(f"public, but not exported: {name}")
    print(f"{len(symbols)} symbols looked at")
    return 1 if foreign or missing else 0


sys.exit(main())
