// Entries of a card by table and physical key, ten million of them in less than a gigabyte: each one head, key and
// result without a gap, found through a table of their hashes. Keys are compared whole, so equal hashes do no harm.
#pragma once

#include <absl/container/flat_hash_set.h>
#include <absl/hash/hash.h>

#include <cstdint>
#include <span>

#include "audit/arena.h"

namespace audit {

using ByteSpan = std::span<const std::uint8_t>;

// The hash that goes with a key.
std::uint32_t hash_of(std::uint8_t table, ByteSpan key);

struct Key {
    std::uint8_t table;
    ByteSpan bytes;
    std::uint32_t hash;
};

// Numbers of lines, in five bytes.
class LineNumber {
public:
    LineNumber() = default;
    LineNumber(std::uint64_t number)  // NOLINT(google-explicit-constructor)
        : low_{static_cast<std::uint32_t>(number)}, high_{static_cast<std::uint8_t>(number >> 32U)} {}
    operator std::uint64_t() const {  // NOLINT(google-explicit-constructor)
        return std::uint64_t{high_} << 32U | low_;
    }

private:
    std::uint32_t low_ = 0;
    std::uint8_t high_ = 0;
} __attribute__((packed));

class Store {
public:
    using Ref = Arena::Ref;  // 0 is none

    enum Flag : std::uint8_t {
        further = 1,     // another record of a key that is there already
        raw = 2,         // its number is that of a record, not of a line
        programmed = 4,  // the key is one of those programmed
        inexact = 8,     // the same only since bits are ignored
    };

    struct Head {
        Ref next = 0;                // the next record of the same key
        std::uint16_t dumps = 0;     // those that have this record, a bit each
        std::uint16_t same = 0;      // those in which the key has a record that was programmed for it
        LineNumber held{};           // where the record stands in the newest of them
        LineNumber programmed_at{};  // where the key was programmed first
        std::uint8_t table = 0;
        std::uint8_t key_size = 0;
        std::uint8_t result_size = 0;
        std::uint8_t flags = 0;
    };

    Store();
    Store(const Store&) = delete;
    Store& operator=(const Store&) = delete;

    Ref find(const Key& key) const;
    // Soon to be looked up.
    void prefetch(const Key& key) const { index_.prefetch(key); }
    // The key must not be there yet.
    Ref insert(const Key& key, ByteSpan result);
    // Another record of the key, behind the one that has been its last.
    Ref add_further(Ref last, ByteSpan result);

    Head& head(Ref ref) { return *reinterpret_cast<Head*>(at(ref)); }
    const Head& head(Ref ref) const { return *reinterpret_cast<const Head*>(at(ref)); }
    ByteSpan key(Ref ref) const { return {at(ref) + sizeof(Head), head(ref).key_size}; }
    ByteSpan result(Ref ref) const { return {at(ref) + sizeof(Head) + head(ref).key_size, head(ref).result_size}; }
    // To overwrite a record by one of the same size.
    std::uint8_t* result_data(Ref ref) { return at(ref) + sizeof(Head) + head(ref).key_size; }

    // Every key, in the order in which they came.
    template <typename Visit>
    void for_each(Visit visit) const {
        arena_.for_each([&](Ref ref) {
            const Head& one = head(ref);
            if ((one.flags & further) == 0) {
                visit(ref, one);
            }
            return sizeof(Head) + one.key_size + one.result_size;
        });
    }

    std::size_t size() const { return index_.size(); }
    std::size_t memory() const;

private:
    Ref allocate(std::uint8_t table, std::size_t key_size, std::size_t result_size);
    std::uint8_t* at(Ref ref) const { return arena_.at(ref); }

    struct Slot {
        Ref ref;
        std::uint32_t hash;
    };
    // Both take what is stored and what is looked for.
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(const Slot& slot) const { return absl::Hash<std::uint32_t>{}(slot.hash); }
        std::size_t operator()(const Key& key) const { return absl::Hash<std::uint32_t>{}(key.hash); }
    };
    struct Equal {
        using is_transparent = void;
        const Store* store;
        bool operator()(const Slot& a, const Slot& b) const { return a.ref == b.ref; }
        bool operator()(const Slot& slot, const Key& key) const { return store->holds(slot, key); }
        bool operator()(const Key& key, const Slot& slot) const { return store->holds(slot, key); }
    };
    bool holds(const Slot& slot, const Key& key) const;

    Arena arena_{};
    absl::flat_hash_set<Slot, Hash, Equal> index_;
};

}  // namespace audit
