// Calling any translator of the catalogue in one way.
#pragma once

#include <cstdint>

#include "catalogue/catalogue.h"

namespace catalogue {

// The fourth argument, for the reverse translators that take one; of the two, the other is not looked at.
struct FourthArgument {
    const std::uint32_t* type;
    const void* key;
};

// The samples' argument, in both of the forms in which a translator may take it: the entry type, and a logical key
// that holds it in byte 7.
class Argument {
public:
    explicit Argument(std::uint32_t value) : type_{value} { key_[7] = static_cast<std::uint8_t>(value); }
    operator FourthArgument() const { return {&type_, key_}; }  // NOLINT(google-explicit-constructor)

private:
    std::uint32_t type_;
    std::uint8_t key_[8] = {};
};

// *out_length is left alone by reverse translators.
std::int32_t call(const Translator& translator, const void* in, std::int32_t length, void* out,
                  std::uint32_t* out_length, FourthArgument argument);

// The same of the translator's namesake in another library, or in another build of this one.
using Function = void (*)();
Function function_of(const Translator& translator);
std::int32_t call(const Translator& translator, Function namesake, const void* in, std::int32_t length, void* out,
                  std::uint32_t* out_length, FourthArgument argument);

}  // namespace catalogue
