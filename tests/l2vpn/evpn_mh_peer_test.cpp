// The EVPN multi-homing peer and the PBB-EVPN form that shares its table.
#include <cstdint>
#include <optional>
#include <string>

#include <gtest/gtest.h>

#include <npxlate/npxlate.h>

#include "support/harness.h"
#include "support/models.h"
#include "support/record.h"
#include "support/rows.h"

namespace {

using namespace support;

const Translator pbb_key = FORWARD(pbbevpn_esi_bmac_type_xlate_key, 12, 7);
const Translator pbb_result = FORWARD(pbbevpn_esi_bmac_type_xlate_result, 10, 8);
const Translator pbb_reverse = REVERSE(pbbevpn_esi_bmac_type_logical_xlate_result, 8, 12);
const Translator peer_key = FORWARD(evpn_mh_peer_type_xlate_key, 12, 7);
const Translator peer_result = FORWARD(evpn_mh_peer_type_xlate_result, 10, 8);
const Translator peer_reverse = REVERSE(evpn_mh_peer_type_logical_xlate_result, 8, 12);

Reply pbb_key_model(Bytes& in, Bytes& out) {
    fill(out, 0, 6);
    std::uint64_t value = little(in, 8, 4) >> 4 & 0xfffff0;
    if (in[8] != 0) {
        value |= 1;
    }
    put_little(out, 4, 3, value);
    return {.length = 7};
}

Reply pbb_result_model(Bytes& in, Bytes& out) {
    static const Rows rows{"P0-7 = 0", "P0 = 0x11", "P2-7 = L4-9"};
    rows.apply(in, out);
    return {.length = 8};
}

Reply pbb_reverse_model(Bytes& in, Bytes& out) {
    static const Rows rows{"L0-11 = 0", "L4-9 = P2-7"};
    rows.apply(in, out);
    return {};
}

Reply peer_key_model(Bytes& in, Bytes& out) {
    if (bit(in, 0, 0)) {
        return pbb_key_model(in, out);
    }
    static const Rows rows{
        "P0-6 = 0", "P0-3 = L4-7", "P4-5 = L9-10", "P6.3-0 = L11.3-0",  // bits 27..8 of L8-11
    };
    rows.apply(in, out);
    return {.length = 7};
}

Reply peer_result_model(Bytes& in, Bytes& out) {
    if (bit(in, 0, 0)) {
        return pbb_result_model(in, out);
    }
    static const Rows rows{"P0-7 = 0", "P0 = 0x91", "P4-6 = L1-3"};
    rows.apply(in, out);
    return {.length = 8};
}

Reply peer_reverse_model(Bytes& in, Bytes& out) {
    if (!bit(in, 0, 7)) {
        return pbb_reverse_model(in, out);
    }
    static const Rows rows{"L0-11 = 0", "L1-3 = P4-6"};
    rows.apply(in, out);
    return {};
}

// The PBB-EVPN key of a value at L8-11.
std::string pbb_key_of(std::uint32_t value) {
    Bytes in(12);
    put_little(in, 8, 4, value);
    return hex(translate(pbb_key, in).out);
}

const support::Models models{{pbb_key, pbb_key_model},         {pbb_result, pbb_result_model},
                             {pbb_reverse, pbb_reverse_model}, {peer_key, peer_key_model},
                             {peer_result, peer_result_model}, {peer_reverse, peer_reverse_model}};

// ---------------------------------------------------------------------------------------------------------------------
// PBB-EVPN form

TEST(PbbEvpnEsiBmacKey, CarriesItsFieldAndNothingElse) {
    walk(pbb_key, pbb_key_model, patterns(12));
    check_random(pbb_key, pbb_key_model);
    check_random(pbb_key, pbb_key_model, 200, [](Bytes& in) { in[8] = 0; });
}

TEST(PbbEvpnEsiBmacKey, IsTwentyBitsAndAMarkOfTheLowByte) {
    EXPECT_EQ(pbb_key_of(0x00000000), "00 00 00 00 00 00 00");
    EXPECT_EQ(pbb_key_of(0x00000100), "00 00 00 00 10 00 00");
    EXPECT_EQ(pbb_key_of(0x00000101), "00 00 00 00 11 00 00");
    EXPECT_EQ(pbb_key_of(0x00000180), "00 00 00 00 11 00 00");
    EXPECT_EQ(pbb_key_of(0x000000f0), "00 00 00 00 01 00 00");
    EXPECT_EQ(pbb_key_of(0x0abcde00), "00 00 00 00 e0 cd ab");
    EXPECT_EQ(pbb_key_of(0xffffff00), "00 00 00 00 f0 ff ff");
    EXPECT_EQ(pbb_key_of(0xf0000000), "00 00 00 00 00 00 00");

    const Outcome outcome = translate(pbb_key, Bytes(12, 0xff), Bytes(7, 0xa5));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 7U);
    EXPECT_EQ(hex(outcome.out), "00 00 00 00 f1 ff ff");
}

TEST(PbbEvpnEsiBmacKey, DoesNotCarryTheRestOfTheRecord) { expect_not_carried(pbb_key, Bytes(12), {"L0-7", "L11.7-4"}); }

TEST(PbbEvpnEsiBmacResult, IsTheMacAddress) {
    walk(pbb_result, pbb_result_model, patterns(10));
    check_random(pbb_result, pbb_result_model);
    const Outcome outcome = translate(pbb_result, counting(10), Bytes(8, 0xff));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 8U);
    EXPECT_EQ(hex(outcome.out), "11 00 04 05 06 07 08 09");
    expect_not_carried(pbb_result, Bytes(10), {"L0-3"});
}

