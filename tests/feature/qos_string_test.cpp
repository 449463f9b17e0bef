// The QoS string: marking values in two groups, each tagged by the kind of marking that it sets. By name only.
#include <gtest/gtest.h>

#include <npxlate/npxlate.h>

#include <array>
#include <string>
#include <utility>

#include "support/harness.h"
#include "support/models.h"
#include "support/record.h"
#include "support/rows.h"

namespace {

using namespace support;

const Translator result = FORWARD(qos_str_xlate_result, 36, 32);

// What a marking kind code adds to the kind mask of its group, and how far it shifts its values. The mask is read as a
// host-order value: the first mask byte is its low byte.
struct Kind {
    unsigned mask;
    unsigned shift;
};

constexpr unsigned first(unsigned bit) { return 1U << bit; }
constexpr unsigned second(unsigned bit) { return 0x100U << bit; }
constexpr unsigned no_bit = 0;
constexpr unsigned no_value = 15;

constexpr std::array<Kind, 16> kinds{{
    {first(7), 5},
    {second(0), 2},
    {second(1), 0},
    {second(2), 0},
    {second(4), 0},
    {second(5), 0},
    {second(6), 0},
    {second(7), 0},
    {first(6), 5},
    {first(5), 2},
    {no_bit, 0},
    {second(4), 0},
    {no_bit, 0},
    {no_bit, 0},
    {second(3), 0},
    {no_bit, 0},
}};

// One group: three pairs, each a byte of two codes and two values, to two mask bytes and six value bytes.
struct Group {
    std::size_t codes;
    std::size_t mask;
};

constexpr std::array<Group, 2> groups{{{.codes = 8, .mask = 12}, {.codes = 18, .mask = 24}}};

void mark(const Bytes& in, Bytes& out, const Group& group) {
    const Kind& kind1 = kinds.at(bits(in, group.codes, 7, 4));
    const Kind& kind2 = kinds.at(bits(in, group.codes, 3, 0));
    const unsigned mask = kind1.mask | kind2.mask;
    const unsigned added = mask - kind1.mask;
    put_little(out, group.mask, 2, mask);

    for (std::size_t pair = 0; pair < 3; ++pair) {
        const std::size_t codes = group.codes + 3 * pair;
        const std::size_t values = group.mask + 2 + 2 * pair;
        unsigned a = static_cast<unsigned>(in.at(codes + 1)) >> kind1.shift;
        unsigned b = static_cast<unsigned>(in.at(codes + 2)) >> kind2.shift;
        if (pair == 0 && kind1.mask < added) {
            std::swap(a, b);
        }
        if (bits(in, codes, 7, 4) != no_value) {
            out.at(values) = static_cast<std::uint8_t>(0x40 | (a & 0x3f));
        }
        if (bits(in, codes, 3, 0) != no_value) {
            out.at(values + 1) = static_cast<std::uint8_t>(0x40 | (b & 0x3f));
        }
    }
}

Reply result_model(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0-31 = 0",          //
        "P0 = 0x11",          //
        "P0.7 = L0.4",        //
        "P0.6 = L0.5",        //
        "P0.5 = L0.0",        //
        "P1.7 = L1.4",        //
        "P1.6 = L1.5",        //
        "P1.5 = L1.6",        //
        "P1.4 = L1.7",        //
        "P1.3 = L1.3",        //
        "P1.2 = L0.3",        //
        "P1.1 = L0.2",        //
        "P1.0 = L0.1",        //
        "P2.7-3 = L2.4-0",    //
        "P2.2 = L31.2",       //
        "P2.1 = L31.0",       //
        "P2.0 = 1",           //
        "P3 = L6",            //
        "P4-5 = L4-5",        //
        "P6-7 = L28-29",      //
        "P8.6 = L7.7",        //
        "P8.5-4 = L7.1-0",    //
        "P8.3-2 = L7.3-2",    //
        "P8.1-0 = L7.5-4",    //
        "P9.7-4 = L32.7-4",   //
        "P9.3 = L32.0",       //
        "P9.2-0 = L32.3-1",   //
        "P10 = L33",          //
        "P11 = L30",          //
        "P20.6 = L17.7",      //
        "P20.5-4 = L17.1-0",  //
        "P20.3-2 = L17.3-2",  //
        "P20.1-0 = L17.5-4",  //
        "P21.7-4 = L34.7-4",  //
        "P21.3 = L34.0",      //
        "P21.2-0 = L34.3-1",  //
        "P22 = L35",          //
        "P23 = L27",          //
    };
    rows.apply(in, out);
    for (const Group& group : groups) {
        mark(in, out, group);
    }
    return {.length = 32};
}

