// The built tool, run as its users run it. Records are small ones, worked out by hand from the header's positions.

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <npxlate/npxlate.h>

#include "tool/program.h"

namespace {

using nlohmann::json;
using program::File;
using program::Outcome;
using program::run;

using Words = std::vector<std::string>;

std::string zeros(std::size_t bytes) {
    std::string text(2 * bytes, '0');
    return text;
}

std::size_t count_lines(const std::string& text) {
    return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
}

void expect_output(const Words& arguments, const std::string& out) {
    const Outcome outcome = run(arguments);
    EXPECT_EQ(outcome.out, out);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.status, 0);
}

// One line on standard error, nothing on standard output.
void expect_error(const Words& arguments, int status, const std::string& message,
                  const program::Setting& setting = {}) {
    const Outcome outcome = run(arguments, setting);
    EXPECT_EQ(outcome.err, "npxlate: error: " + message + "\n");
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.status, status);
}

// ---- One record ----

TEST(Key, TranslatesByTable) {
    // L0-5 turned round, then L6-7.
    expect_output({"key", "17", "0102030405060708"}, "0605040302010708\n");
    expect_output({"key", "0x11", "0102030405060708"}, "0605040302010708\n");
    // The low 12 bits of L4-5, then 64 x L0-3 plus L6.
    expect_output({"key", "8", "01000000", "34f2", "05"}, "340245\n");
}

TEST(Key, TranslatesByName) {
    // The low 24 bits of L0-3, bit 20 ORed with L4.0.
    expect_output({"key", "mpls_leaf_st_xlate_key", "0102030401"}, "010213\n");
    // 4 bytes are cleared, but 3 are the record.
    expect_output({"key", "xid_type_xlate_key", "ffffffff"}, "ffff07\n");
}

TEST(Key, KeepsTheLengthOfGenericRecords) {
    expect_output({"key", "generic_xlate_key", "a1b2c3d4e5"}, "a1b2c3d4e5\n");
    expect_output({"key", "generic_xlate_key", ""}, "\n");
}

TEST(Result, TranslatesByTable) {
    expect_output({"result", "17", "aaaaaaaa01020304"}, "1100010001020304\n");
    expect_output({"result", "ip_leaf_fastip_xlate_result", "aabbcc"}, "11aabbcc\n");
}

TEST(Reverse, TranslatesByTable) { expect_output({"reverse", "17", "1100010001020304"}, "0000000001020304\n"); }

TEST(Record, ComesFromWhereTheUserSays) {
    const Outcome from_nothing = run({"key", "17"}, {.input = "01 02 03 04\r\n05 06 07 08\r\n"});
    EXPECT_EQ(from_nothing.out, "0605040302010708\n");
    const Outcome from_dash = run({"key", "17", "-"}, {.input = "0x0102030405060708"});
    EXPECT_EQ(from_dash.out, "0605040302010708\n");
    const File file{"01:02:03:04:05:06:07:08\n"};
    expect_output({"key", "17", "--file", file.path()}, "0605040302010708\n");
    expect_output({"key", "17", "01", "02", "03:04", "0x0506", "07 08"}, "0605040302010708\n");
}

TEST(Record, IsRefusedWhenItCannotBeRead) {
    expect_error({"key", "17", "--file", "/nonexistent/file"}, 2,
                 "cannot read /nonexistent/file: No such file or directory");
    expect_error({"key", "17", "--file", "/"}, 2, "cannot read /: Is a directory");
    expect_error({"key", "17"}, 2,
                 "standard input is too long: expected the hex of one record (for many: npxlate batch)",
                 {.input = std::string(3000000, '0')});
    const Outcome both = run({"key", "17", "00", "--file", "/dev/null"});
    EXPECT_EQ(both.status, 2);
    EXPECT_EQ(count_lines(both.err), 1U);
}

TEST(Record, IsRefusedForBadHex) {
    expect_error({"key", "17", "01020g"}, 2, "bad hex: expected a hex digit, found 'g' at position 6");
    expect_error({"key", "17", "01", "2"}, 2,
                 "bad hex: expected two digits for each byte, found 1 digit at position 4");
    expect_error({"key", "17"}, 2, "bad hex: expected a hex digit, found the byte 0x7f at position 1",
                 {.input = "\x7f"
                           "ELF"});
    expect_error({"key", "17", "\xe2\x82\xac"}, 2, "bad hex: expected a hex digit, found the byte 0xe2 at position 1");
}

