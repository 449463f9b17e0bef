// What the tool parses, fed with arbitrary text: as hex, and as the lines of a batch.

#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>
#include <iostream>
#include <string>
#include <string_view>

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
        tool::translate_json_lines(input, output, progress);
    } catch (const tool::NotDone&) {
    }
    output.close();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text{reinterpret_cast<const char*>(data), size};
    parse_as_hex(text);
    translate_as_batch(text);
    return 0;
}
