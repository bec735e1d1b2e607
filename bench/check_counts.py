"""Compares instruction counts, read as lines "operation count", with those of a file; fails when one is another. One that
has become smaller fails too: it would hide that it grows again, and an operation that does not do its work is quick."""
import sys

TOLERANCE = 0.03


def read(lines):
    return {name: int(count) for name, count in (line.split() for line in lines if line.strip())}


def main():
    with open(sys.argv[1], encoding="ascii") as file:
        baseline = read(file)
    counts = read(sys.stdin)
    failed = sorted(baseline.keys() ^ counts.keys())
    for name in failed:
        print(f"{name}: not among both; scripts/bench --baseline writes the list anew", file=sys.stderr)
    for name in sorted(baseline.keys() & counts.keys()):
        change = counts[name] / baseline[name] - 1
        verdict = ""
        if change > TOLERANCE:
            verdict = "  slower"
            failed.append(name)
        elif change < -TOLERANCE:
            verdict = "  faster: scripts/bench --baseline remembers it"
            failed.append(name)
        print(f"{name:16} {counts[name]:>12} instructions  {change:+7.1%}{verdict}")
    return 1 if failed or not counts else 0


sys.exit(main())
