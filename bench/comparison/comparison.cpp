// Times the library beside the other ways of writing a translator, in the same run. Prints a table: the time of one
// record in each way and, in brackets, how many times the library's own it is. Every time is the median of the
// repetitions.

#include "comparison/comparison.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "timing.h"

namespace {

using bench::Subject;
using catalogue::Translator;

constexpr const char* ways[] = {"library", "words", "structures", "table"};

struct Line {
    std::string name;
    std::size_t size;
    std::vector<catalogue::Sample> samples;
    std::vector<Translator> by_way;  // in the order of the ways
};

std::vector<Line> lines() {
    std::vector<Line> result;
    for (const comparison::Record& record : comparison::records) {
        const Translator* library = catalogue::find(record.translator);
        if (library == nullptr) {
            std::cerr << "no translator " << record.translator << '\n';
            std::exit(1);
        }
        std::vector<Translator> by_way(4, *library);
        by_way[1].forward = record.by_words;
        by_way[2].forward = record.by_structures;
        by_way[3].forward = record.by_table;
        std::vector<catalogue::Sample> samples;
        for (const catalogue::Sample& sample : library->samples) {
            if (std::string_view{sample.name}.starts_with(record.samples)) {
                samples.push_back(sample);
                result.push_back(
                    {std::string{record.translator} + ", " + sample.name, library->physical.most, {sample}, by_way});
            }
        }
        result.push_back({std::string{record.translator} + ", mixed", library->physical.most, samples, by_way});
    }
    return result;
}

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 2;
    }
    const std::vector<Line> all = lines();
    for (const Line& line : all) {
        for (std::size_t way = 0; way < std::size(ways); ++way) {
            const Subject subject{line.name + "/" + ways[way], line.size, &line.by_way[way], line.samples};
            benchmark::RegisterBenchmark(subject.name.c_str(), bench::translate, subject);
        }
    }
    bench::Times times{all.size() * std::size(ways)};
    benchmark::RunSpecifiedBenchmarks(&times);

    std::printf("| Translator, sample | Library, ns | Words | Structures | Table |\n|---|--:|--:|--:|--:|\n");
    for (const Line& line : all) {
        if (!times.has(line.name + "/library")) {
            continue;
        }
        const double library = times.of(line.name + "/library");
        std::printf("| %s | %.2f |", line.name.c_str(), library);
        for (std::size_t way = 1; way < std::size(ways); ++way) {
            const std::string name = line.name + "/" + ways[way];
            if (times.has(name)) {
                std::printf(" %.2f (%.2f) |", times.of(name), times.of(name) / library);
            } else {
                std::printf(" - |");
            }
        }
        std::printf("\n");
    }
    return 0;
}
