// One call of a translator of the library, and of its traced copy.
#pragma once

#include <optional>

#include "explain/explain.h"
#include "frame/trace_recorder.h"

namespace explain {

struct Run {
    std::int32_t status = 0;
    std::optional<std::uint32_t> length{};
    Bytes in{};   // after the call
    Bytes out{};  // as long as any record of the translator, and some bytes for what is written beyond
};

// The output holds `fill` in every byte before the call.
Run run_translator(const Translator& translator, std::span<const std::uint8_t> record, std::uint32_t argument,
                   std::uint8_t fill);

// Something that the traced translator did, and what it had looked at since it did something before.
struct Act {
    npxlate::trace::Event event{};
    std::vector<Span> looked_at{};
};

struct Trace {
    std::vector<Act> acts{};        // in order
    std::vector<Span> looked_at{};  // all that it looked at in the record that went in

    // Whether two records went the same way: the same layouts, values and changes in the same order.
    bool same_way(const Trace& other) const;
};

Trace trace(const Translator& translator, std::span<const std::uint8_t> record, std::uint32_t argument);

bool same_act(const npxlate::trace::Event& a, const npxlate::trace::Event& b);

}  // namespace explain
