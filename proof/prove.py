"""Proves that the machine code of the library does what its forms say. scripts/prove calls it with what it built."""

import argparse
import concurrent.futures
import fnmatch
import functools
import sys
import time
import traceback
from typing import NamedTuple

import claim
import vectors
from claim import Call, Counterexample, LengthMatters
from diagrams import Diagrams, TooLarge
from forms import Form, Tool
from image import Image
from machine import AddressMatters, Beyond

PROVED, REFUTED, RESISTS = "proved", "refuted", "resists"


class Outcome(NamedTuple):
    verdict: str
    words: str
    lines: list = ()


class Prover:
    def __init__(self, image, tool, greatest_length):
        self.image = image
        self.tool = tool
        self.lengths = range(-1, greatest_length + 1)
        self.executed = set()  # the addresses of all instructions that some call reached
        self.compared_with_null = set()  # what the code asked whether it is null

    def prove(self, translator):
        if translator.name not in self.image.functions:
            return Outcome(REFUTED, "is not exported")
        try:
            return Outcome(PROVED, self._prove(translator))
        except Counterexample as counterexample:
            return Outcome(REFUTED, "", counterexample.args[0])
        except Beyond as beyond:
            place = getattr(beyond, "place", None)
            return Outcome(RESISTS, f"{beyond}" + (f" at {place:#x}" if place else ""))
        except TooLarge as too_large:
            return Outcome(RESISTS, str(too_large) or "a function of too many bits")

    def _check(self, forms, *arguments, observe=None, low_bits=None, **more):
        """Checks a call; where its outcome depends on how the records lie, for each of the ways they may."""
        call = Call(self.image, *arguments, low_bits=low_bits, **more)
        if observe:
            call.machine.observe = observe
        try:
            claim.check(call, forms)
        except AddressMatters as matters:
            for start in range(1 << matters.low_bits):
                bits = (low_bits or {}) | {matters.region.name: vectors.constant(start, matters.low_bits)}
                self._check(forms, *arguments, observe=observe, low_bits=bits, **more)
        self.executed |= call.machine.executed
        self.compared_with_null |= {region.name for region in call.machine.compared_with_null}

    def _prove(self, translator):
        """What was proved, in words."""
        sizes = claim.SIZES_BY_LENGTH.get(translator.name)
        words = None
        self.compared_with_null = set()
        if sizes is None:
            sizes = functools.partial(claim.fixed_sizes, translator)
            try:
                words = self._prove_without_length(translator)
            except LengthMatters:
                pass
        if words is None:
            words = self._prove_by_length(translator, sizes)
        if self.compared_with_null:
            self._prove_null(translator, sizes(0))
            words += ", null pointers"
        return words

    def _prove_by_length(self, translator, sizes):
        least = 0 if translator.name in claim.NEGATIVE_LENGTH_IS_AN_ERROR else self.lengths.start
        for length in range(least, self.lengths.stop):
            d, forms = self.tool.forms(translator, length)
            self._check(forms, translator, d, sizes(length), length)
        words = f"lengths {least} to {self.lengths.stop - 1}"
        if translator.name not in claim.UNBOUNDED:
            self._prove_for_all_lengths(translator, sizes, self.lengths.stop, 0)
            words = "lengths from 0 on"
            if least < 0:
                self._prove_for_all_lengths(translator, sizes, least - 1, 1)
                words = "every length"
        return words

    def _prove_without_length(self, translator):
        d, forms = self.tool.forms(translator)
        names = {f"length.{bit}" for bit in range(32)}

        def observe(*functions):
            if not names.isdisjoint(d.bits_of(*functions)):
                raise LengthMatters

        size_in, size_out = map(translator.greatest, translator.sides)
        self._check(forms, translator, d, (size_in, size_out), observe=observe)
        # Where some forms have a shorter record to write, they keep to that.
        least_out = translator.least(translator.sides[1])
        for form in forms:
            if least_out < size_out and claim.keeps_behind(d, translator, form, least_out):
                self._check(forms, translator, d, (size_in, least_out), observe=observe, condition=form.condition)
        return f"{len(forms)} form{'s' if len(forms) > 1 else ''}"

    def _prove_for_all_lengths(self, translator, sizes, end, below):
        """For all lengths from `end` on upwards, or downwards."""
        d, forms = self.tool.forms(translator, end)
        bits = claim.length_bits(d)
        distance = vectors.add(d, vectors.extended(bits, 33, sign=True),
                               vectors.inverted(vectors.constant(end, 33)), 1)[0]
        beyond = distance[-1] ^ 1  # at least `end`
        if below:
            beyond = d.either(distance[-1], vectors.is_zero(d, distance))
        self._check(forms, translator, d, sizes(end), condition=beyond)

    def _prove_null(self, translator, sizes):
        """A translator that asks for null pointers does nothing when it gets one."""
        for register in ("rdi", "rdx", "rcx"):
            self._check([Form("a null pointer", 1, 0, None, [], {})], translator, Diagrams(), sizes, null=register)


