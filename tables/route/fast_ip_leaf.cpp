// Fast-path IP leaves, tables 121 (IPv4) and 42 (IPv6): the destination address gives three bytes. Read back by the
// generic reverse.

#include "frame/helpers.h"

using namespace npxlate;

namespace {

constexpr std::int32_t ipv4_length = 4;
constexpr std::int32_t ipv6_length = 16;

constexpr Layout ipv4_key{
    swapped(P(0), L(0), ipv4_length).named("destination address"),
};

constexpr Layout ipv6_key{
    swapped(P(0), L(0), ipv6_length).named("destination address"),
};

}  // namespace

std::int32_t ipv4_leaf_fastip_xlate_key(const void* logical, std::int32_t logical_length, void* physical,
                                        std::uint32_t* physical_length) {
    if (logical == nullptr || physical == nullptr || physical_length == nullptr) {
        return NPXLATE_OK;
    }
    const LogicalSource<ipv4_length> in{logical};
    PhysicalRecord<ipv4_length> out;
    place<ipv4_key>(out, in);
    if (logical_length == ipv4_length) {
        return finish(out, physical, physical_length);
    }
    // Never more bytes than the length says: the address is cut short, or zeros follow it.
    if (logical_length > 0) {
        clear_bytes(physical, logical_length);
        out.store_first(physical, logical_length);
    }
    *physical_length = static_cast<std::uint32_t>(logical_length);
    return NPXLATE_OK;
}

std::int32_t ipv6_leaf_fastip_xlate_key(const void* logical, std::int32_t logical_length, void* physical,
                                        std::uint32_t* physical_length) {
    if (logical == nullptr || physical == nullptr || physical_length == nullptr) {
        return NPXLATE_OK;
    }
    if (logical_length == ipv6_length) {
        return place_only<ipv6_key, ipv6_length, ipv6_length>(logical, physical, physical_length);
    }
    reverse_byte_copy(physical, logical, 0, logical_length);
    *physical_length = static_cast<std::uint32_t>(logical_length);
    return NPXLATE_OK;
}

std::int32_t ip_leaf_fastip_xlate_result(const void* logical, std::int32_t, void* physical,
                                         std::uint32_t* physical_length) {
    return place_only<short_result, 3, 4>(logical, physical, physical_length);
}
