// CFM offload: connectivity-fault-management sessions that the network processor runs by itself. These entries have no
// table of their own: they are translated by name, and by the BFD translators, in whose tables they stand.

#include "frame/helpers.h"
#include "frame/within.h"

using namespace npxlate;

namespace {

constexpr std::size_t transmit_size = 96;
constexpr std::size_t second_transmit_size = 64;
constexpr std::size_t receive_size = 24;

constexpr Layout transmit{
    "CFM transmit",
    constant(P(0, 7, 6), 0),
    bit(P(0, 5), L(0, 5)),
    header_byte(P(0, 4, 0)),
    copied(P(1), L(1)),
    swapped(P(2), L(2), 4),
    swapped(P(6), L(6), 4),
    copied(P(10), L(10)),
    copied(P(11), L(11)),
    copied(P(12), L(12), 6),
    copied(P(18), L(18), 6),
    copied(P(24), L(24), 8),
    bits(P(32, 7, 4), L(32, 7, 4)).named("type"),
    constant(P(32, 3, 0), 1),
    swapped(P(33), L(33), 2),
    swapped(P(35), L(35), 3).repeated(4, P(3), L(3)),
    bits(P(47, 7, 5), L(47, 2, 0)),
    copied(P(48), L(48)),
    bit(P(49, 7), L(49, 0)),
    bits(P(49, 2, 0), L(49, 7, 5)),
    constant(P(50), 0x46),
    swapped(P(51), L(51), 2),
    copied(P(53), L(53), 11),
    bits(P(64, 7, 4), L(64, 7, 4)),
    constant(P(64, 3, 0), 1),
    copied(P(65), L(65), 31),
};

constexpr Layout second_transmit{
    "second CFM transmit",
    header_byte(P(0)),
    copied(P(1), L(1)),
    bits(P(2, 7, 4), L(2, 3, 0)).named("type"),
    copied(P(3), L(3), 6),
    copied(P(9), L(9), 23),
    constant(P(32), 1),
    copied(P(33), L(33), 31),
};

constexpr Layout receive{
    "CFM receive",
    bits(P(0, 7, 6), L(0, 7, 6)),
    constant(P(0, 5), 0),  // L0.5 is dropped
    constant(P(0, 4), 1),
    bits(P(0, 3, 1), L(0, 3, 1)),
    constant(P(0, 0), 1),
    copied(P(1), L(1), 2),
    swapped(P(4), L(4), 3),
    copied(P(7), L(7)).named("type"),
    swapped(P(8), L(8), 3),
    swapped(P(12), L(12), 3),
    copied(P(16), L(16), 4),
};

// The reverses swap nothing back, and put the header and the constants of the physical record into the logical one; all
// of it intended.
constexpr Layout restored_transmit{
    "CFM transmit",
    constant(L(0), result_header),
    copied(L(1), P(1)),
    copied(L(2), P(2), 4),
    copied(L(6), P(6), 4),
    copied(L(10), P(10)),
    copied(L(11), P(11)),
    copied(L(12), P(12), 20),
    bits(L(32, 7, 4), P(32, 7, 4)).named("type"),
    constant(L(32, 3, 0), 1),
    copied(L(33), P(33), 2),
    copied(L(35), P(35), 12),
    bits(L(47, 2, 0), P(47, 7, 5)),
    copied(L(48), P(48)),
    bit(L(49, 0), P(49, 7)),
    bits(L(49, 7, 5), P(49, 2, 0)),
    copied(L(50), P(50)),
    copied(L(51), P(51), 2),
    copied(L(53), P(53), 11),
    bits(L(64, 7, 4), P(64, 7, 4)),
    constant(L(64, 3, 0), 1),
    copied(L(65), P(65), 31),
};

constexpr Layout restored_second_transmit{
    "second CFM transmit",
    constant(L(0), result_header),
    copied(L(1), P(1)),
    bits(L(2, 3, 0), P(2, 7, 4)).named("type"),
    copied(L(3), P(3), 29),
    constant(L(32), 1),
    copied(L(33), P(33), 31),
};

constexpr Layout restored_receive{
    "CFM receive",
    bits(L(0, 7, 6), P(0, 7, 6)),
    constant(L(0, 5), 0),
    constant(L(0, 4), 1),
    bits(L(0, 3, 1), P(0, 3, 1)),
    constant(L(0, 0), 1),
    copied(L(1), P(1), 2),
    copied(L(4), P(4), 3),
    copied(L(7), P(7)).named("type"),
    copied(L(8), P(8), 3),
    copied(L(12), P(12), 3),
    copied(L(16), P(16), 4),
};

}  // namespace

std::int32_t cfm_hwo_xlate_tx_key(const void* logical, std::int32_t, void* physical, std::uint32_t* physical_length) {
    return copy_key<4>(logical, physical, physical_length);
}

std::int32_t cfm_hwo_xlate_rx_key(const void* logical, std::int32_t, void* physical, std::uint32_t* physical_length) {
    return copy_key<5>(logical, physical, physical_length);
}

std::int32_t cfm_hwo_xlate_tx_result(const void* logical, std::int32_t, void* physical,
                                     std::uint32_t* physical_length) {
    return place_only<transmit, transmit_size, transmit_size>(logical, physical, physical_length);
}

std::int32_t cfm_logical_hwo_xlate_tx_result(const void* physical, std::int32_t, void* logical) {
    return place_only<restored_transmit, transmit_size, transmit_size>(physical, logical);
}

std::int32_t cfm_hwo_xlate_tx2_result(const void* logical, std::int32_t, void* physical,
                                      std::uint32_t* physical_length) {
    return place_only<second_transmit, second_transmit_size, second_transmit_size>(logical, physical, physical_length);
}

std::int32_t cfm_logical_hwo_xlate_tx2_result(const void* physical, std::int32_t, void* logical) {
    return place_only<restored_second_transmit, second_transmit_size, second_transmit_size>(physical, logical);
}

std::int32_t cfm_hwo_xlate_rx_result(const void* logical, std::int32_t, void* physical,
                                     std::uint32_t* physical_length) {
    return place_only<receive, receive_size, receive_size>(logical, physical, physical_length);
}

std::int32_t cfm_logical_hwo_xlate_rx_result(const void* physical, std::int32_t, void* logical) {
    return place_only<restored_receive, receive_size, receive_size>(physical, logical);
}

NPXLATE_CALLED_WITHIN(cfm_hwo_xlate_tx_result)
NPXLATE_CALLED_WITHIN(cfm_logical_hwo_xlate_tx_result)
NPXLATE_CALLED_WITHIN(cfm_hwo_xlate_tx2_result)
NPXLATE_CALLED_WITHIN(cfm_logical_hwo_xlate_tx2_result)
NPXLATE_CALLED_WITHIN(cfm_hwo_xlate_rx_result)
NPXLATE_CALLED_WITHIN(cfm_logical_hwo_xlate_rx_result)