TEST(Record, IsRefusedForItsLength) {
    expect_error({"key", "17", "01"}, 2,
                 "vrrp_vmac_entry_st_xlate_key takes a logical record of 8 bytes, but 1 byte came");
    expect_error({"key", "17"}, 2, "vrrp_vmac_entry_st_xlate_key takes a logical record of 8 bytes, but 0 bytes came");
    expect_error({"reverse", "17", zeros(9)}, 2,
                 "vrrp_logical_xlate_result takes a physical record of 8 bytes, but 9 bytes came");
    expect_error({"key", "generic_xlate_key", zeros(48)}, 2,
                 "generic_xlate_key takes a logical record of 0 to 47 bytes, but 48 bytes came");
    expect_error({"result", "75", zeros(102)}, 2,
                 "bridge_domain_type_xlate_result takes a logical record of 101 bytes (or 120, as read back), but 102 "
                 "bytes came");
}

// The header gives two records a form that is shorter than the other.
TEST(Record, MayHaveTheShorterOfTwoForms) {
    EXPECT_EQ(run({"result", "92", "0102030405060708"}).out, run({"result", "92", "0102030405060708ff"}).out);
    EXPECT_EQ(run({"result", "92", "0102030405060708"}).status, 0);
    expect_error(
        {"result", "92", zeros(8)}, 2,
        "velox_esi_info_type_xlate_result takes a logical record of 9 bytes (or 8 if L0 is not 0, or 12, as read "
        "back), but 8 bytes came");
    EXPECT_EQ(run({"result", "30", "00010203"}).out, "9100000001020300\n");
    expect_error({"result", "30", "01010203"}, 2,
                 "evpn_mh_peer_type_xlate_result takes a logical record of 10 bytes (or 4 if L0.0 is clear, or 12, as "
                 "read back), but 4 bytes came");
    EXPECT_EQ(run({"batch"}, {.input = "{\"table\":30,\"result\":\"00010203\"}\n"}).out,
              "{\"table\":30,\"physical_result\":\"9100000001020300\"}\n");
    EXPECT_EQ(run({"explain", "30", "00010203"}).status, 0);
}

TEST(Record, MayBeOneThatWasReadBack) {
    const std::string record = zeros(100) + "ff";
    const Outcome written = run({"result", "75", record});
    const Outcome again = run({"result", "75", record + zeros(19)});
    EXPECT_EQ(written.status, 0);
    EXPECT_EQ(again.status, 0);
    EXPECT_EQ(again.out, written.out);
}

