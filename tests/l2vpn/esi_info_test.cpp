// The ESI and MSTI information entries, which share a table. The way back takes the entry's logical key to tell them
// apart.
#include <cstdint>
#include <optional>

#include <gtest/gtest.h>

#include <npxlate/npxlate.h>

#include "support/harness.h"
#include "support/models.h"
#include "support/record.h"
#include "support/rows.h"

namespace {

using namespace support;

const Bytes esi_logical_key = bytes("00 01 02 03 04 05 06 ff");
const Bytes msti_logical_key = bytes("ff ff ff ff ff ff ff fe");

const Translator msti_key = FORWARD(velox_msti_info_type_xlate_key, 5, 7);
const Translator msti_result = FORWARD(velox_msti_info_type_xlate_result, 9, 8);
const Translator msti_reverse = REVERSE(msti_info_logical_res_xlate, 8, 12);
const Translator esi_key = FORWARD(velox_esi_info_type_xlate_key, 8, 7);
const Translator esi_result = FORWARD(velox_esi_info_type_xlate_result, 9, 8);

// The two forms of the way back. That of the ESI clears 8 bytes and touches no more.
Translator reverse_with(const char* name, std::size_t logical, const Bytes& logical_key) {
    return reverse_by_key(name, esi_info_logical_res_xlate, 8, logical, logical_key);
}
const Translator esi_reverse = reverse_with("esi_info_logical_res_xlate of an ESI key", 8, esi_logical_key);
const Translator esi_reverse_into_12 =
    reverse_with("esi_info_logical_res_xlate of an ESI key into 12 bytes", 12, esi_logical_key);
const Translator esi_reverse_of_msti = reverse_with("esi_info_logical_res_xlate of an MSTI key", 12, msti_logical_key);

Reply msti_key_model(Bytes& in, Bytes& out) {
    static const Rows rows{"P0-6 = 0", "P0-3 = L0-3", "P4-5 = 0"};
    rows.apply(in, out);
    out[6] = static_cast<std::uint8_t>(in[4] + 1);
    return {.length = 7};
}

Reply msti_result_model(Bytes& in, Bytes& out) {
    static const Rows rows{"P0-7 = 0", "P0 = 0x11", "P0.7 = L4.0", "P0.6 = L4.1", "P0.5 = L4.2", "P1 = L8"};
    rows.apply(in, out);
    return {.length = 8};
}

Reply msti_reverse_model(Bytes& in, Bytes& out) {
    static const Rows rows{"L0-11 = 0", "L4.0 = P0.7", "L4.1 = P0.6", "L4.2 = P0.5", "L8 = P1"};
    rows.apply(in, out);
    return {};
}

Reply esi_key_model(Bytes& in, Bytes& out) {
    if (in[7] != 0xff) {
        return msti_key_model(in, out);
    }
    static const Rows rows{"P0-6 = 0", "P0-2 = L0-2", "P3 = L4", "P4 = L5", "P5.3-0 = L6.3-0", "P6 = 0"};
    rows.apply(in, out);
    return {.length = 7};
}

Reply esi_result_model(Bytes& in, Bytes& out) {
    if (in[0] == 0) {
        return msti_result_model(in, out);
    }
    static const Rows rows{"P0-7 = 0", "P0 = 0x11", "P1 = 0", "P2-5 = L4-7"};
    rows.apply(in, out);
    return {.length = 8};
}

Reply esi_reverse_model(Bytes& in, Bytes& out) {
    static const Rows rows{"L0-7 = 0", "L4-7 = P2-5", "L1.0 = P0.0"};
    rows.apply(in, out);
    return {};
}

const support::Models models{{msti_key, msti_key_model},
                             {msti_result, msti_result_model},
                             {msti_reverse, msti_reverse_model},
                             {esi_key, esi_key_model},
                             {esi_result, esi_result_model}};
const support::Models reverse_models{"esi_info_logical_res_xlate", [](std::size_t, std::uint32_t last_of_key) {
                                         Bytes logical_key(8, 0x3c);
                                         logical_key.back() = static_cast<std::uint8_t>(last_of_key);
                                         return support::Modelled{
                                             reverse_with("esi_info_logical_res_xlate", 12, logical_key),
                                             last_of_key == 0xff ? esi_reverse_model : msti_reverse_model};
                                     }};

// ---------------------------------------------------------------------------------------------------------------------
// MSTI form

TEST(MstiInfoKey, CarriesItsFieldsAndNothingElse) {
    walk(msti_key, msti_key_model, patterns(5));
    check_random(msti_key, msti_key_model);
}

TEST(MstiInfoKey, AddsOneToItsLastByteWithWrapAround) {
    const Outcome outcome = translate(msti_key, bytes("01 02 03 04 05"), Bytes(7, 0xff));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 7U);
    EXPECT_EQ(hex(outcome.out), "01 02 03 04 00 00 06");
    EXPECT_EQ(hex(translate(msti_key, bytes("01 02 03 04 ff")).out), "01 02 03 04 00 00 00");
    EXPECT_EQ(hex(translate(msti_key, bytes("01 02 03 04 fe")).out), "01 02 03 04 00 00 ff");
    EXPECT_EQ(hex(translate(msti_key, bytes("01 02 03 04 00")).out), "01 02 03 04 00 00 01");
}

