#include "npxlate/suggest.h"

#include <algorithm>
#include <cctype>
#include <numeric>
#include <utility>

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace tool {
namespace {

constexpr std::size_t most_suggested = 3;
constexpr std::size_t longest_worth_comparing = 100;

// Without what separates words, which people leave out or mix up.
std::string letters(std::string_view text) {
    std::string result;
    for (const char c : text) {
        if (std::isalnum(static_cast<unsigned char>(c)) != 0) {
            result += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        }
    }
    return result;
}

// How many characters to insert, delete or replace, or to exchange with the next, to come from one text to the other.
std::size_t distance(std::string_view a, std::string_view b) {
    std::vector<std::size_t> before(b.size() + 1);
    std::vector<std::size_t> row(b.size() + 1);
    std::vector<std::size_t> next(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < a.size(); ++i) {
        next[0] = i + 1;
        for (std::size_t j = 0; j < b.size(); ++j) {
            next[j + 1] = std::min({row[j] + (a[i] == b[j] ? 0 : 1), next[j] + 1, row[j + 1] + 1});
            if (i > 0 && j > 0 && a[i] == b[j - 1] && a[i - 1] == b[j]) {
                next[j + 1] = std::min(next[j + 1], before[j - 1] + 1);
            }
        }
        std::swap(before, row);
        std::swap(row, next);
    }
    return row.back();
}

}  // namespace

std::vector<std::string> nearest(std::string_view typed, const std::vector<std::string>& candidates) {
    const std::string wanted = letters(typed);
    if (wanted.empty() || wanted.size() > longest_worth_comparing) {
        return {};
    }
    enum Kind : std::size_t { begins, part, spelt };
    std::vector<std::pair<std::pair<std::size_t, std::size_t>, std::string>> found;
    for (const std::string& candidate : candidates) {
        const std::string name = letters(candidate);
        const std::size_t most_wrong = std::max<std::size_t>(wanted.size() / 3, wanted.size() > 2 ? 2 : 1);
        if (name.starts_with(wanted)) {
            found.push_back({{begins, name.size()}, candidate});
        } else if (wanted.size() > 1 && name.find(wanted) != std::string::npos) {
            found.push_back({{part, name.find(wanted)}, candidate});
        } else if (const std::size_t away = distance(wanted, name); away <= most_wrong) {
            found.push_back({{spelt, away}, candidate});
        }
    }
    std::ranges::stable_sort(found, {}, [](const auto& one) { return one.first; });
    std::vector<std::string> result;
    for (const auto& [rank, candidate] : found) {
        // What is spelt otherwise is not meant if something fits, nor is what is spelt worse.
        const auto& best = found.front().first;
        if (rank.first > best.first || (rank.first == spelt && rank.second > best.second) ||
            result.size() == most_suggested) {
            break;
        }
        result.push_back(candidate);
    }
    return result;
}

std::string did_you_mean(std::string_view typed, const std::vector<std::string>& candidates) {
    const std::vector<std::string> names = nearest(typed, candidates);
    if (names.empty()) {
        return "";
    }
    const auto last = names.end() - 1;
    const std::string before = fmt::format("{}", fmt::join(names.begin(), last, ", "));
    return fmt::format("; did you mean {}{}{}?", before, before.empty() ? "" : " or ", *last);
}

}  // namespace tool