TEST(Json, TellsWhatTheTranslatorSaid) {
    const Outcome outcome = run({"result", "17", "--json", "0000000001020304"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(json::parse(outcome.out), (json{{"translator", "vrrp_vmac_entry_st_xlate_result"},
                                              {"status", 0},
                                              {"status_name", "NPXLATE_OK"},
                                              {"length", 8},
                                              {"bytes", "1100010001020304"}}));
}

// A path count above 3 is set to 0 in the record that went in; with L1.4 and L0.0 set the record is refused.
TEST(Json, TellsAChangedInputAndARefusal) {
    const Outcome outcome = run({"result", "12", "--json", "01 10 05", zeros(33)});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(json::parse(outcome.out), (json{{"translator", "r_ldi_entry_st_result"},
                                              {"status", 95},
                                              {"status_name", "NPXLATE_NOT_SUPPORTED"},
                                              {"length", nullptr},
                                              {"bytes", nullptr},
                                              {"input", "011000" + zeros(33)}}));
}

TEST(Refusal, SaysWhichStatusAndWhatItMeans) {
    expect_error(
        {"result", "12", "01 10 00", zeros(33)}, 1,
        "r_ldi_entry_st_result returned 95 (NPXLATE_NOT_SUPPORTED): expected a logical record of 36 bytes with "
        "L1.4 or L0.0 clear");
    expect_error(
        {"reverse", "52", "--type", "6", zeros(32)}, 1,
        "ipmc_encap_logical_res_xlate returned 22 (NPXLATE_INVALID): expected a physical record of 32 bytes with "
        "an entry type of 1 to 5");
    expect_error(
        {"result", "srv6_info_res_xlate", "00 00 05", zeros(77)}, 1,
        "srv6_info_res_xlate returned 34 (NPXLATE_OUT_OF_RANGE): expected a logical record of 80 bytes with L0.0 "
        "clear and at most 4 segment identifiers, L2");
    expect_error(
        {"result", "srv6_sida_res_xlate", "00 00 05", zeros(77)}, 1,
        "srv6_sida_res_xlate returned 0 (NPXLATE_OK), but stored no length: expected a logical record of 80 bytes "
        "with at most 4 segment identifiers, L2, where L0.0 is clear");
}

// Every translator that rejects records says which it takes.
TEST(Refusal, SaysWhatIsTaken) {
    const auto expected = [](const Words& arguments) {
        const std::string err = run(arguments).err;
        const std::string before = "): expected ";
        return err.substr(std::min(err.find(before), err.size() - before.size()) + before.size());
    };
    EXPECT_EQ(
        expected({"result", "23", zeros(92)}),
        "a logical record of 92 bytes with a type, L8-11, of 1 to 11, and in type 11 a selector, L60, of 0 to 2\n");
    EXPECT_EQ(expected({"result", "53", zeros(32)}), "a logical record of 32 bytes with a type, L0-3, of 1 to 4\n");
    EXPECT_EQ(expected({"reverse", "53", zeros(20)}),
              "a physical record of 20 bytes with a type bit set: P0.7, P0.6, P0.5 or P1.6\n");
    for (const char* role : {"key", "result"}) {
        EXPECT_NE(
            expected({role, "52", zeros(std::string_view{role} == "key" ? 8 : 42)}).find("a type, L0-3, of 1 to 5"),
            std::string::npos);
    }
    EXPECT_EQ(expected({"result", "srv6_array_res_xlate", zeros(80)}), "a logical record of 80 bytes with L0.0 set\n");
}

TEST(Refusal, SaysThatATableCannotBeReadBack) {
    expect_error({"reverse", "67", zeros(32)}, 2,
                 "sample_nf_info_logical_res_xlate takes a physical record of 16 bytes, but 32 bytes came; results of "
                 "table 67, which have 32, cannot be read back through its slot");
    expect_error({"reverse", "93", zeros(64)}, 2,
                 "generic_xlate_logical_result takes a physical record of 0 to 63 bytes, but 64 bytes came; results of "
                 "64, as those of table 93, cannot be read back through their table's slot");
    for (const char* table : {"67", "93"}) {
        const Outcome trip = run({"roundtrip", table, zeros(std::string_view{table} == "67" ? 18 : 56)});
        EXPECT_EQ(trip.status, 1);
        EXPECT_EQ(trip.out, "");
        EXPECT_NE(trip.err.find("cannot be read back through"), std::string::npos) << trip.err;
    }
}

TEST(ExitStatus, TellsARejectedRecord) {
    const std::string rejected = "011005" + zeros(33);
    EXPECT_EQ(run({"result", "12", rejected}).status, 1);
    EXPECT_EQ(run({"explain", "12", rejected}).status, 1);
    EXPECT_EQ(run({"explain", "12", "--json", rejected}).status, 1);
    EXPECT_EQ(run({"roundtrip", "12", rejected}).status, 1);
    EXPECT_EQ(run({"diff", "12", rejected, zeros(36)}).status, 2);
    EXPECT_EQ(run({"explain", "115", "000005" + zeros(77)}).status, 1);
    const Outcome explained = run({"explain", "12", rejected});
    EXPECT_NE(explained.out, "");
    EXPECT_EQ(count_lines(explained.err), 1U);
    EXPECT_NE(explained.err.find("NPXLATE_NOT_SUPPORTED"), std::string::npos);
}

TEST(ExitStatus, OfDiffIsThatOfDiff) {
    const Words same{"diff", "17", "--role", "key", zeros(8), zeros(8)};
    EXPECT_EQ(run(same).status, 0);
    const Words other{"diff", "17", "--role", "key", zeros(8), zeros(7) + "01"};
    const Outcome different = run(other);
    EXPECT_EQ(different.status, 1);
    EXPECT_EQ(different.err, "");
    EXPECT_EQ(run({"diff", "17", "--role", "key", zeros(8), "zz"}).status, 2);
    EXPECT_EQ(run({"diff", "17", "--role", "key", zeros(8)}).status, 2);
    for (const program::Stream out : {program::Stream::full, program::Stream::broken, program::Stream::closed}) {
        EXPECT_EQ(run(same, {.out = out}).status, 2);
        EXPECT_EQ(run(other, {.out = out}).status, 2);
    }
}

TEST(Surprise, IsNoted) {
    const Outcome unstored = run({"key", "modulo_xlate_key", zeros(4)});
    EXPECT_EQ(unstored.status, 0);
    EXPECT_EQ(unstored.out, "0000\n");
    EXPECT_EQ(unstored.err,
              "npxlate: note: modulo_xlate_key does not store the length of its record, which has 2 bytes\n");
    EXPECT_EQ(json::parse(run({"key", "modulo_xlate_key", "--json", zeros(4)}).out)["length"], nullptr);

    const Outcome longer = run({"result", "generic_fast_ip_xlate_result", "0102030405"});
    EXPECT_EQ(longer.out, "11010203\n");
    EXPECT_EQ(longer.err,
              "npxlate: note: generic_fast_ip_xlate_result stores the length 6, but its record has 4 bytes\n");

    // Only P0.4 and P0.0 are written.
    std::string not_written(64, 'f');
    not_written.replace(0, 2, "ee");
    const Outcome kept = run({"result", "edpl_str_xlate_result", ""});
    EXPECT_EQ(kept.out, "11" + zeros(31) + "\n");
    EXPECT_EQ(kept.err, "npxlate: note: edpl_str_xlate_result leaves the bits " + not_written +
                            " of its record as they were; they are shown as 0\n");
    EXPECT_EQ(json::parse(run({"result", "edpl_str_xlate_result", "--json", ""}).out)["not_written"], not_written);

    const Outcome changed = run({"result", "12", "00 00 04", zeros(33)});
    EXPECT_EQ(changed.status, 0);
    EXPECT_EQ(changed.err,
              "npxlate: note: r_ldi_entry_st_result changed the record that went in, to " + zeros(36) + "\n");
}

// ---- The fourth argument and the setting ----

TEST(Type, DecidesTheReverseOfTable52) {
    // Type 1 restores nothing but itself, in L0-3.
    expect_output({"reverse", "52", "--type", "1", zeros(32)}, "01" + zeros(47) + "\n");
    expect_output({"reverse", "52", "--type=0x5", zeros(32)}, "05" + zeros(47) + "\n");
    expect_error({"reverse", "52", zeros(32)}, 2,
                 "ipmc_encap_logical_res_xlate needs the type of the entry: expected --type N");
    expect_error({"reverse", "17", "--type", "1", zeros(8)}, 2,
                 "vrrp_logical_xlate_result takes no entry type: expected no --type");
    expect_error({"reverse", "52", "--type", "one", zeros(32)}, 2, "bad --type one: expected a number of 32 bits");
    expect_error({"reverse", "52", "--type", "4294967296", zeros(32)}, 2,
                 "bad --type 4294967296: expected a number of 32 bits");
}

TEST(LogicalKey, DecidesTheReverseOfTable92) {
    // An Ethernet segment has 8 bytes, and L1.0 is P0.0; a spanning-tree instance has 12.
    expect_output({"reverse", "92", "--key", "00000000000000ff", "01" + zeros(7)}, "0001" + zeros(6) + "\n");
    EXPECT_EQ(run({"reverse", "92", "--key", zeros(8), zeros(8)}).out.size(), 2 * 12 + 1U);
    expect_error({"reverse", "92", zeros(8)}, 2,
                 "esi_info_logical_res_xlate needs the logical key of the entry: expected --key HEX");
    expect_error({"reverse", "92", "--key", "00", zeros(8)}, 2,
                 "esi_info_logical_res_xlate takes a logical key of 8 bytes, but 1 byte came");
    expect_error({"reverse", "17", "--key", "00", zeros(8)}, 2,
                 "vrrp_logical_xlate_result takes no logical key: expected no --key");
}

// P0.7 is 1 when L8-10 is at most TX_ADJ_KEY_MAX.
TEST(TxAdjKeyMax, DecidesTheMarkOfTeNextHops) {
    const std::string record = zeros(8) + "001000" + zeros(50);
    const auto marked = [&record](const Words& option) {
        Words arguments{"result", "7", record};
        arguments.insert(arguments.end(), option.begin(), option.end());
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        return outcome.out.substr(0, 1) >= "8";
    };
    EXPECT_FALSE(marked({}));
    EXPECT_FALSE(marked({"--tx-adj-key-max", "0xfff"}));
    EXPECT_TRUE(marked({"--tx-adj-key-max", "0x1000"}));
    const std::string line = R"({"table":7,"result":")" + record + "\"}\n";
    EXPECT_NE(run({"batch"}, {.input = line}).out, run({"batch", "--tx-adj-key-max", "4096"}, {.input = line}).out);
    expect_error({"result", "7", record, "--tx-adj-key-max", "65536"}, 2,
                 "bad --tx-adj-key-max 65536: expected a number from 0 to 65535");
    // One rule for all commands.
    for (const char* command : {"result", "explain", "roundtrip"}) {
        expect_error({command, "17", zeros(8), "--tx-adj-key-max", "1"}, 2,
                     "vrrp_vmac_entry_st_xlate_result does not depend on TX_ADJ_KEY_MAX: expected no --tx-adj-key-max");
    }
    expect_error({"diff", "17", zeros(8), zeros(8), "--tx-adj-key-max", "1"}, 2,
                 "vrrp_vmac_entry_st_xlate_result does not depend on TX_ADJ_KEY_MAX: expected no --tx-adj-key-max");
    expect_error({"batch", "--raw", "result:17", "--tx-adj-key-max", "1"}, 2,
                 "vrrp_vmac_entry_st_xlate_result does not depend on TX_ADJ_KEY_MAX: expected no --tx-adj-key-max");
}

// ---- What the user names ----

TEST(TableOrName, IsRefusedWhenThereIsNone) {
    expect_error({"key", "128", "00"}, 2, "there is no table 128: expected a table id from 0 to 127");
    expect_error({"key", "0x80", "00"}, 2, "there is no table 0x80: expected a table id from 0 to 127");
    expect_error({"key", "rx_adjacency_type_xlate_ky", "00"}, 2,
                 "there is no table or translator \"rx_adjacency_type_xlate_ky\": expected a table id (0 to 127) or a "
                 "name that npxlate tables lists; did you mean rx_adjacency_type_xlate_key?");
    // The nearest of the role, even if a translator of another role is nearer.
    expect_error({"result", "rx_adjacency_type_xlate_ky", "00"}, 2,
                 "there is no table or translator \"rx_adjacency_type_xlate_ky\": expected a table id (0 to 127) or a "
                 "name that npxlate tables lists; did you mean rx_adjacency_type_xlate_result?");
    expect_error({"key", "", "00"}, 2,
                 "there is no table or translator \"\": expected a table id (0 to 127) or a name that npxlate tables "
                 "lists");
    const Outcome garbage = run({"key", std::string(100000, 'x') + "\n\xff", "00"});
    EXPECT_EQ(garbage.status, 2);
    EXPECT_EQ(count_lines(garbage.err), 1U);
    EXPECT_LT(garbage.err.size(), 300U);
}

std::string suggestion(const Words& arguments) {
    const std::string err = run(arguments).err;
    const std::string before = "did you mean ";
    const std::size_t at = err.find(before);
    return at == std::string::npos ? ""
                                   : err.substr(at + before.size(), err.find_first_of("?(", at) - at - before.size());
}

TEST(Suggestion, IsWhatBeginsSoThenWhatHasItAsAPartThenWhatIsSpeltSo) {
    EXPECT_EQ(suggestion({"key", "rx_adjacency", "00"}), "rx_adjacency_type_xlate_key");
    EXPECT_EQ(suggestion({"key", "RX-Adjacency", "00"}), "rx_adjacency_type_xlate_key");
    EXPECT_EQ(suggestion({"key", "adjacency", "00"}),
              "rx_adjacency_type_xlate_key, tx_adjacency_type_xlate_key or te_nh_adjacency_type_xlate_key");
    EXPECT_EQ(suggestion({"result", "l2ufib", "00"}), "l2_ufib_type_xlate_result");
    EXPECT_EQ(suggestion({"layout", "rx_adjacensy_type_xlate_result"}), "rx_adjacency_type_xlate_result");
    EXPECT_EQ(suggestion({"key", "quite something else", "00"}), "");
}

TEST(Suggestion, IsThereForWhateverHasANameOfItsOwn) {
    EXPECT_EQ(suggestion({"expalin", "4"}), "explain");
    EXPECT_EQ(suggestion({"round", "4"}), "roundtrip");
    EXPECT_EQ(suggestion({"registers", "prase"}), "parse");
    EXPECT_EQ(suggestion({"tables", "--jsn"}), "--json");
    EXPECT_EQ(suggestion({"batch", "--treads", "2"}), "--threads");
}

TEST(TableOrName, IsRefusedForAnotherRole) {
    expect_error({"key", "ip_leaf_st_xlate_result", "00"}, 2,
                 "ip_leaf_st_xlate_result is a result translator: expected a key translator");
}

TEST(CommandLine, IsRefusedInOneLine) {
    expect_error({}, 2, "A subcommand is required (see npxlate --help)");
    const Outcome unknown = run({"translate"});
    EXPECT_EQ(unknown.status, 2);
    EXPECT_TRUE(unknown.err.starts_with("npxlate: error: there is no command \"translate\": expected one of key, "))
        << unknown.err;
    for (const Words& arguments : {Words{"key"}, Words{"key", "17", "--bad"}, Words{"tables", "extra"},
                                   Words{"reverse", "52", "--type"}, Words{"--bad"}, Words{"registers"}}) {
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.status, 2);
        EXPECT_EQ(count_lines(outcome.err), 1U) << outcome.err;
        EXPECT_TRUE(outcome.err.starts_with("npxlate: error: ")) << outcome.err;
        EXPECT_EQ(outcome.out, "");
    }
}

