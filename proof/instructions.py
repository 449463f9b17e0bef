"""The meaning of each kind of instruction that occurs, as functions of undetermined bits.

`tests/proof/processor_test.py` compares them with the processor itself. Flags that no instruction of the library asks
for (parity, adjust) are left out, and flags that the processor leaves undefined are undefined here: to ask for one is an
error.
"""

import vectors
from machine import GENERAL, MIXED, VECTOR, Beyond, Pointer, bits
from vectors import add, constant, extended, inverted, is_zero, number

MEANINGS = {}


def meaning(*mnemonics):
    def register(function):
        MEANINGS.update(dict.fromkeys(mnemonics, function))
        return function
    return register


# Operands


def address(s, operand):
    if operand.segment:
        raise Beyond("an address in a segment")
    if operand.base == "rip":
        return s.machine.image_address(s.pc + operand.displacement)
    if any(register not in GENERAL for register in (operand.base, operand.index) if register):
        raise Beyond("an address of 32 bits")
    value = constant(operand.displacement, 64)
    if operand.base:
        value = s.plus(s.registers[operand.base], value)
    if operand.index:
        index = s.registers[operand.index]
        shift = operand.scale.bit_length() - 1
        value = s.plus(value, index if shift == 0 else (0,) * shift + bits(index)[: 64 - shift])
    return value


def read(s, operand, size=None):
    """The operand's value, which may be an address; of a vector register as many low bytes as wanted."""
    size = size or operand.size
    if operand.register:
        value = s.register(operand.register)
        return value[: 8 * size] if operand.register in VECTOR else value
    if operand.immediate is not None:
        return constant(operand.immediate, 8 * size)
    return s.load(address(s, operand), size)


def write(s, operand, value):
    if operand.register:
        s.set_register(operand.register, value)
    else:
        s.store(address(s, operand), value)


def same_register(insn):
    first, second = insn.operands
    return first.register is not None and first.register == second.register


def set_flags(s, result, carry=None, overflow=None):
    s.flags = {"c": carry, "o": overflow, "s": result[-1], "z": lambda: is_zero(s.d, result)}


CONDITIONS = {  # each also stands with "n" for its opposite
    "o": lambda d, f: f("o"),
    "b": lambda d, f: f("c"),
    "e": lambda d, f: f("z"),
    "be": lambda d, f: d.either(f("c"), f("z")),
    "s": lambda d, f: f("s"),
    "l": lambda d, f: d.differ(f("s"), f("o")),
    "le": lambda d, f: d.either(f("z"), d.differ(f("s"), f("o"))),
}
OPPOSITES = {"no": "o", "ae": "b", "ne": "e", "a": "be", "ns": "s", "ge": "l", "g": "le"}


def holds(s, name):
    if name in OPPOSITES:
        return holds(s, OPPOSITES[name]) ^ 1
    return CONDITIONS[name](s.d, s.flag)


# Moves


@meaning("nop", "endbr64")
def nothing(s, insn):
    pass


@meaning("mov", "movabs", "movdqu", "movups")
def mov(s, insn):
    to, source = insn.operands
    write(s, to, read(s, source, to.size))


@meaning("movdqa", "movaps")
def mov_aligned(s, insn):
    for operand in insn.operands:
        if not operand.register:
            s.require_alignment(address(s, operand), 16)
    mov(s, insn)


@meaning("movzx")
def movzx(s, insn):
    to, source = insn.operands
    write(s, to, extended(bits(read(s, source)), 8 * to.size))


@meaning("movsx", "movsxd")
def movsx(s, insn):
    to, source = insn.operands
    write(s, to, extended(bits(read(s, source)), 8 * to.size, sign=True))


@meaning("cdqe")
def cdqe(s, insn):
    s.set_register("rax", extended(s.register("eax"), 64, sign=True))


@meaning("lea")
def lea(s, insn):
    to, source = insn.operands
    value = address(s, source)
    write(s, to, value if to.size == 8 else bits(value)[: 8 * to.size])


@meaning("xchg")
def xchg(s, insn):
    a, b = insn.operands
    value_a, value_b = read(s, a), read(s, b)
    write(s, a, value_b)
    write(s, b, value_a)


