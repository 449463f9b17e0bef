#include "names/structure.h"

#include <dwarf.h>
#include <elfutils/libdw.h>
#include <elfutils/libdwelf.h>
#include <elfutils/libdwfl.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <span>
#include <string_view>
#include <system_error>
#include <tuple>

#include <fmt/core.h>

namespace names {
namespace {

unsigned tag_of(Dwarf_Die* die) { return static_cast<unsigned>(dwarf_tag(die)); }

// Damaged debug information can have types that contain themselves.
constexpr unsigned most_depth = 64;

// ---- Attributes

std::optional<Dwarf_Attribute> attribute(Dwarf_Die& die, unsigned name) {
    Dwarf_Attribute result{};
    return dwarf_attr(&die, name, &result) == nullptr ? std::nullopt : std::optional{result};
}

std::optional<std::uint64_t> number(Dwarf_Die& die, unsigned name) {
    std::optional<Dwarf_Attribute> found = attribute(die, name);
    Dwarf_Word value = 0;
    if (!found || dwarf_formudata(&*found, &value) != 0) {
        return std::nullopt;
    }
    return value;
}

// Data of a fixed size has no sign.
std::optional<std::int64_t> signed_number(Dwarf_Die& die, unsigned name) {
    std::optional<Dwarf_Attribute> found = attribute(die, name);
    if (!found) {
        return std::nullopt;
    }
    const unsigned form = dwarf_whatform(&*found);
    Dwarf_Sword value = 0;
    if ((form == DW_FORM_sdata || form == DW_FORM_implicit_const) && dwarf_formsdata(&*found, &value) == 0) {
        return value;
    }
    const std::optional<std::uint64_t> without_sign = number(die, name);
    return without_sign ? std::optional{static_cast<std::int64_t>(*without_sign)} : std::nullopt;
}

bool flag(Dwarf_Die& die, unsigned name) {
    std::optional<Dwarf_Attribute> found = attribute(die, name);
    bool value = false;
    return found && dwarf_formflag(&*found, &value) == 0 && value;
}

std::optional<Dwarf_Die> referred(Dwarf_Die& die, unsigned name) {
    std::optional<Dwarf_Attribute> found = attribute(die, name);
    Dwarf_Die result{};
    if (!found || dwarf_formref_die(&*found, &result) == nullptr) {
        return std::nullopt;
    }
    return result;
}

// Of a definition that stands apart from its declaration, the declaration's name.
std::string name_of(Dwarf_Die& die) {
    Dwarf_Die at = die;
    for (unsigned step = 0; step < most_depth; ++step) {
        std::optional<Dwarf_Attribute> name = attribute(at, DW_AT_name);
        const char* const text = name ? dwarf_formstring(&*name) : nullptr;
        if (text != nullptr) {
            return text;
        }
        const std::optional<Dwarf_Die> declaration = referred(at, DW_AT_specification);
        if (!declaration) {
            break;
        }
        at = *declaration;
    }
    return {};
}

// The file's name without its folder, and the line.
std::string declared_at(Dwarf_Die& die) {
    const std::optional<std::uint64_t> index = number(die, DW_AT_decl_file);
    Dwarf_Die unit{};
    Dwarf_Files* files = nullptr;
    std::size_t count = 0;
    if (!index || dwarf_diecu(&die, &unit, nullptr, nullptr) == nullptr ||
        dwarf_getsrcfiles(&unit, &files, &count) != 0 || *index >= count) {
        return {};
    }
    const char* const file = dwarf_filesrc(files, *index, nullptr, nullptr);
    if (file == nullptr) {
        return {};
    }
    const std::string_view path{file};
    std::string place{path.substr(path.rfind('/') == std::string_view::npos ? 0 : path.rfind('/') + 1)};
    const std::optional<std::uint64_t> line = number(die, DW_AT_decl_line);
    return line ? fmt::format("{}:{}", place, *line) : place;
}

template <typename Action>
void for_each_child(Dwarf_Die& die, Action action) {
    Dwarf_Die child{};
    if (dwarf_child(&die, &child) != 0) {
        return;
    }
    while (true) {
        const void* const before = child.addr;
        action(child);
        if (dwarf_siblingof(&child, &child) != 0) {
            return;
        }
        if (!std::less<>{}(before, static_cast<const void*>(child.addr))) {
            throw Error{"the debug information is damaged: what follows an entry stands before it"};
        }
    }
}

bool is_structure(unsigned tag) {
    return tag == DW_TAG_structure_type || tag == DW_TAG_class_type || tag == DW_TAG_union_type;
}

const char* kind_of(unsigned tag) {
    return tag == DW_TAG_union_type ? "union" : tag == DW_TAG_class_type ? "class" : "struct";
}

// ---- Types

class Types {
public:
    // The definitions of what may only be declared where it is used: by name, the first for each qualified name.
    using Definitions = std::map<std::string, std::map<std::string, Dwarf_Die>>;

