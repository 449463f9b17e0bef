#include "npxlate/input.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <memory>
#include <system_error>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "npxlate/error.h"

namespace tool {
namespace {

// Enough for any record with whatever stands around its bytes.
constexpr std::size_t most_text = std::size_t{1} << 20;

std::string read_all(std::FILE* stream, const std::string& name) {
    std::string text;
    std::array<char, 4096> block;
    std::size_t count = 0;
    while ((count = std::fread(block.data(), 1, block.size(), stream)) > 0) {
        text.append(block.data(), count);
        if (text.size() > most_text) {
            throw WrongInput{
                fmt::format("{} is too long: expected the hex of one record (for many: npxlate batch)", name)};
        }
    }
    if (std::ferror(stream) != 0) {
        throw WrongInput{fmt::format("cannot read {}: {}", name, std::generic_category().message(errno))};
    }
    return text;
}

std::string read_file(const std::string& path) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> stream{std::fopen(path.c_str(), "rb"), &std::fclose};
    if (!stream) {
        throw WrongInput{fmt::format("cannot read {}: {}", path, std::generic_category().message(errno))};
    }
    return read_all(stream.get(), path);
}

}  // namespace

void add_record_source(CLI::App& command, RecordSource& source) {
    CLI::Option* const hex = command.add_option(
        "HEX", source.hex, "The record, two digits a byte, however separated; - or nothing: from standard input");
    command.add_option("-f,--file", source.file, "Read the hex from this file")->excludes(hex);
}

Bytes read_record(const RecordSource& source) {
    if (!source.file.empty()) {
        return parse_hex(read_file(source.file));
    }
    if (source.hex.empty() || (source.hex.size() == 1 && source.hex.front() == "-")) {
        return parse_hex(read_all(stdin, "standard input"));
    }
    return parse_hex(fmt::format("{}", fmt::join(source.hex, " ")));
}

}  // namespace tool
