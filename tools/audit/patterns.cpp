#include "audit/patterns.h"

#include <absl/container/flat_hash_map.h>

#include <algorithm>
#include <map>
#include <tuple>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "catalogue/catalogue.h"
#include "explain/positions.h"

namespace audit {
namespace {

using catalogue::Role;
using npxlate::Span;

// Sets of bits that are told apart in one table; of more, only the bytes are; of still more, nothing.
constexpr std::size_t most_groups = 8192;
// Patterns of a table; what is beyond is put together.
constexpr std::size_t most_patterns = 24;
// Sets of bits whose fields are looked up, for each table.
constexpr std::size_t most_looked_up = 24;
// The same bits so often, and in such a part of the entries that differ in the same fields, are a pattern of their own.
constexpr std::uint64_t least_of_own = 8;
constexpr std::uint64_t part_of_own = 4;

// Entries of a table that differ in the same bits.
struct Group {
    Pattern pattern{};
    std::uint64_t sample = 0;  // of Result::different, with its logical record
    bool sampled = false;
};

struct GroupKey {
    Bits bits;
    Explained explained;
    std::uint8_t programmed_size;
    std::uint8_t held_size;
    bool operator==(const GroupKey&) const = default;
    template <typename State>
    friend State AbslHashValue(State state, const GroupKey& key) {
        return State::combine(std::move(state), key.bits, key.explained, key.programmed_size, key.held_size);
    }
};

Bits whole_bytes(Bits bits) {
    for (std::uint8_t& byte : bits.bytes) {
        byte = byte == 0 ? 0 : 0xff;
    }
    return bits;
}

void widen(Pattern& pattern, ByteSpan key) {
    const auto before = [](ByteSpan a, ByteSpan b) {
        return a.size() != b.size() ? a.size() < b.size() : std::ranges::lexicographical_compare(a, b);
    };
    if (pattern.lowest.empty() || before(key, pattern.lowest)) {
        pattern.lowest.assign(key.begin(), key.end());
    }
    if (pattern.highest.empty() || before(pattern.highest, key)) {
        pattern.highest.assign(key.begin(), key.end());
    }
}

void add(Pattern& pattern, std::uint64_t member, std::size_t most_members) {
    ++pattern.count;
    if (pattern.members.size() < most_members) {
        pattern.members.push_back(member);
    }
}

// Puts the second into the first, whose members are then in no order.
void merge(Pattern& to, const Pattern& from) {
    to.count += from.count;
    to.always &= from.always;
    to.ever |= from.ever;
    to.programmed_and &= from.programmed_and;
    to.programmed_or |= from.programmed_or;
    to.held_and &= from.held_and;
    to.held_or |= from.held_or;
    widen(to, from.lowest);
    widen(to, from.highest);
    to.members.insert(to.members.end(), from.members.begin(), from.members.end());
}

class Differences {
public:
    Differences(const Result& result, const Settings& settings, unsigned table, std::size_t most_members)
        : result_{result}, settings_{settings}, table_{table}, most_members_{most_members} {}

    void add(std::uint64_t index) {
        const Different& one = result_.different[index];
        const ByteSpan programmed = result_.programmed(one);
        const ByteSpan held = result_.held.result(result_.newest(one.key));
        const Bits bits = differing(result_, settings_, one);
        GroupKey key{bits, one.explained, 0, 0};
        if (programmed.size() != held.size()) {
            key = {{},
                   one.explained,
                   static_cast<std::uint8_t>(programmed.size()),
                   static_cast<std::uint8_t>(held.size())};
        }
        if (known_.size() >= most_groups && !known_.contains(key)) {
            key.bits = whole_bytes(bits);
            if (known_.size() >= 2 * most_groups && !known_.contains(key)) {
                key.bits = ~Bits{};
            }
        }
        const auto [place, added] = known_.try_emplace(key, groups_.size());
        if (added) {
            Group& group = groups_.emplace_back();
            group.pattern.kind = FindingKind::different;
            group.pattern.table = table_;
            group.pattern.programmed_size = key.programmed_size;
            group.pattern.held_size = key.held_size;
            group.pattern.explained = key.explained;
            group.pattern.always = group.pattern.programmed_and = group.pattern.held_and = ~Bits{};
        }
        Group& group = groups_[place->second];
        if (!group.sampled && one.logical_size != 0) {
            group.sampled = true;
            group.sample = index;
        }
        Pattern& pattern = group.pattern;
        audit::add(pattern, index, most_members_);
        pattern.always &= bits;
        pattern.ever |= bits;
        pattern.programmed_and &= bits_of(programmed);
        pattern.programmed_or |= bits_of(programmed);
        pattern.held_and &= bits_of(held);
        pattern.held_or |= bits_of(held);
        widen(pattern, result_.held.key(one.key));
    }

