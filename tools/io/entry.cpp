#include "io/entry.h"

#include <algorithm>
#include <array>
#include <optional>

#include <fmt/core.h>

namespace io {
namespace {

constexpr bool is_digit(char c) { return c >= '0' && c <= '9'; }

// The value of a hexadecimal digit.
constexpr std::optional<unsigned> hex_value(char c) {
    if (is_digit(c)) {
        return static_cast<unsigned>(c - '0');
    }
    const char lower = static_cast<char>(c | 0x20);
    if (lower >= 'a' && lower <= 'f') {
        return static_cast<unsigned>(lower - 'a' + 10);
    }
    return std::nullopt;
}

// The characters that a string holds as they are, one byte each.
constexpr std::array<bool, 256> plain_characters = [] {
    std::array<bool, 256> plain{};
    for (std::size_t c = 0x20; c < 0x80; ++c) {
        plain[c] = c != '"' && c != '\\';
    }
    return plain;
}();

// How many bytes the character of UTF-8 has that stands there; 0 if it is none.
std::size_t character_size(std::string_view text) {
    const auto byte = [&](std::size_t i) { return i < text.size() ? static_cast<unsigned char>(text[i]) : 0U; };
    const unsigned first = byte(0);
    const std::size_t size = first < 0x80 ? 1 : first < 0xc2 ? 0 : first < 0xe0 ? 2 : first < 0xf0 ? 3 : 4;
    if (first > 0xf4) {
        return 0;
    }
    for (std::size_t i = 1; i < size; ++i) {
        if ((byte(i) & 0xc0) != 0x80) {
            return 0;
        }
    }
    // What could be written shorter, half of a pair of UTF-16, and what is beyond the last character.
    const bool wrong = (first == 0xe0 && byte(1) < 0xa0) || (first == 0xed && byte(1) > 0x9f) ||
                       (first == 0xf0 && byte(1) < 0x90) || (first == 0xf4 && byte(1) > 0x8f);
    return wrong ? 0 : size;
}

// Goes through the text of a line as the grammar of JSON does.
class Scanner {
public:
    explicit Scanner(std::string_view text) : text_{text} {}

    bool at_end() const { return at_ == text_.size(); }
    bool next_is(char c) const { return at_ < text_.size() && text_[at_] == c; }
    std::size_t at() const { return at_; }
    std::string_view since(std::size_t begin) const { return text_.substr(begin, at_ - begin); }

    void blanks() {
        while (at_ < text_.size() &&
               (text_[at_] == ' ' || text_[at_] == '\t' || text_[at_] == '\r' || text_[at_] == '\n')) {
            ++at_;
        }
    }

    bool take(char c) {
        if (!next_is(c)) {
            return false;
        }
        ++at_;
        return true;
    }

    void expect(char c, std::string_view what) {
        if (!take(c)) {
            fail(what);
        }
    }

    // What stands between the quotes.
    std::string_view string(std::string_view what) {
        expect('"', what);
        const std::size_t begin = at_;
        while (true) {
            while (at_ < text_.size() && plain_characters[static_cast<unsigned char>(text_[at_])]) {
                ++at_;
            }
            if (next_is('"')) {
                break;
            }
            if (take('\\')) {
                escape();
            } else if (at_end() || static_cast<unsigned char>(text_[at_]) < 0x20) {
                fail("the end of a string, '\"'");
            } else if (const std::size_t size = character_size(text_.substr(at_))) {
                at_ += size;
            } else {
                fail("text in UTF-8");
            }
        }
        ++at_;
        return text_.substr(begin, at_ - 1 - begin);
    }

    // Any value, and whatever is in it.
    void value() {
        open_.clear();
        do {
            blanks();
            if (take('{')) {
                blanks();
                if (!take('}')) {
                    open_.push_back('}');
                    name();
                    continue;
                }
            } else if (take('[')) {
                blanks();
                if (!take(']')) {
                    open_.push_back(']');
                    continue;
                }
            } else {
                scalar();
            }
            close();
        } while (!open_.empty());
    }

