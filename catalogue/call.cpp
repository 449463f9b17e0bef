#include "catalogue/call.h"

namespace catalogue {

std::int32_t call(const Translator& translator, const void* in, std::int32_t length, void* out,
                  std::uint32_t* out_length, const Argument& argument) {
    if (translator.forward != nullptr) {
        return translator.forward(in, length, out, out_length);
    }
    if (translator.reverse_by_type != nullptr) {
        return translator.reverse_by_type(in, length, out, argument.type());
    }
    if (translator.reverse_by_key != nullptr) {
        return translator.reverse_by_key(in, length, out, argument.key());
    }
    return translator.reverse(in, length, out);
}

}  // namespace catalogue