    void put_patterns(std::vector<Pattern>& patterns) {
        std::ranges::stable_sort(groups_, std::greater{}, [](const Group& group) { return group.pattern.count; });
        find_fields();
        std::vector<Pattern> mine = alike_patterns();
        if (mine.size() > most_patterns) {
            // Small fields, and many of them: then what they have in common is the bytes.
            for (Bits& field : field_of_) {
                field = whole_bytes(field);
            }
            mine = alike_patterns();
        }
        if (mine.size() > most_patterns) {
            Pattern& rest = mine[most_patterns - 1];
            rest.rest = true;
            rest.explained = Explained::no;
            rest.programmed_size = rest.held_size = 0;
            for (std::size_t i = most_patterns; i < mine.size(); ++i) {
                merge(rest, mine[i]);
            }
            mine.resize(most_patterns);
        }
        for (Pattern& pattern : mine) {
            for (const Group& group : groups_) {
                if (pattern.exact() && group.pattern.programmed_size == 0 && group.pattern.always != pattern.always &&
                    group.pattern.always.covers(pattern.always)) {
                    pattern.with_others += group.pattern.count;
                }
            }
            Bits varying = pattern.ever;
            varying &= ~pattern.always;
            pattern.within = fields_of(varying);
            std::ranges::sort(pattern.members);
            pattern.members.resize(std::min(pattern.members.size(), most_members_));
            put_origins(pattern);
            patterns.push_back(std::move(pattern));
        }
    }

private:
    // Which bits belong to one field, as the records of the most frequent groups say.
    void find_fields() {
        for (std::size_t bit = 0; bit < field_of_.size(); ++bit) {
            field_of_[bit].set(Span{static_cast<std::uint16_t>(bit - bit % 8), 8});
        }
        std::size_t looked_up = 0;
        std::vector<bool> known(field_of_.size());
        for (const Group& group : groups_) {
            if (!group.sampled || looked_up == most_looked_up) {
                continue;
            }
            ++looked_up;
            for (const Origin& origin : origins_of_sample(group)) {
                if (!origin.value) {
                    continue;
                }
                Bits field;
                for (const Span span : origin.to) {
                    field.set(span);
                }
                for (std::size_t bit = 0; bit < field_of_.size(); ++bit) {
                    if (field.has(bit) && (!known[bit] || field.count() > field_of_[bit].count())) {
                        field_of_[bit] = field;
                        known[bit] = true;
                    }
                }
            }
        }
    }

    Bits fields_of(const Bits& bits) const {
        Bits fields;
        for (std::size_t bit = 0; bit < field_of_.size(); ++bit) {
            if (bits.has(bit)) {
                fields |= field_of_[bit];
            }
        }
        return fields;
    }

    std::vector<Origin> origins_of_sample(const Group& group) const {
        return origins(catalogue::of_table(table_, Role::result), result_.logical(result_.different[group.sample]));
    }

    std::vector<Pattern> alike_patterns() const {
        std::vector<Pattern> patterns;
        for (const std::vector<std::size_t>& alike : group_by_fields()) {
            put_alike(alike, patterns);
        }
        std::ranges::stable_sort(patterns, std::greater{}, &Pattern::count);
        return patterns;
    }

    // What a read-back explains is one pattern, whatever the fields.
    std::vector<std::vector<std::size_t>> group_by_fields() const {
        absl::flat_hash_map<GroupKey, std::size_t> known;
        std::vector<std::vector<std::size_t>> alike;
        for (std::size_t i = 0; i < groups_.size(); ++i) {
            const Pattern& pattern = groups_[i].pattern;
            GroupKey key{fields_of(pattern.ever), pattern.explained, pattern.programmed_size, pattern.held_size};
            if (pattern.explained != Explained::no || pattern.programmed_size != 0) {
                key.bits = {};
            }
            const auto [place, added] = known.try_emplace(key, alike.size());
            if (added) {
                alike.emplace_back();
            }
            alike[place->second].push_back(i);
        }
        return alike;
    }

