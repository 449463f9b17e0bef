"""What the command-line tool knows, as objects: it is asked for JSON, which is the one implementation."""
import json
import os
import shutil
import subprocess
from pathlib import Path
from typing import Any, Dict, Iterator, List, Mapping, Optional, Union

from ._error import NpxlateError
from ._translator import BytesLike, TableOrName, Translator, _as_bytes, translator, tx_adj_key_max

_INITIAL_TX_ADJ_KEY_MAX = tx_adj_key_max()


class Document(Mapping[str, Any]):
    """What the tool said: a mapping whose members can be reached as attributes, too.

    The members are those of the tool's JSON, which its documentation lists; :meth:`Mapping.keys` lists those of the
    object at hand. A member that is named like a word of Python has an underscore behind it (``from_``, ``in_``);
    lists are lists, and the objects in them are documents.

    >>> import npxlate
    >>> explained = npxlate.explain(17, bytes(8))
    >>> explained.translator, explained.length
    ('vrrp_vmac_entry_st_xlate_result', 8)
    >>> explained["in"] == explained.in_
    True
    """

    def __init__(self, members: Dict[str, Any]) -> None:
        self._members = members

    def __getitem__(self, name: str) -> Any:
        return _wrap(self._members[name])

    def __iter__(self) -> Iterator[str]:
        return iter(self._members)

    def __len__(self) -> int:
        return len(self._members)

    def __getattr__(self, name: str) -> Any:
        if not name.startswith("_"):
            for member in (name, name[:-1] if name.endswith("_") else name):
                if member in self._members:
                    return self[member]
        there_are = ", ".join(self.__dict__.get("_members", {}))
        raise AttributeError(f"there is no member {name!r}: expected one of {there_are}")

    def __dir__(self) -> List[str]:
        return [*super().__dir__(), *self._members]

    def __repr__(self) -> str:
        return f"{type(self).__name__}({self._members!r})"

    def to_json(self) -> str:
        """The document as the tool printed it, but for the white space.

        >>> Document({"status": 0}).to_json()
        '{"status": 0}'
        """
        return json.dumps(self._members)


def _wrap(value: Any) -> Any:
    if isinstance(value, dict):
        return Document(value)
    if isinstance(value, list):
        return [_wrap(item) for item in value]
    return value


def _find_tool() -> str:
    """The tool that NPXLATE_TOOL names, or the one beside this file, or the one that the system finds."""
    beside = Path(__file__).with_name("npxlate")
    found = os.environ.get("NPXLATE_TOOL") or (str(beside) if beside.exists() else shutil.which("npxlate"))
    if not found:
        raise NpxlateError("cannot find the tool npxlate: install it, or name it in NPXLATE_TOOL")
    return found


def _ask(command: str, *arguments: str) -> Document:
    try:
        done = subprocess.run([_find_tool(), command, "--json", *arguments], stdin=subprocess.DEVNULL,
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE, encoding="utf-8", errors="replace",
                              check=False)
    except OSError as error:
        raise NpxlateError(f"cannot run the tool {_find_tool()}: {error.strerror}; expected npxlate") from error
    try:
        answer = json.loads(done.stdout)
    except ValueError:
        answer = None
    if isinstance(answer, dict):
        return Document(answer)  # a refused record is explained, too
    lines = done.stderr.strip().splitlines()
    said = lines[-1] if lines else f"{_find_tool()} ended with status {done.returncode} and said nothing"
    raise NpxlateError(said.replace("npxlate: error: ", "", 1))


def _arguments(subject: Translator, entry_type: Optional[int], logical_key: Optional[BytesLike]) -> List[str]:
    """The tool's options for a translator that is known; none that it would refuse."""
    arguments = []
    if entry_type is not None:
        arguments.append(f"--type={entry_type}")
    if logical_key is not None:
        arguments.append(f"--key={_as_bytes(logical_key, 'logical_key').hex()}")
    if tx_adj_key_max() != _INITIAL_TX_ADJ_KEY_MAX and subject.name == "te_nh_adjacency_type_xlate_result":
        arguments.append(f"--tx-adj-key-max={tx_adj_key_max()}")
    return arguments


def explain(table_or_name: TableOrName, record: BytesLike, role: Optional[str] = None, *,
            entry_type: Optional[int] = None, logical_key: Optional[BytesLike] = None) -> Document:
    """What becomes of every bit of a record: ``npxlate explain``.

    >>> import npxlate
    >>> explained = npxlate.explain(17, bytes(8))
    >>> explained.out
    '1100010000000000'
    """
    subject = translator(table_or_name, role)
    return _ask("explain", subject.name, _as_bytes(record, "the record").hex(),
                *_arguments(subject, entry_type, logical_key))


def decode(table_or_name: TableOrName, record: BytesLike, role: Optional[str] = None) -> Document:
    """Which logical records give just this physical one: ``npxlate decode``.

    >>> import npxlate
    >>> npxlate.decode(17, bytes.fromhex("1100010001020304")).physical
    '1100010001020304'
    """
    subject = translator(table_or_name, role)
    return _ask("decode", subject.name, _as_bytes(record, "the record").hex(), *_arguments(subject, None, None))


def layout(table_or_name: TableOrName, role: Optional[str] = None) -> Document:
    """Which bits of a translator's records go where: ``npxlate layout``.

    >>> import npxlate
    >>> npxlate.layout(17, "key").translator
    'vrrp_vmac_entry_st_xlate_key'
    """
    return _ask("layout", translator(table_or_name, role).name)


def roundtrip(table_or_name: TableOrName, record: BytesLike, *, entry_type: Optional[int] = None,
              logical_key: Optional[BytesLike] = None) -> Document:
    """What returns of a logical result when it is read back from the card, and what is lost: ``npxlate roundtrip``.

    >>> import npxlate
    >>> npxlate.roundtrip(17, bytes.fromhex("0000000001020304")).forward.out
    '1100010001020304'
    """
    subject = translator(table_or_name, "result")
    return _ask("roundtrip", subject.name, _as_bytes(record, "the record").hex(),
                *_arguments(subject, entry_type, logical_key))


def diff(table_or_name: TableOrName, first: BytesLike, second: BytesLike, role: Optional[str] = None, *,
         entry_type: Optional[int] = None, logical_key: Optional[BytesLike] = None) -> Document:
    """How two records differ, before and after translation: ``npxlate diff``.

    >>> import npxlate
    >>> npxlate.diff(17, bytes(8), bytes([0] * 7 + [1])).translator
    'vrrp_vmac_entry_st_xlate_result'
    """
    subject = translator(table_or_name, role)
    return _ask("diff", subject.name, _as_bytes(first, "the first record").hex(),
                _as_bytes(second, "the second record").hex(), *_arguments(subject, entry_type, logical_key))
