"""Every test that a document or a comment names exists: "Pinned by Suite.Name", or `Suite.Name_Result` in a table.

check_named_tests.py PROJECT
"""

import re
from fnmatch import fnmatchcase
from pathlib import Path

from check_test_list import written_tests
from sources import cpp_files, line_of, read, run

DOCUMENTS = ("docs/kept.md", "docs/CONFORMANCE.md")

# In documents a test's name is told from a file's by its underscore or its star.
IN_TABLE = re.compile(r"`([A-Z]\w*\.(?:\w*\*|\w+_\w+))`")
IN_COMMENT = re.compile(r"Pinned by(?:\s|//)+([A-Z]\w*\.[\w*]*[\w*])")


def named_tests(root):
    """(file, line, Suite.Name) of every test that is named; the name may end in a star."""
    for file in filter(lambda name: (Path(root) / name).is_file(), DOCUMENTS):
        text = read(root, file)
        yield from ((file, line_of(text, match.start(1)), match[1]) for match in IN_TABLE.finditer(text))
    for file in cpp_files(root):
        text = read(root, file)
        yield from ((file, line_of(text, match.start(1)), match[1]) for match in IN_COMMENT.finditer(text))


def check(root):
    known = [name.partition(".")[2] for _, _, name in written_tests(root) if name]
    return [f"{file}:{line}: there is no test {name}" for file, line, name in named_tests(root)
            if not any(fnmatchcase(test, name) for test in known)]


if __name__ == "__main__":
    run(check, "tests named in documents and comments")