    void put_alike(const std::vector<std::size_t>& alike, std::vector<Pattern>& patterns) const {
        std::uint64_t all = 0;
        for (const std::size_t i : alike) {
            all += groups_[i].pattern.count;
        }
        std::optional<Pattern> rest;
        for (const std::size_t i : alike) {
            const Pattern& pattern = groups_[i].pattern;
            const bool own = pattern.explained == Explained::no && pattern.exact() && pattern.count >= least_of_own &&
                             pattern.count * part_of_own >= all;
            if (own) {
                patterns.push_back(pattern);
            } else if (rest) {
                merge(*rest, pattern);
            } else {
                rest = pattern;
            }
        }
        if (rest) {
            patterns.push_back(std::move(*rest));
        }
    }

    void put_origins(Pattern& pattern) const {
        constexpr std::size_t most_looked_at = 4;
        std::size_t looked_at = 0;
        for (const std::uint64_t member : pattern.members) {
            const Different& one = result_.different[member];
            if (one.logical_size == 0 || looked_at == most_looked_at) {
                continue;
            }
            ++looked_at;
            for (Origin& origin :
                 origins_of(origins(catalogue::of_table(table_, Role::result), result_.logical(one)), pattern.ever)) {
                if (std::ranges::find(pattern.origins, origin) == pattern.origins.end()) {
                    pattern.origins.push_back(std::move(origin));
                }
            }
        }
    }

    const Result& result_;
    const Settings& settings_;
    unsigned table_;
    std::size_t most_members_;
    std::vector<Group> groups_{};
    absl::flat_hash_map<GroupKey, std::size_t> known_{};
    std::array<Bits, 8 * most_physical> field_of_{};
};

// Findings that are told by their kind, table and reason. Reasons are alike but for the numbers in them.
class Plain {
public:
    Plain(const Result& result, std::size_t most_members) : most_members_{most_members} {
        std::map<std::string, std::uint32_t> first;
        for (std::uint32_t i = 0; i < result.reasons.size(); ++i) {
            std::string text = result.reasons[i];
            std::erase_if(text, [](char c) { return c >= '0' && c <= '9'; });
            alike_.push_back(first.try_emplace(text, i).first->second);
        }
        alike_.resize(std::max<std::size_t>(alike_.size(), 1));
    }

    Pattern& add(FindingKind kind, unsigned table, std::uint16_t file, std::uint32_t reason, std::uint64_t member) {
        Pattern& pattern = patterns_[{kind, table, file, alike_[reason]}];
        pattern.several_reasons = pattern.several_reasons || (pattern.count != 0 && pattern.reason != reason);
        if (pattern.count == 0) {
            pattern.kind = kind;
            pattern.table = table;
            pattern.file = file;
            pattern.reason = reason;
        }
        audit::add(pattern, member, most_members_);
        return pattern;
    }

