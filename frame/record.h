// Records as translators see them: a source to read from, and a record that is put together in registers and stored
// once. Sources and stores keep to the bytes of their record, at any address, in the same byte order on every machine.
#pragma once

#ifdef NPXLATE_TRACED
#include "trace/record.h"
#else

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>

#include "frame/number.h"
#include "frame/position.h"

namespace npxlate {

namespace bytes_detail {

constexpr std::uint64_t swap(std::uint64_t value) { return __builtin_bswap64(value); }

template <typename Word>
NPXLATE_INLINE std::uint64_t load_word(const std::uint8_t* at) {
    Word word;
    std::memcpy(&word, at, sizeof word);
    if constexpr (std::endian::native == std::endian::big) {
        return swap(word) >> (64 - 8 * sizeof word);
    }
    return word;
}

template <typename Word>
NPXLATE_INLINE void store_word(std::uint8_t* at, std::uint64_t value) {
    if constexpr (std::endian::native == std::endian::big) {
        value = swap(value) >> (64 - 8 * sizeof(Word));
    }
    const auto word = static_cast<Word>(value);
    std::memcpy(at, &word, sizeof word);
}

}  // namespace bytes_detail

// `count` bytes (1 to 8) as a little-endian value.
template <std::size_t count>
NPXLATE_INLINE std::uint64_t load_little(const std::uint8_t* at) {
    using namespace bytes_detail;
    if constexpr (count == 0) {
        return 0;
    } else if constexpr (count >= 8) {
        return load_word<std::uint64_t>(at);
    } else if constexpr (count >= 4) {
        return load_word<std::uint32_t>(at) | load_little<count - 4>(at + 4) << 32;
    } else if constexpr (count >= 2) {
        return load_word<std::uint16_t>(at) | load_little<count - 2>(at + 2) << 16;
    } else {
        return *at;
    }
}

template <std::size_t count>
NPXLATE_INLINE void store_little(std::uint8_t* at, std::uint64_t value) {
    using namespace bytes_detail;
    if constexpr (count >= 8) {
        store_word<std::uint64_t>(at, value);
    } else if constexpr (count >= 4) {
        store_word<std::uint32_t>(at, value);
        store_little<count - 4>(at + 4, value >> 32);
    } else if constexpr (count >= 2) {
        store_word<std::uint16_t>(at, value);
        store_little<count - 2>(at + 2, value >> 16);
    } else if constexpr (count == 1) {
        *at = static_cast<std::uint8_t>(value);
    }
}

// The record that goes in, of `size` bytes.
template <Side side, std::size_t size>
class Source {
public:
    explicit Source(const void* record) : bytes_{static_cast<const std::uint8_t*>(record)} {}

    const std::uint8_t* bytes() const { return bytes_; }

    // What a translator decides by or computes from; the values of two bytes and more are named after the byte order in
    // which they are read.
    NPXLATE_INLINE Truth bit(BitIn<side, size> at) const { return bits_at(at) != 0; }
    NPXLATE_INLINE Number bits(BitsIn<side, size> at) const { return bits_at(at); }
    NPXLATE_INLINE Number byte(BytesIn<side, size, 1> at) const { return little<1>(at); }
    NPXLATE_INLINE Number little16(BytesIn<side, size, 2> at) const { return little<2>(at); }
    NPXLATE_INLINE Number little24(BytesIn<side, size, 3> at) const { return little<3>(at); }
    NPXLATE_INLINE Number little32(BytesIn<side, size, 4> at) const { return little<4>(at); }
    NPXLATE_INLINE Number big32(BytesIn<side, size, 4> at) const { return __builtin_bswap32(little<4>(at)); }

private:
    NPXLATE_INLINE Number bits_at(Position<side> at) const {
        return (bytes_[at.byte] >> at.low) & ((1U << at.width()) - 1);
    }
    template <std::size_t count>
    NPXLATE_INLINE Number little(Position<side> at) const {
        return static_cast<Number>(load_little<count>(bytes_ + at.byte));
    }

    const std::uint8_t* bytes_;
};

template <std::size_t size>
using LogicalSource = Source<Side::logical, size>;
template <std::size_t size>
using PhysicalSource = Source<Side::physical, size>;

// The record that comes out, of `size` bytes: cleared at first, held in words (bit i of the record is bit i mod 64 of
// word i / 64) and stored when it is complete.
template <Side side, std::size_t size>
class Record {
public:
    static constexpr std::size_t word_count = (size + 7) / 8;

    Record() = default;

    // A record that starts as the caller had it from this byte on, cleared before it.
    NPXLATE_INLINE static Record kept_from(BytesIn<side, size, 1> first, const void* record) {
        Record result;
        load_words(result, static_cast<const std::uint8_t*>(record), 8 * first.byte,
                   std::make_index_sequence<word_count>{});
        return result;
    }

    NPXLATE_INLINE void store(void* record) const {
        store_words(static_cast<std::uint8_t*>(record), std::make_index_sequence<word_count>{});
    }

    // The first bytes alone, or the whole record if that is shorter.
    NPXLATE_INLINE void store_first(void* record, std::int32_t bytes) const {
        std::uint8_t whole[size];
        store(whole);
        const auto count = static_cast<std::size_t>(bytes);
        std::memcpy(record, whole, count < size ? count : size);
    }

    // What has been placed so far.
    NPXLATE_INLINE Truth bit(BitIn<side, size> at) const { return bits(at) != 0; }
    NPXLATE_INLINE Number bits(BitsIn<side, size> at) const {
        return static_cast<Number>(word_[at.byte / 8] >> (at.first_bit() % 64)) & ((1U << at.width()) - 1);
    }

    // Replaces the bits of `mask` in one word.
    NPXLATE_INLINE void write(std::size_t index, std::uint64_t mask, std::uint64_t value) {
        word_[index] = (word_[index] & ~mask) | value;
    }

private:
    static constexpr std::size_t bytes_in(std::size_t index) { return size - 8 * index < 8 ? size - 8 * index : 8; }

    // The bits of a word that a record has kept which is kept from this bit on.
    static constexpr std::uint64_t kept(std::size_t index, std::size_t first_bit) {
        if (first_bit <= 64 * index) {
            return ~std::uint64_t{0};
        }
        if (first_bit >= 64 * index + 64) {
            return 0;
        }
        return ~std::uint64_t{0} << first_bit % 64;
    }

    template <std::size_t... index>
    NPXLATE_INLINE static void load_words(Record& result, const std::uint8_t* from, std::size_t first_bit,
                                          std::index_sequence<index...>) {
        ((result.word_[index] = load_little<bytes_in(index)>(from + 8 * index) & kept(index, first_bit)), ...);
    }
    template <std::size_t... index>
    NPXLATE_INLINE void store_words(std::uint8_t* to, std::index_sequence<index...>) const {
        (store_little<bytes_in(index)>(to + 8 * index, word_[index]), ...);
    }

    std::uint64_t word_[word_count] = {};
};

template <std::size_t size>
using LogicalRecord = Record<Side::logical, size>;
template <std::size_t size>
using PhysicalRecord = Record<Side::physical, size>;

}  // namespace npxlate

#endif
