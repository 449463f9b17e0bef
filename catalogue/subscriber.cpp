#include "catalogue/catalogue.h"

namespace catalogue {

std::vector<Translator> subscriber() {
    return {
        NPXLATE_KEY(ipsub_sid_leaf_st_xlate_key, 21, 19)
            .with(Trait::changes_input)
            .with_samples({
                {"word 0 shifted", "L2=2 L20.7-6=0"},
                {"word 1 shifted", "L2=2 L20.7-6=1"},
                {"word 2 shifted", "L2=2 L20.7-6=2"},
                {"word 3 shifted", "L2=2 L20.7-6=3"},
                {"nothing shifted", "L2=1"},
            }),
        NPXLATE_RESULT(ipsub_sid_leaf_st_xlate_result, 9, 8),
        NPXLATE_KEY(pppoe_sid_leaf_st_xlate_key, 4, 4),
        NPXLATE_RESULT(pppoe_sid_leaf_st_xlate_result, 18, 32),
        NPXLATE_KEY(l2tp_sid_leaf_st_xlate_key, 6, 4),
        NPXLATE_RESULT(l2tp_sid_leaf_st_xlate_result, 58, 64)
            .with_samples({
                {"L8-9 swapped, L0.1 clear", "L0.1=0 L37.2=0"},
                {"L8-9 swapped, L37.2 set", "L0.1=1 L37.2=1"},
                {"L8-9 kept", "L0.1=1 L37.2=0"},
            }),
        NPXLATE_REVERSE(l2tp_xlate_logical_result, 76, 64),
        NPXLATE_KEY(gre_qual_st_xlate_key, 40, 39)
            .with_samples({
                {"IPv6", "L0.0=1"},
                {"IPv4", "L0.0=0"},
            }),
        NPXLATE_RESULT(gre_qual_st_xlate_result, 17, 16),
        NPXLATE_REVERSE(gre_qual_logical_res_xlate, 17, 16).with(Trait::checks_length),
        NPXLATE_KEY(lisp_instance_to_vrf_xlate_key, 20, 6)
            .with_samples({
                {"code 12", "L10=1 L16-19=12"},
                {"code 19", "L10=1 L16-19=19"},
                {"other code", "L10=1 L16-19=13"},
                {"flags", "L10=0"},
            }),
        NPXLATE_RESULT(lisp_instance_to_vrf_xlate_result, 7, 8)
            .with_samples({
                {"L0 not 0", "L0=1"},
                {"L0 = 0", "L0=0"},
            }),
        NPXLATE_KEY(gre_encap_type_xlate_key, 3, 3),
        NPXLATE_RESULT(gre_encap_type_xlate_result, 32, 32),
        NPXLATE_KEY(gre_ifh_2_proto_index_xlate, 6, 6),
        NPXLATE_RESULT(gre_ifh_2_proto_result_xlate, 4, 8),
        NPXLATE_KEY(ent_h_l2tpv3ov6_tun_str_xlate_key, 5, 5)
            .with_samples({
                {"swapped", "L4=1"},
                {"kept", "L4=0"},
            }),
        NPXLATE_RESULT(ent_h_l2tpv3ov6_tun_str_xlate_result, 56, 64)
            .with_samples({
                {"kind 0", "L0-3=0"},
                {"kind 1", "L0-3=1"},
                {"kind 2", "L0-3=2"},
                {"kind 3", "L0-3=3"},
                {"kind 4", "L0-3=4"},
                {"unknown kind", "L0-3=5"},
            }),
    };
}

}  // namespace catalogue
