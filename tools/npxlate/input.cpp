#include "npxlate/input.h"

#include <algorithm>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "io/pasted.h"
#include "npxlate/error.h"
#include "npxlate/output.h"

namespace tool {
namespace {

// Enough for any record with whatever stands around its bytes.
constexpr std::size_t most_text = std::size_t{1} << 20;

constexpr const char* file_help = "Read the record from this file, hex or binary; -: from standard input";

void add_words(Command command, RecordSource& source) {
    source.command = command;
    source.words_option = command.add_option(
        "--words", source.words, "The hex is words of 2, 4 or 8 bytes, in host order (4) or big-endian (4be)");
}

Bytes parse(const RecordSource& source, std::string_view text) {
    if (!source.words_option.given()) {
        return io::parse_pasted(text);
    }
    const auto words = io::parse_words(source.words);
    if (!words) {
        throw WrongInput{fmt::format("bad --words {}: expected 2, 4 or 8, for words in host order, or 2be, 4be or 8be",
                                     printable(source.words))};
    }
    return io::parse_pasted(text, words);
}

Bytes read(const RecordSource& source, const std::string& path, bool may_be_binary) {
    io::InputStream input{path};
    note_waiting(input, "the record, as hex");
    const std::string text = input.read_all(most_text);
    if (text.size() > most_text) {
        throw WrongInput{
            fmt::format("{} is too long: expected the hex of one record (for many: npxlate batch)", input.name())};
    }
    if (may_be_binary && io::is_binary(text)) {
        if (source.words_option.given()) {
            throw WrongInput{fmt::format("{} is binary: expected hex, or no --words", input.name())};
        }
        return {text.begin(), text.end()};
    }
    return parse(source, text);
}

}  // namespace

void add_record_source(Command command, RecordSource& source) {
    source.hex_option = command.add_option(
        "HEX", source.hex, "The record, as hex or as a tool prints it; - or nothing: from standard input");
    source.file_option =
        command.add_option("-f,--file", source.files, file_help).one_value_a_time().excludes(source.hex_option);
    add_words(command, source);
}

Bytes read_record(const RecordSource& source) {
    if (source.files.size() > 1) {
        throw WrongInput{"expected one record, found a second --file"};
    }
    if (!source.files.empty()) {
        return read(source, source.files.front(), true);
    }
    if (source.hex.empty() || (source.hex.size() == 1 && source.hex.front() == "-")) {
        return read(source, "-", false);
    }
    return parse(source, fmt::format("{}", fmt::join(source.hex, " ")));
}

void add_record_pair_source(Command command, RecordSource& source) {
    source.hex_option =
        command.add_option("RECORDS", source.hex, "Two records, each as one argument of hex; - for standard input");
    source.file_option = command.add_option("-f,--file", source.files, file_help).one_value_a_time();
    add_words(command, source);
}

std::pair<Bytes, Bytes> read_record_pair(const RecordSource& source) {
    if (source.hex.size() + source.files.size() != 2) {
        throw WrongInput{fmt::format("expected two records, as hex or by --file, found {}",
                                     source.hex.size() + source.files.size())};
    }
    const auto is_input = [](const std::string& text) { return text == "-"; };
    if (std::ranges::count_if(source.hex, is_input) + std::ranges::count_if(source.files, is_input) > 1) {
        throw WrongInput{"standard input holds one record: expected - once"};
    }
    std::vector<Bytes> records;
    auto hex = source.hex.begin();
    auto file = source.files.begin();
    for (const Option option : source.command.parse_order()) {
        if (option == source.hex_option && hex != source.hex.end()) {
            records.push_back(is_input(*hex) ? read(source, "-", false) : parse(source, *hex));
            ++hex;
        } else if (option == source.file_option && file != source.files.end()) {
            records.push_back(read(source, *file++, true));
        }
    }
    return {std::move(records.at(0)), std::move(records.at(1))};
}

void note_waiting(const io::InputStream& input, std::string_view what) {
    if (input.is_terminal()) {
        note(fmt::format("reading {} from {}; Ctrl-D on a line of its own ends it", what, input.name()));
    }
}

}  // namespace tool
