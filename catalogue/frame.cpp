#include "catalogue/catalogue.h"

namespace catalogue {

std::vector<Translator> frame() {
    return {
        NPXLATE_KEY(generic_xlate_key, Lengths{0, 47}, Lengths{0, 47}).with(Trait::checks_length),
        NPXLATE_RESULT(generic_xlate_result, Lengths{0, 64}, Lengths{0, 64}).with(Trait::checks_length),
        NPXLATE_REVERSE(generic_xlate_logical_result, Lengths{0, 63}, Lengths{0, 63}).with(Trait::checks_length),
        NPXLATE_KEY(generic_fast_ip_xlate_key, Lengths{0, 47}, Lengths{0, 47}).with(Trait::checks_length),
        NPXLATE_RESULT(generic_fast_ip_xlate_result, Lengths{3, 64}, 4).with(Trait::checks_length),
        NPXLATE_KEY(modulo_xlate_key, 4, 2).with(Trait::keeps_length),
        NPXLATE_RESULT(modulo_xlate_result, 8, 16).with(Trait::keeps_length),
    };
}

}  // namespace catalogue
