"""Includes go one way: host, library, record, track, gpx, util, platform; each may use those behind it.

check_includes.py PROJECT
"""

import re

from sources import cpp_files, line_of, read, run, without_comments

ORDER = ("host", "library", "record", "track", "gpx", "util", "platform")

# These build on nothing, so everything may use them.
FREE_FOR_ALL = {"track/point.h", "track/geodesy.h", "util/export.h"}

# The settings ask the manager for its live recording, in one function.
STATED_EXCEPTIONS = {("record/settings.cpp", "library/track_manager.h")}

INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*"([^"]+)"', re.MULTILINE)


def why_not(file, included):
    """Why the file must not include that, or None."""
    folder = file.parts[0]
    if included == "qtrace.h" and folder == "host":
        return None
    target = included.split("/")[0]
    if "/" not in included or ".." in included.split("/"):
        return "name the header from the project's folder on"
    if included.startswith(("platform/posix/", "platform/windows/")) and folder != "platform":
        return "only platform/ knows which system this is"
    if target not in ORDER or included in FREE_FOR_ALL or (file.as_posix(), included) in STATED_EXCEPTIONS:
        return None
    if ORDER.index(target) < ORDER.index(folder):
        return f"{folder}/ must not use {target}/; the way is " + " -> ".join(ORDER)
    return None


def check(root):
    problems = []
    for file in cpp_files(root):
        if file.parts[0] not in ORDER or len(file.parts) < 2:
            continue
        text = without_comments(read(root, file))
        for match in INCLUDE.finditer(text):
            reason = why_not(file, match[1])
            if reason:
                problems.append(f'{file}:{line_of(text, match.start(1))}: #include "{match[1]}": {reason}')
    return problems


if __name__ == "__main__":
    run(check, "include directions")
