// The header's comments, against what the catalogue knows and what the translators do: titles, sizes, statuses, and
// what a caller must know about a translator beyond the common contract.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "catalogue/call.h"
#include "catalogue/catalogue.h"
#include "catalogue/example.h"

namespace {

using catalogue::Lengths;
using catalogue::Role;
using catalogue::Trait;
using catalogue::Translator;

std::string contents(const char* path) {
    std::ifstream file{path};
    return {std::istreambuf_iterator<char>{file}, {}};
}

// A comment without its marks and line breaks.
std::string in_one_line(const std::string& comment) {
    std::istringstream lines{comment};
    std::string text;
    for (std::string line; std::getline(lines, line);) {
        line = std::regex_replace(line, std::regex{R"(^(/\*| \*/?)\s*|\s*\*/$)"}, "");
        text += (text.empty() || line.empty() ? "" : " ") + line;
    }
    return text;
}

std::string capitalised(std::string_view text) {
    std::string result{text};
    result.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(result.front())));
    return result;
}

// What stands between two section comments.
struct Section {
    std::map<unsigned, std::string> tables{};  // with their titles
    std::set<std::string> by_name{};           // titles
    std::string preface{};                     // comments before which no declaration stands
};

// Declarations under one comment.
struct Entry {
    std::size_t section;
    std::string comment;
    std::vector<const Translator*> translators{};
};

struct Header {
    std::vector<Section> sections{1};
    std::vector<Entry> entries{};
};

// "Receive adjacency: table 4; CFM transmit: by name"
Section section_of(const std::string& title) {
    Section section;
    const std::regex part{R"(([^;]+): (?:table (\d+)|(by name))(?:; |$))"};
    for (std::sregex_iterator match{title.begin(), title.end(), part}, end; match != end; ++match) {
        const std::string name = capitalised((*match)[1].str());
        if ((*match)[2].matched) {
            section.tables.emplace(std::stoul((*match)[2]), name);
        } else {
            section.by_name.insert(name);
        }
    }
    return section;
}

// The name that a declaration declares, empty for one that declares no function.
std::string name_declared_by(const std::string& declaration) {
    const std::regex function{R"(^NPXLATE_API [a-z0-9_ *]*?(\w+)\()"};
    std::smatch match;
    return std::regex_search(declaration, match, function) ? match[1].str() : "";
}

Header read_header() {
    const std::string text = contents(NPXLATE_HEADER);
    Header header;
    std::string comment;
    bool used = true;
    const auto take_comment = [&](const std::string& next) {
        if (!used) {
            header.sections.back().preface += comment + " ";
        }
        comment = next;
        used = comment.starts_with("----") || comment.starts_with("====");
        if (used) {
            header.sections.push_back(section_of(std::regex_replace(comment, std::regex{"^-+ | -+$"}, "")));
        }
    };
    const auto take_declaration = [&](const std::string& name) {
        if (const Translator* const translator = catalogue::find(name)) {
            if (!used) {
                header.entries.push_back({header.sections.size() - 1, comment});
            }
            header.entries.back().translators.push_back(translator);
        }
        used = true;
    };
    for (std::size_t at = 0; at < text.size(); at = std::min(text.find('\n', at), text.size() - 1) + 1) {
        if (text.compare(at, 2, "/*") == 0) {
            const std::size_t end = text.find("*/", at) + 2;
            take_comment(in_one_line(text.substr(at, end - at)));
            at = end;
        } else if (text.compare(at, 11, "NPXLATE_API") == 0) {
            take_declaration(name_declared_by(text.substr(at, text.find(';', at) - at)));
        }
    }
    return header;
}

const Header& header() {
    static const Header instance = read_header();
    return instance;
}

std::string names_of(const Entry& entry) {
    std::string names;
    for (const Translator* translator : entry.translators) {
        names += (names.empty() ? "" : ", ") + std::string{translator->name};
    }
    return names;
}

bool says(const std::string& text, const std::string& pattern) { return std::regex_search(text, std::regex{pattern}); }

bool any_has(const Entry& entry, Trait trait) {
    return std::ranges::any_of(entry.translators, [trait](const Translator* one) { return one->has(trait); });
}

TEST(Header, DeclaresEveryTranslatorOnce) {
    std::map<std::string_view, unsigned> declared;
    for (const Entry& entry : header().entries) {
        for (const Translator* translator : entry.translators) {
            ++declared[translator->name];
        }
    }
    for (const Translator& translator : catalogue::translators()) {
        EXPECT_EQ(declared[translator.name], 1U) << translator.name;
    }
}