    explicit Types(const Definitions& definitions) : definitions_{&definitions} {}

    // The type without its typedefs, const, volatile and so on; nothing for void and for what is damaged.
    std::optional<Dwarf_Die> plain_type(Dwarf_Die& die) const {
        Dwarf_Die at = die;
        for (unsigned step = 0; step < most_depth; ++step) {
            const std::optional<Dwarf_Die> type = referred(at, DW_AT_type);
            if (!type) {
                return std::nullopt;
            }
            at = *type;
            switch (tag_of(&at)) {
                case DW_TAG_typedef:
                case DW_TAG_const_type:
                case DW_TAG_volatile_type:
                case DW_TAG_restrict_type:
                case DW_TAG_atomic_type:
                case DW_TAG_immutable_type:
                case DW_TAG_packed_type:
                case DW_TAG_shared_type:
                case DW_TAG_template_alias:
                    continue;
                default:
                    return defined(at);
            }
        }
        return std::nullopt;
    }

    // In bytes.
    std::optional<std::uint64_t> size_of(Dwarf_Die& type, unsigned depth = 0) const {
        if (depth > most_depth) {
            return std::nullopt;
        }
        if (const auto size = number(type, DW_AT_byte_size)) {
            return size;
        }
        switch (tag_of(&type)) {
            case DW_TAG_pointer_type:
            case DW_TAG_reference_type:
            case DW_TAG_rvalue_reference_type: {
                std::uint8_t address_size = 0;
                if (dwarf_cu_info(type.cu, nullptr, nullptr, nullptr, nullptr, nullptr, &address_size, nullptr) != 0) {
                    return std::nullopt;
                }
                return address_size;
            }
            case DW_TAG_enumeration_type:
            case DW_TAG_subrange_type: {
                std::optional<Dwarf_Die> base = plain_type(type);
                return base ? size_of(*base, depth + 1) : std::nullopt;
            }
            case DW_TAG_array_type: {
                std::optional<Dwarf_Die> element = plain_type(type);
                std::optional<std::uint64_t> size = element ? size_of(*element, depth + 1) : std::nullopt;
                for (const std::uint64_t count : counts_of(type)) {
                    std::uint64_t product = 0;
                    if (!size || __builtin_mul_overflow(*size, count, &product)) {
                        return std::nullopt;
                    }
                    size = product;
                }
                return size;
            }
            default:
                return std::nullopt;
        }
    }

    // The lengths of an array's dimensions; 0 for one that is not said.
    static std::vector<std::uint64_t> counts_of(Dwarf_Die& array) {
        std::vector<std::uint64_t> counts;
        for_each_child(array, [&](Dwarf_Die& dimension) {
            const unsigned tag = tag_of(&dimension);
            if (tag != DW_TAG_subrange_type && tag != DW_TAG_enumeration_type) {
                return;
            }
            if (const auto count = number(dimension, DW_AT_count)) {
                counts.push_back(*count);
                return;
            }
            const std::optional<std::int64_t> upper = signed_number(dimension, DW_AT_upper_bound);
            const std::int64_t lower = signed_number(dimension, DW_AT_lower_bound).value_or(0);
            // An upper bound of all ones is how an array of no elements is said.
            constexpr std::uint64_t no_elements = 0xffffffff;
            const std::uint64_t count = upper && *upper >= lower && static_cast<std::uint64_t>(*upper) != no_elements
                                            ? static_cast<std::uint64_t>(*upper) - static_cast<std::uint64_t>(lower) + 1
                                            : 0;
            counts.push_back(count);
        });
        return counts;
    }

private:
    Dwarf_Die defined(Dwarf_Die type) const {
        if (const std::optional<Dwarf_Die> unit = referred(type, DW_AT_signature)) {
            return *unit;
        }
        if (!flag(type, DW_AT_declaration)) {
            return type;
        }
        const auto found = definitions_->find(name_of(type));
        return found == definitions_->end() || found->second.size() != 1 ? type : found->second.begin()->second;
    }

