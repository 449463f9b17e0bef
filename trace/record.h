// The records of the traced build: what frame/record.h and frame/place.h offer to translators, on bits of which nothing
// is known.
#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include <npxlate/npxlate.h>

#include "frame/layout.h"
#include "trace/content.h"

namespace npxlate {

template <Side side, std::size_t size>
class Source {
public:
    explicit Source(const void* record) : record_{record} {}

    const void* record() const { return record_; }

    Truth bit(BitIn<side, size> at) const { return trace::read_bit(record_, at.first_bit()); }
    Number bits(BitsIn<side, size> at) const { return number(at, at.width()); }
    Number byte(BytesIn<side, size, 1> at) const { return number(at, 8); }
    Number little16(BytesIn<side, size, 2> at) const { return number(at, 16); }
    Number little24(BytesIn<side, size, 3> at) const { return number(at, 24); }
    Number little32(BytesIn<side, size, 4> at) const { return number(at, 32); }
    Number big32(BytesIn<side, size, 4> at) const { return reversed_bytes(number(at, 32), 4); }

private:
    Number number(Position<side> at, unsigned width) const {
        return trace::read_number(record_, at.first_bit(), width);
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
    static Record kept_from(BytesIn<side, size, 1> first, const void* record) {
        Record result;
        result.content_.keep(record, first.byte);
        return result;
    }

    void store(void* record) const { content_.store(record, size); }
    void store_first(void* record, std::int32_t bytes) const {
        content_.store(record, static_cast<std::size_t>(bytes));
    }

    Truth bit(BitIn<side, size> at) const { return content_.bit(letter, at.first_bit()); }
    Number bits(BitsIn<side, size> at) const { return content_.number(letter, at.first_bit(), at.width()); }

    trace::Content& content() { return content_; }

private:
    static constexpr char letter = side == Side::logical ? 'L' : 'P';

    trace::Content content_{size};
};

template <std::size_t size>
using LogicalRecord = Record<Side::logical, size>;
template <std::size_t size>
using PhysicalRecord = Record<Side::physical, size>;

template <const auto& layout, Side side, std::size_t to_size, std::size_t from_size>
void place(Record<side, to_size>& out, const Source<opposite(side), from_size>& in) {
    trace::place(trace::view<layout>(), out.content(), in.record());
}

template <Side side, std::size_t size>
void put(Record<side, size>& out, std::type_identity_t<BitsIn<side, size>> to, const Number& value,
         const char* name = nullptr) {
    trace::put_bits(out.content(), to.first_bit(), to.width(), value, name);
}

template <std::size_t count, Side side, std::size_t size>
void put_little(Record<side, size>& out, std::type_identity_t<BytesIn<side, size, count>> to, const Number& value,
                const char* name = nullptr) {
    trace::put_bits(out.content(), to.first_bit(), 8 * count, value, name);
}

template <std::size_t count, Side side, std::size_t size>
void put_big(Record<side, size>& out, std::type_identity_t<BytesIn<side, size, count>> to, const Number& value,
             const char* name = nullptr) {
    trace::put_bits(out.content(), to.first_bit(), 8 * count, reversed_bytes(value, count), name);
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