TEST(Header, ItsSectionsHaveTheTitlesOfTheirRecords) {
    std::map<unsigned, std::string> tables;
    std::set<std::string> by_name;
    for (const Section& section : header().sections) {
        for (const auto& [table, title] : section.tables) {
            EXPECT_TRUE(tables.emplace(table, title).second) << "table " << table << " has two sections";
        }
        by_name.insert(section.by_name.begin(), section.by_name.end());
    }
    std::map<unsigned, std::string> known_tables;
    std::set<std::string> known_by_name;
    for (unsigned table = 0; table < NPXLATE_TABLE_COUNT; ++table) {
        for (const Role role : {Role::key, Role::result, Role::reverse}) {
            if (catalogue::of_table(table, role).family != "frame") {
                known_tables[table] = capitalised(catalogue::title_of_table(table));
            }
        }
    }
    for (const Translator& translator : catalogue::translators()) {
        if (catalogue::tables_of(translator).empty()) {
            known_by_name.insert(capitalised(catalogue::title(translator)));
        }
    }
    EXPECT_EQ(tables, known_tables);
    EXPECT_EQ(by_name, known_by_name);
}

TEST(Header, DeclaresEveryTranslatorUnderItsTitle) {
    for (const Entry& entry : header().entries) {
        const Section& section = header().sections[entry.section];
        for (const Translator* translator : entry.translators) {
            const std::vector<unsigned> tables = catalogue::tables_of(*translator);
            if (tables.empty()) {
                EXPECT_TRUE(section.by_name.contains(capitalised(catalogue::title(*translator)))) << translator->name;
            } else if (translator->family != "frame") {
                EXPECT_TRUE(std::ranges::any_of(tables, [&](unsigned table) { return section.tables.contains(table); }))
                    << translator->name;
            }
        }
    }
}

// "3 bytes to 3", "8 bytes to 8 or 12": what a comment says of the sizes of its records.
std::set<std::pair<std::size_t, std::size_t>> sizes_in(const std::string& comment) {
    std::set<std::pair<std::size_t, std::size_t>> sizes;
    const std::regex phrase{R"((\d+) bytes? to (\d+)(?: or (\d+))?)"};
    for (std::sregex_iterator match{comment.begin(), comment.end(), phrase}, end; match != end; ++match) {
        sizes.emplace(std::stoul((*match)[1]), std::stoul((*match)[2]));
        if ((*match)[3].matched) {
            sizes.emplace(std::stoul((*match)[1]), std::stoul((*match)[3]));
        }
    }
    return sizes;
}

bool fits(const Translator& translator, const std::pair<std::size_t, std::size_t>& sizes) {
    return translator.in().allows(sizes.first) && translator.out().allows(sizes.second);
}

TEST(Header, SaysTheSizesOfEveryRecord) {
    for (const Entry& entry : header().entries) {
        const auto sizes = sizes_in(entry.comment);
        for (const Translator* translator : entry.translators) {
            if (!translator->in().fixed() && !translator->out().fixed()) {
                const Lengths& lengths = translator->in();
                EXPECT_TRUE(says(entry.comment,
                                 std::to_string(lengths.least) + " to " + std::to_string(lengths.most) + " bytes"))
                    << translator->name << ": " << entry.comment;
                continue;
            }
            if (translator->name == "ipv6_srh_encap_logical_res_xlate") {
                continue;  // has no record
            }
            EXPECT_TRUE(std::ranges::any_of(sizes, [&](const auto& pair) { return fits(*translator, pair); }))
                << translator->name << ": " << entry.comment;
        }
        for (const auto& pair : sizes) {
            EXPECT_TRUE(std::ranges::any_of(entry.translators, [&](const auto* one) { return fits(*one, pair); }))
                << names_of(entry) << ": " << pair.first << " bytes to " << pair.second;
        }
    }
}

// The statuses that samples of the translator's records give, but for NPXLATE_OK.
std::set<std::string> statuses_of(const Translator& translator) {
    std::set<std::string> statuses;
    if (translator.has(Trait::checks_length)) {
        statuses.emplace(catalogue::status_name(NPXLATE_INVALID));
    }
    for (const catalogue::Sample& sample : translator.samples) {
        std::vector<std::uint8_t> in = catalogue::example(translator, sample, 1);
        std::vector<std::uint8_t> out(NPXLATE_MAX_LOGICAL_LENGTH);
        std::uint32_t length = 0;
        const std::int32_t status = catalogue::call(translator, in.data(), static_cast<std::int32_t>(in.size()),
                                                    out.data(), &length, catalogue::Argument{sample.argument});
        if (status != NPXLATE_OK) {
            statuses.emplace(catalogue::status_name(status));
        }
    }
    return statuses;
}

