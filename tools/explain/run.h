// One call of a translator of the library.
#pragma once

#include <optional>

#include "explain/explain.h"

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

}  // namespace explain
