#!/usr/bin/env python3
"""Every test that a document or a comment names is there.

    named_tests.py SOURCE_FOLDER

Looked at: the tests in backquotes in docs/kept.md and docs/CONFORMANCE.md, and those behind "Pinned by" in the sources.
A * stands for any text.
"""
import fnmatch
import pathlib
import re
import sys

ROOT = pathlib.Path(sys.argv[1])
NAME = r"[A-Za-z]\w*\.[\w*]+"


def tests():
    pattern = re.compile(r"^TEST(?:_F|_P)?\(\s*(\w+),\s*(\w+)\)", re.M)
    for source in ROOT.glob("tests/*/*_test.cpp"):
        for suite, name in pattern.findall(source.read_text()):
            yield f"{suite}.{name}"


def named_in_documents():
    for name in ("kept.md", "CONFORMANCE.md"):
        document = ROOT / "docs" / name
        for test in re.findall(rf"`({NAME})`", document.read_text() if document.exists() else ""):
            yield document, test


def named_in_sources():
    for folder in ("track", "util", "gpx", "record", "library", "platform", "host"):
        for source in ROOT.glob(f"{folder}/**/*.[ch]*"):
            text = re.sub(r"\n\s*//", "", source.read_text())
            for pinned in re.findall(rf"Pinned by\s+({NAME})", text):
                yield source, pinned.rstrip(".")


def main():
    known = set(tests())
    named = [*named_in_documents(), *named_in_sources()]
    lost = [(where, test) for where, test in named if not fnmatch.filter(known, test)]
    for where, test in lost:
        print(f"{where.relative_to(ROOT)}: there is no test {test}")
    print(f"{len(named)} names looked at")
    return 1 if lost or not named else 0


sys.exit(main())
