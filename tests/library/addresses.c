/* A function has one address, in the library and in the program, so that entries of the dispatch tables can be compared
 * with translators by name. Built with and without position independence: without, the program has to settle for
 * addresses before the library is loaded. */
#include <stdio.h>

#include <npxlate/npxlate.h>

static int failed = 0;

static void same(const char* what, int equal) {
    if (!equal) {
        (void)fprintf(stderr, "%s: another address in the library than in the program\n", what);
        failed = 1;
    }
}

#define SAME(entry, translator) same(#translator, (void (*)(void))(entry) == (void (*)(void))(translator))

int main(void) {
    SAME(l2p_ucode_func_table[0].key, generic_xlate_key);
    SAME(l2p_ucode_func_table[4].key, rx_adjacency_type_xlate_key);
    SAME(l2p_ucode_func_table[4].result, rx_adjacency_type_xlate_result);
    SAME(p2l_ucode_func_table[4], rx_adjacency_type_logical_xlate_result);
    SAME(p2l_ucode_func_table[52], ipmc_encap_logical_res_xlate);
    if (quill_to_get_mreg_init(1) != quill_to_topresolve_mregs) {
        (void)fprintf(stderr, "quill_to_topresolve_mregs: another address in the library than in the program\n");
        failed = 1;
    }
    return failed;
}
