"""The meanings of the instructions against the processor: every instruction that occurs in the libraries, with random
registers, flags and memory. Takes the shared objects, and a C compiler in $CC."""

import ctypes
import mmap
import os
import pathlib
import platform
import random
import subprocess
import sys
import tempfile
import unittest

PROOF = pathlib.Path(__file__).resolve().parents[2] / "proof"
sys.path.insert(0, str(PROOF))

import image  # noqa: E402
from diagrams import Diagrams  # noqa: E402
from instructions import MEANINGS  # noqa: E402
from machine import GENERAL, VECTOR, Fragment, Frame, Machine, Mixed, Pointer, Region, State  # noqa: E402
from vectors import constant, number  # noqa: E402

LIBRARIES = sys.argv[1:]
TRIALS = 4

# One mapping: a page of code, a page of data, and the stack.
CODE, DATA, STACK, END = 0, 4096, 8192, 12288
TAKEN = 64  # in the page of code: where a branch goes
STACK_BYTES = Machine.STACK_SIZE
ACCESSED = 1024  # in the page of data: where instructions find their operands
ALIGNED = {"movdqa", "movaps"}
FLAGS = {"c": 0, "z": 6, "s": 7, "o": 11}
INTERESTING = [0, 1, 2, 3, 7, 8, 0x7F, 0x80, 0xFF, 0x7FFF, 0x8000, 0xFFFF, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF,
               0x7FFFFFFFFFFFFFFF, 0x8000000000000000, 0xFFFFFFFFFFFFFFFF]


class ProcessorState(ctypes.Structure):
    _fields_ = [("general", ctypes.c_uint64 * 16), ("flags", ctypes.c_uint64), ("taken", ctypes.c_uint64),
                ("vector", (ctypes.c_uint8 * 16) * 16)]


class Processor:
    """Memory for an instruction and its operands, and the way into it."""

    def __init__(self, folder):
        library = pathlib.Path(folder, "processor.so")
        source = pathlib.Path(__file__).with_name("processor.c")
        subprocess.run([os.environ.get("CC", "cc"), "-O1", "-fPIC", "-shared", "-o", library, source], check=True)
        self._code = ctypes.CDLL(str(library))
        self.memory = mmap.mmap(-1, END, prot=mmap.PROT_READ | mmap.PROT_WRITE | mmap.PROT_EXEC)
        self.memory[DATA:END] = random.randbytes(END - DATA)
        self.address = ctypes.addressof(ctypes.c_char.from_buffer(self.memory))
        self.memory[TAKEN : TAKEN + 14] = self._jump_to(self._code.taken)

    @staticmethod
    def _jump_to(function):
        address = ctypes.cast(function, ctypes.c_void_p).value
        return b"\xff\x25\0\0\0\0" + address.to_bytes(8, "little")

    def place(self, code):
        self.memory[CODE : CODE + len(code) + 14] = code + self._jump_to(self._code.returned)

    def run(self, state):
        self._code.run(ctypes.c_void_p(self.address + CODE), ctypes.byref(state))


class NoImage:
    """What a machine asks of the library whose code it executes, when there is but one instruction."""

    stored = {}

    def __init__(self, processor):
        self.data = range(processor.address + DATA, processor.address + STACK)

    def object_at(self, address):
        return (self.data.start, self.data.stop, "data") if address in self.data else None

    def instruction(self, address):
        return None


def moved(insn, processor):
    """The instruction's bytes, so changed that what is relative to its place reaches our memory."""
    code = bytearray(insn.code)
    end = processor.address + CODE + len(code)
    operand = insn.operands[0] if insn.operands else None
    if operand and operand.immediate is not None and (insn.mnemonic[0] == "j" or insn.mnemonic == "call"):
        opcode = code.lstrip(b"\xf2\x3e\x2e")[0]
        width = 1 if opcode == 0xEB or 0x70 <= opcode < 0x80 else 4
        distance = processor.address + CODE + TAKEN - end
        code[-width:] = distance.to_bytes(width, "little", signed=True)
    if any(o.base == "rip" for o in insn.operands):
        distance = processor.address + DATA + ACCESSED - end
        code[insn.displacement_at : insn.displacement_at + 4] = distance.to_bytes(4, "little", signed=True)
    return bytes(code)


def random_number(width):
    kind = random.randrange(4)
    if kind == 0:
        return random.choice(INTERESTING) & ((1 << width) - 1)
    if kind == 1:
        return random.randrange(1 << random.randrange(1, width + 1))
    return random.getrandbits(width)


