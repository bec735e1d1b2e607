"""Compares what platform_answers printed here and in another build.

compare_answers.py PRESET HERE THERE DIFFERENCES

A difference must be listed in DIFFERENCES, and what is listed there must differ.
"""

import re
import sys
from collections import Counter
from pathlib import Path


def answers(file):
    """The answers by call; equal calls are told apart by their number."""
    found, seen = {}, Counter()
    for line in Path(file).read_text(encoding="utf-8").splitlines():
        call, _, answer = line.partition(" => ")
        seen[call] += 1
        found[call if seen[call] == 1 else f"{call} #{seen[call]}"] = answer
    return found


def listed(file, preset):
    """(pattern, reason) of the differences of a preset."""
    for line in Path(file).read_text(encoding="utf-8").splitlines():
        if line and not line.startswith("#"):
            of, pattern, reason = (part.strip() for part in line.split(" | "))
            if of == preset:
                yield re.compile(pattern), reason


def compare(preset, here, there, differences):
    rules, used = list(listed(differences, preset)), Counter()
    unexplained = []
    for call in here.keys() | there.keys():
        if here.get(call) == there.get(call):
            continue
        rule = next((rule for rule in rules if rule[0].fullmatch(call)), None)
        if rule:
            used[rule] += 1
        else:
            unexplained.append(f"{call}\n    here:  {here.get(call)}\n    there: {there.get(call)}")
    unexplained += [f"listed, but no difference any more: {rule[0].pattern}" for rule in rules if not used[rule]]
    return used, sorted(unexplained)


def main(preset, here, there, differences):
    here, there = answers(here), answers(there)
    used, unexplained = compare(preset, here, there, differences)
    print(f"{len(here)} calls compared, {sum(used.values())} listed differences, {len(unexplained)} others")
    for (_, reason), count in used.items():
        print(f"  {count}: {reason}")
    print("\n".join(unexplained[:100]), end="\n" if unexplained else "")
    return 1 if unexplained or not here else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
