// Video monitoring: table 48, the flows; table 49, the interfaces; table 84, the RTP payload types.
#include <gtest/gtest.h>

#include <npxlate/npxlate.h>

#include <string>
#include <tuple>
#include <utility>

#include "support/harness.h"
#include "support/models.h"
#include "support/record.h"
#include "support/rows.h"

namespace {

using namespace support;

const Translator flow_result = FORWARD(vidmon_str_xlate_result, 24, 32);
const Translator interface_key = FORWARD(vidmon_intf_hash_key_xlate_key, 6, 7);
const Translator interface_result = FORWARD(vidmon_intf_str_xlate_result, 16, 16);
const Translator payload_key = FORWARD(vidmon_rtp_pt_xlate_key, 2, 2);
const Translator payload_result = FORWARD(vidmon_rtp_pt_xlate_result, 4, 8);

Reply flow_result_model(const Bytes& in, Bytes& out) {
    static const Rows common{
        "P0-31 = 0",    //
        "P0 = 0x91",    //
        "P0.6 = L0.6",  //
        "P0.5 = L0.7",  //
        "P1.5 = L0.5",  //
        "P4-5 = L3-4",  //
        "P6-7 = L5-6",  //
        "P8 = L15",     //
        "P9 = L16",     //
        "P10 = L17",    //
    };
    static const Rows first_group{"P11-14 = L11-14"};
    static const Rows second_group{
        "P15 = L18",        //
        "P11-12 = L19-20",  //
        "P13-14 = L21-22",  //
        "P16 = L23",        //
        "P17-19 = 0",       //
    };
    common.apply(in, out);
    if (bit(in, 0, 7)) {
        first_group.apply(in, out);
    }
    if (bit(in, 0, 6)) {
        second_group.apply(in, out);
    }
    return {.length = 32};
}

Reply interface_key_model(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0-1 = L0-1",
        "P2-3 = L2-3",
        "P4-5 = L4-5",
        "P6 = 4",
    };
    rows.apply(in, out);
    return {.length = 7};
}

Reply interface_result_model(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0-15 = 0",        //
        "P0 = 0x31",        //
        "P3 = L0",          //
        "P10-11 = L5-6",    //
        "P4-6 = L7-9",      //
        "P12-14 = L11-13",  //
        "P7 = L15",         //
    };
    rows.apply(in, out);
    return {.length = 16};
}

Reply payload_key_model(const Bytes& in, Bytes& out) {
    static const Rows rows{"P0-1 = swap L0-1"};
    rows.apply(in, out);
    return {.length = 2};
}

Reply payload_result_model(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0-7 = 0",
        "P0 = 0x11",
        "P4-7 = L0-3",
    };
    rows.apply(in, out);
    return {.length = 8};
}

Bytes with_groups(Bytes in, unsigned groups) {
    set_bits(in, 0, 7, 6, groups);
    return in;
}

const support::Models models{{flow_result, flow_result_model},
                             {interface_key, interface_key_model},
                             {interface_result, interface_result_model},
                             {payload_key, payload_key_model},
                             {payload_result, payload_result_model}};

TEST(Vidmon, CarriesWhatItsPositionsSay) {
    for (unsigned groups = 0; groups < 4; ++groups) {
        for (const Bytes& base : {Bytes(24), Bytes(24, 0xff), counting(24), counting(24, 0x91)}) {
            walk(flow_result, flow_result_model, with_groups(base, groups));
        }
        check_random(flow_result, flow_result_model, 1000, [groups](Bytes& in) { set_bits(in, 0, 7, 6, groups); });
    }
    walk(interface_key, interface_key_model, {Bytes(6), Bytes(6, 0xff), counting(6, 0x91)});
    check_random(interface_key, interface_key_model);
    walk(interface_result, interface_result_model, {Bytes(16), Bytes(16, 0xff), counting(16, 0x91)});
    check_random(interface_result, interface_result_model);
    walk(payload_key, payload_key_model, {Bytes(2), Bytes(2, 0xff), counting(2, 0x91)});
    check_random(payload_key, payload_key_model);
    walk(payload_result, payload_result_model, {Bytes(4), Bytes(4, 0xff), counting(4, 0x91)});
    check_random(payload_result, payload_result_model);
}

TEST(Vidmon, StartsEveryFlowWithItsOwnHeader) {
    const Outcome outcome = translate(flow_result, Bytes(24), Bytes(32, 0xff));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 32U);
    EXPECT_EQ(hex(outcome.out),
              "91 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
              "00 00 00 00 00 00 00 00 00 00 00 00");
    Bytes in(24);
    in.at(0) = 0x20;
    EXPECT_EQ(hex(translate(flow_result, in).out),
              "91 20 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
              "00 00 00 00 00 00 00 00 00 00 00 00");
}

TEST(Vidmon, HasFourLayoutsOfAFlow) {
    for (const auto& [first_byte, expected] : {
             std::pair{0x1f, "91 00 00 00 03 04 05 06 0f 10 11 00 00 00 00 00 00 00 00 00 "},
             std::pair{0x80, "b1 00 00 00 03 04 05 06 0f 10 11 0b 0c 0d 0e 00 00 00 00 00 "},
             std::pair{0x40, "d1 00 00 00 03 04 05 06 0f 10 11 13 14 15 16 12 17 00 00 00 "},
             std::pair{0xc0, "f1 00 00 00 03 04 05 06 0f 10 11 13 14 15 16 12 17 00 00 00 "},
             std::pair{0xff, "f1 20 00 00 03 04 05 06 0f 10 11 13 14 15 16 12 17 00 00 00 "},
         }) {
        Bytes in = counting(24);
        in.at(0) = static_cast<std::uint8_t>(first_byte);
        EXPECT_EQ(hex(translate(flow_result, in, Bytes(32, 0xff)).out),
                  std::string{expected} + "00 00 00 00 00 00 00 00 00 00 00 00");
    }
}

