/* The public headers as a C11 program sees them. */
#include <npxlate/npxlate.h>
#include <npxlate/sizes.h>

#include <stddef.h>

_Static_assert(sizeof(struct npxlate_l2p_entry) == 2 * sizeof(void (*)(void)), "an entry is two pointers");
_Static_assert(offsetof(struct npxlate_l2p_entry, key) == 0, "the key translator first");
_Static_assert(sizeof(npxlate_p2l_entry) == sizeof(void (*)(void)), "an entry is one pointer");
_Static_assert(sizeof l2p_ucode_func_table == sizeof(void (*)(void)) * 2 * 128, "128 tables");
_Static_assert(sizeof p2l_ucode_func_table == 128 * sizeof(void (*)(void)), "128 tables");
_Static_assert(sizeof quill_to_topparse_mregs == 480, "60 registers");
_Static_assert(sizeof quill_to_topresolve_mregs == 1536, "192 registers");
_Static_assert(sizeof quill_to_toplearn_mregs == 120, "15 registers");
_Static_assert(NPXLATE_OK == 0 && NPXLATE_INVALID == 22, "statuses");
_Static_assert(NPXLATE_OUT_OF_RANGE == 34 && NPXLATE_NOT_SUPPORTED == 95, "statuses");
_Static_assert(NPXLATE_MAX_PHYSICAL_LENGTH == 96 && NPXLATE_MAX_LOGICAL_LENGTH == 168, "sizes of buffers");
_Static_assert(sizeof TX_ADJ_KEY_MAX == 2, "16 bits");

int main(void) {
    const unsigned char key[3] = {1, 2, 3};
    unsigned char physical[NPXLATE_MAX_PHYSICAL_LENGTH];
    uint32_t length = 0;
    /* A type of 1 restores nothing but itself; the last byte of a key tells of an Ethernet segment, whose L1.0 is P0.0.
     */
    const uint32_t type = 1;
    const unsigned char record[32] = {1};
    const unsigned char segment_key[8] = {0, 0, 0, 0, 0, 0, 0, 0xff};
    unsigned char logical[NPXLATE_MAX_LOGICAL_LENGTH] = {0};
    if (npxlate_reverse_of_table_52()(record, sizeof record, logical, &type) != NPXLATE_OK || logical[0] != 1 ||
        npxlate_reverse_of_table_92()(record, 8, logical, segment_key) != NPXLATE_OK || logical[1] != 1) {
        return 1;
    }
    return l2p_ucode_func_table[4].key(key, 3, physical, &length) == NPXLATE_OK && length == 3 &&
                   npxlate_sizes_of_table(4)->key.physical_most == length
               ? 0
               : 1;
}
