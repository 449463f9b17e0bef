"""Translators, tables, and the records that come out of them."""
import array
import ctypes
import difflib
import itertools
import operator
import sys
from typing import Any, Dict, FrozenSet, Iterable, List, NamedTuple, Optional, Sequence, Tuple, Union, cast, overload

from . import _data
from ._error import NpxlateError
from ._library import LIBRARY, LOOP, MAX_RECORD_LENGTH, NOT_STORED, ROOM, TX_ADJ_KEY_MAX, function

BytesLike = Union[bytes, bytearray, memoryview]
TableOrName = Union[int, str]

OK = 0
ROLES = ("key", "result", "reverse")

# How a translator is called; known to loop.c, too.
_FORWARD, _REVERSE, _REVERSE_BY_ARGUMENT = range(3)
_ARGUMENT_TYPES: Tuple[List[Any], ...] = (
    [ctypes.c_void_p, ctypes.c_int32, ctypes.c_void_p, ctypes.c_void_p],
    [ctypes.c_void_p, ctypes.c_int32, ctypes.c_void_p],
    [ctypes.c_void_p, ctypes.c_int32, ctypes.c_void_p, ctypes.c_void_p],
)


class Lengths(NamedTuple):
    """How many bytes a record may have; for all but a few records just one number.

    >>> import npxlate
    >>> npxlate.translator(4).logical
    Lengths(least=30, most=30)
    >>> str(npxlate.translator(0).logical)
    '0 to 64 bytes'
    """

    least: int
    most: int

    @property
    def fixed(self) -> bool:
        """Whether there is only one length."""
        return self.least == self.most

    def allows(self, length: int) -> bool:
        """Whether a record may have that many bytes.

        >>> Lengths(0, 47).allows(48)
        False
        """
        return self.least <= length <= self.most

    def __str__(self) -> str:
        if not self.fixed:
            return f"{self.least} to {self.most} bytes"
        return _bytes(self.most)


def _bytes(count: int) -> str:
    return "1 byte" if count == 1 else f"{count} bytes"


class Record(bytes):
    """A record as a translator made it: its bytes, and what else there is to know of the call.

    It is ``bytes``, and serves wherever bytes do.

    >>> import npxlate
    >>> record = npxlate.result(17, bytes.fromhex("0000000001020304"))
    >>> record.hex(" ")
    '11 00 01 00 01 02 03 04'
    >>> record.length
    8
    >>> record.translator
    <npxlate.Translator vrrp_vmac_entry_st_xlate_result: result of table 17, 8 bytes to 8 bytes>
    >>> npxlate.key(107, bytes(range(21))).input_changed
    True
    >>> npxlate.reverse(4, bytes(16)).not_written.hex(" ")
    '00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 ff ff ff ff ff ff ff ff 00 00 00 00 ff ff'

    ``translator``
        Which translator made it.
    ``length``
        The out-length that the translator stored, which tells how much to program. ``None`` if it stores none, as no
        reverse does.
    ``input``
        The record that went in, as the translator left it. A few translators write into it.
    ``input_changed``
        Whether the translator changed the record that went in.
    ``not_written``
        Which bits the translator left as the buffer had them: a mask, as long as the record. All zeros for most
        translators.
    """

    translator: "Translator"
    length: Optional[int]
    input: bytes
    input_changed: bool
    not_written: bytes

    def __new__(cls, data: bytes, translator: "Translator", length: Optional[int], input: bytes, input_changed: bool,
                not_written: bytes) -> "Record":
        record = super().__new__(cls, data)
        record.translator = translator
        record.length = length
        record.input = input
        record.input_changed = input_changed
        record.not_written = not_written
        return record

    def __getnewargs__(self) -> Tuple[Any, ...]:  # type: ignore[override]  # those of bytes are fewer
        return (bytes(self), self.translator, self.length, self.input, self.input_changed, self.not_written)


