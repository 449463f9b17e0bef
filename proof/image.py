"""A shared object as the loader would map it."""

import bisect
from typing import NamedTuple

import capstone
from capstone import x86
from elftools.elf.constants import SH_FLAGS
from elftools.elf.elffile import ELFFile
from elftools.elf.enums import ENUM_RELOC_TYPE_x64 as RELOCATION
from elftools.elf.relocation import RelocationSection


class Operand(NamedTuple):
    """A register by name, an immediate number, or an address: one of the three."""

    size: int  # in bytes
    register: str = None
    immediate: int = None
    base: str = None  # "rip" for the address after the instruction
    index: str = None
    scale: int = 1
    displacement: int = None  # None unless this is an address
    segment: bool = False


class Instruction(NamedTuple):
    address: int
    size: int
    mnemonic: str  # without prefixes that change nothing here
    text: str
    operands: tuple
    code: bytes
    displacement_at: int  # where in the code the displacement of its address stands, if it has one
    prefix: str  # of repetition


def _instruction(insn):
    def operand(o):
        if o.type == x86.X86_OP_REG:
            return Operand(o.size, register=insn.reg_name(o.reg))
        if o.type == x86.X86_OP_IMM:
            return Operand(o.size, immediate=o.imm)
        base, index = (insn.reg_name(r) if r else None for r in (o.mem.base, o.mem.index))
        return Operand(o.size, base=base, index=index, scale=o.mem.scale, displacement=o.mem.disp,
                       segment=o.mem.segment != 0)

    *prefix, mnemonic = insn.mnemonic.split()
    return Instruction(insn.address, insn.size, mnemonic, f"{insn.mnemonic} {insn.op_str}".strip(),
                       tuple(map(operand, insn.operands)), bytes(insn.bytes), insn.disp_offset,
                       " ".join(p for p in prefix if p not in ("bnd", "notrack")))


_decoder = capstone.Cs(capstone.CS_ARCH_X86, capstone.CS_MODE_64)
_decoder.detail = True


def decode(code, address):
    """The instructions of that code, as far as it is code."""
    return map(_instruction, _decoder.disasm(bytes(code), address))


class Image:
    """Code, constants and symbols by address, which is the distance from where the loader maps the file."""

    def __init__(self, path):
        self.path = path
        self._instructions = {}
        with open(path, "rb") as file:
            elf = ELFFile(file)
            if elf.header.e_machine != "EM_X86_64" or elf.header.e_type != "ET_DYN":
                raise ValueError(f"{path} is not a shared object for x86-64")
            end = max(s.header.p_vaddr + s.header.p_memsz for s in elf.iter_segments("PT_LOAD"))
            self._bytes = bytearray(end)
            for segment in elf.iter_segments("PT_LOAD"):
                data = segment.data()
                self._bytes[segment.header.p_vaddr : segment.header.p_vaddr + len(data)] = data

            comment = elf.get_section_by_name(".comment")
            self.compiler = comment.data().split(b"\0")[0].decode() if comment else "an unknown compiler"

            self._code = []
            self._constants = []
            for section in elf.iter_sections():
                span = range(section.header.sh_addr, section.header.sh_addr + section.header.sh_size)
                if section.header.sh_flags & SH_FLAGS.SHF_EXECINSTR:
                    self._code.append(span)
                elif section.name.startswith(".rodata"):
                    self._constants.append(span)

            dynamic = elf.get_section_by_name(".dynsym")
            symbols = [s for table in (dynamic, elf.get_section_by_name(".symtab")) if table
                       for s in table.iter_symbols() if s.entry.st_shndx != "SHN_UNDEF"]
            self.functions = {s.name: s.entry.st_value for s in dynamic.iter_symbols()
                              if s.entry.st_info.type == "STT_FUNC" and s.entry.st_shndx != "SHN_UNDEF"}
            self.objects = {s.name: range(s.entry.st_value, s.entry.st_value + s.entry.st_size)
                            for s in symbols if s.entry.st_info.type == "STT_OBJECT"}
            by_address = {(span.start, span.stop): name for name, span in self.objects.items()}
            self._spans = sorted((start, stop, name) for (start, stop), name in by_address.items())

            # What the loader stores at start: an address of the image, or the name of a function of another library.
            # A name that the library itself defines is taken to be its own.
            self.stored = {}
            for section in elf.iter_sections():
                if isinstance(section, RelocationSection) and section.is_RELA() and section.header.sh_flags:
                    for relocation in section.iter_relocations():
                        symbol = dynamic.get_symbol(relocation.entry.r_info_sym)
                        self.stored[relocation.entry.r_offset] = self._target(relocation.entry, symbol)

    @staticmethod
    def _target(entry, symbol):
        kind = entry.r_info_type
        if kind == RELOCATION["R_X86_64_RELATIVE"]:
            return entry.r_addend
        if symbol.entry.st_shndx == "SHN_UNDEF":
            return symbol.name
        if kind == RELOCATION["R_X86_64_64"]:
            return symbol.entry.st_value + entry.r_addend
        if kind in (RELOCATION["R_X86_64_GLOB_DAT"], RELOCATION["R_X86_64_JUMP_SLOT"]):
            return symbol.entry.st_value
        raise ValueError(f"relocations of kind {kind} have no meaning here")

    def instruction(self, address):
        """The instruction there, or None where there is none."""
        found = self._instructions.get(address)
        if found is None and any(address in span for span in self._code):
            found = self._instructions[address] = next(decode(self._bytes[address : address + 15], address), None)
        return found

    def all_instructions(self):
        """All code, one instruction behind the other."""
        for span in self._code:
            address = span.start
            while address in span and (insn := self.instruction(address)):
                yield insn
                address += insn.size

    def object_at(self, address):
        """The data symbol that holds the address, as (start, stop, name), or None."""
        position = bisect.bisect_right(self._spans, (address, 1 << 64, "")) - 1
        if position >= 0 and address < self._spans[position][1]:
            return self._spans[position]
        return None

    def constants(self, address, size):
        """Bytes of the read-only data, or None if not all of them are."""
        last = address + size - 1
        if any(address in span and last in span for span in self._constants):
            return self._bytes[address : address + size]
        return None
