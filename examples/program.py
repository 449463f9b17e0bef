#!/usr/bin/env python3
"""Programs a VRRP virtual MAC address and reads it back, from Python.

    python3 program.py [PATH_OF_LIBNPXLATE_SO_1]
"""
import ctypes
import sys

TABLE_COUNT = 128
MAX_PHYSICAL_LENGTH = 96
MAX_LOGICAL_LENGTH = 168
OK = 0

VRRP_VIRTUAL_MAC = 17

Forward = ctypes.CFUNCTYPE(ctypes.c_int32, ctypes.c_char_p, ctypes.c_int32, ctypes.c_char_p,
                           ctypes.POINTER(ctypes.c_uint32))
Reverse = ctypes.CFUNCTYPE(ctypes.c_int32, ctypes.c_char_p, ctypes.c_int32, ctypes.c_char_p)


class L2pEntry(ctypes.Structure):
    _fields_ = [("key", Forward), ("result", Forward)]


class Npxlate:
    """The library's dispatch tables."""

    def __init__(self, path):
        library = ctypes.CDLL(path)
        self._l2p = (L2pEntry * TABLE_COUNT).in_dll(library, "l2p_ucode_func_table")
        self._p2l = (Reverse * TABLE_COUNT).in_dll(library, "p2l_ucode_func_table")

    def key(self, table, logical):
        return self._forward(self._l2p[table].key, logical)

    def result(self, table, logical):
        return self._forward(self._l2p[table].result, logical)

    def reverse(self, table, physical, logical_length):
        """Not for tables 52 and 92, whose reverse translators take a fourth argument."""
        logical = ctypes.create_string_buffer(MAX_LOGICAL_LENGTH)
        status = self._p2l[table](physical, len(physical), logical)
        if status != OK:
            raise ValueError(f"status {status}")
        return logical.raw[:logical_length]

    @staticmethod
    def _forward(translator, logical):
        # A copy, because a few translators write into the record that they are given, and bytes must not change.
        record = ctypes.create_string_buffer(logical, len(logical))
        physical = ctypes.create_string_buffer(MAX_PHYSICAL_LENGTH)
        length = ctypes.c_uint32()
        status = translator(ctypes.cast(record, ctypes.c_char_p), len(logical), physical, ctypes.byref(length))
        if status != OK:
            raise ValueError(f"status {status}")
        return physical.raw[:length.value]


def main():
    npxlate = Npxlate(sys.argv[1] if len(sys.argv) > 1 else "libnpxlate.so.1")

    # Virtual router 10. The logical key holds the address as a 48-bit host value, the physical one as it is on the wire.
    address = bytes.fromhex("00005e00010a")
    logical_key = address[::-1] + bytes.fromhex("0007")
    logical_result = bytes(4) + bytes.fromhex("78563412")

    physical_key = npxlate.key(VRRP_VIRTUAL_MAC, logical_key)
    physical_result = npxlate.result(VRRP_VIRTUAL_MAC, logical_result)
    read_back = npxlate.reverse(VRRP_VIRTUAL_MAC, physical_result, len(logical_result))

    print("logical key    ", logical_key.hex(" "))
    print("physical key   ", physical_key.hex(" "))
    print("logical result ", logical_result.hex(" "))
    print("physical result", physical_result.hex(" "))
    print("read back      ", read_back.hex(" "))
    return 0 if read_back == logical_result else 1


if __name__ == "__main__":
    sys.exit(main())
