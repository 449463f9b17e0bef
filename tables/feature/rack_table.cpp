// Rack table, table 76. Read back by the generic reverse.

#include "frame/helpers.h"
#include "frame/virtual_queue_index.h"

using namespace npxlate;

namespace {

constexpr std::size_t logical_size = 20;
constexpr std::size_t physical_size = 32;

constexpr Layout result{
    header_byte(P(0)),
    constant(P(1, 7), 1),
    copied(P(2), L(12), 2),
    copied(P(4), L(10), 2),
    copied(P(6), L(14), 6),
    copied(P(12), L(8)),
    copied(P(13), L(6), 2),
};

}  // namespace

std::int32_t quill_rack_table_xlate_key(const void* logical, std::int32_t, void* physical,
                                        std::uint32_t* physical_length) {
    return copy_key<2>(logical, physical, physical_length);
}

std::int32_t quill_rack_table_xlate_result(const void* logical, std::int32_t, void* physical,
                                           std::uint32_t* physical_length) {
    const LogicalSource<logical_size> in{logical};
    PhysicalRecord<physical_size> out;
    place<result>(out, in);
    // The one queue index that stays little-endian.
    put_little<2>(out, P(16), apply(queue_index, in.little16(L(0)), in.byte(L(2))), "virtual queue index");
    return finish(out, physical, physical_length);
}
