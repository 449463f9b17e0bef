// A stream in pieces of whole lines, or of whole records, that can be worked on at the same time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace io {

struct Chunk {
    std::vector<char> bytes{};
    std::uint64_t first = 0;  // the number of its first line, from 1, or record, from 0
    std::size_t read = 0;     // bytes of the stream
    bool too_long = false;    // one line, which was passed over

    std::string_view text() const { return {bytes.data(), bytes.size()}; }
};

// Visits every line with its number and without its end. A byte-order mark before the first line is no part of it.
template <typename Visit>
void for_each_line(const Chunk& chunk, Visit visit) {
    constexpr std::string_view byte_order_mark = "\xef\xbb\xbf";
    std::string_view rest = chunk.text();
    if (chunk.first == 1 && rest.starts_with(byte_order_mark)) {
        rest.remove_prefix(byte_order_mark.size());
    }
    for (std::uint64_t number = chunk.first; !rest.empty(); ++number) {
        const std::size_t end = rest.find('\n');
        visit(number, rest.substr(0, end));
        rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    }
}

class ChunkReader {
public:
    // Reads at most so many bytes; 0 at the end.
    using Read = std::function<std::size_t(char* to, std::size_t room)>;

    // A line must be shorter.
    static constexpr std::size_t longest_line = std::size_t{1} << 20U;

    // Lines, or records of so many bytes.
    explicit ChunkReader(Read read, std::size_t record_bytes = 0);

    // The next one, which depends on nothing but the stream; null at the end. Only the last may end within a record.
    std::shared_ptr<const Chunk> next();

private:
    bool fill(Chunk& chunk, std::size_t room);
    void pass_over(Chunk& chunk);

    Read read_;
    std::size_t record_bytes_;
    std::size_t room_;
    std::uint64_t next_;
    std::string rest_{};
};

}  // namespace io
