"""A larger card, of several tables and in another order: all that was planted is found, and nothing else."""

import json
import subprocess
import sys
import tempfile

from cards import Cards

npxlate = sys.argv[1]
with tempfile.TemporaryDirectory() as folder:
    Cards(npxlate, folder, 30000).write()
    with open(f"{folder}/planted.json", encoding="ascii") as text:
        planted = json.load(text)
    audit = subprocess.run([npxlate, "audit", f"{folder}/programmed.jsonl", f"{folder}/held.jsonl", "--json"],
                           capture_output=True, text=True, check=False)
    assert audit.returncode == 1, audit.stderr
    lines = [json.loads(line) for line in audit.stdout.splitlines()]
    summary = lines.pop()["summary"]
    found = summary["all"]
    different = planted["bit"] + planted["value"] + planted["reversed"]
    assert found["programmed"] == 30000, found
    assert found["different"] == different, (found, planted)
    assert found["missing"] == planted["missing"], (found, planted)
    assert found["unexpected"] == planted["unexpected"], (found, planted)
    assert found["duplicate_held"] == planted["duplicate"], (found, planted)
    assert found["same"] == 30000 - different - planted["missing"], (found, planted)
    assert sum(line["finding"] == "unreadable" for line in lines) == planted["unreadable"], planted
    bits = sum(p["count"] for p in summary["patterns"] if "differ in P0.3 only" in p["text"])
    assert bits == planted["bit"], summary["patterns"]
    turned = sum(line.get("explained") == "bytes reversed" for line in lines)
    assert turned == planted["reversed"], (turned, planted)
    print(planted)
