#!/usr/bin/env python3
"""What calls from Python cost, beside a loop in C over the same records: python_calls.py [TABLE_OR_NAME...]

Nanoseconds a record, the least of several runs. Set PYTHONPATH to the folder python/ of a build.
"""
import sys
import time

import npxlate
from npxlate import _translator

RECORDS = 100_000
RUNS = 7


def least(run):
    """The nanoseconds of the fastest run."""
    times = []
    for _ in range(RUNS):
        start = time.perf_counter_ns()
        run()
        times.append(time.perf_counter_ns() - start)
    return min(times)


def main(names):
    print(f"{'translator':<40}{'C':>8}{'many':>8}{'share':>7}{'without the loop':>18}{'one call each':>15}")
    for name in names:
        translator = npxlate.translator(int(name) if name.isdigit() else name)
        size = translator.source.most
        records = bytearray(bytes(range(256)) * (size * RECORDS // 256 + 1))[:size * RECORDS]
        out = bytearray(translator.target.most * RECORDS)
        many = translator.many(records, out=out)
        source, target = _translator._Buffer(records, "records"), _translator._Buffer(out, "out")
        in_c = least(lambda: translator._loop(source.address, size, target.address, many.size, RECORDS, many.statuses,
                                              many.lengths, None))
        from_python = least(lambda: translator.many(records, out=out))
        loop, _translator.LOOP = _translator.LOOP, None
        by_ctypes = least(lambda: translator.many(records, out=out))
        _translator.LOOP = loop
        alone = [bytes(records[i * size:(i + 1) * size]) for i in range(RECORDS // 10)]
        one_each = 10 * least(lambda: [translator(record) for record in alone])
        print(f"{translator.name:<40}" + "".join(f"{time / RECORDS:>{width}.1f}" for time, width in (
            (in_c, 8), (from_python, 8))) + f"{in_c / from_python:>7.0%}" + f"{by_ctypes / RECORDS:>18.1f}"
              f"{one_each / RECORDS:>15.1f}")


main(sys.argv[1:] or ["generic_fast_ip_xlate_result", "4", "5", "11", "17", "cfm_hwo_xlate_tx_result"])