// A string without any marking value but those of the first pair of one group.
Bytes with_pair(const Group& group, unsigned codes, unsigned a, unsigned b) {
    Bytes in(36);
    for (const Group& each : groups) {
        for (std::size_t pair = 0; pair < 3; ++pair) {
            in.at(each.codes + 3 * pair) = 0xff;
        }
    }
    in.at(group.codes) = static_cast<std::uint8_t>(codes);
    in.at(group.codes + 1) = static_cast<std::uint8_t>(a);
    in.at(group.codes + 2) = static_cast<std::uint8_t>(b);
    return in;
}

// The two mask bytes and the six value bytes of one group.
std::string marking(const Bytes& in, const Group& group) {
    const Bytes out = translate(result, in).out;
    const auto start = out.begin() + static_cast<std::ptrdiff_t>(group.mask);
    return hex(Bytes(start, start + 8));
}

const support::Models models{{result, result_model}};

TEST(QosString, CarriesWhatItsPositionsSay) {
    walk(result, result_model, {Bytes(36), Bytes(36, 0xff), counting(36, 1), counting(36, 0xb1)});
    check_random(result, result_model, 4000);
}

// Random pairs seldom meet a certain two codes: each of the 256 meetings, in both groups, with values that tell the
// shifts apart.
TEST(QosString, MarksEveryPairOfKinds) {
    for (const Group& group : groups) {
        for (unsigned codes = 0; codes < 256; ++codes) {
            check(result, result_model, with_pair(group, codes, 0xb5, 0x6a));
            check_random(result, result_model, 4,
                         [&](Bytes& in) { in.at(group.codes) = static_cast<std::uint8_t>(codes); });
        }
    }
}

TEST(QosString, AbsentKindsInLaterPairsLeaveTheirValuesOut) {
    for (const Group& group : groups) {
        for (const std::size_t pair : {1U, 2U}) {
            for (unsigned codes = 0; codes < 256; ++codes) {
                check_random(result, result_model, 1,
                             [&](Bytes& in) { in.at(group.codes + 3 * pair) = static_cast<std::uint8_t>(codes); });
            }
        }
    }
}

TEST(QosString, IsOfKindZeroThroughoutWhenAllZero) {
    const Outcome zeros = translate(result, Bytes(36));
    EXPECT_EQ(zeros.status, 0);
    EXPECT_EQ(zeros.length, 32U);
    EXPECT_EQ(hex(zeros.out),
              "11 00 01 00 00 00 00 00 00 00 00 00 80 00 40 40 40 40 40 40 "
              "00 00 00 00 80 00 40 40 40 40 40 40");
}

TEST(QosString, HasNoMarkingValuesWhenAllOnes) {
    EXPECT_EQ(hex(translate(result, Bytes(36, 0xff)).out),
              "f1 ff ff ff ff ff ff ff 7f ff ff ff 00 00 00 00 00 00 00 00 "
              "7f ff ff ff 00 00 00 00 00 00 00 00");
}

