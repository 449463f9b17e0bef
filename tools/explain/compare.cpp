#include <algorithm>
#include <stdexcept>

#include "explain/comparison.h"
#include "explain/positions.h"

namespace explain {
namespace {

std::set<std::uint16_t> differing_bits(const Bytes& a, const Bytes& b) {
    std::set<std::uint16_t> bits;
    for (std::size_t bit = 0; bit < 8 * std::max(a.size(), b.size()); ++bit) {
        const bool in_a = bit < 8 * a.size() && bit_of(a, bit);
        const bool in_b = bit < 8 * b.size() && bit_of(b, bit);
        if (in_a != in_b) {
            bits.insert(static_cast<std::uint16_t>(bit));
        }
    }
    return bits;
}

bool touches(const std::vector<Span>& spans, const std::set<std::uint16_t>& bits) {
    return std::ranges::any_of(bits_of(spans), [&](std::uint16_t bit) { return bits.contains(bit); });
}

void erase(std::set<std::uint16_t>& bits, const std::vector<Span>& spans) {
    for (const std::uint16_t bit : bits_of(spans)) {
        bits.erase(bit);
    }
}

// Whether the field moves bits: then it is worth naming as a whole, as a value that differs.
bool is_value(const Field& field) { return !field.links.empty(); }

}  // namespace

Comparison compare(const Translator& translator, std::span<const std::uint8_t> first,
                   std::span<const std::uint8_t> second, std::uint32_t argument) {
    if (first.size() != second.size()) {
        throw std::invalid_argument{"the records differ in length"};
    }
    Comparison result{.first = account(translator, first, argument),
                      .second = account(translator, second, argument),
                      .same_way = true,
                      .in = {},
                      .out = {}};
    const Account& a = result.first;
    const Account& b = result.second;
    result.same_way = a.form == b.form;
    const std::set<std::uint16_t> in = differing_bits(a.in, b.in);
    const std::set<std::uint16_t> out = differing_bits(a.out, b.out);

    // Values that go from one place to another, then what is left, in runs.
    std::set<std::uint16_t> in_left = in;
    const auto add_in = [&](const std::vector<Span>& at) {
        Difference difference{.at = at, .fate = Fate::dropped};
        std::set<std::uint16_t> shows;
        for (const std::uint16_t bit : bits_of(at)) {
            if (!in.contains(bit)) {
                continue;
            }
            for (const InBit* in_bit : {&a.in_bits[bit], &b.in_bits[bit]}) {
                difference.decides = difference.decides || in_bit->decides;
                difference.fate = std::min(difference.fate, in_bit->fate);
                std::ranges::copy_if(in_bit->to, std::inserter(shows, shows.end()),
                                     [&](std::uint16_t to) { return out.contains(to); });
            }
        }
        // Values that differ on the other side are named as a whole there, too.
        for (const Account* account : {&a, &b}) {
            for (const Field& field : account->fields) {
                if (is_value(field) && touches(field.to, shows)) {
                    shows.merge(bits_of(field.to));
                }
            }
        }
        difference.other_side = spans_of(shows);
        result.in.push_back(std::move(difference));
    };
    for (const Account* account : {&a, &b}) {
        for (const Field& field : account->fields) {
            if (is_value(field) && field.from.size() == 1 && touches(field.from, in_left)) {
                add_in(field.from);
                erase(in_left, field.from);
            }
        }
    }
    for (const Span run : spans_of(in_left)) {
        add_in({run});
    }

    std::set<std::uint16_t> out_left = out;
    const auto add_out = [&](const std::vector<Span>& at) {
        Difference difference{.at = at};
        std::set<std::uint16_t> from;
        for (const std::uint16_t bit : bits_of(at)) {
            for (const Account* account : {&a, &b}) {
                if (bit >= account->out_bits.size()) {
                    continue;
                }
                const OutBit& out_bit = account->out_bits[bit];
                for (const Link& link : out_bit.links) {
                    from.insert(link.from);
                }
                from.insert(out_bit.from.begin(), out_bit.from.end());
            }
        }
        difference.other_side = spans_of(from);
        result.out.push_back(std::move(difference));
    };
    std::set<std::uint16_t> named;
    for (const Account* account : {&a, &b}) {
        for (const Field& field : account->fields) {
            if (is_value(field) && touches(field.to, out_left)) {
                std::set<std::uint16_t> at = bits_of(field.to);
                erase(at, spans_of(named));
                add_out(spans_of(at));
                named.merge(at);
                erase(out_left, field.to);
            }
        }
    }
    for (const Span run : spans_of(out_left)) {
        add_out({run});
    }
    for (std::vector<Difference>* side : {&result.in, &result.out}) {
        std::ranges::stable_sort(*side, {}, [](const Difference& one) { return one.at.front().first_bit; });
    }
    return result;
}

}  // namespace explain
