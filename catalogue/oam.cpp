#include "catalogue/catalogue.h"

namespace catalogue {

std::vector<Translator> oam() {
    return {
        NPXLATE_KEY(cfm_hwo_xlate_tx_key, 4, 4),
        NPXLATE_KEY(cfm_hwo_xlate_rx_key, 5, 5),
        NPXLATE_RESULT(cfm_hwo_xlate_tx_result, 96, 96),
        NPXLATE_REVERSE(cfm_logical_hwo_xlate_tx_result, 96, 96),
        NPXLATE_RESULT(cfm_hwo_xlate_tx2_result, 64, 64),
        NPXLATE_REVERSE(cfm_logical_hwo_xlate_tx2_result, 64, 64),
        NPXLATE_RESULT(cfm_hwo_xlate_rx_result, 24, 24),
        NPXLATE_REVERSE(cfm_logical_hwo_xlate_rx_result, 24, 24),
        NPXLATE_KEY(bfd_hw_offload_xlate_tx_key, 4, 4)
            .with_samples({
                {"L1 = 2, swapped", "L1=2"},
                {"L1 = 4, swapped", "L1=4"},
                {"other L1, kept", "L1=3"},
            }),
        NPXLATE_RESULT(bfd_hw_offload_xlate_encap_result, 96, 96)
            .with_samples({
                {"BFD", "L32.7-4=2"},
                {"BFD, type 0", "L32.7-4=0"},
                {"CFM", "L32.7-4=1"},
            }),
        NPXLATE_REVERSE(bfd_logical_hw_offload_xlate_encp_result, 96, 96)
            .with_samples({
                {"BFD", "P32.7-4=0"},
                {"CFM", "P32.7-4=1"},
            }),
        NPXLATE_RESULT(bfd_hw_offload_xlate_payload_result, 64, 64)
            .with_samples({
                {"BFD, whole payload", "L2.3-0=2 L0.5=0"},
                {"BFD, one word", "L2.3-0=2 L0.5=1"},
                {"CFM", "L2.3-0=1"},
            }),
        NPXLATE_REVERSE(bfd_logical_hw_offload_xlate_payload_result, 64, 64)
            .with_samples({
                {"BFD, whole payload", "P2.3-0=0 P0.5=0"},
                {"BFD, one word", "P2.3-0=0 P0.5=1"},
                {"CFM", "P2.3-0=1"},
            }),
        NPXLATE_KEY(bfd_hw_offload_xlate_rx_key, 5, 5)
            .with_samples({
                {"BFD", "L4=0"},
                {"discriminator", "L4=2"},
                {"CFM", "L4=1"},
            }),
        NPXLATE_KEY(bfd_disc_xlate_rx_key, 5, 5),
        NPXLATE_RESULT(bfd_hw_offload_xlate_rx_result, 24, 24)
            .with_samples({
                {"BFD", "L7=0"},
                {"discriminator", "L7=2"},
                {"CFM", "L7=1"},
            }),
        NPXLATE_RESULT(bfd_disc_xlate_rx_result, 24, 24),
        NPXLATE_REVERSE(bfd_logical_hw_offload_xlate_rx_result, 24, 24)
            .with_samples({
                {"BFD", "P7=0"},
                {"discriminator, read back as BFD", "P7=2"},
                {"CFM", "P7=1"},
            }),
        NPXLATE_KEY(vrrp_vmac_entry_st_xlate_key, 8, 8),
        NPXLATE_RESULT(vrrp_vmac_entry_st_xlate_result, 8, 8),
        NPXLATE_REVERSE(vrrp_logical_xlate_result, 8, 8),
    };
}

}  // namespace catalogue