    const Definitions* definitions_;
};

// ---- Members

bool has_big_endian_type(const Types& types, Dwarf_Die& member) {
    std::optional<Dwarf_Die> type = types.plain_type(member);
    for (unsigned step = 0; type && tag_of(&*type) == DW_TAG_array_type && step < most_depth; ++step) {
        type = types.plain_type(*type);
    }
    return type && number(*type, DW_AT_endianity) == DW_END_big;
}

class MemberReader {
public:
    MemberReader(const Types& types, Structure& structure, std::size_t bytes)
        : types_{&types}, structure_{&structure}, limit_{8 * std::uint64_t{bytes}} {}

    void read(Dwarf_Die& type) {
        const bool is_union = tag_of(&type) == DW_TAG_union_type;
        members_of(type, {.bit = 0, .path = "", .in_union = is_union ? structure_->name : "", .depth = 0});
    }

private:
    // Where a structure, or an array's element, lies.
    struct Place {
        std::uint64_t bit = 0;
        std::string path;
        std::string in_union;
        unsigned depth = 0;
        bool big_endian = false;  // the scalars of this structure are stored highest byte first
    };

    void visit(const Place& place) {
        if (place.depth > most_depth) {
            throw Error{"the debug information is damaged: a type contains itself"};
        }
        if (++visited_ > most_visits) {
            throw Error{fmt::format("the debug information is damaged, or {} has too many members", structure_->name)};
        }
    }

    void leave_out(const std::string& path, std::string_view reason) {
        structure_->left_out.push_back(fmt::format("{}: {}", path.empty() ? "a member without a name" : path, reason));
    }

    static std::string path_in(const std::string& path, const std::string& name) {
        return path.empty() ? name : path + "." + name;
    }

    void members_of(Dwarf_Die& type, Place place) {
        visit(place);
        place.big_endian = false;
        for_each_child(type, [&](Dwarf_Die& child) {
            place.big_endian =
                place.big_endian || (tag_of(&child) == DW_TAG_member && has_big_endian_type(*types_, child));
        });
        const bool is_union = tag_of(&type) == DW_TAG_union_type;
        if (is_union && place.in_union.empty()) {
            // One without a name is known by its place.
            place.in_union = place.path.empty() ? fmt::format("at L{}", place.bit / 8) : place.path;
        }
        for_each_child(type, [&](Dwarf_Die& child) {
            const unsigned tag = tag_of(&child);
            if (tag == DW_TAG_inheritance) {
                base(child, place);
            } else if (tag == DW_TAG_member) {
                member(child, place);
            } else if (tag == DW_TAG_variant_part) {
                leave_out(place.path, "variants that are chosen at run time have no names here");
            }
        });
    }

    // The offset in bytes; nothing if it is only known at run time.
    static std::optional<std::uint64_t> location(Dwarf_Die& die) {
        std::optional<Dwarf_Attribute> found = attribute(die, DW_AT_data_member_location);
        if (!found) {
            return 0;  // of a union
        }
        Dwarf_Word offset = 0;
        if (dwarf_formudata(&*found, &offset) == 0) {
            return offset;
        }
        Dwarf_Op* operations = nullptr;
        std::size_t count = 0;
        if (dwarf_getlocation(&*found, &operations, &count) != 0) {
            return std::nullopt;
        }
        if (count == 1 && operations[0].atom == DW_OP_plus_uconst) {
            return operations[0].number;
        }
        return std::nullopt;
    }

    void base(Dwarf_Die& die, Place place) {
        std::optional<Dwarf_Die> type = types_->plain_type(die);
        const std::optional<std::uint64_t> offset = location(die);
        const std::string name = type ? name_of(*type) : "";
        if (!type || !is_structure(tag_of(&*type))) {
            leave_out(path_in(place.path, name), "the base is not described");
            return;
        }
        if (!offset || number(die, DW_AT_virtuality).value_or(DW_VIRTUALITY_none) != DW_VIRTUALITY_none) {
            leave_out(path_in(place.path, name), "where a virtual base lies is only known at run time");
            return;
        }
        place.bit += 8 * (*offset & max_offset);
        ++place.depth;
        members_of(*type, place);
    }

