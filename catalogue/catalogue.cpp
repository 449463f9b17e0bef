#include "catalogue/catalogue.h"

#include <algorithm>
#include <stdexcept>
#include <string>

namespace catalogue {
namespace {

std::vector<Translator> all() {
    std::vector<Translator> result;
    const auto add = [&result](std::string_view family, std::vector<Translator> translators) {
        for (Translator& translator : translators) {
            translator.family = family;
            result.push_back(std::move(translator));
        }
    };
    add("frame", frame());
    add("adjacency", adjacency());
    add("oam", oam());
    add("route", route());
    add("mcast", mcast());
    add("l2vpn", l2vpn());
    add("subscriber", subscriber());
    add("feature", feature());
    return result;
}

// Functions of different types, compared by address.
template <typename A, typename B>
bool same(A* a, B* b) {
    return reinterpret_cast<void (*)()>(a) == reinterpret_cast<void (*)()>(b);
}

bool stands_in(const Translator& translator, unsigned table) {
    switch (translator.role) {
        case Role::key:
            return l2p_ucode_func_table[table].key == translator.forward;
        case Role::result:
            return l2p_ucode_func_table[table].result == translator.forward;
        case Role::reverse:
            break;
    }
    npxlate_reverse_fn* entry = p2l_ucode_func_table[table];
    return same(entry, translator.reverse) || same(entry, translator.reverse_by_type) ||
           same(entry, translator.reverse_by_key);
}

}  // namespace

std::span<const Translator> translators() {
    static const std::vector<Translator> list = all();
    return list;
}

const Translator* find(std::string_view name) {
    const auto found = std::ranges::find(translators(), name, &Translator::name);
    return found == translators().end() ? nullptr : &*found;
}

const Translator& of_table(unsigned table, Role role) {
    const auto found = std::ranges::find_if(translators(), [&](const Translator& translator) {
        return translator.role == role && stands_in(translator, table);
    });
    if (found == translators().end()) {
        throw std::logic_error{"the catalogue does not know the translator of table " + std::to_string(table)};
    }
    return *found;
}

std::vector<unsigned> tables_of(const Translator& translator) {
    std::vector<unsigned> result;
    for (unsigned table = 0; table < NPXLATE_TABLE_COUNT; ++table) {
        if (stands_in(translator, table)) {
            result.push_back(table);
        }
    }
    return result;
}

Translator forward(std::string_view name, Role role, npxlate_result_fn* function, Lengths logical, Lengths physical) {
    return {.name = name, .role = role, .logical = logical, .physical = physical, .forward = function};
}

Translator result_without_length(std::string_view name, npxlate_reverse_fn* function, Lengths logical,
                                 Lengths physical) {
    return Translator{.name = name, .role = Role::result, .logical = logical, .physical = physical, .reverse = function}
        .with(Trait::keeps_length);
}

Translator reverse(std::string_view name, npxlate_reverse_fn* function, Lengths logical, Lengths physical) {
    return {.name = name, .role = Role::reverse, .logical = logical, .physical = physical, .reverse = function};
}

Translator reverse(std::string_view name, npxlate_reverse_by_type_fn* function, Lengths logical, Lengths physical) {
    return Translator{
        .name = name, .role = Role::reverse, .logical = logical, .physical = physical, .reverse_by_type = function}
        .with(Trait::takes_type);
}

Translator reverse(std::string_view name, npxlate_reverse_by_key_fn* function, Lengths logical, Lengths physical) {
    return Translator{
        .name = name, .role = Role::reverse, .logical = logical, .physical = physical, .reverse_by_key = function}
        .with(Trait::takes_key);
}

std::string_view to_string(Role role) {
    switch (role) {
        case Role::key:
            return "key";
        case Role::result:
            return "result";
        case Role::reverse:
            return "reverse";
    }
    return "";
}

}  // namespace catalogue
