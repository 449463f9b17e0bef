// Every sentence of the header about records, against what the translators do.
#include <gtest/gtest.h>

#include <cctype>
#include <fstream>
#include <iterator>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "catalogue/catalogue.h"
#include "docs/claims.h"

namespace {

using catalogue::Translator;

std::string contents(const char* path) {
    std::ifstream file{path};
    return {std::istreambuf_iterator<char>{file}, {}};
}

std::vector<docs::Statement> statements() { return docs::statements_in(contents(NPXLATE_HEADER_CLAIMS)); }

// Each comment in one line: "/* Key, 3 bytes to 3: the same bytes. */"
std::string comments_in_one_line() {
    std::string text = std::regex_replace(contents(NPXLATE_HEADER), std::regex{R"(\n \*(?!/))"}, "\n");
    std::string line;
    std::istringstream words{text};
    for (std::string word; words >> word;) {
        line.append(line.empty() ? "" : " ").append(word);
    }
    return line;
}

std::vector<const Translator*> translators_of(const std::string& subject) {
    std::vector<const Translator*> found;
    std::istringstream names{subject};
    for (std::string name; names >> name;) {
        if (name.ends_with(",")) {
            name.pop_back();
        }
        if (const Translator* const translator = catalogue::find(name)) {
            found.push_back(translator);
        }
    }
    return found;
}

TEST(HeaderClaims, HoldEverySentenceOfEveryDeclaration) {
    const std::string header = comments_in_one_line();
    std::map<std::string, std::string> by_subject;
    for (const docs::Statement& statement : statements()) {
        std::string& text = by_subject[statement.subject];
        text.append(text.empty() ? "" : " ").append(statement.sentence);
        EXPECT_FALSE(statement.claims.empty()) << statement.subject << ": " << statement.sentence;
    }
    std::set<std::string_view> held;
    for (const auto& [subject, text] : by_subject) {
        const std::vector<const Translator*> translators = translators_of(subject);
        std::string declaration;
        if (!translators.empty()) {
            declaration.append(" NPXLATE_API int32_t ").append(translators.front()->name).append("(");
        }
        const std::string comment = std::string{"/* "}.append(text).append(" */").append(declaration);
        EXPECT_NE(header.find(comment), std::string::npos) << subject << ": " << text;
        for (const Translator* const translator : translators) {
            held.insert(translator->name);
        }
    }
    for (const Translator& translator : catalogue::translators()) {
        EXPECT_TRUE(held.contains(translator.name)) << translator.name;
    }
}

TEST(HeaderClaims, HoldForEveryRecord) {
    unsigned held = 0;
    for (const docs::Statement& statement : statements()) {
        const std::vector<const Translator*> translators = translators_of(statement.subject);
        const docs::Subject subject = translators.empty() ? docs::Subject{} : docs::subject_of(translators);
        for (const std::string& claim : statement.claims) {
            if (claim != "-") {
                EXPECT_EQ(docs::refuted(subject, claim), "") << statement.subject << ": " << statement.sentence << "\n"
                                                             << claim;
                ++held;
            }
        }
    }
    EXPECT_GT(held, 500U);
}

}  // namespace
