#include "explain/run.h"

#include <algorithm>
#include <stdexcept>

#include "trace/traced.h"

namespace explain {
namespace {

using npxlate::trace::Event;

// As translators have them; the traced functions have the same types.
struct Functions {
    npxlate_result_fn* forward;
    npxlate_reverse_fn* reverse;
    npxlate_reverse_by_type_fn* reverse_by_type;
    npxlate_reverse_by_key_fn* reverse_by_key;
};

constexpr std::uint32_t no_length = 0xffffffff;

Run call(const Translator& translator, const Functions& functions, std::span<const std::uint8_t> record,
         std::uint32_t argument, std::uint8_t fill) {
    // One that keeps its buffer may still report more than its longest record.
    constexpr std::size_t beyond = 8;
    Run run{.in = {record.begin(), record.end()}, .out = Bytes(translator.out().most + beyond, fill)};
    const auto length = static_cast<std::int32_t>(record.size());
    run.in.reserve(1);  // so that there is an address even for a record of no bytes
    std::uint32_t out_length = no_length;
    if (functions.forward != nullptr) {
        run.status = functions.forward(run.in.data(), length, run.out.data(), &out_length);
    } else if (functions.reverse != nullptr) {
        run.status = functions.reverse(run.in.data(), length, run.out.data());
    } else if (functions.reverse_by_type != nullptr) {
        run.status = functions.reverse_by_type(run.in.data(), length, run.out.data(), &argument);
    } else {
        std::uint8_t key[8] = {};
        key[7] = static_cast<std::uint8_t>(argument);
        run.status = functions.reverse_by_key(run.in.data(), length, run.out.data(), key);
    }
    if (out_length != no_length) {
        run.length = out_length;
    }
    return run;
}

template <typename Function>
Function* traced_as(Function* library_function, traced::Function function) {
    return library_function == nullptr ? nullptr : reinterpret_cast<Function*>(function);
}

}  // namespace

Run run_library(const Translator& translator, std::span<const std::uint8_t> record, std::uint32_t argument,
                std::uint8_t fill) {
    return call(translator,
                {translator.forward, translator.reverse, translator.reverse_by_type, translator.reverse_by_key}, record,
                argument, fill);
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
    npxlate::trace::events().clear();
    call(translator,
         {traced_as(translator.forward, function), traced_as(translator.reverse, function),
          traced_as(translator.reverse_by_type, function), traced_as(translator.reverse_by_key, function)},
         record, argument, 0);

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
