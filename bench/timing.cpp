#include "timing.h"

#include <algorithm>
#include <cstdio>

namespace bench {

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
}

void Times::ReportRuns(const std::vector<Run>& runs) {
    for (const Run& run : runs) {
        if (run.run_type != Run::RT_Iteration) {
            continue;
        }
        const bool one = run.threads == 1;
        const double seconds = one ? run.cpu_accumulated_time : run.real_accumulated_time;
        const double records = static_cast<double>(run.iterations) * static_cast<double>(Records::count);
        auto& times = one ? by_one_thread_ : by_all_threads_;
        times[run.run_name.function_name].push_back(1e9 * seconds / records);
    }
    std::fprintf(stderr, "\r%zu of %zu", by_one_thread_.size(), expected_);
}

void Times::Finalize() { std::fprintf(stderr, "\r"); }

double Times::median(const Measured& measured, const std::string& name) {
    std::vector<double> values = measured.at(name);
    std::sort(values.begin(), values.end());
    const std::size_t half = values.size() / 2;
    return values.size() % 2 == 1 ? values[half] : (values[half - 1] + values[half]) / 2;
}

}  // namespace bench
