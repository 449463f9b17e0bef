"""Writes npxlate/_data.py: generate.py TOOL VERSION OUTPUT. The facts are those that the tool states as JSON."""
import json
import pprint
import subprocess
import sys

ROLES = ("key", "result", "reverse")
ENGINES = ("parse", "resolve", "learn")  # as quill_to_get_mreg_init numbers them


def main(tool, version, output):
    def ask(*arguments):
        return json.loads(subprocess.run([tool, *arguments, "--json"], check=True, capture_output=True).stdout)

    listed = ask("tables")
    translators = {}
    for entry in [table[role] for table in listed["tables"] for role in ROLES] + listed["by_name"]:
        translators.setdefault(entry["name"], {**entry, "tables": [], "key_length": None})
    for table in listed["tables"]:
        for role in ROLES:
            translators[table[role]["name"]]["tables"].append(table["table"])
            if "takes_key" in table[role]["traits"]:
                translators[table[role]["name"]]["key_length"] = table["key"]["logical"]["most"]
    tables = [{"title": table["title"], **{role: table[role]["name"] for role in ROLES}}
              for table in listed["tables"]]
    statuses = {status["status"]: (status["name"], status["meaning"]) for status in listed["statuses"]}
    traits = {trait["trait"]: trait["meaning"] for trait in listed["traits"]}
    engines = {engine: len(ask("registers", engine)["registers"]) for engine in ENGINES}

    with open(output, "w", encoding="utf-8") as file:
        print('"""What the package knows of the library; written by generate.py."""', file=file)
        print("from typing import Any, Dict, List, Tuple", file=file)
        for name, kind, value in (
                ("VERSION", "str", version),
                ("TABLES", "List[Dict[str, Any]]", tables),
                ("TRANSLATORS", "List[Dict[str, Any]]", list(translators.values())),
                ("STATUSES", "Dict[int, Tuple[str, str]]", statuses),
                ("TRAITS", "Dict[str, str]", traits),
                ("ENGINES", "Dict[str, int]", engines)):
            print(f"\n{name}: {kind} = {pprint.pformat(value, width=118, sort_dicts=False)}", file=file)


main(*sys.argv[1:])
