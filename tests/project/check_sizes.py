"""No file has more than 500 lines, no function more than 40.

check_sizes.py PROJECT
"""

import re

from sources import code_only, cpp_files, line_of, read, run

LONGEST_FILE = 500
LONGEST_FUNCTION = 40

# Braces behind these hold declarations; we look inside for functions.
SCOPE = re.compile(r'\b(namespace|class|struct|union|extern)\b[^()=]*$|^\s*extern\s*"\s*"\s*$')
NO_FUNCTION = re.compile(r"\b(enum|namespace)\b|=\s*$|\breturn\b|,\s*$")
PREPROCESSOR = re.compile(r"^[ \t]*#(?:[^\n]*\\\n)*[^\n]*", re.MULTILINE)


def head_before(text, brace):
    """What stands between the last end of a declaration and this brace, and where it begins."""
    start = max(text.rfind(mark, 0, brace) for mark in ";{}") + 1
    label = re.match(r"\s*(public|private|protected)\s*:", text[start:brace])
    start += label.end() if label else 0
    start += len(text[start:brace]) - len(text[start:brace].lstrip())
    return text[start:brace], start


def matching_brace(text, brace):
    depth = 0
    for match in re.compile(r"[{}]").finditer(text, brace):
        depth += 1 if match[0] == "{" else -1
        if depth == 0:
            return match.start()
    return len(text)


def functions(text):
    """(first line, last line, head) of every function body outside of other functions."""
    text = PREPROCESSOR.sub(lambda m: re.sub(r"[^\n]", " ", m[0]), code_only(text))
    brace = text.find("{")
    while brace >= 0:
        head, start = head_before(text, brace)
        if SCOPE.search(head):
            brace = text.find("{", brace + 1)
            continue
        end = matching_brace(text, brace)
        if "(" in head and not NO_FUNCTION.search(head):
            yield line_of(text, start), line_of(text, end), " ".join(head.split())
        brace = text.find("{", end)


def check(root):
    problems = []
    for file in cpp_files(root):
        text = read(root, file)
        lines = text.count("\n")
        if lines > LONGEST_FILE:
            problems.append(f"{file}:{lines}: {lines} lines, more than {LONGEST_FILE}")
        for first, last, head in functions(text):
            if last - first + 1 > LONGEST_FUNCTION:
                problems.append(f"{file}:{first}: {last - first + 1} lines, more than {LONGEST_FUNCTION}: {head}")
    return problems


if __name__ == "__main__":
    run(check, "lengths of files and functions")
