// EDPL string, by name: the caller has built the physical record, only the header is missing.

#include "frame/helpers.h"

using namespace npxlate;

namespace {

constexpr std::uint32_t physical_size = 32;

constexpr Layout header{
    constant(P(0, 4), 1),
    constant(P(0, 0), 1),
};

}  // namespace

std::int32_t edpl_str_xlate_result(const void* logical, std::int32_t, void* physical, std::uint32_t* physical_length) {
    const LogicalSource<0> in{logical};
    // Of the 32 bytes only the first is touched.
    auto out = PhysicalRecord<1>::kept_from(P(0), physical);
    place<header>(out, in);
    out.store(physical);
    *physical_length = physical_size;
    return NPXLATE_OK;
}
