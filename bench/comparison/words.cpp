// As a careful engineer writes it by hand: bytes read once, flags moved together where they keep their distance, words
// put together in registers and stored once. For little-endian machines.

#include "comparison/comparison.h"

#include <cstring>

namespace comparison::words {
namespace {

std::uint32_t load16(const std::uint8_t* at) {
    std::uint16_t value;
    std::memcpy(&value, at, sizeof value);
    return value;
}

std::uint32_t load32(const std::uint8_t* at) {
    std::uint32_t value;
    std::memcpy(&value, at, sizeof value);
    return value;
}

std::uint32_t load24(const std::uint8_t* at) { return load16(at) | std::uint32_t{at[2]} << 16; }

void store(void* to, std::uint64_t first, std::uint64_t second) {
    const std::uint64_t words[2] = {first, second};
    std::memcpy(to, words, sizeof words);
}

std::uint32_t swapped16(std::uint32_t value) { return __builtin_bswap16(static_cast<std::uint16_t>(value)); }
std::uint32_t swapped24(std::uint32_t value) { return __builtin_bswap32(value) >> 8; }
std::uint32_t swapped32(std::uint32_t value) { return __builtin_bswap32(value); }

std::uint64_t wide(std::uint32_t value) { return value; }

}  // namespace

std::int32_t rx_adjacency(const void* logical, std::int32_t, void* physical, std::uint32_t* physical_length) {
    const auto* in = static_cast<const std::uint8_t*>(logical);
    const std::uint32_t l0 = in[0];
    const std::uint32_t l1 = in[1];
    const std::uint32_t l2 = in[2];

    std::uint32_t flags = 0x91 | (l1 & 0x20) << 1 | (l0 & 0x10) << 1;
    flags |= (l1 & 0x07) << 8 | (l1 & 0x10) << 7 | (l1 & 0x40) << 6 | (l1 & 0x08) << 10 | (l2 & 0x04) << 12;
    flags |= (l0 & 0x04) << 14 | (l0 & 0x02) << 16 | (l0 & 0x08) << 15 | (l0 & 0x01) << 19 | (l1 & 0x80) << 15;
    flags |= (l0 & 0x20) << 26;

    std::uint32_t second = 0;  // P4-7
    std::uint32_t fourth = 0;  // P12-15
    if ((l0 & 0x20) != 0) {
        flags |= (l2 & 0x01) << 29;
        second = load16(in + 21) | swapped16(load16(in + 16)) << 16;
        fourth = (l2 & 0x01) != 0 ? swapped24(load24(in + 12)) << 8 : load32(in + 12);
    } else if ((l0 & 0x40) != 0) {
        flags |= (l2 & 0x02) << 28;
        second = swapped16(load16(in + 20)) << 16;
        fourth = load32(in + 12);
    } else if ((l1 & 0x01) != 0) {
        second = load16(in + 4) << 16;
        if ((l1 & 0x02) != 0) {
            second |= in[29];
        } else if ((l1 & 0x04) != 0) {
            second |= (in[28] + 7U) & 0xff;
        }
    } else if ((l1 & 0x08) != 0) {
        flags |= 0x20 | 1U << 30 | (l2 & 0x08) << 25;
        const std::uint32_t value = load32(in + 12);
        second = (value >> 1 & 0xffffff) << 8 | (value & 1) << 28;
        fourth = load32(in + 16);
    } else {
        std::uint32_t index = load16(in + 4);
        if (in[8] == 4) {
            index |= 0x0800;
        } else if (in[8] == 8) {
            index |= 0x0c00;
        }
        second = swapped16(index) << 16;
        fourth = load16(in + 12);
    }
    store(physical, flags | wide(second) << 32, swapped32(load32(in + 24)) | wide(fourth) << 32);
    *physical_length = 16;
    return NPXLATE_OK;
}

std::int32_t multicast_node(const void* logical, std::int32_t, void* physical, std::uint32_t* physical_length) {
    const auto* in = static_cast<const std::uint8_t*>(logical);
    auto* out = static_cast<std::uint8_t*>(physical);
    const std::uint32_t l0 = in[0];
    const std::uint32_t l1 = in[1];
    const std::uint32_t l40 = in[40];

    std::uint32_t flags = 0x11 | (l0 & 0x80) | (l40 & 0x08) << 3 | (l1 & 0x08) << 2;
    flags |= (l0 & 0x01) << 15 | (l40 & 0x04) << 11 | (in[28] & 0x01U) << 12 | (l0 & 0x10) << 7 | (l0 & 0x40) << 4 |
             (l40 & 0x01) << 9;
    flags |= (l1 & 0x04) << 21 | (l40 & 0x02) << 21 | (~l1 & 0x01) << 21 | (l0 & 0x08) << 16 | (l0 & 0x02) << 17 |
             (l0 & 0x20) << 12 | (l0 & 0x04) << 14;
    if ((l1 & 0x04) == 0) {
        flags |= (in[29] & 0x01U) << 14;
    }
    const std::uint32_t type = load32(in + 36);
    const std::uint32_t code = type == 3 || type == 4 ? 3 : type & 0xf;
    const std::uint32_t index = load24(in + 41) | code << 20;

    const std::uint64_t first = flags | wide(load24(in + 20)) << 24 | wide(index) << 48;
    const std::uint64_t second =
        index >> 16 | wide(swapped32(load32(in + 4))) << 8 | wide(swapped24(load24(in + 8))) << 40;
    store(out, first, second);
    const std::uint32_t fourth = load32(in + 16);
    const std::uint64_t third =
        swapped24(load24(in + 12)) | wide(swapped24(load24(in + 24))) << 24 | wide(swapped32(fourth)) << 48;
    store(out + 16, third, swapped32(fourth) >> 16 | wide(swapped16(load16(in + 30))) << 16);
    *physical_length = 32;
    return NPXLATE_OK;
}

std::int32_t cross_connect(const void* logical, std::int32_t, void* physical, std::uint32_t* physical_length) {
    const auto* in = static_cast<const std::uint8_t*>(logical);
    auto* out = static_cast<std::uint8_t*>(physical);
    if (load32(in + 8) != 3) {
        return NPXLATE_INVALID;
    }
    const std::uint32_t l0 = in[0];
    const std::uint32_t l1 = in[1];
    const std::uint32_t l2 = in[2];
    const std::uint32_t l3 = in[3];
    const std::uint32_t l4 = in[4];
    const std::uint32_t value_53 = load24(in + 53);

    std::uint32_t flags = 0x91 | (l0 & 0x40) >> 1;
    flags |= (~l1 & 0x02) << 7 | (l4 & 0x10) << 6 | (l3 & 0x08) << 8 | (l0 & 0x04) << 10 | (l0 & 0x80) << 6 |
             (l1 & 0x01) << 14;
    flags |= (l0 & 0x20) << 13 | (l2 & 0x40) << 13 | (l3 & 0x02) << 22;
    flags |= (l1 & 0x1c) << 22 | (l0 & 0x03) << 27 | (l1 & 0x80) << 22 | (l1 & 0x40) << 24 | (l3 & 0x80) << 24;
    if ((l2 & 0x80) != 0 || value_53 != 0 || (l3 & 0x01) != 0) {
        flags |= 1U << 16;
    }
    if ((l3 & 0x78) != 0) {
        flags |= 1U << 17;
    }

    const std::uint64_t first = flags | wide(load24(in + 76)) << 32;
    const std::uint64_t second = wide(in[57]) << 32 | wide(in[56]) << 40 | wide(load16(in + 58)) << 48;
    // P7-11
    const std::uint64_t target = (l4 & 0x10) != 0
                                     ? load32(in + 64) & 0xfffff
                                     : swapped24((load32(in + 60) << 4 & 0xfffff0) | 1) | wide(load16(in + 72)) << 24;
    store(out, first | target << 56, second | target >> 8);

    std::uint64_t third;
    std::uint64_t fourth = (l2 & 0x10) << 18 | (l3 & 0x01) << 21 | (l2 & 0x01) << 18 | (l2 & 0x06) << 15 |
                           wide(value_53 & 0xfffff) << 28 | (l4 & 0x01) << 27 | (l4 & 0x0e) << 23;
    fourth |= wide((l3 & 0x10) << 3 | (l3 & 0x20) << 1 | (l3 & 0x40) >> 1) << 48;
    if ((l1 & 0x20) != 0) {
        const std::uint32_t value_36 = load24(in + 36);
        third = load16(in + 44) | wide(load24(in + 28)) << 24 | wide(in[32] & 0x03) << 48 | wide(value_36) << 56;
        fourth |= value_36 >> 8 | 1U << 20 | wide(in[24]) << 56;
    } else {
        const std::uint32_t code = load32(in + 12);
        third = load32(in + 40) | wide(code == 3 || code == 4) << 39;
    }
    store(out + 16, third, fourth);
    *physical_length = 32;
    return NPXLATE_OK;
}

}  // namespace comparison::words
