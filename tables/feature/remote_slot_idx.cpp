// Remote slot index, table 71: programmed by the generic key and result translators. Its own reverse reads what the
// remote punt result of table 77 writes; that pairing is intended.

#include "frame/helpers.h"

using namespace npxlate;

namespace {

constexpr std::int32_t physical_size = 8;

// P4-5 is not restored; that is intended.
constexpr Layout restored{
    copied(L(0), P(1), 2),
    bit(L(4, 7), P(3, 0)),
};

}  // namespace

std::int32_t remote_slot_idx_logical_res_xlate(const void* physical, std::int32_t physical_length, void* logical) {
    if (!has_length<physical_size>(physical_length)) {
        return NPXLATE_INVALID;
    }
    return place_only<restored, physical_size, 5>(physical, logical);
}
