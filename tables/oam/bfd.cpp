// BFD offload: transmit encapsulation (table 108), transmit payload (table 109), receive (table 110). The tables hold
// CFM entries too: an entry of that type goes to the CFM translators as it is.

#include "frame/helpers.h"
#include "frame/within.h"

using namespace npxlate;

NPXLATE_CALLS_WITHIN(cfm_hwo_xlate_tx_result)
NPXLATE_CALLS_WITHIN(cfm_logical_hwo_xlate_tx_result)
NPXLATE_CALLS_WITHIN(cfm_hwo_xlate_tx2_result)
NPXLATE_CALLS_WITHIN(cfm_logical_hwo_xlate_tx2_result)
NPXLATE_CALLS_WITHIN(cfm_hwo_xlate_rx_result)
NPXLATE_CALLS_WITHIN(cfm_logical_hwo_xlate_rx_result)

namespace {

constexpr std::size_t encapsulation_size = 96;
constexpr std::size_t payload_size = 64;
constexpr std::size_t receive_size = 24;

constexpr std::uint32_t cfm_type = 1;
constexpr std::uint32_t discriminator_type = 2;

constexpr Layout transmit_key{
    copied(P(2), L(1)),
    copied(P(3), L(0)),
};

constexpr Layout transmit_key_swapped{
    "swapped",
    swapped(P(0), L(2), 2),
};

constexpr Layout transmit_key_kept{
    "byte order kept",
    copied(P(0), L(2), 2),
};

constexpr Layout header{
    bits(P(0, 7, 5), L(0, 7, 5)),
    constant(P(0, 4), 1),
    bits(P(0, 3, 1), L(0, 3, 1)),
    constant(P(0, 0), 1),
};

// P32, where a CFM entry has its type, stays zero.
constexpr Layout encapsulation{
    "BFD encapsulation",
    copied(P(1), L(1)),
    swapped(P(2), L(2), 4),
    copied(P(6), L(6), 10),
    swapped(P(16), L(16), 4),
    copied(P(20), L(20), 12),
    copied(P(33), L(33), 31),
    copied(P(65), L(65), 31),
};

constexpr Layout payload{
    "BFD payload",
    copied(P(1), L(1)),
    constant(P(32), 1),
};

constexpr Layout payload_whole{
    "BFD payload, whole",
    copied(P(4), L(4), 24),
};

constexpr Layout payload_word{
    "BFD payload, one word",
    copied(P(12), L(12), 4),
};

constexpr Layout receive{
    "BFD receive",
    copied(P(1), L(1)),
    copied(P(2), L(2)),
    copied(P(3), L(3)),
    copied(P(4), L(4), 3).repeated(5, P(4), L(4)),
    copied(P(7), L(7)).named("type"),
};

constexpr Layout discriminator{
    "BFD discriminator",
    copied(P(1), L(1), 3),
    constant(P(4), 0),
    bits(P(5, 5, 0), L(5, 5, 0)),
    copied(P(7), L(7)).named("type"),
    copied(P(8), L(8), 3),
    copied(P(12), L(12), 3),
    copied(P(16), L(16)),
};

// The reverses keep other bits of byte 0 than the results, swap nothing back, and know neither discriminator entries
// nor their type in P7; all of it intended.
constexpr Layout restored_header{
    bits(L(0, 7, 4), P(0, 7, 4)),
    bit(L(0, 0), P(0, 0)),
};

constexpr Layout restored_encapsulation{
    "BFD encapsulation",
    copied(L(1), P(1)),
    copied(L(2), P(2), 4),
    copied(L(6), P(6), 10),
    copied(L(16), P(16), 4),
    copied(L(20), P(20), 12),
    copied(L(33), P(33), 31),
    copied(L(65), P(65), 31),
};

constexpr Layout restored_payload{
    "BFD payload",
    copied(L(1), P(1)),
    bit(L(32, 0), P(32, 0)),
};

constexpr Layout restored_payload_whole = mirrored(payload_whole);

constexpr Layout restored_payload_word = mirrored(payload_word);

constexpr Layout restored_receive{
    "BFD receive",
    copied(L(1), P(1)),
    copied(L(2), P(2)),
    copied(L(3), P(3)),
    copied(L(4), P(4), 3).repeated(5, L(4), P(4)),
};

}  // namespace

std::int32_t bfd_hw_offload_xlate_tx_key(const void* logical, std::int32_t, void* physical,
                                         std::uint32_t* physical_length) {
    const LogicalSource<4> in{logical};
    PhysicalRecord<4> out;
    place<transmit_key>(out, in);
    const Number kind = in.byte(L(1));
    if (kind == 2 || kind == 4) {
        place<transmit_key_swapped>(out, in);
    } else {
        place<transmit_key_kept>(out, in);
    }
    return finish(out, physical, physical_length);
}

