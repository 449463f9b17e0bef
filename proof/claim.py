"""What is claimed of a translator's machine code, and how it is refuted."""

import vectors
from instructions import MEANINGS
from machine import Beyond, Machine, Pointer, Refuted, Region
from vectors import constant

# The records' sizes where they follow the length argument, as the header has them: of the record that goes in, and of
# the one that comes out. Elsewhere they are fixed. A negative length is the caller's error for the generic ones.
SIZES_BY_LENGTH = {
    "generic_xlate_key": lambda n: (n, n) if n <= 47 else (0, 0),
    "generic_fast_ip_xlate_key": lambda n: (n, n) if n <= 47 else (0, 0),
    "generic_xlate_result": lambda n: (n, max(n, 1)) if n <= 64 else (0, 0),
    "generic_xlate_logical_result": lambda n: (n, n) if n <= 63 else (0, 0),
    "generic_fast_ip_xlate_result": lambda n: (3, 4) if n <= 64 else (0, 0),
    "ipv4_leaf_fastip_xlate_key": lambda n: (4, max(n, 0)),
    "ipv6_leaf_fastip_xlate_key": lambda n: (max(n, 0), max(n, 0)),
    "ipv6_ll_xlate_hash_key": lambda n: (n if n >= 4 else 0, 20),
}
NEGATIVE_LENGTH_IS_AN_ERROR = {name for name in SIZES_BY_LENGTH if name.startswith("generic_")}
UNBOUNDED = {"ipv4_leaf_fastip_xlate_key", "ipv6_leaf_fastip_xlate_key", "ipv6_ll_xlate_hash_key"}


def fixed_sizes(translator, length):
    """The records' sizes where they do not follow the length argument; nothing of records that are refused."""
    size_in, size_out = map(translator.greatest, translator.sides)
    refused = "checks_length" in translator.traits and length != size_in
    return (0, 0) if refused else (size_in, size_out)


class LengthMatters(Exception):
    """The code looks at its length argument."""


class Counterexample(Exception):
    """Lines that say for what record, and how, the machine code does something else."""


class Call:
    """A translator called with records of which nothing is known."""

    def __init__(self, image, translator, d, sizes, length=None, condition=1, null=None, low_bits=None):
        self.d = d
        self.image = image
        self.translator = translator
        self.length = length
        self.condition = condition
        self.machine = machine = Machine(d, image, MEANINGS)

        in_letter, out_letter = translator.sides
        writable = "changes_input" in translator.traits
        self.low_bits = low_bits or {}  # of the addresses of records, by their names, where these matter
        self.incoming = self._record(in_letter, sizes[0], writable)
        self.outgoing = self._record(out_letter, sizes[1], True)
        self.length_word = Region("the length", 4, lambda i: self._bits("length before", i), writable=True,
                                  readable=False)
        self.entry_type = Region("the entry type", 4, lambda i: self._bits("T", i))
        self.key = Region("the logical key", 8, lambda i: self._byte("K", i))
        self.setting = machine.variables["TX_ADJ_KEY_MAX"] = Region("TX_ADJ_KEY_MAX", 2, lambda i: self._bits("M", i))

        arguments = {"rdi": self.incoming, "rdx": self.outgoing}
        if "takes_type" in translator.traits:
            arguments["rcx"] = self.entry_type
        elif "takes_key" in translator.traits:
            arguments["rcx"] = self.key
        elif translator.role != "reverse":
            arguments["rcx"] = self.length_word
        self.state = machine.start(image.functions[translator.name], condition)
        for register, region in arguments.items():
            start = constant(0, 64)
            self.state.registers[register] = start if register == null else Pointer(region, start)
        self.state.set_register("esi", length_bits(d) if length is None else constant(length, 32))
        # The upper half of a register that holds an int may be anything.
        self.state.registers["rsi"] = self.state.registers["rsi"][:32] + machine.unknown(32)

    def _byte(self, letter, i):
        return tuple(self.d.variable(f"{letter}{i}.{bit}") for bit in range(8))

    def _bits(self, letter, i):
        return tuple(self.d.variable(f"{letter}.{8 * i + bit}") for bit in range(8))

    def _record(self, letter, size, writable):
        name = "the logical record" if letter == "L" else "the physical record"
        region = Region(name, size, lambda i: self._byte(letter, i), writable=writable)
        region.low_bits = self.low_bits.get(name)
        return region

    def run(self):
        """Executes it. Afterwards the outcome is to be had."""
        self.state = self.machine.run(self.state)

    def bytes_after(self, region):
        return [determined(self.state.byte(region, i)) for i in range(region.size)]

    def outcome(self):
        """Everything that the caller can see, as (what it is, its bits)."""
        letters = self.translator.sides
        yield "status", determined(self.state.register("eax"))
        yield "length", sum(self.bytes_after(self.length_word), ())
        for letter, region in zip(letters, (self.incoming, self.outgoing)):
            for i, byte in enumerate(self.bytes_after(region)):
                yield f"{letter}{i}", byte


