#include <algorithm>
#include <stdexcept>

#include "catalogue/example.h"
#include "explain/parts.h"

namespace explain {
namespace {

std::string variant_name(const Translator& translator, std::span<const std::uint8_t> record, std::uint32_t argument) {
    const bool takes_argument =
        translator.has(catalogue::Trait::takes_type) || translator.has(catalogue::Trait::takes_key);
    const catalogue::Variant* found = nullptr;
    for (const catalogue::Variant& variant : translator.variants) {
        // The one that asks for most.
        if (satisfies(record, translator, variant) && (!takes_argument || variant.argument == argument) &&
            (found == nullptr || std::string_view{variant.holds}.size() > std::string_view{found->holds}.size())) {
            found = &variant;
        }
    }
    return found == nullptr ? "" : found->name;
}

// As many bytes as the translator writes or says it wrote.
std::size_t bytes_written(const Translator& translator, const Run& over_zeros, const Run& over_ones) {
    if (translator.out().fixed()) {
        return translator.out().most;
    }
    std::size_t bytes = over_zeros.status == NPXLATE_OK ? over_zeros.length.value_or(0) : 0;
    for (std::size_t i = 0; i < over_zeros.out.size(); ++i) {
        const bool written = over_zeros.out[i] != 0 || over_ones.out[i] != 0xff;
        bytes = written ? std::max(bytes, i + 1) : bytes;
    }
    return std::min(bytes, over_zeros.out.size());
}

// Labels say what may come from where; the library is asked what a bit of this record does.
void probe(Account& account, const Run& base, const Trace& base_trace) {
    std::set<std::uint16_t> looked_at = bits_of(base_trace.looked_at);
    for (std::size_t i = 0; i < account.out_bits.size(); ++i) {
        looked_at.insert(account.out_bits[i].from.begin(), account.out_bits[i].from.end());
        for (const Link& link : account.out_bits[i].links) {
            looked_at.insert(link.from);
            account.in_bits[link.from].to.push_back(static_cast<std::uint16_t>(i));
        }
    }
    Bytes record = account.in;
    for (std::size_t i = 0; i < account.in_bits.size(); ++i) {
        InBit& bit = account.in_bits[i];
        bit.value = bit_of(account.in, i);
        const auto flip = static_cast<std::uint8_t>(1U << i % 8);
        record[i / 8] ^= flip;
        const Run run = run_translator(*account.translator, record, account.argument, 0);
        bit.decides = run.status != base.status || run.length != base.length ||
                      !trace(*account.translator, record, account.argument).same_way(base_trace);
        record[i / 8] ^= flip;

        if (!bit.decides) {
            bit.to.clear();
            for (std::size_t k = 0; k < account.out_bits.size(); ++k) {
                if (bit_of(run.out, k) != bit_of(base.out, k)) {
                    bit.to.push_back(static_cast<std::uint16_t>(k));
                    if (account.out_bits[k].kind == Kind::computed) {
                        account.out_bits[k].from.push_back(static_cast<std::uint16_t>(i));
                    }
                }
            }
        }
        if (!bit.to.empty()) {
            bit.fate = Fate::carried;
        } else if (bit.decides || looked_at.contains(static_cast<std::uint16_t>(i))) {
            bit.fate = Fate::steered;
        }
    }
    for (OutBit& bit : account.out_bits) {
        std::ranges::sort(bit.from);
        bit.from.erase(std::unique(bit.from.begin(), bit.from.end()), bit.from.end());
    }
}

}  // namespace

std::string_view to_string(Kind kind) {
    switch (kind) {
        case Kind::copied:
            return "copied";
        case Kind::reversed:
            return "reversed";
        case Kind::inverted:
            return "inverted";
        case Kind::label:
            return "label";
        case Kind::shifted:
            return "shifted";
        case Kind::constant:
            return "constant";
        case Kind::computed:
            return "computed";
        case Kind::cleared:
            return "cleared";
        case Kind::left_alone:
            return "left_alone";
    }
    return "";
}

std::string_view to_string(Fate fate) {
    switch (fate) {
        case Fate::carried:
            return "carried";
        case Fate::steered:
            return "steered";
        case Fate::dropped:
            return "dropped";
    }
    return "";
}

Account account(const Translator& translator, std::span<const std::uint8_t> record, std::uint32_t argument) {
    if (record.size() < translator.in().least) {
        throw std::invalid_argument{std::string{translator.name} + " takes longer records"};
    }
    const Run run = run_translator(translator, record, argument, 0);
    const Run over_ones = run_translator(translator, record, argument, 0xff);
    const Trace way = trace(translator, record, argument);
    const std::size_t out_bytes = bytes_written(translator, run, over_ones);
    const Labels labels{way.acts, out_bytes};

    Account result{.translator = &translator,
                   .argument = argument,
                   .variant = variant_name(translator, record, argument),
                   .titles = {},
                   .in = {record.begin(), record.end()},
                   .in_after = run.in,
                   .out = {run.out.begin(), run.out.begin() + static_cast<std::ptrdiff_t>(out_bytes)},
                   .status = run.status,
                   .length = run.length,
                   .out_bits = labels.bits(),
                   .in_bits = std::vector<InBit>(8 * record.size()),
                   .fields = {},
                   .input_changes = input_changes(way.acts)};
    for (const auto& [event, looked_at] : way.acts) {
        if (event.layout != nullptr && std::ranges::find(result.titles, event.layout->title) == result.titles.end()) {
            result.titles.emplace_back(event.layout->title);
        }
    }
    for (std::size_t i = 0; i < result.out_bits.size(); ++i) {
        OutBit& bit = result.out_bits[i];
        if (bit_of(run.out, i) != bit_of(over_ones.out, i)) {
            bit = {.kind = Kind::left_alone};
        }
        bit.value = bit_of(run.out, i);
    }
    probe(result, run, way);
    result.fields = fields_of(labels.labels(), result.out_bits);
    return result;
}

}  // namespace explain
