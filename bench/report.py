"""Writes docs/PERFORMANCE.md and its chart from the lines that the measurements print.

    report.py RESULTS DOCUMENT CHART PACKAGE...
"""
import math
import os
import subprocess
import sys
from collections import defaultdict

# What is to be reached. "faster": so many times as fast as the other; "within": so many times the time of the limit.
# Reasons are given for rows that may fall short.
ROWS = [
    ("GPX read into points", "read GPX", "pugixml", "faster", 2),
    ("", "read GPX", "expat", "faster", 5),
    ("", "read GPX", "libxml2 reader", "faster", 8),
    ("", "read GPX, whole program", "gpsbabel", "faster", 8),
    ("", "read GPX, whole program", "gpxpy", "faster", 100),
    ("", "read GPX", "limit: bare RapidXML load and parse", "within", 1.6),
    ("… of another program, the first time", "read GPX of another program, the first time", "pugixml", "faster", None),
    ("… of another program, later on", "read GPX of another program, later on", "pugixml", "faster", None),
    ("GPX written from points", "write GPX", "pugixml", "faster", 2),
    ("", "write GPX", "limit: writing the same bytes", "within", 6),
    ("program started and ended", "start and end of a program", "gpsbabel", "faster", None),
    ("", "start and end of a program", "gpxpy", "faster", None),
    ("", "start and end of a program", "the command qtrace", "faster", None),
    ("GPX read and written", "read and write GPX, whole program", "gpsbabel", "faster", 10),
    ("", "read and write GPX, whole program", "gpxpy", "faster", None),
    ("simplification to 2 m", "simplify", "Boost.Geometry", "faster", 1),
    ("", "simplify", "GEOS", "faster", 1),
    ("… of a line made to be slow", "simplify, made to be slow", "Boost.Geometry", "faster", 1),
    ("", "simplify, made to be slow", "GEOS", "faster", 1),
    ("durable append of a batch", "append a batch durably", "SQLite, WAL, synchronous FULL", "faster", 1),
    ("", "append a batch durably", "SQLite, rollback journal, synchronous FULL", "faster", None),
    ("", "append a batch durably", "limit: one write and its sync", "within", None),
    ("", "append a batch durably", "limit: the writes and syncs of note and ring", "within", 1.1),
    ("opening a ring", "open ring", "SQLite", "faster", 3),
    ("library scan, tracks of 1000 points", "scan library", "pugixml", "faster", 2),
    ("", "scan library", "limit: reading the same bytes", "within", 3),
    ("length", "length", "Boost.Geometry", "faster", 1),
    ("area", "area", "Boost.Geometry", "faster", 1),
    ("key points", "key points", "limit: copying the same bytes", "within", None),
    ("record stream, saved", "record stream, save", "limit: copying the same bytes", "within", None),
    ("record stream, loaded", "record stream, load", "limit: copying the same bytes", "within", None),
    ("fixes through the strategy by time", "fixes through the strategy by time", "limit: copying the same bytes",
     "within", None),
    ("… by distance", "fixes through the strategy by distance", "limit: copying the same bytes", "within", None),
    ("… automatic", "fixes through the strategy automatic", "limit: copying the same bytes", "within", None),
]

# The size that a row's bar is judged at, where others are shown for the growth only.
JUDGED_AT = {"open ring": 10000, "append a batch durably": 30}

# Above this a work grows faster than its size.
MOST_GROWTH = 1.1

REASONS = {
    ("simplify", "Boost.Geometry"):
        "a thousand points take some 30 microseconds, and both the same within what the rounds differ by.",
    ("append a batch durably", "SQLite, WAL, synchronous FULL"):
        "an append syncs twice, first a note of what it will write and then the ring, so that `Log.dat` itself is complete "
        "on storage when the append returns and a power cut in the midst of it costs nothing. SQLite syncs its log alone; "
        "with a rollback journal its file is complete like ours, at the price in the row below.",
    ("append a batch durably", "limit: the writes and syncs of note and ring"):
        "besides the syncs an append stamps its points, takes a checksum of the note and moves the recording in memory: "
        "some 10 microseconds for one point, 20 for 30 and 100 for 300. The rest is noise of this disk's syncs.",
    ("scan library", "limit: reading the same bytes"):
        "with few tracks the bytes come from the processor's own cache in no time; finding the files, ignoring letter "
        "case, and the look at every tag of the text, which a damaged document needs, remain.",
    ("read and write GPX, whole program", "gpsbabel"):
        "of a small file most is the start and end of a process, which both pay: see the row on them.",
}


def read_results(path):
    """times[work][size][who] = (seconds, ratio to ours, its least, its most); figures = [(work, size, what, value)]."""
    times, figures = defaultdict(lambda: defaultdict(dict)), []
    with open(path, encoding="utf-8") as file:
        for line in file:
            work, size, who, value, *ratios = line.rstrip("\n").split("\t")
            if len(ratios) == 3:
                times[work][int(size)][who] = (float(value), *(float(ratio) for ratio in ratios))
            else:
                figures.append((work, int(size), who, float(value)))
    return times, figures


