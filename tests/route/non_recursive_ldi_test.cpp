#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <npxlate/npxlate.h>

#include "route/route_records.h"
#include "support/harness.h"
#include "support/models.h"
#include "support/record.h"
#include "support/rows.h"

namespace {

using namespace support;

const Translator key = FORWARD(nr_ldi_entry_st_xlate_key, 3, 3);
const Translator result = FORWARD(nr_ldi_entry_st_result, 168, 32);
const Translator back = REVERSE(nr_ldi_entry_st_logical_xlate_result, 32, 168);

Reply key_model(Bytes& in, Bytes& out) {
    const Rows rows{"P0-2 = L0-2"};
    rows.apply(in, out);
    return Reply{.status = 0, .length = 3};
}

const Rows label_array{
    "P2-4 = label L72-75 flag L76.0",      "P5-7 = label L77-80 flag L81.0",      "P8-10 = label L82-85 flag L86.0",
    "P11-13 = label L87-90 flag L91.0",    "P14-16 = label L92-95 flag L96.0",    "P17-19 = label L97-100 flag L101.0",
    "P20-22 = label L102-105 flag L106.0", "P23-25 = label L107-110 flag L111.0", "P26-28 = label L112-115 flag L116.0",
    "P29-31 = label L117-120 flag L121.0",
};
const Rows flags{"P0.5 = L2.3", "P1.4 = L0.0", "P1.3 = L1.1", "P1.2 = L2.5", "P1.1 = 1"};
const Rows more_flags{
    "P1.7 = L0.7",   "P2.0 = L0.5", "P0.6 = L0.5", "P2.4 = L3.0", "P2.7 = L1.4",
    "P2.6 = L156.0", "P2.2 = L1.5", "P2.3 = L3.1", "P3 = L4",
};
const Rows hop_form{"P0.7 = L1.7", "P4-6 = L56-58", "P7-9 = L60-62"};
const Rows four_triples{"P4-6 = L36-38", "P7-9 = L40-42", "P10-12 = L44-46", "P13-15 = L48-50"};
const Rows protected_path{
    "P4 = L36",
    "P5 = L37",
    "P2.1 = L40.2",
    "P6.0 = L40.0",
    "P6.1 = L40.3",
    "P6.2 = L40.1",
    "P10-12 = label L28-31 flag L0.7",
    "P7-9 = label L32-35 flag L1.0",
    "P25-27 = label L24-27 flag L0.6",
};
const Rows backup_triple{"P10-12 = L144-146"};
const Rows wide_next_hop{
    "P4-7 = swap L36-39", "P8 = L42", "P9 = L41", "P10 = L40", "P11 = L44", "P12 = L45", "P25-28 = L46-49",
};
const Rows plain{"P4 = L36", "P5 = L37", "P6 = L38", "P7-9 = L40-42"};
const Rows plain_backups{"P10-12 = L152-154", "P13-15 = L148-150"};
const Rows first_stack_label{"P16-18 = label L8-11 flag L0.0"};
const Rows second_stack_label{"P13-15 = label L12-15 flag L0.1"};
const Rows third_stack_label{"P25-27 = label L16-19 flag 1"};
// The three bytes are reversed and then moved up by a nibble, which leaves the nibbles interleaved.
const Rows shifted_value{
    "P10.7-4 = L22.3-0", "P10.3-0 = 1",       "P11.7-4 = L21.3-0", "P11.3-0 = L22.7-4",
    "P12.7-4 = L20.3-0", "P12.3-0 = L21.7-4", "P15.3-1 = 0",       "P15.0 = 1",
};
const Rows extra_triple{"P13-15 = L160-162"};
const Rows last_triple{"P28-30 = L164-166"};
const Rows split_value{"P19 = L135", "P20 = L134", "P21 = L133"};
const Rows split_value_rest{"P31 = L132"};
const Rows common_triple{"P22-24 = L124-126"};

const Rows rebuilt{"P0-31 = 0", "P0 = 0x91", "P3-6 = swap L132-135", "P10 = L136"};
const Rows rebuilt_by_bytes{"P11 = 0x11", "P11.2 = L1.5", "P12 = L36", "P13 = L37"};
const Rows rebuilt_marks{"P11.5 = L2.1", "P11.3 = L2.2", "P14-16 = 0"};
const Rows rebuilt_triple{"P14-16 = L144-146"};
const Rows rebuilt_rest{
    "P17-19 = label L12-15 flag L0.1",
    "P11.1 = not L0.1",
    "P26-28 = label L16-19 flag L0.2",
    "P29-31 = label L8-11 flag L0.0",
    "P7-9 = L44-46",
    "P23-25 = L48-50",
    "P20-22 = L124-126",
};

void apply_recursive_rebuild(const Bytes& in, Bytes& out) {
    rebuilt.apply(in, out);
    if (bit(in, 2, 0)) {
        rebuilt_by_bytes.apply(in, out);
    } else {
        out[11] = 1;
        put_big(out, 12, 2, route::ranged_queue(little(in, 36, 2), in[40]));
        set_bit(out, 11, 2, bit(in, 1, 6) && bit(in, 1, 5));
    }
    rebuilt_marks.apply(in, out);
    if (bit(out, 11, 2)) {
        rebuilt_triple.apply(in, out);
    }
    rebuilt_rest.apply(in, out);
}

void apply_protected_path(const Bytes& in, Bytes& out) {
    protected_path.apply(in, out);
    if (bit(in, 0, 0) || bit(in, 0, 1) || bit(in, 0, 7) || bit(in, 1, 0)) {
        set_bit(out, 2, 2, false);
    } else if (bit(in, 1, 5)) {
        backup_triple.apply(in, out);
    }
}

void apply_wide_next_hop(const Bytes& in, Bytes& out) {
    wide_next_hop.apply(in, out);
    put_little(out, 29, 3, (little(in, 52, 4) & 0xffffff) | 0x300000);
}

void apply_plain(const Bytes& in, Bytes& out) {
    plain.apply(in, out);
    (bit(in, 2, 5) ? plain_backups : backup_triple).apply(in, out);
}

void apply_stack_labels(const Bytes& in, Bytes& out) {
    first_stack_label.apply(in, out);
    if (bit(in, 0, 4)) {
        set_bit(out, 2, 5);
        set_bit(out, 1, 6);
        set_bit(out, 2, 2, false);
        const bool kept = bit(out, 15, 0);
        put_label(out, 13, little(in, 12, 4), kept);
        set_bit(out, 15, 2);
        third_stack_label.apply(in, out);
        if (bit(in, 0, 3)) {
            shifted_value.apply(in, out);
        } else {
            fill(out, 10, 12);
        }
    } else if (!bit(in, 2, 5)) {
        second_stack_label.apply(in, out);
    }
}

Reply result_model(Bytes& in, Bytes& out) {
    const Reply done{.status = 0, .length = 32};
    const bool is_label_array = bit(in, 2, 7);

    fill(out, 0, 31);
    if (is_label_array) {
        label_array.apply(in, out);
    }
    if (in[106] != 0) {
        set_bit(out, 1, 7);
    }
    out[0] |= 0x11;
    set_bit(out, 1, 0, bit(in, 2, 6) || bit(in, 1, 3));
    set_bit(out, 1, 6, bit(in, 0, 1) || is_label_array);
    set_bit(out, 1, 5, bit(in, 2, 4) || is_label_array);
    flags.apply(in, out);
    if (is_label_array) {
        return done;
    }

    more_flags.apply(in, out);
    if (bit(in, 2, 3)) {
        hop_form.apply(in, out);
        out[3] = route::hop_byte(in[64]);
        return done;
    }
    if (bit(in, 2, 4)) {
        four_triples.apply(in, out);
        return done;
    }
    if (bit(in, 1, 1)) {
        apply_protected_path(in, out);
    } else if (bit(in, 1, 3)) {
        apply_wide_next_hop(in, out);
    } else {
        apply_plain(in, out);
    }
    apply_stack_labels(in, out);

    if (bit(out, 2, 6)) {
        if (bit(in, 156, 0)) {
            extra_triple.apply(in, out);
        }
        if (bit(in, 156, 1)) {
            last_triple.apply(in, out);
        }
    }
    split_value.apply(in, out);
    if (!bit(in, 1, 3)) {
        split_value_rest.apply(in, out);
    }
    common_triple.apply(in, out);
    if (bit(in, 1, 7)) {
        apply_recursive_rebuild(in, out);
    }
    return done;
}

const Rows restored{
    "L0.2 = P1.5", "L1.1 = P1.3", "L0.5 = P2.0", "L4 = P3", "L8-11 = label P16-18", "L12-15 = label P13-15",
};
const Rows protected_restored{
    "L28-31 = label P10-12", "L32-35 = label P7-9", "L36 = P4",     "L37 = P5",     "L38-39 = 0",
    "L40.0 = P6.0",          "L40.1 = P6.2",        "L40.2 = P2.1", "L40.3 = P6.1",
};
const Rows others_restored{"L36-38 = P4-6", "L40-42 = P7-9", "L144-146 = P10-12"};
const Rows values_restored{"L124 = P22", "L125 = P23", "L126 = P24", "L132 = P31",
                           "L133 = P19", "L134 = P20", "L135 = P21"};

Reply back_model(Bytes& in, Bytes& out) {
    fill(out, 0, 167);
    restored.apply(in, out);
    set_bit(out, 0, 0, bit(in, 1, 4) || bit(in, 18, 0));
    set_bit(out, 0, 1, bit(in, 1, 6) || bit(in, 15, 0));
    set_bit(out, 0, 7, bit(in, 1, 7) || bit(in, 12, 0));
    (bit(in, 1, 3) ? protected_restored : others_restored).apply(in, out);
    values_restored.apply(in, out);
    return Reply{};
}

// What chooses the form of an entry, in the order in which it is looked at.
enum class Form { labels, hops, triples, protection, wide, simple };
constexpr Form all_forms[] = {Form::labels, Form::hops, Form::triples, Form::protection, Form::wide, Form::simple};

// Makes the record one of the given form; the bits of the forms looked at later stay as they are.
void shape(Bytes& in, Form form) {
    constexpr std::pair<std::size_t, unsigned> bits_of[] = {{2, 7}, {2, 3}, {2, 4}, {1, 1}, {1, 3}};
    for (std::size_t i = 0; i < std::size(bits_of); ++i) {
        const auto [byte, which] = bits_of[i];
        if (i < static_cast<std::size_t>(form)) {
            set_bit(in, byte, which, false);
        } else if (i == static_cast<std::size_t>(form)) {
            set_bit(in, byte, which);
        }
    }
}

Bytes shaped(Bytes in, Form form) {
    shape(in, form);
    return in;
}

// What every form but the first three carries on top of its own bytes.
const Bytes plain_entry = with(Bytes(168), {{0, "01 00 00 00 33"},
                                            {8, "45 23 01 00 de bc 0a 00 21 43 05 00"},
                                            {36, "36 37 38 39 40 41 42 43 44 45 46 47 48 49 4a 4b 52 53 04 55"},
                                            {56, "56 57 58 59 5a 5b 5c 5d"},
                                            {124, "7c 7d 7e 7f"},
                                            {132, "44 33 22 11 88"},
                                            {144, "90 91 92 93 94 95 96 97 98 99 9a 9b"},
                                            {160, "a0 a1 a2 a3 a4 a5 a6 a7"}});

std::string translated(const Bytes& in) { return hex(translate(result, in).out); }

const support::Models models{{key, key_model}, {result, result_model}, {back, back_model}};

// ---- Key ----

TEST(NonRecursiveLdiKey, KeepsItsThreeBytes) {
    const Outcome outcome = translate(key, bytes("12 34 56"));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 3U);
    EXPECT_EQ(hex(outcome.out), "12 34 56");
    walk(key, key_model, {Bytes(3), Bytes(3, 0xff), counting(3, 0x71)});
    check_random(key, key_model, 200);
    expect_length_ignored(key, bytes("12 34 56"));
}

