// Which translators serve which table: the complete map of both dispatch tables.
//
// The map names the translators, so that it can be complete before all of them exist.
#include <dlfcn.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>
#include <npxlate/npxlate.h>

namespace {

static_assert(sizeof l2p_ucode_func_table == sizeof(void*) * 2 * 128);
static_assert(sizeof p2l_ucode_func_table == 128 * sizeof(void*));
static_assert(offsetof(npxlate_l2p_entry, key) == 0 && offsetof(npxlate_l2p_entry, result) == sizeof(void*));
static_assert(std::is_same_v<decltype(TX_ADJ_KEY_MAX), std::uint16_t>);

constexpr int table_count = 128;

// Tables whose translators are not there yet: their slots hold the generic ones until then. A table leaves this list
// with its translators; none is ever added.
const std::set<int> missing{};

// Tables with the generic translators in all three roles.
const std::vector<int> generic_tables{
    0,  1,  2,  6,  9,  10, 14, 15, 18, 20,  25,  29,  32,  33,  34,  36,  38,  39,  43,  47,  55,  57,  63,  72,  73,
    78, 80, 81, 82, 83, 87, 91, 95, 99, 100, 101, 103, 104, 106, 114, 117, 118, 119, 120, 122, 123, 124, 125, 126, 127,
};

struct Table {
    int id;
    std::string key;
    std::string result;
    std::string reverse;
};

// clang-format off
const std::vector<Table> tables{
    {  3, "h_qos_ez_xlate_hash_key",             "h_qos_ez_xlate_hash_result",             "generic_xlate_logical_result"},
    {  4, "rx_adjacency_type_xlate_key",         "rx_adjacency_type_xlate_result",         "rx_adjacency_type_logical_xlate_result"},
    {  5, "tx_adjacency_type_xlate_key",         "tx_adjacency_type_xlate_result",         "tx_adjacency_type_logical_xlate_result"},
    {  7, "te_nh_adjacency_type_xlate_key",      "te_nh_adjacency_type_xlate_result",      "generic_xlate_logical_result"},
    {  8, "lag_type_xlate_key",                  "lag_type_xlate_result",                  "lag_type_logical_xlate_result"},
    { 11, "ip_leaf_st_xlate_key",                "ip_leaf_st_xlate_result",                "ip_leaf_st_logical_xlate_result"},
    { 12, "r_ldi_key_st_xlate_key",              "r_ldi_entry_st_result",                  "generic_xlate_logical_result"},
    { 13, "nr_ldi_entry_st_xlate_key",           "nr_ldi_entry_st_result",                 "nr_ldi_entry_st_logical_xlate_result"},
    { 16, "strict_rpf_uidb_list_type_xlate_key", "strict_rpf_uidb_list_type_xlate_result", "generic_xlate_logical_result"},
    { 17, "vrrp_vmac_entry_st_xlate_key",        "vrrp_vmac_entry_st_xlate_result",        "vrrp_logical_xlate_result"},
    { 19, "egr_port_xlate_key",                  "generic_xlate_result",                   "generic_xlate_logical_result"},
    { 21, "ipmc_intf_punt_key_xlate",            "ipmc_intf_punt_res_xlate",               "generic_xlate_logical_result"},
    { 22, "span_fwd_st_xlate_key",               "span_fwd_st_xlate_result",               "span_fwd_logical_xlate_result"},
    { 23, "xid_type_xlate_key",                  "xid_type_xlate_result",                  "xid_type_logical_xlate_result"},
    { 24, "ipv4mc_leaf_key_xlate",               "ipmc_leaf_res_xlate",                    "ipmc_leaf_logical_res_xlate"},
    { 26, "ipmc_node_key_xlate",                 "ipmc_node_res_xlate",                    "ipmc_node_logical_res_xlate"},
    { 27, "l2_vpn_ldi_type_xlate_key",           "l2_vpn_ldi_type_xlate_result",           "generic_xlate_logical_result"},
    { 28, "mpls_leaf_st_xlate_key",              "mpls_leaf_st_result",                    "generic_xlate_logical_result"},
    { 30, "evpn_mh_peer_type_xlate_key",         "evpn_mh_peer_type_xlate_result",         "evpn_mh_peer_type_logical_xlate_result"},
    { 31, "l2_ufib_type_xlate_key",              "l2_ufib_type_xlate_result",              "l2_ufib_type_logical_xlate_result"},
    { 35, "bridge_domain_member_type_xlate_key", "bridge_domain_member_type_xlate_result", "bridge_domain_member_type_logical_xlate_result"},
    { 37, "ext_lspa_st_xlate_key",               "ext_lspa_st_result",                     "generic_xlate_logical_result"},
    { 40, "ipmc_ole_key_xlate",                  "ipmc_ole_res_xlate",                     "ipmc_ole_logical_res_xlate"},
    { 41, "acl_ez_stats_hash_key_xlate",         "acl_ez_stats_hash_result_st_xlate",      "acl_ez_stats_hash_logical_res_xlate"},
    { 42, "ipv6_leaf_fastip_xlate_key",          "ip_leaf_fastip_xlate_result",            "generic_xlate_logical_result"},
    { 44, "icu_src_port_st_xlate_key",           "icu_src_port_st_xlate_result",           "icu_src_port_logical_res_xlate"},
    { 45, "l2mc_ole_key_xlate",                  "l2mc_ole_res_xlate",                     "l2mc_ipv4_ole_logical_res_xlate"},
    { 46, "platform_xlate_pit_key",              "platform_xlate_pit_result",              "generic_xlate_logical_result"},
    { 48, "generic_xlate_key",                   "vidmon_str_xlate_result",                "generic_xlate_logical_result"},
    { 49, "vidmon_intf_hash_key_xlate_key",      "vidmon_intf_str_xlate_result",           "generic_xlate_logical_result"},
    { 50, "ipmc_mofrr_info_key_xlate",           "ipmc_mofrr_info_res_xlate",              "generic_xlate_logical_result"},
    { 51, "ipmc_mofrr_wdcnt_key_xlate",          "ipmc_mofrr_wdcnt_res_xlate",             "generic_xlate_logical_result"},
    { 52, "ipmc_mofrr_mvpn_key_xlate",           "ipmc_mofrr_mvpn_res_xlate",              "ipmc_encap_logical_res_xlate"},
    { 53, "encap_ole_key_xlate",                 "encap_ole_res_xlate",                    "encap_ole_logical_res_xlate"},
    { 54, "l2mc_ipv4_leaf_key_xlate",            "l2mc_ipv4_leaf_res_xlate",               "l2mc_ipv4_leaf_logical_res_xlate"},
    { 56, "l2mc_ipv4_node_key_xlate",            "l2mc_ipv4_node_res_xlate",               "l2mc_ipv4_node_logical_res_xlate"},
    { 58, "isid_type_xlate_key",                 "isid_type_xlate_result",                 "isid_type_logical_xlate_result"},
    { 59, "gre_qual_st_xlate_key",               "gre_qual_st_xlate_result",               "gre_qual_logical_res_xlate"},
    { 60, "lag_info_type_xlate_key",             "lag_info_type_xlate_result",             "lag_info_type_logical_xlate_result"},
    { 61, "ipv6mc_sg_leaf_key_xlate",            "ipv6mc_sg_leaf_res_xlate",               "ipv6mc_sg_leaf_logical_res_xlate"},
    { 62, "ipv6mc_g_leaf_key_xlate",             "ipmc_leaf_res_xlate",                    "ipmc_leaf_logical_res_xlate"},
    { 64, "p2mp_mpls_ole_key_xlate",             "p2mp_mpls_ole_res_xlate",                "generic_xlate_logical_result"},
    { 65, "dhcp_binding_type_xlate_key",         "dhcp_binding_type_xlate_result",         "generic_xlate_logical_result"},
    { 66, "li_md_st_xlate_key",                  "li_md_st_xlate_result",                  "li_md_logical_xlate_result"},
    { 67, "pppoe_sid_leaf_st_xlate_key",         "pppoe_sid_leaf_st_xlate_result",         "sample_nf_info_logical_res_xlate"},
    { 68, "l2tp_sid_leaf_st_xlate_key",          "l2tp_sid_leaf_st_xlate_result",          "l2tp_xlate_logical_result"},
    { 69, "sample_nf_info_st_xlate_key",         "sample_nf_info_st_xlate_result",         "generic_xlate_logical_result"},
    { 70, "evpn_mac_mb_type_xlate_key",          "evpn_mac_mb_type_xlate_result",          "evpn_mac_mb_type_logical_xlate_result"},
    { 71, "generic_xlate_key",                   "generic_xlate_result",                   "remote_slot_idx_logical_res_xlate"},
    { 74, "xid_ext_type_xlate_key",              "xid_ext_type_xlate_result",              "xid_ext_type_logical_xlate_result"},
    { 75, "bridge_domain_type_xlate_key",        "bridge_domain_type_xlate_result",        "bridge_domain_type_logical_xlate_result"},
    { 76, "quill_rack_table_xlate_key",          "quill_rack_table_xlate_result",          "generic_xlate_logical_result"},
    { 77, "remote_punt_xlate_key",               "remote_punt_xlate_result",               "generic_xlate_logical_result"},
    { 79, "lisp_instance_to_vrf_xlate_key",      "lisp_instance_to_vrf_xlate_result",      "generic_xlate_logical_result"},
    { 84, "vidmon_rtp_pt_xlate_key",             "vidmon_rtp_pt_xlate_result",             "generic_xlate_logical_result"},
    { 85, "l2v6mc_sg_leaf_key_xlate",            "l2v6mc_sg_leaf_res_xlate",               "l2v6mc_sg_leaf_logical_res_xlate"},
    { 86, "l2v6mc_g_leaf_key_xlate",             "l2mc_ipv4_leaf_res_xlate",               "l2mc_ipv4_leaf_logical_res_xlate"},
    { 88, "rx_service_config_xlate_key",         "rx_service_config_xlate_result",         "generic_xlate_logical_result"},
    { 89, "rx_service_external_xlate_key",       "rx_service_external_xlate_result",       "generic_xlate_logical_result"},
    { 90, "ipv6_ll_xlate_hash_key",              "ipv6_ll_xlate_hash_result",              "generic_xlate_logical_result"},
    { 92, "velox_esi_info_type_xlate_key",       "velox_esi_info_type_xlate_result",       "esi_info_logical_res_xlate"},
    { 93, "ent_h_l2tpv3ov6_tun_str_xlate_key",   "ent_h_l2tpv3ov6_tun_str_xlate_result",   "generic_xlate_logical_result"},
    { 94, "scale_acl_key_xlate_key",             "scale_acl_key_xlate_result",             "generic_xlate_logical_result"},
    { 96, "scale_acl_leaf_xlate_key",            "scale_acl_leaf_xlate_result",            "generic_xlate_logical_result"},
    { 97, "mpls_rpf_list_xlate_key",             "mpls_rpf_list_xlate_result",             "generic_xlate_logical_result"},
    { 98, "nhindex_type_xlate_key",              "nhindex_type_xlate_result",              "generic_xlate_logical_result"},
    {102, "prot_lag_st_xlate_key",               "prot_lag_st_xlate_result",               "prot_lag_logical_res_xlate"},
    {105, "bridge_domain_ext_type_xlate_key",    "bridge_domain_ext_type_xlate_result",    "bridge_domain_ext_type_logical_xlate_result"},
    {107, "ipsub_sid_leaf_st_xlate_key",         "ipsub_sid_leaf_st_xlate_result",         "generic_xlate_logical_result"},
    {108, "bfd_hw_offload_xlate_tx_key",         "bfd_hw_offload_xlate_encap_result",      "bfd_logical_hw_offload_xlate_encp_result"},
    {109, "bfd_hw_offload_xlate_tx_key",         "bfd_hw_offload_xlate_payload_result",    "bfd_logical_hw_offload_xlate_payload_result"},
    {110, "bfd_hw_offload_xlate_rx_key",         "bfd_hw_offload_xlate_rx_result",         "bfd_logical_hw_offload_xlate_rx_result"},
    {111, "vni_info_st_xlate_key",               "vni_info_st_xlate_result",               "vni_info_logical_res_xlate"},
    {112, "l2mc_mmrp_leaf_key_xlate",            "l2mc_mmrp_leaf_res_xlate",               "l2mc_mmrp_leaf_logical_res_xlate"},
    {113, "ipmc_bidir_key_xlate",                "ipmc_bidir_res_xlate",                   "ipmc_bidir_logical_res_xlate"},
    {115, "srv6_sida_key_xlate",                 "srv6_sida_res_xlate",                    "generic_xlate_logical_result"},
    {116, "srv6_local_sid_key_xlate",            "srv6_local_sid_entry_xlate",             "generic_xlate_logical_result"},
    {121, "ipv4_leaf_fastip_xlate_key",          "ip_leaf_fastip_xlate_result",            "generic_xlate_logical_result"},
};
// clang-format on

// What the slots of a table are to hold today.
Table expected(int id) {
    const auto own = std::find_if(tables.begin(), tables.end(), [id](const Table& table) { return table.id == id; });
    if (own == tables.end() || missing.contains(id)) {
        return {id, "generic_xlate_key", "generic_xlate_result", "generic_xlate_logical_result"};
    }
    return *own;
}

std::string name_of(const void* function) {
    Dl_info info{};
    return dladdr(function, &info) != 0 && info.dli_sname != nullptr ? info.dli_sname : "no exported function";
}

template <typename Function>
void expect_slot(Function* slot, const std::string& translator) {
    const void* const exported = dlsym(RTLD_DEFAULT, translator.c_str());
    const void* const held = reinterpret_cast<const void*>(slot);
    ASSERT_NE(exported, nullptr) << translator << " is not exported";
    EXPECT_EQ(held, exported) << "holds " << name_of(held) << " instead of " << translator;
}

TEST(Dispatch, HoldsTheTranslatorsOfEveryTable) {
    for (int id = 0; id < table_count; ++id) {
        SCOPED_TRACE("table " + std::to_string(id));
        const Table table = expected(id);
        expect_slot(l2p_ucode_func_table[id].key, table.key);
        expect_slot(l2p_ucode_func_table[id].result, table.result);
        expect_slot(p2l_ucode_func_table[id], table.reverse);
    }
}

TEST(Dispatch, HasNoEmptySlot) {
    for (int id = 0; id < table_count; ++id) {
        EXPECT_NE(l2p_ucode_func_table[id].key, nullptr) << id;
        EXPECT_NE(l2p_ucode_func_table[id].result, nullptr) << id;
        EXPECT_NE(p2l_ucode_func_table[id], nullptr) << id;
    }
}

TEST(Dispatch, IsMappedCompletely) {
    std::multiset<int> ids{generic_tables.begin(), generic_tables.end()};
    for (const Table& table : tables) {
        ids.insert(table.id);
    }
    for (int id = 0; id < table_count; ++id) {
        EXPECT_EQ(ids.count(id), 1U) << id;
    }
    EXPECT_EQ(ids.size(), 128U);
}

TEST(Dispatch, MissesOnlyTranslatorsOfTablesThatHaveSome) {
    for (const int id : missing) {
        EXPECT_EQ(std::count(generic_tables.begin(), generic_tables.end(), id), 0) << id;
    }
}

// A caller may put translators of its own in place.
TEST(Dispatch, IsWritable) {
    npxlate_key_fn* volatile* const slot = &l2p_ucode_func_table[127].key;
    npxlate_key_fn* const key = *slot;
    *slot = generic_fast_ip_xlate_key;
    EXPECT_EQ(*slot, generic_fast_ip_xlate_key);
    *slot = key;

    npxlate_p2l_entry volatile* const back = &p2l_ucode_func_table[127];
    npxlate_reverse_fn* const reverse = *back;
    *back = rx_adjacency_type_logical_xlate_result;
    EXPECT_EQ(*back, rx_adjacency_type_logical_xlate_result);
    *back = reverse;
}

TEST(TxAdjKeyMax, Is4095AtFirst) { EXPECT_EQ(TX_ADJ_KEY_MAX, 4095); }

}  // namespace
