#include "io/pasted.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <string>
#include <vector>

#include <fmt/core.h>

#include "io/error.h"

namespace io {
namespace {

// Far more than any record has, and little enough to repeat a line up to there.
constexpr std::size_t most_bytes = std::size_t{1} << 20;

bool is_blank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\v' || c == '\f'; }

bool is_hex(std::string_view text, std::size_t at) { return at < text.size() && hex_digit(text[at]).has_value(); }

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && is_blank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && is_blank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

// A group of digits.
struct Group {
    std::size_t at;           // in the whole text
    std::string_view digits;  // without what may stand before them
    bool prefixed = false;    // by 0x

    std::size_t bytes() const { return (digits.size() + 1) / 2; }
};

bool is_word_size(std::size_t digits) { return digits == 4 || digits == 8 || digits == 16; }

// The group that begins there, up to what is no digit; its digits are empty if there is none.
Group group_at(std::string_view text, std::size_t at) {
    const bool prefixed = at + 1 < text.size() && text[at] == '0' && (text[at + 1] | 0x20) == 'x';
    const std::size_t first = at + (prefixed ? 2 : 0);
    std::size_t end = first;
    while (is_hex(text, end)) {
        ++end;
    }
    return {at, text.substr(first, end - first), prefixed};
}

std::size_t end_of(const Group& group) { return group.at + (group.prefixed ? 2 : 0) + group.digits.size(); }

void append_bytes(const Group& group, std::string_view text, Bytes& bytes) {
    std::string_view digits = group.digits;
    if (digits.size() == 1 && group.prefixed) {
        bytes.push_back(hex_digit(digits.front()).value());
        return;
    }
    if (digits.size() % 2 != 0) {
        throw WrongInput{fmt::format("bad hex: expected two digits for each byte, found {} digit{} at {}",
                                     digits.size(), digits.size() == 1 ? "" : "s", place_in(text, group.at))};
    }
    for (; !digits.empty(); digits.remove_prefix(2)) {
        bytes.push_back(static_cast<std::uint8_t>(hex_digit(digits[0]).value() << 4 | hex_digit(digits[1]).value()));
    }
}

void append_word(const Group& group, const Words& words, std::string_view text, Bytes& bytes) {
    const std::size_t digits = 2 * words.size;
    if (group.prefixed ? group.digits.size() > digits : group.digits.size() != digits) {
        throw WrongInput{fmt::format("bad hex: expected words of {} bytes, {} digits each, found {} digit{} at {}",
                                     words.size, digits, group.digits.size(), group.digits.size() == 1 ? "" : "s",
                                     place_in(text, group.at))};
    }
    Bytes word;
    const std::string padded = std::string(digits - group.digits.size(), '0') + std::string{group.digits};
    append_bytes({group.at, padded}, text, word);
    if (!words.big_endian) {
        std::ranges::reverse(word);
    }
    bytes.insert(bytes.end(), word.begin(), word.end());
}

[[noreturn]] void ask_for_words(const Group& group, std::string_view what, std::string_view text) {
    const std::size_t size = group.digits.size() <= 4 ? 2 : group.digits.size() <= 8 ? 4 : 8;
    throw WrongInput{
        fmt::format("{} at {}: expected --words {} if they are words in host order, --words {}be if "
                    "they are big-endian",
                    what, place_in(text, group.at), size, size)};
}

[[noreturn]] void fail_at(std::string_view text, std::size_t at) {
    throw WrongInput{
        fmt::format("bad hex: expected a hex digit, found {} at {}", shown_character(text[at]), place_in(text, at))};
}

// ---- Dumps: lines that begin with an address ----

struct DumpLine {
    std::size_t at;         // in the whole text
    Group address{};        // without digits: the line "*", in place of lines like the one before
    bool by_colon = false;  // the address has one behind it
    std::vector<Group> groups{};
    bool has_text = false;  // beside the bytes

