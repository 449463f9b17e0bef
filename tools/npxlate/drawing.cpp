#include "npxlate/drawing.h"

#include <unistd.h>

#include <algorithm>

#include <fmt/format.h>

#include "npxlate/output.h"
#include "npxlate/terminal.h"

namespace tool {
namespace {

constexpr std::size_t most_bytes_a_row = 8;
constexpr std::size_t label_width = 5;

std::size_t page_width() { return line_width(STDOUT_FILENO); }

// Each byte has eight bits and a wall.
std::size_t bytes_a_row() { return std::clamp((page_width() - label_width - 1) / 9, std::size_t{1}, most_bytes_a_row); }

std::string rule(std::size_t bytes, const char* left, const char* between, const char* right, Style style) {
    const std::string dashes = [&] {
        std::string text;
        for (unsigned k = 0; k < 8; ++k) {
            text += style.box ? "\u2500" : "-";
        }
        return text;
    }();
    std::string text(label_width, ' ');
    for (std::size_t i = 0; i < bytes; ++i) {
        text += (style.box ? (i == 0 ? left : between) : "+") + dashes;
    }
    return text + (style.box ? right : "+") + "\n";
}

}  // namespace

std::string painted(std::string_view text, const fmt::text_style& colour, Style style) {
    return style.colour ? fmt::format(colour, "{}", text) : std::string{text};
}

Style style_of_stdout() { return {.box = draws_boxes(STDOUT_FILENO), .colour = colours(stdout)}; }

std::string grid(char letter, std::span<const std::uint8_t> bytes, std::span<const std::size_t> marks,
                 std::span<const Mark> kinds, Style style, std::optional<std::size_t> says_nothing) {
    if (bytes.empty()) {
        return "";
    }
    const char* const wall = style.box ? "\u2502" : "|";
    const std::size_t columns = std::min(bytes.size(), bytes_a_row());
    std::string text = rule(columns, "\u250c", "\u252c", "\u2510", style);
    bool is_first = true;
    for (std::size_t first = 0; first < bytes.size(); first += columns) {
        const std::size_t count = std::min(columns, bytes.size() - first);
        const auto row = marks.subspan(8 * first, 8 * count);
        if (says_nothing && std::ranges::all_of(row, [&](std::size_t mark) { return mark == *says_nothing; })) {
            continue;
        }
        if (!is_first) {
            text += rule(columns, "\u251c", "\u253c", "\u2524", style);
        }
        is_first = false;
        std::string values = fmt::format("{:<{}}", fmt::format("{}{}", letter, first), label_width);
        std::string letters(label_width, ' ');
        for (std::size_t byte = first; byte < first + count; ++byte) {
            values += wall;
            letters += wall;
            for (unsigned bit = 8; bit-- > 0;) {
                const Mark& mark = kinds[marks[8 * byte + bit]];
                values += painted((bytes[byte] >> bit & 1) != 0 ? "1" : "0", mark.colour, style);
                letters += painted({&mark.letter, 1}, mark.colour, style);
            }
        }
        text.append(values).append(wall).append("\n").append(letters).append(wall).append("\n");
    }
    return text + rule(columns, "\u2514", "\u2534", "\u2518", style);
}

std::string legend(std::span<const std::size_t> marks, std::span<const Mark> kinds, Style style) {
    std::string text;
    std::size_t width = label_width;
    for (std::size_t i = 0; i < kinds.size(); ++i) {
        if (std::ranges::find(marks, i) == marks.end()) {
            continue;
        }
        const std::size_t needed = std::string_view{kinds[i].meaning}.size() + 4;
        if (text.empty() || width + needed > page_width()) {
            text += (text.empty() ? "" : "\n") + std::string(label_width, ' ');
            width = label_width;
        }
        width += needed;
        text += painted({&kinds[i].letter, 1}, kinds[i].colour, style) + " " + kinds[i].meaning + "  ";
    }
    text.erase(text.find_last_not_of(' ') + 1);
    return text.empty() ? text : text + "\n";
}

std::string line(std::span<const std::size_t> widths, const std::vector<std::string>& cells) {
    std::string text;
    std::string current;
    std::size_t column = 0;
    const auto end_line = [&] {
        current.erase(current.find_last_not_of(' ') + 1);
        text += current + "\n";
        current.clear();
    };
    const auto start_at = [&](std::size_t at) {
        if (current.size() > at) {
            end_line();
        }
        current.resize(at, ' ');
    };
    for (std::size_t i = 0; i + 1 < cells.size(); ++i) {
        start_at(column);
        current += cells[i] + (cells[i].empty() ? "" : " ");
        column += widths[i];
    }
    // A narrow line leaves room for some words in the last cell.
    constexpr std::size_t narrow = 60;
    constexpr std::size_t least_width = 24;
    if (page_width() < narrow) {
        column = std::min(column, std::max(page_width(), least_width) - least_width);
    }
    std::string_view rest = cells.back();
    bool first_word = true;
    if (!rest.empty()) {
        start_at(column);
    }
    while (!rest.empty()) {
        const std::string_view word = rest.substr(0, rest.find(' '));
        if (!first_word && current.size() + 1 + word.size() > page_width()) {
            end_line();
            current.assign(column, ' ');
            first_word = true;
        }
        current += (first_word ? "" : " ") + std::string{word};
        first_word = false;
        rest.remove_prefix(std::min(word.size() + 1, rest.size()));
    }
    end_line();
    return text;
}

std::string heading(std::string_view text, Style style) {
    return painted(text, fmt::text_style{fmt::emphasis::bold}, style) + "\n";
}

}  // namespace tool
