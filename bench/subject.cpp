#include "subject.h"

#include <algorithm>
#include <set>

#include "catalogue/example.h"

namespace bench {

using catalogue::Sample;
using catalogue::Translator;

std::string copy_name(std::size_t size) { return "generic copy of " + std::to_string(size); }

std::vector<Subject> subjects() {
    std::vector<Subject> result;
    std::set<std::size_t> sizes;
    for (const Translator& translator : catalogue::translators()) {
        const std::size_t size = translator.physical.most;
        if (size == 0) {
            continue;
        }
        sizes.insert(size);
        const auto add = [&](const std::string& sample, std::vector<Sample> samples) {
            result.push_back({std::string{translator.name} + ", " + sample, size, &translator, std::move(samples)});
        };
        for (const Sample& sample : translator.samples) {
            add(sample.name, {sample});
        }
        if (translator.samples.size() > 1) {
            add("mixed", translator.samples);
        }
    }
    for (const std::size_t size : sizes) {
        result.push_back({copy_name(size), size});
    }
    return result;
}

Records::Records(const Subject& subject) : translator_{subject.translator} {
    if (translator_ == nullptr) {
        constexpr std::size_t most = 64;
        length_ = static_cast<std::int32_t>(std::min(subject.size, most));
        rest_ = static_cast<std::int32_t>(subject.size) - length_;
        return;
    }
    length_ = static_cast<std::int32_t>(translator_->in().most);
    key_.assign(8, static_cast<std::uint8_t>(subject.samples.front().argument));
    type_ = subject.samples.front().argument;
    for (std::size_t i = 0; i < count; ++i) {
        const auto record = catalogue::example(*translator_, subject.samples[i % subject.samples.size()], i + 1);
        std::copy(record.begin(), record.end(), in_.begin() + static_cast<std::ptrdiff_t>(i * stride));
    }
}

}  // namespace bench
