// The page of surprises, against what the catalogue knows and what the translators do: whoever looks a table up there
// finds what to know about it, and nothing that is wrong.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <sstream>
#include <string>

#include "catalogue/catalogue.h"
#include "docs/claims.h"
#include "docs/fates.h"
#include "forms/forms.h"

namespace {

using catalogue::Role;
using catalogue::Trait;
using catalogue::Translator;

constexpr Role roles[] = {Role::key, Role::result, Role::reverse};

// Without its line breaks, so that a phrase is found wherever it stands.
std::string in_one_line(const std::string& text) {
    std::istringstream words{text};
    std::string line;
    for (std::string word; words >> word;) {
        line += (line.empty() ? "" : " ") + word;
    }
    return line;
}

std::string contents(const char* path) {
    std::ifstream file{path};
    return {std::istreambuf_iterator<char>{file}, {}};
}

std::string page() { return contents(NPXLATE_SURPRISES); }

// The text from a heading that starts like that up to the next one.
std::string section(const std::string& heading) {
    const std::string text = page();
    const auto start = text.find("\n" + heading);
    return start == std::string::npos ? "" : in_one_line(text.substr(start, text.find("\n#", start + 1) - start));
}

bool is_generic(const Translator& translator) { return translator.family == "frame"; }

bool has_its_own(unsigned table) {
    return std::ranges::any_of(roles, [table](Role role) { return !is_generic(catalogue::of_table(table, role)); });
}

TEST(Surprises, EveryTableWithTranslatorsOfItsOwnHasAnEntry) {
    for (unsigned table = 0; table < NPXLATE_TABLE_COUNT; ++table) {
        const std::string text = section("### Table " + std::to_string(table) + ":");
        EXPECT_EQ(!text.empty(), has_its_own(table)) << "table " << table;
        if (has_its_own(table)) {
            const std::string heading =
                "### Table " + std::to_string(table) + ": " + std::string{catalogue::title_of_table(table)} + "\n";
            EXPECT_NE(page().find(heading), std::string::npos) << heading;
        }
        EXPECT_EQ(text.empty(), text.find(" - ") == std::string::npos) << "table " << table;
    }
}

TEST(Surprises, EveryTraitIsNamedInItsTablesEntry) {
    const std::map<Trait, std::string> phrases{
        {Trait::changes_input, std::string{catalogue::words(Trait::changes_input)}},
        {Trait::keeps_buffer, std::string{catalogue::words(Trait::keeps_buffer)}},
        {Trait::takes_type, std::string{catalogue::words(Trait::takes_type)}},
        {Trait::takes_key, std::string{catalogue::words(Trait::takes_key)}},
        {Trait::rejects_records, "eturns `NPXLATE_"},
        {Trait::hides_failures, "the out-length was not stored"},
    };
    unsigned found = 0;
    for (unsigned table = 0; table < NPXLATE_TABLE_COUNT; ++table) {
        const std::string text = section("### Table " + std::to_string(table) + ":");
        for (const Role role : roles) {
            const Translator& translator = catalogue::of_table(table, role);
            for (const auto& [trait, phrase] : phrases) {
                if (translator.has(trait)) {
                    EXPECT_NE(text.find(phrase), std::string::npos) << "table " << table << ": " << phrase;
                    ++found;
                }
            }
        }
    }
    EXPECT_GT(found, 15U);
}

TEST(Surprises, HowATableReadsBackIsSaid) {
    for (unsigned table = 0; table < NPXLATE_TABLE_COUNT; ++table) {
        if (!has_its_own(table)) {
            continue;
        }
        const std::string text = section("### Table " + std::to_string(table) + ":");
        const Translator& reverse = catalogue::of_table(table, Role::reverse);
        EXPECT_EQ(text.find("Reads back as physical bytes") != std::string::npos, is_generic(reverse))
            << "table " << table;
        if (is_generic(reverse)) {
            continue;
        }
        const bool checks = reverse.has(Trait::checks_length);
        const std::string length = "checks its length (" + std::to_string(reverse.physical.most) + ")";
        EXPECT_EQ(text.find(length) != std::string::npos, checks) << "table " << table;
        if (reverse.logical.most > catalogue::of_table(table, Role::result).logical.most) {
            EXPECT_NE(text.find("fills " + std::to_string(reverse.logical.most)), std::string::npos)
                << "table " << table;
        }
    }
}

// "12 (result), 22 (result), ...": the tables whose translators have the trait.
std::string tables_with(Trait trait) {
    std::string list;
    for (unsigned table = 0; table < NPXLATE_TABLE_COUNT; ++table) {
        for (const Role role : roles) {
            const Translator& translator = catalogue::of_table(table, role);
            if (translator.has(trait)) {
                list += (list.empty() ? "" : ", ") + std::to_string(table) + " (" +
                        std::string{catalogue::to_string(role)} + ")";
            }
        }
    }
    return list;
}

TEST(Surprises, TheTablesThatMatterMostAreAtAGlance) {
    const std::string text = in_one_line(page());
    EXPECT_NE(text.find("| the translator changes its input | " + tables_with(Trait::changes_input) + " |"),
              std::string::npos);
    EXPECT_NE(text.find("| the buffer is not cleared, or not all of it | " + tables_with(Trait::keeps_buffer) + ";"),
              std::string::npos);
}

// "30 (12 bytes), 41 (5), ...": the tables that give back more bytes than they take.
std::string tables_that_grow() {
    std::string list;
    for (unsigned table = 0; table < NPXLATE_TABLE_COUNT; ++table) {
        const Translator& result = catalogue::of_table(table, Role::result);
        const Translator& reverse = catalogue::of_table(table, Role::reverse);
        if (!is_generic(result) && !is_generic(reverse) && result.physical == reverse.physical &&
            reverse.logical.most > result.logical.most) {
            list += (list.empty() ? "" : ", ") + std::to_string(table) + " (" + std::to_string(reverse.logical.most) +
                    (list.empty() ? " bytes)" : ")");
        }
    }
    return list;
}

// "12, 23, ...": the tables with a translator of that trait, but for reverses that only check their length.
std::string numbers_with(Trait trait) {
    std::string list;
    for (unsigned table = 0; table < NPXLATE_TABLE_COUNT; ++table) {
        if (std::ranges::any_of(roles, [&](Role role) { return catalogue::of_table(table, role).has(trait); })) {
            list += (list.empty() ? "" : ", ") + std::to_string(table);
        }
    }
    return list;
}

// The tables whose key translator writes behind the key.
std::string tables_that_write_behind() {
    std::string list;
    for (unsigned table = 0; table < NPXLATE_TABLE_COUNT; ++table) {
        for (const Role role : roles) {
            const Translator& translator = catalogue::of_table(table, role);
            const forms::Forms& forms = forms::forms_of(translator);
            if (!is_generic(translator) && std::ranges::any_of(forms.all(), [](const forms::Form& form) {
                    return form.length && form.out.size() > 8UL * *form.length;
                })) {
                list += (list.empty() ? "" : ", ") + std::to_string(table) + " (" +
                        std::string{catalogue::to_string(role)} + ")";
            }
        }
    }
    return list;
}

TEST(Surprises, TheOtherListsAtAGlanceAreWholeToo) {
    const std::string text = in_one_line(page());
    const auto expect = [&](const std::string& line) { EXPECT_NE(text.find(line), std::string::npos) << line; };
    expect("| the reverse fills a longer logical record than the result translator reads | " + tables_that_grow() +
           " |");
    expect("| the translator returns another status than 0 for some records | " + numbers_with(Trait::rejects_records) +
           ";");
    expect("| a failure shows only in the out-length that is not stored | " + numbers_with(Trait::hides_failures) +
           " |");
    expect("| the reverse takes a fourth argument | " + numbers_with(Trait::takes_type) + " (the entry type), " +
           numbers_with(Trait::takes_key) + " (the logical key of the entry) |");
    expect("| a byte behind the record is written | " + tables_that_write_behind() + ":");
}

// What is said under "Checks its length" of the other reverses.
TEST(Surprises, OnlyThoseThatAreNamedLookAtTheLength) {
    for (const Translator& translator : catalogue::translators()) {
        if (translator.role != Role::reverse || is_generic(translator)) {
            continue;
        }
        const forms::Forms& whole = forms::forms_of(translator);
        for (const std::int32_t length : {0, 1, whole.length() - 1, whole.length() + 1, 96}) {
            if (length == whole.length()) {
                continue;
            }
            const forms::Forms& forms = forms::forms_of(translator, length);
            ASSERT_EQ(forms.all().size(), translator.has(Trait::checks_length) ? 1U : whole.all().size())
                << translator.name;
            for (std::size_t i = 0; i < forms.all().size(); ++i) {
                EXPECT_EQ(forms.all()[i].status,
                          translator.has(Trait::checks_length) ? NPXLATE_INVALID : whole.all()[i].status)
                    << translator.name << " with length " << length;
            }
        }
    }
}

TEST(Surprises, WhatIsComputedIsUpToDate) { EXPECT_EQ(docs::with_fates(page()), page()) << "run scripts/surprises"; }

std::vector<docs::Statement> statements() { return docs::statements_in(contents(NPXLATE_SURPRISES_CLAIMS)); }

// The sentences that the page has under a heading, without what is computed.
std::string sentences_under(const std::string& heading) {
    std::istringstream lines{page()};
    std::string text;
    bool inside = false;
    bool computed = false;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("#")) {
            inside = line.starts_with("### " + heading + ":") || line == "## " + heading;
            continue;
        }
        computed = line.starts_with("- **") || (computed && line.starts_with("  "));
        if (inside && !computed) {
            text += (line.starts_with("- ") ? line.substr(2) : line) + " ";
        }
    }
    return in_one_line(text);
}

