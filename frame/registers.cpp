// The values with which the registers of the parse, resolve and learn engines are initialised. The parse and resolve
// engines have several instances, which all get the same values; the tables go register by register, and through the
// instances within each register.

#include <cstdint>

#include <npxlate/npxlate.h>

namespace {

constexpr npxlate_register parse(std::uint32_t instance, std::uint32_t offset, std::uint32_t value) {
    return {11415 + 301 * instance + offset, value};
}

constexpr npxlate_register resolve(std::uint32_t instance, std::uint32_t offset, std::uint32_t value) {
    return {30752 + 274 * instance + offset, value};
}

}  // namespace

#define PARSE(offset, value) \
    parse(0, offset, value), parse(1, offset, value), parse(2, offset, value), parse(3, offset, value)

#define RESOLVE(offset, value)                                                                                      \
    resolve(0, offset, value), resolve(1, offset, value), resolve(2, offset, value), resolve(3, offset, value),     \
        resolve(4, offset, value), resolve(5, offset, value), resolve(6, offset, value), resolve(7, offset, value), \
        resolve(8, offset, value), resolve(9, offset, value), resolve(10, offset, value), resolve(11, offset, value)

constinit const npxlate_register quill_to_topparse_mregs[] = {
    PARSE(0, 0x1f),
    PARSE(1, 0xfffff),
    PARSE(2, 0xf0),
    PARSE(3, 0x3),
    PARSE(4, 0xffc0),
    PARSE(5, 0xff),
    PARSE(6, 0xffff),
    PARSE(7, 0xdf),
    PARSE(8, 0x7e913830),
    PARSE(9, 0xffff7fbf),
    // Offset 10 is not written.
    PARSE(11, 0xffffff),
    PARSE(12, 0x7),
    PARSE(13, 0xf),
    PARSE(14, 0x1000000),
    PARSE(15, 0x0),
};

constinit const npxlate_register quill_to_topresolve_mregs[] = {
    RESOLVE(0, 0x1),        RESOLVE(1, 0xffffff), RESOLVE(2, 0xff), RESOLVE(3, 0xffff),
    RESOLVE(4, 0xff0fffff), RESOLVE(5, 0x1),      RESOLVE(6, 0xf),  RESOLVE(7, 0x3ff),
    RESOLVE(8, 0x3),        RESOLVE(9, 0x4),      RESOLVE(10, 0x0), RESOLVE(11, 0x13004150),
    RESOLVE(12, 0x7),       RESOLVE(13, 0x0),     RESOLVE(14, 0x0), RESOLVE(15, 0x0),
};

constinit const npxlate_register quill_to_toplearn_mregs[] = {
    {13091, 0xffffff},
    {13092, 0x0},
    {13093, 0x0},
    {13094, 0x0},
    {13095, 0x0},
    {13096, 0x0},
    {13097, 0x0},
    {13098, 0x0},
    {13099, 0x200000},
    {13100, 0x240000},
    {13101, 0x0},
    {13102, 0x0},
    {13103, 0x0},
    // Register 13104 is not written.
    {13105, 0x0},
    {13106, 0x0},
};

const npxlate_register* quill_to_get_mreg_init(std::uint8_t engine) {
    switch (engine) {
        case 0:
            return quill_to_topparse_mregs;
        case 1:
            return quill_to_topresolve_mregs;
        case 2:
            return quill_to_toplearn_mregs;
        default:
            return nullptr;
    }
}
