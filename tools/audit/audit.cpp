#include "audit/audit.h"

#include <absl/container/flat_hash_map.h>

#include <algorithm>
#include <bit>

#include <fmt/core.h>

#include "catalogue/catalogue.h"

namespace audit {
namespace {

using catalogue::Role;
using Head = Store::Head;
using Ref = Store::Ref;

// Different records that are kept of one key; of more, only that there are more is known.
constexpr std::size_t most_records_of_a_key = 32;

// Logical records kept for telling where differing bits come from.
constexpr std::size_t most_sample_bytes = std::size_t{64} << 20U;
constexpr unsigned samples_of_equal_bits = 16;

constexpr std::size_t most_reasons = 10000;

constexpr std::size_t items_ahead = 8;

std::uint16_t bit_of(std::size_t dump) { return static_cast<std::uint16_t>(1U << dump); }

bool same_but_for(ByteSpan a, ByteSpan b, const Bits& ignored) {
    if (a.size() != b.size()) {
        return false;
    }
    if (std::ranges::equal(a, b)) {
        return true;
    }
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (((a[i] ^ b[i]) & ~ignored.bytes[i]) != 0) {
            return false;
        }
    }
    return true;
}

Key key_of(const Block& block, const Item& item) { return {item.table, block.key(item), item.hash}; }

struct TableBits {
    std::uint8_t table;
    Bits bits;
    bool operator==(const TableBits&) const = default;
    template <typename State>
    friend State AbslHashValue(State state, const TableBits& key) {
        return State::combine(std::move(state), key.table, key.bits);
    }
};

class Auditor {
public:
    Auditor(const std::vector<std::vector<Input>>& dumps, const Settings& settings)
        : settings_{settings}, dumps_{dumps} {
        result_->dumps = dumps.size();
        for (unsigned table = 0; table < NPXLATE_TABLE_COUNT; ++table) {
            result_of_[table] = &catalogue::of_table(table, Role::result);
        }
    }

    std::unique_ptr<Result> run(const Input& programmed) {
        add_file(programmed, 0);
        for (std::size_t dump = 0; dump < dumps_.size(); ++dump) {
            for (const Input& file : dumps_[dump]) {
                add_file(file, dump);
            }
        }
        std::uint16_t file = 0;
        for (std::size_t dump = 0; dump < dumps_.size(); ++dump) {
            for (const Input& input : dumps_[dump]) {
                read_held(input, dump, ++file);
            }
        }
        read_programmed(programmed);
        finish();
        return std::move(result_);
    }

private:
    void add_file(const Input& input, std::size_t dump) {
        result_->files.push_back({.name = input.source.name, .raw_of = input.raw_of, .dump = dump});
        if (input.source.size && size_) {
            *size_ += *input.source.size;
        } else {
            size_.reset();
        }
    }

    // ---- Both sides

    // Counts what is no entry. Whether the item is an entry.
    bool count(const Block& block, const Item& item, std::uint16_t file) {
        FileCounts& counts = result_->files[file];
        ++counts.entries;
        switch (item.kind) {
            case Kind::entry:
                ++counts.taken;
                return true;
            case Kind::other:
                ++counts.other;
                break;
            case Kind::empty:
                ++counts.empty;
                break;
            case Kind::refused:
                ++counts.refused;
                if (file == 0) {
                    result_->refused.push_back({item.number, reason(block.reasons[item.reason]), item.table});
                }
                break;
            case Kind::unreadable:
                ++counts.unreadable;
                result_->unreadable.push_back({item.number, reason(block.reasons[item.reason]), file});
                break;
            case Kind::blank:
                break;
        }
        return false;
    }

    std::uint32_t reason(const std::string& text) {
        const auto known = reasons_.find(text);
        if (known != reasons_.end()) {
            return known->second;
        }
        const auto next = static_cast<std::uint32_t>(result_->reasons.size());
        if (next > most_reasons) {
            return static_cast<std::uint32_t>(most_reasons);
        }
        result_->reasons.push_back(next == most_reasons ? "for a reason not kept: there are too many different ones"
                                                        : text);
        reasons_.emplace(text, next);
        return next;
    }

    void advance(const Block& block) {
        read_ += block.read;
        check_memory();
        if (settings_.progress) {
            settings_.progress(block.read, block.items.size());
        }
    }

