// Table 46, the platform table: results of three layouts.
#include <gtest/gtest.h>

#include <npxlate/npxlate.h>

#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "support/harness.h"
#include "support/models.h"
#include "support/record.h"
#include "support/rows.h"

namespace {

using namespace support;

const Translator key = FORWARD(platform_xlate_pit_key, 5, 5);
const Translator result = FORWARD(platform_xlate_pit_result, 83, 32);

Reply key_model(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0-3 = swap L0-3",
        "P4 = L4",
    };
    rows.apply(in, out);
    return {.length = 5};
}

void layout1(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "P9.4 = L3.1",      //
        "P9.3 = L3.2",      //
        "P9.2 = L2.0",      //
        "P9.1 = L1.0",      //
        "P9.0 = L1.1",      //
        "P5-6 = L8-9",      //
        "P7 = L10",         //
        "P8 = L11",         //
        "P1.4 = L3.0",      //
        "P26-29 = L53-56",  //
        "P30-31 = swap L57-58",
        "P2 = L36",  //
        "P3 = L37",  //
        "P4 = L38",  //
    };
    static const Rows flag_set{
        "P14-17 = L49-52",
        "P18-19 = swap L24-25",
        "P20 = L26",
    };
    static const Rows flag_clear{
        "P14-17 = L12-15",
        "P18-21 = L16-19",
    };
    rows.apply(in, out);
    (bit(in, 3, 0) ? flag_set : flag_clear).apply(in, out);
}

void layout2(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "P14-15 = L27-28",  //
        "P16-17 = L29-30",  //
        "P18-19 = L31-32",  //
        "P20-21 = L33-34",  //
        "P26-31 = L43-48",  //
    };
    static const Rows other_address{"P26-31 = L61-66"};
    static const Rows two_flags{
        "P1.2 = 1",
        "P1.1 = 0",
    };
    static const Rows more{
        "P8-9 = L59-60",
        "P1.5 = 1",
    };
    rows.apply(in, out);
    if (bit(in, 0, 3) || bit(in, 0, 4)) {
        other_address.apply(in, out);
        if (bit(in, 0, 5)) {
            two_flags.apply(in, out);
        }
    }
    if (bit(in, 0, 3)) {
        more.apply(in, out);
    }
}

void layout3(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "P3.5 = L0.6",
        "P2.3 = L0.7",
        "P4-5 = L81-82",
        "P16-18 = label L67-70 flag L71.0",
        "P19-21 = label L72-75 flag L76.0",
        "P22-25 = L77-80",
    };
    rows.apply(in, out);
}

Reply result_model(const Bytes& in, Bytes& out) {
    static const Rows common{
        "P0-31 = 0",        //
        "P0 = 0x11",        //
        "P0.6 = L0.1",      //
        "P0.5 = L0.2",      //
        "P0.7 = L0.0",      //
        "P10-11 = L4-5",    //
        "P12-13 = L6-7",    //
        "P22-25 = L39-42",  //
        "P1.7 = L0.3",      //
        "P1.6 = L0.4",      //
        "P1.1 = L0.5",      //
    };
    common.apply(in, out);
    if (bit(in, 0, 0) || bit(in, 3, 1)) {
        layout1(in, out);
    } else if (bits(in, 0, 5, 3) == 0b100) {
        layout3(in, out);
    } else {
        layout2(in, out);
    }
    return {.length = 32};
}

// A record of a layout: `base` with these flag bytes.
Bytes with_flags(Bytes base, unsigned l0, unsigned l3) {
    base.at(0) = static_cast<std::uint8_t>(l0);
    base.at(1) = 0;
    base.at(2) = 0;
    base.at(3) = static_cast<std::uint8_t>(l3);
    return base;
}

// One whose other bytes tell where they came from.
Bytes record(unsigned l0, unsigned l3) { return with_flags(counting(83), l0, l3); }

std::string translated(const Bytes& in) { return hex(translate(result, in, Bytes(32, 0xff)).out); }

const support::Models models{{key, key_model}, {result, result_model}};

TEST(PlatformPit, CarriesWhatItsPositionsSay) {
    walk(key, key_model, {Bytes(5), Bytes(5, 0xff), counting(5, 0x91)});
    check_random(key, key_model);
    walk(result, result_model, {Bytes(83), Bytes(83, 0xff), counting(83), counting(83, 0x91)});
    check_random(result, result_model);
}

