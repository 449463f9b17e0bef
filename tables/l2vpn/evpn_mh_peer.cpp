// EVPN multi-homing peer, table 30. The table also holds the records by which PBB-EVPN finds the backbone MAC address
// of an Ethernet segment; these have their own names too.

#include "frame/helpers.h"

using namespace npxlate;

namespace {

constexpr std::size_t key_logical_size = 12;
constexpr std::size_t key_physical_size = 7;
constexpr std::size_t backbone_mac_logical_size = 10;
constexpr std::size_t peer_logical_size = 4;
constexpr std::size_t restored_logical_size = 12;  // as far as it is cleared, in both forms
constexpr std::size_t physical_size = 8;

constexpr Layout backbone_mac_key{
    "PBB-EVPN",
    cleared(P(0), 4),
    any(P(4, 0), L(8)),
    constant(P(4, 3, 1), 0),
    run(P(4, 4), L(9, 0), 20),
};

constexpr Layout backbone_mac_result{
    "PBB-EVPN",
    header_byte(P(0)),
    constant(P(1), 0),
    copied(P(2), L(4), 6).named("backbone MAC address"),
};

constexpr Layout restored_backbone_mac = mirrored(backbone_mac_result);

constexpr Layout peer_key{
    "peer",
    copied(P(0), L(4), 4),
    run(P(4, 0), L(9, 0), 20),
};

constexpr Layout peer_result{
    "peer",
    header_byte(P(0), 0x91),  // this form's header; P0.7 tells it from the other
    copied(P(4), L(1), 3),
};

constexpr Layout restored_peer = mirrored(peer_result);

}  // namespace

std::int32_t pbbevpn_esi_bmac_type_xlate_key(const void* logical, std::int32_t, void* physical,
                                             std::uint32_t* physical_length) {
    return place_only<backbone_mac_key, key_logical_size, key_physical_size>(logical, physical, physical_length);
}

std::int32_t pbbevpn_esi_bmac_type_xlate_result(const void* logical, std::int32_t, void* physical,
                                                std::uint32_t* physical_length) {
    return place_only<backbone_mac_result, backbone_mac_logical_size, physical_size>(logical, physical, physical_length);
}

std::int32_t pbbevpn_esi_bmac_type_logical_xlate_result(const void* physical, std::int32_t, void* logical) {
    return place_only<restored_backbone_mac, physical_size, restored_logical_size>(physical, logical);
}

std::int32_t evpn_mh_peer_type_xlate_key(const void* logical, std::int32_t logical_length, void* physical,
                                         std::uint32_t* physical_length) {
    const LogicalSource<key_logical_size> in{logical};
    if (in.bit(L(0, 0))) {
        return pbbevpn_esi_bmac_type_xlate_key(logical, logical_length, physical, physical_length);
    }
    return place_only<peer_key, key_logical_size, key_physical_size>(logical, physical, physical_length);
}

std::int32_t evpn_mh_peer_type_xlate_result(const void* logical, std::int32_t logical_length, void* physical,
                                            std::uint32_t* physical_length) {
    const LogicalSource<peer_logical_size> in{logical};
    if (in.bit(L(0, 0))) {
        return pbbevpn_esi_bmac_type_xlate_result(logical, logical_length, physical, physical_length);
    }
    return place_only<peer_result, peer_logical_size, physical_size>(logical, physical, physical_length);
}

// Neither form restores L0.0.
std::int32_t evpn_mh_peer_type_logical_xlate_result(const void* physical, std::int32_t physical_length, void* logical) {
    const PhysicalSource<physical_size> in{physical};
    if (!in.bit(P(0, 7))) {
        return pbbevpn_esi_bmac_type_logical_xlate_result(physical, physical_length, logical);
    }
    return place_only<restored_peer, physical_size, restored_logical_size>(physical, logical);
}
