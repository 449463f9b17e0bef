// What the timed programs share: the loop that is timed, and a reporter that keeps the times.
#pragma once

#include <benchmark/benchmark.h>

#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "subject.h"

namespace bench {

// Translates the subject's records over and over.
void translate(benchmark::State& state, const Subject& subject);

// The time of one record in nanoseconds, as the median of the repetitions. For one thread it is the processor's time,
// in which what else runs on the machine counts least; for several it is the time that passes.
class Times : public benchmark::BenchmarkReporter {
public:
    explicit Times(std::size_t expected) : expected_{expected} {}

    bool ReportContext(const Context&) override { return true; }
    void ReportRuns(const std::vector<Run>& runs) override;
    void Finalize() override;

    bool has(const std::string& name) const { return by_one_thread_.contains(name); }
    double of(const std::string& name) const { return median(by_one_thread_, name); }
    bool has_all_threads(const std::string& name) const { return by_all_threads_.contains(name); }
    double of_all_threads(const std::string& name) const { return median(by_all_threads_, name); }

private:
    using Measured = std::map<std::string, std::vector<double>>;

    static double median(const Measured& measured, const std::string& name);

    std::size_t expected_;
    Measured by_one_thread_;
    Measured by_all_threads_;
};

}  // namespace bench
