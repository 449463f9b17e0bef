// Times every subject beside the library's own generic copy of as many bytes, in the same run, by one thread and by as
// many as the machine has. Prints a table: the time of one record, its ratio to the copy, and how many records all
// threads together translate in the time in which one thread translates one.

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <map>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "timing.h"

namespace {

using bench::Subject;

struct Mean {  // geometric
    double logarithms = 0;
    std::size_t count = 0;

    void add(double ratio) {
        logarithms += std::log(ratio);
        ++count;
    }
    double value() const { return std::exp(logarithms / static_cast<double>(count)); }
};

void print(const std::vector<Subject>& subjects, const bench::Times& times) {
    std::printf("| Translator, sample | Bytes | ns | Ratio | All threads |\n|---|--:|--:|--:|--:|\n");
    Mean of_samples;
    std::map<std::string_view, Mean> of_translators;
    double worst = 0;
    std::string worst_name;
    std::size_t slower = 0;
    for (const Subject& subject : subjects) {
        const std::string copy = bench::copy_name(subject.size);
        if (!times.has(subject.name) || !times.has(copy)) {
            continue;
        }
        const double time = times.of(subject.name);
        const double ratio = time / times.of(copy);
        std::printf("| %s | %zu | %.2f | %.2f | ", subject.name.c_str(), subject.size, time, ratio);
        if (times.has_all_threads(subject.name)) {
            std::printf("%.2f |\n", time / times.of_all_threads(subject.name));
        } else {
            std::printf("- |\n");
        }
        if (subject.translator == nullptr) {
            continue;
        }
        of_samples.add(ratio);
        of_translators[subject.translator->name].add(ratio);
        slower += ratio > 1 ? 1 : 0;
        if (ratio > worst) {
            worst = ratio;
            worst_name = subject.name;
        }
    }
    if (of_samples.count == 0) {
        return;
    }
    Mean each_once;
    for (const auto& [name, mean] : of_translators) {
        each_once.add(mean.value());
    }
    std::printf("\ngeometric mean of the ratios: %.2f\n", of_samples.value());
    std::printf("geometric mean, each translator counted once: %.2f\n", each_once.value());
    std::printf("worst ratio: %.2f, %s\n", worst, worst_name.c_str());
    std::printf("slower than the copy: %zu of %zu\n", slower, of_samples.count);
}

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 2;
    }
    const std::vector<Subject> subjects = bench::subjects();
    const int threads = static_cast<int>(std::thread::hardware_concurrency());
    for (const Subject& subject : subjects) {
        auto* registered = benchmark::RegisterBenchmark(subject.name.c_str(), bench::translate, subject);
        registered->Threads(1);
        if (threads > 1) {
            registered->Threads(threads);
        }
    }
    bench::Times times{subjects.size()};
    benchmark::RunSpecifiedBenchmarks(&times);
    print(subjects, times);
    return 0;
}