class Records(Sequence[Record]):
    """What came of a buffer of records: a sequence of :class:`Record`, and the buffers behind it.

    >>> import npxlate
    >>> two = npxlate.translator(17).many(bytes(8) + bytes.fromhex("0000000001020304"))
    >>> len(two), two.size
    (2, 8)
    >>> two.out.hex()
    '11000100000000001100010001020304'
    >>> two[1].hex()
    '1100010001020304'
    >>> list(two.statuses), list(two.lengths)
    ([0, 0], [8, 8])

    ``translator``
        Which translator made them.
    ``input``
        The records that went in, as the translator left them: your buffer itself, unless the translator is one that
        writes into its input; then a copy, in which you see what it wrote.
    ``input_size``
        The bytes from one record in ``input`` to the next.
    ``out``
        The records that came out, one behind the other, each in ``size`` bytes. What a refused record left there is
        undefined.
    ``size``
        The bytes from one record in ``out`` to the next.
    ``statuses``
        What the translator returned for each record; 0 is success.
    ``lengths``
        The out-length that the translator stored for each record; 0xffffffff where it stored none.
    """

    translator: "Translator"
    input: memoryview
    input_size: int
    out: memoryview
    size: int
    statuses: "array.array[int]"
    lengths: "array.array[int]"

    def __init__(self, translator: "Translator", original: memoryview, input: memoryview, input_size: int,
                 out: memoryview, size: int, statuses: "array.array[int]", lengths: "array.array[int]",
                 argument: Any) -> None:
        self.translator = translator
        self.input = input
        self.input_size = input_size
        self.out = out
        self.size = size
        self.statuses = statuses
        self.lengths = lengths
        self._original = original
        self._argument = argument

    def __len__(self) -> int:
        return len(self.statuses)

    @overload
    def __getitem__(self, index: int) -> Record: ...

    @overload
    def __getitem__(self, index: slice) -> List[Record]: ...

    def __getitem__(self, index: Union[int, slice]) -> Union[Record, List[Record]]:
        """The record of that index as its translator alone gives it, or the records of a slice as a list.

        Raises :class:`NpxlateError` for a record that the translator refuses.
        """
        if isinstance(index, slice):
            return [self[i] for i in range(*index.indices(len(self)))]
        i = range(len(self))[index]
        came = slice(i * self.input_size, (i + 1) * self.input_size)
        return self.translator._record(bytes(self._original[came]), bytes(self.input[came]),
                                       bytes(self.out[i * self.size:(i + 1) * self.size]), self.statuses[i],
                                       self.lengths[i], self._argument)