@meaning("push")
def push(s, insn):
    s.push(read(s, insn.operands[0], 8))


@meaning("pop")
def pop(s, insn):
    write(s, insn.operands[0], s.pop())


def cmov(s, insn, condition):
    to, source = insn.operands
    chosen, kept = read(s, source), read(s, to)
    if chosen != kept:
        if isinstance(chosen, Pointer) and isinstance(kept, Pointer) and chosen.region is kept.region:
            kept = Pointer(kept.region, vectors.choose(s.d, condition, chosen.offset, kept.offset))
        else:
            kept = vectors.choose(s.d, condition, bits(chosen), bits(kept))
    write(s, to, kept)


def setcc(s, insn, condition):
    write(s, insn.operands[0], (condition,) + (0,) * 7)


def jcc(s, insn, condition):
    return s.machine.branch(s, condition, insn.operands[0].immediate)


for prefix, function in (("cmov", cmov), ("set", setcc), ("j", jcc)):
    for name in (*CONDITIONS, *OPPOSITES):
        MEANINGS[prefix + name] = lambda s, insn, function=function, name=name: function(s, insn, holds(s, name))


# Arithmetic


def add_and_flag(s, a, b, carry=0, borrows=False):
    result, into_highest, out = add(s.d, a, b, carry)
    set_flags(s, result, out ^ borrows, lambda: s.d.differ(into_highest, out))
    return result


def sum_or_address(s, a, b):
    if isinstance(a, Pointer) or isinstance(b, Pointer):
        s.flags = dict.fromkeys("czso")
        return s.plus(a, b)
    return add_and_flag(s, bits(a), bits(b))


def difference(s, a, b):
    """a - b, with flags: numbers, an address and a number, or two addresses."""
    if not isinstance(a, Pointer) and not isinstance(b, Pointer):
        return add_and_flag(s, bits(a), inverted(bits(b)), 1, borrows=True)
    s.flags = dict.fromkeys("czso")
    if not isinstance(b, Pointer):
        if number(bits(b)) == 0:
            s.flags["z"] = is_null(s, a)
        return s.plus(a, vectors.negative(s.d, b))
    if not isinstance(a, Pointer):
        return MIXED
    if a.region is b.region:
        # Which lies before the other is told by the signs of their distance, as no region is as large as half of all.
        distance = add(s.d, a.offset, inverted(b.offset), 1)[0]
        s.flags["z"], s.flags["c"] = is_zero(s.d, distance), distance[-1]
        return distance
    # Nothing is known of where regions lie: either may be before the other, or end where the other begins.
    s.flags["z"], s.flags["c"] = s.machine.unknown(2)
    return MIXED


def is_null(s, pointer):
    if number(pointer.offset) != 0:
        raise Beyond("a comparison of an address within a record with null")
    s.machine.compared_with_null.add(pointer.region)
    return 0


@meaning("add")
def add_(s, insn):
    to, source = insn.operands
    write(s, to, sum_or_address(s, read(s, to), read(s, source, to.size)))


@meaning("sub")
def sub(s, insn):
    to, source = insn.operands
    if same_register(insn):
        write(s, to, zero(s, to.size))
    else:
        write(s, to, difference(s, read(s, to), read(s, source, to.size)))


@meaning("cmp")
def cmp(s, insn):
    first, second = insn.operands
    difference(s, read(s, first), read(s, second, first.size))


@meaning("sbb")
def sbb(s, insn):
    to, source = insn.operands
    write(s, to, add_and_flag(s, bits(read(s, to)), inverted(bits(read(s, source, to.size))), s.flag("c") ^ 1,
                              borrows=True))


@meaning("neg")
def neg(s, insn):
    to = insn.operands[0]
    write(s, to, add_and_flag(s, constant(0, 8 * to.size), inverted(bits(read(s, to))), 1, borrows=True))


@meaning("imul")
def imul(s, insn):
    to, *_ = insn.operands
    if len(insn.operands) == 1:
        raise Beyond("a product of double width")
    a, b = insn.operands[-2:]
    write(s, to, vectors.multiply(s.d, bits(read(s, a, to.size)), bits(read(s, b, to.size))))
    s.flags = dict.fromkeys("czso")


