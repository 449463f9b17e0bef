#include <algorithm>
#include <array>

#include "audit/audit.h"

namespace audit {
namespace {

using catalogue::Role;
using catalogue::Translator;

constexpr std::size_t most_bytes = NPXLATE_MAX_LOGICAL_LENGTH;
using Buffer = std::array<std::uint8_t, most_bytes>;

bool same_but_for(ByteSpan a, ByteSpan b, const Bits& ignored) {
    if (a.size() != b.size()) {
        return false;
    }
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (((a[i] ^ b[i]) & ~ignored.bytes[i]) != 0) {
            return false;
        }
    }
    return true;
}

// Whether every byte that differs lies in a value whose bytes stand the other way round.
bool bytes_reversed(ByteSpan programmed, ByteSpan held, const Bits& ignored) {
    constexpr std::array<std::size_t, 6> widths{2, 3, 4, 6, 8, 16};
    if (programmed.size() != held.size()) {
        return false;
    }
    bool any = false;
    for (std::size_t i = 0; i < held.size();) {
        if (((programmed[i] ^ held[i]) & ~ignored.bytes[i]) == 0) {
            ++i;
            continue;
        }
        const auto turned = [&](std::size_t width) {
            if (i + width > held.size()) {
                return false;
            }
            for (std::size_t k = 0; k < width; ++k) {
                if (held[i + k] != programmed[i + width - 1 - k]) {
                    return false;
                }
            }
            return true;
        };
        const auto* const width = std::ranges::find_if(widths, turned);
        if (width == widths.end()) {
            return false;
        }
        i += *width;
        any = true;
    }
    return any;
}

// The logical record that the table reads back, if it can be read back without a fourth argument.
std::size_t read_back(const Translator& result, ByteSpan physical, Buffer& logical) {
    const Translator& reverse = catalogue::of_table(catalogue::tables_of(result).front(), Role::reverse);
    if (reverse.reverse == nullptr || !reverse.in().allows(physical.size())) {
        return 0;
    }
    Buffer in{};
    std::ranges::copy(physical, in.begin());
    if (reverse.reverse(in.data(), static_cast<std::int32_t>(physical.size()), logical.data()) != NPXLATE_OK) {
        return 0;
    }
    return reverse.out().fixed() ? reverse.out().most : physical.size();
}

bool begins_with(ByteSpan record, ByteSpan beginning) {
    constexpr std::size_t least_telling = 4;
    return beginning.size() >= least_telling && beginning.size() <= record.size() &&
           std::ranges::equal(record.first(beginning.size()), beginning);
}

}  // namespace

std::string_view to_string(Explained explained) {
    switch (explained) {
        case Explained::reversed:
            return "bytes reversed";
        case Explained::read_back:
            return "read back and translated again";
        case Explained::logical:
            return "the logical record";
        case Explained::cleared:
            return "all zeros";
        case Explained::no:
            break;
    }
    return "";
}

Explained explanation(const Translator& result, ByteSpan logical, ByteSpan programmed, ByteSpan held,
                      const Bits& ignored) {
    if (std::ranges::all_of(held, [](std::uint8_t byte) { return byte == 0; })) {
        return Explained::cleared;
    }
    Buffer back{};
    const std::size_t size = read_back(result, programmed, back);
    if (begins_with(logical, held) || begins_with(held, logical) || begins_with({back.data(), size}, held)) {
        return Explained::logical;
    }
    if (size >= result.in().least) {
        Buffer again{};
        std::uint32_t length = 0;
        const auto in_length = static_cast<std::int32_t>(std::min(size, result.in().most));
        if (result.forward(back.data(), in_length, again.data(), &length) == NPXLATE_OK && length <= most_physical &&
            same_but_for({again.data(), length}, held, ignored)) {
            return Explained::read_back;
        }
    }
    return bytes_reversed(programmed, held, ignored) ? Explained::reversed : Explained::no;
}

}  // namespace audit