// A script's unset variable must not pass for an option that was left out.
TEST(CommandLine, TakesNoOptionWithoutAValue) {
    const std::regex option{R"((--[a-z-]+) TEXT)"};
    std::set<std::string> seen;
    for (const Words& command :
         {Words{"key"}, Words{"result"}, Words{"reverse"}, Words{"batch"}, Words{"explain"}, Words{"layout"},
          Words{"find"}, Words{"roundtrip"}, Words{"diff"}, Words{"decode"}, Words{"audit"}, Words{"build"},
          Words{"names", "import"}, Words{"vectors"}, Words{"verify"}, Words{"atlas"}}) {
        Words arguments = command;
        arguments.emplace_back("--help");
        const std::string help = run(arguments).out;
        for (std::sregex_iterator match{help.begin(), help.end(), option}, end; match != end; ++match) {
            const std::string name = (*match)[1];
            // An empty record is a record.
            if (name == "--from") {
                continue;
            }
            seen.insert(name);
            arguments.back() = name + "=";
            EXPECT_NE(run(arguments).err.find("error: " + name + ": expected a value (see "), std::string::npos)
                << name;
            arguments.back() = name;
            EXPECT_NE(run(arguments).err.find("error: " + name + ": expected a value (see "), std::string::npos)
                << name;
            arguments.emplace_back();
            const Outcome empty = run(arguments);
            EXPECT_EQ(empty.status, 2) << name;
            EXPECT_EQ(empty.out, "") << name;
            EXPECT_NE(empty.err.find("error: " + name + ": "), std::string::npos) << empty.err;
            arguments.pop_back();
        }
    }
    for (const char* const name : {"--length", "--limit", "--threads", "--output", "--names", "--role", "--file"}) {
        EXPECT_EQ(seen.count(name), 1U) << name;
    }
    EXPECT_EQ(run({"build", "generic_xlate_result", "--from", ""}).status, 0);
}