# Logic


def zero(s, size):
    result = (0,) * (8 * size)
    set_flags(s, result, 0, 0)
    return result


def logical(operation):
    def apply(s, insn):
        to, source = insn.operands
        result = operation(s.d, bits(read(s, to)), bits(read(s, source, to.size)))
        set_flags(s, result, 0, 0)
        write(s, to, result)
    return apply


MEANINGS["or"] = logical(vectors.either)


@meaning("and")
def and_(s, insn):
    to, source = insn.operands
    value = read(s, to)
    if isinstance(value, Pointer):
        low = (~source.immediate if source.immediate is not None else -1) + 1  # a mask that clears the low bits
        if low <= 0 or low & (low - 1) or low > 64:
            raise Beyond("a part of an address")
        s.flags = dict.fromkeys("czso")
        write(s, to, s.aligned(value, low.bit_length() - 1))
    else:
        logical(vectors.both)(s, insn)


@meaning("xor")
def xor(s, insn):
    if same_register(insn):
        write(s, insn.operands[0], zero(s, insn.operands[0].size))  # whatever it held
    else:
        logical(vectors.differ)(s, insn)


@meaning("test")
def test(s, insn):
    first, second = insn.operands
    a, b = read(s, first), read(s, second, first.size)
    if isinstance(a, Pointer) and a == b:
        s.flags = dict.fromkeys("czso", None) | {"z": is_null(s, a)}
    else:
        set_flags(s, vectors.both(s.d, bits(a), bits(b)), 0, 0)


@meaning("not")
def not_(s, insn):
    write(s, insn.operands[0], inverted(bits(read(s, insn.operands[0]))))


@meaning("bswap")
def bswap(s, insn):
    write(s, insn.operands[0], vectors.byte_swapped(bits(read(s, insn.operands[0]))))


def shift_count(s, insn):
    """The number of bits to shift by, as the processor limits it: a number, or bits."""
    if len(insn.operands) == 1:
        return 1
    count = bits(read(s, insn.operands[-1]))[: 6 if insn.operands[0].size == 8 else 5]
    known = number(count)
    return count if known is None else known


def shift(move, last_out):
    def apply(s, insn):
        to = insn.operands[0]
        value, count = bits(read(s, to)), shift_count(s, insn)
        if isinstance(count, int):
            if count:
                set_flags(s, move(value, count), last_out(value, count) if count <= len(value) else None)
                value = move(value, count)
            write(s, to, value)  # also if it is as it was: half of a register clears the other half
            return
        for position, bit in enumerate(count):
            value = vectors.choose(s.d, bit, move(value, 1 << position), value)
        s.flags = dict.fromkeys("czso")
        write(s, to, value)
    return apply


MEANINGS["shl"] = shift(lambda v, n: ((0,) * n + v)[: len(v)], lambda v, n: v[-n])
MEANINGS["shr"] = shift(lambda v, n: (v + (0,) * n)[n:], lambda v, n: v[n - 1])
MEANINGS["sar"] = shift(lambda v, n: (v + v[-1:] * n)[n:], lambda v, n: v[n - 1])


@meaning("rol", "ror")
def rotate(s, insn):
    to = insn.operands[0]
    value = bits(read(s, to))
    count = shift_count(s, insn)
    if not isinstance(count, int):
        raise Beyond("a rotation by an undetermined number")
    count %= len(value)
    count = count if insn.mnemonic == "ror" else -count % len(value)
    write(s, to, value[count:] + value[:count])
    s.flags = s.flags | {"c": None, "o": None}


@meaning("shld", "shrd")
def double_shift(s, insn):
    to, source, _ = insn.operands
    value, more, count = bits(read(s, to)), bits(read(s, source)), shift_count(s, insn)
    if not isinstance(count, int) or not 0 < count < len(value):
        raise Beyond("a double shift by an undetermined number, by nothing, or by more than the width")
    left = insn.mnemonic == "shld"
    result = more[-count:] + value[:-count] if left else value[count:] + more[:count]
    set_flags(s, result, value[-count] if left else value[count - 1])
    write(s, to, result)


