// The records of the traced build: what frame/record.h and frame/place.h offer to translators, on bits of which nothing
// is known.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include <npxlate/npxlate.h>

#include "frame/layout.h"
#include "trace/recorder.h"

namespace npxlate {

template <Side side, std::size_t size>
class Source {
public:
    explicit Source(const void* record) : record_{record} {}

    const void* record() const { return record_; }

    Truth bit(BitIn<side, size> at) const {
        const std::string name = trace::position(trace::Recorder::current().letter(record_), at.first_bit(), 1);
        return {trace::Recorder::current().read(record_, at.first_bit()), name + " set", name + " clear"};
    }
    Number bits(BitsIn<side, size> at) const { return number(at, at.width()); }
    Number byte(BytesIn<side, size, 1> at) const { return number(at, 8); }
    Number little16(BytesIn<side, size, 2> at) const { return number(at, 16); }
    Number little24(BytesIn<side, size, 3> at) const { return number(at, 24); }
    Number little32(BytesIn<side, size, 4> at) const { return number(at, 32); }
    Number big32(BytesIn<side, size, 4> at) const { return reversed_bytes(number(at, 32), 4); }

private:
    Number number(Position<side> at, unsigned width) const {
        const trace::Recorder& recorder = trace::Recorder::current();
        std::vector<trace::Bit> bits;
        for (unsigned k = 0; k < width; ++k) {
            bits.push_back(recorder.read(record_, at.first_bit() + k));
        }
        return {std::move(bits), trace::position(recorder.letter(record_), at.first_bit(), width)};
    }

    const void* record_;
};

template <std::size_t size>
using LogicalSource = Source<Side::logical, size>;
template <std::size_t size>
using PhysicalSource = Source<Side::physical, size>;

template <Side side, std::size_t size>
class Record {
public:
    Record() {
        content_.bits.resize(8 * size);
        content_.writers.resize(8 * size);
    }

    static Record kept_from(BytesIn<side, size, 1> first, const void* record) {
        Record result;
        for (std::size_t bit = 8UL * first.byte; bit < 8 * size; ++bit) {
            result.content_.bits[bit] = trace::Recorder::current().read(record, bit);
        }
        return result;
    }

    void store(void* record) const { store_first(record, static_cast<std::int32_t>(size)); }
    void store_first(void* record, std::int32_t bytes) const {
        for (std::size_t bit = 0; bit < std::min(8 * size, 8 * static_cast<std::size_t>(bytes)); ++bit) {
            trace::Recorder::current().write(record, bit, content_.bits[bit], content_.writers[bit]);
        }
    }

    Truth bit(BitIn<side, size> at) const {
        const std::string name = trace::position(letter, at.first_bit(), 1);
        return {content_.bits.at(at.first_bit()), name + " set", name + " clear"};
    }
    Number bits(BitsIn<side, size> at) const {
        const auto first = content_.bits.begin() + at.first_bit();
        return {{first, first + at.width()}, trace::position(letter, at.first_bit(), at.width())};
    }

    trace::Content& content() { return content_; }

private:
    static constexpr char letter = side == Side::logical ? 'L' : 'P';

    trace::Content content_{};
};

template <std::size_t size>
using LogicalRecord = Record<Side::logical, size>;
template <std::size_t size>
using PhysicalRecord = Record<Side::physical, size>;

template <const auto& layout, Side side, std::size_t to_size, std::size_t from_size>
void place(Record<side, to_size>& out, const Source<opposite(side), from_size>& in) {
    const trace::Recorder& recorder = trace::Recorder::current();
    trace::place(
        trace::view<layout>(), out.content(), [&](unsigned bit) { return recorder.read(in.record(), bit); },
        recorder.letter(in.record()));
}

namespace trace {

// The bits of a value to the record at the position, for one step.
void put(Content& content, unsigned first_bit, unsigned width, const Number& value, const char* name);
void change(const void* record, unsigned first_bit, unsigned width, const Number& value);
void store(const void* record, unsigned first_bit, unsigned width, const Number& value);

}  // namespace trace

template <Side side, std::size_t size>
void put(Record<side, size>& out, std::type_identity_t<BitsIn<side, size>> to, const Number& value,
         const char* name = nullptr) {
    trace::put(out.content(), to.first_bit(), to.width(), value, name);
}

template <std::size_t count, Side side, std::size_t size>
void put_little(Record<side, size>& out, std::type_identity_t<BytesIn<side, size, count>> to, const Number& value,
                const char* name = nullptr) {
    trace::put(out.content(), to.first_bit(), 8 * count, value, name);
}

template <std::size_t count, Side side, std::size_t size>
void put_big(Record<side, size>& out, std::type_identity_t<BytesIn<side, size, count>> to, const Number& value,
             const char* name = nullptr) {
    trace::put(out.content(), to.first_bit(), 8 * count, reversed_bytes(value, count), name);
}

template <std::size_t count, Side side, std::size_t size>
void change_input(const Source<side, size>& in, std::type_identity_t<BytesIn<side, size, count>> at,
                  const Number& value) {
    trace::change(in.record(), at.first_bit(), 8 * count, value);
}

template <std::size_t count, Side side, std::size_t size>
void store_into(void* record, BytesIn<side, size, count> at, const Number& value) {
    trace::store(record, at.first_bit(), 8 * count, value);
}

// Copies by hand, of as many bytes as the caller says.
void copy_bytes(void* to_record, const void* from_record, std::int32_t count);
void reverse_byte_copy(void* to_record, const void* from_record, std::int32_t first, std::int32_t count);
void clear_bytes(void* record, std::int32_t count);
void set_header_bits(void* physical, std::uint8_t header);

}  // namespace npxlate
