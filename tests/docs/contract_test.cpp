// What the pages of the contract and of debugging say of all translators at once.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string_view>
#include <vector>

#include "catalogue/catalogue.h"
#include "docs/journey.h"

namespace {

using catalogue::Role;
using catalogue::Trait;
using docs::Form;
using docs::Forms;
using docs::Translator;

bool same(const Form& a, const Form& b) {
    return a.status == b.status && a.length == b.length && a.out.size() == b.out.size();
}

// Whether any length argument makes a difference to what a translator does with its record.
bool looks_at_its_length(const Translator& translator) {
    const Forms& whole = forms::forms_of(translator);
    return std::ranges::any_of(std::vector<std::int32_t>{0, 1, whole.length() + 1, 200}, [&](std::int32_t length) {
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

}  // namespace