class Translator:
    """One translator of the library: what there is to know of it, and the means to call it.

    Get one by :func:`npxlate.translator`; call it like a function.

    >>> import npxlate
    >>> vrrp = npxlate.translator("vrrp_vmac_entry_st_xlate_result")
    >>> vrrp
    <npxlate.Translator vrrp_vmac_entry_st_xlate_result: result of table 17, 8 bytes to 8 bytes>
    >>> vrrp(bytes(8)).hex()
    '1100010000000000'
    >>> vrrp.role, vrrp.tables, vrrp.family
    ('result', (17,), 'oam')

    ``name``
        Its exported name.
    ``role``
        ``"key"``, ``"result"`` or ``"reverse"``.
    ``family``
        The family of records that it belongs to.
    ``title``
        What the record is, in words.
    ``tables``
        The ids of the tables that it serves; none if it is reached by name only.
    ``logical``
        The bytes of the logical record.
    ``physical``
        The bytes of the physical record.
    ``takes``
        The lengths that a record which goes in may have. Besides those of the record this is the length of what the
        reverse of the same table makes of it, where that is more: what was read back can go in again.
    ``traits``
        What sets it apart from others; :func:`npxlate.traits` says what each means. For a translator with
        ``hides_failures`` this package tells the failures from successes.
    """

    name: str
    role: str
    family: str
    title: str
    tables: Tuple[int, ...]
    logical: Lengths
    physical: Lengths
    takes: Tuple[Lengths, ...]
    traits: FrozenSet[str]

    def __init__(self, entry: Dict[str, Any]) -> None:
        def lengths(of: Dict[str, int]) -> Lengths:
            return Lengths(of["least"], of["most"])

        self.name = entry["name"]
        self.role = entry["role"]
        self.family = entry["family"]
        self.title = entry["title"]
        self.tables = tuple(entry["tables"])
        self.logical = lengths(entry["logical"])
        self.physical = lengths(entry["physical"])
        self.takes = tuple(map(lengths, entry["takes"]))
        self.traits = frozenset(entry["traits"])
        self._key_length: Optional[int] = entry["key_length"]
        self._kind = {"forward": _FORWARD, "reverse": _REVERSE}.get(entry["call"], _REVERSE_BY_ARGUMENT)
        self._function = function(self.name, _ARGUMENT_TYPES[self._kind])

    def __repr__(self) -> str:
        tables = ", ".join(map(str, self.tables))
        where = {0: "by name", 1: f"of table {tables}"}.get(len(self.tables), f"of tables {tables}")
        return f"<npxlate.Translator {self.name}: {self.role} {where}, {self.source} to {self.target}>"

    def __reduce__(self) -> Tuple[Any, ...]:
        return by_name, (self.name,)

    @property
    def source(self) -> Lengths:
        """The bytes of the record that goes in: ``logical``, or for a reverse ``physical``."""
        return self.physical if self.role == "reverse" else self.logical

    @property
    def target(self) -> Lengths:
        """The bytes of the record that comes out: ``physical``, or for a reverse ``logical``."""
        return self.logical if self.role == "reverse" else self.physical

    def __call__(self, record: BytesLike, *, entry_type: Optional[int] = None,
                 logical_key: Optional[BytesLike] = None, before: BytesLike = b"") -> Record:
        """Translates one record; see :func:`npxlate.result`."""
        data = _as_bytes(record, "the record")
        self._check_length(len(data))
        argument = self._argument(entry_type, logical_key)
        out_before = _as_bytes(before, "before")
        if len(out_before) > MAX_RECORD_LENGTH:
            raise NpxlateError(f"before has {_bytes(len(out_before))}: expected at most {MAX_RECORD_LENGTH}")
        status, length, after, out = self._run(data, out_before, argument)
        return self._record(data, after, out, status, length, argument)

    def many(self, records: Any, *, size: Optional[int] = None, out: Any = None, entry_type: Optional[int] = None,
             logical_key: Optional[BytesLike] = None) -> Records:
        """Translates a buffer of records, which lie one behind the other, at about the speed of a loop in C.

        ``records`` is whatever has a buffer: ``bytes``, a ``memoryview``, a memory-mapped file, a NumPy array.
        ``size`` is the bytes of one record; without it, that of the translator's records, or what one element or row
        of ``records`` has. ``out``, if given, is a writable buffer for what comes out; otherwise there is a new one
        of zeros. It matters to the translators that leave bits as they were, and saves making a buffer at each call.

        Records that are refused do not stop the others: see ``statuses``, which with ``lengths`` has one entry a
        record. Your records are never changed: see ``input``.

        >>> import npxlate
        >>> vlans = npxlate.translator(17).many(bytes(16))
        >>> vlans.out.hex(" ", 8)
        '1100010000000000 1100010000000000'

        With NumPy, ``numpy.asarray(translated.out).reshape(-1, translated.size)`` is the array of what came out.
        """
        source = _Buffer(records, "records")
        step = self._step(source, size)
        count = source.length // step
        argument = self._argument(entry_type, logical_key)
        out_step = self.target.most if self.target.fixed or self.source.fixed else step
        original = source
        if "changes_input" in self.traits:
            source = _Buffer(bytearray(source.view), "records")
        target = _Buffer(bytearray(count * out_step) if out is None else out, "out")
        if target.read_only:
            raise NpxlateError("out is read-only: expected a writable buffer")
        if target.length != count * out_step:
            raise NpxlateError(f"out has {_bytes(target.length)}: expected {count * out_step}, which is {count} "
                               f"records of {_bytes(out_step)}")
        if source.overlaps(target):
            raise NpxlateError("out overlaps the records: expected a buffer of its own")
        statuses = array.array("i", bytes(4 * count))
        lengths = array.array("I", b"\xff" * (4 * count))
        if count:
            self._loop(source.address, step, target.address, out_step, count, statuses, lengths, argument)
        return Records(self, original.view, source.view, step, target.view, out_step, statuses, lengths, argument)

    def _loop(self, source: int, step: int, target: int, out_step: int, count: int, statuses: "array.array[int]",
              lengths: "array.array[int]", argument: Any) -> None:
        length = min(step, self.source.most)
        lengths_at = lengths.buffer_info()[0]
        if LOOP is not None:
            LOOP(ctypes.cast(cast(Any, self._function), ctypes.c_void_p), self._kind, source, step, target, out_step,
                 count, length, statuses.buffer_info()[0], lengths_at, argument)
            return
        arguments: List[Iterable[Any]] = [range(source, source + count * step, step), itertools.repeat(length, count),
                                          range(target, target + count * out_step, out_step) if out_step else
                                          itertools.repeat(target, count)]
        if self._kind == _FORWARD:
            arguments.append(range(lengths_at, lengths_at + 4 * count, 4))
        elif self._kind == _REVERSE_BY_ARGUMENT:
            arguments.append(itertools.repeat(argument, count))
        statuses[:] = array.array("i", map(self._function, *arguments))

    def _step(self, source: "_Buffer", size: Optional[int]) -> int:
        """The bytes from one record to the next, checked."""
        if size is None:
            size = source.element
        if size is None:
            if not self.source.fixed:
                raise NpxlateError(f"{self.name} takes records of {self.source}: expected a size")
            size = self.source.most
        self._check_length(operator.index(size))
        if size < self.source.least:
            # Whether a record may be shorter depends on what is in it, and the translator reads on into the next.
            raise NpxlateError(f"{self.name} takes records of {self.source.least} bytes one behind the other: expected "
                               f"the shorter form of {_bytes(size)} by itself")
        if size == 0:
            raise NpxlateError("records of 0 bytes cannot be counted: expected a size of at least 1")
        if source.length % size:
            raise NpxlateError(f"records has {_bytes(source.length)}: expected a multiple of {size}, the bytes of a "
                               "record")
        return size

    def _check_length(self, length: int) -> None:
        if any(lengths.allows(length) for lengths in self.takes):
            return
        expected = str(self.takes[0]) + "".join(f" (or {lengths.most}, as read back)" for lengths in self.takes[1:])
        side = "physical" if self.role == "reverse" else "logical"
        raise NpxlateError(f"{self.name} takes a {side} record of {expected}, but {length} came")

    def _argument(self, entry_type: Optional[int], logical_key: Optional[BytesLike]) -> Any:
        """The fourth argument, as ctypes takes it; None if the translator has none."""
        for name, trait, given in (("entry_type", "takes_type", entry_type), ("logical_key", "takes_key",
        logical_key)):
            if trait in self.traits and given is None:
                raise NpxlateError(f"{self.name} needs the {name} of the entry: expected {name}=...")
            if trait not in self.traits and given is not None:
                raise NpxlateError(f"{self.name} takes no {name}: expected none")
        if entry_type is not None:
            number = operator.index(entry_type)
            if not 0 <= number <= 0xFFFFFFFF:
                raise NpxlateError(f"entry_type is {number}: expected a number from 0 to 4294967295")
            return ctypes.create_string_buffer(number.to_bytes(4, sys.byteorder), 4)
        if logical_key is not None:
            key = _as_bytes(logical_key, "logical_key")
            if len(key) != self._key_length:
                raise NpxlateError(f"{self.name} takes a logical key of {self._key_length} bytes, but {len(key)} came")
            return ctypes.create_string_buffer(key, len(key))
        return None

    def _run(self, data: bytes, before: bytes, argument: Any) -> Tuple[int, int, bytes, bytes]:
        """One call: status, out-length, and both buffers afterwards; that of the output with more than the record."""
        source = ctypes.create_string_buffer(data, ROOM)
        target = ctypes.create_string_buffer(before, ROOM)
        length = ctypes.c_uint32(NOT_STORED)
        arguments = [source, min(len(data), self.source.most), target]
        if self._kind == _FORWARD:
            arguments.append(ctypes.byref(length))
        elif self._kind == _REVERSE_BY_ARGUMENT:
            arguments.append(argument)
        status = self._function(*arguments)
        return status, length.value, source.raw[:len(data)], target.raw

    def _record(self, data: bytes, after: bytes, out: bytes, status: int, length: int, argument: Any) -> Record:
        """What a call came to, or the error that says so."""
        stored = None if length == NOT_STORED else length
        if status != OK:
            name, meaning = _data.STATUSES.get(status, ("unknown", "not a status of this library"))
            raise NpxlateError(f"{self.name} returned {status} ({name}): {meaning}", status, name, after)
        if stored is None and self.role != "reverse" and "keeps_length" not in self.traits:
            raise NpxlateError(f"{self.name} returned 0 ({_data.STATUSES[0][0]}), but stored no length: "
                               "it does not take this record", status, _data.STATUSES[0][0], after)
        if self.target.fixed or "takes_key" in self.traits:
            size = self.target.most
        else:
            size = min(len(data), self.source.most) if stored is None else stored
        kept = bytes(size)
        if "keeps_buffer" in self.traits:
            ones = self._run(data, b"\xff" * size, argument)[3]
            zeros = self._run(data, bytes(size), argument)[3]
            kept = bytes(a ^ b for a, b in zip(ones[:size], zeros[:size]))
            # The shorter of two records, behind which nothing is written.
            least = self.target.least
            if "takes_key" in self.traits and kept[least:] == b"\xff" * (size - least):
                size = least
        return Record(out[:size], self, stored, after, after != data, kept[:size])