// ---- Result ----

TEST(NonRecursiveLdi, EveryBitOfEveryFormLandsWhereItBelongs) {
    for (const Form form : all_forms) {
        for (const Bytes& pattern : {Bytes(168), Bytes(168, 0xff), with(counting(168), {{0, "00 00 00"}})}) {
            walk(result, result_model, shaped(pattern, form));
        }
    }
}

TEST(NonRecursiveLdi, EveryBitUnderEveryOverlayLandsWhereItBelongs) {
    for (const Form form : {Form::protection, Form::wide, Form::simple}) {
        for (const char* overlay :
             {"10 00 00", "18 00 00", "10 20 20", "18 00 20", "00 80 00", "00 e0 00", "10 80 01"}) {
            walk(result, result_model, shaped(with(counting(168), {{0, overlay}, {156, "03"}}), form));
        }
    }
}

TEST(NonRecursiveLdi, RandomRecordsOfEveryFormAgree) {
    check_random(result, result_model, 2000);
    for (const Form form : all_forms) {
        for (const bool is_rebuilt : {false, true}) {
            check_random(result, result_model, 1000, [form, is_rebuilt](Bytes& in) {
                shape(in, form);
                set_bit(in, 1, 7, is_rebuilt);
                in[40] = static_cast<std::uint8_t>(in[40] & 0x0f);  // often a range that marks
            });
        }
    }
}

