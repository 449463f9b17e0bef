// Table 22, where mirrored packets go.
#include <gtest/gtest.h>

#include <npxlate/npxlate.h>

#include <string>
#include <utility>

#include "support/harness.h"
#include "support/models.h"
#include "support/record.h"
#include "support/rows.h"

namespace {

using namespace support;

const Translator key = FORWARD(span_fwd_st_xlate_key, 4, 3);
const Translator result = FORWARD(span_fwd_st_xlate_result, 28, 32);
const Translator read_back = REVERSE(span_fwd_logical_xlate_result, 32, 28);

Reply key_model(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0 = L0",
        "P1-2 = L2-3",
    };
    rows.apply(in, out);
    return {.length = 3};
}

// Also limits L18-19 in the record of the caller.
Reply result_model(Bytes& in, Bytes& out) {
    static const Rows common{
        "P0-31 = 0",    //
        "P0 = 0x11",    //
        "P0.5 = L4.0",  //
        "P0.6 = L4.1",  //
        "P1.7 = L4.2",  //
        "P3 = L20",     //
        "P4-7 = L0-3",  //
        "P8-10 = L24-26",
    };
    static const Rows with_address{
        "P12-17 = L8-13",
        "P18-19 = L14-15",
    };
    static const Rows limited{"P28-29 = L18-19"};
    common.apply(in, out);
    if (bit(in, 4, 2)) {
        with_address.apply(in, out);
    }
    if (little(in, 18, 2) > 128) {
        put_little(in, 18, 2, 128);
    }
    limited.apply(in, out);
    return {.length = 32};
}

Reply read_back_model(const Bytes& in, Bytes& out) {
    static const Rows common{
        "L0-27 = 0",        //
        "L4.0 = P0.5",      //
        "L4.1 = P0.6",      //
        "L4.2 = P1.7",      //
        "L20 = P3",         //
        "L0-3 = P4-7",      //
        "L24-26 = P8-10",   //
        "L27 = 0",          //
        "L18-19 = P28-29",  //
    };
    static const Rows with_address{
        "L8-13 = P12-17",
        "L14-15 = P18-19",
    };
    common.apply(in, out);
    if (bit(out, 4, 2)) {
        with_address.apply(in, out);
    }
    return {};
}

Bytes without_address(Bytes in) {
    set_bit(in, 4, 2, false);
    return in;
}

Bytes with_address(Bytes in) {
    set_bit(in, 4, 2);
    return in;
}

Bytes limited_to(std::uint16_t value) {
    Bytes in(28);
    put_little(in, 18, 2, value);
    return in;
}

const support::Models models{{key, key_model}, {result, result_model}, {read_back, read_back_model}};

TEST(SpanFwd, CarriesWhatItsPositionsSay) {
    walk(key, key_model, {Bytes(4), Bytes(4, 0xff), counting(4, 0x91)});
    check_random(key, key_model);

    for (const Bytes& base : {Bytes(28), Bytes(28, 0xff), counting(28), counting(28, 0x81)}) {
        for (const unsigned value : {0U, 0x55U, 128U, 129U, 0x100U, 0xffffU}) {
            Bytes in = base;
            put_little(in, 18, 2, value);
            walk(result, result_model, {with_address(in), without_address(in)});
        }
    }
    check_random(result, result_model);
    check_random(result, result_model, 1000, [](Bytes& in) { in.at(19) = 0; });
    check_random(result, result_model, 1000, [](Bytes& in) { put_little(in, 18, 2, in.at(18) & 0x7f); });
}

TEST(SpanFwd, ReadsBackWhatItsPositionsSay) {
    for (const Bytes& base : {Bytes(32), Bytes(32, 0xff), counting(32), counting(32, 0x81)}) {
        for (const bool address : {false, true}) {
            Bytes in = base;
            set_bit(in, 1, 7, address);
            walk(read_back, read_back_model, in);
        }
    }
    check_random(read_back, read_back_model);
}

TEST(SpanFwd, LimitsEveryValueAbove128) {
    for (unsigned value = 0; value < 0x10000; value += value < 0x400 ? 1 : 97) {
        check(result, result_model, limited_to(static_cast<std::uint16_t>(value)));
    }
}

TEST(SpanFwd, SkipsOneByteOfTheKey) {
    const Outcome outcome = translate(key, bytes("11 22 33 44"), Bytes(3, 0xff));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 3U);
    EXPECT_EQ(hex(outcome.out), "11 33 44");
    for (const char* dropped : {"L1.0", "L1.4", "L1.7"}) {
        EXPECT_EQ(changes(key, counting(4), dropped), "") << dropped;
    }
}

TEST(SpanFwd, WritesAllThreeBytesOfTheKeyAndNoMore) {
    EXPECT_EQ(hex(translate(key, Bytes(4), Bytes(6, 0xff)).out), "00 00 00 ff ff ff");
    EXPECT_EQ(hex(translate(key, Bytes(4, 0xff), Bytes(6)).out), "ff ff ff 00 00 00");
}

TEST(SpanFwd, TranslatesARecordWithAnAddress) {
    Bytes in = counting(28);  // L4 is 0x04: the flag of the address is set
    put_little(in, 18, 2, 0x40);
    const Outcome outcome = translate(result, in, Bytes(32, 0xff));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 32U);
    EXPECT_EQ(hex(outcome.out),
              "11 80 00 14 00 01 02 03 18 19 1a 00 08 09 0a 0b 0c 0d 0e 0f "
              "00 00 00 00 00 00 00 00 40 00 00 00");
    EXPECT_EQ(hex(outcome.in), hex(in));
}