    bool repeats() const { return address.digits.empty(); }
    std::size_t bytes() const {
        std::size_t count = 0;
        for (const Group& group : groups) {
            count += group.bytes();
        }
        return count;
    }
};

// What dumps print beside bytes.
std::string as_text(const Bytes& bytes) {
    std::string text;
    for (const std::uint8_t byte : bytes) {
        text += byte >= 0x20 && byte < 0x7f ? static_cast<char>(byte) : '.';
    }
    return text;
}

// Whether that is the text of these bytes, as they are printed or as words of the host.
bool is_text_of(std::string_view beside, const std::vector<Group>& groups, std::string_view text) {
    constexpr std::size_t most_groups_of_a_line = 256;
    if (groups.size() > most_groups_of_a_line) {
        return false;
    }
    Bytes printed;
    Bytes turned;
    for (const Group& group : groups) {
        if (group.digits.size() % 2 != 0) {
            return false;
        }
        append_bytes(group, text, printed);
        append_word(group, {group.bytes()}, text, turned);
    }
    return trimmed(beside) == trimmed(as_text(printed)) || trimmed(beside) == trimmed(as_text(turned));
}

// The bytes behind the address, from there to the end of the line.
void read_dump_line(std::string_view text, std::size_t at, std::size_t end, DumpLine& line) {
    while (true) {
        const std::size_t gap = at;
        while (at < end && is_blank(text[at])) {
            ++at;
        }
        if (at == end) {
            return;
        }
        const std::string_view rest = trimmed(text.substr(at, end - at));
        const bool wide_gap = at - gap >= 2 || text[gap] == '\t';
        if (!line.groups.empty() && ((rest.size() > 1 && rest.front() == '|' && rest.back() == '|') ||
                                     (rest.size() > 1 && rest.front() == '>' && rest.back() == '<') ||
                                     (wide_gap && is_text_of(rest, line.groups, text)))) {
            line.has_text = true;
            return;
        }
        if (text[at] == '#') {
            return;
        }
        const Group group = group_at(text.substr(0, end), at);
        const std::size_t behind = end_of(group);
        if (group.digits.empty() || (behind < end && !is_blank(text[behind]))) {
            fail_at(text, group.digits.empty() && group.prefixed ? at : std::min(behind, end - 1));
        }
        line.groups.push_back(group);
        at = behind;
    }
}

// The address at the beginning of a line: digits, perhaps the name of what is there as a debugger prints it, a colon
// and something behind it. Or, for a bare one, nothing but digits.
std::optional<DumpLine> begin_dump_line(std::string_view text, std::size_t begin, std::size_t end, bool bare) {
    std::size_t at = begin;
    while (at < end && is_blank(text[at])) {
        ++at;
    }
    const std::string_view line = text.substr(0, end);
    DumpLine result{.at = at, .address = group_at(line, at)};
    std::size_t behind = end_of(result.address);
    if (result.address.digits.empty()) {
        return std::nullopt;
    }
    if (bare) {
        constexpr std::size_t least_digits = 4;
        if (result.address.prefixed || result.address.digits.size() < least_digits ||
            (behind < end && !is_blank(text[behind]))) {
            return std::nullopt;
        }
        read_dump_line(text, behind, end, result);
        return result;
    }
    if (line.substr(behind).starts_with(" <")) {
        behind = std::min(line.find('>', behind), end - 1) + 1;
    }
    if (behind + 1 >= end || text[behind] != ':' || !is_blank(text[behind + 1]) ||
        trimmed(line.substr(behind + 1)).empty()) {
        return std::nullopt;
    }
    result.by_colon = true;
    read_dump_line(text, behind + 1, end, result);
    return result;
}

struct Lines {
    struct Line {
        std::size_t begin;
        std::size_t end;
    };
    std::vector<Line> lines;

