// The models of all translators that a program's tests hold, by the translators' names: for who walks them over more
// records than the tests themselves do.
#pragma once

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <map>
#include <string>

#include "support/harness.h"

namespace support {

struct Modelled {
    Translator translator;
    Model model;
};

// For records of a length and, of those that have one, a fourth argument: an entry type, or byte 7 of a logical key.
using ModelOf = std::function<Modelled(std::size_t length, std::uint32_t argument)>;

const std::map<std::string, ModelOf>& models();

// Makes models known: const support::Models models{{key, key_model}, {result, result_model}};
class Models {
public:
    Models(std::initializer_list<Modelled> list);
    Models(const std::string& name, const ModelOf& model_of);
};

}  // namespace support
