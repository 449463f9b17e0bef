"""The processor's state with undetermined contents, and the execution of code on it, all ways at once.

At a branch where both ways are possible, the state is doubled, each with the condition under which it is there; where
the ways meet again, the two are made one. So every instruction is executed about once, however many ways there are.

An address is never a number, but a place in a region: a record, the stack frame, the library's constants. Where a
region lies is thereby left open. Every access must lie wholly within one region that permits it, under the condition of
the state; otherwise `Refuted` is raised.
"""

from typing import NamedTuple

import vectors
from vectors import constant, number

GENERAL = ["rax", "rcx", "rdx", "rbx", "rsp", "rbp", "rsi", "rdi"] + [f"r{n}" for n in range(8, 16)]
VECTOR = [f"xmm{n}" for n in range(16)]
CALLEE_SAVED = ["rbx", "rbp", "r12", "r13", "r14", "r15"]


def _register_parts():
    """Every name of a register: the whole register, the first bit, the number of bits."""
    parts = {name: (name, 0, 128) for name in VECTOR}
    for name in GENERAL:
        if name[1].isdigit():
            names = [name, name + "d", name + "w", name + "b"]
        elif name[2] == "x":
            names = [name, "e" + name[1:], name[1:], name[1] + "l"]
            parts[name[1] + "h"] = (name, 8, 8)
        else:
            names = [name, "e" + name[1:], name[1:], name[1:] + "l"]
        parts |= {part: (name, 0, width) for part, width in zip(names, (64, 32, 16, 8))}
    return parts


REGISTERS = _register_parts()


class Refuted(Exception):
    """What is claimed does not hold where the condition does."""

    def __init__(self, what, condition):
        super().__init__(what)
        self.condition = condition


class Beyond(Exception):
    """What has no meaning here: nothing is claimed."""


class AddressMatters(Exception):
    """What the code does depends on the lowest bits of the address where a region begins."""

    def __init__(self, region, low_bits):
        super().__init__(region, low_bits)
        self.region = region
        self.low_bits = low_bits


class Region:
    """A piece of memory that is apart from all others."""

    def __init__(self, name, size, initial=None, writable=False, readable=True, alignment=1):
        self.name = name
        self.size = size
        self.initial = initial  # of the number of a byte its eight bits
        self.writable = writable
        self.readable = readable
        self.alignment = alignment  # what its address is a multiple of
        self.low_bits = None  # of its address, where they are given

    def __repr__(self):
        return self.name


class Pointer(NamedTuple):
    region: Region
    offset: tuple  # 64 bits


class Fragment(NamedTuple):
    """A byte of an address in memory."""

    pointer: Pointer
    position: int


class Mixed:
    """What is left where ways meet that hold different kinds of values. It can be moved, but not used."""

    def __repr__(self):
        return "a value that differs in kind from way to way"


MIXED = Mixed()


def bits(value):
    if type(value) is not tuple:
        raise Beyond(f"arithmetic on {value}")
    return value


class Frame(NamedTuple):
    entry: int  # of the function called
    back: int  # where it returns to


