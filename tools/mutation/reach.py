"""Which test programs reach which lines, measured with gcov.

A test that does not reach a line cannot notice a change of it, and one that spends most of its time
in a source is likely to notice a change there: this decides which tests run, and in which order.
"""

import contextlib
import gzip
import json
import os
import shutil
from pathlib import Path

from . import trial, workshop


def partner_of(file):
    """The source that a header belongs to by its name."""
    return str(Path(file).with_suffix(".cpp")) if file.endswith(".h") else ""


class Reach:
    def __init__(self, shop, folder):
        self.shop = shop
        self.folder = Path(folder)
        self.store = self.folder / "reach.json"
        self.data = {}

    def prepare(self, runner, say):
        """Measures the tests whose programs or libraries have changed since the last time."""
        states = [self._library_state(output) for output in self.shop.library_files]
        sources = workshop.digest_of(*states)
        if self.store.exists():
            self.data = json.loads(self.store.read_text())
        if self.data.get("sources") != sources:
            self.data = {"sources": sources, "tests": {}}
        stale = [test for test in self.shop.tests
                 if self._known(test).get("program") != self._program_state(test)]
        if not stale:
            return
        say(f"Measuring what {len(stale)} test programs reach")
        with self._instrumented():
            for test in stale:
                self._measure(test, runner)
        with self._linked_again(stale):
            for test in stale:
                known = self._known(test)
                known["seconds"] = runner.measure(test)
                if known["seconds"] is None:
                    say(f"{test['name']} fails without any change: it is left out")
        self.store.write_text(json.dumps(self.data))

    def _known(self, test):
        return self.data["tests"].get(test["name"], {})

    def _library_state(self, output):
        objects = [part for part in self.shop.links[output] if part.endswith(".o")]
        files = sorted({name for part in objects for name in self.shop.dependencies.get(part, [])})
        return workshop.digest_of(*[(self.shop.tree / name).read_bytes() for name in files])

    def _program_state(self, test):
        return workshop.digest_of((self.shop.build / test["program"]).read_bytes())

    # Measuring.

    def _instrumented(self):
        """Links both libraries, and the programs that hold code of them, with counters."""
        stack = contextlib.ExitStack()
        counted = {}
        for output in self.shop.library_files:
            for part in self.shop.links[output]:
                if part.endswith(".o"):
                    counted[part] = self._counted(part)
        outputs = list(self.shop.library_files)
        outputs += [t["program"] for t in self.shop.tests
                    if set(self.shop.links[t["program"]]) & set(counted)]
        for output in outputs:
            if not stack.enter_context(self.shop.linked(output, counted, ["--coverage"])):
                raise workshop.BuildFailed(f"{output} cannot be linked with counters")
        return stack

    def _linked_again(self, tests):
        """Links both libraries, and programs, as mutants are linked, but without a change."""
        stack = contextlib.ExitStack()
        for output in [*self.shop.library_files, *(test["program"] for test in tests)]:
            if not stack.enter_context(self.shop.linked(output, {})):
                raise workshop.BuildFailed(f"{output} cannot be linked again")
        return stack

    def _counted(self, part):
        """An object with counters, compiled unless it is there."""
        objects = self.folder / "counted"
        made, note = objects / part, (objects / part).with_suffix(".from")
        ingredients = self.shop.ingredients(part) if part in self.shop.dependencies else ""
        if not made.exists() or not note.exists() or note.read_text() != ingredients:
            if not self.shop.compile(part, objects, " --coverage"):
                raise workshop.BuildFailed(f"{part} does not compile with counters")
            note.write_text(ingredients)
        return made

    def _measure(self, test, runner):
        counts = self.folder / "counts"
        shutil.rmtree(counts, ignore_errors=True)
        runner.run(test, environment={"GCOV_PREFIX": str(counts)})
        lines = {}
        data = [str(path) for path in counts.rglob("*.gcda")]
        for path in data:
            # gcov looks for the notes beside the counts.
            notes = Path("/") / Path(path).relative_to(counts).with_suffix(".gcno")
            os.symlink(notes, Path(path).with_suffix(".gcno"))
        if data:
            workshop.run(["gcov", "--json-format", "--preserve-paths", *data], counts)
        for report in counts.glob("*.gcov.json.gz"):
            self._collect(json.loads(gzip.decompress(report.read_bytes())), lines)
        self.data["tests"][test["name"]] = {
            "program": self._program_state_of_kept(test),
            "lines": {name: sorted(numbers) for name, numbers in lines.items()},
        }

    def _program_state_of_kept(self, test):
        path = self.shop.build / test["program"]
        kept = path.with_name(path.name + workshop.KEPT)
        return workshop.digest_of((kept if kept.exists() else path).read_bytes())

    def _collect(self, report, lines):
        for file in report["files"]:
            path = os.path.normpath(self.shop.build / file["file"])
            if not path.startswith(str(self.shop.tree)):
                continue
            name = os.path.relpath(path, self.shop.tree)
            counted = self.data.setdefault("counted", {}).setdefault(name, [])
            for line in file["lines"]:
                if line["line_number"] not in counted:
                    counted.append(line["line_number"])
                if line["count"]:
                    lines.setdefault(name, set()).add(line["line_number"])

    # Asking.

    def tests_for(self, mutant):
        """The tests that may notice a mutant, the likeliest first."""
        wanted = set(range(mutant.first_line, mutant.last_line + 1))
        is_counted = bool(wanted & set(self.data.get("counted", {}).get(mutant.file, [])))
        known = {test["name"]: self._known(test) for test in self.shop.tests}
        usable = [test for test in self.shop.tests if known[test["name"]].get("seconds") is not None]
        is_reached = any(mutant.file in known[test["name"]]["lines"] for test in usable)
        has_partner = (self.shop.tree / partner_of(mutant.file)).exists()
        found = []
        for test in usable:
            lines, seconds = known[test["name"]]["lines"], known[test["name"]]["seconds"]
            reached = set(lines.get(mutant.file, []))
            # What a program itself compiles of a header is not counted: the source tells, if there
            # is one.
            includes = bool(self.shop.users_of(mutant.file, test["program"]))
            partner = set(lines.get(partner_of(mutant.file), [])) if includes else set()
            # A line without code of its own, such as that of a constant, is judged by its file, and
            # a file without code by nothing; nor is a program without counts.
            may_reach = not is_counted and (reached or not is_reached)
            is_all_there_is = includes and not has_partner
            if wanted & reached or partner or is_all_there_is or may_reach or not lines:
                total = sum(len(numbers) for numbers in lines.values()) or 1
                found.append((len(reached | partner) / total / (seconds + 0.1), test))
        return [test for _, test in sorted(found, key=lambda pair: -pair[0])]

    def seconds(self, test):
        return self._known(test)["seconds"]
