#include <algorithm>
#include <vector>

#include <fmt/format.h>

#include "npxlate/batch.h"
#include "npxlate/error.h"
#include "npxlate/lookup.h"

namespace tool {

void translate_raw(const catalogue::Translator& translator, std::size_t length, const FourthArgument& argument,
                   InputStream& input, Output& output, Progress& progress) {
    constexpr std::size_t block_bytes = std::size_t{1} << 18;
    const std::size_t records_a_block = block_bytes / length;
    std::vector<char> in(records_a_block * length);
    std::vector<char> out(records_a_block * most_record_bytes);
    std::uint64_t index = 0;
    while (true) {
        const std::size_t filled = input.fill(in.data(), in.size());
        std::ranges::fill(out, '\0');
        std::size_t written = 0;
        for (std::size_t at = 0; at + length <= filled; at += length) {
            const Reply reply = translate(translator, reinterpret_cast<std::uint8_t*>(in.data() + at), length,
                                          reinterpret_cast<std::uint8_t*>(out.data() + written), argument);
            if (!reply.translated) {
                output.write({out.data(), written});
                output.close();
                throw NotDone{fmt::format("record {} (offset {}): {}; nothing was translated from there on", index,
                                          index * length, rejection(translator, reply))};
            }
            written += reply.size;
            ++index;
        }
        output.write({out.data(), written});
        progress.advance(filled, filled / length);
        if (const std::size_t rest = filled % length; rest != 0) {
            output.close();
            throw WrongInput{fmt::format("the input ends within a record: expected {} at offset {}, found {}",
                                         describe(length), index * length, describe(rest))};
        }
        if (filled < in.size()) {
            break;
        }
    }
    output.close();
}

}  // namespace tool