    void member(Dwarf_Die& die, const Place& place) {
        // Static members lie elsewhere; what the compiler adds (the pointer to virtual functions) has no value to show.
        if (flag(die, DW_AT_external) || flag(die, DW_AT_declaration) || flag(die, DW_AT_artificial)) {
            return;
        }
        const std::string name = name_of(die);
        std::optional<Dwarf_Die> type = types_->plain_type(die);
        if (!type) {
            leave_out(path_in(place.path, name), "its type is not described");
            return;
        }
        if (name.empty() && !is_structure(tag_of(&*type))) {
            return;  // padding
        }
        Place at = place;
        ++at.depth;
        at.path = name.empty() ? place.path : path_in(place.path, name);
        if (const std::optional<std::uint64_t> width = number(die, DW_AT_bit_size)) {
            bit_field(die, *type, at, *width);
            return;
        }
        std::optional<std::uint64_t> offset = location(die);
        if (const auto bit_offset = number(die, DW_AT_data_bit_offset)) {
            at.bit += *bit_offset & max_offset;
        } else if (offset) {
            at.bit += 8 * (*offset & max_offset);
        } else {
            leave_out(at.path, "where it lies is only known at run time");
            return;
        }
        value(*type, at);
    }

    void bit_field(Dwarf_Die& die, Dwarf_Die& type, const Place& at, std::uint64_t width) {
        // From the start of the structure: to the lowest bit, or, of a big-endian one, to the highest.
        std::optional<std::int64_t> offset;
        if (const auto data_bit_offset = number(die, DW_AT_data_bit_offset)) {
            offset = static_cast<std::int64_t>(*data_bit_offset & max_offset);
        } else if (const auto from_the_top = signed_number(die, DW_AT_bit_offset)) {
            // The old way: how many bits of the storage unit stand above the field.
            std::optional<std::uint64_t> unit = number(die, DW_AT_byte_size);
            if (!unit) {
                unit = types_->size_of(type);
            }
            const std::optional<std::uint64_t> start = location(die);
            if (unit && start && *unit <= max_unit && *from_the_top <= static_cast<std::int64_t>(max_offset) &&
                *from_the_top >= -static_cast<std::int64_t>(max_offset)) {
                // Compilers for little-endian machines count so for a big-endian structure, too.
                offset = static_cast<std::int64_t>(8 * (*start & max_offset)) + static_cast<std::int64_t>(8 * *unit) -
                         *from_the_top - static_cast<std::int64_t>(width & max_offset);
            }
        } else if (const auto start = location(die)) {
            offset = static_cast<std::int64_t>(8 * (*start & max_offset));
        }
        if (width == 0 || width > max_unit * 8 || !offset || *offset < 0) {
            leave_out(at.path, "where its bits lie is not said");
            return;
        }
        const std::uint64_t first = at.bit + static_cast<std::uint64_t>(*offset);
        std::vector<Span> bits;
        if (first + width > limit_) {
            beyond(at.path);
            return;
        }
        if (at.big_endian) {
            for (std::uint64_t k = width; k-- > 0;) {
                const std::uint64_t from_the_top = first + k;
                bits.push_back({static_cast<std::uint16_t>(from_the_top / 8 * 8 + 7 - from_the_top % 8), 1});
            }
        } else {
            bits.push_back({static_cast<std::uint16_t>(first), static_cast<std::uint16_t>(width)});
        }
        add(type, at, joined(bits));
    }

    // Whatever type a member or an element has.
    void value(Dwarf_Die& type, const Place& place) {
        visit(place);
        if (place.bit >= limit_) {
            beyond(place.path);
            return;
        }
        if (flag(type, DW_AT_declaration)) {
            leave_out(place.path,
                      fmt::format("its type, {}, is declared, but not defined (or several times)", name_of(type)));
            return;
        }
        const unsigned tag = tag_of(&type);
        if (is_structure(tag)) {
            structure(type, place);
        } else if (tag == DW_TAG_array_type) {
            array(type, place);
        } else if (tag == DW_TAG_subroutine_type || tag == DW_TAG_unspecified_type) {
            leave_out(place.path, "such a type has no value");
        } else {
            const std::optional<std::uint64_t> size = types_->size_of(type);
            if (!size || *size == 0) {
                leave_out(place.path, "the size of its type is not said");
                return;
            }
            whole(type, place, *size, place.big_endian && has_order(tag));
        }
    }