TEST(CommandLine, HelpsAndTellsItsVersion) {
    EXPECT_EQ(run({"--version"}).out, "npxlate 1.0.0\n");
    EXPECT_EQ(run({"-V"}).out, "npxlate 1.0.0\n");
    for (const char* command : {"key", "result", "reverse", "batch", "tables", "atlas", "registers"}) {
        const Outcome outcome = run({command, "--help"});
        EXPECT_EQ(outcome.status, 0);
        EXPECT_NE(outcome.out.find("Example: npxlate " + std::string{command}), std::string::npos) << outcome.out;
        EXPECT_NE(run({"--help"}).out.find(command), std::string::npos);
    }
}

// ---- The atlas ----

TEST(Atlas, IsWrittenToAFileOrToStandardOutput) {
    const Outcome to_output = run({"atlas", "-"});
    EXPECT_EQ(to_output.status, 0);
    EXPECT_TRUE(to_output.out.starts_with("<!doctype html>\n"));
    EXPECT_TRUE(to_output.out.ends_with("</html>\n"));
    const File file;
    const Outcome to_file = run({"atlas", file.path()});
    EXPECT_EQ(to_file.status, 0);
    EXPECT_EQ(to_file.out, "");
    EXPECT_EQ(file.content(), to_output.out);
}

