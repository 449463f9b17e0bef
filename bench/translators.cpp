// Every translator of the catalogue, in every variant, beside the library's own generic copy of as many bytes. Prints
// the time of one record and its ratio to the copy, both taken in this run.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include "catalogue/catalogue.h"
#include "catalogue/example.h"

namespace {

using catalogue::Role;
using catalogue::Translator;
using catalogue::Variant;

// Enough records that no branch is learnt from one of them, few enough for the nearest cache.
constexpr std::size_t record_count = 64;
// One record's place; the greatest record of the library fits.
constexpr std::size_t stride = 192;

struct Records {
    std::vector<std::uint8_t> in = std::vector<std::uint8_t>(record_count * stride);
    std::vector<std::uint8_t> out = std::vector<std::uint8_t>(record_count * stride);
    // The fourth argument, for those that take one: a logical key, or the entry type.
    std::vector<std::uint8_t> key;
    std::uint32_t type;

    Records(const Translator& translator, const std::vector<Variant>& variants)
        : key(8, static_cast<std::uint8_t>(variants.front().argument)), type{variants.front().argument} {
        for (std::size_t i = 0; i < record_count; ++i) {
            const auto record = catalogue::example(translator, variants[i % variants.size()], i + 1);
            std::copy(record.begin(), record.end(), in.begin() + static_cast<std::ptrdiff_t>(i * stride));
        }
    }
};

template <typename Call>
void run(benchmark::State& state, Records& records, Call call) {
    for (auto _ : state) {
        for (std::size_t i = 0; i < record_count; ++i) {
            benchmark::DoNotOptimize(call(&records.in[i * stride], &records.out[i * stride]));
        }
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(record_count));
}

void translate(benchmark::State& state, const Translator& translator, const std::vector<Variant>& variants) {
    Records records{translator, variants};
    const auto length = static_cast<std::int32_t>(translator.in().most);
    std::uint32_t out_length = 0;
    if (translator.forward != nullptr) {
        run(state, records,
            [&](const void* in, void* out) { return translator.forward(in, length, out, &out_length); });
    } else if (translator.reverse != nullptr) {
        run(state, records, [&](const void* in, void* out) { return translator.reverse(in, length, out); });
    } else if (translator.reverse_by_type != nullptr) {
        run(state, records,
            [&](const void* in, void* out) { return translator.reverse_by_type(in, length, out, &records.type); });
    } else {
        run(state, records,
            [&](const void* in, void* out) { return translator.reverse_by_key(in, length, out, records.key.data()); });
    }
}

// The generic copy takes up to 64 bytes; the few longer records stand against two copies.
void copy(benchmark::State& state, const Translator& any, std::size_t size) {
    Records records{any, any.variants};
    std::uint32_t out_length = 0;
    constexpr std::size_t most = 64;
    const auto first = static_cast<std::int32_t>(std::min(size, most));
    const auto second = static_cast<std::int32_t>(size) - first;
    run(state, records, [&](const std::uint8_t* in, std::uint8_t* out) {
        std::int32_t status = generic_xlate_result(in, first, out, &out_length);
        if (second > 0) {
            status |= generic_xlate_result(in + most, second, out + most, &out_length);
        }
        return status;
    });
}

std::string copy_name(std::size_t size) { return "copy/" + std::to_string(size); }

struct Row {
    std::string name;
    std::size_t size;
};

// Collects the times and prints the table when all are there.
class Table : public benchmark::BenchmarkReporter {
public:
    explicit Table(const std::vector<Row>& rows) : rows_{rows} {}

    bool ReportContext(const Context&) override { return true; }
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.run_type == Run::RT_Iteration) {
                const double time = run.GetAdjustedRealTime() / static_cast<double>(record_count);
                auto [found, added] = nanoseconds_.emplace(run.run_name.function_name, time);
                found->second = std::min(found->second, time);
            }
        }
        std::fprintf(stderr, "\r%zu of %zu", nanoseconds_.size(), rows_.size());
    }
    void Finalize() override {
        std::fprintf(stderr, "\r");
        std::printf("%-84s %6s %8s %8s\n", "translator, variant", "bytes", "ns", "ratio");
        double logarithms = 0;
        double worst = 0;
        std::string worst_name;
        std::size_t count = 0;
        for (const Row& row : rows_) {
            const auto found = nanoseconds_.find(row.name);
            const auto copied = nanoseconds_.find(copy_name(row.size));
            if (found == nanoseconds_.end() || copied == nanoseconds_.end()) {
                continue;
            }
            const double ratio = found->second / copied->second;
            std::printf("%-84s %6zu %8.2f %8.2f\n", row.name.c_str(), row.size, found->second, ratio);
            logarithms += std::log(ratio);
            ++count;
            if (ratio > worst) {
                worst = ratio;
                worst_name = row.name;
            }
        }
        if (count != 0) {
            std::printf("\n%zu measured; geometric mean of the ratios %.2f; worst %.2f: %s\n", count,
                        std::exp(logarithms / static_cast<double>(count)), worst, worst_name.c_str());
        }
    }

private:
    const std::vector<Row>& rows_;
    std::map<std::string, double> nanoseconds_;
};

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 2;
    }
    std::vector<Row> rows;
    std::map<std::size_t, const Translator*> sizes;
    for (const Translator& translator : catalogue::translators()) {
        const std::size_t size = translator.physical.most;
        if (size == 0) {
            continue;
        }
        const auto add = [&](const std::string& name, std::vector<Variant> variants) {
            rows.push_back({std::string{translator.name} + ", " + name, size});
            benchmark::RegisterBenchmark(rows.back().name.c_str(), translate, translator, std::move(variants));
        };
        for (const Variant& variant : translator.variants) {
            add(variant.name, {variant});
        }
        if (translator.variants.size() > 1) {
            add("mixed", translator.variants);
        }
        // The copy takes its records from any translator whose input is long enough not to matter.
        sizes.emplace(size, &translator);
    }
    for (const auto& [size, translator] : sizes) {
        rows.push_back({copy_name(size), size});
        benchmark::RegisterBenchmark(rows.back().name.c_str(), copy, *translator, size);
    }
    Table table{rows};
    benchmark::RunSpecifiedBenchmarks(&table);
    return 0;
}
