// Every translator of the catalogue, fed with arbitrary bytes at arbitrary addresses. Each input makes one translation
// several times over; what must hold for every translator is checked, and the address sanitizer sees whatever is
// touched beyond the records.
//
// An input: two bytes that name the translator, one each for the record's length, the two addresses, what the output
// holds before and a wrong length argument, four for the fourth argument, then the record.

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <memory>
#include <vector>

#include "catalogue/call.h"

namespace {

using catalogue::Role;
using catalogue::Trait;
using catalogue::Translator;
using Bytes = std::vector<std::uint8_t>;

void require(bool holds, const Translator& translator, const char* what) {
    if (!holds) {
        std::cerr << translator.name << ": " << what << '\n';
        std::abort();
    }
}

// A record so many bytes into memory that ends where the record ends: a byte beyond is the sanitizer's to see, the
// bytes before are compared.
class Buffer {
public:
    Buffer(const Bytes& content, std::size_t offset)
        : offset_{offset}, size_{content.size()}, memory_{new std::uint8_t[offset + content.size()]} {
        std::memset(memory_.get(), moat, offset);
        if (!content.empty()) {
            std::memcpy(record(), content.data(), size_);
        }
    }
    std::uint8_t* record() { return memory_.get() + offset_; }
    Bytes content() { return {record(), record() + size_}; }
    bool kept_what_is_before() const {
        for (std::size_t i = 0; i < offset_; ++i) {
            if (memory_[i] != moat) {
                return false;
            }
        }
        return true;
    }

private:
    static constexpr std::uint8_t moat = 0x3c;
    std::size_t offset_;
    std::size_t size_;
    std::unique_ptr<std::uint8_t[]> memory_;
};

constexpr std::uint32_t not_stored = 0xdeadbeef;

struct Outcome {
    std::int32_t status;
    std::uint32_t length;
    Bytes in;
    Bytes out;
    bool operator==(const Outcome&) const = default;
};

Outcome translate(const Translator& translator, const catalogue::Argument& argument, const Bytes& in,
                  std::int32_t length, const Bytes& before, std::size_t in_offset, std::size_t out_offset) {
    Buffer from{in, in_offset};
    Buffer to{before, out_offset};
    auto out_length = std::make_unique<std::uint32_t>(not_stored);
    const std::int32_t status =
        catalogue::call(translator, from.record(), length, to.record(), out_length.get(), argument);
    require(from.kept_what_is_before(), translator, "wrote before the record that went in");
    require(to.kept_what_is_before(), translator, "wrote before the record that came out");
    return {status, *out_length, from.content(), to.content()};
}

class Input {
public:
    Input(const std::uint8_t* data, std::size_t size) : data_{data}, size_{size} {}
    std::uint8_t byte() {
        if (size_ == 0) {
            return 0;
        }
        --size_;
        return *data_++;
    }

private:
    const std::uint8_t* data_;
    std::size_t size_;
};

// A length that the translator does not take.
std::int32_t wrong_length(const Translator& translator, std::uint8_t choice) {
    const auto most = static_cast<std::int32_t>(translator.in().most);
    if (!translator.in().fixed()) {
        return most + 1 + choice;  // below that a length is right, or the caller's error
    }
    return choice < most ? choice : choice % 2 == 0 ? most + 1 + choice : -std::int32_t{choice};
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input{data, size};
    const auto translators = catalogue::translators();
    const std::size_t index = input.byte() | std::size_t{input.byte()} << 8;
    const Translator& translator = translators[index % translators.size()];
    const catalogue::Lengths& lengths = translator.in();
    // Where the length argument does not choose among the lengths, the record itself does, and room for the longest
    // must be there.
    const bool any_length = translator.has(Trait::checks_length) && !lengths.fixed();
    const std::uint8_t size_choice = input.byte();
    const std::size_t in_size =
        any_length ? lengths.least + size_choice % (lengths.most - lengths.least + 1) : lengths.most;
    const std::uint8_t offsets = input.byte();
    const std::uint8_t fill = input.byte();
    const std::uint8_t length_choice = input.byte();
    std::uint32_t argument_value = 0;
    for (unsigned i = 0; i < 4; ++i) {
        argument_value |= std::uint32_t{input.byte()} << 8 * i;
    }
    const catalogue::Argument argument{argument_value};
    Bytes in(in_size);
    for (std::uint8_t& byte : in) {
        byte = input.byte();
    }
    const std::size_t in_offset = offsets % 16;
    const std::size_t out_offset = offsets / 16;
    // What is copied is as long as the record that goes in; the header is ORed into the first byte of a copied result
    // even when there is none.
    const std::size_t out_size =
        any_length && !translator.out().fixed() ? std::max<std::size_t>(in_size, 1) : translator.out().most;
    const Bytes before(out_size, fill);
    const auto length = static_cast<std::int32_t>(in_size);

    const Outcome first = translate(translator, argument, in, length, before, in_offset, out_offset);
    require(first == translate(translator, argument, in, length, before, in_offset, out_offset), translator,
            "gave something else the second time");
    require(first == translate(translator, argument, in, length, before, 0, 0), translator,
            "depends on the records' addresses");

    require(first.in == in || translator.has(Trait::changes_input), translator, "changed the record that went in");
    require(first.status == NPXLATE_OK || first.status == NPXLATE_INVALID || first.status == NPXLATE_OUT_OF_RANGE ||
                first.status == NPXLATE_NOT_SUPPORTED,
            translator, "returned a status that there is not");
    require(first.status == NPXLATE_OK || translator.has(Trait::rejects_records), translator, "rejected a record");
    if (translator.role == Role::reverse || translator.has(Trait::keeps_length)) {
        require(first.length == not_stored, translator, "stored a length");
    } else if (first.status == NPXLATE_OK && !(translator.has(Trait::hides_failures) && first.length == not_stored)) {
        // The fast-path result reports what the length argument says, whatever it wrote.
        const std::size_t most =
            lengths.fixed() ? translator.physical.most : std::max(translator.physical.most, in_size + 1);
        require(first.length <= most, translator, "stored a length above its record's");
    }

    if (first.status == NPXLATE_OK && !translator.has(Trait::keeps_buffer)) {
        const Bytes inverse(out_size, static_cast<std::uint8_t>(~fill));
        const Outcome other = translate(translator, argument, in, length, inverse, in_offset, out_offset);
        // An empty copied result has only the header's two bits.
        require(first == other || in_size == 0, translator, "depends on what the output held before");
    }

    if (translator.has(Trait::checks_length)) {
        const std::int32_t wrong = wrong_length(translator, length_choice);
        const Outcome other = translate(translator, argument, in, wrong, before, in_offset, out_offset);
        require(other.status == NPXLATE_INVALID, translator, "took a wrong length");
    }
    return 0;
}
