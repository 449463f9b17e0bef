#include "support/harness.h"

#include <sys/mman.h>
#include <unistd.h>
#include <algorithm>
#include <csignal>
#include <cstring>
#include <new>
#include <stdexcept>

#include <gtest/gtest.h>

#include "support/rows.h"

namespace support {
namespace {

// Bytes between two inaccessible pages, flush against one of them: touching a byte outside ends the test program.
class GuardedBuffer {
public:
    GuardedBuffer() : page_{static_cast<std::size_t>(sysconf(_SC_PAGESIZE))} {
        void* memory = mmap(nullptr, 3 * page_, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (memory == MAP_FAILED) {
            throw std::bad_alloc{};
        }
        memory_ = static_cast<std::uint8_t*>(memory);
        if (mprotect(memory_ + page_, page_, PROT_READ | PROT_WRITE) != 0) {
            throw std::bad_alloc{};
        }
    }
    ~GuardedBuffer() { munmap(memory_, 3 * page_); }
    GuardedBuffer(const GuardedBuffer&) = delete;
    GuardedBuffer& operator=(const GuardedBuffer&) = delete;

    std::uint8_t* at_start() { return memory_ + page_; }
    std::uint8_t* at_end(std::size_t size) { return memory_ + 2 * page_ - size; }
    std::uint8_t* inside(std::size_t offset) { return memory_ + page_ + offset; }

private:
    std::size_t page_;
    std::uint8_t* memory_;
};

struct Arena {
    GuardedBuffer in;
    GuardedBuffer out;
    GuardedBuffer length;
};

Arena& arena() {
    static thread_local Arena instance;
    return instance;
}

const char* current_translator = "";

// Only async-signal-safe calls here.
extern "C" void report_outside_access(int) {
    constexpr char text[] = ": touched memory outside its records\n";
    (void)!write(STDERR_FILENO, current_translator, std::strlen(current_translator));
    (void)!write(STDERR_FILENO, text, sizeof text - 1);
    _exit(1);
}

void report_outside_accesses() {
    static const bool installed = [] {
        static_cast<void>(std::signal(SIGSEGV, report_outside_access));
        static_cast<void>(std::signal(SIGBUS, report_outside_access));
        return true;
    }();
    (void)installed;
}

// Every byte differs from those of a length that a translator stores, so that a narrower store shows.
constexpr std::uint32_t length_sentinel = 0xdeadbeef;

enum class Place { at_start, at_end, unaligned };

Outcome call_once(const Translator& translator, const Bytes& in, std::int32_t length, const Bytes& before,
                  Place place) {
    const auto put = [place](GuardedBuffer& buffer, const Bytes& content) {
        std::uint8_t* where = place == Place::at_start ? buffer.at_start()
                              : place == Place::at_end ? buffer.at_end(content.size())
                                                       : buffer.inside(513);
        if (!content.empty()) {
            std::memcpy(where, content.data(), content.size());
        }
        return where;
    };
    report_outside_accesses();
    current_translator = translator.name.c_str();

    // Around the records, where a record does not lie flush against a page that faults.
    constexpr std::uint8_t moat = 0xc3;
    constexpr std::size_t moat_size = 256;
    std::uint8_t* in_at = put(arena().in, in);
    std::uint8_t* out_at = put(arena().out, before);
    if (place == Place::unaligned) {
        std::memset(out_at - moat_size, moat, moat_size);
        std::memset(out_at + before.size(), moat, moat_size);
    }
    auto* length_at = new (arena().length.at_end(sizeof(std::uint32_t))) std::uint32_t{length_sentinel};

    Outcome outcome;
    outcome.status = translator.call(in_at, length, out_at, length_at);

    if (place == Place::unaligned) {
        for (std::size_t i = 0; i < moat_size; ++i) {
            if (out_at[-1 - static_cast<std::ptrdiff_t>(i)] != moat || out_at[before.size() + i] != moat) {
                ADD_FAILURE() << translator.name << ": wrote outside its output record";
                break;
            }
        }
    }
    outcome.out.assign(out_at, out_at + before.size());
    outcome.in.assign(in_at, in_at + in.size());
    if (*length_at != length_sentinel) {
        outcome.length = *length_at;
    }
    return outcome;
}

std::string show(const Outcome& outcome) {
    return "status " + std::to_string(outcome.status) + ", length " +
           (outcome.length ? std::to_string(*outcome.length) : "not written") + "\n  out " + hex(outcome.out) +
           "\n  in  " + hex(outcome.in);
}

// Where two records differ, as positions of the side they belong to.
std::string differing_bits(const Bytes& a, const Bytes& b, char side) {
    std::string text;
    for (std::size_t i = 0; i < a.size(); ++i) {
        for (unsigned j = 8; j-- > 0;) {
            if (bit(a, i, j) != bit(b, i, j)) {
                text += (text.empty() ? "" : " ") + std::string{side} + std::to_string(i) + "." + std::to_string(j);
            }
        }
    }
    return text;
}

// What the translator did over an output of `before` is what the model says.
bool agrees(const Translator& translator, const Model& model, const Bytes& in, const Bytes& before,
            const Outcome& actual) {
    Outcome expected;
    expected.out = before;
    expected.in = in;
    const Reply reply = model(expected.in, expected.out);
    expected.status = reply.status;
    expected.length = reply.length;
    if (actual != expected) {
        ADD_FAILURE() << translator.name << " of " << hex(in) << "\nover " << hex(before) << "\nexpected "
                      << show(expected) << "\nactual " << show(actual) << "\ndiffers in "
                      << differing_bits(expected.out, actual.out, '+');
        return false;
    }
    return true;
}

bool agrees(const Translator& translator, const Model& model, const Bytes& in) {
    constexpr std::uint8_t patterns[] = {0x00, 0xff, 0xa5};
    return std::ranges::all_of(patterns, [&](std::uint8_t pattern) {
        const Bytes before(translator.out_size, pattern);
        return agrees(translator, model, in, before, translate(translator, in, before));
    });
}

}  // namespace

Translator forward(std::string name, npxlate_result_fn* function, std::size_t logical, std::size_t physical) {
    return {std::move(name), function, logical, physical};
}

Translator reverse(std::string name, npxlate_reverse_fn* function, std::size_t physical, std::size_t logical) {
    return {std::move(name),
            [function](const void* in, std::int32_t length, void* out, std::uint32_t*) {
                return function(in, length, out);
            },
            physical, logical};
}

Translator reverse_by_type(std::string name, npxlate_reverse_by_type_fn* function, std::size_t physical,
                           std::size_t logical, std::uint32_t entry_type) {
    return {std::move(name),
            [function, entry_type](const void* in, std::int32_t length, void* out, std::uint32_t*) {
                return function(in, length, out, &entry_type);
            },
            physical, logical};
}

Translator reverse_by_key(std::string name, npxlate_reverse_by_key_fn* function, std::size_t physical,
                          std::size_t logical, const Bytes& logical_key) {
    return {std::move(name),
            [function, logical_key](const void* in, std::int32_t length, void* out, std::uint32_t*) {
                return function(in, length, out, logical_key.data());
            },
            physical, logical};
}

Outcome translate(const Translator& translator, const Bytes& in, const Bytes& before) {
    return translate_with_length(translator, in, static_cast<std::int32_t>(in.size()), before);
}

Outcome translate_with_length(const Translator& translator, const Bytes& in, std::int32_t length, const Bytes& before) {
    const Bytes start = before.empty() ? Bytes(translator.out_size) : before;
    Outcome first = call_once(translator, in, length, start, Place::at_end);
    for (const Place place : {Place::at_start, Place::unaligned}) {
        EXPECT_EQ(call_once(translator, in, length, start, place), first)
            << translator.name << " answers differently at another address, for " << hex(in);
    }
    return first;
}

void check(const Translator& translator, const Model& model, const Bytes& in) { agrees(translator, model, in); }

bool check_over(const Translator& translator, const Model& model, const Bytes& in, const Bytes& before) {
    return agrees(translator, model, in, before,
                  call_once(translator, in, static_cast<std::int32_t>(in.size()), before, Place::at_end));
}

void walk(const Translator& translator, const Model& model, const Bytes& base) {
    if (!agrees(translator, model, base)) {
        return;
    }
    for (std::size_t i = 0; i < base.size(); ++i) {
        for (unsigned j = 0; j < 8; ++j) {
            Bytes changed = base;
            set_bit(changed, i, j, !bit(base, i, j));
            if (!agrees(translator, model, changed)) {
                ADD_FAILURE() << "after changing bit " << j << " of byte " << i << " of the base record";
                return;
            }
        }
    }
}

void walk(const Translator& translator, const Model& model, const std::vector<Bytes>& bases) {
    for (const Bytes& base : bases) {
        walk(translator, model, base);
    }
}

void check_random(const Translator& translator, const Model& model, int count,
                  const std::function<void(Bytes&)>& shape) {
    Random random{0x6e70786c617465};
    for (int i = 0; i < count; ++i) {
        Bytes in = random.record(translator.in_size);
        if (shape) {
            shape(in);
        }
        if (!agrees(translator, model, in)) {
            return;
        }
    }
}

std::string changes(const Translator& translator, const Bytes& base, const std::string& input_bit) {
    const Position where = position(input_bit);
    if (where.bit_count() != 1) {
        throw std::invalid_argument{"not one bit: " + input_bit};
    }
    Bytes changed = base;
    set_bit(changed, where.first, where.low, !bit(base, where.first, where.low));
    return differing_bits(translate(translator, base).out, translate(translator, changed).out,
                          where.record == 'L' ? 'P' : 'L');
}

std::string carried(const Translator& translator, const Bytes& base, const std::vector<std::string>& positions) {
    std::string found;
    for (const std::string& text : positions) {
        const Position where = position(text);
        for (std::size_t byte = where.first; byte <= where.last; ++byte) {
            for (unsigned bit = where.low; bit <= where.high; ++bit) {
                const std::string one = std::string{where.record} + std::to_string(byte) + "." + std::to_string(bit);
                if (!changes(translator, base, one).empty()) {
                    found += one + " ";
                }
            }
        }
    }
    return found;
}

void expect_not_carried(const Translator& translator, const Bytes& base, const std::vector<std::string>& positions) {
    EXPECT_EQ(carried(translator, base, positions), "") << translator.name << " carries bits of " << hex(base);
}

void expect_exact_length(const Translator& reverse_translator) {
    const Bytes in(reverse_translator.in_size, 0x5a);
    const Bytes before(reverse_translator.out_size, 0xa5);
    const auto exact = static_cast<std::int32_t>(reverse_translator.in_size);
    EXPECT_EQ(translate_with_length(reverse_translator, in, exact, before).status, NPXLATE_OK);
    std::vector<std::int32_t> lengths{exact + 256, -1, -exact, INT32_MAX, INT32_MIN};
    for (std::int32_t length = 0; length <= 2 * exact + 64; ++length) {
        lengths.push_back(length);
    }
    std::erase(lengths, exact);
    for (const std::int32_t length : lengths) {
        EXPECT_EQ(translate_with_length(reverse_translator, in, length, before),
                  (Outcome{NPXLATE_INVALID, std::nullopt, before, in}))
            << reverse_translator.name << " of length " << length;
    }
}

void expect_length_ignored(const Translator& translator, const Bytes& in) {
    const Outcome expected = translate(translator, in);
    for (const std::int32_t length : {0, 1, static_cast<std::int32_t>(in.size()) - 1,
                                      static_cast<std::int32_t>(in.size()) + 1, 1000, -1, INT32_MAX, INT32_MIN}) {
        EXPECT_EQ(translate_with_length(translator, in, length), expected)
            << translator.name << " of length " << length;
    }
}

// splitmix64.
std::uint64_t Random::next() {
    std::uint64_t z = state_ += 0x9e3779b97f4a7c15;
    z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9;
    z = (z ^ (z >> 27)) * 0x94d049bb133111eb;
    return z ^ (z >> 31);
}

Bytes Random::record(std::size_t size) {
    Bytes result(size);
    for (std::uint8_t& byte : result) {
        byte = static_cast<std::uint8_t>(next());
    }
    return result;
}

}  // namespace support
