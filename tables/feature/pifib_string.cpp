// Platform-FIB record, by name, written over a record that the caller has prepared.

#include "frame/helpers.h"

using namespace npxlate;

namespace {

constexpr std::size_t size = 32;

// P0.6 and P22-24 stay as the caller prepared them.
constexpr Layout result{
    bit(P(0, 7), L(0, 7)),
    bit(P(0, 5), L(0, 5)),
    header_byte(P(0, 4, 0)),
    copied(P(1), L(1), 21),
    copied(P(25), L(25), 7),
};

}  // namespace

// The one result translator that reports no length.
std::int32_t pifib_ez_xlate_result(const void* logical, std::int32_t, void* physical) {
    const LogicalSource<size> in{logical};
    auto out = PhysicalRecord<size>::kept_from(P(0), physical);
    place<result>(out, in);
    out.store(physical);
    return NPXLATE_OK;
}
