// What the tool parses, fed with arbitrary text: as hex, as what people paste, as an entry, and as the lines of a
// batch.

#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>
#include <iostream>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>

#include "io/entry.h"
#include "io/pasted.h"
#include "npxlate/batch.h"
#include "npxlate/error.h"
#include "npxlate/hex.h"

namespace {

void require(bool holds, const char* what) {
    if (!holds) {
        std::cerr << what << '\n';
        std::abort();
    }
}

// What is taken for hex is what its bytes are written as.
void parse_as_hex(std::string_view text) {
    tool::Bytes bytes;
    try {
        bytes = tool::parse_hex(text);
    } catch (const tool::WrongInput&) {
        return;
    }
    require(tool::parse_hex(tool::to_hex(bytes)) == bytes, "the bytes do not survive being written and read");
}

// Whatever it is taken for, the bytes of it are taken as themselves; only words are refused or turned.
void parse_as_pasted(std::string_view text) {
    for (const std::optional<io::Words>& words : {std::optional<io::Words>{}, {{2}}, {{4, true}}, {{8}}}) {
        io::Bytes bytes;
        try {
            bytes = io::parse_pasted(text, words);
        } catch (const io::WrongInput&) {
            continue;
        }
        require(io::parse_pasted(io::to_hex(bytes)) == bytes, "the bytes do not survive being written and pasted");
    }
    try {
        static_cast<void>(io::is_binary(text));
    } catch (const io::WrongInput&) {
    }
}

// What is taken for an entry is one for another reader too, but for numbers that it cannot hold and for half
// characters.
void parse_as_entry(std::string_view text) {
    io::Entry entry;
    io::BadLines bad_lines{[](const std::string&) {}};
    try {
        entry.parse(text);
    } catch (const io::BadJson& error) {
        bad_lines.bad(1, text, error);
        bad_lines.bad(2, text, error);
        bad_lines.done();
        require(bad_lines.count() > 0, "a bad line is not reported");
        return;
    }
    std::string storage;
    for (const io::Entry::Member& member : entry.members()) {
        require(nlohmann::json::accept(member.value) ||
                    member.value.find_first_of("0123456789\\") != std::string_view::npos,
                "a value is no JSON");
        if (io::is_string(member.value)) {
            static_cast<void>(io::text_of(member.value, storage));
        }
    }
}

// A batch fails in no other way than by saying that some lines were not translated.
void translate_as_batch(std::string_view text) {
    static const int file = memfd_create("batch", 0);
    static const std::string path = "/proc/self/fd/" + std::to_string(file);
    require(ftruncate(file, 0) == 0 && pwrite(file, text.data(), text.size(), 0) == static_cast<ssize_t>(text.size()),
            "the batch cannot be written");
    io::InputStream input{path};
    tool::Output output{"/dev/null"};
    tool::Progress progress{false, {}};
    try {
        tool::translate_json_lines(tool::EntryTranslator::Options{}, input, output, 1, progress);
    } catch (const tool::NotDone&) {
    }
    output.close();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text{reinterpret_cast<const char*>(data), size};
    parse_as_hex(text);
    parse_as_pasted(text);
    parse_as_entry(text);
    translate_as_batch(text);
    return 0;
}
