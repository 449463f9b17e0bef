#include <algorithm>

#include "explain/comparison.h"
#include "explain/positions.h"

namespace explain {
namespace {

// Where a bit that came back stood in the record that went in.
struct Origin {
    enum Kind { nowhere, constant, moved, inverted, computed };
    Kind kind = nowhere;
    std::set<std::uint16_t> from{};
    std::string text{};

    bool is_from(std::size_t bit) const { return kind == moved && *from.begin() == bit; }
};

std::string text_at(const Account& account, std::uint16_t bit) {
    for (const Field& field : account.fields) {
        if (bits_of(field.to).contains(bit)) {
            return field.text;
        }
    }
    return "";
}

Origin origin(const Account& account, std::uint16_t bit) {
    const OutBit& out = account.out_bits.at(bit);
    switch (out.kind) {
        case Kind::cleared:
        case Kind::left_alone:
            return {};
        case Kind::constant:
            return {.kind = out.value ? Origin::constant : Origin::nowhere};
        case Kind::computed:
            return {
                .kind = Origin::computed, .from = {out.from.begin(), out.from.end()}, .text = text_at(account, bit)};
        default:
            break;
    }
    if (out.links.size() == 1) {
        return {.kind = out.links.front().inverted ? Origin::inverted : Origin::moved,
                .from = {out.links.front().from}};
    }
    Origin result{.kind = Origin::computed, .text = text_at(account, bit)};
    for (const Link& link : out.links) {
        result.from.insert(link.from);
    }
    return result;
}

// Through both translators.
Origin origin(const Account& forward, const Account& reverse, std::uint16_t bit) {
    Origin back = origin(reverse, bit);
    if (back.kind == Origin::nowhere || back.kind == Origin::constant) {
        return back;
    }
    if (back.kind != Origin::computed) {
        Origin out = origin(forward, *back.from.begin());
        if (back.kind == Origin::inverted && out.kind != Origin::computed) {
            out.kind = out.kind == Origin::moved      ? Origin::inverted
                       : out.kind == Origin::inverted ? Origin::moved
                       : out.kind == Origin::constant ? Origin::nowhere
                                                      : Origin::constant;
        }
        return out;
    }
    Origin result{.kind = Origin::computed, .text = back.text};
    for (const std::uint16_t physical : back.from) {
        result.from.merge(origin(forward, physical).from);
    }
    return result;
}

class Returning {
public:
    explicit Returning(const RoundTrip& trip) : in_{trip.forward.in}, out_{trip.reverse->out} {
        for (std::size_t bit = 0; bit < 8 * out_.size(); ++bit) {
            origins_.push_back(origin(trip.forward, *trip.reverse, static_cast<std::uint16_t>(bit)));
        }
    }

    std::vector<Returned> all() {
        for (std::size_t bit = 0; bit < origins_.size();) {
            bit += bit % 8 == 0 && take_reversed(bit / 8) ? 8 * reversed_bytes(bit / 8) : take_run(bit);
        }
        take_lost();
        std::ranges::stable_sort(result_, {}, [](const Returned& one) { return one.at.front().first_bit; });
        take_zero();
        return std::move(result_);
    }

private:
    bool was(std::size_t bit) const { return bit < 8 * in_.size() && bit_of(in_, bit); }

    // The byte that came back as this one, as it was; -1 if there is none.
    int source_byte(std::size_t byte) const {
        if (8 * byte >= origins_.size() || origins_[8 * byte].kind != Origin::moved ||
            *origins_[8 * byte].from.begin() % 8 != 0) {
            return -1;
        }
        const unsigned from = *origins_[8 * byte].from.begin();
        for (unsigned k = 1; k < 8; ++k) {
            if (!origins_[8 * byte + k].is_from(from + k)) {
                return -1;
            }
        }
        return static_cast<int>(from / 8);
    }

