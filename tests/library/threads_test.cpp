// Any number of threads may translate at once. Run under the thread sanitizer (preset thread) this also shows that no
// two calls share anything but their inputs.

#include <gtest/gtest.h>

#include <algorithm>
#include <barrier>
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

std::vector<Job> every_variant() {
    std::vector<Job> jobs;
    for (const catalogue::Translator& translator : catalogue::translators()) {
        for (const catalogue::Variant& variant : translator.variants) {
            jobs.push_back(
                {&translator, catalogue::Argument{variant.argument}, catalogue::example(translator, variant, 1)});
        }
    }
    return jobs;
}

TEST(Threads, TranslateAtOnceWhatOneTranslatesAlone) {
    const std::vector<Job> jobs = every_variant();
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

TEST(Threads, ShareTheDispatchTablesAndTheRegisters) {
    std::vector<std::thread> threads;
    std::vector<int> found(thread_count);
    for (std::size_t i = 0; i < thread_count; ++i) {
        threads.emplace_back([&found, i] {
            for (unsigned table = 0; table < NPXLATE_TABLE_COUNT; ++table) {
                found[i] += l2p_ucode_func_table[table].key != nullptr &&
                            l2p_ucode_func_table[table].result != nullptr && p2l_ucode_func_table[table] != nullptr;
            }
            for (std::uint8_t engine = 0; engine < 3; ++engine) {
                found[i] += quill_to_get_mreg_init(engine)->number != 0;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(found, std::vector<int>(thread_count, NPXLATE_TABLE_COUNT + 3));
}

}  // namespace
