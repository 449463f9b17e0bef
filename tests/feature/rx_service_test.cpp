// The receive services: table 88, their configuration; table 89, external services; and, by name, their nodes.
#include <gtest/gtest.h>

#include <npxlate/npxlate.h>

#include <array>
#include <utility>

#include "support/harness.h"
#include "support/models.h"
#include "support/record.h"
#include "support/rows.h"

namespace {

using namespace support;

const std::array short_keys{
    FORWARD(rx_service_config_xlate_key, 8, 8),
    FORWARD(rx_service_node_xlate_key, 8, 8),
    FORWARD(rx_service_node_xlate_hash_key, 8, 8),
};
const Translator external_key = FORWARD(rx_service_external_xlate_key, 32, 32);
const std::array results{
    FORWARD(rx_service_config_xlate_result, 32, 32),
    FORWARD(rx_service_external_xlate_result, 32, 32),
    FORWARD(rx_service_node_xlate_result, 32, 32),
};

Reply short_key_model(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0-3 = L0-3",
        "P4-7 = L4-7",
    };
    rows.apply(in, out);
    return {.length = 8};
}

Reply external_key_model(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0-31 = 0",
        "P0 = L0",
        "P1 = L1",
        "P2-31 = L2-31",
    };
    rows.apply(in, out);
    return {.length = 32};
}

Reply result_model(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0-31 = 0",
        "P0 = 0x11",
        "P0.7-5 = L0.7-5",
        "P1-31 = L1-31",
    };
    rows.apply(in, out);
    return {.length = 32};
}

const support::Models models{{external_key, external_key_model}, {short_keys[0], short_key_model},
                             {short_keys[1], short_key_model},   {short_keys[2], short_key_model},
                             {results[0], result_model},         {results[1], result_model},
                             {results[2], result_model}};

TEST(RxService, CarriesWhatItsPositionsSay) {
    for (const Translator& key : short_keys) {
        walk(key, short_key_model, {Bytes(8), Bytes(8, 0xff), counting(8, 0x91)});
        check_random(key, short_key_model);
    }
    walk(external_key, external_key_model, {Bytes(32), Bytes(32, 0xff), counting(32, 0x91)});
    check_random(external_key, external_key_model);
    for (const Translator& result : results) {
        walk(result, result_model, {Bytes(32), Bytes(32, 0xff), counting(32), counting(32, 0x91)});
        check_random(result, result_model);
    }
}

TEST(RxService, CopiesItsKeysInTheirOwnByteOrder) {
    for (const Translator& key : short_keys) {
        const Outcome outcome = translate(key, bytes("11 22 33 44 55 66 77 88"), Bytes(8, 0xff));
        EXPECT_EQ(outcome.status, 0) << key.name;
        EXPECT_EQ(outcome.length, 8U) << key.name;
        EXPECT_EQ(hex(outcome.out), "11 22 33 44 55 66 77 88") << key.name;
    }
    const Outcome outcome = translate(external_key, counting(32, 0xe0), Bytes(32, 0xff));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 32U);
    EXPECT_EQ(hex(outcome.out),
              "e0 e1 e2 e3 e4 e5 e6 e7 e8 e9 ea eb ec ed ee ef f0 f1 f2 f3 "
              "f4 f5 f6 f7 f8 f9 fa fb fc fd fe ff");
}

TEST(RxService, PutsTheHeaderUnderThreeFlags) {
    for (const Translator& result : results) {
        const Outcome ones = translate(result, Bytes(32, 0xff));
        EXPECT_EQ(ones.status, 0) << result.name;
        EXPECT_EQ(ones.length, 32U) << result.name;
        EXPECT_EQ(hex(ones.out),
                  "f1 ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff "
                  "ff ff ff ff ff ff ff ff ff ff ff ff")
            << result.name;
        EXPECT_EQ(hex(translate(result, Bytes(32), Bytes(32, 0xff)).out),
                  "11 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
                  "00 00 00 00 00 00 00 00 00 00 00 00")
            << result.name;
        EXPECT_EQ(hex(translate(result, counting(32, 0x4e)).out),
                  "51 4f 50 51 52 53 54 55 56 57 58 59 5a 5b 5c 5d 5e 5f 60 61 "
                  "62 63 64 65 66 67 68 69 6a 6b 6c 6d")
            << result.name;
    }
}

TEST(RxService, CarriesThreeBitsOfTheFirstByteOfTheResult) {
    for (const Translator& result : results) {
        for (const auto& [from, to] :
             {std::pair{"L0.7", "P0.7"}, std::pair{"L0.6", "P0.6"}, std::pair{"L0.5", "P0.5"}, std::pair{"L0.4", ""},
              std::pair{"L0.3", ""}, std::pair{"L0.2", ""}, std::pair{"L0.1", ""}, std::pair{"L0.0", ""},
              std::pair{"L1.0", "P1.0"}, std::pair{"L31.7", "P31.7"}}) {
            EXPECT_EQ(changes(result, counting(32, 0x20), from), to) << result.name << " " << from;
        }
    }
}

TEST(RxService, IgnoresTheLength) {
    const auto ignores_length = [](const Translator& translator) {
        const Bytes in = counting(translator.in_size, 0x33);
        expect_length_ignored(translator, in);
    };
    for (const Translator& key : short_keys) {
        ignores_length(key);
    }
    ignores_length(external_key);
    for (const Translator& result : results) {
        ignores_length(result);
    }
}

TEST(RxService, IsTables88And89) {
    EXPECT_EQ(l2p_ucode_func_table[88].key, &rx_service_config_xlate_key);
    EXPECT_EQ(l2p_ucode_func_table[88].result, &rx_service_config_xlate_result);
    EXPECT_EQ(p2l_ucode_func_table[88], &generic_xlate_logical_result);
    EXPECT_EQ(l2p_ucode_func_table[89].key, &rx_service_external_xlate_key);
    EXPECT_EQ(l2p_ucode_func_table[89].result, &rx_service_external_xlate_result);
    EXPECT_EQ(p2l_ucode_func_table[89], &generic_xlate_logical_result);
}

}  // namespace
