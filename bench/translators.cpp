// Times every subject beside the library's own generic copy of as many bytes, in the same run, by one thread and by as
// many as the machine has. Prints a table: the time of one record, its ratio to the copy, and how many records all
// threads together translate in the time in which one thread translates one. Every time is the median of the
// repetitions.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>
#include <string>
#include <thread>
#include <vector>

#include "subject.h"

namespace {

using bench::Records;
using bench::Subject;

void translate(benchmark::State& state, const Subject& subject) {
    Records records{subject};
    records.with_call([&](auto call) {
        for (auto _ : state) {
            for (std::size_t i = 0; i < Records::count; ++i) {
                benchmark::DoNotOptimize(call(i));
            }
            benchmark::ClobberMemory();
        }
    });
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(Records::count));
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    const std::size_t half = values.size() / 2;
    return values.size() % 2 == 1 ? values[half] : (values[half - 1] + values[half]) / 2;
}

// Collects the times and prints the table when all are there.
class Table : public benchmark::BenchmarkReporter {
public:
    explicit Table(const std::vector<Subject>& subjects) : subjects_{subjects} {}

    bool ReportContext(const Context&) override { return true; }
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.run_type == Run::RT_Iteration) {
                constexpr double nanoseconds = 1e9;
                auto& times = run.threads > 1 ? by_all_threads_ : by_one_thread_;
                times[run.run_name.function_name].push_back(nanoseconds / run.counters.at("items_per_second"));
            }
        }
        std::fprintf(stderr, "\r%zu of %zu", by_one_thread_.size(), subjects_.size());
    }
    void Finalize() override {
        std::fprintf(stderr, "\r");
        std::printf("| Translator, variant | Bytes | ns | Ratio | All threads |\n|---|--:|--:|--:|--:|\n");
        double logarithms = 0;
        double worst = 0;
        std::string worst_name;
        std::size_t above_copy = 0;
        std::size_t count = 0;
        for (const Subject& subject : subjects_) {
            const std::string copy = bench::copy_name(subject.size);
            if (!by_one_thread_.contains(subject.name) || !by_one_thread_.contains(copy)) {
                continue;
            }
            const double time = median(by_one_thread_[subject.name]);
            const double ratio = time / median(by_one_thread_[copy]);
            std::printf("| %s | %zu | %.2f | %.2f | ", subject.name.c_str(), subject.size, time, ratio);
            if (by_all_threads_.contains(subject.name)) {
                std::printf("%.2f |\n", time / median(by_all_threads_[subject.name]));
            } else {
                std::printf("- |\n");
            }
            if (subject.translator == nullptr) {
                continue;
            }
            logarithms += std::log(ratio);
            ++count;
            above_copy += ratio > 1 ? 1 : 0;
            if (ratio > worst) {
                worst = ratio;
                worst_name = subject.name;
            }
        }
        if (count != 0) {
            std::printf(
                "\n%zu measured, of which %zu take longer than the copy; geometric mean of the ratios %.2f; worst "
                "%.2f: %s\n",
                count, above_copy, std::exp(logarithms / static_cast<double>(count)), worst, worst_name.c_str());
        }
    }

private:
    const std::vector<Subject>& subjects_;
    std::map<std::string, std::vector<double>> by_one_thread_;
    std::map<std::string, std::vector<double>> by_all_threads_;
};

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 2;
    }
    const std::vector<Subject> subjects = bench::subjects();
    const int threads = static_cast<int>(std::thread::hardware_concurrency());
    for (const Subject& subject : subjects) {
        auto* registered = benchmark::RegisterBenchmark(subject.name.c_str(), translate, subject);
        registered->UseRealTime()->Threads(1);
        if (threads > 1) {
            registered->Threads(threads);
        }
    }
    Table table{subjects};
    benchmark::RunSpecifiedBenchmarks(&table);
    return 0;
}
