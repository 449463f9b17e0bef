#include "timing.h"

#include <unistd.h>

#include <algorithm>
#include <iostream>

namespace bench {
namespace {

// Progress, for whoever watches.
void show(const std::string& text) {
    if (::isatty(STDERR_FILENO) == 1) {
        std::cerr << text;
    }
}

}  // namespace

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
    show('\r' + std::to_string(by_one_thread_.size()) + " of " + std::to_string(expected_));
}

void Times::Finalize() { show("\n"); }

double Times::median(const Measured& measured, const std::string& name) {
    std::vector<double> values = measured.at(name);
    std::sort(values.begin(), values.end());
    const std::size_t half = values.size() / 2;
    return values.size() % 2 == 1 ? values[half] : (values[half - 1] + values[half]) / 2;
}

}  // namespace bench
