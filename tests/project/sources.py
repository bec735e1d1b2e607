"""The project's C++ sources as text, for the checks beside this file.

A check is a function from the project's folder to a list of problems, each "file:line: what is wrong"; run()
makes a program of it. That every check finds what it looks for is shown by selftest.py.
"""

import re
import subprocess
import sys
from pathlib import Path

LIBRARY_FOLDERS = ("platform", "util", "gpx", "track", "record", "library")

# A comment, a literal with its escapes, or a preprocessor-safe raw string.
TOKEN = re.compile(
    r"""//(?:\\\n|[^\n])*|/\*.*?\*/|R"([^()\\\s]*)\(.*?\)\1"|"(?:\\.|[^"\\\n])*"|(?<!\w)'(?:\\.|[^'\\\n])*'""",
    re.DOTALL,
)


def cpp_files(root):
    """All .h and .cpp files that git tracks or would track, relative to root, in order."""
    listed = subprocess.run(
        ["git", "ls-files", "-co", "--exclude-standard", "--", "*.h", "*.cpp"],
        cwd=root, capture_output=True, text=True, check=False,
    )
    names = set(listed.stdout.splitlines()) if listed.returncode == 0 else {
        str(path.relative_to(root)) for pattern in ("*.h", "*.cpp") for path in Path(root).rglob(pattern)
        if "build" not in path.relative_to(root).parts
    }
    return [Path(name) for name in sorted(names) if (Path(root) / name).is_file()]


def read(root, file):
    return (Path(root) / file).read_text(encoding="utf-8")


def _blank(text):
    return re.sub(r"[^\n]", " ", text)


def without_comments(text):
    """Comments become blanks, so positions and line numbers stay."""
    return TOKEN.sub(lambda m: _blank(m[0]) if m[0].startswith(("//", "/*")) else m[0], text)


def code_only(text):
    """Comments and what stands inside of literals become blanks."""
    def blank(match):
        token = match[0]
        return _blank(token) if token.startswith(("//", "/*")) else token[0] + _blank(token[1:-1]) + token[-1]
    return TOKEN.sub(blank, text)


def line_of(text, position):
    return text.count("\n", 0, position) + 1


def run(check, what):
    """Runs one check on the folder given as the program's argument; the exit code tells CTest."""
    problems = check(Path(sys.argv[1]), *sys.argv[2:])
    for problem in problems:
        print(problem)
    print(f"{what}: {len(problems)} problem(s)" if problems else f"{what}: fine")
    sys.exit(1 if problems else 0)
