#include "explain/run.h"

#include "catalogue/call.h"

namespace explain {
namespace {

constexpr std::uint32_t no_length = 0xffffffff;

}  // namespace

Run run_translator(const Translator& translator, std::span<const std::uint8_t> record, std::uint32_t argument,
                   std::uint8_t fill) {
    // One that keeps its buffer may still report more than its longest record.
    constexpr std::size_t beyond = 8;
    Run result{.in = {record.begin(), record.end()}, .out = Bytes(translator.out().most + beyond, fill)};
    result.in.reserve(1);  // so that there is an address even for a record of no bytes
    std::uint32_t length = no_length;
    result.status = catalogue::call(translator, result.in.data(), static_cast<std::int32_t>(record.size()),
                                    result.out.data(), &length, catalogue::Argument{argument});
    if (length != no_length) {
        result.length = length;
    }
    return result;
}

}  // namespace explain