    void check_memory() const {
        const std::size_t used = memory();
        if (settings_.memory == 0) {
            return;
        }
        constexpr double mib = 1024.0 * 1024.0;
        constexpr std::size_t enough_to_tell = std::size_t{64} << 20U;
        const bool tell = size_ && read_ >= enough_to_tell;
        // The entries that were programmed need no room unless they are not held.
        const double needed = tell ? static_cast<double>(used) / static_cast<double>(read_) *
                                         static_cast<double>(std::max(held_size(), read_))
                                   : static_cast<double>(used);
        if (used > settings_.memory || needed > static_cast<double>(settings_.memory)) {
            throw TooLarge{
                fmt::format("the entries do not fit into memory: {}{:.0f} MiB are needed, and {:.0f} MiB are free",
                            tell ? "about " : "more than ", std::max(needed, static_cast<double>(used)) / mib,
                            static_cast<double>(settings_.memory) / mib)};
        }
    }

    std::uint64_t held_size() const {
        std::uint64_t size = 0;
        for (const std::vector<Input>& dump : dumps_) {
            for (const Input& input : dump) {
                size += input.source.size.value_or(0);
            }
        }
        return size;
    }

    std::size_t memory() const {
        return result_->held.memory() + result_->absent.memory() + result_->records.memory() +
               result_->different.size() * sizeof(Different) + result_->duplicates.size() * sizeof(Duplicate) +
               result_->refused.size() * sizeof(Refused) + result_->unreadable.size() * sizeof(Unreadable);
    }

    static void hash_all(Block& block) {
        for (Item& item : block.items) {
            if (item.kind == Kind::entry) {
                item.hash = hash_of(item.table, block.key(item));
            }
        }
    }

    static void prefetch(const Store& store, const Block& block, std::size_t at) {
        if (at + items_ahead < block.items.size()) {
            if (const Item& ahead = block.items[at + items_ahead]; ahead.kind == Kind::entry) {
                store.prefetch(key_of(block, ahead));
            }
        }
    }

    // ---- What the card holds

    void read_held(const Input& input, std::size_t dump, std::uint16_t file) {
        read_blocks(input.source, input.make_reader, settings_.threads, hash_all, [&](const Block& block) {
            for (std::size_t i = 0; i < block.items.size(); ++i) {
                prefetch(result_->held, block, i);
                if (const Item& item = block.items[i]; count(block, item, file)) {
                    take_held(block, item, dump, result_->files[file].raw_of.has_value());
                }
            }
            advance(block);
        });
    }

    void take_held(const Block& block, const Item& item, std::size_t dump, bool raw) {
        Store& store = result_->held;
        const bool newest = dump + 1 == result_->dumps;
        if (newest) {
            ++result_->tables[item.table].held;
        }
        const Ref first = store.find(key_of(block, item));
        if (first == 0) {
            stand(store.insert(key_of(block, item), block.result(item)), item, dump, raw);
            return;
        }
        const Bits& ignored = settings_.ignored.of_table(item.table);
        Ref equal = 0;
        Ref last = first;
        Ref before = 0;  // the record of this dump
        std::size_t records = 0;
        for (Ref ref = first; ref != 0; ref = store.head(ref).next) {
            ++records;
            last = ref;
            if (before == 0 && (store.head(ref).dumps & bit_of(dump)) != 0) {
                before = ref;
            }
            if (equal == 0 && same_but_for(store.result(ref), block.result(item), ignored)) {
                equal = ref;
            }
        }
        if (before != 0) {
            result_->duplicates.push_back({.line = item.number,
                                           .first = store.head(before).held,
                                           .key = first,
                                           .same_record = equal == before,
                                           .raw = raw,
                                           .dump = static_cast<std::uint8_t>(dump)});
            if (equal != 0) {
                store.head(equal).dumps |= bit_of(dump);
            } else if (records < most_records_of_a_key) {
                stand(store.add_further(last, block.result(item)), item, dump, raw);
            }
        } else if (equal != 0) {
            // Where bits are ignored, the newest is told.
            std::ranges::copy(block.result(item), store.result_data(equal));
            stand(equal, item, dump, raw);
        } else {
            stand(store.add_further(last, block.result(item)), item, dump, raw);
        }
    }

    void stand(Ref ref, const Item& item, std::size_t dump, bool raw) {
        Head& head = result_->held.head(ref);
        head.dumps |= bit_of(dump);
        head.held = item.number;
        head.flags = static_cast<std::uint8_t>((head.flags & ~Store::raw) | (raw ? Store::raw : 0));
    }

    // ---- What was programmed

    void read_programmed(const Input& input) {
        read_blocks(
            input.source, input.make_reader, settings_.threads, [&](Block& block) { look_up(block); },
            [&](const Block& block) {
                for (std::size_t i = 0; i < block.items.size(); ++i) {
                    const Item& item = block.items[i];
                    if (item.found == 0) {
                        prefetch(result_->absent, block, i);
                    }
                    if (count(block, item, 0)) {
                        take_programmed(block, item);
                    }
                }
                advance(block);
            });
    }

