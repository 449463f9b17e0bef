// The translators of tables whose logical and physical records hold the same bytes, and the two pairs of tables that
// are addressed by name.

#include "frame/helpers.h"

using namespace npxlate;

namespace {

// The bounds differ on purpose: a 64-byte result can be programmed but not read back. A negative length passes them and
// is the caller's error.
constexpr std::int32_t max_key_length = 47;
constexpr std::int32_t max_result_length = 64;
constexpr std::int32_t max_reverse_length = 63;

// clang-format off: one row a line.
constexpr Layout modulo_key{
    copied(P(0), L(2)),
    bits(P(1, 7, 4), L(0, 3, 0)),
    bits(P(1, 3, 0), L(3, 3, 0)),
};

constexpr Layout modulo_result{
    header_byte(P(0)),
    bits(P(8, 5, 0), L(0, 5, 0)).repeated(8, P(1), L(1)),
};
// clang-format on

}  // namespace

std::int32_t generic_xlate_key(const void* logical, std::int32_t logical_length, void* physical,
                               std::uint32_t* physical_length) {
    if (logical_length > max_key_length) {
        return NPXLATE_INVALID;
    }
    copy_bytes(physical, logical, logical_length);
    *physical_length = static_cast<std::uint32_t>(logical_length);
    return NPXLATE_OK;
}

std::int32_t generic_xlate_result(const void* logical, std::int32_t logical_length, void* physical,
                                  std::uint32_t* physical_length) {
    if (logical_length > max_result_length) {
        return NPXLATE_INVALID;
    }
    copy_bytes(physical, logical, logical_length);
    set_header_bits(physical, result_header);
    *physical_length = static_cast<std::uint32_t>(logical_length);
    return NPXLATE_OK;
}

std::int32_t generic_xlate_logical_result(const void* physical, std::int32_t physical_length, void* logical) {
    if (physical_length > max_reverse_length) {
        return NPXLATE_INVALID;
    }
    copy_bytes(logical, physical, physical_length);
    return NPXLATE_OK;
}

std::int32_t generic_fast_ip_xlate_key(const void* logical, std::int32_t logical_length, void* physical,
                                       std::uint32_t* physical_length) {
    return generic_xlate_key(logical, logical_length, physical, physical_length);
}

std::int32_t generic_fast_ip_xlate_result(const void* logical, std::int32_t logical_length, void* physical,
                                          std::uint32_t* physical_length) {
    if (logical_length > max_result_length) {
        return NPXLATE_INVALID;
    }
    const LogicalSource<3> in{logical};
    PhysicalRecord<4> out;
    place<short_result>(out, in);
    out.store(physical);
    // Whatever the length, four bytes are written and one more than was given is reported.
    *physical_length = static_cast<std::uint32_t>(logical_length) + 1;
    return NPXLATE_OK;
}

std::int32_t modulo_xlate_key(const void* logical, std::int32_t, void* physical, std::uint32_t*) {
    const LogicalSource<4> in{logical};
    PhysicalRecord<2> out;
    place<modulo_key>(out, in);
    out.store(physical);
    return NPXLATE_OK;
}

std::int32_t modulo_xlate_result(const void* logical, std::int32_t, void* physical, std::uint32_t*) {
    const LogicalSource<8> in{logical};
    PhysicalRecord<16> out;
    place<modulo_result>(out, in);
    out.store(physical);
    return NPXLATE_OK;
}