TEST(QosString, GivesEveryKindItsMaskBitAndItsShift) {
    // Mask bytes and value bytes for a first value 0xb5 of each kind.
    const std::array<std::string, 16> expected{
        "80 00 45 00 00 00 00 00", "00 01 6d 00 00 00 00 00", "00 02 75 00 00 00 00 00", "00 04 75 00 00 00 00 00",
        "00 10 75 00 00 00 00 00", "00 20 75 00 00 00 00 00", "00 40 75 00 00 00 00 00", "00 80 75 00 00 00 00 00",
        "40 00 45 00 00 00 00 00", "20 00 6d 00 00 00 00 00", "00 00 75 00 00 00 00 00", "00 10 75 00 00 00 00 00",
        "00 00 75 00 00 00 00 00", "00 00 75 00 00 00 00 00", "00 08 75 00 00 00 00 00", "00 00 00 00 00 00 00 00",
    };
    for (const Group& group : groups) {
        for (unsigned code = 0; code < 16; ++code) {
            EXPECT_EQ(marking(with_pair(group, code << 4 | no_value, 0xb5, 0xb5), group), expected.at(code)) << code;
        }
    }
}

TEST(QosString, SwapsThePairWhenTheSecondKindAddsTheHigherMaskBit) {
    struct {
        unsigned codes, a, b;
        std::string expected;
    } const cases[] = {
        {0x01, 0xb8, 0xb8, "80 01 6e 45 00 00 00 00"},  // 0x0080 below 0x0100, though byte for byte it stands first
        {0x10, 0xb8, 0xb8, "80 01 6e 45 00 00 00 00"},  // not swapped: the kinds themselves changed places
        {0x01, 0x20, 0x08, "80 01 42 41 00 00 00 00"},
        {0x10, 0x08, 0x40, "80 01 42 42 00 00 00 00"},
        {0x10, 0x0c, 0x20, "80 01 43 41 00 00 00 00"},
        {0x80, 0x20, 0x40, "c0 00 42 41 00 00 00 00"},
        {0x08, 0x20, 0x40, "c0 00 41 42 00 00 00 00"},
        {0x27, 0x11, 0x22, "00 82 62 51 00 00 00 00"},
        {0x72, 0x11, 0x22, "00 82 51 62 00 00 00 00"},
        {0xa2, 0x11, 0x22, "00 02 62 51 00 00 00 00"},  // the first kind has no mask bit
        {0x2a, 0x11, 0x22, "00 02 51 62 00 00 00 00"},  // the second has none
    };
    for (const Group& group : groups) {
        for (const auto& [codes, a, b, expected] : cases) {
            EXPECT_EQ(marking(with_pair(group, codes, a, b), group), expected) << std::hex << codes;
        }
    }
}

TEST(QosString, DoesNotSwapKindsOfTheSameMaskBit) {
    for (const Group& group : groups) {
        for (const unsigned codes : {0x44U, 0x4bU, 0xb4U, 0xbbU}) {
            EXPECT_EQ(marking(with_pair(group, codes, 0x11, 0x22), group), "00 10 51 62 00 00 00 00");
        }
        EXPECT_EQ(marking(with_pair(group, 0x00, 0x20, 0x40), group), "80 00 41 42 00 00 00 00");
        EXPECT_EQ(marking(with_pair(group, 0xac, 0x11, 0x22), group), "00 00 51 62 00 00 00 00");
    }
}

TEST(QosString, SwapsEvenWithAnAbsentFirstKind) {
    for (const Group& group : groups) {
        for (unsigned code = 0; code < 15; ++code) {
            // The value of the present second kind is lost to the absent first one, unless its kind has no mask bit.
            const bool has_mask_bit = code != 10 && code != 12 && code != 13;
            const Bytes out = translate(result, with_pair(group, 0xf0 | code, 0x01, 0x35)).out;
            EXPECT_EQ(out.at(group.mask + 2), 0) << code;
            EXPECT_EQ(out.at(group.mask + 3), has_mask_bit ? 0x41 : 0x75) << code;
        }
    }
}

