// Test vectors: calls of a translator and what must come of them. They are few, and yet decide every output bit of
// every form and every decision between forms: a translator that moves one bit wrongly fails one of them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "catalogue/catalogue.h"

namespace vectors {

using Bytes = std::vector<std::uint8_t>;
using catalogue::Translator;

// What a translator is given.
struct Call {
    Bytes in{};
    std::int32_t length = 0;                        // the length argument, which most translators ignore
    std::uint32_t type = 0;                         // for those that take the type of the entry
    Bytes key{};                                    // for those that take the logical key
    std::optional<std::uint16_t> tx_adj_key_max{};  // where it is not the initial value
    Bytes out_before{};                             // the buffer

    bool operator==(const Call&) const = default;
};

// What comes of it. After a failure neither record nor length are to be used, and so are not there.
struct Outcome {
    std::int32_t status = 0;
    std::optional<std::uint32_t> length{};  // the out-length, if it is stored
    std::optional<Bytes> out{};
    Bytes in{};  // afterwards

    bool operator==(const Outcome&) const = default;
};

struct Vector {
    const Translator* translator = nullptr;
    std::string form{};
    Call call{};
    Outcome outcome{};
};

// Whether the outcome tells that the translator took the record: one translator tells its failures by the length alone.
bool accepted(const Translator& translator, std::int32_t status, const std::optional<std::uint32_t>& length);

// All vectors of a translator: for every length argument that matters, every form's.
std::vector<Vector> vectors_of(const Translator& translator);

}  // namespace vectors