docs::Subject subject_of(const docs::Statement& statement) {
    const std::string table = "Table ";
    if (statement.subject.starts_with(table)) {
        return docs::subject_of_table(static_cast<unsigned>(std::stoul(statement.subject.substr(table.size()))));
    }
    return {};  // its claims name their translators
}

TEST(Surprises, EverySentenceIsHeldByAClaim) {
    std::map<std::string, std::string> by_subject;
    for (const docs::Statement& statement : statements()) {
        std::string& text = by_subject[statement.subject];
        text += (text.empty() ? "" : " ") + statement.sentence;
        EXPECT_FALSE(statement.claims.empty()) << statement.subject << ": " << statement.sentence;
    }
    for (const auto& [subject, text] : by_subject) {
        if (subject != "By name") {
            EXPECT_EQ(sentences_under(subject), text) << subject;
        }
    }
    for (unsigned table = 0; table < NPXLATE_TABLE_COUNT; ++table) {
        EXPECT_EQ(by_subject.contains("Table " + std::to_string(table)), has_its_own(table)) << "table " << table;
    }
    // A table, with a row each.
    const std::string rows = sentences_under("By name");
    std::string expected;
    for (const docs::Statement& statement : statements()) {
        expected += statement.subject == "By name" ? " | " + statement.sentence + " |" : "";
    }
    EXPECT_NE(rows.find("|---|---|" + expected), std::string::npos);
    EXPECT_EQ(rows.find("|---|---|") + 9 + expected.size(), rows.size());
}

