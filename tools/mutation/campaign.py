"""Tries mutants one after another and reports on them."""

import contextlib
import fcntl
import itertools
import queue
import sys
import threading
import time
from pathlib import Path

from . import ledger, reach, selection, trial, workshop

# So many tests judge a mutant before it is compared with the original when both are optimised.
FIRST_TESTS = 4


def say(text):
    print(text, file=sys.stderr, flush=True)


class Worker:
    """One tree in which mutants are tried."""

    def __init__(self, root, folder, jobs):
        self.shop = workshop.Workshop(root, folder)
        self.shop.prepare(jobs, say)
        self.runner = trial.Runner(Path(folder) / "temporary")
        self.reach = None

    def judge(self, mutant, text, killers):
        """How a mutant ends, and the test that ended it."""
        with self.shop.changed(mutant.file, mutant.applied(text)):
            replaced = self._compiled(mutant.file)
            if replaced is None:
                return ledger.DISCARDED, ""
            return self._tried(mutant, text, replaced, killers)

    def _changes_nothing(self, file, text):
        """Whether the compiler, when it optimises, makes the same of a changed source as of its
        original @p text: it has then shown that both do the same."""
        parts = [part for output in self.shop.library_files
                 for part in self.shop.users_of(file, output)]
        mutated = [self.shop.optimised(part) for part in parts]
        with self.shop.changed(file, text):
            return mutated == [self.shop.optimised(part) for part in parts]

    def _compiled(self, file):
        """The new objects of the libraries; None when the mutant is refused or changes nothing."""
        replaced, is_changed = {}, False
        for output in self.shop.library_files:
            for part in self.shop.users_of(file, output):
                compiled = self.shop.compile(part)
                if not compiled:
                    return None
                replaced[part] = compiled
                digest = workshop.digest_of(compiled.read_bytes())
                is_changed = is_changed or digest != self.identities[part]
        return replaced if is_changed else None

    def know_identities(self, file):
        """To be called before the first mutant of a source, while the tree is unchanged."""
        parts = [part for output in self.shop.library_files
                 for part in self.shop.users_of(file, output)]
        self.identities = {part: self.shop.identity(part) for part in parts}

    def _tried(self, mutant, text, replaced, killers):
        with contextlib.ExitStack() as stack:
            for output in self.shop.library_files:
                if set(self.shop.links[output]) & set(replaced):
                    if not stack.enter_context(self.shop.linked(output, replaced)):
                        return ledger.DISCARDED, ""
            tests = self.reach.tests_for(mutant)
            tests.sort(key=lambda test: -killers.get(test["name"], 0))
            for place, test in enumerate(tests):
                # Most are killed by one of the first.
                if place == FIRST_TESTS and self._changes_nothing(mutant.file, text):
                    return ledger.DISCARDED, ""
                failed = self._failure(test, mutant, replaced)
                if failed:
                    return ledger.KILLED, f"{test['name']}::{failed}"
            if len(tests) <= FIRST_TESTS and self._changes_nothing(mutant.file, text):
                return ledger.DISCARDED, ""
        return ledger.SURVIVED, "" if tests else "no test comes here"

    def _failure(self, test, mutant, replaced):
        """What failed in one test program, which is linked anew when it holds changed code."""
        program = test["program"]
        parts = self.shop.users_of(mutant.file, program)
        seconds = trial.allowance(self.reach.seconds(test))
        if not parts:
            return self.runner.run(test, seconds)
        for part in parts:
            if part not in replaced:
                replaced[part] = self.shop.compile(part)
            if not replaced[part]:
                return "does not compile"
        with self.shop.linked(program, replaced) as is_linked:
            return self.runner.run(test, seconds) if is_linked else "does not link"


