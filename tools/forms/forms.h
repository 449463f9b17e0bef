// The forms of a translator: each is one outcome of its decisions, with the exact condition under which a record takes
// it and what then becomes of every bit. They are computed, by running the translator's own code on a record of whose
// bits nothing is known and taking each decision both ways; so they leave no record out and no two hold for one record.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "catalogue/catalogue.h"
#include "trace/recorder.h"

namespace forms {

using catalogue::Translator;
using npxlate::Span;  // bits of a record, counted from bit 0 of byte 0 upwards
using npxlate::trace::Bit;
using npxlate::trace::BitId;
using npxlate::trace::Diagrams;
using npxlate::trace::Node;
using npxlate::trace::Space;
using npxlate::trace::Step;
using npxlate::trace::Writer;

// The letters of the records that go in and come out.
char in_letter(const Translator& translator);
char out_letter(const Translator& translator);

// A condition that the code asks for.
struct Question {
    Node node;
    std::string words;     // "L0.5 set"
    std::string opposite;  // "L0.5 clear"
};

struct Answer {
    std::size_t question;
    bool yes;
    std::size_t steps_before;  // how many steps were done when it was asked
};

struct Form {
    std::string name{};  // no other form of the translator has it
    std::vector<Answer> answers{};
    Node condition{};
    std::int32_t status = 0;
    std::optional<std::uint32_t> length{};  // the out-length, if it is stored
    std::vector<Step> steps{};
    std::vector<Bit> out{};  // of each bit of the record that comes out; Space::out: as the caller had it
    std::vector<std::vector<Writer>> writers{};
    std::map<std::uint16_t, Bit> in_after{};  // of each bit of the record that went in that may change
};

// What a call is given, as far as translators look at it.
struct Given {
    std::span<const std::uint8_t> in{};   // bytes beyond its end count as zero
    std::span<const std::uint8_t> out{};  // the buffer before the call
    std::uint32_t argument = 0;           // the entry type, or byte 7 of the logical key
    std::uint16_t tx_adj_key_max = TX_ADJ_KEY_MAX;

    bool bit(BitId id) const;
};

class Forms {
public:
    Forms(const Translator& translator, std::int32_t length);
    Forms(const Forms&) = delete;
    Forms& operator=(const Forms&) = delete;

    const Translator& translator() const { return *translator_; }
    std::int32_t length() const { return length_; }
    const std::vector<Form>& all() const { return forms_; }
    const std::vector<Question>& questions() const { return questions_; }
    Diagrams& diagrams() const { return *diagrams_; }

    // The one form of the record.
    const Form& of(const Given& given) const;
    std::size_t number_of(const Form& form) const { return static_cast<std::size_t>(&form - forms_.data()); }

    bool value(const Bit& bit, const Given& given) const;

private:
    void name_forms();
    std::size_t question(const npxlate::trace::Decision& decision);

    const Translator* translator_;
    std::int32_t length_;
    std::unique_ptr<Diagrams> diagrams_;
    std::vector<Question> questions_{};
    std::vector<Form> forms_{};
};

// For a length argument; without one, for the longest record that the translator takes. Computed once for each thread
// and length.
const Forms& forms_of(const Translator& translator, std::int32_t length);
const Forms& forms_of(const Translator& translator);

}  // namespace forms
