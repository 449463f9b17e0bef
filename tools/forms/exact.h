// The functions of forms as data that a program can evaluate: a list of nodes, each an if-then-else on one bit.
#pragma once

#include <map>
#include <vector>

#include "forms/forms.h"

namespace forms {

class ExactNodes {
public:
    // Node 0 is false and node 1 is true; node k, from 2 on, is all()[k - 2].
    struct Fork {
        BitId bit;
        std::size_t if_clear;
        std::size_t if_set;
    };

    explicit ExactNodes(const Forms& forms) : forms_{&forms} {}

    std::size_t number(Node node);
    std::size_t number(const Bit& bit) { return number(npxlate::trace::node_of(forms_->diagrams(), bit)); }
    // What a fork goes on to stands before it.
    const std::vector<Fork>& all() const { return all_; }

private:
    const Forms* forms_;
    std::map<Node, std::size_t> numbers_{{npxlate::trace::never, 0}, {npxlate::trace::always, 1}};
    std::vector<Fork> all_{};
};

}  // namespace forms