class _Buffer:
    """The memory of an object that has a buffer: where it is, and a view of its bytes."""

    def __init__(self, holder: Any, name: str) -> None:
        try:
            view = memoryview(holder)
        except TypeError:
            raise TypeError(f"{name} is {type(holder).__name__}: expected bytes or another object with a "
                            "buffer") from None
        if not view.c_contiguous:
            raise NpxlateError(f"{name} does not lie in one piece: expected a contiguous buffer")
        self.length = view.nbytes
        self.read_only = view.readonly
        # What one element has, where it is more than a byte or a row of bytes.
        self.element = None
        if view.ndim >= 1 and view.shape and view.shape[0] and view.nbytes // view.shape[0] > 1:
            self.element = view.nbytes // view.shape[0]
        if self.read_only:
            # ctypes gives no address of read-only memory but that of bytes.
            data = holder if type(holder) is bytes else view.tobytes()
            self.view = memoryview(data)
            self.address = ctypes.cast(ctypes.c_char_p(data), ctypes.c_void_p).value or 0
            self._keeps: Any = data
        else:
            memory = (ctypes.c_ubyte * view.nbytes).from_buffer(holder)
            self.view = memoryview(memory).cast("B")
            self.address = ctypes.addressof(memory)
            self._keeps = memory

    def overlaps(self, other: "_Buffer") -> bool:
        """Whether they share a byte."""
        return self.address < other.address + other.length and other.address < self.address + self.length


