// Reading many entries on all processors, with their order kept.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "io/chunks.h"

namespace audit {

using Bytes = std::vector<std::uint8_t>;

// Where text or records come from.
struct Source {
    std::string name;
    io::ChunkReader::Read read;
    std::optional<std::uint64_t> size{};  // if it is known
    std::size_t record_bytes = 0;         // of records one behind the other; 0: lines
};

enum class Kind : std::uint8_t {
    blank,       // nothing stands there
    entry,       //
    other,       // of a table that was not asked for
    unreadable,  // no entry
    refused,     // the table does not take it
    empty,       // a slot without a record
};

// What a line or a record says.
struct Entry {
    Kind kind = Kind::blank;
    std::uint8_t table = 0;
    Bytes key{};           // physical
    Bytes result{};        // physical
    Bytes logical{};       // the result as it was programmed; empty for entries of the card
    std::string reason{};  // why it was refused or cannot be read
};

// Reads one line or record after another; each thread has its own.
class Reader {
public:
    Reader() = default;
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;
    virtual ~Reader() = default;
    // Lines are counted from 1, records from 0. Fills the entry, which may hold what was read before.
    virtual void read(std::string_view text, std::uint64_t number, Entry& entry) = 0;
};
using MakeReader = std::function<std::unique_ptr<Reader>()>;

// An entry among others: its bytes and its reason stand in the block.
struct Item {
    std::uint64_t number = 0;
    std::uint32_t at = 0;  // of the key, the result and the logical result, one behind the other
    std::uint32_t reason = 0;
    std::uint32_t hash = 0;
    std::uint16_t logical_size = 0;
    std::uint8_t key_size = 0;
    std::uint8_t result_size = 0;
    std::uint8_t table = 0;
    Kind kind = Kind::blank;
    // For whoever looks the item up before its turn comes.
    bool exact = false;
    std::uint8_t explained = 0;
    std::uint16_t same = 0;
    std::uint32_t found = 0;
};

struct Block {
    std::vector<Item> items{};
    Bytes bytes{};
    std::vector<std::string> reasons{};
    std::size_t read = 0;  // bytes of the source

    std::span<const std::uint8_t> key(const Item& item) const { return {bytes.data() + item.at, item.key_size}; }
    std::span<const std::uint8_t> result(const Item& item) const {
        return {bytes.data() + item.at + item.key_size, item.result_size};
    }
    std::span<const std::uint8_t> logical(const Item& item) const {
        return {bytes.data() + item.at + item.key_size + item.result_size, item.logical_size};
    }
};

// Calls `prepare` for every block, on whatever thread is free, and then `take`, block by block in the order of the
// source. Blocks do not depend on the number of threads.
void read_blocks(const Source& source, const MakeReader& make_reader, unsigned threads,
                 const std::function<void(Block&)>& prepare, const std::function<void(const Block&)>& take);

}  // namespace audit