TEST(Surprises, EveryClaimHoldsForEveryRecord) {
    unsigned held = 0;
    for (const docs::Statement& statement : statements()) {
        for (const std::string& claim : statement.claims) {
            if (claim != "-") {
                EXPECT_EQ(docs::refuted(subject_of(statement), claim), "")
                    << statement.subject << ": " << statement.sentence << "\n"
                    << claim;
                ++held;
            }
        }
    }
    EXPECT_GT(held, 400U);
}

TEST(Surprises, EveryTraitOfATranslatorWithoutTableIsNamed) {
    const std::string text = section("## By name");
    unsigned found = 0;
    for (const Translator& translator : catalogue::translators()) {
        if (catalogue::tables_of(translator).empty() && translator.traits != 0) {
            EXPECT_NE(text.find("`" + std::string{translator.name} + "`"), std::string::npos) << translator.name;
            ++found;
        }
    }
    EXPECT_GT(found, 8U);
}

// Nothing on the page has another name than the library gives it.
TEST(Surprises, NamesOnlyWhatThereIs) {
    const std::string text = page();
    const std::string header = contents(NPXLATE_HEADER);
    std::set<std::string> unknown;
    for (std::size_t at = text.find('`'); at != std::string::npos;) {
        const std::size_t end = text.find('`', at + 1);
        ASSERT_NE(end, std::string::npos);
        const std::string name = text.substr(at + 1, end - at - 1);
        const bool is_translator = name.find("xlate") != std::string::npos && name.find(' ') == std::string::npos;
        // The header has a few inline functions besides.
        const bool is_inline =
            name.ends_with("()") && header.find(" " + name.substr(0, name.size() - 1)) != std::string::npos;
        if (is_translator && !is_inline && catalogue::find(name) == nullptr) {
            unknown.insert(name);
        }
        at = text.find('`', end + 1);
    }
    EXPECT_EQ(unknown, std::set<std::string>{});
}

}  // namespace