TEST(Header, SaysWhichStatusesATranslatorReturns) {
    unsigned found = 0;
    for (const Entry& entry : header().entries) {
        std::set<std::string> said;
        const std::string text = header().sections[entry.section].preface + entry.comment;
        for (const std::int32_t status : {NPXLATE_INVALID, NPXLATE_OUT_OF_RANGE, NPXLATE_NOT_SUPPORTED}) {
            const std::string name{catalogue::status_name(status)};
            if (text.find(name) != std::string::npos) {
                said.insert(name);
            }
        }
        std::set<std::string> returned;
        for (const Translator* translator : entry.translators) {
            returned.merge(statuses_of(*translator));
        }
        // A full record of 64 bytes does not fit through the generic reverse, which the comment may say.
        if (says(entry.comment, "generic_xlate_logical_result, returns NPXLATE_INVALID for 64 bytes")) {
            returned.emplace(catalogue::status_name(NPXLATE_INVALID));
        }
        EXPECT_EQ(said, returned) << names_of(entry);
        found += returned.empty() ? 0 : 1;
    }
    EXPECT_GT(found, 25U);
}

TEST(Header, SaysWhichLengthAReverseDemands) {
    for (const Entry& entry : header().entries) {
        bool demands = false;
        for (const Translator* translator : entry.translators) {
            if (translator->role == Role::reverse && translator->has(Trait::checks_length) &&
                translator->physical.fixed()) {
                demands = true;
                EXPECT_TRUE(says(entry.comment, "NPXLATE_INVALID and writes nothing unless [^.;]*physical_length is " +
                                                    std::to_string(translator->physical.most) + "\\b"))
                    << translator->name;
            }
        }
        EXPECT_EQ(says(entry.comment, "unless [^.;]*physical_length is"), demands) << names_of(entry);
    }
}

TEST(Header, SaysWhatACallerMustKnow) {
    const std::pair<Trait, const char*> phrases[] = {
        {Trait::changes_input, "[Cc]hanges its input"},
        {Trait::keeps_length, "Does not store \\*physical_length|without out-length"},
        {Trait::keeps_buffer,
         "Clears L0-15 only|clears 8 bytes|the buffer stays as it was|not cleared|without clearing|does not clear|"
         "neither reads nor writes"},
        {Trait::takes_type, "\\*entry_type"},
        {Trait::takes_key, "fourth argument: the logical key"},
        {Trait::hides_failures, "returns NPXLATE_OK whatever"},
    };
    for (const Entry& entry : header().entries) {
        for (const auto& [trait, phrase] : phrases) {
            EXPECT_EQ(says(entry.comment, phrase), any_has(entry, trait))
                << names_of(entry) << ": " << catalogue::words(trait);
        }
        // Of several translators it is clear which one is meant.
        for (const Translator* translator : entry.translators) {
            if (translator->has(Trait::changes_input) && entry.translators.size() > 1) {
                EXPECT_TRUE(says(entry.comment,
                                 std::string{catalogue::to_string(translator->role)} + " translator changes its input"))
                    << translator->name;
            }
        }
    }
}

void expect_worded_as_by_the_tool(std::int32_t status) {
    const std::string name{catalogue::status_name(status)};
    const std::string words{catalogue::status_words(status)};
    const std::string number = std::to_string(status);
    EXPECT_TRUE(
        says(contents(NPXLATE_HEADER), name + " = " + number + ", +/\\* ([a-z0-9_]+ only: )?" + words + " \\*/"))
        << name;
    EXPECT_NE(contents(NPXLATE_CONTRACT).find("| " + number + " | `" + name + "` | " + words), std::string::npos)
        << name;
    EXPECT_NE(contents(NPXLATE_MANUAL).find(".It Dv " + name + "\n" + number + ": " + words + ".\n"), std::string::npos)
        << name;
}

TEST(Header, AndThePagesWordEachStatusAsTheToolDoes) {
    for (const std::int32_t status : {NPXLATE_OK, NPXLATE_INVALID, NPXLATE_OUT_OF_RANGE, NPXLATE_NOT_SUPPORTED}) {
        expect_worded_as_by_the_tool(status);
    }
}

}  // namespace