    // A value of whole bytes.
    void whole(Dwarf_Die& type, const Place& place, std::uint64_t size, bool highest_first) {
        if (size > limit_ / 8 || place.bit + 8 * size > limit_) {
            beyond(place.path);
            return;
        }
        std::vector<Span> bits;
        if (highest_first) {
            for (std::uint64_t byte = size; byte-- > 0;) {
                bits.push_back({static_cast<std::uint16_t>(place.bit + 8 * byte), 8});
            }
        } else {
            bits.push_back({static_cast<std::uint16_t>(place.bit), static_cast<std::uint16_t>(8 * size)});
        }
        add(type, place, bits);
    }

    // Pointers and vectors are the host's in any structure.
    static bool has_order(unsigned tag) { return tag == DW_TAG_base_type || tag == DW_TAG_enumeration_type; }

    // Structures of the C library that are addresses, as they go over the wire.
    void structure(Dwarf_Die& type, const Place& place) {
        struct Address {
            std::string_view name;
            std::uint64_t size;
            Style style;
        };
        constexpr Address addresses[] = {
            {"in_addr", 4, Style::ipv4}, {"in6_addr", 16, Style::ipv6}, {"ether_addr", 6, Style::mac}};
        const std::string name = name_of(type);
        for (const Address& address : addresses) {
            if (name == address.name && number(type, DW_AT_byte_size) == address.size) {
                Member* const added = whole_member(place, address.size);
                if (added != nullptr) {
                    added->style = address.style;
                }
                return;
            }
        }
        Place inner = place;
        ++inner.depth;
        members_of(type, inner);
    }

    Member* whole_member(const Place& place, std::uint64_t size) {
        if (place.bit + 8 * size > limit_) {
            beyond(place.path);
            return nullptr;
        }
        std::vector<Span> bits;
        for (std::uint64_t byte = size; byte-- > 0;) {
            bits.push_back({static_cast<std::uint16_t>(place.bit + 8 * byte), 8});
        }
        structure_->members.push_back({unique(place.path), bits, Style::bytes, {}, place.in_union});
        return &structure_->members.back();
    }

    void array(Dwarf_Die& type, const Place& place) {
        std::optional<Dwarf_Die> element = types_->plain_type(type);
        const std::vector<std::uint64_t> counts = Types::counts_of(type);
        if (!element || counts.empty()) {
            leave_out(place.path, "its elements are not described");
            return;
        }
        if (std::ranges::count(counts, 0U) > 0) {
            return;  // no elements, or as many as memory was allocated for, behind the structure
        }
        const std::uint64_t stride = number(type, DW_AT_byte_stride).value_or(types_->size_of(*element).value_or(0));
        if (stride == 0) {
            leave_out(place.path, "the size of its elements is not said");
            return;
        }
        elements(*element, place, counts, stride);
    }

    // The elements along the first of these dimensions.
    void elements(Dwarf_Die& element, const Place& place, std::span<const std::uint64_t> counts, std::uint64_t stride) {
        if (counts.empty()) {
            value(element, place);
            return;
        }
        if (counts.size() == 1 && stride == 1 && is_byte(element) && place.bit < limit_) {
            const std::uint64_t inside = std::min(counts[0], (limit_ - place.bit) / 8);
            if (inside < counts[0]) {
                leave_out(fmt::format("{}[{}] to [{}]", place.path, inside, counts[0] - 1), "lie beyond the record");
            }
            if (inside > 0) {
                whole_member(place, inside);
            }
            return;
        }
        std::uint64_t step = stride;
        for (const std::uint64_t count : counts.subspan(1)) {
            if (__builtin_mul_overflow(step, count, &step)) {
                step = max_offset;
            }
        }
        for (std::uint64_t i = 0; i < counts[0]; ++i) {
            Place at = place;
            ++at.depth;
            at.path += fmt::format("[{}]", i);
            at.bit += 8 * i * std::min(step, max_offset);
            if (at.bit >= limit_) {
                leave_out(fmt::format("{} to [{}]", at.path, counts[0] - 1), "lie beyond the record");
                return;
            }
            elements(element, at, counts.subspan(1), stride);
        }
    }

