#include "io/chunks.h"

#include <algorithm>

namespace io {

ChunkReader::ChunkReader(Read read, std::size_t record_bytes)
    : read_{std::move(read)},
      record_bytes_{record_bytes},
      room_{record_bytes == 0 ? longest_line : std::max(longest_line / record_bytes, std::size_t{1}) * record_bytes},
      next_{record_bytes == 0 ? 1U : 0U} {}

std::shared_ptr<const Chunk> ChunkReader::next() {
    auto chunk = std::make_shared<Chunk>();
    chunk->first = next_;
    const bool ended = fill(*chunk, room_);
    if (chunk->bytes.empty()) {
        return nullptr;
    }
    if (record_bytes_ != 0) {
        next_ += chunk->bytes.size() / record_bytes_;
        return chunk;
    }
    if (!ended) {
        const std::size_t end = chunk->text().rfind('\n');
        if (end == std::string_view::npos) {
            pass_over(*chunk);
            ++next_;
            return chunk;
        }
        rest_ = chunk->text().substr(end + 1);
        chunk->bytes.resize(end + 1);
    }
    next_ += static_cast<std::uint64_t>(std::ranges::count(chunk->bytes, '\n'));
    return chunk;
}

// Whether the stream has come to its end.
bool ChunkReader::fill(Chunk& chunk, std::size_t room) {
    chunk.bytes.resize(room);
    std::ranges::copy(rest_, chunk.bytes.begin());
    std::size_t filled = rest_.size();
    rest_.clear();
    bool ended = false;
    while (filled < room && !ended) {
        const std::size_t count = read_(chunk.bytes.data() + filled, room - filled);
        filled += count;
        chunk.read += count;
        ended = count == 0;
    }
    chunk.bytes.resize(filled);
    return ended;
}

void ChunkReader::pass_over(Chunk& chunk) {
    chunk.too_long = true;
    while (const std::size_t count = read_(chunk.bytes.data(), chunk.bytes.size())) {
        chunk.read += count;
        const std::string_view text{chunk.bytes.data(), count};
        if (const std::size_t end = text.find('\n'); end != std::string_view::npos) {
            rest_ = text.substr(end + 1);
            break;
        }
    }
    chunk.bytes.clear();
}

}  // namespace io
