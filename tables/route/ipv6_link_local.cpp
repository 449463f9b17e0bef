// IPv6 link-local address, table 90: an address with the 32-bit number of its interface or domain. Read back by the
// generic reverse.

#include "frame/helpers.h"

using namespace npxlate;

namespace {

constexpr std::int32_t qualifier_length = 4;
constexpr std::int32_t key_length = 20;

constexpr Layout qualifier{
    "qualifier",
    swapped(P(16), L(0), qualifier_length).named("qualifier"),
};

constexpr Layout address{
    "address",
    swapped(P(0), L(4), key_length - qualifier_length).named("link-local address"),
};

constexpr Layout result{
    header_byte(P(0)),
    copied(P(5), L(0), 3),
};

}  // namespace

std::int32_t ipv6_ll_xlate_hash_key(const void* logical, std::int32_t logical_length, void* physical,
                                    std::uint32_t* physical_length) {
    if (logical == nullptr || physical == nullptr || physical_length == nullptr) {
        return NPXLATE_OK;
    }
    PhysicalRecord<key_length> out;
    if (logical_length >= qualifier_length) {
        place<qualifier>(out, LogicalSource<qualifier_length>{logical});
    }
    if (logical_length == key_length) {
        place<address>(out, LogicalSource<key_length>{logical});
        return finish(out, physical, physical_length);
    }
    out.store(physical);
    // What there is of an address is turned round. A longer one goes on over the qualifier, up to the end of the
    // physical key.
    if (logical_length > qualifier_length) {
        const std::int32_t address_length = logical_length - qualifier_length;
        const std::int32_t count = address_length < key_length ? address_length : key_length;
        reverse_byte_copy(physical, logical, logical_length - count, count);
    }
    *physical_length = key_length;
    return NPXLATE_OK;
}

std::int32_t ipv6_ll_xlate_hash_result(const void* logical, std::int32_t, void* physical,
                                       std::uint32_t* physical_length) {
    return place_only<result, 3, 8>(logical, physical, physical_length);
}
