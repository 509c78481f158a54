"""Runs test programs on a changed tree."""

import contextlib
import os
import re
import resource
import shutil
import signal
import subprocess
import tempfile
import time
from pathlib import Path

MEMORY = 6 << 30
FILE_SIZE = 1 << 30
MOST_READ = 8 << 20
FAILED = re.compile(rb"^(?:FAIL!  : |XPASS  : |QFATAL : )\w+::(\w*)", re.MULTILINE)


class Runner:
    """@p folder is for what the programs write; it is emptied before each run."""

    def __init__(self, folder):
        self.folder = Path(folder)

    def run(self, test, seconds=None, environment=None):
        """How a test program ended: "" when it passed, otherwise what failed. @p seconds of
        computing are granted; waiting is granted ten times as long."""
        shutil.rmtree(self.folder, ignore_errors=True)
        self.folder.mkdir(parents=True)
        # Without the dump of its stack a crash takes no longer than another failure.
        variables = {**os.environ, **test["environment"], "TMPDIR": str(self.folder),
                     "QTEST_DISABLE_STACK_DUMP": "1", **(environment or {})}

        def limit():
            # A group, so that all of it can be ended, in our session and with its priority.
            os.setpgrp()
            resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
            resource.setrlimit(resource.RLIMIT_AS, (MEMORY, MEMORY))
            resource.setrlimit(resource.RLIMIT_FSIZE, (FILE_SIZE, FILE_SIZE))
            if seconds:
                resource.setrlimit(resource.RLIMIT_CPU, (seconds, seconds + 1))

        with tempfile.TemporaryFile() as said:
            process = subprocess.Popen(test["command"], cwd=test["folder"], env=variables,
                                       stdin=subprocess.DEVNULL, stdout=said,
                                       stderr=subprocess.STDOUT, preexec_fn=limit)
            status = self._wait(process, 10 * seconds + 20 if seconds else 600)
            if status != 0:
                return self._reason(status, said)
            return "a warning" if self._warned(test, said) else ""

    def _wait(self, process, patience):
        try:
            return process.wait(patience)
        except subprocess.TimeoutExpired:
            return None
        finally:
            # Also what the program started and left behind.
            with contextlib.suppress(ProcessLookupError):
                os.killpg(process.pid, signal.SIGKILL)
            process.wait()

    def _warned(self, test, said):
        said.seek(0)
        output = said.read(MOST_READ)
        return any(re.search(pattern.encode(), output) for pattern in test["forbidden"])

    def _reason(self, status, said):
        if status is None or status == -signal.SIGXCPU:
            return "timeout"
        said.seek(0)
        failed = FAILED.search(said.read(MOST_READ))
        if failed and failed.group(1):
            return failed.group(1).decode()
        return f"signal {-status}" if status < 0 else f"status {status}"

    def measure(self, test):
        """Seconds of computing that a passing run takes; None when it fails."""
        before = resource.getrusage(resource.RUSAGE_CHILDREN)
        if self.run(test):
            return None
        after = resource.getrusage(resource.RUSAGE_CHILDREN)
        return after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime


def allowance(seconds):
    """Whole seconds of computing for a program that usually takes @p seconds."""
    return int(2 * seconds + 2)


def now():
    return time.strftime("%Y-%m-%dT%H:%M:%S")
