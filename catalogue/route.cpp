#include "catalogue/catalogue.h"

namespace catalogue {

std::vector<Translator> route() {
    return {
        NPXLATE_KEY(ip_leaf_st_xlate_key, 3, 3),
        NPXLATE_RESULT(ip_leaf_st_xlate_result, 64, 32)
            .with_samples({
                {"A, L32 triple", "L0.4=1 L0.0=0 L1.4=0 L1.3=0 L2.5=0 L2.3=0"},
                {"A, L36 triple", "L0.4=1 L0.0=1 L1.4=1 L1.3=0 L2.5=1 L2.3=0"},
                {"A, no flag, no triple", "L0.4=1 L12.0=0 L17.0=0 L22.0=0 L27.0=0 L2.5=0 L32-34=0 L1.3=0 L2.3=0"},
                {"A, count 1", "L0.4=1 L4-5=1 L1.3=0 L2.3=0"},
                {"A, queue", "L0.4=1 L1.3=1 L1.6=0 L2.3=0"},
                {"A, queue with triple, SRv6", "L0.4=1 L1.3=1 L1.6=1 L1.7=1 L2.3=1"},
                {"B", "L0.4=0 L0.0=1 L1.4=0 L1.3=0 L2.3=0"},
                {"B with L18", "L0.4=0 L0.0=1 L1.4=1 L1.3=0 L2.3=0"},
                {"B, one hop", "L0.4=0 L0.0=1 L4=1 L2.2=0 L1.3=0 L2.3=0"},
                {"B, queue", "L0.4=0 L0.0=1 L1.3=1 L1.6=0 L2.3=0"},
                {"B, queue with triple", "L0.4=0 L0.0=1 L1.3=1 L1.6=1 L1.7=1 L2.3=0"},
                {"B, SRv6", "L0.4=0 L0.0=1 L1.3=0 L2.3=1"},
                {"B, queue, SRv6", "L0.4=0 L0.0=1 L1.3=1 L2.3=1"},
                {"C, no next hop", "L0.4=0 L0.0=0 L1.3=0 L12-15=0 L2.3=0"},
                {"C, L12 of 32 bits", "L0.4=0 L0.0=0 L1.3=0 L12=1 L19.3=1 L2.3=0"},
                {"C, L12 of 19 bits", "L0.4=0 L0.0=0 L1.3=0 L12=1 L19.3=0 L2.3=0"},
                {"C with L18, 64 hops", "L0.4=0 L0.0=0 L1.4=1 L1.3=0 L2.3=0 L4=64"},
                {"C, 65 hops", "L0.4=0 L0.0=0 L1.3=0 L2.3=0 L4=65"},
                {"C, SRv6", "L0.4=0 L0.0=0 L1.3=0 L2.3=1 L52-53=37"},
                {"C, queue, no next hop", "L0.4=0 L0.0=0 L1.3=1 L28-31=0 L1.6=0 L2.3=0"},
                {"C, queue, L28 of 32 bits", "L0.4=0 L0.0=0 L1.3=1 L28=1 L33.3=1 L1.6=0 L2.3=0"},
                {"C, queue, L28 of 19 bits", "L0.4=0 L0.0=0 L1.3=1 L28=1 L33.3=0 L1.6=0 L2.3=0"},
                {"C, queue with triple, range 4", "L0.4=0 L0.0=0 L1.3=1 L1.6=1 L1.7=1 L16=4 L2.3=0"},
                {"C, queue with triple, range 8", "L0.4=0 L0.0=0 L1.3=1 L1.6=1 L1.7=1 L16=8 L2.3=0"},
                {"C, queue, SRv6", "L0.4=0 L0.0=0 L1.3=1 L2.3=1"},
            }),
        NPXLATE_REVERSE(ip_leaf_st_logical_xlate_result, 64, 32)
            .with_samples({
                {"A", "P0.6=1"},
                {"B, C", "P0.6=0"},
            }),
        NPXLATE_KEY(ipv4_leaf_fastip_xlate_key, 4, 4),
        NPXLATE_KEY(ipv6_leaf_fastip_xlate_key, 16, 16),
        NPXLATE_RESULT(ip_leaf_fastip_xlate_result, 3, 4),
        NPXLATE_KEY(r_ldi_key_st_xlate_key, 3, 3),
        NPXLATE_RESULT(r_ldi_entry_st_result, 36, 16)
            .with(Trait::changes_input, Trait::rejects_records)
            .with_samples({
                {"L1.4 clear, 3 paths", "L1.4=0 L2=3 L1.3=0 L0.1=0"},
                {"L1.4 clear, 4 paths", "L1.4=0 L2=4 L1.3=0 L0.1=0"},
                {"L1.4 clear, label", "L1.4=0 L2=0 L1.3=1 L0.1=0"},
                {"L1.4 clear, low bit moved, label", "L1.4=0 L2=1 L1.3=1 L0.1=1 L8=65"},
                {"L1.4 set", "L1.4=1 L0.0=0 L2=2 L1.3=0 L0.1=0"},
                {"L1.4 set, 4 paths, low bit moved, label", "L1.4=1 L0.0=0 L2=4 L1.3=1 L0.1=1"},
                {"rejected", "L1.4=1 L0.0=1 L2=3"},
                {"rejected, 4 paths", "L1.4=1 L0.0=1 L2=4"},
            }),
        NPXLATE_KEY(nr_ldi_entry_st_xlate_key, 3, 3),
        NPXLATE_RESULT(nr_ldi_entry_st_result, 168, 32)
            .with_samples({
                {"label array", "L2.7=1"},
                {"label array, L106 zero", "L2.7=1 L106=0"},
                {"L2.3", "L2.7=0 L2.3=1 L64=64"},
                {"L2.3, 65 hops", "L2.7=0 L2.3=1 L64=65"},
                {"L2.4", "L2.7=0 L2.3=0 L2.4=1"},
                {"recursive, value, triple", "L2.7=0 L2.3=0 L2.4=0 L1.7=1 L2.0=1 L1.5=1"},
                {"recursive, value", "L2.7=0 L2.3=0 L2.4=0 L1.7=1 L2.0=1 L1.5=0"},
                {"recursive, queue, triple", "L2.7=0 L2.3=0 L2.4=0 L1.7=1 L2.0=0 L1.5=1 L1.6=1"},
                {"recursive, queue", "L2.7=0 L2.3=0 L2.4=0 L1.7=1 L2.0=0 L1.5=1 L1.6=0"},
                {"recursive, queue, range 4", "L2.7=0 L2.3=0 L2.4=0 L1.7=1 L2.0=0 L1.5=0 L40=4"},
                {"recursive, queue, range 8", "L2.7=0 L2.3=0 L2.4=0 L1.7=1 L2.0=0 L1.5=0 L40=8"},
                {"L1.1, flagged", "L2.7=0 L2.3=0 L2.4=0 L1.7=0 L1.1=1 L0.7=1 L1.5=1 L0.4=0 L2.5=0 L156.0=0"},
                {"L1.1, triple",
                 "L2.7=0 L2.3=0 L2.4=0 L1.7=0 L1.1=1 L0.0=0 L0.1=0 L0.7=0 L1.0=0 L1.5=1 L0.4=0 L2.5=0 L156.0=0"},
                {"L1.1, no triple",
                 "L2.7=0 L2.3=0 L2.4=0 L1.7=0 L1.1=1 L0.0=0 L0.1=0 L0.7=0 L1.0=0 L1.5=0 L0.4=0 L2.5=1 L156.0=0"},
                {"L1.1, L0.4 and L0.3", "L2.7=0 L2.3=0 L2.4=0 L1.7=0 L1.1=1 L0.4=1 L0.3=1 L156.0=0"},
                {"L1.3", "L2.7=0 L2.3=0 L2.4=0 L1.7=0 L1.1=0 L1.3=1 L0.4=0 L2.5=0 L156.0=0"},
                {"L1.3, L2.5", "L2.7=0 L2.3=0 L2.4=0 L1.7=0 L1.1=0 L1.3=1 L0.4=0 L2.5=1 L156.0=0"},
                {"L1.3, L0.4", "L2.7=0 L2.3=0 L2.4=0 L1.7=0 L1.1=0 L1.3=1 L0.4=1 L0.3=0 L156.0=0"},
                {"L1.3, L156.0 and L156.1", "L2.7=0 L2.3=0 L2.4=0 L1.7=0 L1.1=0 L1.3=1 L0.4=0 L156.0=1 L156.1=1"},
                {"plain", "L2.7=0 L2.3=0 L2.4=0 L1.7=0 L1.1=0 L1.3=0 L2.5=0 L0.4=0 L156.0=0"},
                {"plain, L2.5", "L2.7=0 L2.3=0 L2.4=0 L1.7=0 L1.1=0 L1.3=0 L2.5=1 L0.4=0 L156.0=0"},
                {"plain, L0.4", "L2.7=0 L2.3=0 L2.4=0 L1.7=0 L1.1=0 L1.3=0 L2.5=0 L0.4=1 L0.3=0 L156.0=0"},
                {"plain, L2.5, L0.4", "L2.7=0 L2.3=0 L2.4=0 L1.7=0 L1.1=0 L1.3=0 L2.5=1 L0.4=1 L0.3=0 L156.0=0"},
                {"plain, L2.5, L0.4 and L0.3",
                 "L2.7=0 L2.3=0 L2.4=0 L1.7=0 L1.1=0 L1.3=0 L2.5=1 L0.4=1 L0.3=1 L156.0=0"},
                {"plain, L156.0", "L2.7=0 L2.3=0 L2.4=0 L1.7=0 L1.1=0 L1.3=0 L2.5=0 L0.4=0 L156.0=1 L156.1=0"},
                {"plain, L156.0 and L156.1", "L2.7=0 L2.3=0 L2.4=0 L1.7=0 L1.1=0 L1.3=0 L0.4=1 L156.0=1 L156.1=1"},
            }),
        NPXLATE_REVERSE(nr_ldi_entry_st_logical_xlate_result, 168, 32)
            .with_samples({
                {"protected path", "P1.3=1"},
                {"others", "P1.3=0"},
            }),
        NPXLATE_KEY(mpls_leaf_st_xlate_key, 5, 3),
        NPXLATE_RESULT(mpls_leaf_st_result, 90, 32)
            .with_samples({
                {"1", "L0.4=1"},
                {"2", "L0.4=0 L0.6=1"},
                {"3", "L0.4=0 L0.6=0 L0.7=1"},
                {"4", "L0.4=0 L0.6=0 L0.7=0 L2.4=1 L5.3=0"},
                {"4, first slot", "L0.4=0 L0.6=0 L0.7=0 L2.4=1 L5.3=1 L3.4=0"},
                {"4, second slot", "L0.4=0 L0.6=0 L0.7=0 L2.4=1 L5.3=1 L3.4=1"},
                {"5", "L0.4=0 L0.6=0 L0.7=0 L2.4=0 L4.5=1"},
                {"6", "L0.4=0 L0.6=0 L0.7=0 L2.4=0 L4.5=0 L0.2=1"},
                {"6, L24 zero", "L0.4=0 L0.6=0 L0.7=0 L2.4=0 L4.5=0 L0.2=1 L24=0"},
                {"7", "L0.4=0 L0.6=0 L0.7=0 L2.4=0 L4.5=0 L0.2=0 L4.6=1"},
                {"7, L24 zero", "L0.4=0 L0.6=0 L0.7=0 L2.4=0 L4.5=0 L0.2=0 L4.6=1 L24=0"},
                {"8, L16.2-1 = 0", "L0.4=0 L0.6=0 L0.7=0 L2.4=0 L0.2=0 L4.6=0 L4.5=0 L4.4=1 L16.1=0 L16.2=0"},
                {"8, L16.2-1 = 1", "L0.4=0 L0.6=0 L0.7=0 L2.4=0 L0.2=0 L4.6=0 L4.5=0 L4.4=1 L16.1=1 L16.2=0"},
                {"8, L16.2-1 = 2", "L0.4=0 L0.6=0 L0.7=0 L2.4=0 L0.2=0 L4.6=0 L4.5=0 L4.4=1 L16.1=0 L16.2=1"},
                {"8, L16.2-1 = 3", "L0.4=0 L0.6=0 L0.7=0 L2.4=0 L0.2=0 L4.6=0 L4.5=0 L4.4=1 L16.1=1 L16.2=1"},
                {"9, first slot", "L0=0 L2.4=0 L4.6=0 L4.5=0 L4.4=0 L1.6=1 L3.4=0"},
                {"9, second slot, no flag, no triple",
                 "L0=0 L2.4=0 L4.6=0 L4.5=0 L4.4=0 L1.6=1 L3.4=1 L22.0=0 L27.0=0 L32.0=0 L37.0=0 L40-42=0"},
                {"10", "L0=0x08 L2.4=0 L4.6=0 L4.5=0 L4.4=0 L1.6=0"},
                {"11, value, first slot", "L0=0x20 L2.4=0 L4.6=0 L4.5=0 L4.4=0 L1.6=0 L3.4=0 L4.0=1"},
                {"11, queue, second slot", "L0=0x20 L2.4=0 L4.6=0 L4.5=0 L4.4=0 L1.6=0 L3.4=1 L4.0=0"},
                {"11, queue, range 4", "L0=0x20 L2.4=0 L4.6=0 L4.5=0 L4.4=0 L1.6=0 L4.0=0 L24=4"},
                {"11, queue, range 8", "L0=0x20 L2.4=0 L4.6=0 L4.5=0 L4.4=0 L1.6=0 L4.0=0 L24=8"},
                {"12, first slot", "L0=0 L2.4=0 L4.6=0 L4.5=0 L4.4=0 L1.6=0 L1.7=1 L3.4=0 L5.6=0"},
                {"12, second slot, L5.6", "L0=0 L2.4=0 L4.6=0 L4.5=0 L4.4=0 L1.6=0 L1.7=1 L3.4=1 L5.6=1"},
                {"12, one hop", "L0=0 L2.4=0 L4.6=0 L4.5=0 L4.4=0 L1.6=0 L1.7=1 L6=1"},
                {"12, 65 hops", "L0=0 L2.4=0 L4.6=0 L4.5=0 L4.4=0 L1.6=0 L1.7=1 L6=65"},
                {"none", "L0=0 L2.4=0 L4.6=0 L4.5=0 L4.4=0 L1.6=0 L1.7=0"},
            }),
        NPXLATE_KEY(lag_type_xlate_key, 7, 3)
            .with_samples({
                {"kind 1", "L0-3=1"},
                {"kind 2", "L0-3=2"},
                {"another kind", "L0-3=3"},
            }),
        NPXLATE_RESULT(lag_type_xlate_result, 14, 16)
            .with_samples({
                {"member", "L0.3=1"},
                {"no member", "L0.3=0"},
                {"range 4", "L7=4"},
                {"range 8", "L7=8"},
            }),
        NPXLATE_REVERSE(lag_type_logical_xlate_result, 14, 16)
            .with_samples({
                {"no range", "P4.3=0"},
                {"range 4", "P4.3=1 P4.2=0"},
                {"range 8", "P4.3=1 P4.2=1"},
                {"no member", "P8=0"},
            }),
        NPXLATE_KEY(lag_info_type_xlate_key, 8, 2)
            .with_samples({
                {"kind 1", "L0-3=1"},
                {"kind 2", "L0-3=2"},
                {"another kind", "L0-3=3"},
            }),
        NPXLATE_RESULT(lag_info_type_xlate_result, 12, 8)
            .with_samples({
                {"no member", "L4=0"},
                {"31 members", "L4=31"},
                {"32 members", "L4=32"},
            }),
        NPXLATE_REVERSE(lag_info_type_logical_xlate_result, 12, 8),
        NPXLATE_KEY(prot_lag_st_xlate_key, 3, 3),
        NPXLATE_RESULT(prot_lag_st_xlate_result, 16, 16),
        NPXLATE_REVERSE(prot_lag_logical_res_xlate, 16, 16).with(Trait::checks_length),
        NPXLATE_KEY(srv6_sida_key_xlate, 3, 3),
        NPXLATE_RESULT(srv6_sida_res_xlate, 80, 32)
            .with(Trait::hides_failures)
            .with_samples({
                {"list", "L0.0=1"},
                {"information, 0 identifiers", "L0.0=0 L2=0"},
                {"information, 4 identifiers", "L0.0=0 L2=4"},
                {"information, 5 identifiers: no length", "L0.0=0 L2=5"},
            }),
        NPXLATE_RESULT(srv6_array_res_xlate, 80, 32)
            .with(Trait::rejects_records)
            .with_samples({
                {"list", "L0.0=1"},
                {"rejected: no list", "L0.0=0"},
            }),
        NPXLATE_RESULT(srv6_info_res_xlate, 80, 32)
            .with(Trait::rejects_records)
            .with_samples({
                {"0 identifiers", "L0.0=0 L2=0 L4-7=30"},
                {"1 identifier", "L0.0=0 L2=1 L4-7=31"},
                {"2 identifiers", "L0.0=0 L2=2 L4-7=32"},
                {"3 identifiers", "L0.0=0 L2=3 L4-7=33"},
                {"4 identifiers", "L0.0=0 L2=4 L4-7=34"},
                {"rejected: 5 identifiers", "L0.0=0 L2=5"},
                {"rejected: a list", "L0.0=1"},
            }),
        NPXLATE_KEY(srv6_local_sid_key_xlate, 2, 2),
        NPXLATE_RESULT(srv6_local_sid_entry_xlate, 3, 8),
        NPXLATE_REVERSE(ipv6_srh_encap_logical_res_xlate, 0, Lengths{0, NPXLATE_MAX_PHYSICAL_LENGTH})
            .with(Trait::keeps_buffer),
        NPXLATE_KEY(mpls_rpf_list_xlate_key, 4, 4),
        NPXLATE_RESULT(mpls_rpf_list_xlate_result, 4, 8),
        NPXLATE_KEY(ipv6_ll_xlate_hash_key, Lengths{4, 20}, 20),
        NPXLATE_RESULT(ipv6_ll_xlate_hash_result, 3, 8),
        NPXLATE_KEY(ext_lspa_st_xlate_key, 3, 3),
        NPXLATE_RESULT(ext_lspa_st_result, 20, 16),
        NPXLATE_KEY(sr_te_lspa_key, 3, 3),
        NPXLATE_RESULT(sr_te_lspa_result, 52, 32)
            .with_samples({
                {"1 label", "L2=0"},
                {"2 labels", "L2=1 L3=0"},
                {"3 labels", "L2=1 L3=1 L4=0"},
                {"4 labels", "L2=1 L3=1 L4=1 L5=0"},
                {"5 labels", "L2=1 L3=1 L4=1 L5=1 L6=0"},
                {"6 labels", "L2=1 L3=1 L4=1 L5=1 L6=1 L7=0"},
                {"7 labels", "L2=1 L3=1 L4=1 L5=1 L6=1 L7=1 L8=0"},
                {"8 labels", "L2=1 L3=1 L4=1 L5=1 L6=1 L7=1 L8=1 L9=0"},
                {"9 labels", "L2=1 L3=1 L4=1 L5=1 L6=1 L7=1 L8=1 L9=1 L10=0"},
                {"10 labels", "L2=1 L3=1 L4=1 L5=1 L6=1 L7=1 L8=1 L9=1 L10=1 L11=0"},
                {"10 labels and every flag", "L2=1 L3=1 L4=1 L5=1 L6=1 L7=1 L8=1 L9=1 L10=1 L11=1"},
            }),
    };
}

}  // namespace catalogue
