"""The result of a run as a file with a line for each fault, and what is told at the end."""

import typing

from . import places, selection

HEADING = "number\tplace\tkind\told\tnew\toutcome\ttest\tseconds"


class Row(typing.NamedTuple):
    number: int
    place: str
    kind: str
    old: str
    new: str
    outcome: str
    test: str
    seconds: str

    @property
    def file(self):
        return self.place.split(":")[0]

    @property
    def key(self):
        return self.file, self.old, self.new

    @property
    def group(self):
        return "named" if "velmoraMutant" in self.new else self.kind

    @property
    def layer(self):
        return self.file.split("/")[0]


def one_line(text):
    return text.replace("\t", " ").replace("\n", " ")


def old_text(fault, source):
    """The right text; where its file has it more than once, also the how-manieth it is."""
    old = source[fault.start:fault.end]
    nth = source.count(old, 0, fault.start) + 1
    return one_line(fault.old) + (f"  (no. {nth})" if source.count(old) > 1 else "")


def key_of(fault, source):
    """What a fault is known by, wherever in its file it stands."""
    return fault.file, old_text(fault, source), one_line(fault.new)


def read(path):
    return [Row(int(columns[0]), *columns[1:]) for columns in selection.table(path)
            if columns[0] != "number"]


def catchers(path):
    """By fault, the test that caught it in an earlier run."""
    return {row.key: row.test for row in read(path)} if path else {}


def equivalents(path):
    """Faults that no test can notice. Columns: file, old text, new text, reason."""
    return {tuple(columns[:3]) for columns in selection.table(path)}


def digest_of(faults):
    return places.digest(repr(faults))


class Result:
    """Rows by number. A file of the same faults and tests is gone on with."""

    def __init__(self, path, key):
        self.path = path
        head = f"# {key}"
        if path.exists():
            if path.read_text(encoding="utf-8").split("\n", 1)[0] != head:
                raise SystemExit(f"mutate: {path} is of other faults or other tests: move it "
                                 "away or name another file with --result")
        else:
            path.write_text(f"{head}\n{HEADING}\n", encoding="utf-8")
        self.rows = {row.number: row for row in read(path)}

    def add(self, number, fault, key, outcome, test, seconds):
        row = Row(number, f"{fault.file}:{fault.line}", fault.kind, *key[1:], outcome, test,
                  f"{seconds:.1f}")
        self.rows[number] = row
        with open(self.path, "a", encoding="utf-8") as file:
            file.write("\t".join(map(str, row)) + "\n")


def shares(rows, title, group_of):
    lines = [f"{title:24} {'caught':>7} {'of':>5} {'share':>7}"]
    groups = sorted({group_of(row) for row in rows})
    for name, members in [*((group, [row for row in rows if group_of(row) == group])
                            for group in groups), ("all", rows)]:
        caught = sum(row.outcome == "caught" for row in members)
        share = 100 * caught / max(1, len(members))
        lines.append(f"{name:24} {caught:7} {len(members):5} {share:6.1f}%")
    return lines


def text(result, equivalent):
    rows = [result.rows[number] for number in sorted(result.rows)]
    counted = [row for row in rows if row.key not in equivalent]
    lines = []
    for row in counted:
        if row.outcome != "caught":
            other = f": {row.old}  ->  {row.new or '(nothing)'}" if row.group != "named" else ""
            lines.append(f"{row.number} {row.outcome}: {row.place}: {row.kind}{other}")
    lines += ["", *shares(counted, "layer", lambda row: row.layer)]
    lines += ["", *shares(counted, "kind", lambda row: row.group)]
    lines += ["", f"{len(rows) - len(counted)} that no test can notice are left out; "
              f"result: {result.path}"]
    return "\n".join(lines)
