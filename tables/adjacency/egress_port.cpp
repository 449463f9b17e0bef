// Egress port, table 19: only the key has a translator of its own.

#include "frame/helpers.h"

using namespace npxlate;

std::int32_t egr_port_xlate_key(const void* logical, std::int32_t, void* physical, std::uint32_t* physical_length) {
    return copy_key<2>(logical, physical, physical_length);
}