    // A name and its colon.
    std::string_view name() {
        blanks();
        const std::string_view written = string("a member's name, in quotes");
        blanks();
        expect(':', "':'");
        return written;
    }

    [[noreturn]] void fail(std::string_view expected) const {
        const std::string_view before = text_.substr(0, at_);
        const auto column =
            1 + std::ranges::count_if(before, [](char c) { return (static_cast<unsigned char>(c) & 0xc0) != 0x80; });
        if (at_end()) {
            throw BadJson{fmt::format("bad JSON: expected {}, but the line ends at column {}", expected, column), true};
        }
        const auto c = static_cast<unsigned char>(text_[at_]);
        throw BadJson{
            fmt::format("bad JSON: expected {}, found {} at column {}", expected,
                        c > 0x20 && c < 0x7f ? fmt::format("'{}'", text_[at_]) : fmt::format("the byte 0x{:02x}", c),
                        column),
            false};
    }

private:
    // Behind a value: the ends of what it ends, or the comma before the next.
    void close() {
        while (!open_.empty()) {
            blanks();
            if (take(',')) {
                if (open_.back() == '}') {
                    name();
                }
                return;
            }
            expect(open_.back(), open_.back() == '}' ? "',' or '}'" : "',' or ']'");
            open_.pop_back();
        }
    }

    void escape() {
        if (take('u')) {
            for (int i = 0; i < 4; ++i) {
                if (at_end() || !hex_value(text_[at_])) {
                    fail("four hex digits");
                }
                ++at_;
            }
        } else if (at_end() || std::string_view{"\"\\/bfnrt"}.find(text_[at_]) == std::string_view::npos) {
            fail("an escape that JSON has");
        } else {
            ++at_;
        }
    }

    void scalar() {
        if (next_is('"')) {
            string("a value");
        } else if (next_is('-') || (!at_end() && is_digit(text_[at_]))) {
            number();
        } else {
            for (const std::string_view word : {"true", "false", "null"}) {
                if (next_is(word.front())) {
                    for (const char c : word) {
                        expect(c, word);
                    }
                    return;
                }
            }
            fail("a value");
        }
    }

    void number() {
        take('-');
        if (!take('0')) {
            digits();
        }
        if (take('.')) {
            digits();
        }
        if (take('e') || take('E')) {
            if (!take('+')) {
                take('-');
            }
            digits();
        }
    }

    void digits() {
        const std::size_t begin = at_;
        while (at_ < text_.size() && is_digit(text_[at_])) {
            ++at_;
        }
        if (at_ == begin) {
            fail("a digit");
        }
    }

