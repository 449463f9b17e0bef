// Names for a record from the structure that control software has for it.
#pragma once

#include <span>
#include <string>
#include <utility>
#include <vector>

#include "names/structure.h"

namespace names {

// Which structure stands for which record.
struct ImportRequest {
    ElfFile elf;
    std::string structure;
    std::string unit{};  // the source that defines it, where several do differently
    const catalogue::Translator* translator = nullptr;
    std::optional<unsigned> table{};
    std::size_t size = 0;                                   // of the record; 0: as long as the translator's is
    std::vector<std::pair<std::string, std::string>> as{};  // how to write the value of which name
};

struct Imported {
    Structure structure;
    Record record;
};

// Throws Error for a structure that there is not, of which there are several, or that is smaller than the record.
Imported import(const ImportRequest& request);

// As the text of a names file, with comments that say where it came from and what was left out.
std::string write(const Imported& imported);

// A table's record that a structure of that size can be.
struct Fit {
    unsigned table = 0;
    catalogue::Role role{};
    std::size_t bytes = 0;    // of the record
    std::size_t padding = 0;  // how much longer the structure is, as its alignment makes it
};
// Tables whose records have a size of their own: those of the generic translators fit any structure.
std::vector<Fit> tables_for(std::size_t structure_size);

}  // namespace names
