#include "vectors/tree.h"

#include <algorithm>
#include <set>

#include "vectors/vectors.h"

namespace vectors {

using forms::Bit;
using forms::Form;
using forms::Forms;
using forms::Node;
using npxlate::trace::always;
using npxlate::trace::bit_id;
using npxlate::trace::bit_of;
using npxlate::trace::Space;

Outputs::Outputs(const Forms& forms) : forms_{&forms} {
    std::set<std::uint16_t> in;
    std::set<std::int32_t> statuses;
    std::set<std::optional<std::uint32_t>> lengths;
    std::size_t most = 0;
    for (const Form& form : forms.all()) {
        most = std::max(most, form.out.size());
        for (const auto& [bit, after] : form.in_after) {
            in.insert(bit);
        }
        statuses.insert(form.status);
        if (form.status == NPXLATE_OK) {
            lengths.insert(form.length);
        }
    }
    for (std::size_t bit = 0; bit < most; ++bit) {
        out_.push_back(static_cast<std::uint16_t>(bit));
    }
    in_.assign(in.begin(), in.end());
    statuses_.assign(statuses.begin(), statuses.end());
    lengths_.assign(lengths.begin(), lengths.end());
    size_ = out_.size() + in_.size() + statuses_.size() + lengths_.size();
}

Bit Outputs::of(const Form& form, std::size_t output) const {
    const bool taken = accepted(forms_->translator(), form.status, form.length);
    if (output < out_.size()) {
        const std::uint16_t bit = out_[output];
        return !taken ? bit_of(false) : bit < form.out.size() ? form.out[bit] : bit_of(bit_id(Space::out, bit));
    }
    output -= out_.size();
    if (output < in_.size()) {
        const auto changed = form.in_after.find(in_[output]);
        return changed != form.in_after.end() ? changed->second : bit_of(bit_id(Space::in, in_[output]));
    }
    output -= in_.size();
    if (output < statuses_.size()) {
        return bit_of(form.status == statuses_[output]);
    }
    output -= statuses_.size();
    return bit_of(form.status == NPXLATE_OK && form.length == lengths_[output]);
}

Tree::Tree(const Forms& forms) : forms_{&forms} {
    std::vector<const Form*> all;
    for (const Form& form : forms.all()) {
        all.push_back(&form);
    }
    grow(std::move(all), 0, always);
}

// The forms that have given the same answers so far: each is asked the same question next.
std::size_t Tree::grow(std::vector<const Form*> among, std::size_t depth, Node reached) {
    const std::size_t here = branches_.size();
    branches_.push_back({.reached = reached});
    if (among.size() == 1) {
        branches_[here].form = among.front();
        return here;
    }
    const Node question = forms_->questions()[among.front()->answers[depth].question].node;
    std::vector<const Form*> yes;
    std::vector<const Form*> no;
    for (const Form* form : among) {
        (form->answers[depth].yes ? yes : no).push_back(form);
    }
    forms::Diagrams& diagrams = forms_->diagrams();
    const std::size_t if_yes = grow(std::move(yes), depth + 1, diagrams.both(reached, question));
    const std::size_t if_no = grow(std::move(no), depth + 1, diagrams.both(reached, diagrams.negation(question)));
    branches_[here].question = question;
    branches_[here].if_yes = if_yes;
    branches_[here].if_no = if_no;
    return here;
}

const Form& Tree::leaf(std::size_t branch, const std::function<bool(Node)>& holds) const {
    while (branches_[branch].form == nullptr) {
        branch = holds(branches_[branch].question) ? branches_[branch].if_yes : branches_[branch].if_no;
    }
    return *branches_[branch].form;
}

}  // namespace vectors
