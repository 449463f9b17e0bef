// Table 66, the LI-MD entries. The key translator moves the index in the caller's own key.
#include <gtest/gtest.h>

#include <npxlate/npxlate.h>

#include <utility>

#include "support/harness.h"
#include "support/models.h"
#include "support/record.h"
#include "support/rows.h"

namespace {

using namespace support;

const Translator key = FORWARD(li_md_st_xlate_key, 2, 2);
const Translator result = FORWARD(li_md_st_xlate_result, 30, 32);
const Translator read_back = REVERSE(li_md_logical_xlate_result, 32, 30);

// A flag in bit 0, an index of 15 bits above it.
Reply key_model(Bytes& in, Bytes& out) {
    const bool flag = bit(in, 0, 0);
    std::uint64_t index = little(in, 0, 2) >> 1;
    if (flag) {
        index = (index + 512) & 0x7fff;
        put_little(in, 0, 2, index << 1 | 1);
    }
    put_little(out, 0, 2, index);
    return {.length = 2};
}

Reply result_model(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0-31 = 0",             //
        "P0 = 0x11",             //
        "P1 = L0",               //
        "P2 = not L3",           //
        "P3 = not L2",           //
        "P4-7 = swap L4-7",      //
        "P8-11 = swap L8-11",    //
        "P12-15 = swap L12-15",  //
        "P16-19 = swap L16-19",  //
        "P0.3 = L1.0",           //
        "P20-21 = swap L20-21",  //
        "P28-31 = swap L26-29",  //
        "P24-26 = L22-24",       //
    };
    rows.apply(in, out);
    return {.length = 32};
}

// Nothing is swapped back.
Reply read_back_model(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "L0-29 = 0",        //
        "L0 = P1",          //
        "L1.0 = P0.3",      //
        "L2-3 = not P2-3",  //
        "L4-19 = P4-19",    //
        "L20-21 = P20-21",  //
    };
    rows.apply(in, out);
    return {};
}

const support::Models models{{key, key_model}, {result, result_model}, {read_back, read_back_model}};

TEST(LiMd, CarriesWhatItsPositionsSay) {
    walk(result, result_model, {Bytes(30), Bytes(30, 0xff), counting(30), counting(30, 0x91)});
    check_random(result, result_model);
    walk(read_back, read_back_model, {Bytes(32), Bytes(32, 0xff), counting(32), counting(32, 0x91)});
    check_random(read_back, read_back_model);
}

TEST(LiMd, TranslatesEveryKey) {
    for (unsigned each = 0; each < 0x10000; ++each) {
        Bytes in(2);
        put_little(in, 0, 2, each);
        check(key, key_model, in);
    }
}

TEST(LiMd, MovesAFlaggedIndexInTheKeyOfTheCallerToo) {
    struct {
        const char* before;
        const char* physical;
        const char* after;
    } const cases[] = {
        {"03 00", "01 02", "03 04"},                               // 1 becomes 513
        {"01 00", "00 02", "01 04"}, {"ff ff", "ff 01", "ff 03"},  // 0x7fff and 512, kept to 15 bits
        {"01 fc", "00 00", "01 00"},                               // 0x7e00 and 512
        {"ff fb", "ff 7f", "ff ff"},                               // 0x7dff and 512: the highest without a carry
        {"ff 00", "7f 02", "ff 04"},
    };
    for (const auto& [before, physical, after] : cases) {
        const Outcome outcome = translate(key, bytes(before), Bytes(2, 0xff));
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(outcome.length, 2U);
        EXPECT_EQ(hex(outcome.out), physical) << before;
        EXPECT_EQ(hex(outcome.in), after) << before;
    }
}

TEST(LiMd, LeavesAnUnflaggedIndexAsItIs) {
    for (const auto& [before, physical] :
         {std::pair{"02 00", "01 00"}, std::pair{"00 00", "00 00"}, std::pair{"fe ff", "ff 7f"},
          std::pair{"00 01", "80 00"}, std::pair{"34 12", "1a 09"}}) {
        const Outcome outcome = translate(key, bytes(before), Bytes(2, 0xff));
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(outcome.length, 2U);
        EXPECT_EQ(hex(outcome.out), physical) << before;
        EXPECT_EQ(hex(outcome.in), before);
    }
}

TEST(LiMd, SendsTheComplementOfOneValue) {
    for (const auto& [value, expected] : {std::pair{0x0000U, "ff ff"}, std::pair{0x1234U, "ed cb"},
                                          std::pair{0xffffU, "00 00"}, std::pair{0x00ffU, "ff 00"}}) {
        Bytes in(30);
        put_little(in, 2, 2, value);
        const Outcome outcome = translate(result, in);
        EXPECT_EQ(hex({outcome.out.at(2), outcome.out.at(3)}), expected);
    }
}

