"""The package's one kind of failure."""
from typing import Optional


class NpxlateError(ValueError):
    """What was asked for cannot be done; nothing was translated.

    >>> import npxlate
    >>> try:
    ...     npxlate.result(4, b"too short")
    ... except npxlate.NpxlateError as error:
    ...     print(error.status, error.reason)
    None rx_adjacency_type_xlate_result takes a logical record of 30 bytes, but 9 came
    >>> try:
    ...     npxlate.reverse(52, bytes(32), entry_type=6)
    ... except npxlate.NpxlateError as error:
    ...     print(error.status, error.status_name)
    22 NPXLATE_INVALID

    ``reason``
        What was wrong and what would be right, in one line.
    ``status``
        What the translator returned; ``None`` if it was not called, since what came was no record for it.
    ``status_name``
        The status by its name in the C header.
    ``input``
        The record that went in as the translator left it: a few change it, even if they refuse it.
    """

    __module__ = "npxlate"  # where its users find it

    reason: str
    status: Optional[int]
    status_name: Optional[str]
    input: Optional[bytes]

    def __init__(self, reason: str, status: Optional[int] = None, status_name: Optional[str] = None,
                 input: Optional[bytes] = None) -> None:
        super().__init__(reason)
        self.reason = reason
        self.status = status
        self.status_name = status_name
        self.input = input
