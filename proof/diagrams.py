"""Functions of undetermined bits, as binary decision diagrams.

A function is a number. 0 is false, 1 is true, and `f ^ 1` is the opposite of f. All functions of a `Diagrams` are kept
in one form only: two are equal for all values of their bits exactly if they are the same number. Nothing is left for a
solver to decide.
"""


class TooLarge(Exception):
    """A function has outgrown what can be handled."""


class Diagrams:
    MOST_NODES = 8_000_000

    def __init__(self):
        # Node n tests the bit of level `_level[n]`: the function is `_low[n]` if that is clear, `_high[n]` if it is
        # set. The function 2n is the node, 2n + 1 its opposite. Node 0 is the constant. `_low[n]` is always even, which
        # leaves just one way to write a function.
        self._level = [1 << 60]
        self._low = [0]
        self._high = [0]
        self._nodes = {}  # (level, low, high) to number
        self._and = {}
        self._xor = {}
        self._ite = {}
        self._variables = {}  # name to function
        self.names = []  # by level: bits named first are tested first

    def variable(self, name):
        """The bit of that name."""
        function = self._variables.get(name)
        if function is None:
            self.names.append(name)
            function = self._variables[name] = self._node(len(self.names) - 1, 0, 1)
        return function

    def _node(self, level, low, high):
        if low == high:
            return low
        opposite = low & 1
        key = level, low ^ opposite, high ^ opposite
        number = self._nodes.get(key)
        if number is None:
            number = len(self._level)
            if number > self.MOST_NODES:
                raise TooLarge
            self._nodes[key] = number
            self._level.append(level)
            self._low.append(key[1])
            self._high.append(key[2])
        return number << 1 | opposite

    def _split(self, f, level):
        """f where the bit of that level is clear, and where it is set."""
        node = f >> 1
        if self._level[node] != level:
            return f, f
        opposite = f & 1
        return self._low[node] ^ opposite, self._high[node] ^ opposite

    def both(self, f, g):
        if f == g:
            return f
        if f ^ g == 1:
            return 0
        if f < 2:
            return g if f else 0
        if g < 2:
            return f if g else 0
        if f > g:
            f, g = g, f
        key = f, g
        result = self._and.get(key)
        if result is None:
            level = min(self._level[f >> 1], self._level[g >> 1])
            f0, f1 = self._split(f, level)
            g0, g1 = self._split(g, level)
            result = self._and[key] = self._node(level, self.both(f0, g0), self.both(f1, g1))
        return result

    def either(self, f, g):
        return self.both(f ^ 1, g ^ 1) ^ 1

    def differ(self, f, g):
        """Exclusive or."""
        opposite = (f ^ g) & 1
        f &= ~1
        g &= ~1
        if f == g:
            return opposite
        if f == 0:
            return g ^ opposite
        if g == 0:
            return f ^ opposite
        if f > g:
            f, g = g, f
        key = f, g
        result = self._xor.get(key)
        if result is None:
            level = min(self._level[f >> 1], self._level[g >> 1])
            f0, f1 = self._split(f, level)
            g0, g1 = self._split(g, level)
            result = self._xor[key] = self._node(level, self.differ(f0, g0), self.differ(f1, g1))
        return result ^ opposite

    def choose(self, condition, f, g):
        """f where the condition holds, g where it does not."""
        if condition < 2:
            return f if condition else g
        if f == g:
            return f
        if condition & 1:
            condition, f, g = condition ^ 1, g, f
        if f < 2:
            return self.either(condition, g) if f else self.both(condition ^ 1, g)
        if g < 2:
            return self.either(condition ^ 1, f) if g else self.both(condition, f)
        key = condition, f, g
        result = self._ite.get(key)
        if result is None:
            levels = self._level
            level = min(levels[condition >> 1], levels[f >> 1], levels[g >> 1])
            c0, c1 = self._split(condition, level)
            f0, f1 = self._split(f, level)
            g0, g1 = self._split(g, level)
            result = self._ite[key] = self._node(level, self.choose(c0, f0, g0), self.choose(c1, f1, g1))
        return result

    def example(self, f):
        """Values of bits by name with which f, which is not false, is true. Bits left out may have any value."""
        values = {}
        while f > 1:
            level = self._level[f >> 1]
            low, high = self._split(f, level)
            values[self.names[level]] = 1 if low == 0 else 0
            f = high if low == 0 else low
        assert f == 1
        return values

    def value(self, f, values):
        """f for those values of bits; bits left out are clear."""
        while f > 1:
            level = self._level[f >> 1]
            f = self._split(f, level)[values.get(self.names[level], 0)]
        return f

    def bits_of(self, *functions):
        """The names of the bits on which they depend."""
        seen = set()
        levels = set()
        pending = [f >> 1 for f in functions]
        while pending:
            node = pending.pop()
            if node and node not in seen:
                seen.add(node)
                levels.add(self._level[node])
                pending += self._low[node] >> 1, self._high[node] >> 1
        return {self.names[level] for level in levels}
