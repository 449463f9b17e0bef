#include "docs/journey.h"

#include <algorithm>

namespace docs {

namespace trace = npxlate::trace;
using trace::Space;

Passage::Passage(const Translator& translator, std::optional<std::int32_t> length)
    : forms_{length ? &forms::forms_of(translator, *length) : &forms::forms_of(translator)} {
    std::size_t bits = 0;
    for (const Form& form : forms_->all()) {
        bits = std::max(bits, form.out.size());
        for (const auto& [bit, after] : form.in_after) {
            in_after_.emplace(bit, trace::never);
        }
    }
    out_.assign(bits, trace::never);
    for (const Form& form : forms_->all()) {
        const auto add = [&](Node& sum, Node bit) {
            sum = diagrams().either(sum, diagrams().both(form.condition, bit));
        };
        for (std::size_t bit = 0; bit < bits; ++bit) {
            add(out_[bit], bit < form.out.size() ? trace::node_of(diagrams(), form.out[bit]) : buffer(bit));
        }
        for (auto& [bit, after] : in_after_) {
            const auto changed = form.in_after.find(static_cast<std::uint16_t>(bit));
            add(after, changed == form.in_after.end() ? in(bit) : trace::node_of(diagrams(), changed->second));
        }
    }
}

Node Passage::variable(Space space, std::size_t bit) const { return diagrams().bit(trace::bit_id(space, bit)); }

Node Passage::out(std::size_t bit) const { return bit < out_.size() ? out_[bit] : buffer(bit); }

Node Passage::in_after(std::size_t bit) const {
    const auto changed = in_after_.find(bit);
    return changed == in_after_.end() ? in(bit) : changed->second;
}

Node Passage::has_status(std::int32_t status) const {
    return where([status](const Form& form) { return form.status == status; });
}

Node Passage::has_length(std::optional<std::uint32_t> length) const {
    return where([length](const Form& form) { return form.length == length; });
}

Node Passage::gets(const std::string& title) const {
    return where([&title](const Form& form) {
        return std::ranges::any_of(form.steps, [&title](const forms::Step& step) {
            return step.layout != nullptr && step.layout->title == title;
        });
    });
}

Journey::Journey(const Translator& result, const Translator& reverse) : there_{result}, back_{reverse} {
    makes_it_ = diagrams().both(there_.has_status(NPXLATE_OK), through(back_.has_status(NPXLATE_OK)));
    if (reverse.reverse_by_key != nullptr) {
        // An Ethernet segment has the one key, and another L0 than 0.
        Node key_of_segment = trace::always;
        Node segment = trace::never;
        for (unsigned k = 0; k < 8; ++k) {
            key_of_segment = diagrams().both(key_of_segment, there_.argument(56 + k));
            segment = diagrams().either(segment, there_.in(k));
        }
        makes_it_ = diagrams().both(makes_it_, diagrams().negation(diagrams().differ(key_of_segment, segment)));
    }
}

// The entry type is the one that the record was programmed with.
Node Journey::argument(std::size_t bit) const {
    return back_.translator().reverse_by_type != nullptr ? there_.in(bit) : there_.argument(bit);
}

Node Journey::through(Node physical) const {
    if (physical <= trace::always) {
        return physical;
    }
    if (const auto known = through_.find(physical); known != through_.end()) {
        return known->second;
    }
    const Diagrams& from = back_.diagrams();
    const BitId id = from.asks(physical);
    const unsigned index = trace::index_of(id);
    const Node asked = trace::space_of(id) == Space::in         ? there_.out(index)
                       : trace::space_of(id) == Space::argument ? argument(index)
                                                                : diagrams().bit(id);
    const Node if_clear = through(from.if_clear(physical));
    const Node result = diagrams().if_then_else(asked, through(from.if_set(physical)), if_clear);
    through_.emplace(physical, result);
    return result;
}

Node Journey::returned(std::size_t bit) const {
    const auto [place, is_new] = returned_.try_emplace(bit, trace::never);
    if (is_new) {
        place->second = through(back_.out(bit));
    }
    return place->second;
}

std::size_t Journey::bits() const {
    return 8 * std::max(there_.translator().logical.most, back_.translator().logical.most);
}

}  // namespace docs
