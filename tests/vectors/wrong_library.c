/* A library with one translator of this interface, the virtual MAC result, which is wrong in one way. */
#include <signal.h>

#include <npxlate/npxlate.h>

int32_t vrrp_vmac_entry_st_xlate_result(const void* logical, int32_t logical_length, void* physical,
                                        uint32_t* physical_length) {
    const unsigned char* in = logical;
    unsigned char* out = physical;
    (void)logical_length;
    for (int i = 0; i < 8; ++i) {
        out[i] = i < 4 ? 0 : in[i];
    }
    out[0] = 0x11;
    out[2] = 1;
    *physical_length = 8;
#ifdef MOVES_A_BIT
    out[6] = (unsigned char)((out[6] & ~0x08) | ((in[6] >> 4 & 1) << 3));
#endif
#ifdef CRASHES
    raise(SIGSEGV);
#endif
#ifdef WRITES_OUTSIDE
    out[8] = 0;
#endif
#ifdef RETURNS_ANOTHER_STATUS
    return NPXLATE_INVALID;
#else
    return NPXLATE_OK;
#endif
}