TEST(Atlas, SaysThatItCannotBeWritten) {
    const Outcome outcome = run({"atlas", "/no such folder/atlas.html"});
    EXPECT_NE(outcome.status, 0);
    EXPECT_EQ(count_lines(outcome.err), 1U) << outcome.err;
    EXPECT_TRUE(outcome.err.starts_with("npxlate: error: ")) << outcome.err;
}

// ---- Lists ----

TEST(Tables, ListsEveryTableWithin80Columns) {
    const Outcome outcome = run({"tables"});
    EXPECT_EQ(outcome.status, 0);
    std::istringstream lines{outcome.out};
    std::size_t rows = 0;
    const std::regex of_table{" +[0-9]+  (key    |result |reverse) [a-z0-9_]+ +[0-9-]+ +[0-9-]+"};
    for (std::string line; std::getline(lines, line);) {
        EXPECT_LE(line.size(), 80U) << line;
        rows += std::regex_match(line, of_table) ? 1 : 0;
    }
    EXPECT_EQ(rows, 3U * NPXLATE_TABLE_COUNT);
    EXPECT_NE(outcome.out.find("\n   22  SPAN forwarding (mirroring)\n   22  key     span_fwd_st_xlate_key "),
              std::string::npos);
    EXPECT_NE(outcome.out.find("\n    -  modulo\n    -  key     modulo_xlate_key "), std::string::npos);
    EXPECT_TRUE(std::regex_search(outcome.out, std::regex{"\n +8  result  lag_type_xlate_result +14 +16\n"}));
    EXPECT_TRUE(std::regex_search(outcome.out, std::regex{"\n +-  result  modulo_xlate_result +8 +16\n"}));
}