TEST(NonRecursiveLdi, OfZerosHoldsTheHeaderAndOneFlag) {
    const Outcome outcome = translate(result, Bytes(168));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, 32U);
    EXPECT_EQ(hex(outcome.out), hex(with(Bytes(32), {{0, "11 02"}})));
}

TEST(NonRecursiveLdi, LabelArrayHoldsTenLabelsAndNoFlagsOfItsOwn) {
    const Bytes in =
        with(Bytes(168), {{0, "20 30 80 03 33"},
                          {72, "11 11 01 00 01 22 22 f2 ff fe 33 33 03 00 01 44 44 04 00 00 55 55 05 00 01"},
                          {97, "66 66 06 00 00 77 77 07 00 01 88 88 08 00 00 99 99 09 00 01 aa aa 0a 00 00"},
                          {124, "7c 7d 7e"},
                          {132, "44 33 22 11"},
                          {156, "03"}});
    const Outcome outcome = translate(result, in);
    EXPECT_EQ(outcome.length, 32U);
    EXPECT_EQ(hex(outcome.out),
              "11 e2 11 11 11 22 22 20 33 33 31 44 44 40 55 55 51 66 66 60 77 77 71 88 88 80 99 99 91 aa aa a0");
}

TEST(NonRecursiveLdi, LabelArrayKeepsTheFlagsOfTheFirstBytes) {
    const Bytes base = with(Bytes(168), {{2, "80"}});
    EXPECT_EQ(translated(base), hex(with(Bytes(32), {{0, "11 62"}})));
    EXPECT_EQ(changes(result, base, "L0.0"), "P1.4");
    EXPECT_EQ(changes(result, base, "L0.1"), "");
    EXPECT_EQ(changes(result, base, "L1.1"), "P1.3");
    EXPECT_EQ(changes(result, base, "L1.3"), "P1.0");
    EXPECT_EQ(changes(result, base, "L2.3"), "P0.5");
    EXPECT_EQ(changes(result, base, "L2.4"), "");
    EXPECT_EQ(changes(result, base, "L2.5"), "P1.2");
    EXPECT_EQ(changes(result, base, "L2.6"), "P1.0");
    expect_not_carried(result, base,
                       {"L0.7-2", "L1.7-4", "L1.2", "L1.0", "L2.2-0", "L3-71", "L122-167", "L76.7-1", "L74.7-4", "L75",
                        "L120", "L121.7-1"});
}

