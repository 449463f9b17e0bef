// Records as bytes, and the small things tests do with them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace support {

using Bytes = std::vector<std::uint8_t>;

// "11 22 ff" or "1122ff" to bytes.
Bytes bytes(std::string_view hex);

// `count` bytes first, first + 1, ... (modulo 256): every byte of a record tells where it came from.
Bytes counting(std::size_t count, std::uint8_t first = 0);

// Bytes to "11 22 ff".
std::string hex(const Bytes& record);

// The record with bytes, given in hex, put in at their places: with(Bytes(64), {{4, "05"}, {12, "56 34 12 00"}}).
Bytes with(Bytes record, std::initializer_list<std::pair<std::size_t, std::string_view>> parts);

// The bytes from first to last (inclusive).
Bytes slice(const Bytes& record, std::size_t first, std::size_t last);

// Records to walk over: zeros, ones, and two that have each bit 0 in one place and 1 in another.
std::vector<Bytes> patterns(std::size_t size);

bool bit(const Bytes& record, std::size_t byte, unsigned bit);
void set_bit(Bytes& record, std::size_t byte, unsigned bit, bool value = true);

// Bits high to low of one byte.
unsigned bits(const Bytes& record, std::size_t byte, unsigned high, unsigned low);
void set_bits(Bytes& record, std::size_t byte, unsigned high, unsigned low, unsigned value);

// Values of 1 to 8 bytes, least significant byte first or most significant byte first. The put functions drop what
// does not fit.
std::uint64_t little(const Bytes& record, std::size_t first, std::size_t count);
std::uint64_t big(const Bytes& record, std::size_t first, std::size_t count);
void put_little(Bytes& record, std::size_t first, std::size_t count, std::uint64_t value);
void put_big(Bytes& record, std::size_t first, std::size_t count, std::uint64_t value);

// The 20-bit label field: label bits 19-12, 11-4, then bits 3-0 in the high nibble, three zero bits, the flag.
void put_label(Bytes& record, std::size_t first, std::uint64_t label, bool flag);
// The label of a field of that form; its flag and its three middle bits are not looked at.
std::uint32_t label_at(const Bytes& record, std::size_t first);

// All bytes from first to last (inclusive) set to value.
void fill(Bytes& record, std::size_t first, std::size_t last, std::uint8_t value = 0);

}  // namespace support
