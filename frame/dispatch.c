/*
 * The map from table id to translators, and the two dispatch tables made of it. In C, where a function pointer of
 * another type is a constant too, so that the tables are plain initialised data.
 */
#include <npxlate/npxlate.h>

/* A reverse translator with a fourth argument, under the common type. */
#define COMMON_TYPE(translator) ((npxlate_reverse_fn*)(void (*)(void))(translator))

/* Every table id in order: its key, result and reverse translator. */
/* clang-format off */
#define MAP(TABLE, GENERIC) \
    GENERIC(0)                                                                                                                             \
    GENERIC(1)                                                                                                                             \
    GENERIC(2)                                                                                                                             \
    TABLE(3, h_qos_ez_xlate_hash_key, h_qos_ez_xlate_hash_result, generic_xlate_logical_result)                                            \
    TABLE(4, rx_adjacency_type_xlate_key, rx_adjacency_type_xlate_result, rx_adjacency_type_logical_xlate_result)                          \
    TABLE(5, tx_adjacency_type_xlate_key, tx_adjacency_type_xlate_result, tx_adjacency_type_logical_xlate_result)                          \
    GENERIC(6)                                                                                                                             \
    TABLE(7, te_nh_adjacency_type_xlate_key, te_nh_adjacency_type_xlate_result, generic_xlate_logical_result)                              \
    TABLE(8, lag_type_xlate_key, lag_type_xlate_result, lag_type_logical_xlate_result)                                                     \
    GENERIC(9)                                                                                                                             \
    GENERIC(10)                                                                                                                            \
    TABLE(11, ip_leaf_st_xlate_key, ip_leaf_st_xlate_result, ip_leaf_st_logical_xlate_result)                                              \
    TABLE(12, r_ldi_key_st_xlate_key, r_ldi_entry_st_result, generic_xlate_logical_result)                                                 \
    TABLE(13, nr_ldi_entry_st_xlate_key, nr_ldi_entry_st_result, nr_ldi_entry_st_logical_xlate_result)                                     \
    GENERIC(14)                                                                                                                            \
    GENERIC(15)                                                                                                                            \
    TABLE(16, strict_rpf_uidb_list_type_xlate_key, strict_rpf_uidb_list_type_xlate_result, generic_xlate_logical_result)                   \
    TABLE(17, vrrp_vmac_entry_st_xlate_key, vrrp_vmac_entry_st_xlate_result, vrrp_logical_xlate_result)                                    \
    GENERIC(18)                                                                                                                            \
    TABLE(19, egr_port_xlate_key, generic_xlate_result, generic_xlate_logical_result)                                                      \
    GENERIC(20)                                                                                                                            \
    TABLE(21, ipmc_intf_punt_key_xlate, ipmc_intf_punt_res_xlate, generic_xlate_logical_result)                                            \
    TABLE(22, span_fwd_st_xlate_key, span_fwd_st_xlate_result, span_fwd_logical_xlate_result)                                              \
    TABLE(23, xid_type_xlate_key, xid_type_xlate_result, xid_type_logical_xlate_result)                                                    \
    TABLE(24, ipv4mc_leaf_key_xlate, ipmc_leaf_res_xlate, ipmc_leaf_logical_res_xlate)                                                     \
    GENERIC(25)                                                                                                                            \
    TABLE(26, ipmc_node_key_xlate, ipmc_node_res_xlate, ipmc_node_logical_res_xlate)                                                       \
    TABLE(27, l2_vpn_ldi_type_xlate_key, l2_vpn_ldi_type_xlate_result, generic_xlate_logical_result)                                       \
    TABLE(28, mpls_leaf_st_xlate_key, mpls_leaf_st_result, generic_xlate_logical_result)                                                   \
    GENERIC(29)                                                                                                                            \
    TABLE(30, evpn_mh_peer_type_xlate_key, evpn_mh_peer_type_xlate_result, evpn_mh_peer_type_logical_xlate_result)                         \
    TABLE(31, l2_ufib_type_xlate_key, l2_ufib_type_xlate_result, l2_ufib_type_logical_xlate_result)                                        \
    GENERIC(32)                                                                                                                            \
    GENERIC(33)                                                                                                                            \
    GENERIC(34)                                                                                                                            \
    TABLE(35, bridge_domain_member_type_xlate_key, bridge_domain_member_type_xlate_result, bridge_domain_member_type_logical_xlate_result) \
    GENERIC(36)                                                                                                                            \
    TABLE(37, ext_lspa_st_xlate_key, ext_lspa_st_result, generic_xlate_logical_result)                                                     \
    GENERIC(38)                                                                                                                            \
    GENERIC(39)                                                                                                                            \
    TABLE(40, ipmc_ole_key_xlate, ipmc_ole_res_xlate, ipmc_ole_logical_res_xlate)                                                          \
    TABLE(41, acl_ez_stats_hash_key_xlate, acl_ez_stats_hash_result_st_xlate, acl_ez_stats_hash_logical_res_xlate)                         \
    TABLE(42, ipv6_leaf_fastip_xlate_key, ip_leaf_fastip_xlate_result, generic_xlate_logical_result)                                       \
    GENERIC(43)                                                                                                                            \
    TABLE(44, icu_src_port_st_xlate_key, icu_src_port_st_xlate_result, icu_src_port_logical_res_xlate)                                     \
    TABLE(45, l2mc_ole_key_xlate, l2mc_ole_res_xlate, l2mc_ipv4_ole_logical_res_xlate)                                                     \
    TABLE(46, platform_xlate_pit_key, platform_xlate_pit_result, generic_xlate_logical_result)                                             \
    GENERIC(47)                                                                                                                            \
    TABLE(48, generic_xlate_key, vidmon_str_xlate_result, generic_xlate_logical_result)                                                    \
    TABLE(49, vidmon_intf_hash_key_xlate_key, vidmon_intf_str_xlate_result, generic_xlate_logical_result)                                  \
    TABLE(50, ipmc_mofrr_info_key_xlate, ipmc_mofrr_info_res_xlate, generic_xlate_logical_result)                                          \
    TABLE(51, ipmc_mofrr_wdcnt_key_xlate, ipmc_mofrr_wdcnt_res_xlate, generic_xlate_logical_result)                                        \
    TABLE(52, ipmc_mofrr_mvpn_key_xlate, ipmc_mofrr_mvpn_res_xlate, COMMON_TYPE(ipmc_encap_logical_res_xlate))                             \
    TABLE(53, encap_ole_key_xlate, encap_ole_res_xlate, encap_ole_logical_res_xlate)                                                       \
    TABLE(54, l2mc_ipv4_leaf_key_xlate, l2mc_ipv4_leaf_res_xlate, l2mc_ipv4_leaf_logical_res_xlate)                                        \
    GENERIC(55)                                                                                                                            \
    TABLE(56, l2mc_ipv4_node_key_xlate, l2mc_ipv4_node_res_xlate, l2mc_ipv4_node_logical_res_xlate)                                        \
    GENERIC(57)                                                                                                                            \
    TABLE(58, isid_type_xlate_key, isid_type_xlate_result, isid_type_logical_xlate_result)                                                 \
    TABLE(59, gre_qual_st_xlate_key, gre_qual_st_xlate_result, gre_qual_logical_res_xlate)                                                 \
    TABLE(60, lag_info_type_xlate_key, lag_info_type_xlate_result, lag_info_type_logical_xlate_result)                                     \
    TABLE(61, ipv6mc_sg_leaf_key_xlate, ipv6mc_sg_leaf_res_xlate, ipv6mc_sg_leaf_logical_res_xlate)                                        \
    TABLE(62, ipv6mc_g_leaf_key_xlate, ipmc_leaf_res_xlate, ipmc_leaf_logical_res_xlate)                                                   \
    GENERIC(63)                                                                                                                            \
    TABLE(64, p2mp_mpls_ole_key_xlate, p2mp_mpls_ole_res_xlate, generic_xlate_logical_result)                                              \
    TABLE(65, dhcp_binding_type_xlate_key, dhcp_binding_type_xlate_result, generic_xlate_logical_result)                                   \
    TABLE(66, li_md_st_xlate_key, li_md_st_xlate_result, li_md_logical_xlate_result)                                                       \
    TABLE(67, pppoe_sid_leaf_st_xlate_key, pppoe_sid_leaf_st_xlate_result, sample_nf_info_logical_res_xlate)                               \
    TABLE(68, l2tp_sid_leaf_st_xlate_key, l2tp_sid_leaf_st_xlate_result, l2tp_xlate_logical_result)                                        \
    TABLE(69, sample_nf_info_st_xlate_key, sample_nf_info_st_xlate_result, generic_xlate_logical_result)                                   \
    TABLE(70, evpn_mac_mb_type_xlate_key, evpn_mac_mb_type_xlate_result, evpn_mac_mb_type_logical_xlate_result)                            \
    TABLE(71, generic_xlate_key, generic_xlate_result, remote_slot_idx_logical_res_xlate)                                                  \
    GENERIC(72)                                                                                                                            \
    GENERIC(73)                                                                                                                            \
    TABLE(74, xid_ext_type_xlate_key, xid_ext_type_xlate_result, xid_ext_type_logical_xlate_result)                                        \
    TABLE(75, bridge_domain_type_xlate_key, bridge_domain_type_xlate_result, bridge_domain_type_logical_xlate_result)                      \
    TABLE(76, quill_rack_table_xlate_key, quill_rack_table_xlate_result, generic_xlate_logical_result)                                     \
    TABLE(77, remote_punt_xlate_key, remote_punt_xlate_result, generic_xlate_logical_result)                                               \
    GENERIC(78)                                                                                                                            \
    TABLE(79, lisp_instance_to_vrf_xlate_key, lisp_instance_to_vrf_xlate_result, generic_xlate_logical_result)                             \
    GENERIC(80)                                                                                                                            \
    GENERIC(81)                                                                                                                            \
    GENERIC(82)                                                                                                                            \
    GENERIC(83)                                                                                                                            \
    TABLE(84, vidmon_rtp_pt_xlate_key, vidmon_rtp_pt_xlate_result, generic_xlate_logical_result)                                           \
    TABLE(85, l2v6mc_sg_leaf_key_xlate, l2v6mc_sg_leaf_res_xlate, l2v6mc_sg_leaf_logical_res_xlate)                                        \
    TABLE(86, l2v6mc_g_leaf_key_xlate, l2mc_ipv4_leaf_res_xlate, l2mc_ipv4_leaf_logical_res_xlate)                                         \
    GENERIC(87)                                                                                                                            \
    TABLE(88, rx_service_config_xlate_key, rx_service_config_xlate_result, generic_xlate_logical_result)                                   \
    TABLE(89, rx_service_external_xlate_key, rx_service_external_xlate_result, generic_xlate_logical_result)                               \
    TABLE(90, ipv6_ll_xlate_hash_key, ipv6_ll_xlate_hash_result, generic_xlate_logical_result)                                             \
    GENERIC(91)                                                                                                                            \
    TABLE(92, velox_esi_info_type_xlate_key, velox_esi_info_type_xlate_result, COMMON_TYPE(esi_info_logical_res_xlate))                    \
    TABLE(93, ent_h_l2tpv3ov6_tun_str_xlate_key, ent_h_l2tpv3ov6_tun_str_xlate_result, generic_xlate_logical_result)                       \
    TABLE(94, scale_acl_key_xlate_key, scale_acl_key_xlate_result, generic_xlate_logical_result)                                           \
    GENERIC(95)                                                                                                                            \
    TABLE(96, scale_acl_leaf_xlate_key, scale_acl_leaf_xlate_result, generic_xlate_logical_result)                                         \
    TABLE(97, mpls_rpf_list_xlate_key, mpls_rpf_list_xlate_result, generic_xlate_logical_result)                                           \
    TABLE(98, nhindex_type_xlate_key, nhindex_type_xlate_result, generic_xlate_logical_result)                                             \
    GENERIC(99)                                                                                                                            \
    GENERIC(100)                                                                                                                           \
    GENERIC(101)                                                                                                                           \
    TABLE(102, prot_lag_st_xlate_key, prot_lag_st_xlate_result, prot_lag_logical_res_xlate)                                                \
    GENERIC(103)                                                                                                                           \
    GENERIC(104)                                                                                                                           \
    TABLE(105, bridge_domain_ext_type_xlate_key, bridge_domain_ext_type_xlate_result, bridge_domain_ext_type_logical_xlate_result)         \
    GENERIC(106)                                                                                                                           \
    TABLE(107, ipsub_sid_leaf_st_xlate_key, ipsub_sid_leaf_st_xlate_result, generic_xlate_logical_result)                                  \
    TABLE(108, bfd_hw_offload_xlate_tx_key, bfd_hw_offload_xlate_encap_result, bfd_logical_hw_offload_xlate_encp_result)                   \
    TABLE(109, bfd_hw_offload_xlate_tx_key, bfd_hw_offload_xlate_payload_result, bfd_logical_hw_offload_xlate_payload_result)              \
    TABLE(110, bfd_hw_offload_xlate_rx_key, bfd_hw_offload_xlate_rx_result, bfd_logical_hw_offload_xlate_rx_result)                        \
    TABLE(111, vni_info_st_xlate_key, vni_info_st_xlate_result, vni_info_logical_res_xlate)                                                \
    TABLE(112, l2mc_mmrp_leaf_key_xlate, l2mc_mmrp_leaf_res_xlate, l2mc_mmrp_leaf_logical_res_xlate)                                       \
    TABLE(113, ipmc_bidir_key_xlate, ipmc_bidir_res_xlate, ipmc_bidir_logical_res_xlate)                                                   \
    GENERIC(114)                                                                                                                           \
    TABLE(115, srv6_sida_key_xlate, srv6_sida_res_xlate, generic_xlate_logical_result)                                                     \
    TABLE(116, srv6_local_sid_key_xlate, srv6_local_sid_entry_xlate, generic_xlate_logical_result)                                         \
    GENERIC(117)                                                                                                                           \
    GENERIC(118)                                                                                                                           \
    GENERIC(119)                                                                                                                           \
    GENERIC(120)                                                                                                                           \
    TABLE(121, ipv4_leaf_fastip_xlate_key, ip_leaf_fastip_xlate_result, generic_xlate_logical_result)                                      \
    GENERIC(122)                                                                                                                           \
    GENERIC(123)                                                                                                                           \
    GENERIC(124)                                                                                                                           \
    GENERIC(125)                                                                                                                           \
    GENERIC(126)                                                                                                                           \
    GENERIC(127)
/* clang-format on */

#define KEY_AND_RESULT(id, key_translator, result_translator, reverse_translator) \
    [id] = {.key = (key_translator), .result = (result_translator)},
#define GENERIC_KEY_AND_RESULT(id) [id] = {.key = generic_xlate_key, .result = generic_xlate_result},

#define REVERSE(id, key_translator, result_translator, reverse_translator) [id] = (reverse_translator),
#define GENERIC_REVERSE(id) [id] = generic_xlate_logical_result,

struct npxlate_l2p_entry l2p_ucode_func_table[NPXLATE_TABLE_COUNT] = {MAP(KEY_AND_RESULT, GENERIC_KEY_AND_RESULT)};

npxlate_p2l_entry p2l_ucode_func_table[NPXLATE_TABLE_COUNT] = {MAP(REVERSE, GENERIC_REVERSE)};