TEST(PlatformPit, WalksEveryLayout) {
    for (const auto& [l0, l3] : {
             std::pair{0x01, 0x00},  // layout 1
             std::pair{0x01, 0x01},
             std::pair{0x00, 0x02},
             std::pair{0x20, 0x03},
             std::pair{0x39, 0x07},
             std::pair{0x20, 0x00},  // layout 3
             std::pair{0xe6, 0xfd},
             std::pair{0x00, 0x00},  // layout 2
             std::pair{0x08, 0x00},
             std::pair{0x10, 0x01},
             std::pair{0x18, 0x00},
             std::pair{0x28, 0xfd},
             std::pair{0x30, 0x00},
             std::pair{0x38, 0x00},
         }) {
        for (const Bytes& base : {Bytes(83), Bytes(83, 0xff), counting(83, 0x91)}) {
            walk(result, result_model, with_flags(base, static_cast<unsigned>(l0), static_cast<unsigned>(l3)));
        }
        check_random(result, result_model, 200, [l0 = l0, l3 = l3](Bytes& in) {
            in.at(0) = static_cast<std::uint8_t>(l0);
            in.at(3) = static_cast<std::uint8_t>(l3);
        });
    }
}

TEST(PlatformPit, TriesEveryCombinationOfFlags) {
    for (unsigned l0 = 0; l0 < 256; ++l0) {
        for (unsigned l3 = 0; l3 < 8; ++l3) {
            check(result, result_model, with_flags(counting(83, 0x91), l0, l3));
        }
    }
}

TEST(PlatformPit, SwapsTheKeyValueAndWritesNothingBeyond) {
    const Outcome outcome = translate(key, bytes("11 22 33 44 55"));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 5U);
    EXPECT_EQ(hex(outcome.out), "44 33 22 11 55");
    EXPECT_EQ(hex(translate(key, bytes("11 22 33 44 55"), Bytes(9, 0xff)).out), "44 33 22 11 55 ff ff ff ff");
    EXPECT_EQ(hex(translate(key, Bytes(5), Bytes(9, 0xa5)).out), "00 00 00 00 00 a5 a5 a5 a5");
}

TEST(PlatformPit, TakesLayout1WithoutItsFlag) {
    const Outcome outcome = translate(result, record(0x01, 0x00), Bytes(32, 0xff));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 32U);
    EXPECT_EQ(hex(outcome.out),
              "91 00 24 25 26 08 09 0a 0b 00 04 05 06 07 0c 0d 0e 0f 10 11 "
              "12 13 27 28 29 2a 35 36 37 38 3a 39");
    EXPECT_EQ(translated(record(0x00, 0x02)),
              "11 00 24 25 26 08 09 0a 0b 10 04 05 06 07 0c 0d 0e 0f 10 11 "
              "12 13 27 28 29 2a 35 36 37 38 3a 39");
}

TEST(PlatformPit, TakesLayout1WithItsFlag) {
    EXPECT_EQ(translated(record(0x01, 0x01)),
              "91 10 24 25 26 08 09 0a 0b 00 04 05 06 07 31 32 33 34 19 18 "
              "1a 00 27 28 29 2a 35 36 37 38 3a 39");
    EXPECT_EQ(translated(Bytes(83, 0xff)),
              "f1 d2 ff ff ff ff ff ff ff 1f ff ff ff ff ff ff ff ff ff ff "
              "ff 00 ff ff ff ff ff ff ff ff ff ff");
}

TEST(PlatformPit, TakesLayout1BeforeTheOthers) {
    // Neither the constants of layout 2 nor the fields of layout 3.
    EXPECT_EQ(translated(record(0x21, 0x00)),
              "91 02 24 25 26 08 09 0a 0b 00 04 05 06 07 0c 0d 0e 0f 10 11 "
              "12 13 27 28 29 2a 35 36 37 38 3a 39");
    EXPECT_EQ(translated(record(0x38, 0x02)),
              "11 c2 24 25 26 08 09 0a 0b 10 04 05 06 07 0c 0d 0e 0f 10 11 "
              "12 13 27 28 29 2a 35 36 37 38 3a 39");
}

TEST(PlatformPit, TakesLayout3) {
    EXPECT_EQ(translated(record(0x20, 0x00)),
              "11 02 00 00 51 52 00 00 00 00 04 05 06 07 00 00 54 44 31 a4 "
              "94 80 4d 4e 4f 50 00 00 00 00 00 00");
    EXPECT_EQ(translated(record(0xe6, 0xfd)),
              "71 02 08 20 51 52 00 00 00 00 04 05 06 07 00 00 54 44 31 a4 "
              "94 80 4d 4e 4f 50 00 00 00 00 00 00");
}

TEST(PlatformPit, PacksTheLabelsOfLayout3) {
    Bytes in(83);
    in.at(0) = 0x20;
    put_little(in, 67, 4, 0x12345);
    in.at(71) = 1;
    EXPECT_EQ(translated(in),
              "11 02 00 00 00 00 00 00 00 00 00 00 00 00 00 00 12 34 51 00 "
              "00 00 00 00 00 00 00 00 00 00 00 00");
    put_little(in, 67, 4, 0xfff00000);
    in.at(71) = 0xfe;
    put_little(in, 72, 4, 0xabcde);
    in.at(76) = 0xff;
    EXPECT_EQ(translated(in),
              "11 02 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 ab "
              "cd e1 00 00 00 00 00 00 00 00 00 00");
}

