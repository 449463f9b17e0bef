// SRv6 local segment identifier, table 116: a 16-bit index gives three bytes. Read back by the generic reverse.

#include "frame/helpers.h"

using namespace npxlate;

std::int32_t srv6_local_sid_key_xlate(const void* logical, std::int32_t, void* physical,
                                      std::uint32_t* physical_length) {
    return copy_key<2>(logical, physical, physical_length);
}

std::int32_t srv6_local_sid_entry_xlate(const void* logical, std::int32_t, void* physical,
                                        std::uint32_t* physical_length) {
    return place_only<short_result, 3, 8>(logical, physical, physical_length);
}
