// What each record is, in words: the one place from which the tools, the header and the pages have it.
#include <string>
#include <string_view>

#include "catalogue/catalogue.h"

namespace catalogue {
namespace {

struct TableTitle {
    unsigned table;
    std::string_view title;
};

// Of the tables that have a translator of their own.
constexpr TableTitle table_titles[] = {
    {3, "hierarchical-QoS hash"},
    {4, "receive adjacency"},
    {5, "transmit adjacency"},
    {7, "TE next hop"},
    {8, "link-aggregation bundle"},
    {11, "IP leaf"},
    {12, "recursive load distribution"},
    {13, "non-recursive load distribution"},
    {16, "strict RPF list"},
    {17, "VRRP virtual MAC address"},
    {19, "egress port"},
    {21, "multicast interface punt"},
    {22, "SPAN forwarding (mirroring)"},
    {23, "cross-connect"},
    {24, "IPv4 multicast leaf"},
    {26, "IP multicast node"},
    {27, "L2VPN load distribution"},
    {28, "MPLS leaf"},
    {30, "EVPN multi-homing peer"},
    {31, "layer-2 unicast forwarding"},
    {35, "bridge-domain member"},
    {37, "extended LSP attribute"},
    {40, "IP multicast outgoing list"},
    {41, "ACL statistics hash"},
    {42, "fast-path IPv6 leaf"},
    {44, "ICU source port"},
    {45, "layer-2 multicast outgoing list"},
    {46, "platform table"},
    {48, "video-monitoring flow"},
    {49, "video-monitoring interface"},
    {50, "MoFRR information"},
    {51, "MoFRR watchdog counter"},
    {52, "multicast encapsulation and MLC"},
    {53, "encapsulation outgoing list"},
    {54, "layer-2 IPv4 multicast leaf"},
    {56, "layer-2 multicast node"},
    {58, "I-SID"},
    {59, "GRE qualifier"},
    {60, "link-aggregation member information"},
    {61, "IPv6 (S,G) multicast leaf"},
    {62, "IPv6 (*,G) multicast leaf"},
    {64, "point-to-multipoint MPLS outgoing list"},
    {65, "DHCP binding"},
    {66, "LI-MD"},
    {67, "PPPoE subscriber session"},
    {68, "L2TP subscriber session"},
    {69, "sampling information"},
    {70, "EVPN MAC address"},
    {71, "remote slot index"},
    {74, "cross-connect extension"},
    {75, "bridge domain"},
    {76, "rack table"},
    {77, "remote punt"},
    {79, "LISP instance to VRF"},
    {84, "video-monitoring RTP payload type"},
    {85, "layer-2 IPv6 (S,G) multicast leaf"},
    {86, "layer-2 IPv6 (*,G) multicast leaf"},
    {88, "service configuration"},
    {89, "external service"},
    {90, "IPv6 link-local address"},
    {92, "Ethernet segment and spanning-tree instance"},
    {93, "L2TPv3-over-IPv6 tunnel"},
    {94, "scaled-ACL key"},
    {96, "scaled-ACL leaf"},
    {97, "MPLS RPF list"},
    {98, "next-hop index"},
    {102, "protected link-aggregation bundle"},
    {105, "bridge-domain extension"},
    {107, "IP subscriber session"},
    {108, "BFD transmit encapsulation"},
    {109, "BFD transmit payload"},
    {110, "BFD receive"},
    {111, "VNI information"},
    {112, "MMRP leaf"},
    {113, "bidirectional PIM"},
    {115, "SRv6 SID array"},
    {116, "SRv6 local SID"},
    {121, "fast-path IPv4 leaf"},
};

struct NamedTitle {
    std::string_view name;
    std::string_view title;
};

// Of the translators that stand in no table.
constexpr NamedTitle named_titles[] = {
    {"generic_fast_ip_xlate_key", "generic fast-path IP"},
    {"generic_fast_ip_xlate_result", "generic fast-path IP"},
    {"modulo_xlate_key", "modulo"},
    {"modulo_xlate_result", "modulo"},
    {"cfm_hwo_xlate_tx_key", "CFM transmit"},
    {"cfm_hwo_xlate_tx_result", "CFM transmit"},
    {"cfm_logical_hwo_xlate_tx_result", "CFM transmit"},
    {"cfm_hwo_xlate_tx2_result", "second CFM transmit"},
    {"cfm_logical_hwo_xlate_tx2_result", "second CFM transmit"},
    {"cfm_hwo_xlate_rx_key", "CFM receive"},
    {"cfm_hwo_xlate_rx_result", "CFM receive"},
    {"cfm_logical_hwo_xlate_rx_result", "CFM receive"},
    {"bfd_disc_xlate_rx_key", "BFD discriminator"},
    {"bfd_disc_xlate_rx_result", "BFD discriminator"},
    {"srv6_array_res_xlate", "SRv6 SID list"},
    {"srv6_info_res_xlate", "SRv6 information record"},
    {"ipv6_srh_encap_logical_res_xlate", "SRH encapsulation"},
    {"sr_te_lspa_key", "segment-routing LSP attribute"},
    {"sr_te_lspa_result", "segment-routing LSP attribute"},
    {"ipmc_encap_info_key_xlate", "multicast encapsulation"},
    {"mvpn_encap_info_res_xlate", "multicast encapsulation"},
    {"ipmc_mlc_key_xlate", "MLC"},
    {"ipmc_mlc_res_xlate", "MLC"},
    {"pbbevpn_esi_bmac_type_xlate_key", "PBB-EVPN backbone MAC address"},
    {"pbbevpn_esi_bmac_type_xlate_result", "PBB-EVPN backbone MAC address"},
    {"pbbevpn_esi_bmac_type_logical_xlate_result", "PBB-EVPN backbone MAC address"},
    {"velox_msti_info_type_xlate_key", "spanning-tree instance"},
    {"velox_msti_info_type_xlate_result", "spanning-tree instance"},
    {"msti_info_logical_res_xlate", "spanning-tree instance"},
    {"gre_encap_type_xlate_key", "GRE encapsulation"},
    {"gre_encap_type_xlate_result", "GRE encapsulation"},
    {"gre_ifh_2_proto_index_xlate", "GRE interface to protocol"},
    {"gre_ifh_2_proto_result_xlate", "GRE interface to protocol"},
    {"qos_str_xlate_result", "QoS string"},
    {"flow_qos_hash_st_xlate_key", "flow-QoS hash"},
    {"flow_qos_hash_st_xlate_result", "flow-QoS hash"},
    {"edpl_str_xlate_result", "EDPL string"},
    {"pbr_str_xlate_result", "policy-based-routing string"},
    {"pifib_ez_xlate_result", "platform-FIB record"},
    {"rx_service_node_xlate_key", "service node"},
    {"rx_service_node_xlate_hash_key", "service node"},
    {"rx_service_node_xlate_result", "service node"},
    {"rx_common_flow_key", "common flow"},
    {"rx_common_flow_xlate_result", "common flow"},
};

// Of the tables that have only the generic translators, and of these.
constexpr std::string_view generic_title = "generic record";

bool is_generic(const Translator& translator) {
    return translator.name == "generic_xlate_key" || translator.name == "generic_xlate_result" ||
           translator.name == "generic_xlate_logical_result";
}

}  // namespace

std::string_view title_of_table(unsigned table) {
    for (const TableTitle& entry : table_titles) {
        if (entry.table == table) {
            return entry.title;
        }
    }
    return generic_title;
}

std::string title(const Translator& translator) {
    if (is_generic(translator)) {
        return std::string{generic_title};
    }
    for (const NamedTitle& entry : named_titles) {
        if (entry.name == translator.name) {
            return std::string{entry.title};
        }
    }
    std::string titles;
    for (const unsigned table : tables_of(translator)) {
        titles += (titles.empty() ? "" : ", ") + std::string{title_of_table(table)};
    }
    return titles;
}

}  // namespace catalogue
