// Calling any translator of the catalogue in one way.
#pragma once

#include <cstdint>

#include "catalogue/catalogue.h"

namespace catalogue {

// The samples' argument, in both of the forms in which a translator may take it: the entry type, and a logical key
// that holds it in byte 7.
class Argument {
public:
    explicit Argument(std::uint32_t value) : type_{value} { key_[7] = static_cast<std::uint8_t>(value); }
    const std::uint32_t* type() const { return &type_; }
    const void* key() const { return key_; }

private:
    std::uint32_t type_;
    std::uint8_t key_[8] = {};
};

// *out_length is left alone by reverse translators.
std::int32_t call(const Translator& translator, const void* in, std::int32_t length, void* out,
                  std::uint32_t* out_length, const Argument& argument);

}  // namespace catalogue