TEST(NonRecursiveLdi, LabelArrayIsNeverRebuilt) {
    EXPECT_EQ(translated(with(Bytes(168), {{1, "80 80"}, {132, "44 33 22 11 88"}})),
              hex(with(Bytes(32), {{0, "11 62"}})));
}

TEST(NonRecursiveLdi, Byte106IsTestedWholeAndCountsOnlyInTheLabelArray) {
    const Bytes base = with(Bytes(168), {{2, "80"}});
    EXPECT_EQ(changes(result, base, "L106.0"), "P1.7 P22.0");
    EXPECT_EQ(changes(result, base, "L106.1"), "P1.7");
    EXPECT_EQ(changes(result, base, "L106.7"), "P1.7");
    for (const Form form : all_forms) {
        if (form != Form::labels) {
            expect_not_carried(result, shaped(Bytes(168), form), {"L106"});
        }
    }
}

TEST(NonRecursiveLdi, HopFormEndsAfterItsTwoTriples) {
    const Bytes in = with(plain_entry, {{0, "a0 80 08"}, {64, "41"}});
    EXPECT_EQ(translated(in), hex(with(Bytes(32), {{0, "f1 82 01 03 56 57 58 5a 5b 5c"}})));
}

TEST(NonRecursiveLdi, HopFormCountsItsOwnHops) {
    for (const auto& [count, hops] : std::vector<std::pair<const char*, int>>{
             {"00", 1}, {"01", 3}, {"05", 11}, {"40", 129}, {"41", 3}, {"ff", 3}}) {
        EXPECT_EQ(translate(result, with(Bytes(168), {{2, "08"}, {4, "77"}, {64, count}})).out[3], hops) << count;
    }
}