def determined(value):
    if type(value) is not tuple:
        raise Beyond(f"{value} that the caller gets")
    return value


def length_bits(d):
    return tuple(d.variable(f"length.{bit}") for bit in range(32))


def expected(call, forms):
    """The same outcome, as the forms have it."""
    d = call.d

    def by_form(of_form):
        result = None
        for form in forms:
            value = of_form(form)
            result = value if result is None else vectors.choose(d, form.condition, value, result)
        return result

    def stored_length(form):
        return length_before if form.length is None else constant(form.length, 32)

    def came_out(form, i, before):
        return tuple(form.out[8 * i : 8 * i + 8]) or before

    def after(form, i, before):
        return tuple(form.in_after.get(f"{in_letter}{i}.{bit}", before[bit]) for bit in range(8))

    in_letter, out_letter = call.translator.sides
    length_before = sum((call.machine.initial(call.length_word, i) for i in range(4)), ())
    yield "status", by_form(lambda form: constant(form.status, 32))
    yield "length", by_form(stored_length)
    for letter, region, function in ((in_letter, call.incoming, after), (out_letter, call.outgoing, came_out)):
        for i in range(region.size):
            before = call.machine.initial(region, i)
            yield f"{letter}{i}", by_form(lambda form: function(form, i, before))


def check_partition(call, forms):
    """The forms leave no record out and do not overlap."""
    d = call.d
    covered = 0
    for form in forms:
        if d.both(covered, form.condition) != 0:
            raise Counterexample(explain_input(call, d.example(d.both(covered, form.condition)))
                                 + [f"{form.name} holds, and another form as well"])
        covered = d.either(covered, form.condition)
    if covered != 1:
        raise Counterexample(explain_input(call, d.example(covered ^ 1)) + ["no form holds"])


def keeps_behind(d, translator, form, size):
    """Whether the form leaves everything behind that many bytes of the record that comes out as it was."""
    letter = translator.sides[1]
    return all(form.out[bit] == d.variable(f"{letter}{bit // 8}.{bit % 8}") for bit in range(8 * size, len(form.out)))


def check(call, forms):
    """Executes the call and compares it with the forms, for all records at once."""
    d = call.d
    check_partition(call, forms)
    for form in forms:
        if d.both(call.condition, form.condition) != 0 and (
                not keeps_behind(d, call.translator, form, call.outgoing.size)
                or any(int(name[1:].split(".")[0]) >= call.incoming.size for name in form.in_after)):
            raise Counterexample([f"{form.name} writes more than the records have"])
    try:
        call.run()
    except Refuted as refuted:
        raise Counterexample(explain_input(call, d.example(refuted.condition))
                             + [f"the machine code {refuted}", where(call, refuted.place)]) from None
    if call.state.condition != call.condition:
        raise Counterexample(["not every way through the code returns"])
    for (what, got), (same, want) in zip(call.outcome(), expected(call, forms), strict=True):
        assert what == same
        if got != want:
            for bit, (x, y) in enumerate(zip(got, want, strict=True)):
                wrong = d.both(call.condition, d.differ(x, y))
                if wrong != 0:
                    raise Counterexample(explain_outcome(call, forms, d.example(wrong), what, bit))