class State:
    """Registers, flags and memory at one place of the code, under a condition."""

    def __init__(self, machine, pc, condition):
        self.machine = machine
        self.d = machine.d
        self.pc = pc
        self.entry = pc  # of the function that is being executed
        self.frames = ()  # of its callers
        self.condition = condition
        self.registers = {}
        self.flags = dict.fromkeys("czso")  # functions, or what gives them when asked; None where undefined
        self.memory = {}  # by region

    def copy(self, condition):
        other = State(self.machine, self.pc, condition)
        other.entry = self.entry
        other.frames = self.frames
        other.registers = self.registers.copy()
        other.flags = self.flags.copy()
        other.memory = {region: content.copy() for region, content in self.memory.items()}
        return other

    def merge(self, other):
        """Makes this the state of both ways."""
        d = self.d
        condition = self.condition

        def merged(a, b):
            if a is b or a == b:
                return a
            if type(a) is tuple and type(b) is tuple:
                return vectors.choose(d, condition, a, b)
            if isinstance(a, Pointer) and isinstance(b, Pointer) and a.region is b.region:
                return Pointer(a.region, vectors.choose(d, condition, a.offset, b.offset))
            return MIXED

        for name, value in other.registers.items():
            self.registers[name] = merged(self.registers[name], value)
        for name, flag in self.flags.items():
            theirs = other.flags[name]
            if flag is not theirs:
                self.flags[name] = None if flag is None or theirs is None else (
                    lambda a=flag, b=theirs: d.choose(condition, a() if callable(a) else a, b() if callable(b) else b))
        for region in self.memory.keys() | other.memory.keys():
            content, others = self.memory.setdefault(region, {}), other.memory.get(region, {})
            for position in content.keys() | others.keys():
                content[position] = merged(
                    content[position] if position in content else self.machine.initial(region, position),
                    others[position] if position in others else self.machine.initial(region, position))
        self.condition = d.either(condition, other.condition)

    # Registers

    def register(self, name):
        whole, first, width = REGISTERS[name]
        value = self.registers[whole]
        if width == 64 or width == 128:
            return value
        return bits(value)[first : first + width]

    def set_register(self, name, value):
        whole, first, width = REGISTERS[name]
        if width == 32:
            value = bits(value) + (0,) * 32
        elif width < 32:
            before = self.registers[whole]
            if type(before) is not tuple:
                before = self.machine.unknown(64)
            value = before[:first] + bits(value) + before[first + width :]
        self.registers[whole] = value

    def flag(self, name):
        flag = self.flags[name]
        if flag is None:
            raise Beyond(f"use of an undefined flag, {name}f")
        if callable(flag):
            flag = self.flags[name] = flag()
        return flag

    # Addresses

    def plus(self, a, b):
        """The sum of two values, of which one may be an address."""
        if isinstance(b, Pointer):
            a, b = b, a
        if isinstance(a, Pointer):
            return Pointer(a.region, vectors.add(self.d, a.offset, bits(b))[0])
        return vectors.add(self.d, bits(a), bits(b))[0]

    def aligned(self, pointer, low_bits):
        """The address with its low bits cleared."""
        region, offset = pointer
        if region.alignment % (1 << low_bits) == 0:
            start = (0,) * low_bits
        elif region.low_bits and len(region.low_bits) >= low_bits:
            start = region.low_bits[:low_bits]
        else:
            raise AddressMatters(region, low_bits)
        excess = vectors.add(self.d, start, offset[:low_bits])[0]
        return self.plus(pointer, vectors.negative(self.d, vectors.extended(excess, 64)))

    def accesses(self, address, size, write):
        """The region, and the places in it that the access may be to, each with the condition under which it is."""
        what = f"{'writes' if write else 'reads'} {size} bytes at "
        if not isinstance(address, Pointer):
            raise Refuted(what + "an address that is no part of a record or of the stack", self.condition)
        region, offset = address
        known = number(offset)
        places = [(known, self.condition)] if known is not None else self.machine.values(offset, self.condition)
        for place, condition in places:
            place = vectors.signed(place, 64)
            if place < 0 or place + size > region.size:
                raise Refuted(f"{what}{place} of {region}, which has {region.size} bytes", condition)
            if not (region.writable if write else region.readable):
                raise Refuted(f"{what}{place} of {region}, which is not to be {'written' if write else 'read'}",
                              condition)
            if region is self.machine.stack and place < self.stack_pointer() - 128:
                raise Refuted(f"{what}{place - self.machine.stack_top} of the stack, below its red zone", condition)
        return region, places

    def require_alignment(self, address, alignment):
        """For instructions that fault otherwise."""
        aligned = isinstance(address, Pointer) and address.region.alignment % alignment == 0
        if not aligned or any(address.offset[: alignment.bit_length() - 1]):
            raise Refuted(f"an access to {address} that faults unless aligned to {alignment} bytes", self.condition)

    def byte(self, region, place):
        content = self.memory.get(region)
        if content is not None and place in content:
            return content[place]
        return self.machine.initial(region, place)

    def load(self, address, size):
        if isinstance(address, Pointer) and address.region is self.machine.image_region:
            return self.machine.load_constants(self, address.offset, size)
        region, places = self.accesses(address, size, write=False)
        result = None
        for place, condition in places:
            value = self._joined([self.byte(region, place + i) for i in range(size)])
            if result is None:
                result = value
            else:
                result = vectors.choose(self.d, condition, bits(value), bits(result))
        return result

    @staticmethod
    def _joined(content):
        first = content[0]
        if isinstance(first, Fragment) and content == [Fragment(first.pointer, i) for i in range(8)]:
            return first.pointer
        if all(type(byte) is tuple for byte in content):
            return tuple(bit for byte in content for bit in byte)
        return MIXED

    def store(self, address, value):
        if type(value) is tuple:
            content = [value[first : first + 8] for first in range(0, len(value), 8)]
        elif isinstance(value, Pointer):
            content = [Fragment(value, i) for i in range(8)]
        else:
            content = [value] * 8
        self.store_bytes(address, content)

    def store_bytes(self, address, content):
        region, places = self.accesses(address, len(content), write=True)
        memory = self.memory.setdefault(region, {})
        for place, condition in places:
            for i, byte in enumerate(content):
                if len(places) > 1:
                    byte = vectors.choose(self.d, condition, bits(byte), bits(self.byte(region, place + i)))
                memory[place + i] = byte

    def stack_pointer(self):
        """How far it is above the lowest byte of the stack."""
        pointer = self.registers["rsp"]
        if isinstance(pointer, Pointer) and pointer.region is self.machine.stack:
            offset = number(pointer.offset)
            if offset is not None:
                return offset
        raise Beyond("a stack pointer that is not determined")

    def push(self, value):
        self.registers["rsp"] = self.plus(self.registers["rsp"], constant(-8, 64))
        self.store(self.registers["rsp"], value)

    def pop(self):
        value = self.load(self.registers["rsp"], 8)
        self.registers["rsp"] = self.plus(self.registers["rsp"], constant(8, 64))
        return value