TEST(NonRecursiveLdi, FourTriplesEndTheEntry) {
    const Bytes in = with(plain_entry, {{0, "00 00 10"}});
    const std::string expected = hex(with(Bytes(32), {{0, "11 22 00 33 36 37 38 40 41 42 44 45 46 48 49 4a"}}));
    EXPECT_EQ(translated(in), expected);
    EXPECT_EQ(translated(with(in, {{1, "80"}})), expected);
}

TEST(NonRecursiveLdi, FormsAreTriedInTheirOrder) {
    EXPECT_EQ(translated(with(plain_entry, {{0, "00 0a 18"}})),
              hex(with(Bytes(32), {{0, "31 2b 00 01 56 57 58 5a 5b 5c"}})));
    EXPECT_EQ(translated(with(plain_entry, {{0, "00 0a 10"}})),
              hex(with(Bytes(32), {{0, "11 2b 00 33 36 37 38 40 41 42 44 45 46 48 49 4a"}})));
    // The protected path before the wide next hop, which still keeps P31.
    const Bytes out = translate(result, with(plain_entry, {{0, "00 0a 00"}})).out;
    EXPECT_EQ(hex({out.begin() + 4, out.begin() + 6}), "36 37");
    EXPECT_EQ(hex({out.begin() + 19, out.begin() + 22}), "11 22 33");
    EXPECT_EQ(out[31], 0x00);
}

// The labels of the protected path; L40 has its bits 0 and 2 set.
const Bytes protected_entry =
    with(plain_entry, {{0, "40 02 00 00 00"}, {24, "42 42 02 00 82 82 02 00 33 33 03 00"}, {40, "05"}});

TEST(NonRecursiveLdi, ProtectedPathHoldsThreeMoreLabels) {
    EXPECT_EQ(translated(protected_entry),
              "11 0a 02 00 36 37 01 33 33 30 28 28 20 ab cd e0 12 34 50 11 22 33 7c 7d 7e 24 24 21 00 00 00 44");
}

TEST(NonRecursiveLdi, ProtectedPathHandsOutTheBitsOfByte40) {
    EXPECT_EQ(changes(result, protected_entry, "L40.0"), "P6.0");
    EXPECT_EQ(changes(result, protected_entry, "L40.1"), "P6.2");
    EXPECT_EQ(changes(result, protected_entry, "L40.2"), "P2.1");
    EXPECT_EQ(changes(result, protected_entry, "L40.3"), "P6.1");
    EXPECT_EQ(carried(result, protected_entry, {"L40.7-4", "L38-39", "L41-71", "L4.0"}), "L4.0 ");
}

TEST(NonRecursiveLdi, ProtectedPathTakesTheBackupTripleUnlessALabelFlagIsSet) {
    EXPECT_EQ(translated(with(protected_entry, {{1, "22"}})),
              "11 0a 06 00 36 37 01 33 33 30 90 91 92 ab cd e0 12 34 50 11 22 33 7c 7d 7e 24 24 21 00 00 00 44");
    for (const auto& [flags_bytes, expected] : std::vector<std::pair<const char*, const char*>>{
             {"41 22", "11 1a 02 00 36 37 01 33 33 30 28 28 20 ab cd e0 12 34 51"},
             {"42 22", "11 4a 02 00 36 37 01 33 33 30 28 28 20 ab cd e1 12 34 50"},
             {"c0 22", "11 8a 02 00 36 37 01 33 33 30 28 28 21 ab cd e0 12 34 50"},
             {"40 23", "11 0a 02 00 36 37 01 33 33 31 28 28 20 ab cd e0 12 34 50"}}) {
        const Bytes out = translate(result, with(protected_entry, {{0, flags_bytes}})).out;
        EXPECT_EQ(hex({out.begin(), out.begin() + 19}), expected) << flags_bytes;
    }
}

TEST(NonRecursiveLdi, WideNextHopSpreadsOverTheRecord) {
    EXPECT_EQ(translated(with(plain_entry, {{0, "00 08 00 00 00"}})),
              "11 03 00 00 39 38 37 36 42 41 40 44 45 ab cd e0 12 34 50 11 22 33 7c 7d 7e 46 47 48 49 52 53 34");
}

TEST(NonRecursiveLdi, PlainEntryHoldsTwoTriplesABackupAndTwoLabels) {
    EXPECT_EQ(translated(plain_entry),
              "11 12 00 33 36 37 38 40 41 42 90 91 92 ab cd e0 12 34 51 11 22 33 7c 7d 7e 00 00 00 00 00 00 44");
}