TEST(PlatformPit, TakesLayout2) {
    EXPECT_EQ(translated(record(0x00, 0x00)),
              "11 00 00 00 00 00 00 00 00 00 04 05 06 07 1b 1c 1d 1e 1f 20 "
              "21 22 27 28 29 2a 2b 2c 2d 2e 2f 30");
}

TEST(PlatformPit, ReplacesTheAddressOfLayout2) {
    for (const auto& [l0, second_byte, value] : {
             std::tuple{0x08, "a0", "3b 3c"},
             std::tuple{0x10, "40", "00 00"},
             std::tuple{0x18, "e0", "3b 3c"},
             std::tuple{0x28, "a4", "3b 3c"},
             std::tuple{0x30, "44", "00 00"},
             std::tuple{0x38, "e4", "3b 3c"},
         }) {
        EXPECT_EQ(translated(record(static_cast<unsigned>(l0), 0x00)),
                  std::string{"11 "} + second_byte + " 00 00 00 00 00 00 " + value +
                      " 04 05 06 07 1b 1c 1d 1e 1f 20 21 22 27 28 29 2a 3d 3e 3f 40 41 42")
            << l0;
    }
}

TEST(PlatformPit, SetsThreeConstantsOfLayout2) {
    Bytes in(83);
    in.at(0) = 0x38;
    EXPECT_EQ(translated(in),
              "11 e4 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
              "00 00 00 00 00 00 00 00 00 00 00 00");
}

TEST(PlatformPit, PutsItsBitsWhereTheCardLooks) {
    struct {
        Bytes base;
        std::vector<std::pair<const char*, const char*>> bits;
    } const layouts[] = {
        // layout 1
        {record(0x01, 0x00),
         {{"L0.1", "P0.6"},   {"L0.2", "P0.5"},   {"L0.3", "P1.7"},  {"L0.4", "P1.6"}, {"L0.5", "P1.1"},
          {"L0.6", ""},       {"L0.7", ""},       {"L1.0", "P9.1"},  {"L1.1", "P9.0"}, {"L1.2", ""},
          {"L2.0", "P9.2"},   {"L2.1", ""},       {"L3.1", "P9.4"},  {"L3.2", "P9.3"}, {"L3.3", ""},
          {"L12.0", "P14.0"}, {"L19.7", "P21.7"}, {"L24.0", ""},     {"L26.0", ""},    {"L35.0", ""},
          {"L35.7", ""},      {"L36.0", "P2.0"},  {"L38.7", "P4.7"}, {"L49.0", ""},    {"L57.0", "P31.0"},
          {"L58.7", "P30.7"}, {"L67.0", ""}}},
        // layout 1 with its flag
        {record(0x01, 0x01),
         {{"L12.0", ""},
          {"L16.0", ""},
          {"L19.7", ""},
          {"L24.0", "P19.0"},
          {"L25.7", "P18.7"},
          {"L26.0", "P20.0"},
          {"L49.0", "P14.0"},
          {"L35.7", ""}}},
        // layout 2
        {record(0x00, 0x00),
         {{"L0.6", ""},
          {"L0.7", ""},
          {"L1.0", ""},
          {"L2.0", ""},
          {"L3.0", ""},
          {"L3.2", ""},
          {"L8.0", ""},
          {"L27.0", "P14.0"},
          {"L34.7", "P21.7"},
          {"L43.0", "P26.0"},
          {"L48.7", "P31.7"},
          {"L59.0", ""},
          {"L61.0", ""}}},
        // layout 3
        {record(0x20, 0x00),
         {{"L0.6", "P3.5"},   {"L0.7", "P2.3"},   {"L1.0", ""},       {"L3.0", ""},       {"L39.0", ""},
          {"L42.7", ""},      {"L67.0", "P18.4"}, {"L69.3", "P16.7"}, {"L69.4", ""},      {"L70.0", ""},
          {"L71.0", "P18.0"}, {"L71.1", ""},      {"L72.0", "P21.4"}, {"L74.3", "P19.7"}, {"L75.7", ""},
          {"L76.0", "P21.0"}, {"L76.1", ""},      {"L77.0", "P22.0"}, {"L81.0", "P4.0"},  {"L82.7", "P5.7"}}},
    };
    for (const auto& [base, bits] : layouts) {
        for (const auto& [from, to] : bits) {
            EXPECT_EQ(changes(result, base, from), to) << from << " of " << hex(base);
        }
    }
}

TEST(PlatformPit, IgnoresTheLength) {
    expect_length_ignored(key, counting(5));
    expect_length_ignored(result, counting(83));
}

TEST(PlatformPit, IsTable46) {
    EXPECT_EQ(l2p_ucode_func_table[46].key, &platform_xlate_pit_key);
    EXPECT_EQ(l2p_ucode_func_table[46].result, &platform_xlate_pit_result);
    EXPECT_EQ(p2l_ucode_func_table[46], &generic_xlate_logical_result);
}

}  // namespace