def _as_bytes(data: BytesLike, name: str) -> bytes:
    if not isinstance(data, (bytes, bytearray, memoryview)):
        raise TypeError(f"{name} is {type(data).__name__}: expected bytes")
    return bytes(data)


class Table(NamedTuple):
    """One table: its translators.

    >>> import npxlate
    >>> table = npxlate.tables()[17]
    >>> table.result.name
    'vrrp_vmac_entry_st_xlate_result'
    """

    id: int
    title: str
    key: Translator
    result: Translator
    reverse: Translator


_TRANSLATORS: Tuple[Translator, ...] = tuple(map(Translator, _data.TRANSLATORS))
_BY_NAME: Dict[str, Translator] = {translator.name: translator for translator in _TRANSLATORS}


def by_name(name: str) -> Translator:
    return _BY_NAME[name]


_TABLES: Tuple[Table, ...] = tuple(
    Table(number, table["title"], *(_BY_NAME[table[role]] for role in ROLES))
    for number, table in enumerate(_data.TABLES))


def tables() -> Tuple[Table, ...]:
    """All 128 tables, in the order of their ids.

    >>> import npxlate
    >>> len(npxlate.tables())
    128
    >>> [table.id for table in npxlate.tables() if "changes_input" in table.key.traits]
    [66, 107, 111]
    """
    return _TABLES


