#include "npxlate/translation.h"

#include <algorithm>
#include <limits>

#include <fmt/core.h>

#include "catalogue/call.h"
#include "npxlate/error.h"
#include "npxlate/lookup.h"
#include "npxlate/taken.h"

namespace tool {
namespace {

using catalogue::Role;
using catalogue::Trait;
using catalogue::Translator;

// Of the key that the reverse with a key argument takes: that of its table.
std::size_t key_length(const Translator& translator) {
    return catalogue::of_table(catalogue::tables_of(translator).front(), Role::key).logical.most;
}

// The key of an Ethernet segment, whose record is the shorter one.
bool is_ethernet_segment(const Bytes& key) { return key.back() == 0xff; }

}  // namespace

void check_argument(const Translator& translator, const FourthArgument& argument, std::string_view type_name,
                    std::string_view key_name) {
    const bool takes_type = translator.has(Trait::takes_type);
    const bool takes_key = translator.has(Trait::takes_key);
    if (takes_type != argument.type.has_value()) {
        throw WrongInput{takes_type
                             ? fmt::format("{} needs the type of the entry: expected {} N", translator.name, type_name)
                             : fmt::format("{} takes no entry type: expected no {}", translator.name, type_name)};
    }
    if (takes_key != argument.key.has_value()) {
        throw WrongInput{
            takes_key ? fmt::format("{} needs the logical key of the entry: expected {} HEX", translator.name, key_name)
                      : fmt::format("{} takes no logical key: expected no {}", translator.name, key_name)};
    }
    if (takes_key && argument.key->size() != key_length(translator)) {
        throw WrongInput{fmt::format("{} takes a logical key of {}, but {} came", translator.name,
                                     describe(key_length(translator)), describe(argument.key->size()))};
    }
}

FourthArgument argument_for_way_back(const Translator& reverse, const FourthArgument& given,
                                     const Bytes& logical_result) {
    FourthArgument argument = given;
    if (reverse.has(Trait::takes_type) && !argument.type) {
        if (argument.key && argument.key->size() != key_length(reverse)) {
            throw WrongInput{fmt::format("the logical key of the entry has {}, but {} came",
                                         describe(key_length(reverse)), describe(argument.key->size()))};
        }
        const Bytes& from = argument.key ? *argument.key : logical_result;
        argument.type = 0;
        for (unsigned i = 0; i < 4; ++i) {
            *argument.type |= std::uint32_t{from[i]} << 8 * i;
        }
        argument.key.reset();
    }
    if (reverse.has(Trait::takes_key) && !argument.key) {
        argument.key = Bytes(key_length(reverse));
        argument.key->back() = logical_result[0] != 0 ? 0xff : 0;
    }
    return argument;
}

Reply translate(const Translator& translator, std::uint8_t* in, std::size_t length, std::uint8_t* out,
                const FourthArgument& argument) {
    constexpr std::uint32_t not_stored = std::numeric_limits<std::uint32_t>::max();
    // The bytes that only a record read back has are not read.
    const auto in_length = static_cast<std::int32_t>(std::min(length, translator.in().most));
    std::uint32_t out_length = not_stored;
    Reply reply;
    reply.status =
        catalogue::call(translator, in, in_length, out, &out_length,
                        {argument.type ? &*argument.type : nullptr, argument.key ? argument.key->data() : nullptr});
    const bool silent = translator.role == Role::reverse || translator.has(Trait::keeps_length);
    if (out_length != not_stored) {
        reply.length = out_length;
    }
    reply.translated = reply.status == NPXLATE_OK && (silent || reply.length);
    if (!reply.translated) {
        return reply;
    }
    if (translator.out().fixed()) {
        reply.size = translator.out().most;
    } else if (translator.has(Trait::takes_key)) {
        reply.size = is_ethernet_segment(*argument.key) ? translator.out().least : translator.out().most;
    } else {
        reply.size = reply.length.value_or(static_cast<std::uint32_t>(in_length));
    }
    return reply;
}

std::string rejection(const Translator& translator, const Reply& reply) {
    if (reply.status == NPXLATE_OK) {
        return fmt::format("{} returned 0 (NPXLATE_OK), but stored no length: expected {}", translator.name,
                           what_is_taken(translator));
    }
    return fmt::format("{} returned {} ({}): expected {}", translator.name, reply.status, status_name(reply.status),
                       what_is_taken(translator));
}

}  // namespace tool
