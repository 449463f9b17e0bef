// As drivers for many tables do it: every record is described by a table of fields, and one loop moves them at run
// time.

#include "comparison/comparison.h"

#include <cstddef>
#include <cstring>
#include <span>

namespace comparison::tables {
namespace {

enum class How : std::uint8_t { moved, inverted, swapped, constant };

// A bit is 8 times its byte and its place in it, counted from bit 0; a constant stands in place of the source.
struct Field {
    How how;
    std::uint16_t to;
    std::uint16_t from;
    std::uint16_t width;
};

constexpr std::uint16_t at(unsigned byte, unsigned bit = 0) { return static_cast<std::uint16_t>(8 * byte + bit); }
constexpr Field flag(std::uint16_t to, std::uint16_t from) { return {How::moved, to, from, 1}; }
constexpr Field moved(std::uint16_t to, std::uint16_t from, unsigned width) {
    return {How::moved, to, from, static_cast<std::uint16_t>(width)};
}
constexpr Field bytes(unsigned to, unsigned from, unsigned count) { return moved(at(to), at(from), 8 * count); }
constexpr Field swapped(unsigned to, unsigned from, unsigned count) {
    return {How::swapped, at(to), at(from), static_cast<std::uint16_t>(8 * count)};
}
constexpr Field constant(std::uint16_t to, unsigned value, unsigned width) {
    return {How::constant, to, static_cast<std::uint16_t>(value), static_cast<std::uint16_t>(width)};
}

std::uint64_t get(const std::uint8_t* record, unsigned bit, unsigned width) {
    const unsigned first = bit / 8;
    const unsigned last = (bit + width - 1) / 8;
    std::uint64_t value = 0;
    for (unsigned i = first; i <= last; ++i) {
        value |= std::uint64_t{record[i]} << 8 * (i - first);
    }
    return value >> bit % 8 & ((std::uint64_t{1} << width) - 1);
}

void set(std::uint8_t* record, unsigned bit, unsigned width, std::uint64_t value) {
    const unsigned first = bit / 8;
    const unsigned last = (bit + width - 1) / 8;
    const std::uint64_t mask = ((std::uint64_t{1} << width) - 1) << bit % 8;
    value = value << bit % 8 & mask;
    for (unsigned i = first; i <= last; ++i) {
        const unsigned shift = 8 * (i - first);
        record[i] = static_cast<std::uint8_t>((record[i] & ~(mask >> shift)) | value >> shift);
    }
}

void apply(std::span<const Field> fields, const std::uint8_t* in, std::uint8_t* out) {
    for (const Field& field : fields) {
        std::uint64_t value = field.from;
        if (field.how != How::constant) {
            value = get(in, field.from, field.width);
        }
        if (field.how == How::inverted) {
            value = ~value;
        }
        if (field.how == How::swapped) {
            value = __builtin_bswap64(value) >> (64 - field.width);
        }
        set(out, field.to, field.width, value);
    }
}

constexpr Field rx_common[] = {
    constant(at(0), 0x11, 5), constant(at(0, 7), 1, 1), flag(at(0, 6), at(1, 5)), flag(at(0, 5), at(0, 4)),
    flag(at(1, 0), at(1, 0)), flag(at(1, 1), at(1, 1)), flag(at(1, 2), at(1, 2)), flag(at(1, 3), at(1, 4)),
    flag(at(1, 4), at(1, 6)), flag(at(1, 5), at(1, 3)), flag(at(1, 6), at(2, 2)), flag(at(2, 0), at(0, 2)),
    flag(at(2, 1), at(0, 1)), flag(at(2, 2), at(0, 3)), flag(at(2, 3), at(0, 0)), flag(at(2, 6), at(1, 7)),
    flag(at(3, 7), at(0, 5)), swapped(8, 24, 4),
};
constexpr Field rx_a[] = {flag(at(3, 5), at(2, 0)), bytes(4, 21, 2), swapped(6, 16, 2)};
constexpr Field rx_a_24[] = {swapped(13, 12, 3)};
constexpr Field rx_a_32[] = {bytes(12, 12, 4)};
constexpr Field rx_b[] = {flag(at(3, 5), at(2, 1)), swapped(6, 20, 2), bytes(12, 12, 4)};
constexpr Field rx_c[] = {bytes(6, 4, 2)};
constexpr Field rx_d[] = {flag(at(0, 5), at(1, 3)), flag(at(3, 6), at(1, 3)), flag(at(3, 4), at(2, 3)),
                          moved(at(5), at(12, 1), 24), bytes(12, 16, 4)};
constexpr Field rx_e[] = {bytes(12, 12, 2)};

constexpr Field node[] = {
    constant(at(0), 0x11, 5),  flag(at(0, 7), at(0, 7)),
    flag(at(0, 6), at(40, 3)), flag(at(0, 5), at(1, 3)),
    flag(at(1, 7), at(0, 0)),  flag(at(1, 6), at(29, 0)),
    flag(at(1, 5), at(40, 2)), flag(at(1, 4), at(28, 0)),
    flag(at(1, 3), at(0, 4)),  flag(at(1, 2), at(0, 6)),
    flag(at(1, 1), at(40, 0)), flag(at(2, 7), at(1, 2)),
    flag(at(2, 6), at(40, 1)), {How::inverted, at(2, 5), at(1, 0), 1},
    flag(at(2, 3), at(0, 3)),  flag(at(2, 2), at(0, 1)),
    flag(at(2, 1), at(0, 5)),  flag(at(2, 0), at(0, 2)),
    bytes(3, 20, 3),           bytes(6, 41, 3),
    swapped(9, 4, 4),          swapped(13, 8, 3),
    swapped(16, 12, 3),        swapped(19, 24, 3),
    swapped(22, 16, 4),        swapped(26, 30, 2),
};
constexpr Field node_suppressed[] = {constant(at(1, 6), 0, 1)};

constexpr Field cross_common[] = {
    constant(at(0), 0x11, 5),
    constant(at(0, 7), 1, 1),
    flag(at(0, 5), at(0, 6)),
    {How::inverted, at(1, 0), at(1, 1), 1},
    flag(at(1, 2), at(4, 4)),
    flag(at(1, 3), at(3, 3)),
    flag(at(1, 4), at(0, 2)),
    flag(at(1, 5), at(0, 7)),
    flag(at(1, 6), at(1, 0)),
    flag(at(2, 2), at(0, 5)),
    flag(at(2, 3), at(2, 6)),
    flag(at(2, 7), at(3, 1)),
    moved(at(3, 0), at(1, 2), 3),
    moved(at(3, 3), at(0, 0), 2),
    flag(at(3, 5), at(1, 7)),
    flag(at(3, 6), at(1, 6)),
    flag(at(3, 7), at(3, 7)),
    bytes(4, 76, 3),
    bytes(12, 57, 1),
    bytes(13, 56, 1),
    bytes(14, 58, 2),
    flag(at(26, 6), at(2, 4)),
    flag(at(26, 5), at(3, 0)),
    flag(at(26, 2), at(2, 0)),
    moved(at(26, 0), at(2, 1), 2),
    moved(at(27, 4), at(53), 20),
    flag(at(27, 3), at(4, 0)),
    moved(at(27, 0), at(4, 1), 3),
    flag(at(30, 7), at(3, 4)),
    flag(at(30, 6), at(3, 5)),
    flag(at(30, 5), at(3, 6)),
};
constexpr Field cross_value[] = {moved(at(7), at(64), 20)};
constexpr Field cross_label[] = {bytes(10, 72, 2)};
constexpr Field cross_set[] = {
    bytes(16, 44, 2), bytes(19, 28, 3),          moved(at(22), at(32), 2),
    bytes(23, 36, 3), constant(at(26, 4), 1, 1), bytes(31, 24, 1),
};
constexpr Field cross_clear[] = {bytes(16, 40, 4)};

}  // namespace

std::int32_t rx_adjacency(const void* logical, std::int32_t, void* physical, std::uint32_t* physical_length) {
    const auto* in = static_cast<const std::uint8_t*>(logical);
    auto* out = static_cast<std::uint8_t*>(physical);
    std::memset(out, 0, 16);
    apply(rx_common, in, out);
    if (get(in, at(0, 5), 1) != 0) {
        apply(rx_a, in, out);
        if (get(in, at(2, 0), 1) != 0) {
            apply(rx_a_24, in, out);
        } else {
            apply(rx_a_32, in, out);
        }
    } else if (get(in, at(0, 6), 1) != 0) {
        apply(rx_b, in, out);
    } else if (get(in, at(1, 0), 1) != 0) {
        apply(rx_c, in, out);
        if (get(in, at(1, 2), 1) != 0) {
            out[4] = static_cast<std::uint8_t>(in[28] + 7);
        }
        if (get(in, at(1, 1), 1) != 0) {
            out[4] = in[29];
        }
    } else if (get(in, at(1, 3), 1) != 0) {
        apply(rx_d, in, out);
        out[7] = static_cast<std::uint8_t>(out[7] | (in[12] & 1) << 4);
    } else {
        apply(rx_e, in, out);
        const unsigned range = in[8];
        const std::uint64_t index = get(in, at(4), 16) | (range == 4 ? 0x0800 : range == 8 ? 0x0c00 : 0);
        set(out, at(6), 16, index >> 8 | (index & 0xff) << 8);
    }
    *physical_length = 16;
    return NPXLATE_OK;
}

std::int32_t multicast_node(const void* logical, std::int32_t, void* physical, std::uint32_t* physical_length) {
    const auto* in = static_cast<const std::uint8_t*>(logical);
    auto* out = static_cast<std::uint8_t*>(physical);
    std::memset(out, 0, 32);
    apply(node, in, out);
    const std::uint64_t type = get(in, at(36), 32);
    const std::uint64_t code = type == 3 || type == 4 ? 3 : type & 0xf;
    out[8] = static_cast<std::uint8_t>(out[8] | code << 4);
    if (get(in, at(1, 2), 1) != 0) {
        apply(node_suppressed, in, out);
    }
    *physical_length = 32;
    return NPXLATE_OK;
}

std::int32_t cross_connect(const void* logical, std::int32_t, void* physical, std::uint32_t* physical_length) {
    const auto* in = static_cast<const std::uint8_t*>(logical);
    auto* out = static_cast<std::uint8_t*>(physical);
    if (get(in, at(8), 32) != 3) {
        return NPXLATE_INVALID;
    }
    std::memset(out, 0, 32);
    apply(cross_common, in, out);
    set(out, at(2, 0), 1, get(in, at(2, 7), 1) != 0 || get(in, at(53), 24) != 0 || get(in, at(3, 0), 1) != 0);
    set(out, at(2, 1), 1, get(in, at(3, 3), 4) != 0);
    if (get(in, at(4, 4), 1) != 0) {
        apply(cross_value, in, out);
    } else {
        apply(cross_label, in, out);
        const std::uint64_t label = get(in, at(60), 20) << 4 | 1;
        set(out, at(7), 24, __builtin_bswap64(label) >> 40);
    }
    if (get(in, at(1, 5), 1) != 0) {
        apply(cross_set, in, out);
    } else {
        apply(cross_clear, in, out);
        const std::uint64_t code = get(in, at(12), 32);
        set(out, at(20, 7), 1, code == 3 || code == 4);
    }
    *physical_length = 32;
    return NPXLATE_OK;
}

}  // namespace comparison::tables
