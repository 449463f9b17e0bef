#!/usr/bin/env python3
"""Makes what was programmed and what a card holds, with differences of every kind planted, and says how many.

cards.py NPXLATE FOLDER ENTRIES: writes FOLDER/programmed.jsonl, FOLDER/held.jsonl and FOLDER/planted.json.
"""

import json
import random
import subprocess
import sys

# Tables that take every record of their one size.
TABLES = (4, 5, 11, 13, 17)


def tables_of(npxlate):
    """The bytes of the logical key and result of each."""
    listed = json.loads(subprocess.run([npxlate, "tables", "--json"], check=True, capture_output=True).stdout)
    by_id = {entry["table"]: entry for entry in listed["tables"]}
    return {table: tuple(by_id[table][role]["logical"]["most"] for role in ("key", "result")) for table in TABLES}


class Cards:
    def __init__(self, npxlate, folder, count):
        self.npxlate, self.folder, self.count = npxlate, folder, count
        self.lengths = tables_of(npxlate)
        self.tables = sorted(self.lengths)
        rng = random.Random(1)
        # A few results of each table: what a card holds is not random either.
        self.results = {
            table: [self.acceptable(table, rng) for _ in range(64)] for table in self.tables
        }

    def acceptable(self, table, rng):
        return rng.randbytes(self.lengths[table][1])

    def entry(self, i):
        table = self.tables[i % len(self.tables)]
        number = i // len(self.tables)
        key_bytes, _ = self.lengths[table]
        key = number.to_bytes(3, "little") + bytes(key_bytes - 3)
        result = bytearray(self.results[table][number * 7 % 64])
        return table, key.hex(), result.hex()

    def order(self, seed):
        step = next(n for n in range(self.count * 5 // 8 + seed, 2 * self.count + 10) if self._coprime(n))
        return ((i * step + seed) % self.count for i in range(self.count))

    def _coprime(self, n):
        a, b = n, self.count
        while b:
            a, b = b, a % b
        return a == 1

    def write(self):
        for name, seed in (("programmed", 1), ("to_hold", 7)):
            with open(f"{self.folder}/{name}.jsonl", "w", encoding="ascii") as out:
                for i in self.order(seed):
                    table, key, result = self.entry(i)
                    out.write(f'{{"table":{table},"key":"{key}","result":"{result}"}}\n')
        with open(f"{self.folder}/clean.jsonl", "w", encoding="ascii") as out:
            subprocess.run([self.npxlate, "batch", "-q", f"{self.folder}/to_hold.jsonl"], check=True, stdout=out)
        self.plant()

    def plant(self):
        """Every so many-th held entry is changed, each time in the next way."""
        planted = dict.fromkeys(("bit", "value", "reversed", "missing", "unexpected", "duplicate", "unreadable"), 0)
        rng = random.Random(2)
        every = max(20, self.count // 20000)
        ways = list(planted)
        with open(f"{self.folder}/clean.jsonl", encoding="ascii") as lines, \
             open(f"{self.folder}/held.jsonl", "w", encoding="ascii") as out:
            for number, line in enumerate(lines):
                if number % every:
                    out.write(line)
                    continue
                way = ways[number // every % len(ways)]
                entry = json.loads(line)
                record = bytearray.fromhex(entry["physical_result"])
                if way == "bit":
                    record[0] ^= 8
                elif way == "value":
                    old = record[1:3]
                    while record[1:3] == old or record[1:3] == old[::-1]:
                        record[1:3] = rng.randbytes(2)
                elif way == "reversed":
                    if record[1] == record[2]:
                        way = "none"
                    record[1:3] = record[2:0:-1]
                entry["physical_result"] = record.hex()
                if way == "missing":
                    planted[way] += 1
                    continue
                text = json.dumps(entry) + "\n"
                if way == "unexpected":
                    out.write(line)
                    entry["physical_key"] = "ff" * 20
                    entry["table"] = 100
                    entry["physical_key"] = number.to_bytes(5, "big").hex()
                    text = json.dumps(entry) + "\n"
                elif way == "duplicate":
                    out.write(text)
                elif way == "unreadable":
                    out.write(line)
                    text = text[: len(text) // 2] + "\n"
                out.write(text)
                if way in planted:
                    planted[way] += 1
        with open(f"{self.folder}/planted.json", "w", encoding="ascii") as out:
            json.dump(planted, out)


if __name__ == "__main__":
    if len(sys.argv) != 4:
        sys.exit(__doc__)
    Cards(sys.argv[1], sys.argv[2], int(sys.argv[3])).write()
