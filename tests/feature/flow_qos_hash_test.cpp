// The flow-QoS hash. By name only; its result is written over a buffer that the caller has prepared.
#include <gtest/gtest.h>

#include <npxlate/npxlate.h>

#include <utility>

#include "support/harness.h"
#include "support/models.h"
#include "support/record.h"
#include "support/rows.h"

namespace {

using namespace support;

const Translator key = FORWARD(flow_qos_hash_st_xlate_key, 24, 24);
const Translator result = FORWARD(flow_qos_hash_st_xlate_result, 16, 16);

Reply key_model(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0-23 = 0",
        "P0-21 = L0-21",
        "P22 = 0",
        "P23.7-5 = L23.7-5",
    };
    rows.apply(in, out);
    return {.length = 24};
}

// Neither cleared nor given a header.
Reply result_model(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0.7 = L0.7",      //
        "P0.6 = L0.6",      //
        "P0.4 = L0.4",      //
        "P1 = L1",          //
        "P2 = L2",          //
        "P4-6 = L4-6",      //
        "P8-11 = L8-11",    //
        "P12-15 = L12-15",  //
    };
    rows.apply(in, out);
    return {.length = 16};
}

const support::Models models{{key, key_model}, {result, result_model}};

TEST(FlowQosHash, CarriesWhatItsPositionsSay) {
    walk(key, key_model, {Bytes(24), Bytes(24, 0xff), counting(24, 0x91)});
    check_random(key, key_model);
    walk(result, result_model, {Bytes(16), Bytes(16, 0xff), counting(16, 0x91)});
    check_random(result, result_model);
}

TEST(FlowQosHash, KeepsThreeBitsOfTheLastKeyByteAndNoneBeforeIt) {
    const Outcome ones = translate(key, Bytes(24, 0xff));
    EXPECT_EQ(ones.status, 0);
    EXPECT_EQ(ones.length, 24U);
    EXPECT_EQ(hex(ones.out), "ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff 00 e0");
    for (const char* dropped : {"L22.0", "L22.7", "L23.0", "L23.1", "L23.2", "L23.3", "L23.4"}) {
        EXPECT_EQ(changes(key, counting(24), dropped), "") << dropped;
    }
    for (const auto& [from, to] : {std::pair{"L0.0", "P0.0"}, std::pair{"L21.7", "P21.7"}, std::pair{"L23.5", "P23.5"},
                                   std::pair{"L23.7", "P23.7"}}) {
        EXPECT_EQ(changes(key, counting(24), from), to) << from;
    }
}

TEST(FlowQosHash, CopiesTheKeyInItsOwnByteOrder) {
    EXPECT_EQ(hex(translate(key, counting(24, 0x20)).out),
              "20 21 22 23 24 25 26 27 28 29 2a 2b 2c 2d 2e 2f 30 31 32 33 34 35 00 20");
}

TEST(FlowQosHash, CopiesTheResultInItsOwnByteOrder) {
    const Outcome outcome = translate(result, counting(16, 0xd0));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 16U);
    EXPECT_EQ(hex(outcome.out), "d0 d1 d2 00 d4 d5 d6 00 d8 d9 da db dc dd de df");
}

TEST(FlowQosHash, WritesNoHeader) {
    EXPECT_EQ(hex(translate(result, Bytes(16)).out), "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
}

TEST(FlowQosHash, DropsWhatItDoesNotCarry) {
    for (const Bytes& base : {Bytes(16), counting(16, 0x81)}) {
        for (const char* dropped : {"L0.0", "L0.1", "L0.2", "L0.3", "L0.5", "L3.0", "L3.7", "L7.0", "L7.7"}) {
            EXPECT_EQ(changes(result, base, dropped), "") << dropped;
        }
    }
}

TEST(FlowQosHash, LeavesTheRestOfAPreparedBuffer) {
    EXPECT_EQ(hex(translate(result, Bytes(16), Bytes(16, 0xff)).out),
              "2f 00 00 ff 00 00 00 ff 00 00 00 00 00 00 00 00");

    // Each bit alone, and all but each bit alone.
    const Bytes kept = bytes("2f 00 00 ff 00 00 00 ff 00 00 00 00 00 00 00 00");
    const Bytes written = bytes("d0 ff ff 00 ff ff ff 00 ff ff ff ff ff ff ff ff");
    for (unsigned bit = 0; bit < 8; ++bit) {
        for (const unsigned pattern : {1U << bit, ~(1U << bit)}) {
            const Bytes before(16, static_cast<std::uint8_t>(pattern));
            Bytes over_zeros(16);
            Bytes over_ones(16);
            for (std::size_t i = 0; i < before.size(); ++i) {
                over_zeros[i] = before[i] & kept[i];
                over_ones[i] = over_zeros[i] | written[i];
            }
            EXPECT_EQ(hex(translate(result, Bytes(16), before).out), hex(over_zeros));
            EXPECT_EQ(hex(translate(result, Bytes(16, 0xff), before).out), hex(over_ones));
        }
    }
}

TEST(FlowQosHash, IgnoresTheLength) {
    expect_length_ignored(key, counting(24));
    expect_length_ignored(result, counting(16));
}

}  // namespace