def translators(*, role: Optional[str] = None, family: Optional[str] = None) -> Tuple[Translator, ...]:
    """All translators, of the tables and those reached by name only; or those of one role, of one family.

    >>> import npxlate
    >>> [translator.name for translator in npxlate.translators(role="key", family="oam")][:2]
    ['vrrp_vmac_entry_st_xlate_key', 'bfd_hw_offload_xlate_tx_key']
    """
    for given, attribute in ((role, "role"), (family, "family")):
        known = sorted({getattr(translator, attribute) for translator in _TRANSLATORS})
        if given is not None and given not in known:
            raise NpxlateError(f"there is no {attribute} {given!r}: expected one of {', '.join(known)}")
    return tuple(translator for translator in _TRANSLATORS
                 if role in (None, translator.role) and family in (None, translator.family))


def traits() -> Dict[str, str]:
    """What can set a translator apart, and what that means, in words that follow upon the translator's name.

    >>> import npxlate
    >>> npxlate.traits()["changes_input"]
    'changes its input'
    """
    return dict(_data.TRAITS)


def translator(table_or_name: TableOrName, role: Optional[str] = None) -> Translator:
    """The translator of a table and a role, or of an exported name.

    Of a table it is the result's translator unless ``role`` says otherwise; of a name, ``role`` may be left out.

    >>> import npxlate
    >>> npxlate.translator(4, "key").name
    'rx_adjacency_type_xlate_key'
    >>> npxlate.translator("modulo_xlate_key").physical.most
    2
    """
    if role is not None and role not in ROLES:
        raise NpxlateError(f"there is no role {role!r}: expected one of {', '.join(ROLES)}")
    if isinstance(table_or_name, str):
        found = _BY_NAME.get(table_or_name)
        if found is None:
            near = difflib.get_close_matches(table_or_name[:100], _BY_NAME, 1)
            raise NpxlateError(f"there is no translator {table_or_name[:100]!r}: expected a table id from 0 to "
                               f"{len(_TABLES) - 1} or an exported name"
                               + (f"; did you mean {near[0]}?" if near else ""))
        if role not in (None, found.role):
            raise NpxlateError(f"{found.name} is a {found.role} translator: expected a {role} translator")
        return found
    number = operator.index(table_or_name)
    if not 0 <= number < len(_TABLES):
        raise NpxlateError(f"there is no table {number}: expected a table id from 0 to {len(_TABLES) - 1}")
    return cast(Translator, getattr(_TABLES[number], role or "result"))


def key(table_or_name: TableOrName, record: BytesLike, *, before: BytesLike = b"") -> Record:
    """Translates a logical key into the physical one.

    >>> import npxlate
    >>> npxlate.key(4, bytes.fromhex("010203")).hex()
    '010203'

    ``table_or_name`` is a table id or the exported name of a key translator. What comes back is ``bytes`` that know
    more: see :class:`Record`. ``before`` is what the buffer holds before the call, zeros where it ends; only the
    translators with the trait ``keeps_buffer`` let anything of it through.

    Raises :class:`NpxlateError` if the translator refuses the record, or takes none of its length.
    """
    return translator(table_or_name, "key")(record, before=before)


