#!/usr/bin/env python3
"""A session with the package, to be read from top to bottom or run cell by cell."""

# %% What there is
import npxlate

for table in npxlate.tables()[3:6]:
    print(table.id, table.title, "-", table.result.logical, "to", table.result.physical)

# %% A receive adjacency, as control software builds it, and what the network processor reads
adjacency = bytes.fromhex("0000000023010000080000004200000000000000000000000100000a0000")
physical = npxlate.result(4, adjacency)
print(physical.hex(" "), "- program", physical.length, "bytes")

# %% What comes back when the entry is read, and which bits of it the translator leaves as the buffer had them
logical = npxlate.reverse(4, physical)
print(logical.hex(" "))
print(logical.not_written.hex(" "))

# %% Why
explained = npxlate.explain(4, adjacency)
for field in explained.fields[:3]:
    print(" ".join(field.to), "=", field.value, "from", " ".join(field.from_) or "nothing", "-", field.text)

# %% Many at once: two thousand virtual MAC addresses in one call
addresses = b"".join(bytes(4) + address.to_bytes(4, "little") for address in range(2000))
many = npxlate.translator(17).many(addresses)
print(len(many), "records of", many.size, "bytes; the last:", many[-1].hex(" "))

# %% What is wrong is said
try:
    npxlate.reverse(52, bytes(32), entry_type=9)
except npxlate.NpxlateError as error:
    print(error.status, error.reason)
