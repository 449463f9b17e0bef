#include "vectors/library.h"

#include <dlfcn.h>

#include <algorithm>
#include <limits>

namespace vectors {
namespace {

constexpr std::uint32_t not_stored = std::numeric_limits<std::uint32_t>::max();

// A buffer between bytes that nobody may write.
class Guarded {
public:
    explicit Guarded(const Bytes& content) : size_{content.size()}, memory_(size_ + 2 * margin, guard) {
        std::ranges::copy(content, data());
    }
    std::uint8_t* data() { return memory_.data() + margin; }
    Bytes content() const {
        const auto first = memory_.begin() + margin;
        return {first, first + static_cast<std::ptrdiff_t>(size_)};
    }
    bool intact() const {
        const auto is_guard = [](std::uint8_t byte) { return byte == guard; };
        return std::all_of(memory_.begin(), memory_.begin() + margin, is_guard) &&
               std::all_of(memory_.end() - margin, memory_.end(), is_guard);
    }

private:
    static constexpr std::ptrdiff_t margin = 256;
    static constexpr std::uint8_t guard = 0xc3;
    std::size_t size_;
    Bytes memory_;
};

}  // namespace

Library::Library() : tx_adj_key_max_{&TX_ADJ_KEY_MAX} {}

Library::Library(const std::string& path)
    // In a namespace of its own: otherwise its calls of its own translators would come to those of this program.
    : handle_{::dlmopen(LM_ID_NEWLM, path.find('/') == std::string::npos ? ("./" + path).c_str() : path.c_str(),
                        RTLD_NOW)} {
    if (handle_ == nullptr) {
        throw LoadError{::dlerror()};
    }
    tx_adj_key_max_ = static_cast<std::uint16_t*>(::dlsym(handle_, "TX_ADJ_KEY_MAX"));
}

Library::~Library() {
    if (handle_ != nullptr) {
        ::dlclose(handle_);
    }
}

catalogue::Function Library::function(const Translator& translator) const {
    if (handle_ != nullptr) {
        return reinterpret_cast<catalogue::Function>(::dlsym(handle_, std::string{translator.name}.c_str()));
    }
    return catalogue::function_of(translator);
}

Done Library::run(const Translator& translator, const Call& call) const {
    const catalogue::Function called = function(translator);
    Guarded in{call.in};
    Guarded out{call.out_before};
    std::uint32_t length = not_stored;
    const std::uint16_t initial = tx_adj_key_max_ != nullptr ? *tx_adj_key_max_ : std::uint16_t{0};
    if (call.tx_adj_key_max && tx_adj_key_max_ != nullptr) {
        *tx_adj_key_max_ = *call.tx_adj_key_max;
    }
    Done done;
    done.outcome.status =
        catalogue::call(translator, called, in.data(), call.length, out.data(), &length, {&call.type, call.key.data()});
    if (tx_adj_key_max_ != nullptr) {
        *tx_adj_key_max_ = initial;
    }
    if (length != not_stored) {
        done.outcome.length = length;
    }
    done.outcome.out = out.content();
    done.outcome.in = in.content();
    done.wrote_outside = !in.intact() || !out.intact();
    return done;
}

}  // namespace vectors
