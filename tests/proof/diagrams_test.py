"""Decision diagrams and the arithmetic on them against plain numbers, for all values of a few bits."""

import itertools
import pathlib
import random
import sys
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "proof"))

import vectors  # noqa: E402
from diagrams import Diagrams  # noqa: E402

NAMES = [f"x{n}" for n in range(8)]


def all_values():
    for bits in itertools.product((0, 1), repeat=len(NAMES)):
        yield dict(zip(NAMES, bits))


class Functions(unittest.TestCase):
    def setUp(self):
        random.seed(1)
        self.d = Diagrams()
        self.known = [(0, lambda v: 0), (1, lambda v: 1)]
        self.known += [(self.d.variable(name), lambda v, name=name: v[name]) for name in NAMES]

    def grow(self):
        (f, a), (g, b), (h, c) = random.choices(self.known, k=3)
        self.known.append(random.choice([
            (self.d.both(f, g), lambda v: a(v) & b(v)),
            (self.d.either(f, g), lambda v: a(v) | b(v)),
            (self.d.differ(f, g), lambda v: a(v) ^ b(v)),
            (f ^ 1, lambda v: 1 - a(v)),
            (self.d.choose(f, g, h), lambda v: b(v) if a(v) else c(v)),
        ]))

    def test_functions_have_their_values_and_only_one_form(self):
        for _ in range(120):
            self.grow()
        form_of = {}
        for function, meaning in self.known:
            truth = tuple(meaning(values) for values in all_values())
            self.assertEqual(truth, tuple(self.d.value(function, values) for values in all_values()))
            self.assertEqual(form_of.setdefault(truth, function), function)
            if any(truth):
                example = self.d.example(function)
                self.assertEqual(self.d.value(function, example), 1)
                self.assertEqual(self.d.value(function, dict.fromkeys(NAMES, 1) | example), 1)
            flips = {name for name in NAMES if any(
                self.d.value(function, v) != self.d.value(function, v | {name: 1 - v[name]}) for v in all_values())}
            self.assertEqual(self.d.bits_of(function), flips)


class Numbers(unittest.TestCase):
    def test_arithmetic(self):
        d = Diagrams()
        a = tuple(d.variable(name) for name in NAMES[:4])
        b = tuple(d.variable(name) for name in NAMES[4:])
        total, into_highest, carry = vectors.add(d, a, b)
        product = vectors.multiply(d, a, b)
        for values in all_values():
            x, y = (sum(values[name] << i for i, name in enumerate(names)) for names in (NAMES[:4], NAMES[4:]))

            def value(bits):
                return sum(d.value(bit, values) << i for i, bit in enumerate(bits))

            self.assertEqual(value(total) + 16 * d.value(carry, values), x + y)
            self.assertEqual(d.value(into_highest, values), (x % 8 + y % 8) // 8)
            self.assertEqual(value(product), x * y % 16)
            self.assertEqual(value(vectors.negative(d, a)), -x % 16)
            self.assertEqual(d.value(vectors.equal(d, a, b), values), x == y)
            self.assertEqual(value(vectors.byte_swapped(a + b + b + a)), (x + 16 * y) << 8 | y + 16 * x)

    def test_values_under_a_condition(self):
        d = Diagrams()
        a = tuple(d.variable(name) for name in NAMES[:3])
        condition = d.both(a[2], d.variable("other"))
        found = dict(vectors.values(d, a, condition))
        self.assertEqual(sorted(found), [4, 5, 6, 7])
        together = 0
        for holds in found.values():
            self.assertEqual(d.both(together, holds), 0)
            together = d.either(together, holds)
        self.assertEqual(together, condition)


if __name__ == "__main__":
    unittest.main()