TEST(Vidmon, CarriesOnlyTheGroupsOfAFlowThatArePresent) {
    const Bytes base = counting(24, 0x20);
    for (const auto& [groups, first_group, second_group] : {std::tuple{0U, "", ""}, std::tuple{1U, "", "P11.0"},
                                                            std::tuple{2U, "P11.0", ""}, std::tuple{3U, "", "P11.0"}}) {
        EXPECT_EQ(changes(flow_result, with_groups(base, groups), "L11.0"), first_group) << groups;
        EXPECT_EQ(changes(flow_result, with_groups(base, groups), "L19.0"), second_group) << groups;
    }
    for (const char* dropped : {"L11.0", "L14.7", "L18.0", "L19.0", "L22.7", "L23.7"}) {
        EXPECT_EQ(changes(flow_result, with_groups(base, 0), dropped), "") << dropped;
    }
}

TEST(Vidmon, DropsWhatItDoesNotCarryOfAFlow) {
    for (unsigned groups = 0; groups < 4; ++groups) {
        for (const char* dropped : {"L0.0", "L0.1", "L0.2", "L0.3", "L0.4", "L1.0", "L1.7", "L2.0", "L2.7", "L7.0",
                                    "L8.7", "L9.0", "L10.7"}) {
            EXPECT_EQ(changes(flow_result, with_groups(counting(24, 0x20), groups), dropped), "") << dropped;
        }
    }
}

TEST(Vidmon, EndsEveryInterfaceKeyWithAConstant) {
    for (const auto& [from, to] : {std::pair{"00 00 00 00 00 00", "00 00 00 00 00 00 04"},
                                   std::pair{"ff ff ff ff ff ff", "ff ff ff ff ff ff 04"},
                                   std::pair{"12 34 56 78 9a bc", "12 34 56 78 9a bc 04"}}) {
        const Outcome outcome = translate(interface_key, bytes(from), Bytes(7, 0xff));
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(outcome.length, 7U);
        EXPECT_EQ(hex(outcome.out), to);
    }
}

TEST(Vidmon, RegroupsTheInterfaceResult) {
    const Outcome outcome = translate(interface_result, counting(16, 0xa0), Bytes(16, 0xff));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 16U);
    EXPECT_EQ(hex(outcome.out), "31 00 00 a0 a7 a8 a9 af 00 00 a5 a6 ab ac ad 00");
    EXPECT_EQ(hex(translate(interface_result, Bytes(16)).out), "31 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
}

TEST(Vidmon, DropsWhatItDoesNotCarryOfAnInterface) {
    EXPECT_EQ(hex(translate(interface_result, bytes("00 ff ff ff ff 00 00 00 00 00 ff 00 00 00 ff 00")).out),
              "31 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
    for (const char* dropped : {"L1.0", "L2.7", "L3.0", "L4.7", "L10.0", "L10.7", "L14.0", "L14.7"}) {
        EXPECT_EQ(changes(interface_result, counting(16), dropped), "") << dropped;
    }
    for (const auto& [from, to] : {std::pair{"L0.0", "P3.0"}, std::pair{"L5.0", "P10.0"}, std::pair{"L6.7", "P11.7"},
                                   std::pair{"L7.0", "P4.0"}, std::pair{"L9.7", "P6.7"}, std::pair{"L11.0", "P12.0"},
                                   std::pair{"L13.7", "P14.7"}, std::pair{"L15.4", "P7.4"}}) {
        EXPECT_EQ(changes(interface_result, counting(16), from), to) << from;
    }
}

TEST(Vidmon, SwapsThePayloadTypeKey) {
    const Outcome outcome = translate(payload_key, bytes("12 34"), Bytes(2, 0xff));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 2U);
    EXPECT_EQ(hex(outcome.out), "34 12");
}

TEST(Vidmon, CopiesThePayloadTypes) {
    const Outcome outcome = translate(payload_result, bytes("12 34 56 78"), Bytes(8, 0xff));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 8U);
    EXPECT_EQ(hex(outcome.out), "11 00 00 00 12 34 56 78");
    EXPECT_EQ(hex(translate(payload_result, Bytes(4)).out), "11 00 00 00 00 00 00 00");
}

TEST(Vidmon, IgnoresTheLength) {
    for (const Translator* translator :
         {&flow_result, &interface_key, &interface_result, &payload_key, &payload_result}) {
        const Bytes in = counting(translator->in_size, 0x73);
        expect_length_ignored(*translator, in);
    }
}

TEST(Vidmon, IsTables48And49And84) {
    EXPECT_EQ(l2p_ucode_func_table[48].key, &generic_xlate_key);
    EXPECT_EQ(l2p_ucode_func_table[48].result, &vidmon_str_xlate_result);
    EXPECT_EQ(l2p_ucode_func_table[49].key, &vidmon_intf_hash_key_xlate_key);
    EXPECT_EQ(l2p_ucode_func_table[49].result, &vidmon_intf_str_xlate_result);
    EXPECT_EQ(l2p_ucode_func_table[84].key, &vidmon_rtp_pt_xlate_key);
    EXPECT_EQ(l2p_ucode_func_table[84].result, &vidmon_rtp_pt_xlate_result);
    for (const std::size_t id : {48U, 49U, 84U}) {
        EXPECT_EQ(p2l_ucode_func_table[id], &generic_xlate_logical_result) << id;
    }
}

}  // namespace
