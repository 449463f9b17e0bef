// Bytes that stay where they are, in blocks: growing copies nothing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <vector>

namespace audit {

class Arena {
public:
    using Ref = std::uint32_t;  // counts units of four bytes; no bytes are at 0
    static constexpr std::size_t unit_bytes = 4;

    // At most a block.
    Ref allocate(std::size_t bytes) {
        const std::size_t wanted = units(bytes);
        if (blocks_.empty() || used_.back() + wanted > units_a_block) {
            if (blocks_.size() >= (std::size_t{1} << 32U) / units_a_block) {
                throw std::bad_alloc{};
            }
            blocks_.push_back(std::make_unique_for_overwrite<std::uint8_t[]>(units_a_block * unit_bytes));
            used_.push_back(blocks_.size() == 1 ? 1 : 0);
        }
        const auto ref = static_cast<Ref>((blocks_.size() - 1) * units_a_block + used_.back());
        used_.back() += wanted;
        return ref;
    }
    std::uint8_t* at(Ref ref) const { return blocks_[ref / units_a_block].get() + ref % units_a_block * unit_bytes; }

    // Visits what was allocated, in that order; the visit gives the bytes that it had asked for.
    template <typename Visit>
    void for_each(Visit visit) const {
        for (std::size_t block = 0; block < blocks_.size(); ++block) {
            for (std::size_t unit = block == 0 ? 1 : 0; unit < used_[block];) {
                unit += units(visit(static_cast<Ref>(block * units_a_block + unit)));
            }
        }
    }

    std::size_t memory() const { return blocks_.size() * units_a_block * unit_bytes; }

private:
    static constexpr std::size_t units_a_block = std::size_t{1} << 18U;
    static std::size_t units(std::size_t bytes) { return (bytes + unit_bytes - 1) / unit_bytes; }

    std::vector<std::unique_ptr<std::uint8_t[]>> blocks_{};
    std::vector<std::size_t> used_{};  // units, of each block
};

}  // namespace audit