TEST(NonRecursiveLdi, PlainEntryWithTwoBackupsHasNoSecondLabel) {
    EXPECT_EQ(translated(with(plain_entry, {{2, "20"}})),
              "11 16 00 33 36 37 38 40 41 42 98 99 9a 94 95 96 12 34 51 11 22 33 7c 7d 7e 00 00 00 00 00 00 44");
}

TEST(NonRecursiveLdi, ThirdLabelClearsTheBackupAndMarksTheSecondLabel) {
    EXPECT_EQ(translated(with(plain_entry, {{0, "10 20"}})),
              "11 42 20 33 36 37 38 40 41 42 00 00 00 ab cd e4 12 34 50 11 22 33 7c 7d 7e 54 32 11 00 00 00 44");
}

TEST(NonRecursiveLdi, ThirdLabelWithAValueHoldsItsNibblesInterleaved) {
    EXPECT_EQ(translated(with(plain_entry, {{0, "18 20"}, {20, "a1 b2 c3"}})),
              "11 42 20 33 36 37 38 40 41 42 31 2c 1b ab cd e1 12 34 50 11 22 33 7c 7d 7e 54 32 11 00 00 00 44");
}

TEST(NonRecursiveLdi, ThirdLabelKeepsTheLowestBitThatTheBackupLeft) {
    for (const auto& [backup, last] : std::vector<std::pair<const char*, int>>{{"ff", 0xe5}, {"fe", 0xe4}}) {
        const Bytes in = with(plain_entry, {{0, "10 00 20"}, {148, "94 95"}, {150, backup}});
        EXPECT_EQ(translate(result, in).out[15], last) << backup;
        const Bytes with_value = with(in, {{0, "18"}});
        EXPECT_EQ(translate(result, with_value).out[15], 0xe1) << backup;
    }
}

TEST(NonRecursiveLdi, ValueOfTheThirdLabelIsReadOnlyWithTheThirdLabel) {
    expect_not_carried(result, with(plain_entry, {{0, "09"}}), {"L3.7-2", "L16-23", "L0.3"});
    expect_not_carried(result, with(plain_entry, {{0, "11"}}), {"L20-23"});
}

TEST(NonRecursiveLdi, ExtraTriplesReplaceWhatStoodThere) {
    EXPECT_EQ(translated(with(plain_entry, {{156, "01"}})),
              "11 12 40 33 36 37 38 40 41 42 90 91 92 a0 a1 a2 12 34 51 11 22 33 7c 7d 7e 00 00 00 00 00 00 44");
    EXPECT_EQ(translated(with(plain_entry, {{156, "03"}})),
              "11 12 40 33 36 37 38 40 41 42 90 91 92 a0 a1 a2 12 34 51 11 22 33 7c 7d 7e 00 00 00 a4 a5 a6 44");
    EXPECT_EQ(translated(with(plain_entry, {{156, "fe"}})), translated(plain_entry));
}

TEST(NonRecursiveLdi, RebuildReplacesEverything) {
    const Bytes in = with(plain_entry, {{0, "02 e0 06 00 33"}, {36, "34 12"}, {40, "04"}});
    EXPECT_EQ(translated(in),
              "91 00 00 11 22 33 44 44 45 46 88 2d 1a 34 90 91 92 ab cd e1 7c 7d 7e 48 49 4a 54 32 10 12 34 50");
}

TEST(NonRecursiveLdi, RebuildMarksTheQueueWithItsRange) {
    for (const auto& [range, queue] : std::vector<std::pair<const char*, const char*>>{
             {"00", "12 34"}, {"02", "12 34"}, {"04", "1a 34"}, {"08", "1e 34"}, {"ff", "12 34"}}) {
        const Bytes out = translate(result, with(Bytes(168), {{1, "80"}, {36, "34 12"}, {40, range}})).out;
        EXPECT_EQ(hex({out.begin() + 12, out.begin() + 14}), queue) << range;
    }
}

TEST(NonRecursiveLdi, RebuildByBytesKeepsThemInTheirOrder) {
    const Bytes in = with(plain_entry, {{0, "00 a0 01 00 33"}, {36, "34 12"}, {40, "04"}});
    EXPECT_EQ(translated(in),
              "91 00 00 11 22 33 44 44 45 46 88 17 34 12 90 91 92 ab cd e0 7c 7d 7e 48 49 4a 54 32 10 12 34 50");
    const Bytes without_triple = with(in, {{1, "c0"}});
    EXPECT_EQ(translated(without_triple),
              "91 00 00 11 22 33 44 44 45 46 88 13 34 12 00 00 00 ab cd e0 7c 7d 7e 48 49 4a 54 32 10 12 34 50");
}

