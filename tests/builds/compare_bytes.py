"""Compares the files that same_bytes wrote in two builds: the same names and the same bytes.

compare_bytes.py FOLDER FOLDER

Only what says when a document was written may differ: the time and the name in its metadata, and the name of a
recording that was saved by itself.
"""

import re
import sys
from pathlib import Path

WHEN = (
    (re.compile(rb"(<time>)[^<]*(</time>\s*<(?:keywords|bounds|trk))"), rb"\1\2"),
    (re.compile(rb"(<name>track)\d{4}-\d\d-\d\dT\d\d:\d\d:\d\dZ"), rb"\1"),
    (re.compile(rb"AutoSaveTrk-\d{4}-\d\d-\d\d \d{6}"), rb"AutoSaveTrk-"),
)


def without_when(content):
    for pattern, kept in WHEN:
        content = pattern.sub(kept, content, count=2)
    return content


def files(folder):
    """Contents by name."""
    found = {}
    for file in sorted(Path(folder).rglob("*")):
        if file.is_file():
            name = without_when(file.relative_to(folder).as_posix().encode()).decode()
            content = file.read_bytes()
            found[name] = without_when(content) if name.endswith(".gpx") else content
    return found


def main(one, other):
    one, other = files(one), files(other)
    wrong = [f"{name}: only in one build" for name in sorted(one.keys() ^ other.keys())]
    for name in sorted(one.keys() & other.keys()):
        if one[name] != other[name]:
            at = next((i for i, (a, b) in enumerate(zip(one[name], other[name])) if a != b), -1)
            wrong.append(f"{name}: {len(one[name])} and {len(other[name])} bytes, differing from {at} on:\n"
                         f"    {one[name][max(at - 40, 0):at + 40]!r}\n    {other[name][max(at - 40, 0):at + 40]!r}")
    print("\n".join(wrong) if wrong else f"{len(one)} files with the same bytes: {', '.join(one)}")
    return 1 if wrong or len(one) < 4 else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