def result(table_or_name: TableOrName, record: BytesLike, *, before: BytesLike = b"") -> Record:
    """Translates a logical result into the physical one.

    >>> import npxlate
    >>> adjacency = bytes.fromhex("0000000023010000080000004200000000000000000000000100000a0000")
    >>> npxlate.result(4, adjacency).hex()
    '9100000000000d230a00000142000000'

    ``table_or_name`` is a table id or the exported name of a result translator. What comes back is ``bytes`` that
    know more: see :class:`Record`. ``before`` is what the buffer holds before the call, zeros where it ends; only the
    translators with the trait ``keeps_buffer`` let anything of it through.

    >>> npxlate.result("flow_qos_hash_st_xlate_result", bytes(16), before=b"\\xff")[:1].hex()
    '2f'

    Raises :class:`NpxlateError` if the translator refuses the record, or takes none of its length.
    """
    return translator(table_or_name, "result")(record, before=before)


def reverse(table_or_name: TableOrName, record: BytesLike, *, entry_type: Optional[int] = None,
            logical_key: Optional[BytesLike] = None, before: BytesLike = b"") -> Record:
    """Translates a physical result, as it is read from the card, back into the logical one.

    >>> import npxlate
    >>> npxlate.reverse(17, bytes.fromhex("1100010001020304")).hex()
    '0000000001020304'

    The reverse of table 52 needs the type of the entry, that of table 92 the logical key of the entry:

    >>> len(npxlate.reverse(52, bytes(32), entry_type=1))
    48
    >>> len(npxlate.reverse(92, bytes(8), logical_key=bytes(8)))
    12

    What comes back is ``bytes`` that know more: see :class:`Record`. ``before`` is what the buffer holds before the
    call, zeros where it ends; only the translators with the trait ``keeps_buffer`` let anything of it through.

    Raises :class:`NpxlateError` if the translator refuses the record, or takes none of its length.
    """
    return translator(table_or_name, "reverse")(record, entry_type=entry_type, logical_key=logical_key, before=before)


class Register(NamedTuple):
    """One write of an engine's bring-up: the value goes into the register of that number."""

    number: int
    value: int


def registers(engine: str) -> Tuple[Register, ...]:
    """The writes of an engine's bring-up, in the order in which they are to be made.

    ``engine`` is ``"parse"``, ``"resolve"`` or ``"learn"``.

    >>> import npxlate
    >>> len(npxlate.registers("parse"))
    60
    """
    engines = list(_data.ENGINES)
    if engine not in engines:
        raise NpxlateError(f"there is no engine {engine!r}: expected one of {', '.join(engines)}")
    first = LIBRARY.quill_to_get_mreg_init(engines.index(engine))
    return tuple(Register(first[i].number, first[i].value) for i in range(_data.ENGINES[engine]))


def virtual_queue_index(index: int, queue_range: int) -> int:
    """A virtual queue index, adjusted by its range as the translators do it (``new_vqi_based_on_vqi_range``).

    >>> import npxlate
    >>> hex(npxlate.virtual_queue_index(0x123, 8))
    '0xd23'
    """
    for name, value in (("index", index), ("queue_range", queue_range)):
        if not 0 <= operator.index(value) <= 0xFFFFFFFF:
            raise NpxlateError(f"{name} is {value}: expected a number from 0 to 4294967295")
    return cast(int, LIBRARY.new_vqi_based_on_vqi_range(index, queue_range))


def tx_adj_key_max() -> int:
    """The highest transmit-adjacency index that a TE next-hop result (table 7) marks: the library's ``TX_ADJ_KEY_MAX``.

    >>> import npxlate
    >>> npxlate.tx_adj_key_max()
    4095
    """
    return TX_ADJ_KEY_MAX.value


def set_tx_adj_key_max(index: int) -> None:
    """Sets the library's ``TX_ADJ_KEY_MAX``, for all threads of the process.

    >>> import npxlate
    >>> npxlate.set_tx_adj_key_max(0x1000)
    >>> hex(npxlate.tx_adj_key_max())
    '0x1000'
    >>> npxlate.set_tx_adj_key_max(0x0fff)
    """
    if not 0 <= operator.index(index) <= 0xFFFF:
        raise NpxlateError(f"TX_ADJ_KEY_MAX cannot be {index}: expected a number from 0 to 65535")
    TX_ADJ_KEY_MAX.value = operator.index(index)