TEST(MstiInfoResult, CarriesItsFieldsAndNothingElse) {
    walk(msti_result, msti_result_model, patterns(9));
    check_random(msti_result, msti_result_model);
}

TEST(MstiInfoResult, PutsThreeFlagsIntoTheHeader) {
    const Bytes zeros(9);
    EXPECT_EQ(changes(msti_result, zeros, "L4.0"), "P0.7");
    EXPECT_EQ(changes(msti_result, zeros, "L4.1"), "P0.6");
    EXPECT_EQ(changes(msti_result, zeros, "L4.2"), "P0.5");
    expect_not_carried(msti_result, zeros, {"L0-3", "L4.7-3", "L5-7"});
    const Outcome outcome = translate(msti_result, bytes("01 02 03 04 05 06 07 08 09"), Bytes(8, 0xff));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 8U);
    EXPECT_EQ(hex(outcome.out), "b1 09 00 00 00 00 00 00");
}

TEST(MstiInfoReverse, RestoresItsFieldsAndNothingElse) {
    walk(msti_reverse, msti_reverse_model, patterns(8));
    check_random(msti_reverse, msti_reverse_model);
    const Outcome outcome = translate(msti_reverse, bytes("b1 09 ff ff ff ff ff ff"), Bytes(12, 0xff));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, std::nullopt);
    EXPECT_EQ(hex(outcome.out), "00 00 00 00 05 00 00 00 09 00 00 00");
}

// ---------------------------------------------------------------------------------------------------------------------
// ESI form and the choice between the two

TEST(EsiInfoKey, CarriesTheFieldsOfItsFormAndNothingElse) {
    for (const std::uint8_t selector : Bytes{0xff, 0x00, 0xfe, 0x7f}) {
        for (Bytes base : patterns(8)) {
            base[7] = selector;
            walk(esi_key, esi_key_model, base);
        }
    }
    check_random(esi_key, esi_key_model);
    check_random(esi_key, esi_key_model, 1000, [](Bytes& in) { in[7] = 0xff; });
}

TEST(EsiInfoKey, IsOfTheEsiFormWhereL7Is0xff) {
    const Outcome outcome = translate(esi_key, bytes("00 01 02 03 de bc fa ff"), Bytes(7, 0xff));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 7U);
    EXPECT_EQ(hex(outcome.out), "00 01 02 de bc 0a 00");
    expect_not_carried(esi_key, esi_logical_key, {"L3", "L6.7-4"});
}

TEST(EsiInfoKey, IsTheMstiKeyOtherwise) {
    for (const char* selector : {"00", "01", "7f", "fe", "ef"}) {
        Bytes in = bytes("00 01 02 03 ff bc fa 00");
        in[7] = bytes(selector)[0];
        const Outcome outcome = translate(esi_key, in, Bytes(7, 0xff));
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(outcome.length, 7U);
        EXPECT_EQ(hex(outcome.out), "00 01 02 03 00 00 00") << selector;
    }
}

TEST(EsiInfoResult, CarriesTheFieldsOfItsFormAndNothingElse) {
    for (const std::uint8_t selector : Bytes{0x00, 0x01, 0x80, 0xff}) {
        for (Bytes base : patterns(9)) {
            base[0] = selector;
            walk(esi_result, esi_result_model, base);
        }
    }
    check_random(esi_result, esi_result_model);
    check_random(esi_result, esi_result_model, 1000, [](Bytes& in) { in[0] = 0; });
}

TEST(EsiInfoResult, IsOfTheEsiFormWhereAnyBitOfL0IsSet) {
    for (const std::uint8_t selector : Bytes{0x01, 0x02, 0x10, 0x80, 0xff}) {
        Bytes in = counting(9);
        in[0] = selector;
        const Outcome outcome = translate(esi_result, in, Bytes(8, 0xff));
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(outcome.length, 8U);
        EXPECT_EQ(hex(outcome.out), "11 00 04 05 06 07 00 00") << int{selector};
    }
}

TEST(EsiInfoResult, IsTheMstiResultWhereL0IsZero) {
    const Outcome outcome = translate(esi_result, bytes("00 01 02 03 07 05 06 07 08"), Bytes(8, 0xff));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 8U);
    EXPECT_EQ(hex(outcome.out), "f1 08 00 00 00 00 00 00");
}

TEST(EsiInfoReverse, RestoresTheFieldsOfItsFormAndNothingElse) {
    for (const Translator& translator : {esi_reverse, esi_reverse_into_12}) {
        walk(translator, esi_reverse_model, patterns(8));
        check_random(translator, esi_reverse_model);
    }
    walk(esi_reverse_of_msti, msti_reverse_model, patterns(8));
    check_random(esi_reverse_of_msti, msti_reverse_model);
}

