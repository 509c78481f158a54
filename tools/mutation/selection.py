"""Which of all mutants are tried: a number of them, spread over the sources and over the rules."""

import hashlib
from pathlib import Path

from . import rules

FOLDERS = ("animatedimage", "framework")
FEWEST = 5


def sources(root):
    """The sources that are changed, by their paths from the root."""
    root = Path(root)
    found = [path for folder in FOLDERS for path in (root / folder).rglob("*")
             if path.suffix in (".cpp", ".h")]
    return sorted(str(path.relative_to(root)) for path in found)


def queues(root, files, seed):
    """For each source with mutants all of them, in the order in which they are tried: by a draw
    that depends on the seed and on each mutant alone, the rules by turns, no line again before the
    others of its rule."""
    ordered = {}
    for file in files:
        found = rules.mutants(file, (Path(root) / file).read_text())
        found.sort(key=lambda m: hashlib.sha1(f"{seed} {m.key}".encode()).digest())
        ranks, used, turns = {}, {}, {}
        for mutant in found:
            place = (mutant.rule, mutant.line)
            used[place] = used.get(place, 0) + 1
            ranks[mutant.key] = used[place]
        found.sort(key=lambda m: ranks[m.key])
        for mutant in found:
            turns[mutant.rule] = turns.get(mutant.rule, 0) + 1
            ranks[mutant.key] = turns[mutant.rule]
        found.sort(key=lambda m: ranks[m.key])
        if found:
            ordered[file] = found
    return ordered


def quotas(queued, count):
    """How many mutants of each source to try: a few of each, the others by its length."""
    quota = {file: min(FEWEST, len(found)) for file, found in queued.items()}
    left = max(0, count - sum(quota.values()))
    room = {file: len(found) - quota[file] for file, found in queued.items()}
    total = sum(room.values())
    shares = {file: min(room[file], left * room[file] / total) if total else 0 for file in queued}
    for file in queued:
        quota[file] += int(shares[file])
    rest = count - sum(quota.values())
    for file in sorted(queued, key=lambda f: int(shares[f]) - shares[f])[: max(0, rest)]:
        quota[file] += 1
    return quota