class Trial:
    """One instruction with the same random state on the processor and in its meaning here."""

    def __init__(self, processor, insn, addresses=()):
        self.processor = processor
        self.insn = insn
        self.machine = Machine(Diagrams(), NoImage(processor), MEANINGS)
        self.places = {}  # of regions, the addresses

        def content_of(offset):
            return lambda i: constant(processor.memory[offset + i], 8)

        self.initial = processor.memory[DATA:END]
        self.data = self._region("data", DATA, 4096)
        self.machine.variables["data"] = self.data
        self.machine.stack = self._region("stack", STACK, STACK_BYTES)
        self.places[self.machine.image_region] = 0

        state = State(self.machine, processor.address + CODE, 1)
        for name in GENERAL:
            state.registers[name] = constant(random_number(64), 64)
        for name in VECTOR:
            state.registers[name] = constant(random_number(128), 128)
        state.registers["rsp"] = Pointer(self.machine.stack, constant(STACK_BYTES // 2, 64))
        for name in FLAGS:
            state.flags[name] = random.getrandbits(1)
        self.state = state
        for name in addresses:
            state.registers[name] = Pointer(self.data, constant(random.choice((0, 8, 16, 64)), 64))
        self._give_addresses()
        self._give_targets()

    def _region(self, name, offset, size):
        content = self.initial[offset - DATA : offset - DATA + size]
        region = Region(name, size, lambda i: constant(content[i], 8), writable=True, alignment=4096)
        self.places[region] = self.processor.address + offset
        return region

    def _give_addresses(self):
        """Registers with which the operand in memory is within the data."""
        for operand in self.insn.operands:
            if operand.displacement is None or self.insn.mnemonic in ("lea", "nop") or operand.base in ("rip", "rsp"):
                continue
            offset = ACCESSED - operand.displacement
            if self.insn.mnemonic not in ALIGNED and "xmm" not in self.insn.text:
                offset += random.randrange(16)
            if operand.index:
                index = random.randrange(8)
                self.state.registers[operand.index] = constant(index, 64)
                offset -= index * operand.scale
            if operand.base:
                self.state.registers[operand.base] = Pointer(self.data, constant(offset, 64))

    def _give_targets(self):
        target = Pointer(self.machine.image_region, constant(self.processor.address + CODE + TAKEN, 64))
        operand = self.insn.operands[0] if self.insn.operands else None
        if self.insn.mnemonic == "ret":
            self.state.frames = (Frame(0, number(target.offset)),)
            self._put(self.state.registers["rsp"], target)
        elif self.insn.mnemonic == "jmp" and operand.register:
            self.state.registers[operand.register] = target
        elif self.insn.mnemonic == "jmp" and operand.displacement is not None:
            if operand.base == "rip":
                self._put(Pointer(self.data, constant(ACCESSED, 64)), target)
            else:
                self._put(Pointer(self.data, self.state.registers[operand.base].offset), target, operand)

    def _put(self, at, pointer, operand=None):
        offset = number(at.offset) + (operand.displacement if operand else 0)
        self.state.memory.setdefault(at.region, {}).update({offset + i: Fragment(pointer, i) for i in range(8)})
        start = self.places[at.region] - self.processor.address + offset
        self.processor.memory[start : start + 8] = number(pointer.offset).to_bytes(8, "little")

    def known(self, value):
        """The number that a value is on the processor, and which of its bits are determined."""
        if isinstance(value, Mixed):
            return 0, 0
        if isinstance(value, Pointer):
            return (self.places[value.region] + number(value.offset)) % (1 << 64), (1 << 64) - 1
        if isinstance(value, Fragment):
            return self.known(value.pointer)[0] >> 8 * value.position & 255, 255
        mask = sum((bit < 2) << i for i, bit in enumerate(value))
        return sum((bit == 1) << i for i, bit in enumerate(value)), mask

    def run(self):
        """Differences between the processor's outcome and the meaning's."""
        before = ProcessorState()
        for n, name in enumerate(GENERAL):
            before.general[n] = self.known(self.state.registers[name])[0]
        for n, name in enumerate(VECTOR):
            before.vector[n][:] = self.known(self.state.registers[name])[0].to_bytes(16, "little")
        before.flags = 0x202 | sum(self.state.flags[name] << at for name, at in FLAGS.items())
        self.processor.run(before)
        after = before

        (state,) = self.machine.execute(self.state, self.insn)
        differences = []

        def compare(what, value, actual):
            expected, mask = self.known(value)
            if (expected ^ actual) & mask:
                differences.append(f"{what} is {actual:#x}, not {expected:#x}")

        for n, name in enumerate(GENERAL):
            compare(name, state.registers[name], after.general[n])
        for n, name in enumerate(VECTOR):
            compare(name, state.registers[name], int.from_bytes(after.vector[n], "little"))
        for name, at in FLAGS.items():
            if state.flags[name] is not None:
                compare(name + "f", (state.flag(name),), after.flags >> at & 1)
        for region in (self.data, self.machine.stack):
            start = self.places[region] - self.processor.address
            for i in state.memory.get(region, ()):
                compare(f"byte {i} of {region}", state.byte(region, i), self.processor.memory[start + i])
                self.processor.memory[start + i] = self.initial[start - DATA + i]
        if self.processor.memory[DATA:END] != self.initial:
            differences.append("memory changes elsewhere")
        place = self.processor.address + CODE + (TAKEN if after.taken else self.insn.size)
        if state.pc != place:
            differences.append(f"goes to {place:#x}, not {state.pc:#x}")
        return differences


@unittest.skipUnless(platform.machine() == "x86_64", "the meanings are those of another processor")
class Instructions(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        random.seed(20261122)
        cls.folder = tempfile.TemporaryDirectory()
        cls.processor = Processor(cls.folder.name)

    @classmethod
    def tearDownClass(cls):
        cls.folder.cleanup()

    def decoded(self, code):
        (insn,) = image.decode(code, self.processor.address + CODE)
        return insn

    def check(self, code, **more):
        self.processor.place(code)
        insn = self.decoded(code)
        for _ in range(TRIALS):
            trial = Trial(self.processor, insn, **more)
            self.assertEqual(trial.run(), [], insn.text)
        return insn.mnemonic

    def test_every_instruction_that_occurs(self):
        kinds = set()
        codes = {}
        for library in LIBRARIES:
            for insn in image.Image(library).all_instructions():
                kinds.add(insn.mnemonic)
                codes[moved(insn, self.processor)] = insn
        for code in codes:
            self.check(code)
        print(f"{len(codes)} different instructions of {len(kinds)} kinds", file=sys.stderr)
        self.assertGreater(len(codes), 1000)
        # Those that a compiler does not use today: a meaning that nothing tests is none.
        for code in ("f30f1efa", "c1c808", "c1c008", "66c1c008", "69c000220000", "4898", "4863c6",
                     "48b83f3f3f3f3f3f3f3f", "f30f6fc1", "0f10c1", "660f6fc1", "66480f6ec0", "660fefc1", "0facd008",
                     "0fa4d008", "4887d0", "0fbaf005", "0fbae005", "f7d8", "19c0", "0fbae805", "c1f803", "0f1607",
                     "0f1707", "0fbec1", "660fdbc1", "660fdfc1", "660febc1", "660f67c1", "660f70c11b", "f20f70c11b",
                     "f30f70c11b", "0f28c1", "0f54c1", "0f55c1", "0f56c1", "0f57c1",
                     *(f"660f{opcode:x}c1" for opcode in (0x60, 0x61, 0x62, 0x68, 0x69, 0x6A, 0x6C, 0x6D))):
            kinds.add(self.check(bytes.fromhex(code)))
        for condition in range(16):
            if condition not in (10, 11):  # parity
                for code in (f"0f9{condition:x}c0", f"480f4{condition:x}c2", f"0f8{condition:x}3a000000"):
                    kinds.add(self.check(bytes.fromhex(code)))
        self.assertEqual(set(MEANINGS) - kinds, set())

    def test_arithmetic_on_addresses(self):
        for code, *addresses in (
            ("4801d0", "rax"),  # add rax, rdx
            ("4801d0", "rdx"),
            ("4883e810", "rax"),  # sub rax, 16
            ("4829d0", "rax"),  # sub rax, rdx
            ("4829d0", "rax", "rdx"),
            ("4839d0", "rax", "rdx"),  # cmp rax, rdx
            ("488d441008", "rax"),  # lea rax, [rax + rdx + 8]
            ("488d441008", "rdx"),
            ("4883e0f8", "rax"),  # and rax, -8
            ("480f44c2", "rax", "rdx"),  # cmove rax, rdx
            ("4887d0", "rdx"),  # xchg rax, rdx
            ("0f94c0", "rax"),  # sete al
        ):
            self.check(bytes.fromhex(code), addresses=addresses)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
