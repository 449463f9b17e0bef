#include "trace/record.h"

#include <algorithm>
#include <string>
#include <utility>

#include "trace/recorder.h"

namespace npxlate {
namespace trace {
namespace {

Span span(unsigned first_bit, unsigned width) {
    return {static_cast<std::uint16_t>(first_bit), static_cast<std::uint16_t>(width)};
}

void copy(const void* to_record, const void* from_record, unsigned first, std::int32_t count, bool reversed) {
    if (count <= 0) {
        return;
    }
    Recorder& recorder = Recorder::current();
    const auto bytes = static_cast<unsigned>(count);
    const std::uint16_t step = recorder.add({.kind = Step::copied,
                                             .bits = span(0, 8 * bytes),
                                             .from = static_cast<std::uint16_t>(8 * first),
                                             .reversed = reversed});
    for (unsigned i = 0; i < bytes; ++i) {
        const unsigned to = reversed ? bytes - 1 - i : i;
        for (unsigned k = 0; k < 8; ++k) {
            recorder.write(to_record, 8 * to + k, recorder.read(from_record, 8 * (first + i) + k), {{step, 0}});
        }
    }
}

Truth truth(const Bit& bit, char letter, unsigned at) {
    const std::string name = position(letter, at, 1);
    return {bit, name + " set", name + " clear"};
}

}  // namespace

Content::Content(std::size_t bytes) : bits(8 * bytes), writers(8 * bytes) {}
Content::Content(const Content&) = default;
Content& Content::operator=(const Content&) = default;
Content::~Content() = default;

Truth Content::bit(char letter, unsigned at) const { return truth(bits.at(at), letter, at); }

Number Content::number(char letter, unsigned first_bit, unsigned width) const {
    const auto first = bits.begin() + first_bit;
    return {{first, first + width}, position(letter, first_bit, width)};
}

void Content::keep(const void* record, std::size_t first_byte) {
    for (std::size_t bit = 8 * first_byte; bit < bits.size(); ++bit) {
        bits[bit] = Recorder::current().read(record, bit);
    }
}

void Content::store(void* record, std::size_t count) const {
    for (std::size_t bit = 0; bit < std::min(bits.size(), 8 * count); ++bit) {
        Recorder::current().write(record, bit, bits[bit], writers[bit]);
    }
}

Truth read_bit(const void* record, unsigned at) {
    const Recorder& recorder = Recorder::current();
    return truth(recorder.read(record, at), recorder.letter(record), at);
}

Number read_number(const void* record, unsigned first_bit, unsigned width) {
    const Recorder& recorder = Recorder::current();
    std::vector<Bit> bits;
    for (unsigned k = 0; k < width; ++k) {
        bits.push_back(recorder.read(record, first_bit + k));
    }
    return {std::move(bits), position(recorder.letter(record), first_bit, width)};
}

void put_bits(Content& content, unsigned first_bit, unsigned width, const Number& value, const char* name) {
    const std::uint16_t step = Recorder::current().add(
        {.kind = Step::put, .bits = span(first_bit, width), .words = value.words(), .name = name});
    for (unsigned k = 0; k < width; ++k) {
        content.bits[first_bit + k] = value.bit(k);
        content.writers[first_bit + k] = {{step, 0}};
    }
}

void change(const void* record, unsigned first_bit, unsigned width, const Number& value) {
    const std::uint16_t step =
        Recorder::current().add({.kind = Step::changed_input, .bits = span(first_bit, width), .words = value.words()});
    for (unsigned k = 0; k < width; ++k) {
        Recorder::current().write(record, first_bit + k, value.bit(k), {{step, 0}});
    }
}

void store(const void* record, unsigned first_bit, unsigned width, const Number& value) {
    const std::uint16_t step =
        Recorder::current().add({.kind = Step::put, .bits = span(first_bit, width), .words = value.words()});
    for (unsigned k = 0; k < width; ++k) {
        Recorder::current().write(record, first_bit + k, value.bit(k), {{step, 0}});
    }
}

}  // namespace trace

void copy_bytes(void* to_record, const void* from_record, std::int32_t count) {
    trace::copy(to_record, from_record, 0, count, false);
}

void reverse_byte_copy(void* to_record, const void* from_record, std::int32_t first, std::int32_t count) {
    trace::copy(to_record, from_record, static_cast<unsigned>(first), count, true);
}

void clear_bytes(void* record, std::int32_t count) {
    for (std::size_t bit = 0; bit < 8 * static_cast<std::size_t>(count); ++bit) {
        trace::Recorder::current().write(record, bit, trace::bit_of(false), {});
    }
}

void set_header_bits(void* physical, std::uint8_t header) {
    trace::Recorder& recorder = trace::Recorder::current();
    for (unsigned k = 0; k < 8; ++k) {
        if ((header >> k & 1) != 0) {
            const std::uint16_t step = recorder.add({.kind = trace::Step::put,
                                                     .bits = trace::span(k, 1),
                                                     .words = "1, of the header that is ORed into P0"});
            recorder.write(physical, k, trace::bit_of(true), {{step, 0}});
        }
    }
}

}  // namespace npxlate
