"""What is known of mutants: how each ended, and which survivors are accepted with what reason."""

import json
from pathlib import Path

KILLED, SURVIVED, DISCARDED = "killed", "survived", "discarded"


class Ledger:
    """A file of JSON lines; of two lines about a mutant the later one counts."""

    def __init__(self, path):
        self.path = Path(path)
        self.entries = {}
        if self.path.exists():
            for line in self.path.read_text().splitlines():
                entry = json.loads(line)
                self.entries[entry["key"]] = entry

    def outcome(self, mutant):
        return self.entries.get(mutant.key, {}).get("outcome")

    def add(self, mutant, outcome, by, when):
        entry = {
            "key": mutant.key, "outcome": outcome, "by": by, "when": when, "file": mutant.file,
            "line": mutant.line, "function": mutant.function, "rule": mutant.rule,
            "before": mutant.before, "after": mutant.after,
        }
        self.entries[mutant.key] = entry
        with self.path.open("a") as file:
            file.write(json.dumps(entry) + "\n")

    def killers(self, file):
        """How often each test was the first to notice a mutant of @p file, or of the source or the
        header of the same name."""
        name, times = Path(file).with_suffix(""), {}
        for entry in self.entries.values():
            if Path(entry["file"]).with_suffix("") == name and entry["outcome"] == KILLED:
                test = entry["by"].split("::")[0]
                times[test] = times.get(test, 0) + 1
        return times


class FormatError(Exception):
    pass


class Accepted:
    """The list of survivors that no test can notice.

        FILE FUNCTION
        - the line as it is
        + the line as the mutant has it
        Why nothing can see it, on one line or several.

    An entry may have several pairs of lines, and holds wherever in the function they match. Entries
    are separated by empty lines; lines that begin with # are remarks. The function is its name as
    its definition writes it, or "-" outside functions.
    """

    def __init__(self, path):
        self.reasons = {}
        self.used = set()
        text = Path(path).read_text() if Path(path).exists() else ""
        lines = [line for line in text.splitlines() if not line.startswith("#")]
        for entry in "\n".join(lines).split("\n\n"):
            if entry.strip():
                self._read(entry.strip().splitlines())

    def _read(self, lines):
        head, body = lines[0].split(), lines[1:]
        pairs, reason = [], []
        for line in body:
            if line.startswith("- ") or line.rstrip() == "-":
                pairs.append([line[2:].strip(), None])
            elif line.startswith("+") and pairs and pairs[-1][1] is None:
                pairs[-1][1] = line[2:].strip()
            else:
                reason.append(line.strip())
        if len(head) != 2 or not pairs or any(after is None for _, after in pairs) or not reason:
            raise FormatError(f"not an entry of file and function, lines and a reason: {lines[0]}")
        for before, after in pairs:
            self.reasons[(*head, before, after)] = " ".join(reason)

    def reason(self, mutant):
        """Why a mutant is accepted, or None."""
        place = (mutant.file, mutant.function or "-", mutant.before, mutant.after)
        if place in self.reasons:
            self.used.add(place)
        return self.reasons.get(place)

    def outdated(self, mutants):
        """The accepted changes that no mutant makes any more."""
        existing = {(m.file, m.function or "-", m.before, m.after) for m in mutants}
        return sorted(place for place in self.reasons if place not in existing)
