#include "npxlate/options.h"

#include <algorithm>
#include <limits>
#include <thread>

#include <fmt/core.h>

#include "npxlate/error.h"
#include "npxlate/lookup.h"
#include "npxlate/output.h"

namespace tool {

void ArgumentOptions::add_to(Command command) {
    type_option_ = command.add_option("--type", type_, "The type of the entry (table 52)");
    key_option_ = command.add_option("--key", key_, "The logical key of the entry, as hex (table 92)");
}

FourthArgument ArgumentOptions::read() const {
    FourthArgument argument;
    if (type_option_.given()) {
        const auto type = parse_number(type_, std::numeric_limits<std::uint32_t>::max());
        if (!type) {
            throw WrongInput{fmt::format("bad --type {}: expected a number of 32 bits", printable(type_))};
        }
        argument.type = static_cast<std::uint32_t>(*type);
    }
    if (key_option_.given()) {
        argument.key = parse_hex(key_);
    }
    return argument;
}

void TxAdjKeyMaxOption::add_to(Command command) {
    option_ = command.add_option("--tx-adj-key-max", value_,
                                 "The highest transmit-adjacency index that TE next hops (table 7) mark");
}

void TxAdjKeyMaxOption::apply(const std::vector<const catalogue::Translator*>& translators) const {
    if (!option_.given()) {
        return;
    }
    const auto depends = [](const catalogue::Translator* translator) {
        return translator->forward == &te_nh_adjacency_type_xlate_result;
    };
    if (!translators.empty() && std::ranges::none_of(translators, depends)) {
        throw WrongInput{fmt::format("{} does not depend on TX_ADJ_KEY_MAX: expected no --tx-adj-key-max",
                                     translators.front()->name)};
    }
    const auto value = parse_number(value_, std::numeric_limits<std::uint16_t>::max());
    if (!value) {
        throw WrongInput{fmt::format("bad --tx-adj-key-max {}: expected a number from 0 to 65535", printable(value_))};
    }
    TX_ADJ_KEY_MAX = static_cast<std::uint16_t>(*value);
}

void ThreadsOption::add_to(Command command) {
    command.add_option("--threads", value_, "How many threads to use; otherwise as many as there are processors");
}

unsigned ThreadsOption::read() const {
    constexpr unsigned most = 1024;
    if (value_.empty()) {
        return std::clamp(std::thread::hardware_concurrency(), 1U, most);
    }
    const auto number = parse_number(value_, most);
    if (!number || *number == 0) {
        throw WrongInput{fmt::format("bad --threads {}: expected a number from 1 to {}", printable(value_), most)};
    }
    return static_cast<unsigned>(*number);
}

}  // namespace tool