    // Reads of the store only what does not change any more.
    void look_up(Block& block) const {
        hash_all(block);
        const Store& store = result_->held;
        const std::uint16_t newest = bit_of(result_->dumps - 1);
        for (std::size_t i = 0; i < block.items.size(); ++i) {
            prefetch(store, block, i);
            Item& item = block.items[i];
            if (item.kind != Kind::entry) {
                continue;
            }
            item.found = store.find(key_of(block, item));
            const Bits& ignored = settings_.ignored.of_table(item.table);
            for (Ref ref = item.found; ref != 0; ref = store.head(ref).next) {
                if (same_but_for(block.result(item), store.result(ref), ignored)) {
                    item.same |= store.head(ref).dumps;
                    item.exact = item.exact || ((store.head(ref).dumps & newest) != 0 &&
                                                std::ranges::equal(block.result(item), store.result(ref)));
                }
            }
            if (item.found != 0 && item.same == 0) {
                item.explained = static_cast<std::uint8_t>(
                    explanation(*result_of_[item.table], block.logical(item), block.result(item),
                                store.result(result_->newest(item.found)), ignored));
            }
        }
    }

    void take_programmed(const Block& block, const Item& item) {
        ++result_->tables[item.table].programmed;
        if (item.found == 0) {
            take_absent(block, item);
            return;
        }
        Head& head = result_->held.head(item.found);
        const bool first = (head.flags & Store::programmed) == 0;
        if (!first) {
            const bool both = item.same != 0 && head.same != 0;
            const bool neither = item.same == 0 && head.same == 0;
            result_->duplicates.push_back(
                {.line = item.number,
                 .first = head.programmed_at,
                 .key = item.found,
                 .programmed = true,
                 .same_record = both || (neither && is_first(head.programmed_at, block, item))});
        }
        head.same |= item.same;
        if (first) {
            head.flags |= Store::programmed | (item.same != 0 && !item.exact ? Store::inexact : 0);
            head.programmed_at = item.number;
            if (item.same == 0) {
                keep_different(block, item);
            }
        }
    }

    // Whether the record is that of the different entry in that line.
    bool is_first(std::uint64_t line, const Block& block, const Item& item) const {
        const auto found = std::ranges::lower_bound(result_->different, line, {},
                                                    [](const Different& one) { return std::uint64_t{one.line}; });
        return found != result_->different.end() && std::ranges::equal(result_->programmed(*found), block.result(item));
    }

    void take_absent(const Block& block, const Item& item) {
        Store& store = result_->absent;
        const Ref ref = store.find(key_of(block, item));
        if (ref == 0) {
            Head& head = store.head(store.insert(key_of(block, item), block.result(item)));
            head.flags = Store::programmed;
            head.programmed_at = item.number;
            return;
        }
        result_->duplicates.push_back({.line = item.number,
                                       .first = store.head(ref).programmed_at,
                                       .key = ref,
                                       .programmed = true,
                                       .absent = true,
                                       .same_record = std::ranges::equal(store.result(ref), block.result(item))});
    }

    void keep_different(const Block& block, const Item& item) {
        const ByteSpan programmed = block.result(item);
        ByteSpan logical = block.logical(item);
        Bits bits = bits_of(programmed);
        const Bits held = bits_of(result_->held.result(result_->newest(item.found)));
        for (std::size_t i = 0; i < bits.bytes.size(); ++i) {
            bits.bytes[i] ^= held.bytes[i];
        }
        if (!takes_sample({item.table, bits}, logical.size())) {
            logical = {};
        }
        const Arena::Ref at = result_->records.allocate(programmed.size() + logical.size());
        std::ranges::copy(programmed, result_->records.at(at));
        std::ranges::copy(logical, result_->records.at(at) + programmed.size());
        result_->different.push_back({.key = item.found,
                                      .line = item.number,
                                      .at = at,
                                      .logical_size = static_cast<std::uint16_t>(logical.size()),
                                      .size = static_cast<std::uint8_t>(programmed.size()),
                                      .explained = static_cast<Explained>(item.explained)});
    }

    // Whether one more logical record is to be kept of those that differ in these bits.
    bool takes_sample(const TableBits& bits, std::size_t bytes) {
        if (sample_bytes_ + bytes + sizeof(bits) > most_sample_bytes) {
            return false;
        }
        unsigned& samples = samples_[bits];
        if (samples == samples_of_equal_bits) {
            return false;
        }
        ++samples;
        sample_bytes_ += bytes + sizeof(bits);
        return true;
    }

    // ---- In the end

