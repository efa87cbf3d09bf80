"""Which faults are put in: by chance, but the same for the same sources and seed.

Each layer gets faults in proportion to its lines, each source one to three. A source's chance grows
with its lines and depends on nothing else, so a change in one leaves the others' faults as they
are. Tests have no say.
"""

import concurrent.futures
import json
import math
import os
import random
import shlex

from . import places

LAYERS = ("Platform", "Shared", "Targets", "Hosts", "Tools")
TABLES = {"Targets/VelmoraTime/AstronomyTables.cpp", "Targets/VelmoraTime/SunlightMapTable.cpp"}
LINES_OF_A_FAULT = 100
MOST_IN_A_FILE = 3
NAMED_COLUMNS = ("kind", "file", "old", "code")


def line_count(text):
    return sum(1 for line in text.split(b"\n") if line.strip())


def table(path):
    """Rows of a file of columns with tabs between; lines that begin with # are its comments."""
    for line in path.read_text(encoding="utf-8").splitlines():
        if line and not line.startswith("#"):
            yield line.split("\t")


def named_faults(path, sources):
    """The faults that have a name, in the order of the file."""
    faults = []
    for name, file, old, code in table(path):
        if file not in sources:
            continue
        text = sources[file]
        start = text.find(old.encode())
        if text.count(old.encode()) != 1:
            raise SystemExit(f"mutate: the fault '{name}' needs one place in {file}: {old}")
        faults.append(places.Fault(file, start, start + len(old.encode()),
                                   text.count(b"\n", 0, start) + 1, name, old, code, code))
    return faults


class Places:
    """The faults that each source may have; what was found once is kept."""

    def __init__(self, tree, cache, sources):
        self.tree, self.cache, self.sources = tree, cache, sources
        cache.mkdir(parents=True, exist_ok=True)
        commands = json.loads((tree / "build/dev/compile_commands.json").read_text())
        self.commands = {entry["file"]: shlex.split(entry["command"]) for entry in commands}

    def arguments(self, path):
        words = self.commands[path]
        words = words[:words.index("-o")]
        first = next(i for i, word in enumerate(words) if word.startswith("-"))
        return [*words[first:], "-Wno-everything"]

    def of(self, file):
        kept = self.cache / places.digest(file, self.sources[file])
        if not kept.exists():
            path = str(self.tree / file)
            found = places.faults_of(file, path, self.sources[file], self.arguments(path))
            kept.write_text(json.dumps(found))
        return [places.Fault(*fault) for fault in json.loads(kept.read_text())]

    def prepare(self, files):
        """Reads several sources at once."""
        with concurrent.futures.ProcessPoolExecutor(os.cpu_count()) as pool:
            list(pool.map(self.of, files))


def overlap(one, other):
    return one.file == other.file and one.start < other.end and other.start < one.end


class Selection:
    """Faults by number, from 1 on: the named ones first. Those that do not compile are replaced."""

    def __init__(self, sources, seed, count, named):
        self.sources, self.seed, self.count = sources, seed, count
        self.faults = list(named)
        self.waiting = {}  # By file, the faults that may still be taken, best first.
        self.dropped = []

    def order_of_files(self, layer):
        """By chance, large ones more often in front (Efraimidis and Spirakis, 2006)."""
        def key(file):
            chance = random.Random(f"{self.seed} {file}").random()
            return -math.log(chance) / line_count(self.sources[file])
        return sorted((file for file in self.sources if file.startswith(layer + "/")), key=key)

    def quotas(self):
        lines = {layer: sum(line_count(text) for file, text in self.sources.items()
                            if file.startswith(layer + "/")) for layer in LAYERS}
        exact = {layer: self.count * lines[layer] / max(1, sum(lines.values())) for layer in LAYERS}
        quotas = {layer: int(exact[layer]) for layer in LAYERS}
        by_rest = sorted(LAYERS, key=lambda layer: quotas[layer] - exact[layer])
        for layer in by_rest[:self.count - sum(quotas.values())]:
            quotas[layer] += 1
        return quotas

    def share_of(self, file):
        return min(MOST_IN_A_FILE, 1 + line_count(self.sources[file]) // LINES_OF_A_FAULT)

    def choose(self, places_found):
        for layer, quota in self.quotas().items():
            order = self.order_of_files(layer)
            batches = []
            while order and sum(map(self.share_of, batches)) < quota * 1.2:
                batches.append(order.pop(0))
            places_found.prepare(batches)
            for file in batches + order:
                if quota <= 0:
                    break
                self.waiting[file] = self.shuffled(file, places_found.of(file))
                for _ in range(min(quota, self.share_of(file))):
                    if fault := self.next_in(file):
                        self.faults.append(fault)
                        quota -= 1

    def shuffled(self, file, faults):
        """One of each kind in turn, as there are many more calls than, say, returned bools."""
        chance = random.Random(f"{self.seed} {file}")
        by_kind = {}
        for fault in faults:
            by_kind.setdefault(fault.kind, []).append(fault)
        kinds = sorted(by_kind)
        chance.shuffle(kinds)
        for kind in kinds:
            chance.shuffle(by_kind[kind])
        ordered = []
        while any(by_kind.values()):
            ordered += [by_kind[kind].pop() for kind in kinds if by_kind[kind]]
        return ordered

    def next_in(self, file):
        waiting = self.waiting[file]
        while waiting:
            fault = waiting.pop(0)
            if not any(fault and overlap(fault, taken) for taken in self.faults if taken):
                return fault
        return None

    def replace(self, number):
        """Drops a fault that does not compile. Another of its file or layer gets its number."""
        old = self.faults[number - 1]
        self.dropped.append(old)
        self.faults[number - 1] = None
        layer = old.file.split("/")[0]
        for file in [old.file, *(file for file in self.waiting if file.startswith(layer + "/"))]:
            if file in self.waiting and (fault := self.next_in(file)):
                self.faults[number - 1] = fault
                return

    # What is kept between runs

    def to_json(self):
        return {"faults": self.faults, "dropped": self.dropped, "waiting": self.waiting}

    def from_json(self, kept):
        def read(faults):
            return [fault and places.Fault(*fault) for fault in faults]
        self.faults, self.dropped = read(kept["faults"]), read(kept["dropped"])
        self.waiting = {file: read(faults) for file, faults in kept["waiting"].items()}