def short(number):
    for unit, sign in ((1_000_000, "M"), (1000, "k")):
        if number >= unit and number % unit == 0:
            return f"{number // unit}{sign}"
    return str(number)


def plain(value):
    return f"{value:.0f}" if value >= 20 else f"{value:.1f}" if value >= 3 else f"{value:.2f}"


def measured(times, work, who, kind):
    """By size: the factor as the row states it, and its least and most."""
    factors = {}
    for size, by_who in sorted(times.get(work, {}).items()):
        if who in by_who:
            _, ratio, least, most = by_who[who]
            factors[size] = (ratio, least, most) if kind == "faster" else (1 / ratio, 1 / most, 1 / least)
    return factors


def verdict(factors, work, kind, bar):
    if bar is None:
        return "", True
    judged = [factor for size, factor in factors.items() if size == JUDGED_AT.get(work, size)]
    reached = [factor >= bar if kind == "faster" else factor <= bar for factor, _, _ in judged]
    if judged and all(reached):
        is_close = any(least < bar < most for _, least, most in judged)
        return "yes" + (", not in every round" if is_close else ""), True
    return ("**no**" if not any(reached) else "**not at every size**"), False


def table(times):
    lines = ["| work | against | to be reached | measured | reached |", "|---|---|---|---|---|"]
    missed = []
    for title, work, who, kind, bar in ROWS:
        factors = measured(times, work, who, kind)
        if bar is None:
            wanted = "stated"
        elif kind == "faster":
            wanted = "no slower" if bar == 1 else f"{bar} times faster"
        else:
            wanted = f"within {bar} times"
        sizes = ", ".join(f"{short(size)}: {plain(factor)}" for size, (factor, _, _) in factors.items())
        word, is_reached = verdict(factors, work, kind, bar)
        lines.append(f"| {title} | {who} | {wanted} | {sizes or 'not measured'} | {word} |")
        if not is_reached:
            missed.append(f"- **{work}, against {who}**: {REASONS.get((work, who), 'no reason is known.')}")
    return lines, missed


def exponent(by_size):
    points = [(math.log(size), math.log(by_who["ours"][0])) for size, by_who in by_size.items()]
    mean_x = sum(x for x, _ in points) / len(points)
    mean_y = sum(y for _, y in points) / len(points)
    return sum((x - mean_x) * (y - mean_y) for x, y in points) / sum((x - mean_x) ** 2 for x, _ in points)


def growth(times):
    lines = ["| work | sizes | time of ours at the largest | exponent | as its size |", "|---|---|---|---|---|"]
    for work, by_size in times.items():
        if len(by_size) < 3:
            continue
        seconds = by_size[max(by_size)]["ours"][0]
        sizes = ", ".join(short(size) for size in sorted(by_size))
        grows = exponent(by_size)
        word = "yes" if grows <= MOST_GROWTH else "**no**"
        lines.append(f"| {work} | {sizes} | {1000 * seconds:.3g} ms | {grows:.2f} | {word} |")
    return lines


def kept_points(figures):
    """One line a size: what each kept."""
    by_size = defaultdict(list)
    for work, size, what, value in figures:
        if work == "simplify: points kept":
            by_size[size].append(f"{what} {value:,.0f}")
    return [("points kept in simplifying", size, "; ".join(kept)) for size, kept in by_size.items()]


def figure_table(figures):
    lines = ["| what | size | figure |", "|---|---|---|"]
    lines += [f"| {work} | {short(size)} | {text} |" for work, size, text in kept_points(figures)]
    for work, size, what, value in figures:
        if work == "simplify: points kept":
            continue
        if what == "seconds":
            text = f"{1000 * value:.3f} ms"
        else:
            text = f"{value:,.0f} {what}" if value >= 100 else f"{value:.2f} {what}"
        lines.append(f"| {work} | {short(size) if size else ''} | {text} |")
    return lines


def processor():
    with open("/proc/cpuinfo", encoding="utf-8") as file:
        for line in file:
            if line.startswith("model name"):
                return line.split(":", 1)[1].strip()
    return "unknown processor"


def versions(packages):
    result = subprocess.run(["dpkg-query", "-W", "-f", "${Package} ${Version}\n", *packages], capture_output=True,
                            text=True, check=True)
    compiler = subprocess.run(["c++", "--version"], capture_output=True, text=True, check=True).stdout.splitlines()[0]
    return [f"- {line}" for line in [compiler, *result.stdout.splitlines()]]


def commit():
    result = subprocess.run(["git", "log", "-1", "--format=%h"], capture_output=True, text=True, check=False)
    return "commit " + (result.stdout.strip() or "unknown")


