// The engine registers. The tables of the parse and resolve engines are grouped by register: one entry for each
// instance of the engine, then the next register.
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <set>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <npxlate/npxlate.h>

namespace {

static_assert(sizeof(npxlate_register) == 8 && offsetof(npxlate_register, number) == 0 &&
              offsetof(npxlate_register, value) == 4);
static_assert(sizeof quill_to_topparse_mregs == 480);
static_assert(sizeof quill_to_topresolve_mregs == 1536);
static_assert(sizeof quill_to_toplearn_mregs == 120);

using Registers = std::vector<std::pair<std::uint32_t, std::uint32_t>>;

// Offset within an instance, value.
const Registers parse_rows{
    {0, 0x1f},       {1, 0xfffff},    {2, 0xf0},      {3, 0x3},  {4, 0xffc0}, {5, 0xff},       {6, 0xffff}, {7, 0xdf},
    {8, 0x7e913830}, {9, 0xffff7fbf}, {11, 0xffffff}, {12, 0x7}, {13, 0xf},   {14, 0x1000000}, {15, 0x0},
};
const Registers resolve_rows{
    {0, 0x1}, {1, 0xffffff}, {2, 0xff}, {3, 0xffff},      {4, 0xff0fffff}, {5, 0x1},  {6, 0xf},  {7, 0x3ff},
    {8, 0x3}, {9, 0x4},      {10, 0x0}, {11, 0x13004150}, {12, 0x7},       {13, 0x0}, {14, 0x0}, {15, 0x0},
};
// Number, value.
const Registers learn_registers{
    {13091, 0xffffff}, {13092, 0},        {13093, 0}, {13094, 0}, {13095, 0}, {13096, 0}, {13097, 0}, {13098, 0},
    {13099, 0x200000}, {13100, 0x240000}, {13101, 0}, {13102, 0}, {13103, 0}, {13105, 0}, {13106, 0},
};

Registers of_instances(const Registers& rows, std::uint32_t first, std::uint32_t instances, std::uint32_t stride) {
    Registers registers;
    for (const auto& [offset, value] : rows) {
        for (std::uint32_t instance = 0; instance < instances; ++instance) {
            registers.emplace_back(first + stride * instance + offset, value);
        }
    }
    return registers;
}

template <std::size_t size>
Registers contents(const npxlate_register (&table)[size]) {
    Registers registers;
    for (const npxlate_register& entry : table) {
        registers.emplace_back(entry.number, entry.value);
    }
    return registers;
}

template <std::size_t size>
std::set<std::uint32_t> numbers(const npxlate_register (&table)[size]) {
    std::set<std::uint32_t> result;
    for (const npxlate_register& entry : table) {
        result.insert(entry.number);
    }
    return result;
}

TEST(Registers, OfTheParseEngineCoverFourInstances) {
    EXPECT_EQ(contents(quill_to_topparse_mregs), of_instances(parse_rows, 11415, 4, 301));
}

TEST(Registers, OfTheResolveEngineCoverTwelveInstances) {
    EXPECT_EQ(contents(quill_to_topresolve_mregs), of_instances(resolve_rows, 30752, 12, 274));
}

TEST(Registers, OfTheLearnEngineAreInAscendingOrder) { EXPECT_EQ(contents(quill_to_toplearn_mregs), learn_registers); }

TEST(Registers, OfTheParseEngineBeginWithTheFirstRegisterOfEachInstance) {
    constexpr std::uint32_t first[] = {11415, 11716, 12017, 12318, 11416, 11717, 12018, 12319};
    for (std::size_t i = 0; i < std::size(first); ++i) {
        EXPECT_EQ(quill_to_topparse_mregs[i].number, first[i]);
        EXPECT_EQ(quill_to_topparse_mregs[i].value, i < 4 ? 0x1fU : 0xfffffU);
    }
    EXPECT_EQ(quill_to_topparse_mregs[59].number, 12333U);
    EXPECT_EQ(quill_to_topparse_mregs[59].value, 0U);
}

TEST(Registers, OfTheResolveEngineBeginWithTheFirstRegisterOfEachInstance) {
    constexpr std::uint32_t first[] = {30752, 31026, 31300, 31574, 31848, 32122,
                                       32396, 32670, 32944, 33218, 33492, 33766};
    for (std::size_t i = 0; i < std::size(first); ++i) {
        EXPECT_EQ(quill_to_topresolve_mregs[i].number, first[i]);
        EXPECT_EQ(quill_to_topresolve_mregs[i].value, 1U);
    }
    EXPECT_EQ(quill_to_topresolve_mregs[12].number, 30753U);
    EXPECT_EQ(quill_to_topresolve_mregs[191].number, 33781U);
}

TEST(Registers, LeaveOutTheTenthOfParseAndOneOfLearn) {
    const std::set<std::uint32_t> parse = numbers(quill_to_topparse_mregs);
    for (const std::uint32_t number : {11425U, 11726U, 12027U, 12328U}) {
        EXPECT_FALSE(parse.contains(number)) << number;
    }
    EXPECT_FALSE(numbers(quill_to_toplearn_mregs).contains(13104));
}

TEST(Registers, AreWrittenOnceEach) {
    EXPECT_EQ(numbers(quill_to_topparse_mregs).size(), 60U);
    EXPECT_EQ(numbers(quill_to_topresolve_mregs).size(), 192U);
    EXPECT_EQ(numbers(quill_to_toplearn_mregs).size(), 15U);
}

TEST(Registers, AreFoundByTheNumberOfTheirEngine) {
    EXPECT_EQ(quill_to_get_mreg_init(0), quill_to_topparse_mregs);
    EXPECT_EQ(quill_to_get_mreg_init(1), quill_to_topresolve_mregs);
    EXPECT_EQ(quill_to_get_mreg_init(2), quill_to_toplearn_mregs);
    for (unsigned engine = 3; engine < 0x100; ++engine) {
        EXPECT_EQ(quill_to_get_mreg_init(static_cast<std::uint8_t>(engine)), nullptr) << engine;
    }
}

}  // namespace
