#!/usr/bin/env python3
"""Compares what npxlate names import says of members with where compilers put them.

members_test.py TOOL WORK_FOLDER C_COMPILER CXX_COMPILER [SEED]

A program with structures of every kind is made and compiled in many ways. It sets each member, bit by bit, and prints
which bits of the structure are then set; the debug information of the same program is what the tool reads.
"""

import pathlib
import random
import subprocess
import sys
import tomllib

# The longest logical record, of which a structure under test is the front part.
TABLE = "13"
RECORD_BYTES = 168

HEAD = r"""
#include <stddef.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>
#include <stdbool.h>
#include <netinet/in.h>
#include <net/ethernet.h>

static void show(const char *structure, const char *member, int bit, const void *bytes, size_t size) {
    printf("%s %s %d", structure, member, bit);
    for (size_t i = 0; i < 8 * size; ++i) {
        if (((const unsigned char *)bytes)[i / 8] >> i % 8 & 1) {
            printf(" %zu", i);
        }
    }
    printf("\n");
}
/* Each bit of a member's value. */
#define BITS(structure, member, type, width)                         \
    for (int bit = 0; bit < (width); ++bit) {                        \
        memset((void *)&structure##_, 0, sizeof structure##_);               \
        structure##_.member = (type)((type)1 << bit);                \
        show(#structure, #member, bit, &structure##_, sizeof structure##_); \
    }
/* A member of which only the place is looked at. */
#define PLACE(structure, member)                                     \
    memset((void *)&structure##_, 0, sizeof structure##_);                   \
    memset((void *)&structure##_.member, 0xff, sizeof structure##_.member); \
    show(#structure, #member, -1, &structure##_, sizeof structure##_);
"""

TYPES = r"""
enum Kind { KIND_NONE, KIND_ONE, KIND_SEVEN = 7, KIND_AGAIN = 7 };
enum Offset { OFFSET_DOWN = -3, OFFSET_UP = 2 };
typedef uint32_t index_t;
typedef volatile index_t doorbell_t;
typedef uint8_t cell_t[3];
typedef enum Kind kind_t;
"""

CXX_TYPES = r"""
#include <cstddef>
enum class Mode : uint8_t { idle, busy = 200 };
enum class Level : int16_t { low = -5, high = 5 };
struct Base { uint16_t tag; uint8_t level : 3; uint8_t rest : 5; };
struct Other { uint32_t tag; char after; };
struct Empty {};
namespace card { struct Hop { uint32_t label : 20; uint32_t exp : 3; bool bottom : 1; uint8_t ttl; }; }
template <typename T, int count> struct Several { T first; T rest[count]; static int total; };
struct Virtual { virtual ~Virtual() {} uint32_t inside; };
"""

# Structures that random ones would hardly be: the definition, and what to set in it.
CXX_STRUCTURES = [
    ("Derived", "struct Derived : Base { uint32_t own; Mode mode; };",
     [("tag", "uint16_t", 16), ("level", "uint8_t", 3), ("rest", "uint8_t", 5), ("own", "uint32_t", 32),
      ("mode", "Mode", 0)]),
    ("TwoBases", "struct TwoBases : Empty, Base, Virtual { Level depth; static uint32_t elsewhere; uint8_t own; };",
     [("tag", "uint16_t", 16), ("level", "uint8_t", 3), ("rest", "uint8_t", 5), ("inside", "uint32_t", 32),
      ("depth", "Level", 0), ("own", "uint8_t", 8)]),
    ("Hops", "struct Hops { card::Hop hops[3]; Several<uint16_t, 2> pair; std::byte raw[4]; };",
     [(f"hops[{i}].{name}", kind, width) for i in range(3)
      for name, kind, width in [("label", "uint32_t", 20), ("exp", "uint32_t", 3), ("bottom", "bool", 1),
                                ("ttl", "uint8_t", 8)]]
     + [("pair.first", "uint16_t", 16), ("pair.rest[0]", "uint16_t", 16), ("pair.rest[1]", "uint16_t", 16),
        ("raw", "std::byte", 0)]),
    ("Attributes", "struct Attributes { [[no_unique_address]] Empty nothing; alignas(8) uint8_t aligned; "
     "uint16_t& reference; uint32_t Base::*pointer; char16_t wide; };",
     [("aligned", "uint8_t", 8), ("wide", "char16_t", 16)]),
    ("Private", "class Private { public: Private() = default; uint8_t first : 1; uint8_t second : 2; struct Inner { "
     "uint16_t value; } inner; union { uint8_t byte; uint32_t word; }; };",
     [("first", "uint8_t", 1), ("second", "uint8_t", 2), ("inner.value", "uint16_t", 16), ("byte", "uint8_t", 8),
      ("word", "uint32_t", 32)]),
]