std::int32_t bfd_hw_offload_xlate_encap_result(const void* logical, std::int32_t logical_length, void* physical,
                                               std::uint32_t* physical_length) {
    const LogicalSource<encapsulation_size> in{logical};
    if (in.bits(L(32, 7, 4)) == cfm_type) {
        return NPXLATE_WITHIN(cfm_hwo_xlate_tx_result)(logical, logical_length, physical, physical_length);
    }
    PhysicalRecord<encapsulation_size> out;
    place<header>(out, in);
    place<encapsulation>(out, in);
    return finish(out, physical, physical_length);
}

std::int32_t bfd_logical_hw_offload_xlate_encp_result(const void* physical, std::int32_t physical_length,
                                                      void* logical) {
    const PhysicalSource<encapsulation_size> in{physical};
    if (in.bits(P(32, 7, 4)) == cfm_type) {
        return NPXLATE_WITHIN(cfm_logical_hwo_xlate_tx_result)(physical, physical_length, logical);
    }
    LogicalRecord<encapsulation_size> out;
    place<restored_header>(out, in);
    place<restored_encapsulation>(out, in);
    return finish(out, logical);
}

std::int32_t bfd_hw_offload_xlate_payload_result(const void* logical, std::int32_t logical_length, void* physical,
                                                 std::uint32_t* physical_length) {
    const LogicalSource<payload_size> in{logical};
    if (in.bits(L(2, 3, 0)) == cfm_type) {
        return NPXLATE_WITHIN(cfm_hwo_xlate_tx2_result)(logical, logical_length, physical, physical_length);
    }
    PhysicalRecord<payload_size> out;
    place<header>(out, in);
    place<payload>(out, in);
    if (in.bit(L(0, 5))) {
        place<payload_word>(out, in);
    } else {
        place<payload_whole>(out, in);
    }
    return finish(out, physical, physical_length);
}

// A CFM entry has its type in P2.7-4, so its own P2.3-0 is 0 and it is read back as a BFD entry; kept on purpose.
std::int32_t bfd_logical_hw_offload_xlate_payload_result(const void* physical, std::int32_t physical_length,
                                                         void* logical) {
    const PhysicalSource<payload_size> in{physical};
    if (in.bits(P(2, 3, 0)) == cfm_type) {
        return NPXLATE_WITHIN(cfm_logical_hwo_xlate_tx2_result)(physical, physical_length, logical);
    }
    LogicalRecord<payload_size> out;
    place<restored_header>(out, in);
    place<restored_payload>(out, in);
    if (in.bit(P(0, 5))) {
        place<restored_payload_word>(out, in);
    } else {
        place<restored_payload_whole>(out, in);
    }
    return finish(out, logical);
}

// CFM, discriminator and BFD keys are the same five bytes, so that the type in L4 decides nothing.
std::int32_t bfd_hw_offload_xlate_rx_key(const void* logical, std::int32_t, void* physical,
                                         std::uint32_t* physical_length) {
    return copy_key<5>(logical, physical, physical_length);
}

std::int32_t bfd_disc_xlate_rx_key(const void* logical, std::int32_t, void* physical, std::uint32_t* physical_length) {
    return copy_key<5>(logical, physical, physical_length);
}

std::int32_t bfd_hw_offload_xlate_rx_result(const void* logical, std::int32_t logical_length, void* physical,
                                            std::uint32_t* physical_length) {
    const LogicalSource<receive_size> in{logical};
    const Number type = in.byte(L(7));
    if (type == cfm_type) {
        return NPXLATE_WITHIN(cfm_hwo_xlate_rx_result)(logical, logical_length, physical, physical_length);
    }
    if (type == discriminator_type) {
        return bfd_disc_xlate_rx_result(logical, logical_length, physical, physical_length);
    }
    PhysicalRecord<receive_size> out;
    place<header>(out, in);
    place<receive>(out, in);
    return finish(out, physical, physical_length);
}

std::int32_t bfd_disc_xlate_rx_result(const void* logical, std::int32_t, void* physical,
                                      std::uint32_t* physical_length) {
    // Nothing above L16 is read, but the record is as long as those with which it shares the table.
    const LogicalSource<receive_size> in{logical};
    PhysicalRecord<receive_size> out;
    place<header>(out, in);
    place<discriminator>(out, in);
    return finish(out, physical, physical_length);
}

std::int32_t bfd_logical_hw_offload_xlate_rx_result(const void* physical, std::int32_t physical_length, void* logical) {
    const PhysicalSource<receive_size> in{physical};
    if (in.byte(P(7)) == cfm_type) {
        return NPXLATE_WITHIN(cfm_logical_hwo_xlate_rx_result)(physical, physical_length, logical);
    }
    LogicalRecord<receive_size> out;
    place<restored_header>(out, in);
    place<restored_receive>(out, in);
    return finish(out, logical);
}