    // An element of a string of bytes.
    static bool is_byte(Dwarf_Die& type) {
        const unsigned tag = tag_of(&type);
        if (number(type, DW_AT_byte_size) != 1) {
            return false;
        }
        if (tag == DW_TAG_enumeration_type) {
            return dwarf_haschildren(&type) == 0;  // std::byte
        }
        return tag == DW_TAG_base_type && number(type, DW_AT_encoding) != DW_ATE_boolean;
    }

    void beyond(const std::string& path) { leave_out(path, "lies beyond the record"); }

    static std::vector<Span> joined(const std::vector<Span>& bits) {
        std::vector<Span> result;
        for (const Span span : bits) {
            if (!result.empty() && result.back().first_bit + result.back().width == span.first_bit) {
                result.back().width = static_cast<std::uint16_t>(result.back().width + span.width);
            } else {
                result.push_back(span);
            }
        }
        return result;
    }

    // Bases can have members of the same name.
    std::string unique(const std::string& path) const {
        const auto taken = [&](const std::string& name) {
            return std::ranges::find(structure_->members, name, &Member::path) != structure_->members.end();
        };
        std::string name = is_position(path) ? structure_->name + "." + path : path;
        for (unsigned n = 2; taken(name); ++n) {
            name = fmt::format("{}#{}", path, n);
        }
        return name;
    }

    void add(Dwarf_Die& type, const Place& place, const std::vector<Span>& bits) {
        Member member{unique(place.path), bits, Style::number, {}, place.in_union};
        std::uint64_t width = 0;
        for (const Span span : bits) {
            width += span.width;
        }
        member.style = style_for(type, width);
        if (tag_of(&type) == DW_TAG_enumeration_type) {
            member.words = words_of(type, width);
            member.style = member.words.empty() ? member.style : Style::words;
        }
        structure_->members.push_back(std::move(member));
    }

    static Style style_for(Dwarf_Die& type, std::uint64_t width) {
        constexpr std::uint64_t widest_number = 64;
        if (width > widest_number) {
            return Style::hex;
        }
        if (tag_of(&type) == DW_TAG_enumeration_type) {
            return Style::number;
        }
        if (tag_of(&type) != DW_TAG_base_type) {
            return Style::hex;
        }
        switch (number(type, DW_AT_encoding).value_or(0)) {
            case DW_ATE_boolean:
                return Style::flag;
            case DW_ATE_unsigned:
            case DW_ATE_unsigned_char:
            case DW_ATE_UTF:
                return width == 1 ? Style::flag : Style::number;
            case DW_ATE_signed:
            case DW_ATE_signed_char:
                return Style::signed_number;
            default:
                return Style::hex;
        }
    }

    static std::vector<Word> words_of(Dwarf_Die& type, std::uint64_t width) {
        const std::uint64_t mask = width >= 64 ? ~std::uint64_t{0} : (std::uint64_t{1} << width) - 1;
        std::vector<Word> words;
        for_each_child(type, [&](Dwarf_Die& child) {
            const std::optional<std::int64_t> value = signed_number(child, DW_AT_const_value);
            const std::string name = name_of(child);
            if (tag_of(&child) != DW_TAG_enumerator || !value || name.empty()) {
                return;
            }
            const auto bits = static_cast<std::uint64_t>(*value);
            const bool fits = *value < 0 ? (bits | mask >> 1U) == ~std::uint64_t{0} : (bits & ~mask) == 0;
            if (fits) {
                words.push_back({name, bits & mask});
            }
        });
        return words;
    }

    // No structure is so large, and no sum of such numbers overflows.
    static constexpr std::uint64_t max_offset = (std::uint64_t{1} << 40U) - 1;
    static constexpr std::uint64_t max_unit = 64;  // bytes
    static constexpr unsigned most_visits = 20000;

