// What the pages of the contract and of debugging say of all translators at once.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/catalogue.h"
#include "docs/claims.h"
#include "docs/journey.h"
#include "npxlate/taken.h"

namespace {

using catalogue::Role;
using catalogue::Trait;
using docs::Form;
using docs::Forms;
using docs::Translator;

// As far as forms of different lengths can be compared: what functions there are of several bits is left out.
bool same(const Form& a, const Form& b) {
    using npxlate::trace::Bit;
    return a.status == b.status && a.length == b.length &&
           std::ranges::equal(a.out, b.out, [](const Bit& one, const Bit& other) {
               return one.kind == other.kind && (one.kind == Bit::function || one.value == other.value);
           });
}

// Whether any length argument makes a difference to what a translator does with its record.
bool looks_at_its_length(const Translator& translator) {
    const Forms& whole = forms::forms_of(translator);
    return std::ranges::any_of(std::vector<std::int32_t>{0, 1, whole.length() + 1, 100}, [&](std::int32_t length) {
        return length != whole.length() &&
               !std::ranges::equal(forms::forms_of(translator, length).all(), whole.all(), same);
    });
}

// "Key and result translators ignore logical_length ... The generic ones, and the keys of tables 42, 90 and 121, take
// their length from it."
TEST(Contract, NamesTheTranslatorsThatLookAtTheirLength) {
    std::set<std::string_view> looking;
    for (const Translator& translator : catalogue::translators()) {
        if (translator.role != Role::reverse && looks_at_its_length(translator)) {
            looking.insert(translator.name);
        }
    }
    std::set<std::string_view> named{"generic_xlate_key", "generic_xlate_result", "generic_fast_ip_xlate_key",
                                     "generic_fast_ip_xlate_result"};
    for (const unsigned table : {42U, 90U, 121U}) {
        named.insert(catalogue::of_table(table, Role::key).name);
    }
    EXPECT_EQ(looking, named);
}

TEST(Contract, StatesLengthsThatAreEnough) {
    std::size_t physical = 0;
    std::size_t logical = 0;
    for (const Translator& translator : catalogue::translators()) {
        physical = std::max(physical, translator.physical.most);
        logical = std::max(logical, translator.role == Role::reverse ? translator.logical.most : 0);
    }
    EXPECT_EQ(physical, std::size_t{NPXLATE_MAX_PHYSICAL_LENGTH});
    EXPECT_EQ(logical, std::size_t{NPXLATE_MAX_LOGICAL_LENGTH});
}

// "a read-back whose first byte has the bits of 0x11 set": "it is a CFM or BFD entry, whose reverse sets these bits"
TEST(Debugging, NamesTheReversesThatGiveBackTheHeaderBits) {
    std::set<unsigned> tables;
    for (unsigned table = 0; table < NPXLATE_TABLE_COUNT; ++table) {
        const Translator& result = catalogue::of_table(table, Role::result);
        const Translator& reverse = catalogue::of_table(table, Role::reverse);
        if (reverse.family == "frame" || reverse.physical != result.physical) {
            continue;
        }
        const docs::Journey journey{result, reverse};
        docs::Diagrams& diagrams = journey.diagrams();
        const docs::Node both = diagrams.both(journey.returned(0), journey.returned(4));
        if (diagrams.implies(journey.makes_it(), both)) {
            tables.insert(table);
        }
    }
    EXPECT_EQ(tables, (std::set<unsigned>{108, 109, 110}));
}

// "`examples/entries.jsonl` has an entry or more for every table with translators of its own"
TEST(Debugging, IsRightAboutTheSampleEntries) {
    std::ifstream file{NPXLATE_ENTRIES};
    const std::string text{std::istreambuf_iterator<char>{file}, {}};
    std::set<unsigned> tables;
    const std::regex table{R"re("table": (\d+))re"};
    for (std::sregex_iterator match{text.begin(), text.end(), table}, end; match != end; ++match) {
        tables.insert(static_cast<unsigned>(std::stoul((*match)[1])));
    }
    for (unsigned id = 0; id < NPXLATE_TABLE_COUNT; ++id) {
        const bool has_its_own =
            std::ranges::any_of(std::vector{Role::key, Role::result, Role::reverse},
                                [id](Role role) { return catalogue::of_table(id, role).family != "frame"; });
        EXPECT_TRUE(tables.contains(id) || !has_its_own) << "table " << id;
    }
}

// What the tool says of the records that a translator takes, where it does not take all.
TEST(Taken, IsWhatTheTranslatorTakes) {
    struct Saying {
        const char* translator;
        const char* words;
        std::vector<const char*> claims;
    };
    const Saying sayings[] = {
        {"xid_type_xlate_result",
         "a type, L8-11, of 1 to 11, and in type 11 a selector, L60, of 0 to 2",
         {"L8-11=1..10 or L8-11=11 L60<=2: status=0", "L8-11=0 or L8-11>11 or L8-11=11 L60>2: status=22"}},
        {"ipmc_mofrr_mvpn_key_xlate",
         "a type, L0-3, of 1 to 5",
         {"L0-3=1..5: status=0", "L0-3=0 or L0-3>5: status=22"}},
        {"ipmc_mofrr_mvpn_res_xlate",
         "a type, L0-3, of 1 to 5",
         {"L0-3=1..5: status=0", "L0-3=0 or L0-3>5: status=22"}},
        {"ipmc_encap_logical_res_xlate",
         "an entry type of 1 to 5",
         {"reverse T=1..5: status=0", "reverse T=0 or T>5: status=22"}},
        {"encap_ole_res_xlate", "a type, L0-3, of 1 to 4", {"L0-3=1..4: status=0", "L0-3=0 or L0-3>4: status=22"}},
        {"encap_ole_logical_res_xlate",
         "a type bit set: P0.7, P0.6, P0.5 or P1.6",
         {"reverse P0.7-5!=0 or P1.6=1: status=0", "reverse P0.7-5=0 P1.6=0: status=22"}},
        {"r_ldi_entry_st_result", "L1.4 or L0.0 clear", {"L1.4=0 or L0.0=0: status=0", "L1.4=1 L0.0=1: status=95"}},
        {"srv6_sida_res_xlate",
         "at most 4 segment identifiers, L2, where L0.0 is clear",
         {"L0.0=1 or L2<=4: length=32", "L0.0=0 L2>4: length=none"}},
        {"srv6_array_res_xlate", "L0.0 set", {"L0.0=1: status=0", "L0.0=0: status=22"}},
        {"srv6_info_res_xlate",
         "L0.0 clear and at most 4 segment identifiers, L2",
         {"L0.0=0 L2<=4: status=0", "L0.0=1: status=22", "L0.0=0 L2>4: status=34"}},
    };
    std::set<std::string_view> told;
    for (const Saying& saying : sayings) {
        const Translator& translator = *catalogue::find(saying.translator);
        EXPECT_NE(tool::what_is_taken(translator).find(std::string{" with "}.append(saying.words)), std::string::npos)
            << saying.translator;
        for (const char* const claim : saying.claims) {
            EXPECT_EQ(docs::refuted(docs::subject_of({&translator}), claim), "") << saying.translator << ": " << claim;
        }
        told.insert(saying.translator);
    }
    for (const Translator& translator : catalogue::translators()) {
        EXPECT_EQ(told.contains(translator.name),
                  translator.has(Trait::rejects_records) || translator.has(Trait::hides_failures))
            << translator.name;
    }
}

}  // namespace
