// Accounts of single records, against what the records' documentation says.

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>

#include "explain/explain.h"
#include "explain/positions.h"

namespace {

using explain::Account;
using explain::Bytes;
using explain::Fate;
using explain::Field;
using explain::Kind;

const catalogue::Translator& translator(const char* name) {
    const catalogue::Translator* found = catalogue::find(name);
    if (found == nullptr) {
        throw std::invalid_argument{name};
    }
    return *found;
}

// "P8-11: reversed L24-27", for the field that begins at that position.
std::string field_at(const Account& account, const std::string& position) {
    const char in = explain::in_letter(*account.translator);
    const char out = explain::out_letter(*account.translator);
    for (const Field& field : account.fields) {
        const std::string to = explain::position_list(out, field.to);
        if (to == position) {
            const std::string from = explain::position_list(in, field.from);
            const bool has_words = field.kind == Kind::computed || field.kind == Kind::constant;
            return std::string{to_string(field.kind)} + (from.empty() ? "" : " " + from) +
                   (has_words ? ": " + field.text : "");
        }
    }
    return "no such field";
}

std::string with_fate(const Account& account, Fate fate) {
    std::set<std::uint16_t> bits;
    for (std::size_t i = 0; i < account.in_bits.size(); ++i) {
        if (account.in_bits[i].fate == fate) {
            bits.insert(static_cast<std::uint16_t>(i));
        }
    }
    return explain::position_list(explain::in_letter(*account.translator), explain::spans_of(bits));
}

TEST(Account, OfAReceiveAdjacencyOfVariantA) {
    Bytes record(30);
    record[0] = 0x20;  // L0.5: variant A
    record[2] = 0x01;  // L2.0: 24 bits
    const Account account = explain::account(translator("rx_adjacency_type_xlate_result"), record);
    EXPECT_EQ(account.status, NPXLATE_OK);
    EXPECT_EQ(account.length, 16U);
    EXPECT_EQ(account.form->name, "variant A, 24 bits");
    EXPECT_EQ(account.when, "L0.5 and L2.0 set");
    EXPECT_EQ(account.titles, (std::vector<std::string>{"variant A", "variant A, 24 bits"}));
    EXPECT_EQ(field_at(account, "P0.7"), "constant: 1");
    EXPECT_EQ(field_at(account, "P0.4-0"), "constant: 0x11");
    EXPECT_EQ(field_at(account, "P0.6"), "copied L1.5");
    EXPECT_EQ(field_at(account, "P3.5"), "copied L2.0");
    EXPECT_EQ(field_at(account, "P6-7"), "reversed L16-17");
    EXPECT_EQ(field_at(account, "P8-11"), "reversed L24-27");
    EXPECT_EQ(field_at(account, "P13-15"), "reversed L12-14");
    EXPECT_EQ(field_at(account, "P12"), "cleared");
    // Of variant A nothing else goes out; L0.5 and L2.0 decide and go out as well.
    EXPECT_EQ(with_fate(account, Fate::carried), "L0.5-0 L1 L2.0 L2.2 L12-14 L16-17 L21-22 L24-27");
    EXPECT_EQ(with_fate(account, Fate::steered), "");
    EXPECT_TRUE(account.in_bits[5].decides);
    EXPECT_TRUE(account.in_bits[16].decides);
    EXPECT_FALSE(account.in_bits[4].decides);
}

TEST(Account, OfAReceiveAdjacencyWithAComputedByte) {
    Bytes record(30);
    record[1] = 0x05;  // L1.0: variant C; L1.2: L28 + 7
    record[28] = 0x10;
    const Account account = explain::account(translator("rx_adjacency_type_xlate_result"), record);
    EXPECT_EQ(account.when, "L0.5, L0.6 and L1.1 clear, L1.0 and L1.2 set");
    EXPECT_EQ(account.out.at(4), 0x17);
    EXPECT_EQ(field_at(account, "P4"), "computed L28: L28 + 7");
    // L0.5 goes out as P3.7, but of the byte that it would choose nothing does; L0.6 only decides.
    EXPECT_EQ(with_fate(account, Fate::steered), "L0.6");
    EXPECT_EQ(account.in_bits[std::size_t{8} * 29].fate, Fate::dropped);
}

TEST(Account, OfAReceiveAdjacencyReadBack) {
    Bytes record(16);
    record[3] = 0x80;  // P3.7: variant A
    const Account account = explain::account(translator("rx_adjacency_type_logical_xlate_result"), record);
    EXPECT_EQ(account.form->name, "variant A, 32 bits");
    EXPECT_FALSE(account.length.has_value());
    EXPECT_EQ(field_at(account, "L12-15"), "copied P12-15");
    EXPECT_EQ(field_at(account, "L1.0"), "computed P1.0 P2.5: 1 if any of these bits is 1");
    // From L16 on the record is the caller's; variant A writes L16 to L27.
    EXPECT_EQ(field_at(account, "L28-29"), "left_alone");
    EXPECT_EQ(field_at(account, "L2.7-1 L3-11"), "cleared");
}

TEST(Account, OfATransmitAdjacencyOfVariantX) {
    Bytes record(90);
    record[72] = 0x04;  // L72.2: variant X
    const Account account = explain::account(translator("tx_adjacency_type_xlate_result"), record);
    EXPECT_EQ(account.when, "L72.2 set");
    EXPECT_EQ(account.length, 32U);
    EXPECT_TRUE(account.in_bits[8 * 72 + 2].decides);
}

TEST(Account, OfABfdPayload) {
    const catalogue::Translator& payload = translator("bfd_hw_offload_xlate_payload_result");
    Bytes record(64);
    const Account whole = explain::account(payload, record);
    EXPECT_EQ(field_at(whole, "P4-27"), "copied L4-27");
    EXPECT_EQ(field_at(whole, "P32"), "constant: 1");
    EXPECT_EQ(field_at(whole, "P0.7-5"), "copied L0.7-5");
    // The type in L2.3-0 decides, and P2 gets nothing of it.
    EXPECT_EQ(with_fate(whole, Fate::steered), "L2.3-0");
    EXPECT_EQ(with_fate(whole, Fate::carried), "L0.3-1 L0.7-5 L1 L4-27");

    record[0] = 0x20;  // L0.5: one word only
    const Account word = explain::account(payload, record);
    EXPECT_EQ(field_at(word, "P12-15"), "copied L12-15");
    EXPECT_EQ(word.in_bits[std::size_t{8} * 4].fate, Fate::dropped);
}

TEST(Account, OfACrossConnectKeyThatClearsAByteMore) {
    const Account account = explain::account(translator("xid_type_xlate_key"), Bytes{0xff, 0xff, 0xff, 0xff});
    EXPECT_EQ(account.length, 3U);
    EXPECT_EQ(account.out, (Bytes{0xff, 0xff, 0x07, 0}));
    EXPECT_EQ(field_at(account, "P0-1 P2.2-0"), "copied L0-1 L2.2-0");
    EXPECT_EQ(with_fate(account, Fate::dropped), "L2.7-3 L3");
}

TEST(Account, OfARejectedCrossConnect) {
    Bytes record(92);
    record[8] = 12;  // L8-11: no type that there is
    const Account account = explain::account(translator("xid_type_xlate_result"), record);
    EXPECT_EQ(account.status, NPXLATE_INVALID);
    EXPECT_FALSE(account.length.has_value());
    // Its common part was written nevertheless.
    EXPECT_EQ(account.out.at(0) & 0x1f, 0x11);
}

TEST(Account, OfARecordThatIsChanged) {
    // A path count above 3 becomes 0 in the record that went in; 3 x 0 + 4.
    Bytes record(36);
    record[2] = 9;
    const Account account = explain::account(translator("r_ldi_entry_st_result"), record);
    ASSERT_EQ(account.input_changes.size(), 1U);
    EXPECT_EQ(explain::position_list('L', account.input_changes[0].bits), "L2");
    EXPECT_EQ(account.in_after.at(2), 0);
    EXPECT_EQ(account.in.at(2), 9);
    EXPECT_EQ(account.out.at(3), 4);
    EXPECT_EQ(account.in_bits[16].fate, Fate::dropped);  // 8 is above 3 as well
}

TEST(Account, OfAWordThatIsShiftedInTheKeyItself) {
    // Kind 2: the word L20.7-6 = 0 of L3-18, in network order, shifted right by L20.4-0 = 4.
    Bytes record(21);
    record[2] = 2;
    record[3] = 0xf0;
    record[20] = 4;
    const Account account = explain::account(translator("ipsub_sid_leaf_st_xlate_key"), record);
    EXPECT_EQ(account.in_after.at(3), 0x0f);
    const auto shifted =
        std::ranges::count_if(account.fields, [](const Field& field) { return field.text == "L3-6 >> L20.4-0"; });
    EXPECT_GE(shifted, 1);
}

TEST(Account, OfABitThatIsOredIn) {
    // The low 24 bits of L0-3, bit 20 ORed with L4.0.
    const Account account = explain::account(translator("mpls_leaf_st_xlate_key"), Bytes{1, 2, 3, 4, 1});
    EXPECT_EQ(field_at(account, "P2.4"), "copied L2.4 L4.0");
    EXPECT_EQ(with_fate(account, Fate::carried), "L0-1 L2.3-0 L2.7-5 L4.0");
    EXPECT_EQ(with_fate(account, Fate::steered), "L2.4");  // L4.0 is 1: the other makes no difference
}

TEST(Account, OfGenericRecordsAndHandWrittenCopies) {
    const Account key = explain::account(translator("generic_xlate_key"), Bytes{1, 2, 3});
    EXPECT_EQ(field_at(key, "P0-2"), "copied L0-2");
    const Account result = explain::account(translator("generic_xlate_result"), Bytes{0, 2});
    EXPECT_EQ(result.out, (Bytes{0x11, 2}));
    EXPECT_EQ(result.in_bits[0].fate, Fate::dropped);  // P0.0 is 1 whatever L0.0 is
    EXPECT_EQ(field_at(result, "P0.7-5 P1"), "copied L0.7-5 L1");
    // An address of four bytes, after the qualifier: turned round to the front.
    const Account link_local = explain::account(translator("ipv6_ll_xlate_hash_key"), Bytes{1, 2, 3, 4, 5, 6, 7, 8});
    EXPECT_EQ(field_at(link_local, "P0-3"), "reversed L4-7");
    EXPECT_THROW(explain::account(translator("ipv6_ll_xlate_hash_key"), Bytes{1, 2, 3}), std::invalid_argument);
    const Account nothing = explain::account(translator("generic_xlate_key"), Bytes{});
    EXPECT_TRUE(nothing.fields.empty());
}

TEST(Account, OfATypeThatTheCallerGives) {
    const catalogue::Translator& encapsulation = translator("ipmc_encap_logical_res_xlate");
    const Account type_2 = explain::account(encapsulation, Bytes(32), 2);
    EXPECT_EQ(type_2.when, "the entry type is 2");
    EXPECT_EQ(field_at(type_2, "L0-3"), "computed: type");
    EXPECT_EQ(explain::account(encapsulation, Bytes(32), 6).status, NPXLATE_INVALID);
}

TEST(Positions, AreNamedInWholeBytesAndBits) {
    EXPECT_EQ(explain::position_list('P', {{8, 8}, {32, 24}, {5, 1}, {3, 4}}), "P1 P4-6 P0.5 P0.6-3");
    EXPECT_EQ(explain::position_list('L', {{4, 20}}), "L0.7-4 L1-2");
    EXPECT_EQ(explain::position_list('L', {{8, 20}}), "L1-2 L3.3-0");
    EXPECT_EQ(explain::value_at({0x12, 0x34, 0xa5}, {{0, 16}}), "1234");
    EXPECT_EQ(explain::value_at({0x12, 0x34, 0xa5}, {{20, 4}}), "0b1010");
    EXPECT_EQ(explain::value_at({0x12}, {{1, 1}, {16, 8}}), "1 00");
}

}  // namespace