@meaning("bt", "bts", "btr")
def bit_test(s, insn):
    to, which = insn.operands
    if which.immediate is None or not to.register:
        raise Beyond("a test of an undetermined bit")
    value, position = bits(read(s, to)), which.immediate % (8 * to.size)
    bit = value[position]
    if insn.mnemonic != "bt":
        changed = {"bts": 1, "btr": 0}[insn.mnemonic]
        write(s, to, value[:position] + (changed,) + value[position + 1 :])
    s.flags = dict.fromkeys("so") | {"c": bit, "z": s.flags["z"]}


# Vectors


@meaning("movq")
def movq(s, insn):
    to, source = insn.operands
    value = read(s, source, 8)
    write(s, to, extended(bits(value), 128) if to.register in VECTOR else value)


@meaning("movhps")
def movhps(s, insn):
    to, source = insn.operands
    if to.register:
        write(s, to, bits(read(s, to))[:64] + bits(read(s, source, 8)))
    else:
        write(s, to, bits(read(s, source))[64:])


def vector_source(s, operand):
    if not operand.register:
        s.require_alignment(address(s, operand), 16)
    return bits(read(s, operand, 16))


def vector_logical(operation):
    def apply(s, insn):
        to, source = insn.operands
        if same_register(insn) and operation is vectors.differ:
            write(s, to, (0,) * 128)
            return
        write(s, to, operation(s.d, bits(read(s, to)), vector_source(s, source)))
    return apply


for names, operation in (("pxor xorps", vectors.differ), ("por orps", vectors.either), ("pand andps", vectors.both),
                         ("pandn andnps", lambda d, a, b: vectors.both(d, inverted(a), b))):
    MEANINGS.update(dict.fromkeys(names.split(), vector_logical(operation)))


def lanes(value, width):
    return [value[first : first + width] for first in range(0, len(value), width)]


def interleave(width, high):
    def apply(s, insn):
        to, source = insn.operands
        half = slice(64, 128) if high else slice(0, 64)
        a, b = bits(read(s, to))[half], vector_source(s, source)[half]
        write(s, to, sum((x + y for x, y in zip(lanes(a, width), lanes(b, width))), ()))
    return apply


for letters, width in (("bw", 8), ("wd", 16), ("dq", 32), ("qdq", 64)):
    MEANINGS["punpckl" + letters] = interleave(width, high=False)
    MEANINGS["punpckh" + letters] = interleave(width, high=True)


def shuffle(width, first):
    """The four lanes from bit `first` on are chosen by the immediate; the others stay."""
    def apply(s, insn):
        to, source, order = insn.operands
        value = vector_source(s, source)
        taken = lanes(value[first : first + 4 * width], width)
        chosen = sum((taken[order.immediate >> 2 * lane & 3] for lane in range(4)), ())
        write(s, to, value[:first] + chosen + value[first + 4 * width :])
    return apply


MEANINGS["pshufd"] = shuffle(32, 0)
MEANINGS["pshuflw"] = shuffle(16, 0)
MEANINGS["pshufhw"] = shuffle(16, 64)


@meaning("packuswb")
def packuswb(s, insn):
    def saturated(word):
        above = is_zero(s.d, word[8:]) ^ 1
        return tuple(s.d.choose(word[15], 0, s.d.either(above, bit)) for bit in word[:8])

    to, source = insn.operands
    words = lanes(bits(read(s, to)) + vector_source(s, source), 16)
    write(s, to, sum(map(saturated, words), ()))


# Ways


@meaning("jmp")
def jmp(s, insn):
    target = insn.operands[0]
    if target.immediate is None:
        return s.machine.jump(s, insn.address, read(s, target, 8))
    s.pc = target.immediate


@meaning("call")
def call(s, insn):
    target = insn.operands[0].immediate
    if target is None:
        raise Beyond("a call of a computed address")
    return s.machine.call(s, target)


@meaning("ret")
def ret(s, insn):
    if insn.operands:
        raise Beyond("a return that takes arguments off the stack")
    return s.machine.ret(s)