TEST(PbbEvpnEsiBmacReverse, RestoresTheMacAddressWhateverTheHeader) {
    walk(pbb_reverse, pbb_reverse_model, patterns(8));
    check_random(pbb_reverse, pbb_reverse_model);
    for (const char* record : {"11 00 04 05 06 07 08 09", "91 ff 04 05 06 07 08 09"}) {
        const Outcome outcome = translate(pbb_reverse, bytes(record), Bytes(12, 0xff));
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(outcome.length, std::nullopt);
        EXPECT_EQ(hex(outcome.out), "00 00 00 00 04 05 06 07 08 09 00 00");
    }
}

// ---------------------------------------------------------------------------------------------------------------------
// Peer form

TEST(EvpnMhPeerKey, CarriesTheFieldsOfItsFormAndNothingElse) {
    for (const bool pbb : {false, true}) {
        for (Bytes base : patterns(12)) {
            set_bit(base, 0, 0, pbb);
            walk(peer_key, peer_key_model, base);
        }
    }
    check_random(peer_key, peer_key_model);
}

TEST(EvpnMhPeerKey, IsTwoValuesWhereL0_0IsClear) {
    const Outcome outcome = translate(peer_key, bytes("fe ff ff ff 04 05 06 07 99 de bc fa"), Bytes(7, 0xff));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 7U);
    EXPECT_EQ(hex(outcome.out), "04 05 06 07 de bc 0a");
}

TEST(EvpnMhPeerKey, IsThePbbEvpnKeyWhereL0_0IsSet) {
    const Outcome outcome = translate(peer_key, bytes("01 00 00 00 04 05 06 07 99 de bc fa"), Bytes(7, 0xff));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 7U);
    EXPECT_EQ(hex(outcome.out), "00 00 00 00 e1 cd ab");
}

TEST(EvpnMhPeerResult, CarriesTheFieldsOfItsFormAndNothingElse) {
    for (const bool pbb : {false, true}) {
        for (Bytes base : patterns(10)) {
            set_bit(base, 0, 0, pbb);
            walk(peer_result, peer_result_model, base);
        }
    }
    check_random(peer_result, peer_result_model);
}

TEST(EvpnMhPeerResult, HasTheHeaderOfItsForm) {
    const Outcome peer = translate(peer_result, bytes("fe 01 02 03 04 05 06 07 08 09"), Bytes(8, 0xff));
    EXPECT_EQ(peer.status, 0);
    EXPECT_EQ(peer.length, 8U);
    EXPECT_EQ(hex(peer.out), "91 00 00 00 01 02 03 00");

    const Outcome pbb = translate(peer_result, bytes("01 01 02 03 04 05 06 07 08 09"), Bytes(8, 0xff));
    EXPECT_EQ(pbb.status, 0);
    EXPECT_EQ(pbb.length, 8U);
    EXPECT_EQ(hex(pbb.out), "11 00 04 05 06 07 08 09");
}

TEST(EvpnMhPeerReverse, RestoresTheFieldsOfItsFormAndNothingElse) {
    for (const bool peer : {false, true}) {
        for (Bytes base : patterns(8)) {
            set_bit(base, 0, 7, peer);
            walk(peer_reverse, peer_reverse_model, base);
        }
    }
    check_random(peer_reverse, peer_reverse_model);
}

TEST(EvpnMhPeerReverse, TakesItsFormFromP0_7Alone) {
    const auto back = [](const char* record) {
        const Outcome outcome = translate(peer_reverse, bytes(record), Bytes(12, 0xff));
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(outcome.length, std::nullopt);
        return hex(outcome.out);
    };
    EXPECT_EQ(back("91 01 02 03 04 05 06 07"), "00 04 05 06 00 00 00 00 00 00 00 00");
    EXPECT_EQ(back("80 01 02 03 04 05 06 07"), "00 04 05 06 00 00 00 00 00 00 00 00");
    EXPECT_EQ(back("11 01 02 03 04 05 06 07"), "00 00 00 00 02 03 04 05 06 07 00 00");
    EXPECT_EQ(back("7f 01 02 03 04 05 06 07"), "00 00 00 00 02 03 04 05 06 07 00 00");
}

// ---------------------------------------------------------------------------------------------------------------------
// There and back

TEST(EvpnMhPeer, ComesBackWithoutItsFirstByte) {
    const Bytes out = translate(peer_result, bytes("fe 01 02 03 04 05 06 07 08 09")).out;
    EXPECT_EQ(hex(translate(peer_reverse, out).out), "00 01 02 03 00 00 00 00 00 00 00 00");
}

TEST(EvpnMhPeer, OfThePbbEvpnFormComesBackWithTheSelectorClear) {
    const Bytes out = translate(peer_result, bytes("ff 01 02 03 04 05 06 07 08 09")).out;
    EXPECT_EQ(hex(translate(peer_reverse, out).out), "00 00 00 00 04 05 06 07 08 09 00 00");
}

TEST(EvpnMhPeer, IgnoresTheLengthArgument) {
    for (const Translator& translator : {pbb_key, pbb_result, pbb_reverse, peer_key, peer_result, peer_reverse}) {
        for (const std::uint8_t first : Bytes{0x00, 0x81}) {
            const Bytes in = counting(translator.in_size, first);
            expect_length_ignored(translator, in);
        }
    }
}

TEST(EvpnMhPeer, IsTable30) {
    EXPECT_EQ(l2p_ucode_func_table[30].key, &evpn_mh_peer_type_xlate_key);
    EXPECT_EQ(l2p_ucode_func_table[30].result, &evpn_mh_peer_type_xlate_result);
    EXPECT_EQ(p2l_ucode_func_table[30], &evpn_mh_peer_type_logical_xlate_result);
}

}  // namespace
