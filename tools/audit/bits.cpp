#include "audit/bits.h"

namespace audit {

std::vector<npxlate::Span> spans_of(const Bits& bits) {
    std::vector<npxlate::Span> spans;
    for (std::size_t bit = 0; bit < 8 * most_physical; ++bit) {
        if (!bits.has(bit)) {
            continue;
        }
        if (!spans.empty() && std::size_t{spans.back().first_bit} + spans.back().width == bit) {
            ++spans.back().width;
        } else {
            spans.push_back({static_cast<std::uint16_t>(bit), 1});
        }
    }
    return spans;
}

}  // namespace audit