    const Types* types_;
    Structure* structure_;
    std::uint64_t limit_;
    unsigned visited_ = 0;
};

// ---- Files

class File {
public:
    explicit File(const names::ElfFile& elf) : debug_path_{":.debug:" + elf.debug_folder + ":/usr/lib/debug"} {
        const std::string& path = elf.path;
        const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
        if (descriptor < 0) {
            throw Error{fmt::format("cannot read {}: {}", path, std::generic_category().message(errno))};
        }
        session_.reset(dwfl_begin(&callbacks_));
        // The session closes the file, if it takes it.
        if (!session_ || dwfl_report_offline(session_.get(), path.c_str(), path.c_str(), descriptor) == nullptr) {
            const std::string reason = dwfl_errmsg(-1);
            ::close(descriptor);
            throw Error{fmt::format("{} is no ELF file that can be read: {}", path, reason)};
        }
        if (dwfl_report_end(session_.get(), nullptr, nullptr) != 0) {
            throw Error{fmt::format("cannot read {}: {}", path, dwfl_errmsg(-1))};
        }
        dwfl_getmodules(session_.get(), &File::add_module, this, 0);
        if (!problem_.empty()) {
            throw Error{problem_};
        }
    }

    File(const File&) = delete;
    File& operator=(const File&) = delete;

    const std::vector<Dwarf*>& parts() const { return parts_; }

private:
    struct Close {
        void operator()(Dwfl* session) const { dwfl_end(session); }
    };

    static int add_module(Dwfl_Module* module, void** /*data*/, const char* name, Dwarf_Addr /*start*/, void* self) {
        static_cast<File*>(self)->add(module, name);
        return static_cast<File*>(self)->problem_.empty() ? DWARF_CB_OK : DWARF_CB_ABORT;
    }

    void add(Dwfl_Module* module, const char* name) {
        GElf_Addr bias = 0;
        Elf* const elf = dwfl_module_getelf(module, &bias);
        GElf_Ehdr header{};
        if (elf == nullptr || gelf_getehdr(elf, &header) == nullptr) {
            problem_ = fmt::format("cannot read {}: {}", name, dwfl_errmsg(-1));
            return;
        }
        if (header.e_ident[EI_DATA] != ELFDATA2LSB) {
            problem_ = fmt::format(
                "{} is for a big-endian machine: its structures are laid out otherwise than logical "
                "records, which are little-endian",
                name);
            return;
        }
        Dwarf* const debug = dwfl_module_getdwarf(module, &bias);
        if (debug == nullptr) {
            problem_ =
                fmt::format("{} has no debug information{}: compile with -g, or name its separate debug file ({})",
                            name, linked_file(elf), dwfl_errmsg(-1));
            return;
        }
        parts_.push_back(debug);
    }

    static std::string linked_file(Elf* elf) {
        GElf_Word checksum = 0;
        const char* const file = dwelf_elf_gnu_debuglink(elf, &checksum);
        return file == nullptr ? "" : fmt::format(", and {}, where it has it, was not found", file);
    }

