// What becomes of all records of a table at once: on the way to the card and, where the table has a reverse translator
// of its own, back again. Every bit is a function of the bits of the record that went in, put together from the
// computed forms of both translators.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "forms/forms.h"

namespace docs {

using catalogue::Translator;
using forms::Form;
using forms::Forms;
using npxlate::trace::BitId;
using npxlate::trace::Diagrams;
using npxlate::trace::Node;

using Bits = std::vector<Node>;

// One translator on a record of which nothing is known.
class Passage {
public:
    explicit Passage(const Translator& translator, std::optional<std::int32_t> length = {});

    const Translator& translator() const { return forms_->translator(); }
    const Forms& forms() const { return *forms_; }
    Diagrams& diagrams() const { return forms_->diagrams(); }

    // A bit of the record that goes in, of the buffer before the call, and of the fourth argument.
    Node in(std::size_t bit) const { return variable(npxlate::trace::Space::in, bit); }
    Node buffer(std::size_t bit) const { return variable(npxlate::trace::Space::out, bit); }
    Node argument(std::size_t bit) const { return variable(npxlate::trace::Space::argument, bit); }

    Node out(std::size_t bit) const;
    std::size_t bits_out() const { return out_.size(); }
    Node in_after(std::size_t bit) const;
    Node has_status(std::int32_t status) const;
    // Nothing: it is not stored.
    Node has_length(std::optional<std::uint32_t> length) const;
    // The records that get a layout of that title.
    Node gets(const std::string& title) const;

    // The forms for which the predicate holds, together.
    template <typename Predicate>
    Node where(Predicate predicate) const {
        Node any = npxlate::trace::never;
        for (const Form& form : forms_->all()) {
            any = predicate(form) ? diagrams().either(any, form.condition) : any;
        }
        return any;
    }

private:
    Node variable(npxlate::trace::Space space, std::size_t bit) const;

    const Forms* forms_;
    Bits out_{};
    std::map<std::size_t, Node> in_after_{};
};

// There and back. Functions of bits of the record that was programmed, as those of the passage there.
class Journey {
public:
    Journey(const Translator& result, const Translator& reverse);

    const Passage& there() const { return there_; }
    const Passage& back() const { return back_; }
    Diagrams& diagrams() const { return there_.diagrams(); }

    // The records that are translated both ways. Of the fourth argument it is asked that it belongs to the record.
    Node makes_it() const { return makes_it_; }
    Node returned(std::size_t bit) const;
    std::size_t bits() const;  // as many as either of the logical records has

    // A function of the physical record, as one of the record that was programmed.
    Node through(Node physical) const;

private:
    Node argument(std::size_t bit) const;

    Passage there_;
    Passage back_;
    mutable std::map<Node, Node> through_{};
    Node makes_it_ = npxlate::trace::never;
    mutable std::map<std::size_t, Node> returned_{};
};

}  // namespace docs