class Order:
    """The places of a function, each after those from which it is reached, as far as there are no loops."""

    def __init__(self, machine, entry):
        self._machine = machine
        self._entry = entry
        self._found = {}  # targets of computed jumps
        self._number()

    def _successors(self, pc):
        insn = self._machine.image.instruction(pc)
        if insn is None:
            return ()
        following = pc + insn.size
        if insn.mnemonic == "ret":
            return ()
        if insn.mnemonic[0] == "j":
            target = insn.operands[0].immediate
            targets = tuple(self._found.get(pc, ())) if target is None else (target,)
            return targets if insn.mnemonic == "jmp" else (following, *targets)
        return (following,)

    def _number(self):
        postorder = []
        reached = {self._entry}
        arrivals = {}
        pending = [(self._entry, iter(self._successors(self._entry)))]
        while pending:
            pc, following = pending[-1]
            for target in following:
                arrivals[target] = arrivals.get(target, 0) + 1
                if target not in reached:
                    reached.add(target)
                    pending.append((target, iter(self._successors(target))))
                    break
            else:
                postorder.append(pc)
                pending.pop()
        self.rank = {pc: rank for rank, pc in enumerate(reversed(postorder))}
        self.joins = {pc for pc, number in arrivals.items() if number > 1}

    def add(self, pc, target):
        if target not in self._found.setdefault(pc, set()):
            self._found[pc].add(target)
            self._number()


