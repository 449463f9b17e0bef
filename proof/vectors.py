"""Arithmetic on values of undetermined bits: tuples of functions, least significant bit first."""

from diagrams import TooLarge


def constant(number, width):
    return tuple(number >> bit & 1 for bit in range(width))


def number(bits):
    """The value, or None if it is not determined."""
    value = 0
    for position, bit in enumerate(bits):
        if bit > 1:
            return None
        value |= bit << position
    return value


def signed(value, width):
    return value - (1 << width) if value >> (width - 1) & 1 else value


def extended(bits, width, sign=False):
    return bits + (bits[-1] if sign else 0,) * (width - len(bits))


def inverted(bits):
    return tuple(bit ^ 1 for bit in bits)


def both(d, a, b):
    return tuple(map(d.both, a, b))


def either(d, a, b):
    return tuple(map(d.either, a, b))


def differ(d, a, b):
    return tuple(map(d.differ, a, b))


def choose(d, condition, a, b):
    return a if a == b else tuple(d.choose(condition, x, y) for x, y in zip(a, b))


def is_zero(d, bits):
    result = 1
    for bit in bits:
        if result == 0:
            break
        result = d.both(result, bit ^ 1)
    return result


def equal(d, a, b):
    return is_zero(d, differ(d, a, b))


def add(d, a, b, carry=0):
    """The sum, and the carries into its highest bit and out of it."""
    total = []
    into_highest = carry
    for x, y in zip(a, b):
        into_highest = carry
        either_one = d.differ(x, y)
        total.append(d.differ(either_one, carry))
        carry = d.choose(either_one, carry, x)
    return tuple(total), into_highest, carry


def negative(d, bits):
    return add(d, constant(0, len(bits)), inverted(bits), 1)[0]


def multiply(d, a, b):
    """The low half of the product."""
    width = len(a)
    if sum(bit != 0 for bit in a) < sum(bit != 0 for bit in b):
        a, b = b, a
    total = (0,) * width
    for position, bit in enumerate(b):
        if bit != 0:
            shifted = (0,) * position + a[: width - position]
            total = add(d, total, tuple(d.both(bit, x) for x in shifted))[0]
    return total


def byte_swapped(bits):
    return tuple(bit for start in range(len(bits) - 8, -1, -8) for bit in bits[start : start + 8])


def values(d, bits, condition, most=1024):
    """Every number that the bits can be under the condition, each with the condition under which they are."""
    found = [(0, condition)]
    for position in range(len(bits) - 1, -1, -1):
        bit = bits[position]
        if bit < 2:
            found = [(value << 1 | bit, holds) for value, holds in found]
        else:
            split = [(value << 1 | one, d.both(holds, bit ^ 1 ^ one)) for value, holds in found for one in (0, 1)]
            found = [(value, holds) for value, holds in split if holds != 0]
        if len(found) > most:
            raise TooLarge(f"a value that addresses depend on has more than {most} values")
    return found