C_STRUCTURES = [
    ("Flexible", "struct Flexible { uint16_t count; uint16_t items[]; };", [("count", "uint16_t", 16)]),
    ("Addresses", "struct Addresses { uint8_t pad; struct in_addr v4; struct in6_addr v6; struct ether_addr mac; };",
     [("v4", "in", 0), ("v6", "in", 0), ("mac", "in", 0), ("pad", "uint8_t", 8)]),
]

INTEGERS = [("uint8_t", 8), ("uint16_t", 16), ("uint32_t", 32), ("uint64_t", 64), ("int8_t", 8), ("int16_t", 16),
            ("int32_t", 32), ("int64_t", 64), ("char", 8), ("unsigned long long", 64), ("index_t", 32),
            ("doorbell_t", 32), ("const volatile unsigned", 32)]
ASSIGNABLE = {"doorbell_t": "uint32_t"}


class Generator:
    """Random structures in the language that C and C++ have in common."""

    def __init__(self, seed, cxx, big_endian):
        self.random = random.Random(seed)
        self.cxx = cxx
        self.big_endian = big_endian
        self.number = 0
        self.named = 0

    def name(self):
        self.number += 1
        return f"m{self.number}"

    def leaf(self, path, leaves):
        """A member's declaration without its name: what stands before, what behind."""
        pick = self.random.random()
        if pick < 0.55:
            kind, width = self.random.choice(INTEGERS[:-1])
            if self.big_endian and kind == "doorbell_t":
                kind = "uint32_t"
            leaves.append((path, ASSIGNABLE.get(kind, kind), width))
            return kind, ""
        if pick < 0.65:
            leaves.append((path, "bool", 1))
            return "bool", ""
        if pick < 0.75 and not self.big_endian:
            leaves.append((path, self.random.choice(["enum Kind", "kind_t"]), 0))
            return leaves[-1][1], ""
        if pick < 0.85:
            count = self.random.randint(1, 5)
            leaves.append((path, "bytes", 0))
            return self.random.choice(["uint8_t", "char", "unsigned char"]), f"[{count}]"
        if self.big_endian:
            leaves.append((path, "uint32_t", 32))
            return "uint32_t", ""
        kind = self.random.choice(["float", "double", "void *", "unsigned __int128", "cell_t"])
        leaves.append((path, kind, 0))
        return kind, ""

    def bit_field(self, path, leaves):
        kinds = [("uint8_t", 7), ("uint16_t", 16), ("uint32_t", 32), ("uint64_t", 64), ("int", 32), ("int64_t", 64),
                 ("index_t", 32)]
        if not self.big_endian:
            # Of these, debug information does not say that they are big-endian.
            kinds += [("bool", 1), ("enum Kind", 8), ("enum Offset", 8)]
        kind, most = self.random.choice(kinds)
        least = 3 if kind.startswith("enum") else 1
        # As wide as its type, Clang describes one in a packed structure as if it began with a byte.
        width = self.random.randint(least, most - 1 if most > 8 else most)
        leaves.append((path, kind, width))
        return kind, f" : {width}"

    def members(self, path, leaves, depth, budget, in_union=False):
        text = ""
        for _ in range(self.random.randint(1, 6)):
            if budget[0] <= 0:
                break
            budget[0] -= 1
            name = self.name()
            inner = f"{path}{name}"
            pick = self.random.random()
            if pick < 0.38:
                kind, behind = self.bit_field(inner, leaves)
                text += f"{kind} {name}{behind}; "
                if self.random.random() < 0.15:
                    text += self.random.choice(["unsigned : 0; ", "unsigned : 3; ", "uint64_t : 17; "])
            elif pick < 0.7 or depth == 0:
                kind, behind = self.leaf(inner, leaves)
                text += f"{kind} {name}{behind}{self.alignment()}; "
            elif pick < 0.78:
                # An array of something that has no byte order of its own.
                rows, columns = self.random.randint(1, 3), self.random.randint(1, 2)
                kind, width = self.random.choice([("uint16_t", 16), ("uint32_t", 32), ("bool", 1)])
                text += f"{kind} {name}[{rows}][{columns}]; "
                leaves += [(f"{inner}[{i}][{j}]", kind, width) for i in range(rows) for j in range(columns)]
            elif pick < 0.86:
                # An array of structures.
                count = self.random.randint(1, 3)
                element = []
                body = self.members("", element, depth - 1, budget)
                if not element:
                    continue
                text += f"struct {self.attributes()} {{ {body}}} {name}[{count}]; "
                leaves += [(f"{inner}[{i}].{one}", kind, width) for i in range(count) for one, kind, width in element]
            else:
                what = self.random.choice(["struct", "union"])
                anonymous = self.random.random() < 0.4
                body = self.members(path if anonymous else f"{inner}.", leaves, depth - 1, budget)
                if body:
                    text += f"{what} {self.attributes()} {{ {body}}}{'' if anonymous else ' ' + name}; "
        return text

    def alignment(self):
        return self.random.choice([" __attribute__((aligned(4)))", " __attribute__((packed))"] + [""] * 8)

    def attributes(self):
        choices = ["", "", "", "__attribute__((packed))", "__attribute__((aligned(8)))",
                   "__attribute__((packed, aligned(2)))"]
        text = self.random.choice(choices)
        return text + (' __attribute__((scalar_storage_order("big-endian")))' if self.big_endian else "")

    def structure(self):
        self.number = 0
        self.named += 1
        name = f"Random{self.named}"
        leaves = []
        body = ""
        while not leaves:
            leaves = []
            body = self.members("", leaves, 3, [14])
        what = self.random.choice(["struct", "struct", "struct", "union"])
        pack = self.random.choice([None, None, None, 1, 2, 4])
        text = f"{what} {self.attributes()} {name} {{ {body}}};"
        if pack:
            text = f"#pragma pack(push, {pack})\n{text}\n#pragma pack(pop)"
        return name, text, leaves


