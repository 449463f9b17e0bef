#include "audit/attribute.h"

#include <algorithm>

#include <fmt/core.h>

#include "explain/explain.h"

namespace audit {

bool Origin::operator==(const Origin& other) const {
    const auto equal = [](npxlate::Span a, npxlate::Span b) {
        return a.first_bit == b.first_bit && a.width == b.width;
    };
    return text == other.text && name == other.name && std::ranges::equal(to, other.to, equal) &&
           std::ranges::equal(from, other.from, equal);
}

std::vector<Origin> origins(const catalogue::Translator& result, ByteSpan logical) {
    const explain::Account account =
        explain::account(result, logical.first(std::min(logical.size(), result.in().most)));
    std::vector<Origin> all;
    for (const explain::Field& field : account.fields) {
        const bool constant = field.kind == explain::Kind::constant;
        Origin origin{
            .to = field.to, .from = field.from, .text = (constant ? "constant " : "") + field.text, .name = field.name};
        origin.value = field.kind != explain::Kind::constant && field.kind != explain::Kind::cleared &&
                       field.kind != explain::Kind::left_alone;
        for (const explain::Link& link : field.links) {
            origin.links.push_back({link.to, link.from, link.inverted});
        }
        all.push_back(std::move(origin));
    }
    return all;
}

std::vector<Origin> origins_of(const std::vector<Origin>& all, const Bits& bits) {
    std::vector<Origin> some;
    std::ranges::copy_if(all, std::back_inserter(some), [&](const Origin& origin) {
        return std::ranges::any_of(origin.to, [&](npxlate::Span span) { return bits.touches(span); });
    });
    return some;
}

std::string logical_value(const Origin& origin, ByteSpan physical) {
    constexpr std::size_t most_bits = 64;
    constexpr std::uint64_t least_in_hex = 10;
    if (origin.links.empty() || origin.from.size() != 1 || origin.from.front().width > most_bits) {
        return "";
    }
    std::uint64_t number = 0;
    for (const Origin::Link& link : origin.links) {
        const bool inside = link.to / 8U < physical.size();
        const bool set = inside && (physical[link.to / 8U] >> link.to % 8U & 1U) != 0;
        number |= std::uint64_t{set != link.inverted} << (link.from - origin.from.front().first_bit);
    }
    return number < least_in_hex ? fmt::format("{}", number) : fmt::format("{} (0x{:x})", number, number);
}

}  // namespace audit
