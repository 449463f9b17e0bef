// The decisions of a translator as a tree, whose leaves are its forms.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "forms/forms.h"

namespace vectors {

// What can be seen of a call, as bits: those of the record that comes out, then those of the record that went in, as it
// is afterwards; then each status and each stored length that there is, as the bit that it is this one.
class Outputs {
public:
    explicit Outputs(const forms::Forms& forms);

    std::size_t count() const { return size_; }
    // What the form makes of the bit; nothing can be seen of the records after a failure but the input.
    forms::Bit of(const forms::Form& form, std::size_t output) const;

private:
    std::vector<std::uint16_t> out_;  // the bits that some form writes or keeps
    std::vector<std::uint16_t> in_;   // the bits that some form changes
    std::vector<std::int32_t> statuses_{};
    std::vector<std::optional<std::uint32_t>> lengths_{};
    const forms::Forms* forms_;
    std::size_t size_ = 0;
};

struct Branch {
    forms::Node question = forms::Node{};  // of branches
    forms::Node reached = forms::Node{};   // the condition under which the question is asked
    std::size_t if_yes = 0;
    std::size_t if_no = 0;
    const forms::Form* form = nullptr;  // of leaves
};

class Tree {
public:
    explicit Tree(const forms::Forms& forms);

    // The first is the root. A branch stands before those under it.
    const std::vector<Branch>& branches() const { return branches_; }

    // Where a record goes that stands at the branch, whether or not it would come there by itself.
    const forms::Form& leaf(std::size_t branch, const std::function<bool(forms::Node)>& holds) const;

private:
    std::size_t grow(std::vector<const forms::Form*> among, std::size_t depth, forms::Node reached);

    const forms::Forms* forms_;
    std::vector<Branch> branches_{};
};

}  // namespace vectors
