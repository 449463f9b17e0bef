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
    return l2p_ucode_func_table[4].key(key, 3, physical, &length) == NPXLATE_OK && length == 3 &&
                   npxlate_sizes_of_table(4)->key.physical_most == length
               ? 0
               : 1;
}