    // All but those that are blank or only a comment.
    explicit Lines(std::string_view text) {
        for (std::size_t begin = 0; begin <= text.size();) {
            const std::size_t end = std::min(text.find('\n', begin), text.size());
            const std::string_view line = trimmed(text.substr(begin, end - begin));
            if (!line.empty() && !line.starts_with('#')) {
                lines.push_back({begin, end});
            }
            begin = end + 1;
        }
    }
};

std::optional<std::uint64_t> number(std::string_view digits, int base) {
    std::uint64_t value = 0;
    const auto [stop, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value, base);
    return error == std::errc{} && stop == digits.data() + digits.size() ? std::optional{value} : std::nullopt;
}

// How many bytes there are from the beginning of the first line to that of each, by their addresses.
std::optional<std::vector<std::uint64_t>> offsets(const std::vector<DumpLine>& dump, int base) {
    std::vector<std::uint64_t> result;
    std::optional<std::uint64_t> first;
    for (const DumpLine& line : dump) {
        if (line.repeats()) {
            result.push_back(0);
            continue;
        }
        const std::optional<std::uint64_t> value = number(line.address.digits, base);
        if (!value || (first && *value < *first)) {
            return std::nullopt;
        }
        first = first.value_or(*value);
        result.push_back(*value - *first);
    }
    return result;
}

// Whether each line begins where the one before ends. A last line without bytes says where the dump ends, which may be
// within a word.
bool follow_each_other(const std::vector<DumpLine>& dump, const std::vector<std::uint64_t>& offset) {
    for (std::size_t i = 1; i < dump.size(); ++i) {
        if (dump[i].repeats()) {
            continue;
        }
        const DumpLine& before = dump[i - 1];
        if (before.repeats()) {
            const std::size_t repeated = i < 2 ? 0 : dump[i - 2].bytes();
            if (repeated == 0 || offset[i] > most_bytes || offset[i] <= offset[i - 2] ||
                (offset[i] - offset[i - 2]) % repeated != 0) {
                return false;
            }
            continue;
        }
        const std::uint64_t end = offset[i - 1] + before.bytes();
        const bool within_word = dump[i].groups.empty() && i + 1 == dump.size() && !before.groups.empty() &&
                                 offset[i] < end && end - offset[i] < before.groups.back().bytes();
        if (before.groups.empty() || (offset[i] != end && !within_word)) {
            return false;
        }
    }
    return !dump.back().repeats();
}

// In which ways addresses may be written. od has octal and decimal ones of seven digits, hexdump hexadecimal ones of as
// many.
std::vector<int> bases_of(const DumpLine& line) {
    constexpr std::size_t digits_of_od = 7;
    if (line.by_colon) {
        return {16, 10};
    }
    return line.address.digits.size() == digits_of_od ? std::vector{16, 8, 10} : std::vector{16};
}

// The one in which the lines follow each other. Where lines were left out, more than one may do.
std::optional<std::vector<std::uint64_t>> consistent_offsets(const std::vector<DumpLine>& dump) {
    std::optional<std::vector<std::uint64_t>> found;
    for (const int base : bases_of(dump.front())) {
        const auto result = offsets(dump, base);
        if (!result || !follow_each_other(dump, *result) || result == found) {
            continue;
        }
        if (found) {
            throw WrongInput{
                "the lines that * stands for may be more or fewer: expected a dump of all lines (od -v, hexdump -v)"};
        }
        found = result;
    }
    return found;
}

// In a dump, whether the bytes are words. Those that xxd joins by two are in order.
void expect_bytes(const std::vector<DumpLine>& dump, std::string_view text) {
    for (const DumpLine& line : dump) {
        for (const Group& group : line.groups) {
            if (is_word_size(group.digits.size()) && (group.prefixed || !line.by_colon || group.digits.size() > 4)) {
                ask_for_words(group, fmt::format("groups of {} bytes behind an address", group.bytes()), text);
            }
        }
    }
}

Bytes bytes_of(const std::vector<DumpLine>& dump, const std::vector<std::uint64_t>& offset,
               const std::optional<Words>& words, std::string_view text) {
    if (!words) {
        expect_bytes(dump, text);
    }
    Bytes bytes;
    Bytes line_bytes;
    for (std::size_t i = 0; i < dump.size(); ++i) {
        const DumpLine& line = dump[i];
        if (line.repeats()) {
            while (bytes.size() < offset[i + 1]) {
                bytes.insert(bytes.end(), line_bytes.begin(), line_bytes.end());
            }
            bytes.resize(offset[i + 1]);
            continue;
        }
        if (line.groups.empty() && i != 0) {
            bytes.resize(offset[i]);  // the end, which may be within a word
            continue;
        }
        line_bytes.clear();
        for (const Group& group : line.groups) {
            if (words) {
                append_word(group, *words, text, line_bytes);
            } else {
                append_bytes(group, text, line_bytes);
            }
        }
        bytes.insert(bytes.end(), line_bytes.begin(), line_bytes.end());
    }
    return bytes;
}

// A dump whose addresses have colons; nothing if no line has such an address.
std::optional<Bytes> parse_colon_dump(std::string_view text, const Lines& all, const std::optional<Words>& words) {
    const auto& lines = all.lines;
    const auto has_address = [&](const Lines::Line& line) {
        return begin_dump_line(text, line.begin, line.end, false).has_value();
    };
    if (lines.empty() || !has_address(lines.front())) {
        return std::nullopt;
    }
    std::vector<DumpLine> dump;
    for (const Lines::Line& line : lines) {
        if (trimmed(text.substr(line.begin, line.end - line.begin)) == "*") {
            dump.push_back({.at = line.begin});
        } else if (auto read = begin_dump_line(text, line.begin, line.end, false)) {
            dump.push_back(std::move(*read));
        } else {
            throw WrongInput{
                fmt::format("expected an address as on the lines before at {}", place_in(text, line.begin))};
        }
    }
    const auto offset = consistent_offsets(dump);
    if (!offset) {
        throw WrongInput{
            "the addresses do not follow each other: expected all lines of one dump, in their order, from the first "
            "byte "
            "of the record to its last"};
    }
    return bytes_of(dump, *offset, words, text);
}

// The same for addresses without anything that says that they are; nothing if they may be bytes.
std::optional<Bytes> parse_bare_dump(std::string_view text, const Lines& all, const std::optional<Words>& words) {
    std::vector<DumpLine> dump;
    for (const Lines::Line& line : all.lines) {
        if (trimmed(text.substr(line.begin, line.end - line.begin)) == "*") {
            dump.push_back({.at = line.begin});
            continue;
        }
        try {
            auto read = begin_dump_line(text, line.begin, line.end, true);
            if (!read || (!dump.empty() && dump.front().address.digits.size() != read->address.digits.size())) {
                return std::nullopt;
            }
            dump.push_back(std::move(*read));
        } catch (const WrongInput&) {
            return std::nullopt;
        }
    }
    const bool all_texts = std::ranges::all_of(
        dump, [](const DumpLine& line) { return line.has_text || line.repeats() || line.groups.empty(); });
    const bool one_width = std::ranges::any_of(dump, [](const DumpLine& line) {
        return std::ranges::any_of(
            line.groups, [&](const Group& group) { return group.digits.size() == line.address.digits.size(); });
    });
    if (dump.empty() || dump.front().groups.empty() || (!all_texts && (dump.size() < 2 || one_width))) {
        return std::nullopt;
    }
    const auto offset = consistent_offsets(dump);
    return offset ? std::optional{bytes_of(dump, *offset, words, text)} : std::nullopt;
}

// Whether each line begins with what looks like an address, wider than the groups that follow, which have one width.
void refuse_likely_addresses(std::string_view text, const Lines& all) {
    constexpr std::size_t least_digits = 6;
    for (const Lines::Line& line : all.lines) {
        std::optional<DumpLine> read;
        try {
            read = begin_dump_line(text, line.begin, line.end, true);
        } catch (const WrongInput&) {
            return;
        }
        if (read && read->groups.empty() && line.begin != all.lines.front().begin) {
            continue;  // where the dump ends
        }
        if (!read || read->groups.size() < 2 || read->address.digits.size() < least_digits) {
            return;
        }
        const std::size_t width = read->groups.front().digits.size();
        if (width >= read->address.digits.size() || (width != 2 && !is_word_size(width)) ||
            !std::ranges::all_of(read->groups, [&](const Group& group) { return group.digits.size() == width; })) {
            return;
        }
    }
    if (!all.lines.empty()) {
        const std::size_t at = begin_dump_line(text, all.lines.front().begin, all.lines.front().end, true)->at;
        throw WrongInput{
            fmt::format("{} at {} may be an address or bytes: expected a colon behind an address, all lines of the "
                        "dump, or bytes alone",
                        group_at(text, at).digits, place_in(text, at))};
    }
}

// ---- Bytes alone, an array, a MAC address ----

// The same text with blanks in place of comments. What is a word of C before or behind the braces of an array, too.
std::string without_comments(std::string_view text) {
    std::string result{text};
    const auto blank = [&](std::size_t begin, std::size_t end) {
        for (std::size_t i = begin; i < std::min(end, result.size()); ++i) {
            result[i] = result[i] == '\n' ? '\n' : ' ';
        }
    };
    for (std::size_t at = 0; at < text.size(); ++at) {
        const std::string_view rest = text.substr(at);
        if (rest.starts_with('#') || rest.starts_with("//")) {
            const std::size_t end = std::min(text.find('\n', at), text.size());
            blank(at, end);
            at = end;
        } else if (rest.starts_with("/*")) {
            const std::size_t end = text.find("*/", at + 2);
            if (end == std::string_view::npos) {
                throw WrongInput{fmt::format("expected the end of the comment at {}", place_in(text, at))};
            }
            blank(at, end + 2);
            at = end + 1;
        }
    }
    if (const std::size_t open = result.find('{'); open != std::string::npos) {
        blank(0, open);
        std::size_t depth = 0;
        std::size_t close = open;
        for (; close < result.size(); ++close) {
            depth += result[close] == '{' ? 1 : 0;
            depth -= result[close] == '}' ? 1 : 0;
            if (depth == 0) {
                break;
            }
        }
        if (close == result.size()) {
            throw WrongInput{fmt::format("expected the closing brace of the array at {}", place_in(text, open))};
        }
        if (const std::size_t other = result.find('{', close); other != std::string::npos) {
            throw WrongInput{fmt::format("expected one array, found another at {}", place_in(text, other))};
        }
        blank(close, result.size());
    }
    return result;
}

// " <repeats 12 times>", as a debugger prints equal elements of an array.
struct Repeat {
    std::size_t times = 1;
    std::size_t length = 0;  // of that text
};

Repeat repeat_at(std::string_view text) {
    constexpr std::string_view before = " <repeats ";
    constexpr std::string_view behind = " times>";
    if (!text.starts_with(before)) {
        return {};
    }
    const std::size_t end = text.find(behind);
    if (end == std::string_view::npos) {
        return {};
    }
    const auto times = number(text.substr(before.size(), end - before.size()), 10);
    return times && *times <= most_bytes ? Repeat{*times, end + behind.size()} : Repeat{};
}

// Characters that may stand between groups, any number of them.
bool separates(char c) { return is_blank(c) || std::string_view{"\n,;\"'{}[]"}.find(c) != std::string_view::npos; }

// The end of a group, behind which one of the characters that join the groups of an address may stand.
void check_joint(std::string_view text, const Group& group) {
    const std::size_t at = end_of(group);
    if (at >= text.size() || separates(text[at])) {
        return;
    }
    const char c = text[at];
    if (c == ':') {
        if (text.substr(at + 1).starts_with(':')) {
            throw WrongInput{fmt::format("bad hex: expected every byte, found the short form of an address at {}",
                                         place_in(text, at))};
        }
        return;
    }
    if ((c != '-' && c != '.') || !is_hex(text, at + 1)) {
        fail_at(text, at);
    }
    constexpr std::size_t digits_between_dots = 4;
    if (c == '.' &&
        (group.digits.size() != digits_between_dots || group_at(text, at + 1).digits.size() != digits_between_dots)) {
        throw WrongInput{fmt::format(
            "bad hex: expected four digits before and behind a dot, as in a MAC address, at {}", place_in(text, at))};
    }
}

Bytes parse_plain(std::string_view original, const std::optional<Words>& words) {
    const std::string text = without_comments(original);
    const bool array = text.find('{') != std::string::npos || text.find('[') != std::string::npos;
    std::vector<Group> groups;
    for (std::size_t at = 0; at < text.size();) {
        if (separates(text[at]) || text[at] == ':' ||
            ((text[at] == '-' || text[at] == '.') && !groups.empty() && end_of(groups.back()) == at)) {
            ++at;
            continue;
        }
        const Group group = group_at(text, at);
        if (group.digits.empty()) {
            if (group.prefixed && (at + 2 == text.size() || separates(text[at + 2]))) {
                throw WrongInput{fmt::format("bad hex: expected digits after the 0x at {}", place_in(original, at))};
            }
            fail_at(original, group.prefixed ? at + 2 : at);
        }
        const Repeat repeat = repeat_at(std::string_view{text}.substr(end_of(group)));
        if (repeat.length == 0) {
            check_joint(text, group);
        }
        if (array && !group.prefixed && !words) {
            throw WrongInput{fmt::format("bad hex: expected 0x before each byte of an array, found {} at {}",
                                         group.digits.substr(0, 20), place_in(original, at))};
        }
        if (groups.size() + repeat.times > most_bytes) {
            throw WrongInput{"too many bytes: expected those of one record"};
        }
        groups.insert(groups.end(), repeat.times, group);
        at = end_of(group) + repeat.length;
    }
    const bool all_words = groups.size() > 1 && std::ranges::all_of(groups, [&](const Group& group) {
                               return group.prefixed && is_word_size(group.digits.size()) &&
                                      group.digits.size() == groups.front().digits.size();
                           });
    Bytes bytes;
    for (const Group& group : groups) {
        if (words) {
            append_word(group, *words, text, bytes);
            continue;
        }
        if (all_words || (array && group.digits.size() > 2)) {
            ask_for_words(group, fmt::format("values of {} bytes", group.bytes()), original);
        }
        append_bytes(group, text, bytes);
    }
    return bytes;
}

}  // namespace

std::optional<Words> parse_words(std::string_view text) {
    for (const std::size_t size : {std::size_t{2}, std::size_t{4}, std::size_t{8}}) {
        for (const bool big_endian : {false, true}) {
            if (text == fmt::format("{}{}", size, big_endian ? "be" : "")) {
                return Words{size, big_endian};
            }
        }
    }
    return std::nullopt;
}

Bytes parse_pasted(std::string_view text, const std::optional<Words>& words) {
    constexpr std::string_view byte_order_mark = "\xef\xbb\xbf";
    if (text.starts_with(byte_order_mark)) {
        text.remove_prefix(byte_order_mark.size());
    }
    const Lines lines{text};
    if (auto bytes = parse_colon_dump(text, lines, words)) {
        return *bytes;
    }
    if (auto bytes = parse_bare_dump(text, lines, words)) {
        return *bytes;
    }
    refuse_likely_addresses(text, lines);
    return parse_plain(text, words);
}

bool is_binary(std::string_view content) {
    if (content.starts_with("\xff\xfe") || content.starts_with("\xfe\xff")) {
        const bool little = content.front() == '\xff';
        bool wide = content.size() > 2 && content.size() % 2 == 0;
        for (std::size_t i = 2; i < content.size() && wide; i += 2) {
            wide = content[i + (little ? 1 : 0)] == '\0' && content[i + (little ? 0 : 1)] != '\0';
        }
        if (wide) {
            throw WrongInput{"the text is in UTF-16: expected ASCII or UTF-8"};
        }
    }
    return std::ranges::any_of(content, [](char c) {
        const auto value = static_cast<unsigned char>(c);
        return value >= 0x80 || value == 0x7f || (value < 0x20 && (value < '\t' || value > '\r'));
    });
}

}  // namespace io
