#include "explain/run.h"

#include <algorithm>
#include <stdexcept>

#include "catalogue/call.h"
#include "trace/traced.h"

namespace explain {
namespace {

using npxlate::trace::Event;

constexpr std::uint32_t no_length = 0xffffffff;

template <typename Function>
Function* traced_as(Function* library_function, traced::Function function) {
    return library_function == nullptr ? nullptr : reinterpret_cast<Function*>(function);
}

}  // namespace

Run run_translator(const Translator& translator, std::span<const std::uint8_t> record, std::uint32_t argument,
                   std::uint8_t fill) {
    // One that keeps its buffer may still report more than its longest record.
    constexpr std::size_t beyond = 8;
    Run result{.in = {record.begin(), record.end()}, .out = Bytes(translator.out().most + beyond, fill)};
    result.in.reserve(1);  // so that there is an address even for a record of no bytes
    std::uint32_t length = no_length;
    result.status = catalogue::call(translator, result.in.data(), static_cast<std::int32_t>(record.size()),
                                    result.out.data(), &length, catalogue::Argument{argument});
    if (length != no_length) {
        result.length = length;
    }
    return result;
}

bool same_act(const Event& a, const Event& b) {
    return a.kind == b.kind && a.layout == b.layout && a.bits.first_bit == b.bits.first_bit &&
           a.bits.width == b.bits.width && a.sentence == b.sentence && a.from == b.from && a.reversed == b.reversed;
}

bool Trace::same_way(const Trace& other) const {
    return std::ranges::equal(acts, other.acts, same_act, &Act::event, &Act::event);
}

Trace trace(const Translator& translator, std::span<const std::uint8_t> record, std::uint32_t argument) {
    const traced::Function function = traced::find(translator.name);
    if (function == nullptr) {
        throw std::logic_error{std::string{translator.name} + " is not among the traced translators"};
    }
    Translator traced = translator;
    traced.forward = traced_as(translator.forward, function);
    traced.reverse = traced_as(translator.reverse, function);
    traced.reverse_by_type = traced_as(translator.reverse_by_type, function);
    traced.reverse_by_key = traced_as(translator.reverse_by_key, function);
    npxlate::trace::events().clear();
    run_translator(traced, record, argument, 0);

    const npxlate::Side side =
        translator.role == catalogue::Role::reverse ? npxlate::Side::physical : npxlate::Side::logical;
    Trace result;
    std::vector<Span> since_last_act;
    for (const Event& event : npxlate::trace::events()) {
        if (event.kind == Event::looked_at) {
            if (event.side == side) {
                since_last_act.push_back(event.bits);
                result.looked_at.push_back(event.bits);
            }
            continue;
        }
        result.acts.push_back({event, since_last_act});
        if (event.kind != Event::changed_input) {
            since_last_act.clear();
        }
    }
    return result;
}

}  // namespace explain
