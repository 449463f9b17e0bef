"""What the tool says of records: the bytes that the library gives, and the exact conditions of the forms."""

import concurrent.futures
import json
import os
import subprocess

KEY_BYTE = 7  # the one of a logical key that is looked at
TX_ADJ_KEY_MAX = 0x0FFF  # as the library has it


class Layout:
    """The forms of a translator for one length of record, from `npxlate layout --json`."""

    def __init__(self, layout):
        self.name, self.role, self.length = layout["translator"], layout["role"], layout["length_in"]
        self.forms = layout["forms"]
        self._nodes = layout["exact"]["nodes"]

    def holds(self, node, bit_of):
        while node > 1:
            bit, if_clear, if_set = self._nodes[node - 2]
            node = if_set if bit_of(bit) else if_clear
        return node == 1

    @staticmethod
    def _bit(bit, record, argument):
        """Of a record; L3.4 and P3.4 are bits of it, T.5 and K7.5 of the argument, M.5 of the setting."""
        space, (place, number) = bit[0], bit[1:].split(".")
        number = int(number)
        if space == "M":
            return TX_ADJ_KEY_MAX >> number & 1
        if space in "TK":
            return argument >> number & 1
        return int(place) < len(record) and record[int(place)] >> number & 1

    def random_record(self, form, choose):
        """Bytes and argument of a record that is as random as the form's condition lets it be; None if the way to it that
        was tried asks for another setting."""
        record = bytearray(choose.randbytes(self.length))
        argument = choose.choice([0, 1, 2, 3, 4, 5, 6, 255])
        node = form["condition"]
        while node > 1:
            bit, *ways = self._nodes[node - 2]
            space, (place, number) = bit[0], bit[1:].split(".")
            mask = 1 << int(number)
            if space == "M":
                way = TX_ADJ_KEY_MAX >> int(number) & 1
            else:
                way = choose.choice([way for way in (0, 1) if ways[way] != 0])
            if space in "TK":
                argument = argument & ~mask | way * mask
            elif space in "LP":
                record[int(place)] = record[int(place)] & ~mask | way * mask
            node = ways[way]
        return (bytes(record), argument) if node else None

    def is_left_alone(self, form, at):
        """Whether a bit that comes out is what the caller's buffer held."""
        letter = "L" if self.role == "reverse" else "P"
        return form["out"][at] > 1 and self._nodes[form["out"][at] - 2] == [f"{letter}{at // 8}.{at % 8}", 0, 1]

    def forms_of(self, record, argument):
        """The forms whose condition holds for the record; there should be one."""
        return [form for form in self.forms
                if self.holds(form["condition"], lambda bit: self._bit(bit, record, argument))]


class Truth:
    def __init__(self, tool):
        self._tool = tool

    def _json(self, *arguments):
        return json.loads(subprocess.run([self._tool, *arguments], check=True, capture_output=True, text=True).stdout)

    def layouts(self, names_and_lengths):
        """Of each translator; the lengths of its record, or none for the longest."""
        def one(name_and_length):
            name, length = name_and_length
            return Layout(self._json("layout", name, "--json", *([] if length is None else ["--length", str(length)])))
        with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
            return list(pool.map(one, names_and_lengths))

    def explain(self, name, record):
        return self._json("explain", name, "--json", record)

    def decode(self, name, record):
        """The candidates; none if there are no such records."""
        done = subprocess.run([self._tool, "decode", name, record, "--json"], capture_output=True, text=True)
        return json.loads(done.stdout)["candidates"] if done.stdout else []

    def translate(self, entries):
        """What the library makes of (name, role, record, argument): hex, or None for those that it rejects."""
        goes_in = {"key": "key", "result": "result", "reverse": "physical_result"}
        comes_out = {"key": "physical_key", "result": "physical_result", "reverse": "logical_result"}
        lines = [json.dumps({
            "n": n, "table": name, goes_in[role]: record.hex(), "type": argument,
            **({"logical_key": (bytes(KEY_BYTE) + bytes([argument & 255])).hex()} if role == "reverse" else {})})
            for n, (name, role, record, argument) in enumerate(entries)]
        done = subprocess.run([self._tool, "batch"], input="\n".join(lines), capture_output=True, text=True)
        results = [None] * len(entries)
        for line in done.stdout.splitlines():
            entry = json.loads(line)
            results[entry["n"]] = entry[comes_out[entries[entry["n"]][1]]]
        return results
