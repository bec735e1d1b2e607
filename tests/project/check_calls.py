"""The library asks the operating system through platform/ alone, and reads no locale anywhere.

check_calls.py PROJECT
"""

import re

from sources import LIBRARY_FOLDERS, code_only, cpp_files, line_of, read, run, without_comments

SYSTEM_MACRO = re.compile(
    r"^[ \t]*#[ \t]*(?:if|ifdef|ifndef|elif|elifdef)\b[^\n]*\b(?:_?WIN32|_?WIN64|_WIN32_WCE|UNDER_CE|_MSC_VER|"
    r"__MINGW\w+|__CYGWIN__|__linux\w*|__unix\w*|__APPLE__|__ANDROID__|__\w+BSD__|__GLIBC__|_POSIX_\w+)\b",
    re.MULTILINE,
)
SYSTEM_HEADER = re.compile(
    r"^[ \t]*#[ \t]*include[ \t]*<(windows\.h|winsock2?\.h|unistd\.h|fcntl\.h|dirent\.h|dlfcn\.h|pthread\.h|"
    r"iconv\.h|sys/[^>]+|linux/[^>]+)>",
    re.MULTILINE,
)

# What reads the process's locale, and would read or write a comma one day.
LOCALE_CALLS = (
    "setlocale localeconv newlocale uselocale strtod strtof strtold wcstod atof atoi atol atoll stod stof stold "
    "scanf fscanf sscanf swscanf toupper tolower towupper towlower isalpha isalnum isupper islower isspace ispunct "
    "isprint iswalpha iswalnum iswupper iswlower iswspace strcoll wcscoll strxfrm strftime mbstowcs wcstombs mbtowc "
    "wctomb mbrtowc wcrtomb"
).split()
LOCALE_CALL = re.compile(r"(?<![\w.>])(?:std::|::)?(" + "|".join(LOCALE_CALLS) + r")\s*\(")
LOCALE_STREAM = re.compile(r"\b(w?[io]?stringstream|w?cout|w?cerr|w?clog)\b")

# Files are opened, flushed, moved and looked for on device paths, in platform/ alone.
FILE_CALL = re.compile(
    r"(?<![\w.>])(?<!platform::)(?:std::|::)?"
    r"(fopen|freopen|fdopen|_wfopen|fflush|remove|rename|unlink|mkdir|rmdir|opendir|stat)\s*\("
    r"|\b(w?[io]?fstream|basic_[io]?fstream|std::filesystem)\b"
)
# std::remove of a range is another function.
RANGE_REMOVE = re.compile(r"(?:std::)?remove\s*\([^()]*(?:\([^()]*\)[^()]*)*,")

PRINTF = re.compile(r"\b(?:v?f|v?s|v?sn)?w?printf\s*\(")
LITERAL = re.compile(r'"((?:\\.|[^"\\\n])*)"')
REAL_CONVERSION = re.compile(r"(?<!%)(?:%%)*%[-+ #0']*(?:\d+|\*)?(?:\.(?:\d+|\*)?)?L?[aAeEfFgG]")


def system_macros(file, text):
    if file.parts[0] == "platform" or file.as_posix() == "util/export.h":
        return
    for match in SYSTEM_MACRO.finditer(text):
        yield match.start(), "asks for the operating system; only platform/ and util/export.h may"


def system_headers(file, text):
    for match in SYSTEM_HEADER.finditer(text):
        if file.parts[0] != "platform":
            yield match.start(), f"<{match[1]}> outside of platform/"
        elif match[1].startswith("win") and file.parts[1] not in ("windows", "system_time.h"):
            yield match.start(), f"<{match[1]}> outside of platform/windows/ and platform/system_time.h"


def locale_calls(_, text):
    for match in LOCALE_CALL.finditer(text):
        yield match.start(1), f"{match[1]} reads the process's locale"
    for match in LOCALE_STREAM.finditer(text):
        yield match.start(1), f"{match[1]} formats as the process's locale does"


def file_calls(file, text):
    if file.parts[0] == "platform":
        return
    for match in FILE_CALL.finditer(text):
        if not RANGE_REMOVE.match(text, match.start()):
            yield match.start(), f"{match[0].strip('( ')} does not know device paths; use platform/"


def closing(text, opening):
    depth = 0
    for match in re.compile(r"[()]").finditer(text, opening):
        depth += 1 if match[0] == "(" else -1
        if depth == 0:
            return match.start()
    return len(text)


def printed_reals(text, code):
    """Calls of the printf family whose format, a literal, converts a real number."""
    for match in PRINTF.finditer(code):
        call = text[match.end():closing(code, match.end() - 1)]
        if any(REAL_CONVERSION.search(literal[1]) for literal in LITERAL.finditer(call)):
            yield match.start(), "printf of a real number writes the process's decimal point"


def problems_of(file, text):
    with_literals, code = without_comments(text), code_only(text)
    yield from system_macros(file, code)
    if file.parts[0] in LIBRARY_FOLDERS:
        yield from system_headers(file, with_literals)
        yield from locale_calls(file, code)
        yield from file_calls(file, code)
        yield from printed_reals(with_literals, code)


def check(root):
    problems = []
    for file in cpp_files(root):
        if len(file.parts) < 2:
            continue
        text = read(root, file)
        for position, reason in sorted(problems_of(file, text)):
            problems.append(f"{file}:{line_of(text, position)}: {reason}")
    return problems


if __name__ == "__main__":
    run(check, "calls of the system and of the locale")
