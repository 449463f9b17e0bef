"""The translators and their forms, as the tool gives them."""

import json
import subprocess
from typing import NamedTuple

from diagrams import Diagrams


class Translator(NamedTuple):
    name: str
    role: str
    sizes: dict  # "logical" and "physical" to the least and the greatest number of bytes
    traits: frozenset

    @property
    def sides(self):
        """The records that go in and come out, by their letters."""
        return ("P", "L") if self.role == "reverse" else ("L", "P")

    def greatest(self, letter):
        return self.sizes[letter][1]

    def least(self, letter):
        return self.sizes[letter][0]


class Form(NamedTuple):
    name: str
    condition: int
    status: int
    length: int  # None if it is not stored
    out: list  # of each bit of the record that comes out, from bit 0 of byte 0 on, its function
    in_after: dict  # of each bit of the record that goes in that changes, by name, its function


class Tool:
    def __init__(self, path):
        self._path = path

    def _json(self, *arguments):
        run = subprocess.run([self._path, *arguments, "--json"], capture_output=True, text=True)
        if run.returncode != 0:
            raise OSError(f"{self._path} {' '.join(arguments)}: {run.stderr.strip()}")
        return json.loads(run.stdout)

    def translators(self):
        found = {}

        def add(entry, role):
            sizes = {letter: (entry[side]["least"], entry[side]["most"])
                     for letter, side in (("L", "logical"), ("P", "physical"))}
            found[entry["name"]] = Translator(entry["name"], role, sizes, frozenset(entry["traits"]))

        tables = self._json("tables")
        for table in tables["tables"]:
            for role in ("key", "result", "reverse"):
                add(table[role], role)
        for entry in tables["by_name"]:
            add(entry, entry["role"])
        return found

    def forms(self, translator, length=None):
        """Every form for that length argument, and the functions that they speak of."""
        of_length = [] if length is None else [f"--length-argument={length}"]
        return read(self._json("layout", translator.name, *of_length))


def read(layout):
    d = Diagrams()
    nodes = layout["exact"]["nodes"]
    for name in _order(nodes):
        d.variable(name)
    functions = [0, 1]
    for bit, if_clear, if_set in nodes:
        functions.append(d.choose(d.variable(bit), functions[if_set], functions[if_clear]))
    forms = [Form(form["form"], functions[form["condition"]], form["status"], form["length"],
                  [functions[node] for node in form["out"]],
                  {bit: functions[node] for bit, node in form["in_after"].items()})
             for form in layout["forms"]]
    return d, forms


def _order(nodes):
    """The bits in the order in which the functions test them: in another, they might be too large."""
    after = {}
    for bit, *targets in nodes:
        after.setdefault(bit, set()).update(nodes[target - 2][0] for target in targets if target > 1)
    order, entered = [], set()
    for start in after:
        pending = [(start, iter(after[start]))] if start not in entered else []
        entered.add(start)
        while pending:
            bit, following = pending[-1]
            for target in following:
                if target not in entered:
                    entered.add(target)
                    pending.append((target, iter(after[target])))
                    break
            else:
                order.append(bit)
                pending.pop()
    return reversed(order)
