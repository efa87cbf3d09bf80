"""The tests of the copy: what there are, how long each takes, what faults each comes by."""

import concurrent.futures
import json
import os
import re
import resource
import shutil
import signal
import subprocess
import tempfile
import time
import typing

FILTER = "--gtest_filter="
FAILED = re.compile(r"^\[  FAILED  \] ([^\s,]+)", re.MULTILINE)
BEGUN = re.compile(r"^\[ RUN      \] (\S+)", re.MULTILINE)
# A fault may eat all memory or fill the disk.
LIMITS = {resource.RLIMIT_AS: 8 << 30, resource.RLIMIT_FSIZE: 1 << 30, resource.RLIMIT_CORE: 0}
LONGEST = 300  # Seconds that a test may take without a fault.
TIMES_LONGER = 6
LEAST_LIMIT = 15


class Test(typing.NamedTuple):
    name: str
    program: str
    label: str
    seconds: float = 0
    reaches: tuple = ()


class Outcome(typing.NamedTuple):
    passed: bool
    test: str  # Where it failed, as far as is known.
    seconds: float


class Programs:
    """Runs tests of the copy, several of one program at once or one alone."""

    def __init__(self, tree, with_soak):
        self.tree = tree
        self.environments, self.folders = {}, {}
        listing = tree.run("ctest", "--preset", "dev", "--show-only=json-v1").stdout
        # Those that are no test programs read the sources, where they would find the faults.
        self.tests = [test for entry in json.loads(listing)["tests"] if (test := self.test(entry))
                      and (with_soak or test.label != "soak")]

    def test(self, entry):
        command = entry.get("command", [])
        if len(command) < 2 or not command[1].startswith(FILTER):
            return None
        program = command[0]
        properties = {each["name"]: each["value"] for each in entry["properties"]}
        self.environments[program] = dict(pair.split("=", 1)
                                          for pair in properties.get("ENVIRONMENT", []))
        self.folders[program] = properties.get("WORKING_DIRECTORY")
        return Test(command[1][len(FILTER):], program, "".join(properties.get("LABELS", [])))

    def run(self, program, limits, **variables):
        """Runs tests of a program, each with the seconds that it may take, until one fails."""
        scratch = tempfile.mkdtemp(prefix="vm")
        os.chmod(scratch, 0o711)  # A test's compositor may run as another user.
        environment = os.environ | self.environments[program] | variables | {"TMPDIR": scratch}
        command = [program, FILTER + ":".join(limits), "--gtest_also_run_disabled_tests",
                   "--gtest_fail_fast"]
        begin = time.monotonic()
        try:
            with open(f"{scratch}/output", "w+", encoding="utf-8", errors="replace") as output:
                process = subprocess.Popen(
                    command, env=environment, cwd=self.folders[program], stdout=output,
                    stdin=subprocess.DEVNULL, stderr=subprocess.STDOUT, start_new_session=True)
                code = self.wait(process, limits, output.name)
                output.seek(0)
                said = output.read()
        finally:
            shutil.rmtree(scratch, ignore_errors=True)
        where = FAILED.findall(said)[:1] or BEGUN.findall(said)[-1:] or list(limits)
        return Outcome(code == 0, where[0], time.monotonic() - begin)

    def wait(self, process, limits, output):
        for kind, most in LIMITS.items():
            try:
                resource.prlimit(process.pid, kind, (most, most))
            except ProcessLookupError:  # It has ended already.
                pass
        begun, since = [], time.monotonic()
        try:
            while time.monotonic() - since < limits.get(begun[-1] if begun else "", LEAST_LIMIT):
                try:
                    return process.wait(1)
                except subprocess.TimeoutExpired:
                    with open(output, encoding="utf-8", errors="replace") as said:
                        now_begun = BEGUN.findall(said.read())
                    if now_begun != begun:
                        begun, since = now_begun, time.monotonic()
            return None
        finally:
            # Also what a test left behind.
            try:
                os.killpg(process.pid, signal.SIGKILL)
            except ProcessLookupError:
                pass
            process.wait()


def limit_of(seconds):
    return seconds * TIMES_LONGER + LEAST_LIMIT


def measure(programs, jobs, say):
    """Runs each test by itself without a fault. Those that fail are left out and named."""
    def first_run(test):
        with tempfile.TemporaryDirectory(prefix="vm") as folder:
            record = f"{folder}/reached"
            for _ in range(2):
                outcome = programs.run(test.program, {test.name: LONGEST},
                                       VELMORA_MUTANTS_REACHED=record)
                if outcome.passed:
                    break
            else:
                say(f"fails without a fault, left out: {test.name}")
                return None
            numbers = set()
            if os.path.exists(record):
                with open(record, encoding="ascii") as lines:
                    numbers = {int(line) for line in lines}
        return test._replace(seconds=outcome.seconds, reaches=tuple(sorted(numbers)))

    with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
        return [test for test in pool.map(first_run, programs.tests) if test]


class Judge:
    """Tells whether tests notice a fault: a test must fail twice in a row."""

    def __init__(self, programs, tests, caught_by):
        self.programs, self.tests = programs, tests
        self.caught_by = caught_by  # By fault, the test that caught it in an earlier run.

    def groups(self, number, first):
        """The tests that come by a fault, those of a program together, quick programs first."""
        reaching = [test for test in self.tests if number in test.reaches]
        earlier = [test for test in reaching if test.name == first]
        by_program = {}
        for test in reaching:
            if test.name != first:
                by_program.setdefault(test.program, []).append(test)
        quick_first = sorted(by_program.values(), key=lambda group: sum(t.seconds for t in group))
        return [group for group in [earlier, *quick_first] if group]

    def run(self, number, group):
        limits = {test.name: limit_of(test.seconds) for test in group}
        return self.programs.run(group[0].program, limits, VELMORA_MUTANT=str(number))

    def fails_alone(self, number, test):
        return not self.run(number, [test]).passed

    def catcher_in(self, number, group):
        """The test of a group that notices the fault, or None."""
        unsure = 0
        while group:
            outcome = self.run(number, group)
            if outcome.passed:
                return None
            named = [test for test in group if test.name == outcome.test] or group[:1]
            if self.fails_alone(number, named[0]):
                return named[0].name
            # It fails with others only, or once only.
            group = [test for test in group if test is not named[0]]
            unsure += 1
            if unsure == 3:
                break
        for test in group:
            if self.fails_alone(number, test) and self.fails_alone(number, test):
                return test.name
        return None

    def judge(self, number, key):
        """What becomes of a fault: a word, and the test that caught it."""
        groups = self.groups(number, self.caught_by.get(key))
        if not groups:
            return "not reached", ""
        for group in groups:
            if catcher := self.catcher_in(number, group):
                return "caught", catcher
        return "survived", ""
