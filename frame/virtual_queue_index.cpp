// The adjustment of a queue index by itself, for callers that have no record around it.

#include "frame/virtual_queue_index.h"

#include <npxlate/npxlate.h>

using namespace npxlate;

std::uint32_t new_vqi_based_on_vqi_range(std::uint32_t vqi, std::uint32_t range) {
    return queue_index.apply(vqi, range);
}
