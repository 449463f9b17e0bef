// The codes of SRv6 functions, as the route leaves and the segment identifier tables carry them.
#pragma once

#include <cstdint>

#include "frame/row.h"

namespace npxlate {

inline constexpr Function srv6_behaviour{
    "behaviour of a SID function: 1-4 to 2, 5-8 to 4, 9-12 to 8, 16 to 16, 17 to 64, 18 and 36 to 32, "
    "19 and 37 to 128, any other to 0",
    [](Number code) -> Number {
        if (code >= 1 && code <= 12) {
            return Number{2} << (code - 1) / 4;
        }
        if (code == 16) {
            return 16;
        }
        if (code == 17) {
            return 64;
        }
        if (code == 18 || code == 36) {
            return 32;
        }
        if (code == 19 || code == 37) {
            return 128;
        }
        return 0;
    },
};

inline constexpr Function srv6_action{
    "action of a SID function: 1-4, 5-8 and 9-12 each to 0, 1, 2, 3, any other to 0",
    [](Number code) -> Number { return choose(code >= 1 && code <= 12, (code - 1) % 4, 0); },
};

inline constexpr Function srv6_information{
    "code of an SRv6 function: 30 to 4, 31 to 3, 32 to 2, 33 to 1, any other to 0",
    [](Number code) -> Number { return choose(code >= 30 && code <= 33, 34 - code, 0); },
};

}  // namespace npxlate