    // How many bytes from this one on come from bytes in reverse order.
    std::size_t reversed_bytes(std::size_t byte) const {
        std::size_t count = 1;
        const int from = source_byte(byte);
        while (from >= 0 && source_byte(byte + count) == from - static_cast<int>(count) &&
               from >= static_cast<int>(count)) {
            ++count;
        }
        return count;
    }

    bool take_reversed(std::size_t byte) {
        const std::size_t count = reversed_bytes(byte);
        if (count < 2) {
            return false;
        }
        const auto span = [count](std::size_t first) {
            return Span{static_cast<std::uint16_t>(8 * first), static_cast<std::uint16_t>(8 * count)};
        };
        const std::size_t first_from = static_cast<std::size_t>(source_byte(byte)) + 1 - count;
        const bool in_place = first_from == byte;
        result_.push_back({.kind = in_place ? Returned::byte_reversed : Returned::moved,
                           .at = {span(byte)},
                           .from = {span(first_from)},
                           .reversed = !in_place});
        for (std::size_t bit = 8 * first_from; bit < 8 * (first_from + count); ++bit) {
            comes_back_.insert(static_cast<std::uint16_t>(bit));
        }
        return true;
    }

    Returned::Kind kind(std::size_t bit) const {
        switch (origins_[bit].kind) {
            case Origin::nowhere:
                return Returned::zero;  // or lost, which is told of the record that went in
            case Origin::constant:
                return was(bit) ? Returned::constant : Returned::invented;
            case Origin::moved:
                return origins_[bit].is_from(bit) ? Returned::restored : Returned::moved;
            case Origin::inverted:
                return Returned::inverted;
            case Origin::computed:
                break;
        }
        return Returned::computed;
    }

    // Whether two neighbouring bits have the same to tell.
    bool joins(std::size_t bit, std::size_t before) const {
        const Origin& origin = origins_[bit];
        const Origin& last = origins_[before];
        if (kind(bit) != kind(before) || origin.text != last.text ||
            (origin.kind == Origin::moved) != (last.kind == Origin::moved) ||
            (bit % 8 == 0 && reversed_bytes(bit / 8) > 1)) {
            return false;
        }
        return (origin.kind != Origin::moved && origin.kind != Origin::inverted) ||
               *origin.from.begin() == *last.from.begin() + 1;
    }

    // The bits from this one on that have the same to tell; their number.
    std::size_t take_run(std::size_t first) {
        Returned run{.kind = kind(first), .text = origins_[first].text};
        std::set<std::uint16_t> at;
        std::set<std::uint16_t> from;
        bool as_it_was = true;
        std::size_t bit = first;
        do {
            at.insert(static_cast<std::uint16_t>(bit));
            from.insert(origins_[bit].from.begin(), origins_[bit].from.end());
            as_it_was = as_it_was && bit_of(out_, bit) == was(bit);
            ++bit;
        } while (bit < origins_.size() && joins(bit, bit - 1));
        const bool is_of_itself = std::ranges::any_of(at, [&](std::uint16_t one) { return from.contains(one); });
        if (run.kind != Returned::computed) {
            comes_back_.insert(from.begin(), from.end());
        } else if (is_of_itself) {
            comes_back_.insert(at.begin(), at.end());  // changed, as is told
        }
        if (run.kind == Returned::computed && as_it_was && is_of_itself) {
            run.kind = Returned::restored;
        }
        if (run.kind == Returned::zero) {
            return bit - first;
        }
        if (run.kind == Returned::constant) {
            comes_back_.insert(at.begin(), at.end());
        }
        if (run.kind == Returned::restored) {
            run.text.clear();
            from.clear();
            if (!result_.empty() && result_.back().kind == Returned::restored) {
                std::set<std::uint16_t> before = bits_of(result_.back().at);
                if (*before.rbegin() + 1 == *at.begin()) {
                    at.merge(before);
                    result_.pop_back();
                }
            }
        }
        run.at = spans_of(at);
        run.from = spans_of(from);
        result_.push_back(std::move(run));
        return bit - first;
    }

