"""The members that docs/json.md names, against those that the tool prints: check_json.py TOOL PAGE"""

import json
import pathlib
import re
import subprocess
import sys
import tempfile

TOOL, PAGE = sys.argv[1:3]
COMMANDS = {
    "layout": ["layout 11", "layout 22"],
    "explain": ["explain 4 " + "00" * 30, "explain 12 " + "000009" + "00" * 33],
    "roundtrip": ["roundtrip 121 000203", "roundtrip 4 200801000000000000000000010203aa0405000000060700000000000000"],
    "diff": ["diff 17 --role key 0102030405060708 0102030405ff0709"],
    "decode": ["decode 4 9100000000000d230a00000142000000", "decode 4 9900000000000d230a00000142000000"],
    "find": ["find mirroring L8", "find L3 rx_adjacency --names {names}"],
    "tables": ["tables"],
    "registers": ["registers learn"],
}
# Named by what they are about, not by the page.
OPEN = {"bits", "in_after"}


def members(value):
    if isinstance(value, dict):
        for name, inner in value.items():
            yield name
            if name not in OPEN:
                yield from members(inner)
            elif isinstance(inner, dict):
                for one in inner.values():
                    yield from members(one)
    elif isinstance(value, list):
        for inner in value:
            yield from members(inner)


page = pathlib.Path(PAGE).read_text()
sections = dict(re.findall(r"^## (\w+)\n(.*?)(?=^## |\Z)", page, re.M | re.S))
common = page.split("## ")[0]
wrong = []
names = tempfile.NamedTemporaryFile("w", suffix=".toml")
names.write('[[record]]\ntable = 4\nfields = [{ name = "spare", at = "L3" }]\n')
names.flush()
for command, calls in COMMANDS.items():
    printed = set()
    for call in calls:
        run = subprocess.run([TOOL, *call.format(names=names.name).split(), *([] if "--json" in call else ["--json"])], capture_output=True, text=True)
        printed |= set(members(json.loads(run.stdout)))
    told = set(re.findall(r"`(\w+)`", common + sections[command]))
    wrong += [f"{command}: {name} is not on the page" for name in sorted(printed - told)]
    here = set(re.findall(r"`(\w+)`", sections[command]))
    values = {"carried", "steered", "dropped", "restored", "moved", "inverted", "computed", "lost", "invented", "constant",
              "zero", "result", "result_others", "key", "key_others", "physical_result", "physical_key", "TX_ADJ_KEY_MAX",
              "ored", "layout", "then", "bytes_reversed", "text", "in_changes", "in_after"}
    wrong += [f"{command}: {name} is not printed" for name in sorted(here - printed - values)]
sys.exit("\n".join(wrong) or None)
