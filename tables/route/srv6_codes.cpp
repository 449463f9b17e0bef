// The mappers of SRv6 function codes, for callers that need a code without a record around it.

#include "frame/srv6_codes.h"

#include <npxlate/npxlate.h>

using namespace npxlate;

std::uint8_t srv6_sid_func_gdp_xlate(std::uint32_t code) {
    return static_cast<std::uint8_t>(srv6_behaviour.apply(code));
}

std::uint8_t srv6_sid_action_from_func_type_gdp_xlate(std::uint32_t code) {
    return static_cast<std::uint8_t>(srv6_action.apply(code));
}

std::uint8_t srv6i_func_gdp_xlate(std::uint32_t code) {
    return static_cast<std::uint8_t>(srv6_information.apply(code));
}
