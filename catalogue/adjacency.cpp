#include "catalogue/catalogue.h"

namespace catalogue {

std::vector<Translator> adjacency() {
    return {
        NPXLATE_KEY(rx_adjacency_type_xlate_key, 3, 3),
        NPXLATE_RESULT(rx_adjacency_type_xlate_result, 30, 16)
            .with_samples({
                {"A, 24 bits", "L0.5=1 L2.0=1"},
                {"A, 32 bits", "L0.5=1 L2.0=0"},
                {"B", "L0.5=0 L0.6=1"},
                {"C, neither byte", "L0.5=0 L0.6=0 L1.0=1 L1.1=0 L1.2=0"},
                {"C, L28", "L0.5=0 L0.6=0 L1.0=1 L1.1=0 L1.2=1"},
                {"C, L29", "L0.5=0 L0.6=0 L1.0=1 L1.1=1"},
                {"D", "L0.5=0 L0.6=0 L1.0=0 L1.3=1"},
                {"E", "L0.5=0 L0.6=0 L1.0=0 L1.3=0"},
                {"E, range 4", "L0.5=0 L0.6=0 L1.0=0 L1.3=0 L8=4"},
                {"E, range 8", "L0.5=0 L0.6=0 L1.0=0 L1.3=0 L8=8"},
            }),
        NPXLATE_REVERSE(rx_adjacency_type_logical_xlate_result, 30, 16)
            .with(Trait::keeps_buffer)
            .with_samples({
                {"A, 24 bits", "P3.7=1 P3.5=1"},
                {"A, 32 bits", "P3.7=1 P3.5=0"},
                {"C, neither byte", "P3.7=0 P1.0=1 P1.1=0 P1.2=0"},
                {"C, L28", "P3.7=0 P1.0=1 P1.1=0 P1.2=1"},
                {"C, L29", "P3.7=0 P1.0=1 P1.1=1 P1.2=0"},
                {"C, L28 and L29", "P3.7=0 P1.0=1 P1.1=1 P1.2=1"},
                {"B, D, E", "P3.7=0 P1.0=0 P2.5=0"},
            }),
        NPXLATE_KEY(tx_adjacency_type_xlate_key, 3, 3),
        NPXLATE_RESULT(tx_adjacency_type_xlate_result, 90, 32)
            .with_samples({
                {"X", "L72.2=1"},
                {"T1, value, triple", "L72.2=0 L2.0=1 L12.1=1 L12.2=1"},
                {"T1, value", "L72.2=0 L2.0=1 L12.1=1 L12.2=0"},
                {"T1, queue, triple", "L72.2=0 L2.0=1 L12.1=0 L12.2=1 L12.3=1"},
                {"T1, queue", "L72.2=0 L2.0=1 L12.1=0 L12.2=1 L12.3=0"},
                {"T1, queue, range 4", "L72.2=0 L2.0=1 L12.1=0 L12.2=0 L20=4"},
                {"T1, queue, range 8", "L72.2=0 L2.0=1 L12.1=0 L12.2=0 L20=8"},
                {"T2, 24 bits", "L72.2=0 L2.0=0 L0.7=1 L72.1=1"},
                {"T2, two words", "L72.2=0 L2.0=0 L0.7=0 L1.4=1 L72.1=0"},
                {"T3", "L72.2=0 L2.0=0 L0.7=0 L1.4=0 L1.1=1"},
                {"T4", "L72.2=0 L2.0=0 L0.7=0 L1.4=0 L1.1=0 L1.2=1 L0.5=0"},
                {"T4 with L88-89", "L72.2=0 L2.0=0 L0.7=0 L1.4=0 L1.1=0 L1.2=1 L0.5=1"},
                {"T5", "L72.2=0 L2.0=0 L0.7=0 L1.4=0 L1.1=0 L1.2=0 L1.6=1"},
                {"T6", "L72.2=0 L2.0=0 L0.7=0 L1.4=0 L1.1=0 L1.2=0 L1.6=0 L0.5=0 L2.1=0"},
                {"T6 with L88-89 and triple", "L72.2=0 L2.0=0 L0.7=0 L1.4=0 L1.1=0 L1.2=0 L1.6=0 L0.5=1 L2.1=1"},
            }),
        NPXLATE_REVERSE(tx_adjacency_type_logical_xlate_result, 90, 32)
            .with_samples({
                {"T2, 24 bits", "P3.7=1 P2.4=1 P0.6=1"},
                {"T2, two words", "P3.7=1 P2.4=0 P0.6=0"},
                {"T4", "P3.7=0 P1.3=1 P0.6=0"},
                {"T4 with L88-89", "P3.7=0 P1.3=1 P0.6=1"},
                {"others", "P3.7=0 P1.3=0 P1.6=0 P0.6=0"},
                {"others with L88-89 and triple", "P3.7=0 P1.3=0 P1.6=1 P0.6=1"},
            }),
        NPXLATE_KEY(te_nh_adjacency_type_xlate_key, 2, 2),
        NPXLATE_RESULT(te_nh_adjacency_type_xlate_result, 61, 32)
            .with_samples({
                {"L0.5 set", "L0.5=1 L0.2=0 L56=31"},
                {"L0.5 set, L56 above 31, triple", "L0.5=1 L0.2=1 L56=32"},
                {"L0.5 clear", "L0.5=0 L0.2=0 L8-10=0x1000"},
                {"L0.5 clear, marked index, triple", "L0.5=0 L0.2=1 L8-10=0xfff"},
            }),
        NPXLATE_KEY(strict_rpf_uidb_list_type_xlate_key, 3, 3),
        NPXLATE_RESULT(strict_rpf_uidb_list_type_xlate_result, 33, 32),
        NPXLATE_KEY(egr_port_xlate_key, 2, 2),
        NPXLATE_KEY(nhindex_type_xlate_key, 3, 3),
        NPXLATE_RESULT(nhindex_type_xlate_result, 21, 32),
    };
}

}  // namespace catalogue