TEST(LiMd, TranslatesZerosAndOnes) {
    const Outcome zeros = translate(result, Bytes(30), Bytes(32, 0xff));
    EXPECT_EQ(zeros.status, 0);
    EXPECT_EQ(zeros.length, 32U);
    EXPECT_EQ(hex(zeros.out),
              "11 00 ff ff 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
              "00 00 00 00 00 00 00 00 00 00 00 00");
    EXPECT_EQ(hex(translate(result, Bytes(30, 0xff)).out),
              "19 ff 00 00 ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff "
              "ff ff 00 00 ff ff ff 00 ff ff ff ff");
}

TEST(LiMd, TranslatesARecordWhoseBytesCount) {
    EXPECT_EQ(hex(translate(result, counting(30, 0x20)).out),  // L1 is 0x21
              "19 20 dc dd 27 26 25 24 2b 2a 29 28 2f 2e 2d 2c 33 32 31 30 "
              "35 34 00 00 36 37 38 00 3d 3c 3b 3a");
}

TEST(LiMd, PutsItsBitsWhereTheCardLooks) {
    for (const auto& [from, to] :
         {std::pair{"L0.0", "P1.0"}, std::pair{"L1.0", "P0.3"}, std::pair{"L2.0", "P3.0"}, std::pair{"L3.7", "P2.7"},
          std::pair{"L4.0", "P7.0"}, std::pair{"L19.7", "P16.7"}, std::pair{"L20.0", "P21.0"},
          std::pair{"L22.0", "P24.0"}, std::pair{"L24.7", "P26.7"}, std::pair{"L26.0", "P31.0"},
          std::pair{"L29.7", "P28.7"}}) {
        EXPECT_EQ(changes(result, Bytes(30), from), to) << from;
    }
    for (const char* dropped : {"L1.1", "L1.2", "L1.3", "L1.4", "L1.5", "L1.6", "L1.7", "L25.0", "L25.4", "L25.7"}) {
        EXPECT_EQ(changes(result, counting(30), dropped), "") << dropped;
    }
}

TEST(LiMd, ReadsItsValuesBackByteReversedAndLosesTheLast) {
    Bytes in = counting(30, 0x20);
    in.at(1) = 0xff;
    const Outcome back = translate(read_back, translate(result, in).out, Bytes(30, 0xff));
    EXPECT_EQ(back.status, 0);
    EXPECT_EQ(back.length, std::nullopt);
    EXPECT_EQ(hex(back.out),
              "20 01 23 22 27 26 25 24 2b 2a 29 28 2f 2e 2d 2c 33 32 31 30 "
              "35 34 00 00 00 00 00 00 00 00");

    in.at(1) = 0xfe;
    EXPECT_EQ(translate(read_back, translate(result, in).out).out.at(1), 0x00);
}

TEST(LiMd, ReadsNothingElseBack) {
    EXPECT_EQ(hex(translate(read_back, Bytes(32)).out),
              "00 00 ff ff 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
              "00 00 00 00 00 00 00 00 00 00");
    for (const auto& [from, to] :
         {std::pair{"P0.3", "L1.0"}, std::pair{"P1.7", "L0.7"}, std::pair{"P2.0", "L2.0"}, std::pair{"P3.7", "L3.7"},
          std::pair{"P4.0", "L4.0"}, std::pair{"P19.7", "L19.7"}, std::pair{"P21.0", "L21.0"}, std::pair{"P0.0", ""},
          std::pair{"P0.2", ""}, std::pair{"P0.4", ""}, std::pair{"P0.7", ""}, std::pair{"P22.0", ""},
          std::pair{"P24.0", ""}, std::pair{"P26.7", ""}, std::pair{"P28.0", ""}, std::pair{"P31.7", ""}}) {
        EXPECT_EQ(changes(read_back, counting(32), from), to) << from;
    }
}

TEST(LiMd, IgnoresEveryLength) {
    for (const Translator* translator : {&key, &result, &read_back}) {
        const Bytes in = counting(translator->in_size, 0x33);
        expect_length_ignored(*translator, in);
    }
}

TEST(LiMd, IsTable66) {
    EXPECT_EQ(l2p_ucode_func_table[66].key, &li_md_st_xlate_key);
    EXPECT_EQ(l2p_ucode_func_table[66].result, &li_md_st_xlate_result);
    EXPECT_EQ(p2l_ucode_func_table[66], &li_md_logical_xlate_result);
}

}  // namespace
