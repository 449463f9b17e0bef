// Compares what cards hold with what was programmed.
//
// The card's entries are stored first, then every programmed entry is looked up as it is read. Each key, which is a
// table and a physical key, becomes exactly one of: same, different, missing, unexpected, moving. Every line becomes
// part of a key or is counted as what else it is. What is found does not depend on the number of threads.
//
// A card that is running is dumped several times. What is wrong in every dump is a finding, told as the newest dump
// has it; what is right in one of them is moving.
#pragma once

#include <array>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "audit/bits.h"
#include "audit/ignore.h"
#include "audit/reading.h"
#include "audit/store.h"
#include "catalogue/catalogue.h"

namespace audit {

inline constexpr std::size_t most_dumps = 16;

struct Input {
    Source source;
    MakeReader make_reader;
    std::optional<unsigned> raw_of{};  // of a source of records: their table
};

struct Settings {
    Ignored ignored{};
    unsigned threads = 1;
    std::size_t memory = 0;  // bytes that the entries may take
    // So many bytes and entries more have been read.
    std::function<void(std::size_t bytes, std::size_t entries)> progress{};
};

// The entries take more memory than they may.
struct TooLarge : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// What may explain a difference other than the card.
enum class Explained : std::uint8_t {
    no,
    reversed,   // the bytes of values stand in reverse order
    read_back,  // the record was read back as a logical one and translated again
    cleared,    // nothing stands there but zeros
    logical,    // it is the logical record, as it was programmed or as it is read back
};
std::string_view to_string(Explained explained);

// What a record is when it is not the one that was programmed.
Explained explanation(const catalogue::Translator& result, ByteSpan logical, ByteSpan programmed, ByteSpan held,
                      const Bits& ignored);

// A file, and what its lines or records are.
struct FileCounts {
    std::string name{};
    std::optional<unsigned> raw_of{};  // a table, whose records it holds one behind the other
    std::size_t dump = 0;              // that it belongs to
    std::uint64_t entries = 0;         // all of the below
    std::uint64_t taken = 0;           // with a key and a result, those with a key that came before among them
    std::uint64_t other = 0;
    std::uint64_t unreadable = 0;
    std::uint64_t refused = 0;
    std::uint64_t empty = 0;
};

struct Counts {
    std::uint64_t programmed = 0;  // lines with an entry, refused ones and duplicates included
    std::uint64_t held = 0;        // likewise, in the newest dump
    std::uint64_t same = 0;
    std::uint64_t same_but_ignored = 0;  // of them, those that are the same only since bits are ignored
    std::uint64_t different = 0;
    std::uint64_t missing = 0;
    std::uint64_t unexpected = 0;
    std::uint64_t refused = 0;
    std::uint64_t duplicate_programmed = 0;
    std::uint64_t duplicate_held = 0;
    std::uint64_t moving = 0;             // keys
    std::uint64_t moving_programmed = 0;  // of them, those that were programmed
    std::uint64_t moving_held = 0;        // of them, those that are in the newest dump
    std::uint64_t moving_both = 0;        // of them, those that are both
    std::uint64_t moving_duplicates = 0;  // lines of the newest dump

    Counts& operator+=(const Counts& other);
};

// A programmed entry whose key is held with another record.
struct Different {
    Store::Ref key = 0;
    LineNumber line{};
    Arena::Ref at = 0;  // of the programmed record in Result::records, and of the logical one if there is room
    std::uint16_t logical_size = 0;
    std::uint8_t size = 0;
    Explained explained = Explained::no;
};

struct Refused {
    std::uint64_t line;
    std::uint32_t reason;
    std::uint8_t table;
};

struct Unreadable {
    std::uint64_t number;
    std::uint32_t reason;
    std::uint16_t file;  // in Result::files
};

struct Duplicate {
    std::uint64_t line;
    std::uint64_t first;
    Store::Ref key;
    bool programmed = false;   // otherwise held
    bool absent = false;       // the key is in Result::absent
    bool same_record = false;  // as the first one
    bool raw = false;
    std::uint8_t dump = 0;
};

// What became of a key.
enum class State : std::uint8_t { same, different, missing, unexpected, moving };

struct Result {
    std::size_t dumps = 0;
    std::vector<FileCounts> files{};  // the programmed entries first, then the dumps, oldest first
    std::array<Counts, NPXLATE_TABLE_COUNT> tables{};
    Counts all{};
    Store held{};
    Store absent{};  // keys that were programmed and are in no dump
    // In the order of the lines.
    std::deque<Different> different{};
    Arena records{};
    std::deque<Refused> refused{};
    std::deque<Unreadable> unreadable{};
    std::deque<Duplicate> duplicates{};
    std::vector<std::string> reasons{};

    bool clean() const;
    // Of a key in `held`; those in `absent` are all missing.
    State state(Store::Ref key) const;
    ByteSpan programmed(const Different& one) const { return {records.at(one.at), one.size}; }
    ByteSpan logical(const Different& one) const { return {records.at(one.at) + one.size, one.logical_size}; }
    // The record of the newest dump that has the key.
    Store::Ref newest(Store::Ref key) const;
    std::uint16_t dumps_with(Store::Ref key) const;
};

// The dumps are in the order in which they were taken, oldest first, each of one or more files. Throws TooLarge, and
// whatever the sources and readers throw.
std::unique_ptr<Result> audit(const Input& programmed, const std::vector<std::vector<Input>>& dumps,
                              const Settings& settings);

}  // namespace audit
