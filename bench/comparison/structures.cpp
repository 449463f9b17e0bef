// As drivers often do it: a packed structure for either record, and one assignment for every field. For little-endian
// machines, whose compilers count bit-fields from bit 0 upwards.

#include "comparison/comparison.h"

#include <cstddef>
#include <cstring>

namespace comparison::structures {
namespace {

#define PACKED __attribute__((packed, may_alias))

struct PACKED Flags {
    std::uint8_t b0 : 1, b1 : 1, b2 : 1, b3 : 1, b4 : 1, b5 : 1, b6 : 1, b7 : 1;
};

struct PACKED Header {
    std::uint8_t mark : 5, b5 : 1, b6 : 1, b7 : 1;
};

struct PACKED Value24 {
    std::uint32_t value : 24;
};

std::uint16_t network16(std::uint16_t value) { return __builtin_bswap16(value); }
std::uint32_t network32(std::uint32_t value) { return __builtin_bswap32(value); }
std::uint32_t network24(std::uint32_t value) { return __builtin_bswap32(value) >> 8 & 0xffffff; }

struct PACKED RxLogical {
    Flags l0, l1, l2;
    std::uint8_t l3;
    std::uint16_t l4;
    std::uint8_t l6[2];
    std::uint8_t l8;
    std::uint8_t l9[3];
    union PACKED {
        std::uint32_t l12;
        std::uint16_t l12_16;
        Value24 l12_24;
    };
    union PACKED {
        std::uint32_t l16;
        std::uint16_t l16_16;
    };
    union PACKED {
        std::uint16_t l20_16;
        std::uint8_t l20_bytes[4];
    };
    std::uint32_t l24;
    std::uint8_t l28, l29;
};
static_assert(sizeof(RxLogical) == 30);

struct PACKED RxValues {
    std::uint8_t p4, p5;
    std::uint16_t p6;
};

struct PACKED RxShifted {
    std::uint8_t p4;
    std::uint8_t p5[2];
    std::uint8_t p7_0 : 4, p7_4 : 1, p7_5 : 3;
};

struct PACKED RxShort {
    std::uint8_t p12;
    Value24 p13;
};

struct PACKED RxPhysical {
    Header p0;
    Flags p1, p2, p3;
    union PACKED {
        RxValues values;
        RxShifted shifted;
    };
    std::uint32_t p8;
    union PACKED {
        std::uint32_t p12;
        std::uint16_t p12_16;
        RxShort p12_short;
    };
};
static_assert(sizeof(RxPhysical) == 16);

struct PACKED NodeLogical {
    Flags l0, l1;
    std::uint8_t l2[2];
    std::uint32_t l4;
    Value24 l8;
    std::uint8_t l11;
    Value24 l12;
    std::uint8_t l15;
    std::uint32_t l16;
    Value24 l20;
    std::uint8_t l23;
    Value24 l24;
    std::uint8_t l27;
    Flags l28, l29;
    std::uint16_t l30;
    std::uint8_t l32[4];
    std::uint32_t l36;
    Flags l40;
    Value24 l41;
    std::uint8_t l44[4];
};
static_assert(sizeof(NodeLogical) == 48);

struct PACKED NodePhysical {
    Header p0;
    Flags p1, p2;
    Value24 p3;
    Value24 p6;
    std::uint32_t p9;
    Value24 p13, p16, p19;
    std::uint32_t p22;
    std::uint16_t p26;
    std::uint8_t p28[4];
};
static_assert(sizeof(NodePhysical) == 32);

struct PACKED CrossLogical {
    Flags l0, l1;
    std::uint8_t l2_0 : 1, l2_1 : 2, l2_3 : 1, l2_4 : 1, l2_5 : 1, l2_6 : 1, l2_7 : 1;
    std::uint8_t l3_0 : 1, l3_1 : 1, l3_2 : 1, l3_3 : 1, l3_4 : 1, l3_5 : 1, l3_6 : 1, l3_7 : 1;
    std::uint8_t l4_0 : 1, l4_1 : 3, l4_4 : 1, l4_5 : 3;
    std::uint8_t l5[3];
    std::uint32_t l8;
    std::uint32_t l12;
    std::uint8_t l16[8];
    std::uint8_t l24;
    std::uint8_t l25[3];
    Value24 l28;
    std::uint8_t l31;
    std::uint8_t l32 : 2, l32_2 : 6;
    std::uint8_t l33[3];
    Value24 l36;
    std::uint8_t l39;
    std::uint32_t l40;
    std::uint16_t l44;
    std::uint8_t l46[7];
    std::uint32_t l53 : 20, l55_4 : 4;
    std::uint8_t l56, l57, l58, l59;
    std::uint32_t l60 : 20, l62_4 : 12;
    std::uint32_t l64 : 20, l66_4 : 12;
    std::uint8_t l68[4];
    std::uint16_t l72;
    std::uint8_t l74[2];
    Value24 l76;
    std::uint8_t l79[13];
};
static_assert(sizeof(CrossLogical) == 92);

struct PACKED CrossValue {
    std::uint32_t p7 : 20, p9_4 : 4;
};

struct PACKED CrossLong {
    std::uint16_t p16;
    std::uint8_t p18;
    Value24 p19;
    std::uint8_t p22 : 2, p22_2 : 6;
};

struct PACKED CrossShort {
    std::uint32_t p16;
    Flags p20;
};

struct PACKED CrossPhysical {
    Header p0;
    Flags p1, p2, p3;
    Value24 p4;
    union PACKED {
        Value24 label;
        CrossValue value;
    };
    std::uint16_t p10;
    std::uint8_t p12, p13, p14, p15;
    union PACKED {
        CrossLong with_l1_5;
        CrossShort without;
    };
    Value24 p23;
    std::uint8_t p26_0 : 2, p26_2 : 1, p26_3 : 1, p26_4 : 1, p26_5 : 1, p26_6 : 1, p26_7 : 1;
    std::uint32_t p27_0 : 3, p27_3 : 1, p27_4 : 20;
    Flags p30;
    std::uint8_t p31;
};
static_assert(sizeof(CrossPhysical) == 32);
static_assert(offsetof(CrossPhysical, p23) == 23);

}  // namespace

std::int32_t rx_adjacency(const void* logical, std::int32_t, void* physical, std::uint32_t* physical_length) {
    const auto* in = static_cast<const RxLogical*>(logical);
    auto* out = static_cast<RxPhysical*>(physical);
    std::memset(physical, 0, sizeof *out);
    out->p0.mark = 0x11;
    out->p0.b7 = 1;
    out->p0.b6 = in->l1.b5;
    out->p0.b5 = in->l0.b4;
    out->p1.b0 = in->l1.b0;
    out->p1.b1 = in->l1.b1;
    out->p1.b2 = in->l1.b2;
    out->p1.b3 = in->l1.b4;
    out->p1.b4 = in->l1.b6;
    out->p1.b5 = in->l1.b3;
    out->p1.b6 = in->l2.b2;
    out->p2.b0 = in->l0.b2;
    out->p2.b1 = in->l0.b1;
    out->p2.b2 = in->l0.b3;
    out->p2.b3 = in->l0.b0;
    out->p2.b6 = in->l1.b7;
    out->p3.b7 = in->l0.b5;
    out->p8 = network32(in->l24);
    if (in->l0.b5) {
        out->p3.b5 = in->l2.b0;
        out->values.p4 = in->l20_bytes[1];
        out->values.p5 = in->l20_bytes[2];
        out->values.p6 = network16(in->l16_16);
        if (in->l2.b0) {
            out->p12_short.p13.value = network24(in->l12_24.value) & 0xffffff;
        } else {
            out->p12 = in->l12;
        }
    } else if (in->l0.b6) {
        out->p3.b5 = in->l2.b1;
        out->values.p6 = network16(in->l20_16);
        out->p12 = in->l12;
    } else if (in->l1.b0) {
        out->values.p6 = in->l4;
        if (in->l1.b2) {
            out->values.p4 = static_cast<std::uint8_t>(in->l28 + 7);
        }
        if (in->l1.b1) {
            out->values.p4 = in->l29;
        }
    } else if (in->l1.b3) {
        out->p0.b5 = in->l1.b3;
        out->p3.b6 = in->l1.b3;
        out->p3.b4 = in->l2.b3;
        const std::uint32_t value = in->l12 >> 1;
        out->shifted.p5[0] = value & 0xff;
        out->shifted.p5[1] = value >> 8 & 0xff;
        out->shifted.p7_0 = value >> 16 & 0xf;
        out->shifted.p7_4 = (value >> 20 | in->l12) & 1;
        out->shifted.p7_5 = value >> 21 & 7;
        out->p12 = in->l16;
    } else {
        std::uint16_t index = in->l4;
        if (in->l8 == 4) {
            index |= 0x0800;
        } else if (in->l8 == 8) {
            index |= 0x0c00;
        }
        out->values.p6 = network16(index);
        out->p12_16 = in->l12_16;
    }
    *physical_length = sizeof *out;
    return NPXLATE_OK;
}

std::int32_t multicast_node(const void* logical, std::int32_t, void* physical, std::uint32_t* physical_length) {
    const auto* in = static_cast<const NodeLogical*>(logical);
    auto* out = static_cast<NodePhysical*>(physical);
    std::memset(physical, 0, sizeof *out);
    out->p0.mark = 0x11;
    out->p0.b7 = in->l0.b7;
    out->p0.b6 = in->l40.b3;
    out->p0.b5 = in->l1.b3;
    out->p1.b7 = in->l0.b0;
    out->p1.b6 = in->l29.b0;
    out->p1.b5 = in->l40.b2;
    out->p1.b4 = in->l28.b0;
    out->p1.b3 = in->l0.b4;
    out->p1.b2 = in->l0.b6;
    out->p1.b1 = in->l40.b0;
    out->p2.b7 = in->l1.b2;
    out->p2.b6 = in->l40.b1;
    out->p2.b5 = !in->l1.b0;
    out->p2.b3 = in->l0.b3;
    out->p2.b2 = in->l0.b1;
    out->p2.b1 = in->l0.b5;
    out->p2.b0 = in->l0.b2;
    out->p3.value = in->l20.value;
    const std::uint32_t code = in->l36 == 3 || in->l36 == 4 ? 3 : in->l36 & 0xf;
    out->p6.value = (in->l41.value | code << 20) & 0xffffff;
    out->p9 = network32(in->l4);
    out->p13.value = network24(in->l8.value) & 0xffffff;
    out->p16.value = network24(in->l12.value) & 0xffffff;
    out->p19.value = network24(in->l24.value) & 0xffffff;
    out->p22 = network32(in->l16);
    out->p26 = network16(in->l30);
    if (in->l1.b2) {
        out->p1.b6 = 0;
    }
    *physical_length = sizeof *out;
    return NPXLATE_OK;
}

std::int32_t cross_connect(const void* logical, std::int32_t, void* physical, std::uint32_t* physical_length) {
    const auto* in = static_cast<const CrossLogical*>(logical);
    auto* out = static_cast<CrossPhysical*>(physical);
    if (in->l8 != 3) {
        return NPXLATE_INVALID;
    }
    std::memset(physical, 0, sizeof *out);
    out->p0.mark = 0x11;
    out->p0.b7 = 1;
    out->p0.b5 = in->l0.b6;
    out->p1.b0 = !in->l1.b1;
    out->p1.b2 = in->l4_4;
    out->p1.b3 = in->l3_3;
    out->p1.b4 = in->l0.b2;
    out->p1.b5 = in->l0.b7;
    out->p1.b6 = in->l1.b0;
    out->p2.b0 = in->l2_7 || in->l53 != 0 || in->l55_4 != 0 || in->l3_0;
    out->p2.b1 = in->l3_3 || in->l3_4 || in->l3_5 || in->l3_6;
    out->p2.b2 = in->l0.b5;
    out->p2.b3 = in->l2_6;
    out->p2.b7 = in->l3_1;
    out->p3.b0 = in->l1.b2;
    out->p3.b1 = in->l1.b3;
    out->p3.b2 = in->l1.b4;
    out->p3.b3 = in->l0.b0;
    out->p3.b4 = in->l0.b1;
    out->p3.b5 = in->l1.b7;
    out->p3.b6 = in->l1.b6;
    out->p3.b7 = in->l3_7;
    out->p4.value = in->l76.value;
    if (in->l4_4) {
        out->value.p7 = in->l64;
    } else {
        out->label.value = network24(std::uint32_t{in->l60} << 4 | 1) & 0xffffff;
        out->p10 = in->l72;
    }
    out->p12 = in->l57;
    out->p13 = in->l56;
    out->p14 = in->l58;
    out->p15 = in->l59;
    if (in->l1.b5) {
        out->with_l1_5.p16 = in->l44;
        out->with_l1_5.p19.value = in->l28.value;
        out->with_l1_5.p22 = in->l32;
        out->p23.value = in->l36.value;
        out->p26_4 = 1;
        out->p31 = in->l24;
    } else {
        out->without.p16 = in->l40;
        out->without.p20.b7 = in->l12 == 3 || in->l12 == 4;
    }
    out->p26_6 = in->l2_4;
    out->p26_5 = in->l3_0;
    out->p26_2 = in->l2_0;
    out->p26_0 = in->l2_1;
    out->p27_4 = in->l53;
    out->p27_3 = in->l4_0;
    out->p27_0 = in->l4_1;
    out->p30.b7 = in->l3_4;
    out->p30.b6 = in->l3_5;
    out->p30.b5 = in->l3_6;
    *physical_length = sizeof *out;
    return NPXLATE_OK;
}

}  // namespace comparison::structures