def program(seed, cxx, big_endian, structures):
    generator = Generator(seed, cxx, big_endian)
    made = [generator.structure() for _ in range(structures)]
    if not big_endian:
        made += CXX_STRUCTURES if cxx else C_STRUCTURES
    text = HEAD + TYPES + (CXX_TYPES if cxx else "")
    for name, definition, _ in made:
        tag = "" if cxx else "union " if definition.lstrip().find(f"union ") == 0 or "\nunion " in definition else "struct "
        # So long that the record is no longer, and behind it nothing that has a name.
        text += f"{definition}\nstruct {name}Record {{ {tag}{name} s; uint8_t behind[{RECORD_BYTES}]; }};\n"
        if name == "Flexible":
            text += f"static struct {name}Record {name}_record;\n#define {name}_ {name}_record.s\n"
        elif name == "Attributes":
            text += "static uint16_t target;\nalignas(Attributes) static unsigned char room[sizeof(AttributesRecord)];\n"
            text += "#define Attributes_ (reinterpret_cast<AttributesRecord *>(room)->s)\n"
            text += "uint16_t *keep() { return &target; }\n"
        else:
            text += f"static struct {name}Record {name}_record;\n#define {name}_ {name}_record.s\n"
    text += "int main(void) {\n"
    for name, _, leaves in made:
        for path, kind, width in leaves:
            text += f"    BITS({name}, {path}, {kind}, {width})\n" if width else f"    PLACE({name}, {path})\n"
    return text + "    return 0;\n}\n", made


def piece_bits(piece):
    """The bits of L3, L3-5, L3.4 and L3.4-2, the lowest first."""
    assert piece.startswith("L"), piece
    byte, dot, bits = piece[1:].partition(".")
    if dot:
        high, _, low = bits.partition("-")
        return [8 * int(byte) + bit for bit in range(int(low or high), int(high) + 1)]
    first, _, last = byte.partition("-")
    return list(range(8 * int(first), 8 * int(last or first) + 8))


