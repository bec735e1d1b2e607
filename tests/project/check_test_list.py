"""Every test written in tests/ is in CTest's list, under its folder's name, and none is switched off.

Those in folders `windows` are in the list of that build.

check_test_list.py PROJECT BUILD
"""

import json
import re
import subprocess
from pathlib import Path

from sources import code_only, cpp_files, line_of, read, run

TEST = re.compile(r"^[ \t]*(TEST|TEST_F|TEST_P|TYPED_TEST|TYPED_TEST_P)\(\s*(\w+)\s*,\s*(\w+)\s*\)", re.MULTILINE)


def listed_tests(build):
    """The names in CTest's list."""
    shown = subprocess.run(["ctest", "--show-only=json-v1"], cwd=build, capture_output=True, text=True, check=True)
    return [test["name"] for test in json.loads(shown.stdout)["tests"]]


def written_tests(root):
    """(file, line, name) of every test; the name as CTest should have it, but for parameters."""
    for file in cpp_files(root):
        if file.parts[0] != "tests" or not file.name.endswith("_test.cpp"):
            continue
        text = code_only(read(root, file))
        found = [(file, line_of(text, m.start(1)), f"{file.parts[1]}.{m[2]}.{m[3]}") for m in TEST.finditer(text)]
        yield from found or [(file, 1, None)]


def without_parameters(name):
    """tests of one text with many values are listed as Values/Suite.Name/7 or Suite/0.Name."""
    folder, _, rest = name.partition(".")
    suite, _, test = rest.partition(".")
    parts = [part for part in suite.split("/") if not part.isdigit()]
    return f"{folder}.{parts[-1] if parts else suite}.{test.split('/')[0]}"


def missing_tests(written, listed):
    known = {without_parameters(name) for name in listed}
    unbuilt = [name for name in listed if name.endswith("_NOT_BUILT")]
    for name in unbuilt:
        yield f"{name.removesuffix('_NOT_BUILT')}: not built; build everything before this check"
    for file, line, name in written:
        if name is None:
            yield f"{file}:{line}: no test in it"
        elif "DISABLED_" in name:
            yield f"{file}:{line}: {name} is switched off"
        elif name not in known and not unbuilt and "windows" not in file.parts:
            yield f"{file}:{line}: {name} is not in CTest's list (is its folder in tests/CMakeLists.txt?)"


def check(root, build):
    return list(missing_tests(list(written_tests(root)), listed_tests(Path(build))))


if __name__ == "__main__":
    run(check, "tests in CTest's list")
