// Structures of a program, as its debug information says that the compiler laid them out.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "names/names.h"

namespace names {

// A member that holds a value; members of structures inside have their whole path: next.v4, hops[1].label.
struct Member {
    std::string path;
    std::vector<Span> bits;  // of the value, its lowest bits first
    Style style = Style::number;
    std::vector<Word> words{};
    std::string in_union{};  // the outermost union around it; empty without
};

struct Structure {
    std::string name;         // with its namespaces
    std::string kind;         // struct, class or union
    std::string declared_at;  // "adjacency.h:12"; empty if that is not said
    std::string unit;         // the source that was compiled
    std::size_t size = 0;     // in bytes
    std::vector<Member> members{};
    std::vector<std::string> left_out{};  // members that have no name for what they are, each with the reason
};

// An object file, a program, a shared library, an archive or a separate debug file. Where debug information is in a
// file of its own, that is looked for beside the file, in .debug there, in the folder and in the system's.
struct ElfFile {
    std::string path;
    std::string debug_folder{};
};

// The structures in such a file. Throw Error for a file that cannot be read, that is damaged, that has no debug
// information or whose target is big-endian.

// Every structure that is defined, without its members.
std::vector<Structure> list_structures(const ElfFile& elf);

// The structures of that name, of whatever unit, whose layouts differ; members up to so many bytes. A name may be
// qualified (ns::entry), may begin with struct, class or union, and may be that of a typedef.
std::vector<Structure> read_structures(const ElfFile& elf, const std::string& name, std::size_t bytes);

}  // namespace names