TEST(QosString, HasNoMaskAndNoValuesForAbsentKinds) {
    for (const Group& group : groups) {
        EXPECT_EQ(marking(with_pair(group, 0xff, 0xff, 0xff), group), "00 00 00 00 00 00 00 00");
    }
}

TEST(QosString, ShiftsLaterPairsAsTheFirstAndNeverSwapsThem) {
    for (const Group& group : groups) {
        Bytes in = with_pair(group, 0x01, 0xb8, 0xb8);
        in.at(group.codes + 3) = 0x23;
        in.at(group.codes + 4) = 0xb8;
        in.at(group.codes + 5) = 0xb8;
        in.at(group.codes + 6) = 0xf0;
        in.at(group.codes + 7) = 0xb8;
        in.at(group.codes + 8) = 0xb8;
        EXPECT_EQ(marking(in, group), "80 01 6e 45 45 6e 00 6e");

        in.at(group.codes + 6) = 0x1f;
        EXPECT_EQ(marking(in, group), "80 01 6e 45 45 6e 45 00");

        in.at(group.codes) = 0xff;
        in.at(group.codes + 3) = 0x01;
        EXPECT_EQ(marking(in, group), "00 00 00 00 78 78 78 00");
    }
}

TEST(QosString, DropsWhatItDoesNotCarry) {
    for (const Bytes& base : {Bytes(36), counting(36, 1)}) {
        for (const char* dropped : {"L0.6", "L0.7", "L1.0", "L1.1", "L1.2", "L2.5", "L2.6", "L2.7", "L3.0", "L3.4",
                                    "L3.7", "L7.6", "L17.6", "L31.1", "L31.3", "L31.4", "L31.5", "L31.6", "L31.7"}) {
            EXPECT_EQ(changes(result, base, dropped), "") << dropped;
        }
    }
}

TEST(QosString, PutsItsBitsWhereTheCardLooks) {
    for (const auto& [from, to] : {
             std::pair{"L0.0", "P0.5"},   std::pair{"L0.1", "P1.0"},   std::pair{"L0.2", "P1.1"},
             std::pair{"L0.3", "P1.2"},   std::pair{"L0.4", "P0.7"},   std::pair{"L0.5", "P0.6"},
             std::pair{"L1.3", "P1.3"},   std::pair{"L1.4", "P1.7"},   std::pair{"L1.7", "P1.4"},
             std::pair{"L2.0", "P2.3"},   std::pair{"L2.4", "P2.7"},   std::pair{"L4.0", "P4.0"},
             std::pair{"L6.7", "P3.7"},   std::pair{"L7.0", "P8.4"},   std::pair{"L7.2", "P8.2"},
             std::pair{"L7.5", "P8.1"},   std::pair{"L7.7", "P8.6"},   std::pair{"L17.1", "P20.5"},
             std::pair{"L17.7", "P20.6"}, std::pair{"L27.3", "P23.3"}, std::pair{"L29.0", "P7.0"},
             std::pair{"L30.5", "P11.5"}, std::pair{"L31.0", "P2.1"},  std::pair{"L31.2", "P2.2"},
             std::pair{"L32.0", "P9.3"},  std::pair{"L32.1", "P9.0"},  std::pair{"L32.3", "P9.2"},
             std::pair{"L32.4", "P9.4"},  std::pair{"L33.7", "P10.7"}, std::pair{"L34.0", "P21.3"},
             std::pair{"L34.2", "P21.1"}, std::pair{"L35.0", "P22.0"},
         }) {
        EXPECT_EQ(changes(result, Bytes(36), from), to) << from;
        EXPECT_EQ(changes(result, counting(36, 1), from), to) << from;
    }
}

TEST(QosString, IgnoresTheLength) { expect_length_ignored(result, counting(36)); }

}  // namespace