TEST(Tables, ListsThemAsJson) {
    const json tables = json::parse(run({"tables", "--json"}).out);
    ASSERT_EQ(tables["tables"].size(), std::size_t{NPXLATE_TABLE_COUNT});
    const json& vrrp = tables["tables"][17];
    EXPECT_EQ(vrrp["table"], 17);
    EXPECT_EQ(vrrp["title"], "VRRP virtual MAC address");
    EXPECT_EQ(vrrp["key"]["title"], "VRRP virtual MAC address");
    EXPECT_EQ(vrrp["key"]["name"], "vrrp_vmac_entry_st_xlate_key");
    EXPECT_EQ(vrrp["result"]["name"], "vrrp_vmac_entry_st_xlate_result");
    EXPECT_EQ(vrrp["reverse"]["name"], "vrrp_logical_xlate_result");
    EXPECT_EQ(vrrp["key"]["logical"], (json{{"least", 8}, {"most", 8}}));
    EXPECT_EQ(tables["tables"][12]["result"]["traits"], (json{"changes_input", "rejects_records"}));
    bool modulo = false;
    for (const json& translator : tables["by_name"]) {
        modulo = modulo || translator["name"] == "modulo_xlate_key";
        EXPECT_NE(translator["name"], "vrrp_vmac_entry_st_xlate_key");
    }
    EXPECT_TRUE(modulo);
}

template <std::size_t count>
void expect_registers(const std::string& engine, const npxlate_register (&expected)[count]) {
    SCOPED_TRACE(engine);
    const json registers = json::parse(run({"registers", engine, "--json"}).out)["registers"];
    ASSERT_EQ(registers.size(), count);
    std::istringstream lines{run({"registers", engine}).out};
    std::string line;
    std::getline(lines, line);
    EXPECT_EQ(line, "index  number       value");
    for (std::size_t i = 0; i < count; ++i) {
        EXPECT_EQ(registers[i], (json{{"index", i}, {"number", expected[i].number}, {"value", expected[i].value}}));
        std::size_t index = 0;
        std::uint32_t number = 0;
        std::string value;
        std::getline(lines, line);
        std::istringstream{line} >> index >> number >> value;
        EXPECT_EQ(index, i);
        EXPECT_EQ(number, expected[i].number);
        EXPECT_EQ(value.size(), 10U);
        EXPECT_EQ(std::stoul(value, nullptr, 16), expected[i].value);
    }
}