TEST(SpanFwd, LeavesTheAddressOutWhenItsFlagIsClear) {
    Bytes in = counting(28);
    in.at(4) = 0xfb;
    EXPECT_EQ(hex(translate(result, in, Bytes(32, 0xff)).out),
              "71 00 00 14 00 01 02 03 18 19 1a 00 00 00 00 00 00 00 00 00 "
              "00 00 00 00 00 00 00 00 80 00 00 00");
    for (const char* dropped : {"L8.0", "L13.7", "L14.0", "L15.7"}) {
        EXPECT_EQ(changes(result, in, dropped), "") << dropped;
    }
}

TEST(SpanFwd, LowersTheLimitedValueInTheRecordOfTheCallerToo) {
    struct {
        std::uint16_t value;
        const char* expected;
    } const cases[] = {
        {0, "00 00"},   {1, "01 00"},   {127, "7f 00"},    {128, "80 00"},    {129, "80 00"},    {255, "80 00"},
        {256, "80 00"}, {300, "80 00"}, {0x8000, "80 00"}, {0x8001, "80 00"}, {0xff00, "80 00"}, {0xffff, "80 00"},
    };
    for (const auto& [value, expected] : cases) {
        const Outcome outcome = translate(result, limited_to(value));
        EXPECT_EQ(hex(outcome.out),
                  std::string{"11 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "} +
                      expected + " 00 00")
            << value;
        EXPECT_EQ(hex(outcome.in), std::string{"00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "} + expected +
                                       " 00 00 00 00 00 00 00 00")
            << value;
    }
}

TEST(SpanFwd, PutsItsFlagsWhereTheCardLooks) {
    for (const auto& [from, to] : {std::pair{"L4.0", "P0.5"}, std::pair{"L4.1", "P0.6"}, std::pair{"L4.2", "P1.7"},
                                   std::pair{"L0.0", "P4.0"}, std::pair{"L3.7", "P7.7"}, std::pair{"L20.1", "P3.1"},
                                   std::pair{"L24.0", "P8.0"}, std::pair{"L26.7", "P10.7"}}) {
        EXPECT_EQ(changes(result, Bytes(28), from), to) << from;
    }
}

TEST(SpanFwd, DropsWhatItDoesNotCarry) {
    for (const Bytes& base : {Bytes(28), with_address(Bytes(28))}) {
        for (const char* dropped : {"L4.3", "L4.4", "L4.5", "L4.6", "L4.7", "L5.0", "L6.3", "L7.7", "L16.0", "L17.7",
                                    "L21.0", "L22.3", "L23.7", "L27.0", "L27.7"}) {
            EXPECT_EQ(changes(result, base, dropped), "") << dropped;
        }
    }
}

TEST(SpanFwd, ReadsARecordBackAsLimited) {
    Bytes in = counting(28, 0x81);
    in.at(4) = 0xff;
    const Outcome back = translate(read_back, translate(result, in).out, Bytes(28, 0xff));
    EXPECT_EQ(back.status, 0);
    EXPECT_EQ(back.length, std::nullopt);
    EXPECT_EQ(hex(back.out), "81 82 83 84 07 00 00 00 89 8a 8b 8c 8d 8e 8f 90 00 00 80 00 95 00 00 00 99 9a 9b 00");

    in.at(4) = 0x03;
    EXPECT_EQ(hex(translate(read_back, translate(result, in).out, Bytes(28, 0xff)).out),
              "81 82 83 84 03 00 00 00 00 00 00 00 00 00 00 00 00 00 80 00 95 00 00 00 99 9a 9b 00");
}

TEST(SpanFwd, ReadsBackNoAddressWithoutItsFlag) {
    Bytes in(32, 0xff);
    in.at(1) = 0x7f;
    EXPECT_EQ(hex(translate(read_back, in).out),
              "ff ff ff ff 03 00 00 00 00 00 00 00 00 00 00 00 00 00 ff ff ff 00 00 00 ff ff ff 00");
}

// The limit holds for what goes to the card only.
TEST(SpanFwd, ReadsBackAValueAboveTheLimitAsItStands) {
    Bytes in(32);
    in.at(28) = 0x2c;
    in.at(29) = 0x01;
    const Outcome back = translate(read_back, in);
    EXPECT_EQ(hex(back.out), "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 2c 01 00 00 00 00 00 00 00 00");
    EXPECT_EQ(hex(back.in), hex(in));
}

TEST(SpanFwd, DoesNotReadTheRestBack) {
    for (const Bytes& base : {Bytes(32), Bytes(32, 0xff)}) {
        for (const char* dropped :
             {"P0.0", "P0.4", "P0.7", "P1.6", "P2.0", "P11.7", "P20.0", "P27.7", "P30.0", "P31.7"}) {
            EXPECT_EQ(changes(read_back, base, dropped), "") << dropped;
        }
    }
}

TEST(SpanFwd, IgnoresEveryLength) {
    for (const Translator* translator : {&key, &result, &read_back}) {
        const Bytes in = counting(translator->in_size, 0x33);
        expect_length_ignored(*translator, in);
    }
}

TEST(SpanFwd, IsTable22) {
    EXPECT_EQ(l2p_ucode_func_table[22].key, &span_fwd_st_xlate_key);
    EXPECT_EQ(l2p_ucode_func_table[22].result, &span_fwd_st_xlate_result);
    EXPECT_EQ(p2l_ucode_func_table[22], &span_fwd_logical_xlate_result);
}

}  // namespace