class Campaign:
    def __init__(self, root, options):
        self.root = Path(root)
        self.options = options
        self.folder = self.root / "build" / "mutation"
        self.folder.mkdir(parents=True, exist_ok=True)
        self.ledger = ledger.Ledger(self.folder / "results.jsonl")
        self.accepted = ledger.Accepted(self.root / "tests" / "mutants-accepted.txt")
        files = selection.sources(root)
        self.files = [f for f in files if not options.file or f in options.file]
        unknown = set(options.file) - set(files)
        if unknown:
            raise SystemExit(f"mutate: not a source that is changed: {', '.join(sorted(unknown))}")
        self.queues = selection.queues(root, self.files, options.seed)
        self.quota = selection.quotas(self.queues, options.count)
        self.lock = threading.Lock()
        self.stopping = threading.Event()
        self.ended = []

    # Choosing.

    def chosen(self, file):
        """The mutants of a source that count, as far as it is known which do: those discarded
        make room for the next ones."""
        usable = (m for m in self.queues[file] if self.ledger.outcome(m) != ledger.DISCARDED)
        return list(itertools.islice(usable, self.quota[file]))

    def pending(self, file):
        """The next mutant of a source to try, or None."""
        for mutant in self.chosen(file):
            if self.ledger.outcome(mutant) is None:
                return mutant
        return None

    # Trying.

    def run(self):
        """Tries what is chosen and not yet known."""
        waiting = [file for file in self.queues if self.pending(file)]
        if waiting:
            self._work(waiting, lambda file: iter(lambda: self.pending(file), None))

    def run_survivors(self):
        """Tries again what has survived and is not accepted."""
        again = {file: [m for m in found if self.ledger.outcome(m) == ledger.SURVIVED
                        and not self.accepted.reason(m)] for file, found in self.queues.items()}
        waiting = [file for file, found in again.items() if found]
        if waiting:
            self._work(waiting, lambda file: again[file])

    def _work(self, files, mutants_of):
        # Two runs would change each other's trees.
        with (self.folder / "lock").open("w") as lock:
            try:
                fcntl.flock(lock, fcntl.LOCK_EX | fcntl.LOCK_NB)
            except BlockingIOError:
                raise SystemExit("mutate: another run is at work") from None
            self._work_alone(files, mutants_of)

    def _work_alone(self, files, mutants_of):
        jobs = min(self.options.jobs, len(files))
        workers = [Worker(self.root, self.folder / str(i + 1), self.options.jobs)
                   for i in range(jobs)]
        measured = reach.Reach(workers[0].shop, self.folder)
        measured.prepare(workers[0].runner, say)
        for worker in workers:
            worker.reach = reach.Reach(worker.shop, self.folder)
            worker.reach.data = measured.data
        # A change of a header compiles all that includes it: the most used come last.
        waiting = queue.SimpleQueue()
        for file in sorted(files, key=workers[0].shop.use_count):
            waiting.put(file)
        threads = [threading.Thread(target=self._serve_to_the_end,
                                    args=(worker, waiting, mutants_of)) for worker in workers]
        started = 0
        try:
            for thread in threads:
                thread.start()
                started += 1
            self._wait_for(started)
        finally:
            # When the run is stopped, each ends with its mutant and puts back what it changed.
            self.stopping.set()
            self._wait_for(started)

    def _wait_for(self, count):
        """Waits until so many threads have ended. A join() that a signal interrupts would take its
        thread for ended."""
        while len(self.ended) < count:
            time.sleep(0.2)

    def _serve_to_the_end(self, *arguments):
        try:
            self._serve(*arguments)
        finally:
            self.ended.append(True)

    def _serve(self, worker, waiting, mutants_of):
        with contextlib.suppress(queue.Empty):
            while True:
                file = waiting.get_nowait()
                # The tree holds the sources as they were when it was prepared.
                text = (worker.shop.tree / file).read_text()
                if text != (self.root / file).read_text():
                    say(f"{file} has changed meanwhile: run again for it")
                    continue
                worker.know_identities(file)
                for mutant in mutants_of(file):
                    if self.stopping.is_set():
                        return
                    outcome, by = worker.judge(mutant, text, self.ledger.killers(file))
                    with self.lock:
                        self.ledger.add(mutant, outcome, by, trial.now())
                    if outcome != ledger.DISCARDED:
                        say(f"{outcome:8} {mutant}  [{by}]")

    # Telling.

    def report(self):
        """Prints the figures of each source and what survived; gives whether all is well."""
        survivors, rows = [], []
        for file in self.queues:
            ended = [(m, self.ledger.outcome(m)) for m in self.chosen(file)]
            tried = [m for m, outcome in ended if outcome]
            survived = [m for m, outcome in ended if outcome == ledger.SURVIVED]
            accepted = [m for m in survived if self.accepted.reason(m)]
            survivors += [m for m in survived if not self.accepted.reason(m)]
            rows.append((file, len(tried), len(tried) - len(survived), len(accepted)))
        width = max([len(row[0]) for row in rows] + [len("source")])
        print(f"{'source':{width}}  mutants  killed  accepted  survived")
        rows.append(("all", *(sum(row[i] for row in rows) for i in (1, 2, 3))))
        for file, tried, killed, accepted in rows:
            left = tried - killed - accepted
            print(f"{file:{width}}  {tried:7}  {killed:6}  {accepted:8}  {left:8}")
        _, tried, killed, _ = rows[-1]
        if tried:
            print(f"\n{100.0 * killed / tried:.1f} % of {tried} mutants were killed.")
        if survivors:
            print("\nSurvivors:")
        for mutant in survivors:
            note = self.ledger.entries[mutant.key]["by"]
            print(f"{mutant}{f'  [{note}]' if note else ''}")
        outdated = self._outdated()
        for place in outdated:
            print(f"accepted, but no mutant any more: {place[0]} {place[1]}: "
                  f"{place[2]}  ->  {place[3]}")
        return not survivors and not outdated

    def _outdated(self):
        existing = [m for found in self.queues.values() for m in found]
        return [place for place in self.accepted.outdated(existing) if place[0] in self.files]