class Machine:
    """One run of a function, for all contents of its registers and memory."""

    STACK_SIZE = 1024  # of which the last eight bytes are the return address

    def __init__(self, d, image, instructions):
        self.d = d
        self.image = image
        self.instructions = instructions  # mnemonic to meaning
        self.stack = Region("the stack", self.STACK_SIZE, writable=True, alignment=16)
        self.stack_top = self.STACK_SIZE - 8
        # Its "size" is checked by load_constants().
        self.image_region = Region("the library", 0, alignment=4096)
        self.caller = Region("the caller", 0)
        self.variables = {}  # data of the library that is not constant: its symbol's name to its region
        self.compared_with_null = set()
        self.executed = set()
        self.observe = lambda *functions: None  # told every function on which the way or an address depends
        self._objects = {}
        self._initial = {}
        self._orders = {}
        self._unknowns = 0

    def unknown(self, width):
        """Bits of which nothing is known."""
        first = self._unknowns
        self._unknowns += width
        return tuple(self.d.variable(f"unknown {n}") for n in range(first, first + width))

    def initial(self, region, place):
        key = region, place
        byte = self._initial.get(key)
        if byte is None:
            byte = self._initial[key] = region.initial(place) if region.initial else self.unknown(8)
        return byte

    def values(self, bits, condition):
        self.observe(*bits)
        return vectors.values(self.d, bits, condition)

    # The library's own data

    def image_address(self, address):
        """What an address formed by code points to: a named piece of data is a region of its own."""
        named = self.image.object_at(address)
        if named is None:
            return Pointer(self.image_region, constant(address, 64))
        start, stop, name = named
        region = self.variables.get(name) or self._objects.get(name)
        if region is None:
            content = self.image.constants(start, stop - start)
            region = Region(f"{name}, data of the library", stop - start, lambda i: constant(content[i], 8),
                            readable=content is not None, alignment=min(start & -start, self.image_region.alignment))
            self._objects[name] = region
        return Pointer(region, constant(address - start, 64))

    def load_constants(self, state, offset, size):
        """Data that has no symbol: jump tables, constants of instructions, and what the loader stores."""
        known = number(offset)
        if known in self.image.stored and size == 8:
            target = self.image.stored[known]
            if isinstance(target, str):
                return Pointer(Region(target, 0), constant(0, 64))
            return self.image_address(target)
        places = [(known, state.condition)] if known is not None else self.values(offset, state.condition)
        result = None
        for place, condition in places:
            content = self.image.constants(place, size)
            owner = self.image.object_at(place) or self.image.object_at(place + size - 1)
            if content is None or owner or any(place <= at < place + size for at in self.image.stored):
                raise Refuted(f"reads {size} bytes at {place:#x} of the library, which are no constants", condition)
            value = constant(int.from_bytes(content, "little"), 8 * size)
            result = value if result is None else vectors.choose(self.d, condition, value, result)
        return result

    # Execution

    def start(self, entry, condition=1):
        """A state at the entry of a function, with nothing known but where the stack is."""
        state = State(self, entry, condition)
        for name in GENERAL:
            state.registers[name] = self.unknown(64)
        for name in VECTOR:
            state.registers[name] = self.unknown(128)
        state.registers["rsp"] = Pointer(self.stack, constant(self.stack_top, 64))
        state.store(state.registers["rsp"], Pointer(self.caller, constant(0, 64)))
        return state

    def order(self, entry):
        order = self._orders.get(entry)
        if order is None:
            order = self._orders[entry] = Order(self, entry)
        return order

    def _turn(self, state):
        """Which of several states is executed next: the one that cannot be reached from the others any more."""
        callers = tuple(self.order(entry).rank[back] - 0.5 for entry, back in state.frames)
        return *callers, self.order(state.entry).rank[state.pc]

    def run(self, state):
        """Executes until the function returns. The result is the state then, of all ways."""
        self._saved = {name: state.registers[name] for name in CALLEE_SAVED}
        pending = {(state.frames, state.entry, state.pc): state}
        finished = None
        while pending:
            key = min(pending, key=lambda key: self._turn(pending[key])) if len(pending) > 1 else next(iter(pending))
            states = [pending.pop(key)]
            while len(states) == 1 and states[0].pc is not None:
                try:
                    states = self._step(states[0])
                except (Refuted, Beyond) as failure:
                    failure.place = states[0].pc
                    raise
                if len(states) == 1 and states[0].pc in self.order(states[0].entry).joins:
                    break
            for state in states:
                if state.pc is None:
                    if finished is None:
                        finished = state
                    else:
                        finished.merge(state)
                    continue
                key = state.frames, state.entry, state.pc
                if key in pending:
                    pending[key].merge(state)
                else:
                    pending[key] = state
        return finished

    def _step(self, state):
        """Executes one instruction. The result is the states after it, each at its place; None is the caller's."""
        insn = self.image.instruction(state.pc)
        if insn is None:
            raise Refuted(f"goes to {state.pc:#x}, where there is no code", state.condition)
        return self.execute(state, insn)

    def execute(self, state, insn):
        meaning = self.instructions.get(insn.mnemonic)
        if meaning is None or insn.prefix:
            raise Beyond(f"the instruction {insn.text}")
        self.executed.add(state.pc)
        state.pc += insn.size
        try:
            return meaning(state, insn) or [state]
        except (Refuted, Beyond):
            state.pc = insn.address
            raise

    def branch(self, state, condition, target):
        """The states after a conditional jump."""
        taken = self.d.both(state.condition, condition)
        if taken == 0:
            return [state]
        if taken == state.condition:
            state.pc = target
            return [state]
        self.observe(condition)
        other = state.copy(taken)
        other.pc = target
        state.condition = self.d.both(state.condition, condition ^ 1)
        return [state, other]

    def jump(self, state, place, target):
        """The states after a jump to a computed address."""
        if not isinstance(target, Pointer):
            raise Refuted("jumps to an address that is no part of the library", state.condition)
        if target.region is not self.image_region:
            return self.call_outside(state, target.region.name)
        states = []
        known = number(target.offset)
        for address, condition in ([(known, state.condition)] if known is not None
                                   else self.values(target.offset, state.condition)):
            self.order(state.entry).add(place, address)
            states.append(state if known is not None else state.copy(condition))
            states[-1].pc = address
        return states

    def call(self, state, target):
        state.push(Pointer(self.image_region, constant(state.pc, 64)))
        if state.stack_pointer() % 16 != 8:
            raise Refuted("calls a function with the stack not aligned", state.condition)
        state.frames += (Frame(state.entry, state.pc),)
        state.entry = state.pc = target
        return [state]

    def ret(self, state):
        top = state.registers["rsp"]
        back = state.pop()
        if state.frames:
            frame = state.frames[-1]
            if back != Pointer(self.image_region, constant(frame.back, 64)):
                raise Refuted("returns to an address other than where it was called", state.condition)
            state.entry, state.pc = frame
            state.frames = state.frames[:-1]
            return [state]
        if top != Pointer(self.stack, constant(self.stack_top, 64)) or back != Pointer(self.caller, constant(0, 64)):
            raise Refuted("returns with another stack than it was called with", state.condition)
        for name, value in self._saved.items():
            now = state.registers[name]
            for x, y in zip(now, value) if type(now) is tuple else [(0, 1)]:
                changed = self.d.both(state.condition, self.d.differ(x, y))
                if changed != 0:
                    raise Refuted(f"returns with {name} changed", changed)
        state.pc = None
        return [state]

    def call_outside(self, state, name):
        """The C library's functions, as its standard defines them, and as they treat the registers."""
        destination, source, count = (state.registers[register] for register in ("rdi", "rsi", "rdx"))
        if name not in ("memset", "memcpy", "memmove"):
            raise Refuted(f"calls {name}", state.condition)
        if state.stack_pointer() % 16 != 8:
            raise Refuted(f"calls {name} with the stack not aligned", state.condition)
        size = number(bits(count))
        if size is None:
            raise Beyond(f"{name} of undetermined size")
        if size >= 1 << 63:
            raise Refuted(f"calls {name} with a negative size", state.condition)
        if size > 0:
            if name == "memset":
                state.store_bytes(destination, [bits(source)[:8]] * size)
            else:
                region, places = state.accesses(source, size, write=False)
                if len(places) > 1:
                    raise Beyond(f"{name} from an undetermined address")
                if name == "memcpy" and destination.region is region:
                    raise Beyond("memcpy within a region")
                state.store_bytes(destination, [state.byte(region, places[0][0] + i) for i in range(size)])
        for register in GENERAL:
            if register not in CALLEE_SAVED and register != "rsp":
                state.registers[register] = self.unknown(64)
        for register in VECTOR:
            state.registers[register] = self.unknown(128)
        # What lies below the return address is the function's to use.
        for place in state.memory[self.stack]:
            if place < state.stack_pointer():
                state.memory[self.stack][place] = self.unknown(8)
        state.registers["rax"] = destination
        state.flags = dict.fromkeys("czso")
        return self.ret(state)
