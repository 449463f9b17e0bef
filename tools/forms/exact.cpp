#include "forms/exact.h"

namespace forms {

std::size_t ExactNodes::number(Node node) {
    if (const auto found = numbers_.find(node); found != numbers_.end()) {
        return found->second;
    }
    const Diagrams& diagrams = forms_->diagrams();
    const std::size_t if_clear = number(diagrams.if_clear(node));
    const std::size_t if_set = number(diagrams.if_set(node));
    all_.push_back({diagrams.asks(node), if_clear, if_set});
    numbers_.emplace(node, all_.size() + 1);
    return all_.size() + 1;
}

}  // namespace forms