    std::string_view text_;
    std::size_t at_ = 0;
    std::vector<char> open_;  // the ends of the objects and arrays that the value is in
};

void append_utf8(std::string& text, unsigned character) {
    const auto put = [&](unsigned byte) { text += static_cast<char>(byte); };
    if (character < 0x80) {
        put(character);
    } else if (character < 0x800) {
        put(0xc0 | character >> 6);
        put(0x80 | (character & 0x3f));
    } else if (character < 0x10000) {
        put(0xe0 | character >> 12);
        put(0x80 | (character >> 6 & 0x3f));
        put(0x80 | (character & 0x3f));
    } else {
        put(0xf0 | character >> 18);
        put(0x80 | (character >> 12 & 0x3f));
        put(0x80 | (character >> 6 & 0x3f));
        put(0x80 | (character & 0x3f));
    }
}

// The four digits of an escape.
unsigned four_digits(std::string_view text) {
    unsigned value = 0;
    for (const char c : text.substr(0, 4)) {
        value = value << 4 | hex_value(c).value();
    }
    return value;
}

// The text of a string that has been scanned, with its escapes replaced. Half of a pair of UTF-16 is no character, and
// becomes the one that stands for that.
std::string unescaped(std::string_view written) {
    constexpr unsigned no_character = 0xfffd;
    std::string text;
    while (!written.empty()) {
        const std::size_t plain = std::min(written.find('\\'), written.size());
        text += written.substr(0, plain);
        written.remove_prefix(plain);
        if (written.empty()) {
            break;
        }
        const char escape = written[1];
        written.remove_prefix(2);
        if (escape != 'u') {
            constexpr std::string_view letters = "bfnrt";
            const std::size_t letter = letters.find(escape);
            text += letter == std::string_view::npos ? escape : "\b\f\n\r\t"[letter];
            continue;
        }
        unsigned character = four_digits(written);
        written.remove_prefix(4);
        if (character >= 0xd800 && character < 0xdc00 && written.starts_with("\\u")) {
            const unsigned low = four_digits(written.substr(2));
            if (low >= 0xdc00 && low < 0xe000) {
                character = 0x10000 + ((character & 0x3ff) << 10) + (low & 0x3ff);
                written.remove_prefix(6);
            }
        }
        append_utf8(text, character >= 0xd800 && character < 0xe000 ? no_character : character);
    }
    return text;
}

// Whether the text is JSON as far as it goes.
bool begins_json(std::string_view text) {
    Scanner scanner{text};
    try {
        scanner.value();
        scanner.blanks();
    } catch (const BadJson& error) {
        return error.incomplete;
    }
    return scanner.at_end();
}

constexpr std::string_view one_a_line = "expected an entry a line (jq -c . writes it so)";

}  // namespace

void Entry::parse(std::string_view line) {
    members_.clear();
    names_.clear();
    Scanner scanner{line};
    scanner.blanks();
    if (!scanner.next_is('{')) {
        const bool array = scanner.next_is('[');
        scanner.value();
        scanner.blanks();
        if (!scanner.at_end()) {
            scanner.fail("nothing more");
        }
        throw BadJson{fmt::format(R"(expected an entry, {{"table": ..., "key": ..., "result": ...}}{})",
                                  array ? ", found an array (jq -c '.[]' writes its entries one a line)" : ""),
                      false};
    }
    scanner.take('{');
    scanner.blanks();
    if (!scanner.take('}')) {
        do {
            Member member;
            member.written = scanner.name();
            member.name = member.written;
            if (member.written.find('\\') != std::string_view::npos) {
                member.name = names_.emplace_back(unescaped(member.written));
            }
            scanner.blanks();
            const std::size_t begin = scanner.at();
            scanner.value();
            member.value = scanner.since(begin);
            members_.push_back(member);
            scanner.blanks();
        } while (scanner.take(','));
        scanner.expect('}', "',' or '}'");
    }
    scanner.blanks();
    if (!scanner.at_end()) {
        scanner.fail("nothing more behind the entry");
    }
}

bool is_string(std::string_view value) { return value.starts_with('"'); }

std::string_view text_of(std::string_view value, std::string& storage) {
    const std::string_view written = value.substr(1, value.size() - 2);
    if (written.find('\\') == std::string_view::npos) {
        return written;
    }
    storage = unescaped(written);
    return storage;
}

void BadLines::report(const std::string& message) {
    ++count_;
    report_(message);
}

void BadLines::bad(std::uint64_t number, std::string_view line, const BadJson& error) {
    const bool goes_on = first_ != 0 && (last_ > first_ || begins_json(fmt::format("{}\n{}", text_, line)));
    if (goes_on) {
        last_ = number;
        return;
    }
    done();
    if (error.incomplete) {
        first_ = last_ = number;
        text_ = line;
        message_ = error.what();
    } else {
        report(fmt::format("line {}: {}", number, error.what()));
    }
}

void BadLines::done() {
    if (first_ == 0) {
        return;
    }
    const std::uint64_t first = first_;
    first_ = 0;
    report(last_ > first
               ? fmt::format("lines {} to {}: JSON that goes over several lines: {}", first, last_, one_a_line)
               : fmt::format("line {}: {}", first, message_));
}

}  // namespace io
