#include "npxlate/taken.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <string_view>

#include <fmt/core.h>

#include "npxlate/error.h"
#include "npxlate/lookup.h"
#include "npxlate/output.h"

namespace tool {
namespace {

using catalogue::Lengths;
using catalogue::Role;
using catalogue::Translator;

// What a record must hold, by the name of the translator that rejects others.
constexpr std::pair<std::string_view, std::string_view> contents[] = {
    {"xid_type_xlate_result", "a type, L8-11, of 1 to 11, and in type 11 a selector, L60, of 0 to 2"},
    {"ipmc_mofrr_mvpn_key_xlate", "a type, L0-3, of 1 to 5"},
    {"ipmc_mofrr_mvpn_res_xlate", "a type, L0-3, of 1 to 5"},
    {"ipmc_encap_logical_res_xlate", "an entry type of 1 to 5"},
    {"encap_ole_res_xlate", "a type, L0-3, of 1 to 4"},
    {"encap_ole_logical_res_xlate", "a type bit set: P0.7, P0.6, P0.5 or P1.6"},
    {"r_ldi_entry_st_result", "L1.4 or L0.0 clear"},
    {"srv6_sida_res_xlate", "at most 4 segment identifiers, L2, where L0.0 is clear"},
    {"srv6_array_res_xlate", "L0.0 set"},
    {"srv6_info_res_xlate", "L0.0 clear and at most 4 segment identifiers, L2"},
};

// What cannot be read back through the slot where the reverse translator stands, since it is longer.
constexpr std::pair<std::string_view, std::string_view> not_read_back[] = {
    {"sample_nf_info_logical_res_xlate", "results of table 67, which have 32, cannot be read back through its slot"},
    {"generic_xlate_logical_result",
     "results of 64, as those of table 93, cannot be read back through their table's slot"},
};

std::string_view of(const Translator& translator, std::span<const std::pair<std::string_view, std::string_view>> list) {
    const auto found = std::ranges::find(list, translator.name, &std::pair<std::string_view, std::string_view>::first);
    return found == list.end() ? std::string_view{} : found->second;
}

// A form of a logical record that is shorter than the other form.
struct ShortForm {
    std::string_view translator;
    std::size_t bytes;
    bool (*is)(std::uint8_t byte0);
    std::string_view words;
};

constexpr ShortForm short_forms[] = {
    {"velox_esi_info_type_xlate_result", 8, [](std::uint8_t byte0) { return byte0 != 0; }, "if L0 is not 0"},
    {"evpn_mh_peer_type_xlate_result", 4, [](std::uint8_t byte0) { return (byte0 & 1) == 0; }, "if L0.0 is clear"},
};

const ShortForm* short_form_of(const Translator& translator) {
    const auto* const found = std::ranges::find(short_forms, translator.name, &ShortForm::translator);
    return found == std::end(short_forms) ? nullptr : found;
}

// The translator that reads back what this one writes: that of its table or, for those reached by name only, the one
// that follows it in the catalogue. Null if there is none.
const Translator* reverse_of(const Translator& translator) {
    const std::vector<unsigned> tables = catalogue::tables_of(translator);
    if (!tables.empty()) {
        return &catalogue::of_table(tables.front(), Role::reverse);
    }
    const auto all = catalogue::translators();
    const auto next = static_cast<std::size_t>(catalogue::find(translator.name) - all.data()) + 1;
    return next < all.size() && all[next].role == Role::reverse ? &all[next] : nullptr;
}

// The length of a record that was read back, if that is longer than what is read of it; else 0.
std::size_t length_as_read_back(const Translator& translator) {
    if (translator.role != Role::result || !translator.in().fixed()) {
        return 0;
    }
    const Translator* const back = reverse_of(translator);
    // A generic reverse, which takes all lengths, restores no longer record than came.
    const bool longer = back != nullptr && back->in().fixed() && back->out().most > translator.in().most;
    return longer ? back->out().most : 0;
}

std::string lengths_taken(const Translator& translator) {
    std::string others;
    if (const ShortForm* const form = short_form_of(translator)) {
        others += fmt::format("{} {}", form->bytes, form->words);
    }
    if (const std::size_t length = length_as_read_back(translator)) {
        others += fmt::format("{}{}, as read back", others.empty() ? "" : ", or ", length);
    }
    return fmt::format("a {} record of {}{}", translator.role == Role::reverse ? "physical" : "logical",
                       describe(translator.in()), others.empty() ? "" : fmt::format(" (or {})", others));
}

[[noreturn]] void refuse(const Translator& translator, std::size_t length) {
    const std::string_view note = of(translator, not_read_back);
    throw WrongInput{fmt::format("{} takes {}, but {} came{}{}", translator.name, lengths_taken(translator),
                                 describe(length), note.empty() || length < translator.in().most ? "" : "; ",
                                 length < translator.in().most ? "" : note)};
}

}  // namespace

std::string what_is_taken(const Translator& translator) {
    const std::string_view content = of(translator, contents);
    const std::string_view note = of(translator, not_read_back);
    return fmt::format("{}{}{}{}{}", lengths_taken(translator), content.empty() ? "" : " with ", content,
                       note.empty() ? "" : "; ", note);
}

std::vector<Lengths> accepted_lengths(const Translator& translator) {
    std::vector<Lengths> lengths{translator.in()};
    if (const ShortForm* const form = short_form_of(translator)) {
        lengths.emplace_back(form->bytes);
    }
    if (const std::size_t length = length_as_read_back(translator)) {
        lengths.emplace_back(length);
    }
    return lengths;
}

void check_length(const Translator& translator, std::size_t length) {
    if (std::ranges::none_of(accepted_lengths(translator),
                             [length](const Lengths& lengths) { return lengths.allows(length); })) {
        refuse(translator, length);
    }
}

std::size_t parse_length(const Translator& translator, std::string_view text) {
    const auto length = parse_number(text, std::numeric_limits<std::uint32_t>::max());
    if (!length) {
        throw WrongInput{fmt::format("bad --length {}: expected a number of bytes", printable(text))};
    }
    check_length(translator, *length);
    return *length;
}

void check_record(const Translator& translator, Bytes& record) {
    if (translator.in().allows(record.size())) {
        return;
    }
    check_length(translator, record.size());
    if (record.size() < translator.in().least) {
        if (!short_form_of(translator)->is(record.front())) {
            refuse(translator, record.size());
        }
        record.resize(translator.in().least);
    }
}

}  // namespace tool