    void finish() {
        Result& result = *result_;
        for (const Refused& one : result.refused) {
            ++result.tables[one.table].programmed;
            ++result.tables[one.table].refused;
        }
        const std::uint16_t newest = bit_of(result.dumps - 1);
        result.held.for_each([&](Ref ref, const Head& head) {
            Counts& counts = result.tables[head.table];
            switch (result.state(ref)) {
                case State::same:
                    ++counts.same;
                    counts.same_but_ignored += (head.flags & Store::inexact) != 0 ? 1 : 0;
                    break;
                case State::different:
                    ++counts.different;
                    break;
                case State::missing:
                    ++counts.missing;
                    break;
                case State::unexpected:
                    ++counts.unexpected;
                    break;
                case State::moving: {
                    const bool held = (result.dumps_with(ref) & newest) != 0;
                    const bool programmed = (head.flags & Store::programmed) != 0;
                    counts.moving_programmed += programmed ? 1 : 0;
                    counts.moving_held += held ? 1 : 0;
                    counts.moving_both += programmed && held ? 1 : 0;
                    ++counts.moving;
                    break;
                }
            }
        });
        result.absent.for_each([&](Ref, const Head& head) { ++result.tables[head.table].missing; });
        std::erase_if(result.different,
                      [&](const Different& one) { return result.state(one.key) != State::different; });
        finish_duplicates();
        for (const Counts& counts : result.tables) {
            result.all += counts;
        }
    }

    // What is twice in one dump, but not in every dump, is moving.
    void finish_duplicates() {
        Result& result = *result_;
        absl::flat_hash_map<Ref, std::uint16_t> dumps;
        for (const Duplicate& one : result.duplicates) {
            if (!one.programmed) {
                dumps[one.key] |= bit_of(one.dump);
            }
        }
        const auto all = static_cast<std::uint16_t>((1U << result.dumps) - 1);
        std::erase_if(result.duplicates, [&](const Duplicate& one) {
            Counts& counts = result.tables[(one.absent ? result.absent : result.held).head(one.key).table];
            if (one.programmed) {
                ++counts.duplicate_programmed;
                return false;
            }
            if (std::size_t{one.dump} + 1 != result.dumps) {
                return true;
            }
            const bool finding = dumps[one.key] == all;
            ++(finding ? counts.duplicate_held : counts.moving_duplicates);
            return !finding;
        });
    }

    const Settings& settings_;
    const std::vector<std::vector<Input>>& dumps_;
    std::unique_ptr<Result> result_ = std::make_unique<Result>();
    std::array<const catalogue::Translator*, NPXLATE_TABLE_COUNT> result_of_{};
    absl::flat_hash_map<std::string, std::uint32_t> reasons_{};
    absl::flat_hash_map<TableBits, unsigned> samples_{};
    std::size_t sample_bytes_ = 0;
    std::optional<std::uint64_t> size_ = 0;
    std::uint64_t read_ = 0;
};

}  // namespace

Counts& Counts::operator+=(const Counts& other) {
    for (const auto member :
         {&Counts::programmed, &Counts::held, &Counts::same, &Counts::same_but_ignored, &Counts::different,
          &Counts::missing, &Counts::unexpected, &Counts::refused, &Counts::duplicate_programmed,
          &Counts::duplicate_held, &Counts::moving, &Counts::moving_programmed, &Counts::moving_held,
          &Counts::moving_both, &Counts::moving_duplicates}) {
        this->*member += other.*member;
    }
    return *this;
}

bool Result::clean() const {
    return all.different + all.missing + all.unexpected + all.refused + all.duplicate_programmed + all.duplicate_held ==
               0 &&
           unreadable.empty();
}

std::uint16_t Result::dumps_with(Store::Ref key) const {
    std::uint16_t with = 0;
    for (Ref ref = key; ref != 0; ref = held.head(ref).next) {
        with |= held.head(ref).dumps;
    }
    return with;
}

Store::Ref Result::newest(Store::Ref key) const {
    Ref newest = key;
    for (Ref ref = key; ref != 0; ref = held.head(ref).next) {
        if (std::bit_width(held.head(ref).dumps) > std::bit_width(held.head(newest).dumps)) {
            newest = ref;
        }
    }
    return newest;
}

State Result::state(Store::Ref key) const {
    const Head& head = held.head(key);
    const auto all_dumps = static_cast<std::uint16_t>((1U << dumps) - 1);
    const std::uint16_t with = dumps_with(key);
    if ((head.flags & Store::programmed) == 0) {
        return with == all_dumps ? State::unexpected : State::moving;
    }
    if (head.same == all_dumps) {
        return State::same;
    }
    if (head.same != 0) {
        return State::moving;
    }
    return (with & bit_of(dumps - 1)) != 0 ? State::different : State::missing;
}

std::unique_ptr<Result> audit(const Input& programmed, const std::vector<std::vector<Input>>& dumps,
                              const Settings& settings) {
    return Auditor{dumps, settings}.run(programmed);
}

}  // namespace audit