# Explanations


def hexadecimal(call, content, values):
    return bytes(vectors.number(tuple(call.d.value(bit, values) for bit in byte)) for byte in content).hex() or "(none)"


def explain_input(call, values):
    """The record and everything else that the translator is given, with these values of bits."""
    def bytes_of(region):
        return hexadecimal(call, [call.machine.initial(region, i) for i in range(region.size)], values)

    def number_of(region):
        return int.from_bytes(bytes.fromhex(bytes_of(region)), "little")

    lines = [f"{call.incoming} {bytes_of(call.incoming)}"]
    touched = {name.split(".")[0] for name in values}
    if any(name[0] == call.translator.sides[1] and name[1:].isdigit() for name in touched):
        lines.append(f"{call.outgoing} before the call {bytes_of(call.outgoing)}")
    if "T" in touched:
        lines.append(f"{call.entry_type} {number_of(call.entry_type)}")
    if any(name[0] == "K" for name in touched):
        lines.append(f"{call.key} {bytes_of(call.key)}")
    if "M" in touched:
        lines.append(f"{call.setting} {number_of(call.setting):#x}")
    if call.length is not None or "length" in touched:
        length = call.length if call.length is not None else vectors.signed(vectors.number(
            tuple(call.d.value(bit, values) for bit in length_bits(call.d))), 32)
        lines.append(f"the length argument {length}")
    if any(name.startswith("unknown ") for name in touched):
        lines.append("and it counts what a register or the stack held before the call")
    for name, bits in call.low_bits.items():
        lines.append(f"the address of {name} is {vectors.number(bits)} above a multiple of {1 << len(bits)}")
    return lines


def explain_outcome(call, forms, values, what, bit):
    """Both outcomes for these values of bits, and the bit in which they differ."""
    d = call.d
    form = next(form for form in forms if d.value(form.condition, values))
    in_letter, out_letter = call.translator.sides
    by_forms, by_code = dict(expected(call, forms)), dict(call.outcome())
    lines = explain_input(call, values)

    def add_line(who, outcome):
        def record(letter):
            return hexadecimal(call, [byte for name, byte in outcome.items() if name[0] == letter], values)

        def value(name):
            return vectors.number(tuple(d.value(bit, values) for bit in outcome[name]))

        parts = [f"status {value('status')}", f"{call.outgoing} {record(out_letter)}"]
        if call.translator.role != "reverse":
            parts.append(f"length {value('length')}")
        if "changes_input" in call.translator.traits:
            parts.append(f"{call.incoming} afterwards {record(in_letter)}")
        lines.append(f"{who}: {', '.join(parts)}")

    add_line("the forms", by_forms)
    add_line("the machine code", by_code)
    got = d.value(by_code[what][bit], values)
    if what in ("status", "length"):
        lines.append(f"form '{form.name}': bit {bit} of the {what} should be {got ^ 1}, and is {got}")
    else:
        should = describe(d, call, form, what, bit)
        lines.append(f"form '{form.name}': {what}.{bit} should be {should}, here {got ^ 1}, and is {got}")
    return lines


def describe(d, call, form, what, bit):
    letter, i = what[0], int(what[1:])
    if letter == call.translator.sides[1]:
        function = form.out[8 * i + bit] if 8 * i + bit < len(form.out) else d.variable(f"{what}.{bit}")
    else:
        function = form.in_after.get(f"{what}.{bit}", d.variable(f"{what}.{bit}"))
    if function < 2:
        return f"constant {function}"
    names = sorted(d.bits_of(function))
    if len(names) == 1:
        kept = names[0] == f"{what}.{bit}"
        return ("the inverse of " if function & 1 else "") + names[0] + (" as it was" if kept else "")
    return "a function of " + ", ".join(names)


def where(call, place):
    insn = call.image.instruction(place)
    name, start = max(((name, at) for name, at in call.image.functions.items() if at <= place), key=lambda f: f[1],
                      default=("the library", 0))
    return f"at {name}+{place - start:#x}: {insn.text if insn else 'no instruction'}"