TEST(NonRecursiveLdi, RebuildByQueueNeedsBothFlagsForItsTriple) {
    for (const auto& [flags_byte, marks] :
         std::vector<std::pair<const char*, int>>{{"80", 0x03}, {"a0", 0x03}, {"c0", 0x03}, {"e0", 0x07}}) {
        const Bytes out = translate(result, with(plain_entry, {{1, flags_byte}})).out;
        EXPECT_EQ(out[11], marks) << flags_byte;
        EXPECT_EQ(hex({out.begin() + 14, out.begin() + 17}), marks == 0x07 ? "90 91 92" : "00 00 00") << flags_byte;
    }
}

TEST(NonRecursiveLdi, RebuildFollowsTheLastThreeFormsOnly) {
    for (const Form form : all_forms) {
        Bytes in = shaped(plain_entry, form);
        set_bit(in, 1, 7);
        const bool is_rebuilt = form == Form::protection || form == Form::wide || form == Form::simple;
        const Bytes out = translate(result, in).out;
        EXPECT_EQ(out[0], is_rebuilt ? 0x91 : form == Form::hops ? 0xb1 : 0x11);
        EXPECT_EQ(bit(out, 1, 1), !is_rebuilt);
    }
}

TEST(NonRecursiveLdi, FlagsGoToTheirPlaces) {
    const Bytes base(168);
    EXPECT_EQ(changes(result, base, "L0.0"), "P1.4 P18.0");
    EXPECT_EQ(changes(result, base, "L0.1"), "P1.6 P15.0");
    EXPECT_EQ(changes(result, base, "L0.5"), "P0.6 P2.0");
    EXPECT_EQ(changes(result, base, "L0.7"), "P1.7");
    EXPECT_EQ(changes(result, base, "L1.4"), "P2.7");
    EXPECT_EQ(changes(result, base, "L1.5"), "P2.2");
    EXPECT_EQ(changes(result, base, "L2.5"), "P1.2");
    EXPECT_EQ(changes(result, base, "L2.6"), "P1.0");
    EXPECT_EQ(changes(result, base, "L3.0"), "P2.4");
    EXPECT_EQ(changes(result, base, "L3.1"), "P2.3");
    EXPECT_EQ(changes(result, base, "L156.0"), "P2.6");
    expect_not_carried(result, base, {"L0.2", "L0.6", "L1.0", "L1.6", "L2.2-0", "L156.7-1"});
}

TEST(NonRecursiveLdi, DropsWhatNoFormUses) {
    for (const Form form : all_forms) {
        for (const char* rebuild : {"00", "e0"}) {
            const Bytes base = shaped(with(plain_entry, {{1, rebuild}, {156, "03"}}), form);
            expect_not_carried(
                result, base, {"L3.7-2",  "L5-7",     "L10.7-4",  "L11",      "L14.7-4",  "L15",      "L18.7-4", "L19",
                               "L23",     "L26.7-4",  "L27",      "L55",      "L59",      "L63",      "L65-71",  "L75",
                               "L76.7-1", "L120",     "L121.7-1", "L122-123", "L127-131", "L137-143", "L147",    "L151",
                               "L155",    "L156.7-2", "L157-159", "L163",     "L167"});
        }
    }
}

TEST(NonRecursiveLdi, MindsNoLength) {
    expect_length_ignored(result, plain_entry);
    expect_length_ignored(back, counting(32, 0x80));
}

// ---- And back ----

TEST(NonRecursiveLdiBack, EveryBitLandsWhereItBelongs) {
    for (Bytes base : {Bytes(32), Bytes(32, 0xff), counting(32, 0xa0)}) {
        for (const bool is_protected : {false, true}) {
            set_bit(base, 1, 3, is_protected);
            walk(back, back_model, base);
        }
    }
    check_random(back, back_model, 3000);
}

TEST(NonRecursiveLdiBack, PlainEntryLosesWhatItsPhysicalRecordDoesNotSay) {
    const Outcome outcome = translate(back, translate(result, plain_entry).out);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.length, std::nullopt);
    EXPECT_EQ(hex(outcome.out), hex(with(Bytes(168), {{0, "01 00 00 00 33"},
                                                      {8, "45 23 01 00 de bc 0a 00"},
                                                      {36, "36 37 38 00 40 41 42 00"},
                                                      {124, "7c 7d 7e 00"},
                                                      {132, "44 11 22 33"},
                                                      {144, "90 91 92"}})));
}

