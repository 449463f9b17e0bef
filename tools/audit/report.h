// What an audit found, as text, as JSON Lines and as a page.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json_fwd.hpp>

#include "audit/audit.h"
#include "audit/patterns.h"
#include "names/names.h"

namespace audit {

// One of the findings of a pattern. What does not apply is empty.
struct Finding {
    const Pattern* pattern = nullptr;
    ByteSpan key{};
    std::optional<std::uint64_t> programmed_line{};
    std::optional<std::uint64_t> held_at{};
    std::size_t held_file = 0;             // of held_at, in Result::files
    std::optional<std::uint64_t> first{};  // of duplicates and on the same side: what they repeat
    bool same_record = false;
    ByteSpan programmed{};
    ByteSpan held{};
    Explained explained = Explained::no;
    ByteSpan logical{};             // the record that was programmed; empty if it was not kept
    Bits bits{};                    // that differ
    std::vector<Origin> origins{};  // of these bits
    std::string_view reason{};
};

class Report {
public:
    using Write = std::function<void(std::string_view)>;

    // At most so many findings are listed, taken from all patterns in turn; the moving ones only if asked for. With
    // names, these stand beside the logical positions.
    Report(const Result& result, const Settings& settings, std::size_t most_findings, bool moving,
           const names::Names* names = nullptr);

    void write_text(const Write& write) const;
    // A finding a line, the summary last.
    void write_json(const Write& write) const;
    std::string page() const;

private:
    Finding finding(const Pattern& pattern, std::uint64_t member) const;
    void put_origins(Finding& finding, const Different& one) const;
    std::size_t file_of(Store::Ref ref) const;

    // What the names say of the bits that a field comes from, with the values of what is known of them.
    struct Named {
        std::string name{};  // or a part of its bits
        std::string programmed{};
        std::string held{};
    };
    const names::Record* names_of(unsigned table) const;
    std::vector<Named> named(const Finding& finding, const Origin& origin) const;
    std::string names_text(const Pattern& pattern, const Origin& origin) const;

    nlohmann::ordered_json fields_json(const Finding& finding) const;
    nlohmann::ordered_json to_json(const Pattern& pattern) const;
    nlohmann::ordered_json to_json(const Finding& finding) const;
    nlohmann::ordered_json summary_json() const;

    std::string text_of(const Finding& finding) const;
    std::string tables_text() const;
    std::string place(std::size_t file, std::uint64_t number) const;

    const Result& result_;
    const Settings& settings_;
    const names::Names* names_;
    std::vector<Pattern> patterns_;
    std::vector<std::size_t> listed_;  // how many of each pattern's
    std::uint64_t found_ = 0;          // findings in all
    std::uint64_t listed_in_all_ = 0;
    mutable std::size_t looked_up_ = 0;
};

// "1,000 lines = 990 same + 10 missing" for every file or dump. Throws std::logic_error if a sum is wrong.
std::vector<std::string> sums(const Result& result);

}  // namespace audit