    std::string debug_path_;
    char* debug_path_text_ = debug_path_.data();
    const Dwfl_Callbacks callbacks_{.find_elf = nullptr,
                                    .find_debuginfo = dwfl_standard_find_debuginfo,
                                    .section_address = dwfl_offline_section_address,
                                    .debuginfo_path = &debug_path_text_};
    std::unique_ptr<Dwfl, Close> session_;
    std::vector<Dwarf*> parts_;
    std::string problem_;
};

// Calls the action with every type definition or typedef that has a name, its qualified name and its unit's name.
class Walk {
public:
    template <typename Action>
    static void types(const File& file, Action action) {
        for (Dwarf* const part : file.parts()) {
            Dwarf_CU* unit = nullptr;
            Dwarf_Die unit_die{};
            Dwarf_Die sub_die{};
            std::uint8_t unit_type = 0;
            while (dwarf_get_units(part, unit, &unit, nullptr, &unit_type, &unit_die, &sub_die) == 0) {
                const std::string unit_name = name_of(unit_die);
                if (unit_type == DW_UT_skeleton) {
                    // The types are in a file of their own, which has been found if the sub-DIE is there.
                    if (sub_die.addr != nullptr) {
                        children(sub_die, "", unit_name, 0, action);
                    }
                } else if (unit_die.addr != nullptr) {
                    children(unit_die, "", unit_name, 0, action);
                }
            }
        }
    }

private:
    template <typename Action>
    static void children(Dwarf_Die& scope, const std::string& prefix, const std::string& unit, unsigned depth,
                         Action& action) {
        if (depth > most_depth) {
            return;
        }
        for_each_child(scope, [&](Dwarf_Die& die) {
            const unsigned tag = tag_of(&die);
            const bool is_scope = is_structure(tag) || tag == DW_TAG_namespace || tag == DW_TAG_subprogram ||
                                  tag == DW_TAG_lexical_block || tag == DW_TAG_module;
            const bool is_type = is_structure(tag) || tag == DW_TAG_typedef || tag == DW_TAG_enumeration_type;
            if (!is_scope && !is_type) {
                return;
            }
            const std::string name = name_of(die);
            const std::string qualified = name.empty() ? prefix : prefix.empty() ? name : prefix + "::" + name;
            if (is_type && !name.empty() && !flag(die, DW_AT_declaration)) {
                action(die, qualified, unit);
            }
            if (is_scope) {
                children(die, qualified, unit, depth + 1, action);
            }
        });
    }
};

Types::Definitions definitions_in(const File& file) {
    Types::Definitions definitions;
    Walk::types(file, [&](Dwarf_Die& die, const std::string& qualified, const std::string&) {
        if (tag_of(&die) != DW_TAG_typedef) {
            definitions[name_of(die)].try_emplace(qualified, die);
        }
    });
    return definitions;
}

// The structure that the type is, or that the typedef stands for.
std::optional<Dwarf_Die> structure_of(const Types& types, Dwarf_Die& die) {
    if (is_structure(tag_of(&die))) {
        return die;
    }
    std::optional<Dwarf_Die> type = types.plain_type(die);
    return type && is_structure(tag_of(&*type)) && !flag(*type, DW_AT_declaration) ? type : std::nullopt;
}

Structure head_of(const Types& types, Dwarf_Die& die, const std::string& name, const std::string& unit) {
    Structure structure;
    structure.name = name;
    structure.kind = kind_of(tag_of(&die));
    structure.declared_at = declared_at(die);
    structure.unit = unit;
    structure.size = types.size_of(die).value_or(0);
    return structure;
}

bool same_layout(const Structure& a, const Structure& b) {
    return a.size == b.size && std::ranges::equal(a.members, b.members, [](const Member& one, const Member& other) {
               return one.path == other.path && one.style == other.style &&
                      std::ranges::equal(one.bits, other.bits, [](Span left, Span right) {
                          return left.first_bit == right.first_bit && left.width == right.width;
                      });
           });
}

std::string_view without_kind(std::string_view name) {
    for (const std::string_view kind : {"struct ", "class ", "union ", "::"}) {
        if (name.starts_with(kind)) {
            name.remove_prefix(kind.size());
        }
    }
    return name;
}

}  // namespace

std::vector<Structure> list_structures(const ElfFile& elf) {
    const File file{elf};
    const Types::Definitions none;
    const Types types{none};
    std::vector<Structure> structures;
    std::set<std::tuple<std::string, std::size_t, std::string>> seen;
    Walk::types(file, [&](Dwarf_Die& die, const std::string& qualified, const std::string& unit) {
        std::optional<Dwarf_Die> type = structure_of(types, die);
        // A typedef is how a structure without a name of its own is known.
        if (!type || (tag_of(&die) == DW_TAG_typedef && !name_of(*type).empty())) {
            return;
        }
        Structure structure = head_of(types, *type, qualified, unit);
        if (seen.emplace(structure.name, structure.size, structure.declared_at).second) {
            structures.push_back(std::move(structure));
        }
    });
    return structures;
}

std::vector<Structure> read_structures(const ElfFile& elf, const std::string& name, std::size_t bytes) {
    const File file{elf};
    const Types::Definitions definitions = definitions_in(file);
    const Types types{definitions};
    const std::string_view wanted = without_kind(name);
    std::vector<Structure> exact;
    std::vector<Structure> by_last_name;
    Walk::types(file, [&](Dwarf_Die& die, const std::string& qualified, const std::string& unit) {
        const bool is_exact = qualified == wanted;
        if (!is_exact && name_of(die) != wanted) {
            return;
        }
        std::optional<Dwarf_Die> type = structure_of(types, die);
        if (!type) {
            return;
        }
        Structure structure = head_of(types, *type, qualified, unit);
        MemberReader{types, structure, bytes}.read(*type);
        std::vector<Structure>& found = is_exact ? exact : by_last_name;
        if (std::ranges::none_of(found, [&](const Structure& other) { return same_layout(structure, other); })) {
            found.push_back(std::move(structure));
        }
    });
    return exact.empty() ? by_last_name : exact;
}

}  // namespace names
