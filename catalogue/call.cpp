#include "catalogue/call.h"

namespace catalogue {

std::int32_t call(const Translator& translator, const void* in, std::int32_t length, void* out,
                  std::uint32_t* out_length, FourthArgument argument) {
    return call(translator, function_of(translator), in, length, out, out_length, argument);
}

Function function_of(const Translator& translator) {
    if (translator.forward != nullptr) {
        return reinterpret_cast<Function>(translator.forward);
    }
    if (translator.reverse_by_type != nullptr) {
        return reinterpret_cast<Function>(translator.reverse_by_type);
    }
    if (translator.reverse_by_key != nullptr) {
        return reinterpret_cast<Function>(translator.reverse_by_key);
    }
    return reinterpret_cast<Function>(translator.reverse);
}

std::int32_t call(const Translator& translator, Function namesake, const void* in, std::int32_t length, void* out,
                  std::uint32_t* out_length, FourthArgument argument) {
    if (translator.forward != nullptr) {
        return reinterpret_cast<npxlate_result_fn*>(namesake)(in, length, out, out_length);
    }
    if (translator.reverse_by_type != nullptr) {
        return reinterpret_cast<npxlate_reverse_by_type_fn*>(namesake)(in, length, out, argument.type);
    }
    if (translator.reverse_by_key != nullptr) {
        return reinterpret_cast<npxlate_reverse_by_key_fn*>(namesake)(in, length, out, argument.key);
    }
    return reinterpret_cast<npxlate_reverse_fn*>(namesake)(in, length, out);
}

}  // namespace catalogue
