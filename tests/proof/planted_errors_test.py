"""The proof can fail: errors planted in a copy of the library are each refuted, with a record that shows them.
Takes the shared object and the tool."""

import collections
import pathlib
import random
import re
import subprocess
import sys
import tempfile
import unittest

PROOF = pathlib.Path(__file__).resolve().parents[2] / "proof"
sys.path.insert(0, str(PROOF))

from claim import SIZES_BY_LENGTH  # noqa: E402
from elftools.elf.elffile import ELFFile  # noqa: E402
from forms import Tool  # noqa: E402
from image import Image  # noqa: E402
from prove import PROVED, REFUTED, Prover  # noqa: E402

LIBRARY, TOOL = sys.argv[1:3]


def code_of(image, name):
    """The function's instructions, up to the next function."""
    start = image.functions[name]
    end = min((at for at in image.functions.values() if at > start), default=None)
    return [insn for insn in image.all_instructions() if start <= insn.address and (end is None or insn.address < end)]


# What is planted: of an instruction other bytes, or None if it is none in which the error could be.


def bit_moved(insn):
    if insn.mnemonic in ("shl", "shr") and len(insn.operands) == 2 and insn.operands[1].immediate:
        return insn.code[:-1] + bytes([insn.code[-1] + 1])


def mask_widened(insn):
    mask = insn.operands[-1].immediate if insn.mnemonic == "and" else None
    if mask is not None and 0 < mask < 0x7F and insn.code[-1] == mask:
        return insn.code[:-1] + bytes([mask | (mask + (mask & -mask)) | mask << 1 & 0x7F])


def byte_order_exchanged(insn):
    if insn.mnemonic == "bswap":
        return b"\x66\x90" if len(insn.code) == 2 else b"\x0f\x1f\x00"


def branch_inverted(insn):
    if insn.mnemonic in ("je", "jne"):
        at = 1 if insn.code[0] == 0x0F else 0
        return insn.code[:at] + bytes([insn.code[at] ^ 1]) + insn.code[at + 1 :]


def bound_too_high(insn):
    if insn.mnemonic == "cmp" and insn.operands[1].immediate and insn.code[-1] == insn.operands[1].immediate:
        return insn.code[:-1] + bytes([insn.code[-1] + 1])


def displaced(register, size, write, by=1):
    """An access that ends where the record does, moved on."""
    def change(insn):
        if insn.mnemonic in ("lea", "nop") or len(insn.operands) != 2:
            return None
        operand = insn.operands[0 if write else 1]
        if operand.base != register or operand.index or operand.displacement + operand.size != size:
            return None
        at = insn.displacement_at
        return insn.code[:at] + bytes([insn.code[at] + by]) + insn.code[at + 1 :] if at else None
    return change


def stored_into_input(insn):
    if insn.mnemonic == "mov" and insn.operands[0].base == "rdx" and not insn.operands[0].index:
        at = insn.displacement_at - 1 if insn.displacement_at else len(insn.code) - 1
        return insn.code[:at] + bytes([insn.code[at] & ~7 | 7]) + insn.code[at + 1 :]


def register_not_restored(insn):
    if insn.mnemonic == "pop":
        return insn.code[:-1] + (b"\x58" if len(insn.code) == 2 else b"\x59")


def status_left_open(insn):
    if insn.code == b"\x31\xc0":
        return b"\x66\x90"


def length_wrong(insn):
    if insn.mnemonic == "mov" and insn.operands[0].base == "rcx" and insn.operands[1].immediate:
        return insn.code[:-4] + bytes([insn.code[-4] + 1]) + insn.code[-3:]


def stack_left(insn):
    if insn.mnemonic == "push":
        return b"\x90" * len(insn.code)


