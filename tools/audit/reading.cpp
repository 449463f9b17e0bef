#include "audit/reading.h"

#include <algorithm>

#include <fmt/core.h>

#include "io/parallel.h"

namespace audit {
namespace {

void append(Block& block, const Entry& entry, std::uint64_t number) {
    if (entry.kind == Kind::blank) {
        return;
    }
    Item item;
    item.number = number;
    item.kind = entry.kind;
    item.table = entry.table;
    if (entry.kind == Kind::entry) {
        item.at = static_cast<std::uint32_t>(block.bytes.size());
        item.key_size = static_cast<std::uint8_t>(entry.key.size());
        item.result_size = static_cast<std::uint8_t>(entry.result.size());
        item.logical_size = static_cast<std::uint16_t>(entry.logical.size());
        for (const Bytes* bytes : {&entry.key, &entry.result, &entry.logical}) {
            block.bytes.insert(block.bytes.end(), bytes->begin(), bytes->end());
        }
    } else if (!entry.reason.empty()) {
        block.reasons.push_back(entry.reason);
        item.reason = static_cast<std::uint32_t>(block.reasons.size() - 1);
    }
    block.items.push_back(item);
}

void read_records(const io::Chunk& chunk, std::size_t record_bytes, Reader& reader, Entry& entry, Block& block) {
    std::uint64_t number = chunk.first;
    for (std::string_view rest = chunk.text(); !rest.empty(); rest.remove_prefix(std::min(record_bytes, rest.size()))) {
        entry.reason.clear();
        if (rest.size() < record_bytes) {
            entry.kind = Kind::unreadable;
            entry.reason =
                fmt::format("the file ends within a record: expected {} bytes, found {}", record_bytes, rest.size());
        } else {
            entry.kind = Kind::blank;
            reader.read(rest.substr(0, record_bytes), number, entry);
        }
        append(block, entry, number++);
    }
}

Block read_chunk(const io::Chunk& chunk, std::size_t record_bytes, Reader& reader) {
    Block block;
    block.read = chunk.read;
    Entry entry;
    if (chunk.too_long) {
        entry.kind = Kind::unreadable;
        entry.reason = fmt::format("expected a line of less than {} bytes", io::ChunkReader::longest_line);
        append(block, entry, chunk.first);
    } else if (record_bytes != 0) {
        read_records(chunk, record_bytes, reader, entry, block);
    } else {
        io::for_each_line(chunk, [&](std::uint64_t number, std::string_view line) {
            entry.kind = Kind::blank;
            entry.reason.clear();
            reader.read(line, number, entry);
            append(block, entry, number);
        });
    }
    return block;
}

}  // namespace

void read_blocks(const Source& source, const MakeReader& make_reader, unsigned threads,
                 const std::function<void(Block&)>& prepare, const std::function<void(const Block&)>& take) {
    io::PerThread<std::unique_ptr<Reader>> readers{make_reader};
    io::ChunkReader chunks{source.read, source.record_bytes};
    io::work_through<Block>(
        chunks, threads,
        [&](const io::Chunk& chunk) {
            Block block = read_chunk(chunk, source.record_bytes, *readers.local());
            prepare(block);
            return block;
        },
        take);
}

}  // namespace audit
