#include "support/record.h"

#include <cctype>
#include <stdexcept>

namespace support {

Bytes bytes(std::string_view hex) {
    Bytes record;
    int digits = 0;
    unsigned value = 0;
    for (const char c : hex) {
        if (c == ' ') {
            continue;
        }
        if (std::isxdigit(static_cast<unsigned char>(c)) == 0) {
            throw std::invalid_argument{"not hex: " + std::string{hex}};
        }
        value = value * 16 + static_cast<unsigned>(std::stoi(std::string{c}, nullptr, 16));
        if (++digits % 2 == 0) {
            record.push_back(static_cast<std::uint8_t>(value));
            value = 0;
        }
    }
    if (digits % 2 != 0) {
        throw std::invalid_argument{"half a byte: " + std::string{hex}};
    }
    return record;
}

Bytes counting(std::size_t count, std::uint8_t first) {
    Bytes record(count);
    for (std::size_t i = 0; i < count; ++i) {
        record[i] = static_cast<std::uint8_t>(first + i);
    }
    return record;
}

std::string hex(const Bytes& record) {
    constexpr char digits[] = "0123456789abcdef";
    std::string text;
    for (const std::uint8_t byte : record) {
        if (!text.empty()) {
            text += ' ';
        }
        text += digits[byte >> 4];
        text += digits[byte & 15];
    }
    return text;
}

Bytes with(Bytes record, std::initializer_list<std::pair<std::size_t, std::string_view>> parts) {
    for (const auto& [first, text] : parts) {
        for (std::size_t at = first; const std::uint8_t byte : bytes(text)) {
            record.at(at++) = byte;
        }
    }
    return record;
}

Bytes slice(const Bytes& record, std::size_t first, std::size_t last) {
    return {record.begin() + static_cast<std::ptrdiff_t>(first),
            record.begin() + static_cast<std::ptrdiff_t>(last) + 1};
}

std::vector<Bytes> patterns(std::size_t size) {
    return {Bytes(size), Bytes(size, 0xff), counting(size), counting(size, 0x81)};
}

bool bit(const Bytes& record, std::size_t byte, unsigned bit) { return ((record.at(byte) >> bit) & 1) != 0; }

void set_bit(Bytes& record, std::size_t byte, unsigned bit, bool value) {
    set_bits(record, byte, bit, bit, value ? 1 : 0);
}

unsigned bits(const Bytes& record, std::size_t byte, unsigned high, unsigned low) {
    return (record.at(byte) >> low) & ((1U << (high - low + 1)) - 1);
}

void set_bits(Bytes& record, std::size_t byte, unsigned high, unsigned low, unsigned value) {
    const unsigned mask = ((1U << (high - low + 1)) - 1) << low;
    record.at(byte) = static_cast<std::uint8_t>((record.at(byte) & ~mask) | ((value << low) & mask));
}

std::uint64_t little(const Bytes& record, std::size_t first, std::size_t count) {
    std::uint64_t value = 0;
    for (std::size_t i = count; i-- > 0;) {
        value = value << 8 | record.at(first + i);
    }
    return value;
}

std::uint64_t big(const Bytes& record, std::size_t first, std::size_t count) {
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < count; ++i) {
        value = value << 8 | record.at(first + i);
    }
    return value;
}

void put_little(Bytes& record, std::size_t first, std::size_t count, std::uint64_t value) {
    for (std::size_t i = 0; i < count; ++i) {
        record.at(first + i) = static_cast<std::uint8_t>(value >> (8 * i));
    }
}

void put_big(Bytes& record, std::size_t first, std::size_t count, std::uint64_t value) {
    for (std::size_t i = 0; i < count; ++i) {
        record.at(first + i) = static_cast<std::uint8_t>(value >> (8 * (count - 1 - i)));
    }
}

void put_label(Bytes& record, std::size_t first, std::uint64_t label, bool flag) {
    put_big(record, first, 3, (label & 0xfffff) << 4 | (flag ? 1 : 0));
}

std::uint32_t label_at(const Bytes& record, std::size_t first) {
    return static_cast<std::uint32_t>(big(record, first, 3) >> 4);
}

void fill(Bytes& record, std::size_t first, std::size_t last, std::uint8_t value) {
    for (std::size_t i = first; i <= last; ++i) {
        record.at(i) = value;
    }
}

}  // namespace support