TEST(Registers, ListsThemByEngine) {
    expect_registers("parse", quill_to_topparse_mregs);
    expect_registers("resolve", quill_to_topresolve_mregs);
    expect_registers("learn", quill_to_toplearn_mregs);
    expect_error({"registers", "bogus"}, 2, "there is no engine \"bogus\": expected parse, resolve or learn");
}

// ---- Where the output goes ----

TEST(Output, HasNoColourOffATerminal) {
    const program::Setting terminal_like{.environment = {"TERM=xterm-256color"}};
    EXPECT_EQ(run({"tables"}, terminal_like).out.find('\x1b'), std::string::npos);
    EXPECT_EQ(run({"tables", "--bad"}, terminal_like).err.find('\x1b'), std::string::npos);
}

TEST(Output, IsPlainOnATerminalThatIsNoMore) {
    for (const Words& environment : {Words{"TERM=dumb", "LC_ALL=C.UTF-8"}, Words{"LC_ALL=C.UTF-8"}}) {
        const Outcome outcome =
            run({"explain", "121", "000203"},
                {.out = program::Stream::terminal, .err = program::Stream::terminal, .environment = environment});
        EXPECT_EQ(outcome.out.find_first_of("\x1b\xe2"), std::string::npos) << outcome.out;
        EXPECT_EQ(run({"key", "128"}, {.err = program::Stream::terminal, .environment = environment}).err.find('\x1b'),
                  std::string::npos);
    }
    // Colours, but no boxes, where the locale has no UTF-8.
    for (const char* locale : {"LC_ALL=C", "LC_ALL=no such locale"}) {
        const Outcome outcome = run({"explain", "121", "000203"},
                                    {.out = program::Stream::terminal, .environment = {"TERM=xterm", locale}});
        EXPECT_EQ(outcome.out.find('\xe2'), std::string::npos) << outcome.out;
        EXPECT_NE(outcome.out.find('\x1b'), std::string::npos) << outcome.out;
    }
}

TEST(Output, IsAsWideAsTheTerminal) {
    for (const std::uint16_t columns : {std::uint16_t{30}, std::uint16_t{40}, std::uint16_t{60}, std::uint16_t{200}}) {
        const Outcome outcome =
            run({"explain", "4", zeros(30)},
                {.out = program::Stream::terminal, .environment = {"TERM=dumb"}, .columns = columns});
        std::istringstream lines{outcome.out};
        std::size_t widest = 0;
        for (std::string line; std::getline(lines, line);) {
            if (line.starts_with("     +") || line.starts_with("L") || line.starts_with("P")) {
                widest = std::max(widest, line.find_last_not_of('\r') + 1);
            }
        }
        EXPECT_LE(widest, std::min<std::size_t>(columns, 80)) << outcome.out;
        EXPECT_GE(widest, std::min<std::size_t>(columns, 80) - 10);
    }
}

TEST(Output, IsNoBinaryOnATerminal) {
    const Outcome outcome = run({"batch", "--raw", "key:121"}, {.input = "abcd", .out = program::Stream::terminal});
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(
        outcome.err,
        "npxlate: error: standard output is a terminal, and the records are binary: expected -o FILE or a pipe\n");
    EXPECT_EQ(outcome.status, 2);
}

TEST(Output, HasColourOnATerminalUnlessNotWanted) {
    const auto shown = [](Words environment) {
        environment.emplace_back("TERM=xterm");
        return run({"key", "128", "00"}, {.err = program::Stream::terminal, .environment = environment}).err;
    };
    const std::string plain = "npxlate: error: there is no table 128: expected a table id from 0 to 127\r\n";
    EXPECT_NE(shown({}).find("\x1b["), std::string::npos);
    EXPECT_EQ(std::regex_replace(shown({}), std::regex{"\x1b\\[[0-9;]*m"}, ""), plain);
    EXPECT_EQ(shown({"NO_COLOR=1"}), plain);
    EXPECT_NE(shown({"NO_COLOR="}), plain);
}

}  // namespace
