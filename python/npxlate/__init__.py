"""Translators between the logical and the physical records of a line card's forwarding tables.

A forwarding table has its entries twice: as control software builds them (*logical* records: host structures,
little-endian) and as the network processor reads them (*physical* records: packed, big-endian). ``libnpxlate.so.1``
turns the one into the other, exact to the bit, and this package calls it.

>>> import npxlate
>>> adjacency = bytes.fromhex("0000000023010000080000004200000000000000000000000100000a0000")
>>> physical = npxlate.result(4, adjacency)
>>> physical.hex()
'9100000000000d230a00000142000000'
>>> npxlate.reverse(4, physical)[24:28].hex()
'0a000001'

Translating
    :func:`key`, :func:`result` and :func:`reverse` translate one record of a table or of a translator's name, and give
    ``bytes`` that know what else happened (:class:`Record`). :meth:`Translator.many` translates a whole buffer.

What there is
    :func:`tables`, :func:`translators` and :func:`translator` tell titles, names, roles, sizes and :func:`traits`;
    :func:`registers` the register writes of an engine's bring-up.

What becomes of each bit
    :func:`explain`, :func:`decode`, :func:`layout`, :func:`roundtrip` and :func:`diff` give what the command-line tool
    ``npxlate`` knows, as objects. They need the tool; the rest of the package needs only the library.

Whatever cannot be done raises :class:`NpxlateError`, whose message says what was wrong and what would be right. Every
call is made in buffers of this package's own that are larger than any record, so no call can write where it must not.

The environment variable ``NPXLATE_LIBRARY`` names another library than the installed one, ``NPXLATE_TOOL`` another
tool.
"""
from ._data import VERSION as __version__
from ._error import NpxlateError
from ._tool import Document, decode, diff, explain, layout, roundtrip
from ._translator import (Lengths, Record, Records, Register, Table, Translator, key, registers, result, reverse,
                          set_tx_adj_key_max, tables, traits, translator, translators, tx_adj_key_max,
                          virtual_queue_index)

__all__ = [
    "Document",
    "Lengths",
    "NpxlateError",
    "Record",
    "Records",
    "Register",
    "Table",
    "Translator",
    "__version__",
    "decode",
    "diff",
    "explain",
    "key",
    "layout",
    "registers",
    "result",
    "reverse",
    "roundtrip",
    "set_tx_adj_key_max",
    "tables",
    "traits",
    "translator",
    "translators",
    "tx_adj_key_max",
    "virtual_queue_index",
]
