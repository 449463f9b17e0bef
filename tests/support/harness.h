// How tests call translators. Never directly: every call made here also proves that the translator stays inside its
// records, leaves its input alone (unless it is known to change it) and gives the same answer wherever the records lie
// and whatever the output held before.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <npxlate/npxlate.h>

#include "support/record.h"

namespace support {

// A translator and what its documentation promises about it.
struct Translator {
    std::string name;
    std::function<std::int32_t(const void* in, std::int32_t length, void* out, std::uint32_t* out_length)> call;
    std::size_t in_size;   // exact bytes of the record that goes in
    std::size_t out_size;  // exact bytes of the record that comes out
};

// A key or result translator; sizes of the logical and of the physical record.
Translator forward(std::string name, npxlate_result_fn* function, std::size_t logical, std::size_t physical);
// A reverse translator; sizes of the physical and of the logical record.
Translator reverse(std::string name, npxlate_reverse_fn* function, std::size_t physical, std::size_t logical);
// The two reverse translators with a fourth argument.
Translator reverse_by_type(std::string name, npxlate_reverse_by_type_fn* function, std::size_t physical,
                           std::size_t logical, std::uint32_t entry_type);
Translator reverse_by_key(std::string name, npxlate_reverse_by_key_fn* function, std::size_t physical,
                          std::size_t logical, const Bytes& logical_key);

// Names the translator after its function: FORWARD(tx_adjacency_type_xlate_key, 3, 3).
#define FORWARD(function, logical, physical) ::support::forward(#function, function, logical, physical)
#define REVERSE(function, physical, logical) ::support::reverse(#function, function, physical, logical)

// What a call did.
struct Outcome {
    std::int32_t status = 0;
    std::optional<std::uint32_t> length;  // the out-length, if it was written
    Bytes out;                            // the output record after the call
    Bytes in;                             // the input record after the call

    bool operator==(const Outcome&) const = default;
};

// Calls the translator on `in` (of exactly in_size bytes, unless a test means otherwise) with the length of `in`. The
// output starts as `before`, or as zeros when that is empty.
Outcome translate(const Translator& translator, const Bytes& in, const Bytes& before = {});
// The same with a length argument of its own.
Outcome translate_with_length(const Translator& translator, const Bytes& in, std::int32_t length,
                              const Bytes& before = {});

// The second reading: what a translator must do, written from its documentation. It is given the record that goes in
// (and changes it where the translator does) and the output as the caller had it (so it clears what the translator
// clears), and says status and out-length; no out-length for reverse translators and those that do not write it.
struct Reply {
    std::int32_t status = NPXLATE_OK;
    std::optional<std::uint32_t> length = std::nullopt;
};
using Model = std::function<Reply(Bytes& in, Bytes& out)>;

// The translator does to `in` what the model says, over zeros, over ones and over a pattern, at several addresses.
void check(const Translator& translator, const Model& model, const Bytes& in);

// The same once, over an output that holds this; tells whether it does.
bool check_over(const Translator& translator, const Model& model, const Bytes& in, const Bytes& before);

// check() for the base record and for the base record with each of its bits changed in turn: no bit is carried that the
// model does not carry, and none is missed.
void walk(const Translator& translator, const Model& model, const Bytes& base);
// The same for several base records: a record of zeros, one of ones, one for each variant...
void walk(const Translator& translator, const Model& model, const std::vector<Bytes>& bases);

// check() for `count` random records from a fixed seed; `shape` may set what a record of a variant must hold.
void check_random(const Translator& translator, const Model& model, int count = 2000,
                  const std::function<void(Bytes&)>& shape = {});

// The output positions that change when one input bit of `base` changes: changes(t, base, "L0.4") == "P0.5 P1.4".
// Empty when the bit is not carried. For worked rows and for bits that must not be carried.
std::string changes(const Translator& translator, const Bytes& base, const std::string& input_bit);

// The bits of these input positions that are carried: carried(t, base, {"L0.5", "L2.7-6"}) == "L2.7 ".
std::string carried(const Translator& translator, const Bytes& base, const std::vector<std::string>& positions);

// None of these input positions ("L0.7", "L3.6-3", "L8-11") changes the output: no bit of them is carried or looked at.
void expect_not_carried(const Translator& translator, const Bytes& base, const std::vector<std::string>& positions);

// The reverse translator takes records of its exact length only: for any other length, zero and negative ones included,
// it returns NPXLATE_INVALID and writes nothing.
void expect_exact_length(const Translator& reverse_translator);

// The translator does not look at its length argument.
void expect_length_ignored(const Translator& translator, const Bytes& in);

// A repeatable source of records.
class Random {
public:
    explicit Random(std::uint64_t seed) : state_{seed} {}
    std::uint64_t next();
    Bytes record(std::size_t size);

private:
    std::uint64_t state_;
};

}  // namespace support
