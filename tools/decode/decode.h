// From the record that came out of a translator back to every record that could have gone in. Nothing is guessed: the
// forms of the translator are solved for the bytes, and what is found is translated again by the library.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "forms/conditions.h"

namespace decode {

using forms::Form;
using forms::Forms;
using forms::Range;
using forms::Span;
using forms::Translator;

using Bytes = std::vector<std::uint8_t>;

// A field of the record that went in, and the values that it may have had.
struct Field {
    Span at{};
    std::vector<Range> values{};
};

// What a field may have held, and what then holds for the fields that depend on it: one alternative of each group.
struct Alternative {
    Field field{};
    std::vector<std::vector<Alternative>> then{};
};
using Alternatives = std::vector<Alternative>;  // one of them was there

struct Candidate {
    const Form* form = nullptr;
    const Forms* of = nullptr;  // whose form it is
    Bytes record{};             // one record that gives these bytes: free bits 0, and of alternatives one that holds
    Bytes determined{};         // the bits that the bytes determine
    Bytes chosen{};             // the bits that the form's condition determines
    Bytes free{};               // the bits that may have been anything
    std::vector<Alternatives> groups{};  // of the bits that are neither; each group by itself
    // Candidates of one number differ in nothing that the bytes show: what is not determined is chosen otherwise.
    std::size_t alike = 0;
};

// A bit of the record, or several, that a form cannot have made.
struct Contradiction {
    std::vector<Span> at{};
    std::string needs{};  // "0", "1", "the same as P3.4", "another value"
};

struct Refusal {
    const Form* form = nullptr;
    std::vector<Contradiction> contradictions{};
    unsigned bits = 0;  // how many bits contradict
};

struct Result {
    std::vector<Candidate> candidates{};  // those that explain the most first, and those together that are alike
    std::vector<Refusal> nearest{};       // if there is no candidate: the forms with the fewest contradictions
};

class Decoder {
public:
    explicit Decoder(const Translator& translator);
    ~Decoder();
    Decoder(const Decoder&) = delete;
    Decoder& operator=(const Decoder&) = delete;

    // Whether the translator makes records of that length.
    bool makes(std::size_t length) const;
    // Every length that it makes.
    std::vector<std::size_t> lengths() const;

    Result decode(std::span<const std::uint8_t> record) const;

    // The first candidate's record alone, and how many there are besides; an empty one if there is none. For many.
    struct Best {
        Bytes record{};
        std::size_t others = 0;
        bool found = false;
    };
    Best best(std::span<const std::uint8_t> record) const;

private:
    class Solver;

    const Translator* translator_;
    mutable std::vector<std::pair<std::size_t, std::unique_ptr<Solver>>> solvers_{};  // by length of the record made
};

}  // namespace decode