def chart(times):
    """Bars on a logarithmic scale: how many times our time the others take, at the largest size measured with them, or the
    one that is judged."""
    bars = []
    for _, work, who, kind, bar in ROWS:
        factors = measured(times, work, who, kind)
        if kind == "faster" and factors and not work.endswith("made to be slow"):
            size = JUDGED_AT.get(work, max(factors))
            bars.append((f"{work}, {short(size)}: {who}", factors[size][0]))
    left, width, step = 470, 420, 26
    low, high = math.log10(0.3), math.log10(max(300, *(value for _, value in bars)))
    place = lambda value: left + width * (math.log10(value) - low) / (high - low)
    height = step * len(bars) + 80
    out = [f'<svg xmlns="http://www.w3.org/2000/svg" width="{left + width + 80}" height="{height}" '
           'font-family="sans-serif" font-size="13">', '<rect width="100%" height="100%" fill="#ffffff"/>',
           '<text x="20" y="26" font-size="16">How many times our time the others take (to the right: ours is faster)'
           '</text>']
    for mark in (1, 10, 100):
        x = place(mark)
        color = "#444444" if mark == 1 else "#cccccc"
        out.append(f'<line x1="{x:.1f}" y1="42" x2="{x:.1f}" y2="{height - 26}" stroke="{color}"/>')
        out.append(f'<text x="{x:.1f}" y="{height - 10}" text-anchor="middle">{mark}</text>')
    for index, (label, value) in enumerate(bars):
        y = 50 + step * index
        start, end = sorted((place(1), place(value)))
        color = "#0072b2" if value >= 1 else "#d55e00"
        out.append(f'<text x="{left - 10}" y="{y + 13}" text-anchor="end">{label}</text>')
        out.append(f'<rect x="{start:.1f}" y="{y}" width="{max(end - start, 1):.1f}" height="17" fill="{color}"/>')
        out.append(f'<text x="{max(end, place(1)) + 6:.1f}" y="{y + 13}">{plain(value)}</text>')
    return "\n".join([*out, "</svg>", ""])


def document(times, figures, packages):
    rows, missed = table(times)
    memory = os.sysconf("SC_PAGE_SIZE") * os.sysconf("SC_PHYS_PAGES") / 2 ** 30
    return "\n".join([
        "# How fast it is", "",
        "Written by `scripts/bench`, which installs the programs compared with, measures everything in one run and "
        "writes this page. Ratios carry over to other machines, milliseconds do not.", "",
        "![How many times our time the others take](images/performance.svg)", "",
        "Each round runs each program once, in turn; the ratios are those of the medians of seven rounds. What counts "
        "is the processor's time, kernel included, and for appends the time that passes. Files lie in memory, those of "
        "appends on the disk: times of syncs depend on it, so take their ratios. All readers find the same points, and "
        "those of the others convert numbers and times with the fastest that the C++ library offers. A limit is a "
        "bare program of ours; \"measured\" is then how many times its time we take. Whole programs are, on our side, a "
        "small one that is linked statically (bench/programs); gpsbabel and Python come as Debian has them, and gpxpy is "
        "spared the million. Documents of another program have line feeds for line ends, which the first reading makes "
        "CR LF of, and positions with 15 to 17 digits. Boost.Geometry computes the area on the sphere, ours in a plane.",
        "", *rows, "",
        *(["## Where it falls short", "", *missed, ""] if missed else []),
        "Debian's gpsbabel simplifies in a time that grows with the square of the number of points, which its makers "
        "have mended since; so it is not compared there. Boost.Geometry and GEOS need such a time for lines made to be "
        "slow, where ours divides in the middle.", "",
        "## Growth", "",
        "The exponent e of a time that grows as size to the power of e, over all sizes measured; 1 is proportional.", "",
        *growth(times), "",
        "Thinning divides again and again, which is n log n. What else is above 1.1 works in the processor's caches at "
        "the smallest size, and at the largest in memory that the system hands out meanwhile.", "",
        "## What it takes besides", "", *figure_table(figures), "",
        "`LoadData` reads the ring, so its time with a full one includes that. Bytes written are those handed to the "
        "system; pages are what the system counts as changed by it, 4 KiB each.", "",
        "## Machine and versions", "",
        f"- {processor()}, {os.cpu_count()} processors, {memory:.0f} GiB of memory, {os.uname().sysname} "
        f"{os.uname().release}; a virtual machine that others use as well", f"- measured at {commit()}",
        *versions(packages), ""])


def main():
    results, page, picture, *packages = sys.argv[1:]
    times, figures = read_results(results)
    with open(picture, "w", encoding="utf-8") as file:
        file.write(chart(times))
    with open(page, "w", encoding="utf-8") as file:
        file.write(document(times, figures, packages))


main()
