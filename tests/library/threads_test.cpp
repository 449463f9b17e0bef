// Any number of threads may translate at once. Run under the thread sanitizer (preset thread) this also shows that no
// two calls share anything but their inputs.

#include <gtest/gtest.h>

#include <algorithm>
#include <barrier>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

#include "catalogue/call.h"
#include "catalogue/example.h"
#include "support/record.h"

namespace {

using catalogue::Trait;
using support::Bytes;

constexpr int thread_count = 8;
constexpr int rounds = 5;

// One translation, as all threads make it.
struct Job {
    const catalogue::Translator* translator;
    catalogue::Argument argument;
    Bytes in;

    struct Outcome {
        std::int32_t status;
        std::uint32_t length;
        Bytes out;
        bool operator==(const Outcome&) const = default;
    };

    Outcome run() const {
        // Exact sizes, so that the sanitizers see whatever is touched beyond; at least a byte, for a pointer to it.
        Outcome outcome{0, 0, Bytes(std::max<std::size_t>(translator->out().most, 1), 0xa5)};
        Bytes own = translator->has(Trait::changes_input) ? in : Bytes{};
        const void* from = own.empty() ? in.data() : own.data();
        outcome.status = catalogue::call(*translator, from, static_cast<std::int32_t>(in.size()), outcome.out.data(),
                                         &outcome.length, argument);
        return outcome;
    }
};

std::vector<Job> every_sample() {
    std::vector<Job> jobs;
    for (const catalogue::Translator& translator : catalogue::translators()) {
        for (const catalogue::Sample& sample : translator.samples) {
            jobs.push_back(
                {&translator, catalogue::Argument{sample.argument}, catalogue::example(translator, sample, 1)});
        }
    }
    return jobs;
}

TEST(Threads, TranslateAtOnceWhatOneTranslatesAlone) {
    const std::vector<Job> jobs = every_sample();
    std::vector<Job::Outcome> alone;
    alone.reserve(jobs.size());
    for (const Job& job : jobs) {
        alone.push_back(job.run());
    }

    std::barrier start{thread_count};
    std::vector<std::vector<std::string>> different(thread_count);
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < thread_count; ++i) {
        threads.emplace_back([&, i] {
            // Each thread goes through the jobs in step with the others, so that equal calls meet.
            for (int round = 0; round < rounds; ++round) {
                start.arrive_and_wait();
                for (std::size_t k = 0; k < jobs.size(); ++k) {
                    if (jobs[k].run() != alone[k]) {
                        different[i].emplace_back(jobs[k].translator->name);
                    }
                }
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(different, std::vector<std::vector<std::string>>(thread_count));
}

// What the library exports as data, as one thread sees it.
struct Shared {
    std::vector<npxlate_l2p_entry> forward{std::begin(l2p_ucode_func_table), std::end(l2p_ucode_func_table)};
    std::vector<npxlate_p2l_entry> reverse{std::begin(p2l_ucode_func_table), std::end(p2l_ucode_func_table)};
    std::vector<std::uint32_t> registers;
    std::uint16_t highest_index = TX_ADJ_KEY_MAX;

    Shared() {
        add(0, quill_to_topparse_mregs);
        add(1, quill_to_topresolve_mregs);
        add(2, quill_to_toplearn_mregs);
    }

    bool operator==(const Shared& other) const {
        const auto same = [](const npxlate_l2p_entry& a, const npxlate_l2p_entry& b) {
            return a.key == b.key && a.result == b.result;
        };
        return std::ranges::equal(forward, other.forward, same) && reverse == other.reverse &&
               registers == other.registers && highest_index == other.highest_index;
    }

private:
    // Through the function, as many as the declaration says.
    template <std::size_t count>
    void add(std::uint8_t engine, const npxlate_register (&declared)[count]) {
        const npxlate_register* given = quill_to_get_mreg_init(engine);
        EXPECT_EQ(given, declared);
        for (std::size_t i = 0; i < count; ++i) {
            registers.push_back(given[i].number);
            registers.push_back(given[i].value);
        }
    }
};

// Half of the threads read all that the library shares, while the others make every translation. A translator that
// wrote there would show in what is read, and to the thread sanitizer in any case.
TEST(Threads, ReadWhatIsSharedWhileOthersTranslate) {
    const std::vector<Job> jobs = every_sample();
    const Shared before;
    for (unsigned table = 0; table < NPXLATE_TABLE_COUNT; ++table) {
        ASSERT_EQ(before.forward[table].key, catalogue::of_table(table, catalogue::Role::key).forward);
    }

    std::barrier start{thread_count};
    std::vector<int> different(thread_count);
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < thread_count; ++i) {
        threads.emplace_back([&, i] {
            start.arrive_and_wait();
            for (int round = 0; round < rounds; ++round) {
                if (i % 2 == 0) {
                    different[i] += Shared{} == before ? 0 : 1;
                    continue;
                }
                for (const Job& job : jobs) {
                    job.run();
                }
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(different, std::vector<int>(thread_count));
    EXPECT_TRUE(Shared{} == before);
}

}  // namespace