    void put_patterns(std::vector<Pattern>& patterns) {
        for (auto& [key, pattern] : patterns_) {
            patterns.push_back(std::move(pattern));
        }
    }

private:
    std::map<std::tuple<FindingKind, unsigned, std::uint16_t, std::uint32_t>, Pattern> patterns_{};
    std::vector<std::uint32_t> alike_{};  // for each reason the first that is like it
    std::size_t most_members_;
};

std::string entries(std::uint64_t count) { return grouped(count) + (count == 1 ? " entry" : " entries"); }

std::string lines(std::uint64_t count, bool raw) {
    return fmt::format("{} {}{}", grouped(count), raw ? "record" : "line", count == 1 ? "" : "s");
}

// Whether the keys, as numbers, leave none out.
bool consecutive(const Pattern& pattern) {
    if (pattern.lowest.size() != pattern.highest.size() || pattern.lowest.size() > 8) {
        return false;
    }
    const auto number = [](const Bytes& key) {
        std::uint64_t value = 0;
        for (const std::uint8_t byte : key) {
            value = value << 8U | byte;
        }
        return value;
    };
    return number(pattern.highest) - number(pattern.lowest) == pattern.count - 1;
}

std::string keys(const Pattern& pattern) {
    if (pattern.count == 1) {
        return fmt::format("key {:02x}", fmt::join(pattern.lowest, ""));
    }
    return fmt::format("{} {:02x} to {:02x}", consecutive(pattern) ? "all keys from" : "keys",
                       fmt::join(pattern.lowest, ""), fmt::join(pattern.highest, ""));
}

std::string reason(const Result& result, const Pattern& pattern) {
    return result.reasons[pattern.reason] + (pattern.several_reasons ? ", and alike" : "");
}

std::string difference(const Pattern& pattern) {
    const char* const differs = pattern.count == 1 ? "differs" : "differ";
    if (pattern.rest) {
        return fmt::format("{} in other ways, within {}", differs, position_text(pattern.ever));
    }
    if (pattern.programmed_size != 0) {
        return fmt::format("{} in size: {} bytes were programmed, {} are held", differs, pattern.programmed_size,
                           pattern.held_size);
    }
    if (pattern.exact()) {
        return fmt::format("{} in {} only", differs, position_text(pattern.always));
    }
    Bits always = pattern.always;
    always &= ~pattern.within;
    const std::string within = position_text(pattern.within);
    return always.any() ? fmt::format("{} in {} and within {} only", differs, position_text(always), within)
                        : fmt::format("{} within {} only", differs, within);
}

}  // namespace

std::string_view to_string(FindingKind kind) {
    switch (kind) {
        case FindingKind::different:
            return "different";
        case FindingKind::missing:
            return "missing";
        case FindingKind::unexpected:
            return "unexpected";
        case FindingKind::refused:
            return "refused";
        case FindingKind::duplicate_programmed:
        case FindingKind::duplicate_held:
            return "duplicate";
        case FindingKind::unreadable:
            return "unreadable";
        case FindingKind::moving:
            return "moving";
    }
    return "";
}

Bits differing(const Result& result, const Settings& settings, const Different& one) {
    const Bits programmed = bits_of(result.programmed(one));
    const auto differences = [&](Store::Ref ref) {
        Bits bits = bits_of(result.held.result(ref));
        for (std::size_t i = 0; i < bits.bytes.size(); ++i) {
            bits.bytes[i] ^= programmed.bytes[i];
        }
        return bits &= ~settings.ignored.of_table(result.held.head(ref).table);
    };
    const Bits newest = differences(result.newest(one.key));
    Bits all = newest;
    std::uint16_t seen = 0;
    for (Store::Ref ref = one.key; ref != 0; ref = result.held.head(ref).next) {
        if (const std::uint16_t dumps = result.held.head(ref).dumps; (dumps & ~seen) != 0) {
            seen |= dumps;
            all &= differences(ref);
        }
    }
    return all.any() ? all : newest;
}

std::vector<Pattern> find_patterns(const Result& result, const Settings& settings, std::size_t most_members,
                                   bool moving) {
    std::vector<Pattern> patterns;
    std::map<unsigned, Differences> differences;
    for (std::uint64_t i = 0; i < result.different.size(); ++i) {
        const unsigned table = result.held.head(result.different[i].key).table;
        differences.try_emplace(table, result, settings, table, most_members).first->second.add(i);
    }
    for (auto& [table, of_table] : differences) {
        of_table.put_patterns(patterns);
    }
    Plain plain{result, most_members};
    result.absent.for_each([&](Store::Ref ref, const Store::Head& head) {
        widen(plain.add(FindingKind::missing, head.table, 0, 0, Pattern::in_absent | ref), result.absent.key(ref));
    });
    result.held.for_each([&](Store::Ref ref, const Store::Head& head) {
        const State state = result.state(ref);
        if (state == State::missing || state == State::unexpected || (state == State::moving && moving)) {
            const FindingKind kind = state == State::missing      ? FindingKind::missing
                                     : state == State::unexpected ? FindingKind::unexpected
                                                                  : FindingKind::moving;
            widen(plain.add(kind, head.table, 0, 0, ref), result.held.key(ref));
        }
    });
    for (std::uint64_t i = 0; i < result.refused.size(); ++i) {
        plain.add(FindingKind::refused, result.refused[i].table, 0, result.refused[i].reason, i);
    }
    for (std::uint64_t i = 0; i < result.duplicates.size(); ++i) {
        const Duplicate& one = result.duplicates[i];
        const Store& store = one.absent ? result.absent : result.held;
        widen(plain.add(one.programmed ? FindingKind::duplicate_programmed : FindingKind::duplicate_held,
                        store.head(one.key).table, 0, 0, i),
              store.key(one.key));
    }
    for (std::uint64_t i = 0; i < result.unreadable.size(); ++i) {
        plain.add(FindingKind::unreadable, 0, result.unreadable[i].file, result.unreadable[i].reason, i);
    }
    plain.put_patterns(patterns);
    std::ranges::stable_sort(patterns, [](const Pattern& a, const Pattern& b) {
        const bool a_moves = a.kind == FindingKind::moving;
        const bool b_moves = b.kind == FindingKind::moving;
        return a_moves != b_moves ? b_moves : a.count > b.count;
    });
    return patterns;
}

std::string sentence(const Result& result, const Pattern& pattern) {
    const char* const are = pattern.count == 1 ? "is" : "are";
    const std::string head = fmt::format("table {}: {}", pattern.table, entries(pattern.count));
    switch (pattern.kind) {
        case FindingKind::different:
            return fmt::format("{} {}", head, difference(pattern));
        case FindingKind::missing:
            return fmt::format("{} {} missing, {}", head, are, keys(pattern));
        case FindingKind::unexpected:
            return fmt::format("{} {} unexpected, {}", head, are, keys(pattern));
        case FindingKind::refused:
            return fmt::format("{} {} refused: {}", head, are, reason(result, pattern));
        case FindingKind::duplicate_programmed:
            return fmt::format("{} {} a duplicate of another programmed one, {}", head, are, keys(pattern));
        case FindingKind::duplicate_held:
            return fmt::format("{} {} a duplicate of another held one, {}", head, are, keys(pattern));
        case FindingKind::unreadable:
            return fmt::format("{}: {} {} unreadable: {}", result.files[pattern.file].name,
                               lines(pattern.count, result.files[pattern.file].raw_of.has_value()), are,
                               reason(result, pattern));
        case FindingKind::moving:
            return fmt::format("{} {} moving, {}", head, are, keys(pattern));
    }
    return "";
}

std::string remark(const Pattern& pattern) {
    std::vector<std::string> remarks;
    if (pattern.kind != FindingKind::different) {
        return "";
    }
    switch (pattern.explained) {
        case Explained::reversed:
            remarks.emplace_back("the bytes of values stand in reverse order, as in a read-back");
            break;
        case Explained::read_back:
            remarks.emplace_back("the records are what a read-back gives when it is translated again");
            break;
        case Explained::logical:
            remarks.emplace_back("the records are logical ones, not the card's");
            break;
        case Explained::cleared:
            remarks.emplace_back("the held records are all zeros");
            break;
        case Explained::no:
            break;
    }
    if (pattern.exact() && pattern.programmed_size == 0) {
        const auto constant = [&](const Bits& in_all, const Bits& in_any) {
            for (std::size_t i = 0; i < most_physical; ++i) {
                if (((in_all.bytes[i] ^ in_any.bytes[i]) & pattern.always.bytes[i]) != 0) {
                    return false;
                }
            }
            return true;
        };
        const std::vector<Span> spans = spans_of(pattern.always);
        const auto value = [&](const Bits& bits) {
            return explain::value_at({bits.bytes.begin(), bits.bytes.end()}, spans);
        };
        if (constant(pattern.held_and, pattern.held_or)) {
            remarks.push_back(
                constant(pattern.programmed_and, pattern.programmed_or)
                    ? fmt::format("programmed {}, held {}", value(pattern.programmed_and), value(pattern.held_and))
                    : fmt::format("held {} in all", value(pattern.held_and)));
        }
    }
    if (pattern.with_others != 0) {
        remarks.push_back(fmt::format("{} more in {} and other bits", grouped(pattern.with_others),
                                      pattern.always.count() == 1 ? "this" : "these"));
    }
    return fmt::format("{}", fmt::join(remarks, "; "));
}

std::string grouped(std::uint64_t number) {
    std::string text = std::to_string(number);
    for (std::size_t at = text.size(); at > 3;) {
        at -= 3;
        text.insert(at, 1, ',');
    }
    return text;
}

std::string position_text(const Bits& bits) {
    return fmt::format("{}", fmt::join(explain::positions('P', spans_of(bits)), ", "));
}

}  // namespace audit
