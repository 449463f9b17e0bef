#include "catalogue/catalogue.h"

namespace catalogue {

std::vector<Translator> mcast() {
    return {
        NPXLATE_KEY(ipv4mc_leaf_key_xlate, 10, 10),
        NPXLATE_RESULT(ipmc_leaf_res_xlate, 4, 4),
        NPXLATE_REVERSE(ipmc_leaf_logical_res_xlate, 4, 4).with(Trait::checks_length),
        NPXLATE_KEY(ipv6mc_sg_leaf_key_xlate, 34, 34),
        NPXLATE_RESULT(ipv6mc_sg_leaf_res_xlate, 4, 16),
        NPXLATE_REVERSE(ipv6mc_sg_leaf_logical_res_xlate, 4, 16).with(Trait::checks_length),
        NPXLATE_KEY(ipv6mc_g_leaf_key_xlate, 34, 18),
        NPXLATE_KEY(ipmc_node_key_xlate, 3, 3),
        NPXLATE_RESULT(ipmc_node_res_xlate, 48, 32)
            .with_samples({
                {"own code", "L1.2=0 L36-39=2"},
                {"own code, L1.2 set", "L1.2=1 L36-39=0x13"},
                {"code of 3 and 4, type 3", "L1.2=0 L36-39=3"},
                {"code of 3 and 4, type 4, L1.2 set", "L1.2=1 L36-39=4"},
            }),
        NPXLATE_REVERSE(ipmc_node_logical_res_xlate, 48, 32).with(Trait::checks_length),
        NPXLATE_KEY(ipmc_ole_key_xlate, 8, 6),
        NPXLATE_RESULT(ipmc_ole_res_xlate, 60, 24)
            .with_samples({
                {"type 1", "L0-3=1"},
                {"type 2", "L0-3=2"},
                {"type 3", "L0-3=3"},
                {"type 4", "L0-3=4"},
                {"unknown type", "L0-3=5"},
            }),
        NPXLATE_REVERSE(ipmc_ole_logical_res_xlate, 60, 24)
            .with(Trait::checks_length)
            .with_samples({
                {"type 2", "P0.6=1"},
                {"type 1", "P0.6=0 P0.5=1"},
                {"type 3", "P0.6=0 P0.5=0 P0.7=1"},
                {"type 4", "P0.6=0 P0.5=0 P0.7=0 P1.1=1"},
                {"type 0", "P0.6=0 P0.5=0 P0.7=0 P1.1=0"},
            }),
        NPXLATE_KEY(l2mc_ole_key_xlate, 8, 6),
        NPXLATE_RESULT(l2mc_ole_res_xlate, 40, 16)
            .with_samples({
                {"L0.2", "L0.2=1"},
                {"L0.1", "L0.2=0 L0.1=1"},
                {"L0.0", "L0.2=0 L0.1=0 L0.0=1"},
                {"no variant bit", "L0.2=0 L0.1=0 L0.0=0"},
                {"no variant bit, L4 zero", "L0.2=0 L0.1=0 L0.0=0 L4=0"},
            }),
        NPXLATE_REVERSE(l2mc_ipv4_ole_logical_res_xlate, 40, 16)
            .with(Trait::checks_length)
            .with_samples({
                {"L0.2", "P0.6=1"},
                {"L0.1", "P0.6=0 P0.7=1"},
                {"L0.0", "P0.6=0 P0.7=0 P0.5=1"},
                {"no variant bit", "P0.6=0 P0.7=0 P0.5=0"},
            }),
        NPXLATE_KEY(ipmc_mofrr_mvpn_key_xlate, 8, 3)
            .with(Trait::rejects_records)
            .with_samples({
                {"type 1, MLC", "L0-3=1"},
                {"type 2", "L0-3=2"},
                {"type 3", "L0-3=3"},
                {"type 4", "L0-3=4"},
                {"type 5, MLC", "L0-3=5"},
                {"unknown type", "L0-3=6"},
            }),
        NPXLATE_RESULT(ipmc_mofrr_mvpn_res_xlate, 42, 32)
            .with(Trait::rejects_records)
            .with_samples({
                {"type 1, MLC", "L0-3=1"},
                {"type 2", "L0-3=2"},
                {"type 3", "L0-3=3"},
                {"type 4", "L0-3=4"},
                {"type 5, MLC", "L0-3=5"},
                {"unknown type", "L0-3=6"},
            }),
        NPXLATE_REVERSE(ipmc_encap_logical_res_xlate, 48, 32)
            .with(Trait::checks_length, Trait::rejects_records)
            .with_samples({
                {"type 1", "", 1},
                {"type 2", "", 2},
                {"type 3", "", 3},
                {"type 4", "", 4},
                {"type 5", "", 5},
                {"type 0", "", 0},
                {"type 6", "", 6},
            }),
        NPXLATE_KEY(ipmc_encap_info_key_xlate, 8, 3)
            .with(Trait::keeps_buffer)
            .with_samples({
                {"type 2", "L0-3=2"},
                {"type 3", "L0-3=3"},
                {"type 4", "L0-3=4"},
                {"unknown type", "L0-3=1"},
            }),
        NPXLATE_RESULT(mvpn_encap_info_res_xlate, 42, 32)
            .with_samples({
                {"type 2", "L0-3=2"},
                {"type 3", "L0-3=3"},
                {"type 4", "L0-3=4"},
                {"unknown type", "L0-3=1"},
            }),
        NPXLATE_KEY(ipmc_mlc_key_xlate, 8, 3)
            .with_samples({
                {"type 1", "L0-3=1"},
                {"type 5", "L0-3=5"},
            }),
        NPXLATE_RESULT(ipmc_mlc_res_xlate, 42, 32)
            .with_samples({
                {"type 1", "L0-3=1"},
                {"type 5", "L0-3=5"},
            }),
        NPXLATE_KEY(ipmc_mofrr_info_key_xlate, 8, 4),
        NPXLATE_RESULT(ipmc_mofrr_info_res_xlate, 40, 32)
            .with_samples({
                {"L4.1 set", "L4.1=1"},
                {"L4.1 clear", "L4.1=0"},
            }),
        NPXLATE_KEY(ipmc_mofrr_wdcnt_key_xlate, 3, 3),
        NPXLATE_RESULT(ipmc_mofrr_wdcnt_res_xlate, 16, 16)
            .with_samples({
                {"L0.2 set", "L0.2=1"},
                {"L0.2 clear", "L0.2=0"},
            }),
        NPXLATE_KEY(ipmc_bidir_key_xlate, 6, 5),
        NPXLATE_RESULT(ipmc_bidir_res_xlate, 16, 20),
        NPXLATE_REVERSE(ipmc_bidir_logical_res_xlate, 48, 20).with(Trait::checks_length),
        NPXLATE_KEY(ipmc_intf_punt_key_xlate, 8, 8),
        NPXLATE_RESULT(ipmc_intf_punt_res_xlate, 0, 16),
        NPXLATE_KEY(l2mc_ipv4_leaf_key_xlate, 37, 11)
            .with_samples({
                {"L4 not 0", "L4=1"},
                {"L4 zero", "L4=0"},
            }),
        NPXLATE_RESULT(l2mc_ipv4_leaf_res_xlate, 4, 4),
        NPXLATE_REVERSE(l2mc_ipv4_leaf_logical_res_xlate, 4, 4).with(Trait::checks_length),
        NPXLATE_KEY(l2v6mc_sg_leaf_key_xlate, 37, 35),
        NPXLATE_RESULT(l2v6mc_sg_leaf_res_xlate, 4, 16),
        NPXLATE_REVERSE(l2v6mc_sg_leaf_logical_res_xlate, 4, 16).with(Trait::checks_length),
        NPXLATE_KEY(l2v6mc_g_leaf_key_xlate, 37, 19),
        NPXLATE_KEY(l2mc_ipv4_node_key_xlate, 3, 3),
        NPXLATE_RESULT(l2mc_ipv4_node_res_xlate, 56, 32)
            .with_samples({
                {"L28-29 not 0", "L28-29=0x100"},
                {"L28-29 zero", "L28-29=0"},
            }),
        NPXLATE_REVERSE(l2mc_ipv4_node_logical_res_xlate, 56, 32).with(Trait::checks_length),
        NPXLATE_KEY(l2mc_mmrp_leaf_key_xlate, 10, 9),
        NPXLATE_RESULT(l2mc_mmrp_leaf_res_xlate, 4, 8),
        NPXLATE_REVERSE(l2mc_mmrp_leaf_logical_res_xlate, 4, 8).with(Trait::checks_length),
        NPXLATE_KEY(encap_ole_key_xlate, 7, 6),
        NPXLATE_RESULT(encap_ole_res_xlate, 32, 20)
            .with(Trait::rejects_records)
            .with_samples({
                {"type 1", "L0-3=1"},
                {"type 2", "L0-3=2"},
                {"type 3", "L0-3=3"},
                {"type 4", "L0-3=4"},
                {"unknown type", "L0-3=5"},
            }),
        NPXLATE_REVERSE(encap_ole_logical_res_xlate, 32, 20)
            .with(Trait::checks_length, Trait::rejects_records)
            .with_samples({
                {"type 1", "P0.6=1"},
                {"type 2", "P0.6=0 P0.7=1"},
                {"type 3", "P0.6=0 P0.7=0 P0.5=1"},
                {"type 4", "P0.6=0 P0.7=0 P0.5=0 P1.6=1"},
                {"no type bit", "P0.6=0 P0.7=0 P0.5=0 P1.6=0"},
            }),
        NPXLATE_KEY(p2mp_mpls_ole_key_xlate, 9, 6),
        NPXLATE_RESULT(p2mp_mpls_ole_res_xlate, 32, 16)
            .with_samples({
                {"L0.0", "L0.0=1 L0.1=0"},
                {"L0.0 and L0.1", "L0.0=1 L0.1=1"},
                {"L0.1", "L0.0=0 L0.1=1"},
                {"no variant bit", "L0.0=0 L0.1=0"},
            }),
    };
}

}  // namespace catalogue