class PlantedErrors(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        sys.setrecursionlimit(100_000)
        cls.tool = Tool(TOOL)
        cls.translators = cls.tool.translators()
        cls.image = Image(LIBRARY)
        with open(LIBRARY, "rb") as file:
            cls.bytes = file.read()
            file.seek(0)
            elf = ELFFile(file)
            cls.places = [(s.header.p_vaddr, s.header.p_memsz, s.header.p_offset) for s in elf.iter_segments("PT_LOAD")]
        cls.folder = tempfile.TemporaryDirectory()

    @classmethod
    def tearDownClass(cls):
        cls.folder.cleanup()

    def changed(self, address, code):
        """A copy of the library with these bytes at that address."""
        offset = next(address - start + at for start, size, at in self.places if start <= address < start + size)
        copy = pathlib.Path(self.folder.name, f"{self.id()}.so")
        copy.write_bytes(self.bytes[:offset] + code + self.bytes[offset + len(code) :])
        return copy

    def prove(self, library, name):
        return Prover(Image(library), self.tool, greatest_length=24).prove(self.translators[name])

    def plant(self, name, change):
        insn, code = next((insn, code) for insn in code_of(self.image, name) if (code := change(insn)) is not None)
        self.assertEqual(len(code), insn.size)
        library = self.changed(insn.address, code)
        outcome = self.prove(library, name)
        self.assertEqual(outcome.verdict, REFUTED, f"{insn.text} at {insn.address:#x}: {outcome.words}")
        text = "\n".join(outcome.lines)
        print(f"{self.id().split('.')[-1]}: {insn.text}\n{text}\n", file=sys.stderr)
        record = re.search("the (logical|physical) record ([0-9a-f]+|\\(none\\))", text)
        self.assertIsNotNone(record, text)
        return library, text, record[2]

    def expect_value(self, name, change):
        """Refuted, and the record makes the changed library do something else than the built one, as is said."""
        library, text, record = self.plant(name, change)
        self.assertRegex(text, r"should be .*, and is [01]")
        of_forms, of_code = (re.search(f"{who}: .* the physical record ([0-9a-f]*)", text)[1]
                             for who in ("the forms", "the machine code"))
        self.assertNotEqual(of_forms, of_code)
        self.assertEqual(self.called(LIBRARY, name, record, len(of_forms) // 2), of_forms)
        self.assertEqual(self.called(library, name, record, len(of_code) // 2), of_code)

    def called(self, library, name, record, size):
        """The record that comes out of the library as it runs, which is done elsewhere: what is planted may crash."""
        program = """
import ctypes, sys
library, name, record, size = sys.argv[1:]
incoming = ctypes.create_string_buffer(bytes.fromhex(record), len(record) // 2)
outgoing = ctypes.create_string_buffer(int(size))
getattr(ctypes.CDLL(library), name)(incoming, len(record) // 2, outgoing, ctypes.byref(ctypes.c_uint32()))
print(outgoing.raw.hex())
"""
        run = [sys.executable, "-c", program, str(library), name, record, str(size)]
        return subprocess.run(run, capture_output=True, text=True, check=True).stdout.strip()

    def expect_access(self, name, change, what):
        _, text, _ = self.plant(name, change)
        self.assertRegex(text, what)

    def test_nothing_planted(self):
        for name in ("rx_adjacency_type_xlate_result", "mpls_leaf_st_result"):
            self.assertEqual(self.prove(LIBRARY, name).verdict, PROVED)

    def test_bit_moved(self):
        self.expect_value("rx_adjacency_type_xlate_result", bit_moved)

    def test_mask_widened(self):
        self.expect_value("tx_adjacency_type_xlate_result", mask_widened)

    def test_byte_order_exchanged(self):
        self.expect_value("rx_adjacency_type_xlate_result", byte_order_exchanged)

    def test_branch_inverted(self):
        self.expect_value("mpls_leaf_st_result", branch_inverted)

    def test_bound_too_high(self):
        self.expect_value("ip_leaf_st_xlate_result", bound_too_high)

    def test_read_behind_the_record(self):
        self.expect_access("ipv6mc_sg_leaf_key_xlate", displaced("rdi", 34, write=False),
                           "reads .* bytes at .* of the logical record, which has 34 bytes")

    def test_written_behind_the_record(self):
        self.expect_access("cfm_hwo_xlate_tx2_result", displaced("rdx", 64, write=True),
                           "writes .* bytes at .* of the physical record, which has 64 bytes")

    def test_stored_into_input(self):
        self.expect_access("vrrp_vmac_entry_st_xlate_result", stored_into_input,
                           "writes .* of the logical record, which is not to be written")

    def test_register_not_restored(self):
        self.expect_access("nr_ldi_entry_st_result", register_not_restored, "returns with r.. changed")

    def test_register_not_saved(self):
        self.expect_access("nr_ldi_entry_st_result", stack_left, "(the stack|returns)")

    def test_status_left_open(self):
        _, text, _ = self.plant("cfm_hwo_xlate_tx_key", status_left_open)
        self.assertIn("of the status", text)

    def test_length_wrong(self):
        _, text, _ = self.plant("vrrp_vmac_entry_st_xlate_key", length_wrong)
        self.assertIn("bit 0 of the length", text)

    def test_flipped_bits(self):
        """Bits of the code of any translator are flipped. Where that is proved all the same, nothing is changed."""
        random.seed(20261122)
        names = sorted(name for name, translator in self.translators.items()
                       if not translator.traits & {"checks_length", "takes_type", "takes_key"}
                       and name not in SIZES_BY_LENGTH)
        verdicts = collections.Counter()
        for _ in range(60):
            name = random.choice(names)
            insn = random.choice([insn for insn in code_of(self.image, name) if insn.mnemonic != "nop"])
            at = random.randrange(insn.size)
            code = bytes(byte ^ (1 << random.randrange(8) if i == at else 0) for i, byte in enumerate(insn.code))
            library = self.changed(insn.address, code)
            outcome = self.prove(library, name)
            verdicts[outcome.verdict] += 1
            if outcome.verdict == PROVED:
                self.assertEqual(self.differing(library, name), "", f"{name}: {insn.text} became {code.hex()}")
        print(f"flipped bits: {dict(verdicts)}", file=sys.stderr)
        self.assertGreater(verdicts[REFUTED], 30)

    def differing(self, library, name):
        """A record of chance that the two libraries translate differently."""
        program = """
import ctypes, random, sys
*libraries, name, size_in, size_out = sys.argv[1:]
libraries = [ctypes.CDLL(library) for library in libraries]
random.seed(1)
for number in range(10000):
    dense = random.random()
    record = bytes(random.getrandbits(8) if random.random() < dense else 0 for _ in range(int(size_in)))
    outcomes = []
    for library in libraries:
        incoming = ctypes.create_string_buffer(record, len(record) + 1)
        outgoing = ctypes.create_string_buffer(bytes([number % 256]) * int(size_out), int(size_out) + 1)
        length = ctypes.c_uint32(number)
        status = getattr(library, name)(incoming, len(record), outgoing, ctypes.byref(length))
        outcomes.append((status, length.value, incoming.raw, outgoing.raw))
    if outcomes[0] != outcomes[1]:
        print(record.hex())
        break
"""
        translator = self.translators[name]
        run = [sys.executable, "-c", program, LIBRARY, str(library), name, *map(str, map(translator.greatest,
                                                                                         translator.sides))]
        return subprocess.run(run, capture_output=True, text=True, check=True).stdout.strip()


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