_prover = None
_translators = None


def _start(library, tool_path, greatest_length, translators):
    global _prover, _translators
    sys.setrecursionlimit(100_000)
    _prover = Prover(Image(library), Tool(tool_path), greatest_length)
    _translators = translators


def _prove(name):
    """In a process of its own."""
    started = time.monotonic()
    _prover.executed = set()
    try:
        outcome = _prover.prove(_translators[name])
    except Exception:  # whatever it is, it is no proof
        outcome = Outcome(RESISTS, "the proof itself failed", traceback.format_exc().splitlines())
    return name, outcome, time.monotonic() - started, _prover.executed


def prove_library(library, tool_path, names, translators, greatest_length, processes):
    """Prints what becomes of each. The result is how many there were of each verdict."""
    counts = dict.fromkeys((PROVED, REFUTED, RESISTS), 0)
    started = time.monotonic()
    executed = set()
    image = Image(library)
    print(f"== {library}, compiled by {image.compiler}", flush=True)
    with concurrent.futures.ProcessPoolExecutor(
            processes, initializer=_start, initargs=(library, tool_path, greatest_length, translators)) as pool:
        for future in concurrent.futures.as_completed([pool.submit(_prove, name) for name in names]):
            name, outcome, seconds, reached = future.result()
            counts[outcome.verdict] += 1
            executed |= reached
            done = sum(counts.values())
            print(f"[{done}/{len(names)}] {outcome.verdict} {name}: {outcome.words} ({seconds:.1f} s)", flush=True)
            for line in outcome.lines:
                print("    " + line, flush=True)
    if len(names) == len(translators):
        print(f"no translators, and so not proved: {', '.join(sorted(image.functions.keys() - names))}")
    real = {insn.address for insn in image.all_instructions() if insn.mnemonic != "nop"}
    print(f"{counts[PROVED]} of {len(names)} translators proved, {counts[REFUTED]} refuted, {counts[RESISTS]} beyond"
          f" reach; {len(executed & real)} of {len(real)} instructions executed, in {time.monotonic() - started:.0f} s")
    return counts


def main():
    parser = argparse.ArgumentParser(
        prog="scripts/prove", description="Proves that the machine code of the library does what its forms say.",
        epilog="Exit status: 0 proved, 1 refuted, 2 not decided or not possible.")
    parser.add_argument("names", nargs="*", metavar="NAME", help="translators, or patterns such as 'ipmc_*' (all)")
    parser.add_argument("--library", action="append", required=True, help="the shared object; may be repeated")
    parser.add_argument("--tool", required=True, help="npxlate, which computes the forms")
    parser.add_argument("--length", type=int, default=72, help="the greatest length tried one by one (%(default)s)")
    parser.add_argument("--processes", type=int, default=2, help="how many at once (%(default)s)")
    options = parser.parse_args()

    try:
        translators = Tool(options.tool).translators()
        names = {}
        for pattern in options.names or ["*"]:
            found = fnmatch.filter(translators, pattern)
            if not found:
                print(f"scripts/prove: no translator is called {pattern}; npxlate tables lists them", file=sys.stderr)
                return 2
            names |= dict.fromkeys(found)
        total = dict.fromkeys((PROVED, REFUTED, RESISTS), 0)
        for library in options.library:
            for verdict, number in prove_library(library, options.tool, list(names), translators, options.length,
                                                 options.processes).items():
                total[verdict] += number
    except (OSError, ValueError, KeyError, concurrent.futures.BrokenExecutor) as error:
        print(f"scripts/prove: {error}", file=sys.stderr)
        return 2
    return 1 if total[REFUTED] else 2 if total[RESISTS] else 0


if __name__ == "__main__":
    sys.exit(main())
