#include <gtest/gtest.h>
#include <npxlate/npxlate.h>

#include "support/harness.h"
#include "support/models.h"
#include "support/record.h"
#include "support/rows.h"

namespace {

using namespace support;

const Translator key = FORWARD(sr_te_lspa_key, 3, 3);
const Translator result = FORWARD(sr_te_lspa_result, 52, 32);

Reply key_model(Bytes& in, Bytes& out) {
    const Rows rows{"P0-2 = L0-2"};
    rows.apply(in, out);
    return Reply{.status = 0, .length = 3};
}

const Rows first_label{"P0-31 = 0", "P1 = 0x20", "P2-4 = label L12-15 flag 0"};

Reply result_model(Bytes& in, Bytes& out) {
    first_label.apply(in, out);
    if (in[2] != 0) {
        set_bit(out, 4, 0);
        for (std::size_t k = 0; k <= 8; ++k) {
            const bool more = in[3 + k] != 0;
            put_label(out, 5 + 3 * k, little(in, 16 + 4 * k, 4), more);
            if (!more) {
                break;
            }
        }
    }
    if (in[8] != 0) {
        set_bit(out, 1, 7);
    }
    return Reply{.status = 0, .length = 32};
}

// A record of `pattern` in which `count` labels follow one another.
Bytes chain(Bytes pattern, std::size_t count) {
    for (std::size_t i = 0; i < 10; ++i) {
        pattern[2 + i] = i + 1 < count ? 0x10 : 0;
    }
    return pattern;
}

// Ten labels, 0x11111 to 0xaaaaa, with bits set above each.
const Bytes ten_labels = with(Bytes(52), {{12, "11 11 f1 ff"},
                                          {16, "22 22 f2 ff 33 33 f3 ff 44 44 f4 ff 55 55 f5 ff 66 66 f6 ff"},
                                          {36, "77 77 f7 ff 88 88 f8 ff 99 99 f9 ff aa aa fa ff"}});

const support::Models models{{key, key_model}, {result, result_model}};

TEST(SrTeLspAttributeKey, KeepsItsThreeBytes) {
    const Outcome outcome = translate(key, bytes("12 34 56"));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 3U);
    EXPECT_EQ(hex(outcome.out), "12 34 56");
    walk(key, key_model, {Bytes(3), Bytes(3, 0xff), counting(3, 0x71)});
    check_random(key, key_model, 200);
    expect_length_ignored(key, bytes("12 34 56"));
}

TEST(SrTeLspAttribute, EveryBitOfEveryChainLandsWhereItBelongs) {
    walk(result, result_model, {Bytes(52), Bytes(52, 0xff), counting(52, 0x81)});
    for (std::size_t count = 1; count <= 11; ++count) {
        walk(result, result_model, {chain(Bytes(52), count), chain(counting(52, 0x81), count)});
    }
}

TEST(SrTeLspAttribute, RandomChainsOfEveryLengthAgree) {
    check_random(result, result_model);
    for (std::size_t count = 1; count <= 11; ++count) {
        check_random(result, result_model, 200, [count](Bytes& in) { in = chain(in, count); });
    }
}

TEST(SrTeLspAttribute, OfZerosHasNoHeaderByte) {
    const Outcome outcome = translate(result, Bytes(52));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 32U);
    EXPECT_EQ(hex(outcome.out), hex(with(Bytes(32), {{1, "20"}})));
}

TEST(SrTeLspAttribute, OfOneLabelIgnoresAllOthers) {
    const Bytes in = with(ten_labels, {{3, "01 01"}});
    EXPECT_EQ(hex(translate(result, in).out), hex(with(Bytes(32), {{0, "00 20 11 11 10"}})));
    const Bytes marked = with(in, {{8, "80"}});
    EXPECT_EQ(hex(translate(result, marked).out), hex(with(Bytes(32), {{0, "00 a0 11 11 10"}})));
}

TEST(SrTeLspAttribute, OfTwoLabelsFlagsTheFirst) {
    const Bytes in = with(ten_labels, {{2, "01 00 01"}});
    EXPECT_EQ(hex(translate(result, in).out), hex(with(Bytes(32), {{0, "00 20 11 11 11 22 22 20"}})));
}

TEST(SrTeLspAttribute, OfThreeLabelsFlagsAllButTheLast) {
    const Bytes in = with(ten_labels, {{2, "01 80 00 01"}});
    EXPECT_EQ(hex(translate(result, in).out), hex(with(Bytes(32), {{0, "00 20 11 11 11 22 22 21 33 33 30"}})));
}

TEST(SrTeLspAttribute, OfTenLabelsFlagsTheLastOnlyWhenMoreWouldFollow) {
    const Bytes ended = with(ten_labels, {{2, "01 02 04 08 10 20 40 80 ff 00"}});
    EXPECT_EQ(hex(translate(result, ended).out),
              "00 a0 11 11 11 22 22 21 33 33 31 44 44 41 55 55 51 66 66 61 77 77 71 88 88 81 99 99 91 aa aa a0");
    const Bytes open = with(ended, {{11, "01"}});
    EXPECT_EQ(hex(translate(result, open).out),
              "00 a0 11 11 11 22 22 21 33 33 31 44 44 41 55 55 51 66 66 61 77 77 71 88 88 81 99 99 91 aa aa a1");
}

TEST(SrTeLspAttribute, ByteEightIsMarkedEvenWhereTheChainHasEnded) {
    EXPECT_EQ(changes(result, with(Bytes(52), {{2, "01 00"}}), "L8.5"), "P1.7");
    EXPECT_EQ(changes(result, Bytes(52), "L8.0"), "P1.7");
    expect_not_carried(result, Bytes(52), {"L3-7", "L9-11"});
}

TEST(SrTeLspAttribute, DropsWhatIsNeitherLabelNorMoreFollows) {
    const Bytes base = chain(counting(52, 0x81), 11);
    expect_not_carried(result, base, {"L0-1",    "L14.7-4", "L15",     "L18.7-4", "L19",     "L22.7-4", "L23",
                                      "L26.7-4", "L27",     "L30.7-4", "L31",     "L34.7-4", "L35",     "L38.7-4",
                                      "L39",     "L42.7-4", "L43",     "L46.7-4", "L47",     "L50.7-4", "L51"});
    EXPECT_EQ(changes(result, base, "L48.0"), "P31.4");
    EXPECT_EQ(changes(result, base, "L50.3"), "P29.7");
}

TEST(SrTeLspAttribute, MindsNoLength) { expect_length_ignored(result, chain(counting(52, 0x81), 11)); }

}  // namespace
