#include "catalogue/catalogue.h"

namespace catalogue {

std::vector<Translator> feature() {
    return {
        NPXLATE_RESULT(qos_str_xlate_result, 36, 32)
            .with_samples({
                {"all codes 0", "L8=0 L11=0 L14=0 L18=0 L21=0 L24=0"},
                {"pair 1 in the order of its codes", "L8=0x10 L18=0x98"},
                {"pair 1 exchanged", "L8=0x01 L18=0x87"},
                {"codes of the same kind", "L8=0x4b L18=0xb4"},
                {"codes without a kind", "L8=0xac L18=0xd2"},
                {"first value of pair 1 missing", "L8=0xf1 L18=0xf3"},
                {"second value of pair 1 missing", "L8=0x5f L18=0x6f"},
                {"no values", "L8=0xff L11=0xff L14=0xff L18=0xff L21=0xff L24=0xff"},
                {"any codes"},
            }),
        NPXLATE_KEY(h_qos_ez_xlate_hash_key, 8, 8),
        NPXLATE_RESULT(h_qos_ez_xlate_hash_result, 34, 32)
            .with_samples({
                {"L20.0 set", "L20.0=1"},
                {"L20.0 clear", "L20.0=0"},
            }),
        NPXLATE_KEY(flow_qos_hash_st_xlate_key, 24, 24),
        NPXLATE_RESULT(flow_qos_hash_st_xlate_result, 16, 16).with(Trait::keeps_buffer),
        NPXLATE_KEY(acl_ez_stats_hash_key_xlate, 8, 8),
        NPXLATE_RESULT(acl_ez_stats_hash_result_st_xlate, 4, 16),
        NPXLATE_REVERSE(acl_ez_stats_hash_logical_res_xlate, 5, 16),
        NPXLATE_KEY(scale_acl_key_xlate_key, 18, 18),
        NPXLATE_RESULT(scale_acl_key_xlate_result, 3, 4),
        NPXLATE_KEY(scale_acl_leaf_xlate_key, 4, 3),
        NPXLATE_RESULT(scale_acl_leaf_xlate_result, 32, 32),
        NPXLATE_RESULT(edpl_str_xlate_result, 0, 32).with(Trait::keeps_buffer),
        NPXLATE_KEY(icu_src_port_st_xlate_key, 1, 1),
        NPXLATE_RESULT(icu_src_port_st_xlate_result, 2, 8),
        NPXLATE_REVERSE(icu_src_port_logical_res_xlate, 2, 8).with(Trait::checks_length),
        NPXLATE_REVERSE(remote_slot_idx_logical_res_xlate, 5, 8).with(Trait::checks_length),
        NPXLATE_KEY(quill_rack_table_xlate_key, 2, 2),
        NPXLATE_RESULT(quill_rack_table_xlate_result, 20, 32)
            .with_samples({
                {"range 4", "L2=4"},
                {"range 8", "L2=8"},
                {"any other range", "L2=2"},
            }),
        NPXLATE_KEY(remote_punt_xlate_key, 1, 1),
        NPXLATE_RESULT(remote_punt_xlate_result, 5, 8),
        NPXLATE_KEY(span_fwd_st_xlate_key, 4, 3),
        NPXLATE_RESULT(span_fwd_st_xlate_result, 28, 32)
            .with(Trait::changes_input)
            .with_samples({
                {"with address, L18-19 carried", "L4.2=1 L18-19=128"},
                {"with address, L18-19 limited", "L4.2=1 L18-19=129"},
                {"without address, L18-19 carried", "L4.2=0 L18-19=127"},
                {"without address, L18-19 limited", "L4.2=0 L18-19=0xffff"},
            }),
        NPXLATE_REVERSE(span_fwd_logical_xlate_result, 28, 32)
            .with_samples({
                {"with address", "P1.7=1"},
                {"without address", "P1.7=0"},
            }),
        NPXLATE_KEY(sample_nf_info_st_xlate_key, 4, 3),
        NPXLATE_RESULT(sample_nf_info_st_xlate_result, 9, 16)
            .with_samples({
                {"rate 2048", "L0-1=2048"},
                {"rate 4096", "L0-1=4096"},
                {"rate 8192", "L0-1=8192"},
                {"rate 16384", "L0-1=16384"},
                {"rate 32768", "L0-1=32768"},
                {"rate 65535, for 65536", "L0-1=65535"},
                {"any other rate above 255", "L0-1=1024"},
                {"rate of at most 255", "L0-1=255"},
            }),
        NPXLATE_REVERSE(sample_nf_info_logical_res_xlate, 9, 16).with(Trait::checks_length),
        NPXLATE_RESULT(pbr_str_xlate_result, 34, 32)
            .with(Trait::keeps_buffer)
            .with_samples({
                {"two bytes, L1.0 set", "L1.0=1"},
                {"three bytes, L1.0 clear", "L1.0=0"},
            }),
        NPXLATE_RESULT_WITHOUT_LENGTH(pifib_ez_xlate_result, 32, 32).with(Trait::keeps_buffer),
        NPXLATE_KEY(rx_service_config_xlate_key, 8, 8),
        NPXLATE_RESULT(rx_service_config_xlate_result, 32, 32),
        NPXLATE_KEY(rx_service_external_xlate_key, 32, 32),
        NPXLATE_RESULT(rx_service_external_xlate_result, 32, 32),
        NPXLATE_KEY(rx_service_node_xlate_key, 8, 8),
        NPXLATE_KEY(rx_service_node_xlate_hash_key, 8, 8),
        NPXLATE_RESULT(rx_service_node_xlate_result, 32, 32),
        NPXLATE_KEY(rx_common_flow_key, 32, 32),
        NPXLATE_RESULT(rx_common_flow_xlate_result, 32, 32),
        NPXLATE_RESULT(vidmon_str_xlate_result, 24, 32)
            .with_samples({
                {"neither group", "L0.7=0 L0.6=0"},
                {"group of L0.7", "L0.7=1 L0.6=0"},
                {"group of L0.6", "L0.7=0 L0.6=1"},
                {"both groups", "L0.7=1 L0.6=1"},
            }),
        NPXLATE_KEY(vidmon_intf_hash_key_xlate_key, 6, 7),
        NPXLATE_RESULT(vidmon_intf_str_xlate_result, 16, 16),
        NPXLATE_KEY(vidmon_rtp_pt_xlate_key, 2, 2),
        NPXLATE_RESULT(vidmon_rtp_pt_xlate_result, 4, 8),
        NPXLATE_KEY(li_md_st_xlate_key, 2, 2)
            .with(Trait::changes_input)
            .with_samples({
                {"index moved", "L0.0=1"},
                {"index moved over its end", "L0-1=0xffff"},
                {"index as it is", "L0.0=0"},
            }),
        NPXLATE_RESULT(li_md_st_xlate_result, 30, 32),
        NPXLATE_REVERSE(li_md_logical_xlate_result, 30, 32),
        NPXLATE_KEY(platform_xlate_pit_key, 5, 5),
        NPXLATE_RESULT(platform_xlate_pit_result, 83, 32)
            .with_samples({
                {"1 by L0.0, L3.0 set", "L0.0=1 L3.1=0 L3.0=1"},
                {"1 by L0.0, L3.0 clear", "L0.0=1 L3.1=0 L3.0=0"},
                {"1 by L3.1", "L0.0=0 L3.1=1"},
                {"2, L0.3 and L0.4 clear", "L0.0=0 L3.1=0 L0.3=0 L0.4=0 L0.5=0"},
                {"2, L0.3 set", "L0.0=0 L3.1=0 L0.3=1 L0.4=0 L0.5=0"},
                {"2, L0.3 and L0.5 set", "L0.0=0 L3.1=0 L0.3=1 L0.4=0 L0.5=1"},
                {"2, L0.4 set", "L0.0=0 L3.1=0 L0.3=0 L0.4=1 L0.5=0"},
                {"2, L0.4 and L0.5 set", "L0.0=0 L3.1=0 L0.3=0 L0.4=1 L0.5=1"},
                {"2, L0.3 to L0.5 set", "L0.0=0 L3.1=0 L0.3=1 L0.4=1 L0.5=1"},
                {"3", "L0.0=0 L3.1=0 L0.3=0 L0.4=0 L0.5=1"},
            }),
    };
}

}  // namespace catalogue
