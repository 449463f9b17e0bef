#include "support/rows.h"

#include <cctype>
#include <regex>
#include <sstream>
#include <stdexcept>

namespace support {
namespace {

[[noreturn]] void refuse(const std::string& row, const std::string& why) {
    throw std::invalid_argument{"row \"" + row + "\": " + why};
}

std::vector<std::string> words(const std::string& text) {
    std::istringstream in{text};
    std::vector<std::string> result;
    for (std::string word; in >> word;) {
        result.push_back(word);
    }
    return result;
}

bool is_position(const std::string& word) { return word.starts_with('P') || word.starts_with('L'); }

}  // namespace

Position position(const std::string& text) {
    static const std::regex form{R"(([PL])(\d+)(?:-(\d+)|\.([0-7])(?:-([0-7]))?)?)"};
    std::smatch match;
    if (!std::regex_match(text, match, form)) {
        throw std::invalid_argument{"not a position: " + text};
    }
    Position result{text[0], std::stoul(match[2]), std::stoul(match[2])};
    if (match[3].matched) {
        result.last = std::stoul(match[3]);
    }
    if (match[4].matched) {
        result.high = static_cast<unsigned>(std::stoul(match[4]));
        result.low = match[5].matched ? static_cast<unsigned>(std::stoul(match[5])) : result.high;
    }
    if (result.last < result.first || result.high < result.low) {
        throw std::invalid_argument{"not a position: " + text};
    }
    return result;
}

Rows::Rows(std::initializer_list<const char*> rows) {
    for (const char* row : rows) {
        rows_.push_back(parse(row));
    }
}

Rows::Rows(const std::vector<std::string>& rows) {
    for (const std::string& row : rows) {
        rows_.push_back(parse(row));
    }
}

void Rows::apply(const Bytes& in, Bytes& out) const {
    for (const Row& row : rows_) {
        apply(row, in, out);
    }
}

Rows::Row Rows::parse(const std::string& text) {
    const std::vector<std::string> word = words(text);
    if (word.size() < 3 || word[1] != "=") {
        refuse(text, "expected TO = FROM");
    }
    Row row{.kind = Kind::copied, .to = position(word[0])};
    std::size_t used = 4;
    if (is_position(word[2])) {
        row.from = position(word[2]);
        used = 3;
    } else if (std::isdigit(static_cast<unsigned char>(word[2][0])) != 0) {
        row.kind = Kind::constant;
        row.constant = static_cast<unsigned>(std::stoul(word[2], nullptr, 0));
        used = 3;
    } else {
        if (word.size() < 4) {
            refuse(text, "expected a position after " + word[2]);
        }
        row.from = position(word[3]);
        if (word[2] == "not") {
            row.kind = Kind::inverted;
        } else if (word[2] == "swap") {
            row.kind = Kind::swapped;
        } else if (word[2] == "any") {
            row.kind = Kind::any;
        } else if (word[2] == "none") {
            row.kind = Kind::none;
        } else if (word[2] == "label") {
            row.kind = Kind::label;
            if (row.to.record == 'P') {
                if (word.size() != 6 || word[4] != "flag") {
                    refuse(text, "a label field needs its flag");
                }
                row.has_flag = is_position(word[5]);
                if (row.has_flag) {
                    row.flag = position(word[5]);
                } else {
                    row.constant = static_cast<unsigned>(std::stoul(word[5]));
                }
                used = 6;
            }
        } else {
            refuse(text, "unknown word " + word[2]);
        }
    }
    if (word.size() != used) {
        refuse(text, "too many words");
    }

    if (row.kind != Kind::constant && row.from.record == row.to.record) {
        refuse(text, "both sides name the same record");
    }
    switch (row.kind) {
        case Kind::constant:
            if (row.constant >> (row.to.high - row.to.low + 1) != 0) {
                refuse(text, "the constant does not fit");
            }
            break;
        case Kind::copied:
        case Kind::inverted:
            if (row.from.bit_count() != row.to.bit_count() || row.from.byte_count() != row.to.byte_count()) {
                refuse(text, "the widths differ");
            }
            break;
        case Kind::swapped:
            if (row.from.bit_count() != row.to.bit_count() || !row.from.whole_bytes() || !row.to.whole_bytes()) {
                refuse(text, "the widths differ");
            }
            break;
        case Kind::any:
        case Kind::none:
            if (row.to.bit_count() != 1) {
                refuse(text, "one bit expected on the left");
            }
            break;
        case Kind::label:
            if (row.to.byte_count() != (row.to.record == 'P' ? 3U : 4U) ||
                row.from.byte_count() != (row.from.record == 'P' ? 3U : 4U)) {
                refuse(text, "a label field is P-, P+1, P+2; its value L, L+1, L+2, L+3");
            }
            break;
    }
    return row;
}

void Rows::apply(const Row& row, const Bytes& in, Bytes& out) {
    const Position& to = row.to;
    const Position& from = row.from;
    const std::size_t count = to.byte_count();
    switch (row.kind) {
        case Kind::constant:
            for (std::size_t i = 0; i < count; ++i) {
                set_bits(out, to.first + i, to.high, to.low, row.constant);
            }
            return;
        case Kind::copied:
        case Kind::inverted:
            for (std::size_t i = 0; i < count; ++i) {
                const unsigned value = bits(in, from.first + i, from.high, from.low);
                set_bits(out, to.first + i, to.high, to.low, row.kind == Kind::copied ? value : ~value);
            }
            return;
        case Kind::swapped:
            for (std::size_t i = 0; i < count; ++i) {
                out.at(to.first + i) = in.at(from.last - i);
            }
            return;
        case Kind::label:
            if (to.record == 'P') {
                const bool flag = row.has_flag ? bit(in, row.flag.first, row.flag.low) : row.constant != 0;
                // Bits 19-0 of the value: its first three bytes.
                put_label(out, to.first, little(in, from.first, 3), flag);
            } else {
                put_little(out, to.first, 4, label_at(in, from.first));
            }
            return;
        case Kind::any:
        case Kind::none: {
            bool found = false;
            for (std::size_t i = from.first; i <= from.last; ++i) {
                found = found || bits(in, i, from.high, from.low) != 0;
            }
            set_bits(out, to.first, to.high, to.low, found == (row.kind == Kind::any) ? 1 : 0);
            return;
        }
    }
}

}  // namespace support
