#!/usr/bin/env python3
"""Compares the dynamic symbols of the shared library with the public interface.

    exports.py LIBRARY

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


def dynamic_symbols(library):
    listing = subprocess.run(["nm", "-D", "--defined-only", "-C", library], check=True, capture_output=True, text=True)
    return [line.split(maxsplit=2)[2] for line in listing.stdout.splitlines()]


def owner(symbol):
    """The class or function that a symbol belongs to."""
    symbol = re.sub(r"^(vtable|typeinfo name|typeinfo|guard variable) for ", "", symbol)
    return re.split(r"::|\(|\[|<", symbol, maxsplit=1)[0]


def main():
    symbols = dynamic_symbols(sys.argv[1])
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