def field_bits(field):
    """The bits of a field's value, the lowest first."""
    bits = [bit for piece in field["at"].split() for bit in piece_bits(piece)]
    order = field.get("order") or ("big" if field["as"] in ("ipv6", "mac", "bytes") else "little")
    if order == "big":
        whole = [bits[i:i + 8] for i in range(0, len(bits), 8)]
        bits = [bit for byte in reversed(whole) for bit in byte]
    return bits


def imported(tool, elf, name):
    command = [tool, "names", "import", "--elf", str(elf), "--struct", name + "Record", "--table", TABLE]
    done = subprocess.run(command, capture_output=True, text=True)
    assert done.returncode == 0, f"{' '.join(command)}: {done.stderr}"
    fields = tomllib.loads(done.stdout)["record"][0]["fields"]
    return {field["name"].removeprefix("s."): field for field in fields}


def check(tool, elf, printed, made, label):
    """The number of members compared."""
    shown = {}
    for line in printed.splitlines():
        structure, member, bit, *bits = line.split()
        shown.setdefault((structure, member), {})[int(bit)] = [int(one) for one in bits]
    compared = 0
    for name, _, leaves in made:
        fields = imported(tool, elf, name)
        expected = {path for path, _, _ in leaves}
        for path, kind, width in leaves:
            said = fields.get(path)
            if kind == "cell_t" or (said is None and f"{path}[0]" in fields):
                continue
            if said is None and max(max(places) for places in shown[(name, path)].values()) >= 8 * RECORD_BYTES:
                continue
            assert said is not None, f"{label}: {name}.{path} is missing"
            bits = field_bits(said)
            for bit, places in shown[(name, path)].items():
                where = f"{label}: {name}.{path}, bit {bit}: is at {places}, said to be at {said}"
                if bit < 0:
                    assert sorted(bits) == places, where
                else:
                    assert places == [bits[bit]], where
            if width and kind != "bool":
                assert len(bits) == width, f"{label}: {name}.{path} has {width} bits, said to be at {said}"
            compared += 1
        unknown = {path for path in fields if not path.startswith("behind") and path not in expected}
        unknown -= {"reference", "pointer"}
        assert not unknown, f"{label}: {name} has no {unknown}"
    return compared


def main():
    tool, work, c_compiler, cxx_compiler = sys.argv[1:5]
    seed = int(sys.argv[5]) if len(sys.argv) > 5 else 1
    work = pathlib.Path(work)
    work.mkdir(parents=True, exist_ok=True)
    versions = [["-gdwarf-2", "-gstrict-dwarf"], ["-gdwarf-3"], ["-gdwarf-4"], ["-gdwarf-5"],
                ["-gdwarf-5", "-gz"], ["-gdwarf-4", "-fdebug-types-section"],
                ["-gdwarf-5", "-fdebug-types-section"], ["-gdwarf-5", "-gsplit-dwarf"],
                ["-gdwarf-4", "-O2", "-flto"]]
    total = 0
    for compiler in (c_compiler, cxx_compiler):
        cxx = compiler == cxx_compiler
        is_clang = "clang" in subprocess.run([compiler, "--version"], capture_output=True, text=True).stdout
        for big_endian in ([False] if is_clang or cxx else [False, True]):
            text, made = program(seed, cxx, big_endian, 25)
            source = work / f"members{'_big' if big_endian else ''}.{'cpp' if cxx else 'c'}"
            source.write_text(text)
            for flags in versions:
                # DWARF 2 cannot say that a type is big-endian.
                if (is_clang and "-flto" in flags) or (big_endian and "-gdwarf-2" in flags):
                    continue
                elf = work / "members"
                standard = "-std=gnu++20" if cxx else "-std=gnu11"
                subprocess.run([compiler, standard, "-w", *flags, source.name, "-o", elf.name], check=True, cwd=work)
                printed = subprocess.run([elf], capture_output=True, text=True, check=True).stdout
                total += check(tool, elf, printed, made, f"{compiler} {' '.join(flags)} {source.name}")
    print(f"{total} members compared")


if __name__ == "__main__":
    main()
