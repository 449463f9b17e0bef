#include "subject.h"

#include <algorithm>
#include <set>

#include "catalogue/example.h"

namespace bench {

using catalogue::Translator;
using catalogue::Variant;

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
        const auto add = [&](const std::string& variant, std::vector<Variant> variants) {
            result.push_back({std::string{translator.name} + ", " + variant, size, &translator, std::move(variants)});
        };
        for (const Variant& variant : translator.variants) {
            add(variant.name, {variant});
        }
        if (translator.variants.size() > 1) {
            add("mixed", translator.variants);
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
    key_.assign(8, static_cast<std::uint8_t>(subject.variants.front().argument));
    type_ = subject.variants.front().argument;
    for (std::size_t i = 0; i < count; ++i) {
        const auto record = catalogue::example(*translator_, subject.variants[i % subject.variants.size()], i + 1);
        std::copy(record.begin(), record.end(), in_.begin() + static_cast<std::ptrdiff_t>(i * stride));
    }
}

}  // namespace bench
