#include "audit/store.h"

#include <algorithm>
#include <new>

namespace audit {
namespace {

struct HashedKey {
    std::uint8_t table;
    ByteSpan bytes;

    template <typename State>
    friend State AbslHashValue(State state, const HashedKey& key) {
        return State::combine(State::combine_contiguous(std::move(state), key.bytes.data(), key.bytes.size()),
                              key.table, key.bytes.size());
    }
};

}  // namespace

std::uint32_t hash_of(std::uint8_t table, ByteSpan key) {
    return static_cast<std::uint32_t>(absl::Hash<HashedKey>{}({table, key}) >> 16U);
}

Store::Store() : index_{0, Hash{}, Equal{this}} {
    static_assert(sizeof(Head) == 24 && alignof(Head) <= Arena::unit_bytes);
}

Store::Ref Store::allocate(std::uint8_t table, std::size_t key_size, std::size_t result_size) {
    const Ref ref = arena_.allocate(sizeof(Head) + key_size + result_size);
    Head& added = *new (at(ref)) Head{};
    added.table = table;
    added.key_size = static_cast<std::uint8_t>(key_size);
    added.result_size = static_cast<std::uint8_t>(result_size);
    return ref;
}

Store::Ref Store::insert(const Key& key, ByteSpan result) {
    const Ref ref = allocate(key.table, key.bytes.size(), result.size());
    std::uint8_t* const bytes = at(ref) + sizeof(Head);
    std::ranges::copy(key.bytes, bytes);
    std::ranges::copy(result, bytes + key.bytes.size());
    index_.insert(Slot{ref, key.hash});
    return ref;
}

Store::Ref Store::add_further(Ref last, ByteSpan result) {
    const Ref ref = allocate(head(last).table, 0, result.size());
    head(ref).flags = further;
    std::ranges::copy(result, at(ref) + sizeof(Head));
    head(last).next = ref;
    return ref;
}

Store::Ref Store::find(const Key& key) const {
    const auto found = index_.find(key);
    return found == index_.end() ? 0 : found->ref;
}

bool Store::holds(const Slot& slot, const Key& key) const {
    return slot.hash == key.hash && head(slot.ref).table == key.table &&
           std::ranges::equal(this->key(slot.ref), key.bytes);
}

std::size_t Store::memory() const { return arena_.memory() + index_.capacity() * (sizeof(Slot) + 1); }

}  // namespace audit
