#include "catalogue/catalogue.h"

namespace catalogue {

std::vector<Translator> l2vpn() {
    return {
        // The cross-connect keys clear one byte more than they report.
        NPXLATE_KEY(xid_type_xlate_key, 4, Lengths{3, 4}),
        NPXLATE_RESULT(xid_type_xlate_result, 92, 32)
            .with(Trait::rejects_records)
            .with_samples({
                {"type 1", "L8-11=1 L1.5=1"},
                {"type 1, L1.5 clear", "L8-11=1 L1.5=0 L12-15=3"},
                {"type 2", "L8-11=2 L1.5=1"},
                {"type 2, L1.5 clear", "L8-11=2 L1.5=0 L12-15=4"},
                {"type 3, label", "L8-11=3 L4.4=0 L1.5=1"},
                {"type 3, label, L1.5 clear", "L8-11=3 L4.4=0 L1.5=0 L12-15=5"},
                {"type 3, value", "L8-11=3 L4.4=1 L1.5=1"},
                {"type 3, value, L1.5 clear", "L8-11=3 L4.4=1 L1.5=0"},
                {"type 4, label", "L8-11=4 L4.4=0 L1.5=1"},
                {"type 4, label, L1.5 clear", "L8-11=4 L4.4=0 L1.5=0"},
                {"type 4, value", "L8-11=4 L4.4=1 L1.5=1"},
                {"type 4, value, L1.5 clear", "L8-11=4 L4.4=1 L1.5=0"},
                {"type 5", "L8-11=5 L1.5=1"},
                {"type 5, L1.5 clear", "L8-11=5 L1.5=0"},
                {"type 6", "L8-11=6 L1.5=1"},
                {"type 6, L1.5 clear", "L8-11=6 L1.5=0"},
                {"type 7", "L8-11=7 L1.5=1"},
                {"type 7, L1.5 clear", "L8-11=7 L1.5=0"},
                {"type 8", "L8-11=8 L1.5=1"},
                {"type 8, L1.5 clear", "L8-11=8 L1.5=0"},
                {"type 9", "L8-11=9 L1.5=1"},
                {"type 9, L1.5 clear", "L8-11=9 L1.5=0"},
                {"type 10", "L8-11=10 L1.5=1"},
                {"type 10, L1.5 clear", "L8-11=10 L1.5=0"},
                {"type 11, selector 0", "L8-11=11 L60=0 L1.5=1"},
                {"type 11, selector 0, L1.5 clear", "L8-11=11 L60=0 L1.5=0"},
                {"type 11, selector 1", "L8-11=11 L60=1 L1.5=1"},
                {"type 11, selector 2", "L8-11=11 L60=2 L1.5=0"},
                {"type 11, selector rejected", "L8-11=11 L60=3"},
                {"type 0, rejected", "L8-11=0"},
                {"type 12, rejected", "L8-11=12"},
            }),
        NPXLATE_REVERSE(xid_type_logical_xlate_result, 92, 32)
            .with_samples({
                {"type 1", "P1.7=1 P26.4=1"},
                {"type 1, P26.4 clear", "P1.7=1 P26.4=0"},
                {"type 2", "P1.7=0 P0.6=1 P26.4=1"},
                {"type 2, P26.4 clear", "P1.7=0 P0.6=1 P26.4=0"},
                {"type 3, label", "P1.7=0 P0.6=0 P0.7=1 P2.5=0 P2.4=0 P1.2=0 P26.4=1"},
                {"type 3, value", "P1.7=0 P0.6=0 P0.7=1 P2.5=0 P2.4=0 P1.2=1 P26.4=0"},
                {"type 4, label", "P1.7=0 P0.6=0 P0.7=1 P2.5=1 P2.4=0 P1.2=0 P26.4=0"},
                {"type 4, value", "P1.7=0 P0.6=0 P0.7=1 P2.5=1 P2.4=0 P1.2=1 P26.4=1"},
                {"type 5 or 8", "P1.7=0 P0.6=0 P0.7=0 P1.1=0 P26.3=0 P2.5=0 P26.4=1"},
                {"type 5 or 8, P26.4 clear", "P1.7=0 P0.6=0 P0.7=0 P1.1=0 P26.3=0 P2.5=0 P26.4=0"},
                {"type 6", "P1.7=0 P0.6=0 P0.7=1 P2.5=1 P2.4=1 P1.1=0 P26.3=0 P26.4=1"},
                {"type 6, P26.4 clear", "P1.7=0 P0.6=0 P0.7=1 P2.5=1 P2.4=1 P1.1=0 P26.3=0 P26.4=0"},
                {"type 7", "P1.7=0 P0.6=0 P0.7=1 P2.5=0 P2.4=1 P1.1=0 P26.3=0 P26.4=1"},
                {"type 7, P26.4 clear", "P1.7=0 P0.6=0 P0.7=1 P2.5=0 P2.4=1 P1.1=0 P26.3=0 P26.4=0"},
                {"type 9", "P1.7=0 P0.6=0 P0.7=0 P1.1=1 P2.5=0 P26.4=1"},
                {"type 9, P26.4 clear", "P1.7=0 P0.6=0 P0.7=0 P1.1=1 P2.5=0 P26.4=0"},
                {"type 10", "P1.7=0 P0.6=0 P0.7=0 P1.1=1 P2.5=1 P26.4=1"},
                {"type 10, P26.4 clear", "P1.7=0 P0.6=0 P0.7=0 P1.1=1 P2.5=1 P26.4=0"},
                {"type 11, selector 0", "P1.7=0 P0.6=0 P0.7=0 P1.1=0 P26.3=1 P7=1 P26.4=1"},
                {"type 11, selector 1", "P1.7=0 P0.6=0 P0.7=0 P1.1=0 P26.3=1 P7=2 P26.4=0"},
                {"type 11, selector 2", "P1.7=0 P0.6=0 P0.7=0 P1.1=0 P26.3=1 P7=4 P26.4=1"},
                {"type 11, no selector", "P1.7=0 P0.6=0 P0.7=0 P1.1=0 P26.3=1 P7=0 P26.4=0"},
                {"no type", "P1.7=0 P0.6=0 P0.7=0 P1.1=0 P26.3=0 P2.5=1"},
            }),
        NPXLATE_KEY(xid_ext_type_xlate_key, 4, Lengths{3, 4}),
        NPXLATE_RESULT(xid_ext_type_xlate_result, 92, 8),
        NPXLATE_REVERSE(xid_ext_type_logical_xlate_result, 92, 8).with(Trait::changes_input),

        NPXLATE_KEY(bridge_domain_type_xlate_key, 2, 3),
        NPXLATE_RESULT(bridge_domain_type_xlate_result, 101, 32)
            .with_samples({
                {"no variant", "L0.3=0 L2.1=0 L4.0=0 L3.1=0 L3.0=0 L2.7=0"},
                {"L68-70", "L0.3=1 L2.1=0 L3.1=0 L3.0=0 L2.7=0"},
                {"L68-70 and L52-53, L76-79", "L0.3=1 L2.1=1 L3.1=1"},
                {"L56-58 and L52-53, L72-74 by L3.0", "L0.3=0 L2.1=1 L3.1=0 L3.0=1 L2.7=0"},
                {"L83-87, L72-74 by L2.7", "L0.3=0 L2.1=0 L4.0=1 L3.1=0 L3.0=0 L2.7=1"},
                {"L83-87, L76-79", "L0.3=0 L2.1=0 L4.0=1 L3.1=1"},
            }),
        NPXLATE_REVERSE(bridge_domain_type_logical_xlate_result, 120, 32)
            .with_samples({
                {"no variant", "P0.5=0 P0.6=0 P1.2=0 P1.5=0 P1.1=0 P1.0=0"},
                {"L68-71, L76-79", "P0.5=1 P0.6=1 P1.2=0 P1.5=1"},
                {"L56-59 and L52-55, L72-75 by P1.1", "P0.5=1 P0.6=0 P1.2=0 P1.5=0 P1.1=1 P1.0=0"},
                {"L83-87, L72-75 by P1.0", "P0.5=0 P0.6=1 P1.2=1 P1.5=0 P1.1=0 P1.0=1"},
                {"L68-71 and L83-87, L76-79", "P0.5=1 P0.6=1 P1.2=1 P1.5=1"},
                {"L56-59 and L83-87, L76-79", "P0.5=1 P0.6=0 P1.2=1 P1.5=1"},
            }),
        NPXLATE_KEY(bridge_domain_ext_type_xlate_key, 2, 3),
        NPXLATE_RESULT(bridge_domain_ext_type_xlate_result, 101, 16)
            .with_samples({
                {"one value", "L1.3=1"},
                {"two values", "L1.3=0"},
            }),
        NPXLATE_REVERSE(bridge_domain_ext_type_logical_xlate_result, 120, 16)
            .with_samples({
                {"one value", "P1.7=1"},
                {"two values", "P1.7=0"},
            }),
        NPXLATE_KEY(bridge_domain_member_type_xlate_key, 12, 5),
        NPXLATE_RESULT(bridge_domain_member_type_xlate_result, 64, 24)
            .with_samples({
                {"A", "L0.1=1"},
                {"B, value", "L0.1=0 L0.3=1 L0.5=1"},
                {"B, no value", "L0.1=0 L0.3=1 L0.5=0"},
                {"C", "L0.1=0 L0.3=0 L1.1=1"},
                {"no variant", "L0.1=0 L0.3=0 L1.1=0"},
            }),
        NPXLATE_REVERSE(bridge_domain_member_type_logical_xlate_result, 64, 24)
            .with_samples({
                {"A", "P1.7=1"},
                {"B", "P1.7=0 P0.6=1"},
                {"C", "P1.7=0 P0.6=0 P0.5=1"},
                {"no variant", "P1.7=0 P0.6=0 P0.5=0"},
            }),

        NPXLATE_KEY(l2_ufib_type_xlate_key, 14, 9),
        NPXLATE_RESULT(l2_ufib_type_xlate_result, 72, 32)
            .with_samples({
                {"1, 20 bits", "L1.0=1 L3.1=1 L0.7=0"},
                {"1, 20 bits, halved destination", "L1.0=1 L3.1=1 L0.7=1"},
                {"1, 32 bits", "L1.0=1 L3.1=0 L0.7=0"},
                {"1, 32 bits, halved destination", "L1.0=1 L3.1=0 L0.7=1"},
                {"2", "L1.0=0 L0.0=1 L0.7=0"},
                {"2, halved destination", "L1.0=0 L0.0=1 L0.7=1"},
                {"3, value", "L1.0=0 L0.0=0 L0.1=1 L0.2=1 L0.6=1"},
                {"3, no value", "L1.0=0 L0.0=0 L0.1=1 L0.2=1 L0.6=0"},
                {"4, marked, value", "L1.0=0 L0.0=0 L0.1=0 L0.2=1 L2.6=1 L2.7=1"},
                {"4, marked, label", "L1.0=0 L0.0=0 L0.1=0 L0.2=1 L2.6=1 L2.7=0"},
                {"4, byte, value", "L1.0=0 L0.0=0 L0.1=0 L0.2=1 L2.6=0 L2.7=1"},
                {"4, byte, label", "L1.0=0 L0.0=0 L0.1=0 L0.2=1 L2.6=0 L2.7=0"},
                {"no variant", "L1.0=0 L0.0=0 L0.2=0 L0.7=0"},
                {"no variant, halved destination", "L1.0=0 L0.0=0 L0.2=0 L0.7=1"},
            }),
        NPXLATE_REVERSE(l2_ufib_type_logical_xlate_result, 72, 32)
            .with_samples({
                {"1, 20 bits", "P2.0=1 P1.2=1 P1.3=0 P2.3=0 P2.1=0"},
                {"1, 32 bits, halved destination", "P2.0=1 P1.2=0 P1.3=0 P2.3=0 P2.1=1"},
                {"2", "P2.0=0 P1.3=1 P2.3=0 P2.1=0"},
                {"3, value", "P2.0=0 P1.3=0 P2.3=1 P2.4=1 P1.5=1"},
                {"3, no value", "P2.0=0 P1.3=0 P2.3=1 P2.4=1 P1.5=0 P21.0=0"},
                {"4, value", "P2.0=0 P1.3=0 P2.3=1 P2.4=0 P21.0=1"},
                {"4, label", "P2.0=0 P1.3=0 P2.3=1 P2.4=0 P21.0=0"},
                {"1, 2 and 4 at once", "P2.0=1 P1.2=1 P1.3=1 P2.3=1 P2.4=0 P21.0=0"},
                {"no variant", "P2.0=0 P1.3=0 P2.3=0 P2.1=0"},
            }),

        NPXLATE_KEY(isid_type_xlate_key, 6, 6),
        NPXLATE_RESULT(isid_type_xlate_result, 43, 32),
        NPXLATE_REVERSE(isid_type_logical_xlate_result, 44, 32),
        NPXLATE_KEY(evpn_mac_mb_type_xlate_key, 10, 9),
        NPXLATE_RESULT(evpn_mac_mb_type_xlate_result, 22, 32),
        NPXLATE_REVERSE(evpn_mac_mb_type_logical_xlate_result, 32, 32),
        NPXLATE_KEY(evpn_mh_peer_type_xlate_key, 12, 7)
            .with_samples({
                {"peer", "L0.0=0"},
                {"PBB-EVPN", "L0.0=1"},
                {"PBB-EVPN, L8 zero", "L0.0=1 L8=0"},
            }),
        NPXLATE_RESULT(evpn_mh_peer_type_xlate_result, 10, 8)
            .with_samples({
                {"peer", "L0.0=0"},
                {"PBB-EVPN", "L0.0=1"},
            }),
        NPXLATE_REVERSE(evpn_mh_peer_type_logical_xlate_result, 12, 8)
            .with_samples({
                {"peer", "P0.7=1"},
                {"PBB-EVPN", "P0.7=0"},
            }),
        NPXLATE_KEY(pbbevpn_esi_bmac_type_xlate_key, 12, 7)
            .with_samples({
                {"any L8"},
                {"L8 zero", "L8=0"},
            }),
        NPXLATE_RESULT(pbbevpn_esi_bmac_type_xlate_result, 10, 8),
        NPXLATE_REVERSE(pbbevpn_esi_bmac_type_logical_xlate_result, 12, 8),
        NPXLATE_KEY(velox_esi_info_type_xlate_key, 8, 7)
            .with_samples({
                {"ESI", "L7=255"},
                {"MSTI", "L7=0"},
                {"MSTI, L4 255", "L7=0 L4=255"},
            }),
        NPXLATE_RESULT(velox_esi_info_type_xlate_result, 9, 8)
            .with_samples({
                {"ESI", "L0=1"},
                {"MSTI", "L0=0"},
            }),
        // With the key of an Ethernet segment it clears and fills 8 bytes, with any other 12.
        NPXLATE_REVERSE(esi_info_logical_res_xlate, Lengths{8, 12}, 8)
            .with(Trait::keeps_buffer)
            .with_samples({
                {"Ethernet segment", "", 0xff},
                {"spanning-tree instance", "", 0},
            }),
        NPXLATE_KEY(velox_msti_info_type_xlate_key, 5, 7)
            .with_samples({
                {"any L4"},
                {"L4 255", "L4=255"},
            }),
        NPXLATE_RESULT(velox_msti_info_type_xlate_result, 9, 8),
        NPXLATE_REVERSE(msti_info_logical_res_xlate, 12, 8),

        NPXLATE_KEY(l2_vpn_ldi_type_xlate_key, 4, 2),
        NPXLATE_RESULT(l2_vpn_ldi_type_xlate_result, 36, 32)
            .with_samples({
                {"labelled paths", "L0.4=1 L4=4"},
                {"labelled paths, count above 64", "L0.4=1 L4=65"},
                {"labelled paths, nothing in the summary", "L0.4=1 L12=0 L17=0 L22=0 L27=0 L32=0 L33=0 L34=0"},
                {"plain path", "L0.4=0 L4=1"},
                {"plain path, count 64", "L0.4=0 L4=64"},
                {"plain path, count above 64", "L0.4=0 L4=65"},
            }),
        NPXLATE_KEY(vni_info_st_xlate_key, 8, 4)
            .with(Trait::changes_input)
            .with_samples({
                {"kind 0", "L0=0"},
                {"other kinds", "L0=1"},
            }),
        NPXLATE_RESULT(vni_info_st_xlate_result, 36, 32)
            .with_samples({
                {"P11 is 4", "L0.0=1"},
                {"P11 is 2", "L0.0=0"},
            }),
        NPXLATE_REVERSE(vni_info_logical_res_xlate, 36, 32)
            .with_samples({
                {"P11 is 4", "P11=4"},
                {"P11 is 2", "P11=2"},
            }),
        NPXLATE_KEY(dhcp_binding_type_xlate_key, 18, 16),
        NPXLATE_RESULT(dhcp_binding_type_xlate_result, 0, 8),
    };
}

}  // namespace catalogue