TEST(EsiInfoReverse, OfAnEsiKeyReadsTheHeadersLowBitIntoL1_0) {
    const Outcome outcome = translate(esi_reverse, bytes("11 01 02 03 04 05 06 07"), Bytes(8, 0xff));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, std::nullopt);
    EXPECT_EQ(hex(outcome.out), "00 01 00 00 02 03 04 05");
    EXPECT_EQ(changes(esi_reverse, Bytes(8), "P0.0"), "L1.0");
    expect_not_carried(esi_reverse, Bytes(8), {"P0.7-1", "P1", "P6-7"});
}

TEST(EsiInfoReverse, OfAnEsiKeyLeavesWhatLiesBehindEightBytes) {
    for (const std::uint8_t left : Bytes{0x00, 0x5a, 0xff}) {
        const Bytes out = translate(esi_reverse_into_12, bytes("11 01 02 03 04 05 06 07"), Bytes(12, left)).out;
        EXPECT_EQ(hex(Bytes(out.begin(), out.begin() + 8)), "00 01 00 00 02 03 04 05");
        EXPECT_EQ(Bytes(out.begin() + 8, out.end()), Bytes(4, left));
    }
}

TEST(EsiInfoReverse, TakesItsFormFromByte7OfTheKeyAlone) {
    const Bytes physical = bytes("f1 01 02 03 04 05 06 07");
    const auto back = [&physical](const char* logical_key) {
        const Outcome outcome = translate(reverse_with("esi_info_logical_res_xlate", 12, bytes(logical_key)), physical);
        EXPECT_EQ(outcome.status, 0);
        return hex(outcome.out);
    };
    const char* const esi = "00 01 00 00 02 03 04 05 00 00 00 00";
    const char* const msti = "00 00 00 00 07 00 00 00 01 00 00 00";
    EXPECT_EQ(back("00 00 00 00 00 00 00 ff"), esi);
    EXPECT_EQ(back("ff ff ff ff ff ff ff ff"), esi);
    EXPECT_EQ(back("00 00 00 00 00 00 00 00"), msti);
    EXPECT_EQ(back("ff ff ff ff ff ff ff 00"), msti);
    EXPECT_EQ(back("ff ff ff ff ff ff ff fe"), msti);
    EXPECT_EQ(back("ff ff ff ff ff ff ff 7f"), msti);
}

// ---------------------------------------------------------------------------------------------------------------------
// There and back

TEST(EsiInfo, ComesBackWithItsSelectorInL1_0) {
    const Bytes out = translate(esi_result, bytes("01 00 00 00 04 05 06 07 08")).out;
    EXPECT_EQ(hex(translate(esi_reverse, out).out), "00 01 00 00 04 05 06 07");
}

TEST(EsiInfo, OfTheEsiFormReadWithAnMstiKeyComesBackWrong) {
    // The result and the way back select by different bytes.
    const Bytes out = translate(esi_result, bytes("01 00 00 00 04 05 06 07 08")).out;
    EXPECT_EQ(hex(translate(esi_reverse_of_msti, out).out), "00 00 00 00 00 00 00 00 00 00 00 00");
}

TEST(EsiInfo, OfTheMstiFormComesBackAsItWas) {
    const Bytes out = translate(esi_result, bytes("00 01 02 03 06 05 06 07 08")).out;
    EXPECT_EQ(hex(translate(esi_reverse_of_msti, out).out), "00 00 00 00 06 00 00 00 08 00 00 00");
}

TEST(EsiInfo, IgnoresTheLengthArgument) {
    for (const Translator& translator : {msti_key, msti_result, msti_reverse, esi_key, esi_result, esi_reverse,
                                         esi_reverse_into_12, esi_reverse_of_msti}) {
        for (const std::uint8_t first : Bytes{0x00, 0xf8}) {  // both forms of key and result
            const Bytes in = counting(translator.in_size, first);
            expect_length_ignored(translator, in);
        }
    }
}

TEST(EsiInfo, IsTable92) {
    EXPECT_EQ(l2p_ucode_func_table[92].key, &velox_esi_info_type_xlate_key);
    EXPECT_EQ(l2p_ucode_func_table[92].result, &velox_esi_info_type_xlate_result);
    // The entry has the common type. A cast by way of void (*)() is the one that compilers do not warn about.
    EXPECT_EQ(p2l_ucode_func_table[92],
              reinterpret_cast<npxlate_reverse_fn*>(reinterpret_cast<void (*)()>(&esi_info_logical_res_xlate)));
}

TEST(EsiInfo, ReadsBackThroughItsDispatchEntryWithTheKey) {
    const auto entry =
        reinterpret_cast<npxlate_reverse_by_key_fn*>(reinterpret_cast<void (*)()>(p2l_ucode_func_table[92]));
    const Translator dispatched = reverse_by_key("table 92", entry, 8, 8, esi_logical_key);
    EXPECT_EQ(hex(translate(dispatched, bytes("11 00 04 05 06 07 00 00")).out), "00 01 00 00 04 05 06 07");
}

}  // namespace