TEST(NonRecursiveLdiBack, ProtectedPathLosesItsThirdLabel) {
    const Bytes out = translate(back, translate(result, protected_entry).out).out;
    EXPECT_EQ(hex(out), hex(with(Bytes(168), {{0, "00 02"},
                                              {8, "45 23 01 00 de bc 0a 00"},
                                              {28, "82 82 02 00 33 33 03 00 36 37 00 00 05"},
                                              {124, "7c 7d 7e 00"},
                                              {132, "44 11 22 33"}})));
}

TEST(NonRecursiveLdiBack, OnesRestoreWhatTheyCan) {
    EXPECT_EQ(hex(translate(back, Bytes(32, 0xff)).out),
              hex(with(Bytes(168), {{0, "a7 02 00 00 ff"},
                                    {8, "ff ff 0f 00 ff ff 0f 00"},
                                    {28, "ff ff 0f 00 ff ff 0f 00 ff ff 00 00 0f"},
                                    {124, "ff ff ff"},
                                    {132, "ff ff ff ff"}})));
    const Bytes unprotected = with(Bytes(32, 0xff), {{1, "f7"}});
    EXPECT_EQ(hex(translate(back, unprotected).out), hex(with(Bytes(168), {{0, "a7 00 00 00 ff"},
                                                                           {8, "ff ff 0f 00 ff ff 0f 00"},
                                                                           {36, "ff ff ff 00 ff ff ff"},
                                                                           {124, "ff ff ff"},
                                                                           {132, "ff ff ff ff"},
                                                                           {144, "ff ff ff"}})));
}

TEST(NonRecursiveLdiBack, TheValueComesBackWithTwoBytesExchanged) {
    const Bytes in = with(Bytes(168), {{132, "44 33 22 11"}});
    const Bytes there = translate(result, in).out;
    EXPECT_EQ(hex({there.begin() + 19, there.begin() + 22}), "11 22 33");
    EXPECT_EQ(there[31], 0x44);
    const Bytes again = translate(back, there).out;
    EXPECT_EQ(hex({again.begin() + 132, again.begin() + 136}), "44 11 22 33");
}

TEST(NonRecursiveLdiBack, LabelFlagsStandInForTheFlagsOfTheSecondByte) {
    const Bytes base(32);
    EXPECT_EQ(changes(back, base, "P1.4"), "L0.0");
    EXPECT_EQ(changes(back, base, "P18.0"), "L0.0");
    EXPECT_EQ(changes(back, base, "P1.6"), "L0.1");
    EXPECT_EQ(changes(back, base, "P15.0"), "L0.1");
    EXPECT_EQ(changes(back, base, "P1.7"), "L0.7");
    EXPECT_EQ(changes(back, base, "P12.0"), "L0.7 L146.0");
    EXPECT_EQ(changes(back, base, "P1.5"), "L0.2");
    EXPECT_EQ(changes(back, base, "P2.0"), "L0.5");
    const Bytes both = with(Bytes(32), {{1, "d0"}, {12, "01"}, {15, "01"}, {18, "01"}});
    expect_not_carried(back, both, {"P1.7-6", "P1.4", "P15.0", "P18.0"});
    EXPECT_EQ(changes(back, both, "P12.0"), "L146.0");
}

TEST(NonRecursiveLdiBack, DoesNotRestoreWhatItDoesNotRead) {
    expect_not_carried(back, Bytes(32), {"P0", "P1.2-0", "P2.7-1", "P15.3-1", "P18.3-1", "P25-30"});
    const Bytes protected_base = with(Bytes(32), {{1, "08"}});
    expect_not_carried(back, protected_base,
                       {"P0", "P1.2-0", "P2.7-2", "P6.7-3", "P9.3-0", "P12.3-1", "P15.3-1", "P18.3-1", "P25-30"});
}

TEST(NonRecursiveLdi, StandsInItsDispatchSlots) {
    EXPECT_EQ(l2p_ucode_func_table[13].key, nr_ldi_entry_st_xlate_key);
    EXPECT_EQ(l2p_ucode_func_table[13].result, nr_ldi_entry_st_result);
    EXPECT_EQ(p2l_ucode_func_table[13], nr_ldi_entry_st_logical_xlate_result);
}

}  // namespace