    // What was 1 and comes back nowhere; told where it stood, with the values that still depend on it.
    void take_lost() {
        std::set<std::uint16_t> lost;
        for (std::size_t bit = 0; bit < 8 * in_.size(); ++bit) {
            const auto number = static_cast<std::uint16_t>(bit);
            if (was(bit) && !comes_back_.contains(number)) {
                lost.insert(number);
            }
        }
        const auto counts_in = [&](Span piece) {
            std::set<std::uint16_t> bits;
            for (std::size_t bit = 0; bit < origins_.size(); ++bit) {
                const Origin& origin = origins_[bit];
                if (origin.kind == Origin::computed && std::ranges::any_of(origin.from, [&](std::uint16_t from) {
                        return from >= piece.first_bit && from < piece.first_bit + piece.width;
                    })) {
                    bits.insert(static_cast<std::uint16_t>(bit));
                }
            }
            return spans_of(bits);
        };
        // A byte of which nothing comes back is named as a whole.
        for (std::size_t byte = 0; byte < in_.size(); ++byte) {
            std::set<std::uint16_t> whole;
            bool any = false;
            for (std::size_t bit = 8 * byte; bit < 8 * byte + 8; ++bit) {
                const auto number = static_cast<std::uint16_t>(bit);
                any = any || lost.contains(number);
                if (!comes_back_.contains(number) &&
                    (bit >= origins_.size() || origins_[bit].kind == Origin::nowhere)) {
                    whole.insert(number);
                }
            }
            if (any && whole.size() == 8) {
                lost.merge(whole);
            }
        }
        for (const Span run : spans_of(lost)) {
            for (const Span piece : nameable(run)) {
                result_.push_back({.kind = Returned::lost, .at = {piece}, .from = counts_in(piece)});
            }
        }
        lost_ = std::move(lost);
    }

    // What was 0, came from nowhere and is 0 again.
    void take_zero() {
        std::set<std::uint16_t> zero;
        for (std::size_t bit = 0; bit < std::max(origins_.size(), 8 * in_.size()); ++bit) {
            const bool comes_from_nowhere = bit >= origins_.size() || origins_[bit].kind == Origin::nowhere;
            if (comes_from_nowhere && !was(bit) && !lost_.contains(static_cast<std::uint16_t>(bit)) &&
                (bit >= origins_.size() || !bit_of(out_, bit))) {
                zero.insert(static_cast<std::uint16_t>(bit));
            }
        }
        if (!zero.empty()) {
            result_.push_back({.kind = Returned::zero, .at = spans_of(zero)});
        }
    }

    const Bytes& in_;
    const Bytes& out_;
    std::vector<Origin> origins_{};
    std::set<std::uint16_t> comes_back_{};  // bits of the record that went in that come back, here or elsewhere
    std::set<std::uint16_t> lost_{};
    std::vector<Returned> result_{};
};

}  // namespace

std::string_view to_string(Returned::Kind kind) {
    switch (kind) {
        case Returned::restored:
            return "restored";
        case Returned::byte_reversed:
            return "byte-reversed";
        case Returned::moved:
            return "moved";
        case Returned::inverted:
            return "inverted";
        case Returned::computed:
            return "computed";
        case Returned::lost:
            return "lost";
        case Returned::invented:
            return "invented";
        case Returned::constant:
            return "constant";
        case Returned::zero:
            return "zero";
    }
    return "";
}

RoundTrip round_trip(const Translator& result, const Translator& reverse, std::span<const std::uint8_t> record,
                     std::uint32_t reverse_argument) {
    RoundTrip trip{.forward = account(result, record), .reverse = {}, .returned = {}};
    if (trip.forward.status == NPXLATE_OK) {
        trip.reverse = account(reverse, trip.forward.out, reverse_argument);
        if (trip.reverse->status == NPXLATE_OK) {
            trip.returned = Returning{trip}.all();
        }
    }
    return trip;
}

}  // namespace explain
