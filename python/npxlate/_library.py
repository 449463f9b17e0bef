"""The shared library: finding it, and its functions and variables as ctypes has them."""
import ctypes
import os
from pathlib import Path
from typing import Any, Callable

from ._error import NpxlateError

SONAME = "libnpxlate.so.1"
MAX_RECORD_LENGTH = 168
NOT_STORED = 0xFFFFFFFF

# Every call is made in buffers of this size: more than any record has, whatever the length that was asked for.
ROOM = 256


class Register(ctypes.Structure):
    """struct npxlate_register."""

    _fields_ = [("number", ctypes.c_uint32), ("value", ctypes.c_uint32)]


def _load() -> ctypes.CDLL:
    """The library that NPXLATE_LIBRARY names, or the one beside this file, or the one that the system finds."""
    beside = Path(__file__).with_name(SONAME)
    path = os.environ.get("NPXLATE_LIBRARY") or (str(beside) if beside.exists() else SONAME)
    try:
        library = ctypes.CDLL(path)
        library.quill_to_get_mreg_init.restype = ctypes.POINTER(Register)
        library.quill_to_get_mreg_init.argtypes = [ctypes.c_uint8]
        library.new_vqi_based_on_vqi_range.restype = ctypes.c_uint32
        library.new_vqi_based_on_vqi_range.argtypes = [ctypes.c_uint32, ctypes.c_uint32]
    except (OSError, AttributeError) as error:
        raise ImportError(f"cannot load {path}: {error}; expected the library of npxlate: install {SONAME}, "
                          "or name it in NPXLATE_LIBRARY") from error
    return library


LIBRARY = _load()
TX_ADJ_KEY_MAX = ctypes.c_uint16.in_dll(LIBRARY, "TX_ADJ_KEY_MAX")


def function(name: str, argument_types: Any) -> Callable[..., int]:
    """The exported translator of that name."""
    try:
        found = LIBRARY[name]
    except AttributeError as error:
        raise NpxlateError(f"{LIBRARY._name} does not export {name}: expected a library of npxlate") from error
    found.restype = ctypes.c_int32
    found.argtypes = argument_types
    return found


def _load_loop() -> Any:
    """The compiled loop over the records of a buffer, where the package has it."""
    try:
        loop = ctypes.CDLL(str(Path(__file__).with_name("_loop.so"))).npxlate_loop
    except OSError:
        return None
    loop.restype = None
    loop.argtypes = [ctypes.c_void_p, ctypes.c_int] + [ctypes.c_void_p, ctypes.c_size_t] * 2 + [
        ctypes.c_size_t, ctypes.c_int32, ctypes.c_void_p, ctypes.c_void_p, ctypes.c_void_p]
    return loop


LOOP = _load_loop()
